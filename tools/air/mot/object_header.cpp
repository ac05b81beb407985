#include "tools/air/mot/object_header.h"

#include <bitset>
#include <utility>

#include "tools/text/ebu_latin.h"
#include "tools/text/utf8.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kHeaderCore = 7;
constexpr std::uint8_t kEbuLatinCharset = 0;
constexpr std::uint8_t kUtf8Charset = 15;

void read_name(byte_view value, object_header& to) {
    if (value.empty()) return;
    to.name_charset = static_cast<std::uint8_t>(value[0] >> 4);
    to.name = name_as_utf8(to.name_charset, value.part(1));
}

void read_expiration(byte_view value, object_header& to) {
    to.expires = read_mot_time(value);
    to.expires_after = std::nullopt;
    if (!to.expires && !value.empty()) to.expires_after = value[0];
}

void read_parameter(const mot_parameter& parameter, object_header& to) {
    const byte_view value = parameter.value;
    switch (static_cast<header_parameter>(parameter.id)) {
        case header_parameter::expiration: read_expiration(value, to); break;
        case header_parameter::priority:
            if (!value.empty()) to.priority = value[0];
            break;
        case header_parameter::content_name: read_name(value, to); break;
        case header_parameter::unique_body_version:
            if (value.size() >= 4) to.unique_body_version = value.number(0, 4);
            break;
        case header_parameter::mime_type: to.mime_type = name_as_utf8(kUtf8Charset, value); break;
        case header_parameter::compression_type:
            if (!value.empty()) to.compression = value[0];
            break;
        case header_parameter::ca_info: to.scrambled = true; break;
        case header_parameter::scope_start: to.scope_start = read_mot_time(value); break;
        case header_parameter::scope_end: to.scope_end = read_mot_time(value); break;
        case header_parameter::scope_id: to.scope_id.assign(value.begin(), value.end()); break;
        default: break;
    }
}

bool read_parameters(byte_view from, object_header& to) {
    while (const auto parameter = take_parameter(from))
        read_parameter(*parameter, to);
    return from.empty();
}

}  // namespace

std::size_t read_object_header(byte_view from, object_header& read) {
    read = object_header();
    if (from.size() < kHeaderCore) return 0;
    read.body_size = from.number(0, 4) >> 4;
    const std::size_t size = from.number(3, 3) >> 7 & 0x1FFF;
    read.content_type = static_cast<std::uint8_t>(from.number(5, 1) >> 1 & 0x3F);
    read.content_subtype = static_cast<std::uint16_t>(from.number(5, 2) & 0x1FF);
    if (size < kHeaderCore || size > from.size()) return 0;
    const byte_view parameters = from.part(kHeaderCore, size - kHeaderCore);
    if (!read_parameters(parameters, read)) return 0;
    read.parameters.assign(parameters.begin(), parameters.end());
    return size;
}

void apply_update(object_header& header, const object_header& update) {
    read_parameters(update.parameters, header);
    std::bitset<64> replaced;
    for (const mot_parameter& newer : parameters_of(update.parameters))
        replaced.set(newer.id);
    std::vector<std::uint8_t> all;
    byte_view left = header.parameters;
    for (byte_view from = left; const auto parameter = take_parameter(left); from = left)
        if (!replaced[parameter->id]) all.insert(all.end(), from.begin(), left.begin());
    all.insert(all.end(), update.parameters.begin(), update.parameters.end());
    header.parameters = std::move(all);
}

std::string name_as_utf8(std::uint8_t charset, byte_view text) {
    if (charset == kEbuLatinCharset) return ebu_latin_to_utf8(text.text());
    if (charset == kUtf8Charset && is_well_formed_utf8(text.text())) return std::string(text.text());
    return iso_8859_1_to_utf8(text.text());
}

}  // namespace dabspi::air
