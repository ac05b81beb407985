// Whether receivers will write the images of a carousel as station logos, why not, and what to do about it.
// The library's own rules decide (src/logo_db/logo_rules.h).
#pragma once

#include <string>
#include <vector>

#include "tools/carousel/carousel_objects.h"

namespace dabspi::carousel {

struct image_verdict {
    std::size_t object = 0;     // which one
    bool written = false;       // by receivers
    bool other_size = false;    // than those that they write
    std::uint64_t station = 0;  // ServElemId::val()
    std::string why;            // not, in words
    std::string remedy;         // a sentence, or a command to run; empty: none is needed
};

// One for each image.
std::vector<image_verdict> image_verdicts(const std::vector<carousel_object>& objects,
                                          const described_services& described);

// The command (ImageMagick) that makes a logo of this size of any picture.
std::string logo_command(const std::string& from, unsigned width, unsigned height);

}  // namespace dabspi::carousel
