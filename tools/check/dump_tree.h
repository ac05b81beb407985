// A dump as receivers lay it out on disk: one carousel's objects in a folder, or a tree with a folder for
// each ensemble and below it one for each service or carousel. Which it is shows from the names of the
// folders and from what the objects say themselves.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/inspect/inspected.h"
#include "tools/spi/tree.h"

namespace dabspi::check {

// An SPI object or an image.
struct dumped_file {
    inspected_body body;
    std::vector<std::string> folders;  // between the dump's folder and the file
    spi_object::object tree;           // of an SPI object
    std::size_t carousel = 0;          // in dumped_ensemble::carousels

    bool is_image() const { return body.kind == body_kind::image; }
};

struct dumped_carousel {
    std::string folder;                    // "" for the ensemble's own
    std::optional<std::uint32_t> service;  // that the folder's name says, with 16 or 32 bits
};

struct dumped_ensemble {
    std::string folder;  // the path
    std::size_t depth = 0;
    std::vector<dumped_file> files;
    std::vector<dumped_carousel> carousels;  // at least one
    std::optional<std::uint16_t> named;      // the ensemble that a folder's name says
    std::string named_by;                    // that name
};

// By the order of their folders. `path` is the folder that was given.
std::vector<dumped_ensemble> ensembles_of(const std::string& path, std::vector<dumped_file> files);

}  // namespace dabspi::check
