#include "tools/spi/problem.h"

#include <array>

namespace dabspi::spi_object {

namespace {

struct entry {
    problem_code code;
    const char* name;
    severity how_bad;
};

using code = problem_code;
constexpr auto kMalformed = severity::malformed;
constexpr auto kRemark = severity::remark;

constexpr std::array kCatalogue = {
    entry{code::empty_object, "empty-object", kMalformed},
    entry{code::not_an_object, "not-an-object", kMalformed},
    entry{code::several_tops, "several-tops", kMalformed},
    entry{code::length_missing, "length-missing", kMalformed},
    entry{code::length_cut, "length-cut", kMalformed},
    entry{code::length_beyond_parent, "length-beyond-parent", kMalformed},
    entry{code::length_beyond_object, "length-beyond-object", kMalformed},
    entry{code::length_in_last_bytes, "length-in-last-bytes", kRemark},
    entry{code::tag_127, "tag-127", kRemark},
    entry{code::unknown_tag, "unknown-tag", kRemark},
    entry{code::misplaced_element, "misplaced-element", kMalformed},
    entry{code::attribute_after_element, "attribute-after-element", kMalformed},
    entry{code::attribute_twice, "attribute-twice", kMalformed},
    entry{code::text_twice, "text-twice", kMalformed},
    entry{code::nested_too_deep, "nested-too-deep", kMalformed},
    entry{code::too_many_elements, "too-many-elements", kRemark},
    entry{code::subtype_not_read, "subtype-not-read", kRemark},
    entry{code::subtype_and_content_differ, "subtype-and-content-differ", kMalformed},
    entry{code::value_too_short, "value-too-short", kMalformed},
    entry{code::value_too_long, "value-too-long", kMalformed},
    entry{code::reserved_bits, "reserved-bits", kRemark},
    entry{code::enumeration_unknown, "enumeration-unknown", kMalformed},
    entry{code::time_out_of_range, "time-out-of-range", kMalformed},
    entry{code::time_misread, "time-misread", kRemark},
    entry{code::content_id_as_text, "content-id-as-text", kMalformed},
    entry{code::content_id_without_ensemble, "content-id-without-ensemble", kMalformed},
    entry{code::number_misread, "number-misread", kRemark},
    entry{code::genre_as_text, "genre-as-text", kMalformed},
    entry{code::genre_scheme_unknown, "genre-scheme-unknown", kMalformed},
    entry{code::position_out_of_range, "position-out-of-range", kMalformed},
    entry{code::value_in_text, "value-in-text", kRemark},
    entry{code::text_not_utf8, "text-not-utf8", kMalformed},
    entry{code::text_control_character, "text-control-character", kMalformed},
    entry{code::token_undefined, "token-undefined", kMalformed},
    entry{code::token_before_table, "token-before-table", kMalformed},
    entry{code::token_in_plain_string, "token-in-plain-string", kMalformed},
    entry{code::token_twice, "token-twice", kMalformed},
    entry{code::token_empty, "token-empty", kRemark},
    entry{code::token_too_long, "token-too-long", kRemark},
    entry{code::token_not_a_token, "token-not-a-token", kMalformed},
    entry{code::text_too_long, "text-too-long", kRemark},
};

constexpr bool in_order() {
    for (std::size_t i = 0; i < kCatalogue.size(); ++i)
        if (static_cast<std::size_t>(kCatalogue[i].code) != i) return false;
    return true;
}
static_assert(in_order(), "the catalogue is indexed by the code");

const entry& entry_of(problem_code of) {
    return kCatalogue.at(static_cast<std::size_t>(of));
}

}  // namespace

const char* code_name(problem_code of) {
    return entry_of(of).name;
}
severity severity_of(problem_code of) {
    return entry_of(of).how_bad;
}

}  // namespace dabspi::spi_object
