// Bounded string copies of the host's platform framework. Both always end the destination with a NUL.
#pragma once

#include <cstddef>

// Copies `source` into `destination`, which holds `size` bytes in all; what does not fit is cut off.
void zeb_strcpy(char* destination, std::size_t size, const char* source);

// As zeb_strcpy, but at most `count` characters of `source`.
void zeb_strncpy(char* destination, std::size_t size, const char* source, std::size_t count);
