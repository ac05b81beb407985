#include "tools/spi/node_values.h"

#include <algorithm>

#include "src/parse/spi_tags.h"
#include "tools/spi/value_problems.h"

namespace dabspi::spi_object {

namespace {

bool has(const std::vector<problem>& problems, std::initializer_list<problem_code> codes) {
    return std::any_of(problems.begin(), problems.end(), [&](const problem& each) {
        return std::find(codes.begin(), codes.end(), each.code) != codes.end();
    });
}

node_value text_of(byte_view content) {
    return text_value{std::string(content.text()), false};
}

// What the receiver makes of a number with too few bytes.
std::string short_number(byte_view content, const value_context& context) {
    if (!context.read || context.attribute == nullptr) return {};
    if (context.parent == spi::TAG_TIME && context.attribute->tag == spi::TAG_TIME_DURATION) {
        // Bounded by the element, not by the attribute.
        if (context.behind_in_parent >= 2 && context.body.size() >= 2)
            return "takes what follows as the missing bytes: " + std::to_string(context.body.number(0, 2)) +
                   " s";
        return "takes it as 65,535 s";
    }
    if (context.parent == spi::TAG_PROGRAMME) return "takes it as 0xFFFFFF";
    if (context.attribute->type == value_type::enumeration) return "takes it as 255";
    return content.size() < 2 ? "takes it as 65,535" : "";
}

node_value decode_number(byte_view content, std::size_t size, const value_context& context,
                         std::vector<problem>& problems) {
    if (!check_size(content, size, problems, short_number(content, context), "passes over what is too much"))
        return {};
    // The library's 24-bit reading wants a fourth byte in the object.
    if (size == 3 && context.read && context.behind_in_object < 4)
        note(problems, problem_code::number_misread, 0, "a 24-bit number in the last bytes of the object",
             "takes it as 0xFFFFFFFF");
    return content.number(0, size);
}

node_value decode_enumeration(byte_view content, const value_context& context,
                              std::vector<problem>& problems) {
    node_value number = decode_number(content, 1, context, problems);
    const auto* const code = std::get_if<std::uint32_t>(&number);
    if (code != nullptr && enum_text(*context.attribute, static_cast<std::uint8_t>(*code)) == nullptr)
        note(problems, problem_code::enumeration_unknown, 0,
             "the standard has no value " + std::to_string(*code) + " for " + context.attribute->name,
             context.parent == tag::multimedia ? "takes it as no logo type" : "");
    return number;
}

node_value decode_id(byte_view content, const value_context& context, std::vector<problem>& problems) {
    // The library reads the identifier of a service scope up to the end of that element.
    const bool by_parent = context.parent == spi::TAG_SERVICE_SCOPE && context.attribute != nullptr;
    const content_id id = decode_content_id(
        content, by_parent ? context.body.part(0, context.behind_in_parent) : content, problems);
    if (has(problems, {problem_code::content_id_as_text})) return text_of(content);
    if (has(problems, {problem_code::value_too_short})) return {};
    return id;
}

node_value decode_position_list(byte_view content, std::vector<problem>& problems) {
    // Degrees in plain text.
    if (content.size() % 6 != 0) {
        const std::optional<std::vector<position>> written = parse_positions(content.text());
        if (written) {
            note(problems, problem_code::value_in_text, 0,
                 "places are written as text; they have a coding of 6 bytes each");
            return *written;
        }
    }
    std::vector<position> positions = decode_positions(content, problems);
    if (positions.empty()) return {};
    return positions;
}

std::optional<bytes> number_bytes(std::optional<std::uint32_t> number, unsigned size) {
    if (!number || *number >> 8 * size != 0) return std::nullopt;
    bytes out;
    for (unsigned i = size; i-- > 0;)
        out.push_back(static_cast<std::uint8_t>(*number >> 8 * i));
    return out;
}

template <class Value>
std::optional<bytes> coded(const std::optional<Value>& parsed, bytes (*encode)(const Value&)) {
    if (!parsed) return std::nullopt;
    return encode(*parsed);
}

}  // namespace

node_value decode_value(byte_view content, value_type type, const value_context& context,
                        std::vector<problem>& problems) {
    switch (type) {
        case value_type::string:
        case value_type::token_string: return text_of(content);
        case value_type::number16:
        case value_type::seconds: return decode_number(content, 2, context, problems);
        case value_type::number24: return decode_number(content, 3, context, problems);
        case value_type::enumeration: return decode_enumeration(content, context, problems);
        case value_type::content_id: return decode_id(content, context, problems);
        case value_type::positions: return decode_position_list(content, problems);
        case value_type::time: {
            const time_value time = decode_time(content, problems);
            if (has(problems, {problem_code::value_too_short})) return {};
            return time;
        }
        case value_type::ensemble_id: {
            const ensemble_id id = decode_ensemble_id(content, problems);
            if (has(problems, {problem_code::value_too_short})) return {};
            return id;
        }
        case value_type::genre: {
            genre_value genre = decode_genre(content, problems);
            if (has(problems, {problem_code::genre_as_text})) return text_of(content);
            if (has(problems, {problem_code::value_too_short})) return {};
            return genre;
        }
    }
    return {};
}

std::optional<bytes> encode_value(const attribute_entry& attribute, std::string_view text) {
    unsigned number = 0;
    const auto decimal = [&]() -> std::optional<std::uint32_t> {
        if (!parse_digits(text, number)) return std::nullopt;
        return number;
    };
    switch (attribute.type) {
        case value_type::string:
        case value_type::token_string: return bytes(text.begin(), text.end());
        case value_type::number16: return number_bytes(decimal(), 2);
        case value_type::number24: return number_bytes(decimal(), 3);
        case value_type::seconds: return number_bytes(parse_duration(text), 2);
        case value_type::enumeration: {
            const enum_name* const name = find_enum(attribute, text);
            if (name == nullptr) return std::nullopt;
            return bytes{name->code};
        }
        case value_type::time: {
            const std::optional<time_value> time = parse_time(text);
            if (!time) return std::nullopt;
            return encode_time(*time);
        }
        case value_type::content_id: return coded(parse_content_id(text), encode_content_id);
        case value_type::ensemble_id: return coded(parse_ensemble_id(text), encode_ensemble_id);
        case value_type::genre: return coded(parse_genre(text), encode_genre);
        case value_type::positions: return coded(parse_positions(text), encode_positions);
    }
    return std::nullopt;
}

}  // namespace dabspi::spi_object
