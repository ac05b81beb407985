// Whether logos can be written where they are to go. The library itself tells of no logo that it could not
// write.
#pragma once

#include <cstddef>
#include <string>

#include "tools/recording/recording.h"

namespace dabspi {

// Bytes of the largest image that the recording feeds; 0 without images.
std::size_t largest_image(const recording& in);

// Writes a file of so many bytes below the storage path, and removes it again. Throws std::runtime_error with
// a text for the user when that fails: the disk is full, or the folder is read-only. Nothing for no bytes.
void require_logo_room(const std::string& storage_path, std::size_t size);

}  // namespace dabspi
