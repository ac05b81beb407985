// Content IDs and ensemble IDs: bytes, dab: URIs, and how the receiver takes them.

#include <algorithm>
#include <cstdio>

#include "tools/spi/receiver_values.h"
#include "tools/spi/value_problems.h"
#include "tools/spi/values.h"

namespace dabspi::spi_object {

namespace {

constexpr std::uint8_t kEnsembleFlag = 0x40;
constexpr std::uint8_t kXpadFlag = 0x20;
constexpr std::uint8_t kLongSidFlag = 0x10;

// A URI where the coding belongs: "http://...", "fm:ce1.c221.09580". A coding can happen to be all letters,
// too (SCIdS 15 and "O" are one byte): what has exactly the length that its flags ask for is none.
bool looks_like_text(byte_view from) {
    return from.size() > 4 &&
           std::all_of(from.begin(), from.end(), [](std::uint8_t b) { return b >= 0x20 && b < 0x7F; }) &&
           from.text().find(':') != std::string_view::npos;
}

std::string receiver_reading(byte_view from) {
    char ensemble[8];
    std::snprintf(ensemble, sizeof ensemble, "%X", unsigned{receiver_ensemble(from)});
    return "reads service " + receiver_service_text(receiver_service(from)) + " on ensemble " + ensemble;
}

unsigned country_of(const content_id& value) {
    return value.long_sid ? value.sid >> 20 & 0xF : value.sid >> 12 & 0xF;
}

std::vector<std::string_view> split(std::string_view text, char at) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(at);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

}  // namespace

bool operator==(const content_id& a, const content_id& b) {
    return a.ensemble_coded == b.ensemble_coded && a.ecc == b.ecc && a.eid == b.eid && a.sid == b.sid &&
           a.long_sid == b.long_sid && a.scids == b.scids && a.xpad == b.xpad;
}

content_id decode_content_id(byte_view from, std::vector<problem>& problems) {
    return decode_content_id(from, from, problems);
}

content_id decode_content_id(byte_view from, byte_view receiver_sees, std::vector<problem>& problems) {
    content_id value;
    const std::uint8_t flags = from[0];
    value.ensemble_coded = (flags & kEnsembleFlag) != 0;
    value.long_sid = (flags & kLongSidFlag) != 0;
    value.scids = flags & 0x0F;
    std::size_t at = 1;
    if (value.ensemble_coded) {
        value.ecc = from[1];
        value.eid = static_cast<std::uint16_t>(from.number(2, 2));
        at = 4;
    }
    const std::size_t sid_size = value.long_sid ? 4 : 2;
    value.sid = from.number(at, sid_size);
    at += sid_size;
    if ((flags & kXpadFlag) != 0) value.xpad = from[at++] & 0x1F;

    if (from.size() != at && looks_like_text(from)) {
        note(problems, problem_code::content_id_as_text, 0,
             "the text \"" + std::string(from.text().substr(0, 60)) + "\" stands where a content ID belongs",
             receiver_reading(receiver_sees));
        return value;
    }
    if (!value.ensemble_coded)
        note(problems, problem_code::content_id_without_ensemble, 0, "the content ID leaves out ECC and EId",
             "expects them all the same, and " + receiver_reading(receiver_sees));
    if (!check_size(from, at, problems,
                    (receiver_sees.size() > from.size() ? "takes what follows for the missing bytes, and "
                                                        : "takes missing bytes as 255, and ") +
                        receiver_reading(receiver_sees),
                    "passes over what is too much"))
        return value;
    if ((flags & 0x80) != 0) note(problems, problem_code::reserved_bits, 0, "a reserved bit is set");
    return value;
}

bytes encode_content_id(const content_id& value) {
    bytes out = {static_cast<std::uint8_t>((value.ensemble_coded ? kEnsembleFlag : 0) |
                                           (value.xpad ? kXpadFlag : 0) |
                                           (value.long_sid ? kLongSidFlag : 0) | (value.scids & 0x0F))};
    const auto put = [&out](std::uint32_t number, unsigned count) {
        while (count-- > 0)
            out.push_back(static_cast<std::uint8_t>(number >> 8 * count));
    };
    if (value.ensemble_coded) {
        put(value.ecc, 1);
        put(value.eid, 2);
    }
    put(value.sid, value.long_sid ? 4 : 2);
    if (value.xpad) put(*value.xpad & 0x1Fu, 1);
    return out;
}

std::string content_id_text(const content_id& value) {
    char text[64];
    std::snprintf(text, sizeof text, value.long_sid ? "dab:%x%02x.%04x.%08x.%x" : "dab:%x%02x.%04x.%04x.%x",
                  country_of(value), unsigned{value.ecc}, unsigned{value.eid}, unsigned{value.sid},
                  unsigned{value.scids});
    std::string result = text;
    if (value.xpad) {
        std::snprintf(text, sizeof text, ".%03x", unsigned{*value.xpad});
        result += text;
    }
    return result;
}

std::optional<content_id> parse_content_id(std::string_view text) {
    constexpr std::string_view kScheme = "dab:";
    if (text.substr(0, kScheme.size()) != kScheme) return std::nullopt;
    const auto parts = split(text.substr(kScheme.size()), '.');
    if (parts.size() != 4 && parts.size() != 5) return std::nullopt;
    std::uint32_t country = 0;
    std::uint32_t eid = 0;
    std::uint32_t sid = 0;
    std::uint32_t scids = 0;
    std::uint32_t xpad = 0;
    const bool read = parts[0].size() == 3 && parse_hex(parts[0], country) && parts[1].size() == 4 &&
                      parse_hex(parts[1], eid) && (parts[2].size() == 4 || parts[2].size() == 8) &&
                      parse_hex(parts[2], sid) && parts[3].size() == 1 && parse_hex(parts[3], scids);
    if (!read || (parts.size() == 5 && (!parse_hex(parts[4], xpad) || xpad > 0x1F))) return std::nullopt;
    content_id value;
    value.ecc = static_cast<std::uint8_t>(country & 0xFF);
    value.eid = static_cast<std::uint16_t>(eid);
    value.sid = sid;
    value.long_sid = parts[2].size() == 8;
    value.scids = static_cast<std::uint8_t>(scids);
    if (parts.size() == 5) value.xpad = static_cast<std::uint8_t>(xpad);
    if (country_of(value) != country >> 8) return std::nullopt;
    return value;
}

bool operator==(const ensemble_id& a, const ensemble_id& b) {
    return a.ecc == b.ecc && a.eid == b.eid;
}

ensemble_id decode_ensemble_id(byte_view from, std::vector<problem>& problems) {
    check_size(from, 3, problems, {}, {});
    return {from[0], static_cast<std::uint16_t>(from.number(1, 2))};
}

bytes encode_ensemble_id(const ensemble_id& value) {
    return {value.ecc, static_cast<std::uint8_t>(value.eid >> 8), static_cast<std::uint8_t>(value.eid)};
}

std::string ensemble_id_text(const ensemble_id& value) {
    char text[16];
    std::snprintf(text, sizeof text, "%02x.%04x", unsigned{value.ecc}, unsigned{value.eid});
    return text;
}

std::optional<ensemble_id> parse_ensemble_id(std::string_view text) {
    const auto parts = split(text, '.');
    std::uint32_t ecc = 0;
    std::uint32_t eid = 0;
    if (parts.size() != 2 || parts[0].size() > 3 || parts[0].size() < 2 || parts[1].size() != 4 ||
        !parse_hex(parts[0], ecc) || !parse_hex(parts[1], eid))
        return std::nullopt;
    if (parts[0].size() == 3 && ecc >> 8 != eid >> 12) return std::nullopt;
    return ensemble_id{static_cast<std::uint8_t>(ecc & 0xFF), static_cast<std::uint16_t>(eid)};
}

}  // namespace dabspi::spi_object
