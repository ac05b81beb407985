// Content names and the names under which receivers save them. A content name may hold what no file name can:
// receivers put _ for it, make folders of slashes, keep what follows the last slash only, and may put time
// and transport identifier in front. Which of these a dump was made with shows by how many of its images then
// bear an announced name. Pure; work grows linearly with the number of names.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dabspi::check {

struct saved_image {
    std::string path;       // below the folder of the dump, with slashes
    std::string size = {};  // "128x128"; empty: not known
};

struct announced_name {
    std::string name;
    std::string size = {};
};

struct matched_names {
    std::vector<std::optional<std::string>>
        names;                     // of each image the content name that it was announced under
    std::string said;              // the rule, for people; empty where names are as announced
    std::size_t prefix_words = 0;  // that most files bear in front of the name; 0: no prefix
    std::set<std::string>
        cannot_tell;  // announced names that the rule gives the same file name as another one
};

matched_names match_names(const std::vector<saved_image>& images,
                          const std::vector<announced_name>& announced);

// The path without so many words in front of its last component; as it is where they are no prefix.
std::string without_prefix(const std::string& path, std::size_t words);

}  // namespace dabspi::check
