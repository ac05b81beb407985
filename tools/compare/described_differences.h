// What two services, or two programmes, say differently: names, descriptions, genres, pictures. In words;
// nothing where they say the same. Languages, keywords and links are not compared.
#pragma once

#include <string>
#include <vector>

#include "tools/compare/difference.h"

namespace dabspi::compare {

struct said_difference {
    difference_kind kind = difference_kind::description;
    std::string text;
};

// "the medium name is \"Two\" instead of \"Three\"".
std::string name_difference(const guide::texts& a, const guide::texts& b);

std::string description_difference(const guide::texts& a, const guide::texts& b);

std::string genre_difference(const guide::described& a, const guide::described& b);

// Images are compared where both sides have any; `uncompared` counts the logos of which only one side's image
// is known.
struct picture_rules {
    bool both_have_images = false;
    std::size_t uncompared = 0;
};
std::vector<said_difference> picture_differences(const guide::described& a, const guide::described& b,
                                                 picture_rules& rules);

}  // namespace dabspi::compare
