// What differs between two programme guides, A and B.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/guide/programme_guide.h"

namespace dabspi::compare {

// "missing" is what A has and B has not, "added" the other way round.
enum class difference_kind {
    service_missing,
    service_added,
    service_information_missing,
    service_information_added,
    service_renamed,
    day_missing,
    day_added,
    programme_missing,
    programme_added,
    programme_moved,
    programme_renamed,
    programme_duration,
    description,
    genre,
    logo_missing,
    logo_added,
    logo_picture,
    logo_size,
    logo_name,
};

struct kind_words {
    difference_kind kind;
    const char* name;   // on the command line and in JSON
    const char* topic;  // several kinds share one
    const char* heading;
};

// In the order of the enumeration.
const std::vector<kind_words>& all_kinds();
const kind_words& words_of(difference_kind kind);

struct difference {
    difference_kind kind = difference_kind::service_missing;
    const guide::service* service = nullptr;  // A's where both have it; never null
    std::optional<long> day;                  // local; 1970-01-01 is day 0. None: of the service as a whole
    // Where it is about a programme: on the sides that have it.
    const guide::programme* a = nullptr;
    const guide::programme* b = nullptr;
    std::string text;  // what differs, in words; printable
};

// Points into the two guides, which must outlive it.
struct comparison {
    std::vector<difference> differences;  // by service, kind and time
    std::vector<std::string> said;        // what could not be compared
};

}  // namespace dabspi::compare
