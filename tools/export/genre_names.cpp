#include "tools/export/genre_names.h"

#include <map>

namespace dabspi {

namespace {

constexpr std::uint8_t kContent = 3;  // ContentCS; the other schemes say how something is made, or for whom

struct named_genre {
    const char* name;
    std::map<std::uint8_t, const char*> below;
};

const std::map<std::uint8_t, named_genre>& content_genres() {
    static const std::map<std::uint8_t, named_genre> all = {
        {1,
         {"Non-fiction",
          {{1, "News"},
           {2, "Religion and philosophies"},
           {3, "General non-fiction"},
           {4, "Arts"},
           {5, "Humanities"},
           {6, "Sciences"}}}},
        {2, {"Sports", {}}},
        {3, {"Leisure and hobbies", {}}},
        {4, {"Fiction", {}}},
        {5, {"Amusement and entertainment", {}}},
        {6,
         {"Music",
          {{1, "Classical music"},
           {2, "Jazz"},
           {3, "Background music"},
           {4, "Pop and rock"},
           {5, "Blues, rhythm and blues, soul, gospel"},
           {6, "Country and western"},
           {7, "Rap, hip hop, reggae"},
           {8, "Electronic, club, urban, dance"},
           {9, "World, traditional, ethnic, folk"},
           {10, "Hit charts, song requests"},
           {11, "Children's songs"}}}},
        {7, {"Interactive games", {}}},
    };
    return all;
}

}  // namespace

std::string genre_name(const spi_object::genre_value& of) {
    if (of.scheme != kContent || of.levels.empty()) return spi_object::genre_text(of);
    const auto first = content_genres().find(of.levels[0]);
    if (first == content_genres().end()) return spi_object::genre_text(of);
    std::string name = first->second.name;
    if (of.levels.size() > 1) {
        const auto second = first->second.below.find(of.levels[1]);
        if (second != first->second.below.end()) name += std::string(": ") + second->second;
    }
    return name;
}

}  // namespace dabspi
