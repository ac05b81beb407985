#include "platform/zeb_string.h"

#include <algorithm>
#include <cstring>

void zeb_strcpy(char* destination, std::size_t size, const char* source) {
    zeb_strncpy(destination, size, source, std::strlen(source));
}

void zeb_strncpy(char* destination, std::size_t size, const char* source, std::size_t count) {
    if (size == 0) return;
    const std::size_t length = std::min(strnlen(source, count), size - 1);
    std::memcpy(destination, source, length);
    destination[length] = '\0';
}
