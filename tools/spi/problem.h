// What can be wrong, or misunderstood, in an SPI object: a catalogue of stable codes. Pure data.
//
// A problem makes an object malformed (severity::malformed: it is not what ETSI TS 102 371 lays down), or is
// a remark: well formed, but the receiver takes it otherwise than the standard means it, or it is likely to
// be a mistake.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace dabspi::spi_object {

enum class severity { malformed, remark };

enum class problem_code {
    // the tree
    empty_object,
    not_an_object,
    several_tops,
    length_missing,
    length_cut,
    length_beyond_parent,
    length_beyond_object,
    length_in_last_bytes,
    tag_127,
    unknown_tag,
    misplaced_element,
    attribute_after_element,
    attribute_twice,
    text_twice,
    nested_too_deep,
    too_many_elements,
    subtype_not_read,
    subtype_and_content_differ,
    // values
    value_too_short,
    value_too_long,
    reserved_bits,
    enumeration_unknown,
    time_out_of_range,
    time_misread,
    content_id_as_text,
    content_id_without_ensemble,
    number_misread,
    genre_as_text,
    genre_scheme_unknown,
    position_out_of_range,
    value_in_text,
    // texts and tokens
    text_not_utf8,
    text_control_character,
    token_undefined,
    token_before_table,
    token_in_plain_string,
    token_twice,
    token_empty,
    token_too_long,
    token_not_a_token,
    text_too_long,
};

// "length-beyond-parent": the code's name in JSON and elsewhere; it does not change.
const char* code_name(problem_code code);
severity severity_of(problem_code code);

struct problem {
    problem_code code;
    std::uint32_t offset;  // of the byte concerned
    std::string text;      // what is wrong, without a full stop
    std::string receiver;  // how the receiver takes it; empty: as the standard means it
};

}  // namespace dabspi::spi_object
