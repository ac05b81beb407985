#include "tools/air/container/container_form.h"

#include <algorithm>
#include <array>

#include "tools/air/container/edi_frame.h"
#include "tools/air/container/edi_packet.h"
#include "tools/air/container/eti_frame.h"

namespace dabspi::air {

namespace {

bool sync_at(byte_view in, std::size_t at) {
    return at + 3 <= in.size() && is_eti_sync(in.begin() + at);
}

bool is_capture(byte_view first) {
    constexpr std::array<std::uint32_t, 5> kMagic = {0xD4C3B2A1, 0xA1B2C3D4, 0x4D3CB2A1, 0xA1B23C4D,
                                                     0x0A0D0D0A};
    return first.size() >= 4 && std::find(kMagic.begin(), kMagic.end(), first.number(0, 4)) != kMagic.end();
}

bool frame_fits(byte_view in, std::size_t begin, std::size_t size) {
    eti_frame frame;
    read_eti_frame(in.part(begin, size), frame);
    return frame.fits;
}

// A frame from `begin` on that the next one confirms, or the end of the input.
bool frame_at(byte_view in, bool whole, std::size_t begin, std::size_t size, std::size_t prefix) {
    const std::size_t next_sync = begin + size + prefix + 1;
    if (next_sync + 3 <= in.size()) return sync_at(in, next_sync);
    return whole && frame_fits(in, begin, size);
}

// The one that has a synchronisation word at `sync`.
std::optional<container_form> eti_at(byte_view in, bool whole, std::size_t sync) {
    const std::size_t begin = sync - 1;
    // A length that leads to the next frame says more than a frame at the distance of raw ones.
    const std::size_t length = begin < 2 ? 0 : in[begin - 2] | std::size_t{in[begin - 1]} << 8;
    if (length >= kEtiFrameStart && length <= kMostEtiFrame && frame_at(in, whole, begin, length, 2))
        return begin == 6 ? container_form::framed_eti : container_form::streamed_eti;
    if (frame_at(in, false, begin, kRawEtiFrame, 0)) return container_form::raw_eti;
    return std::nullopt;
}

bool is_edi_at(byte_view here) {
    const edi_unit unit = edi_at(here);
    if (unit.kind == edi_kind::pf_fragment) return true;
    if (unit.kind != edi_kind::af_packet || unit.size > here.size()) return false;
    const bool with_crc = (here[8] & 0x80) != 0;
    const byte_view behind = here.part(unit.size);
    return with_crc ? edi_frames::is_intact(here.part(0, unit.size))
                    : edi_at(behind).kind != edi_kind::nothing;
}

}  // namespace

std::optional<container_form> form_of(byte_view first, bool whole) {
    if (is_capture(first)) return container_form::capture;
    // At the very beginning the header of a packet is enough.
    if (edi_at(first).kind == edi_kind::af_packet || edi_at(first).kind == edi_kind::pf_fragment ||
        first.part(0, 4).text() == "fio_")
        return container_form::edi;
    std::size_t checked = 0;  // bytes that CRCs were computed over: places that look like packets are few
    for (std::size_t at = 0; at < first.size(); ++at) {
        const std::uint8_t byte = first[at];
        if (at != 0 && (byte == 0x07 || byte == 0xF8) && sync_at(first, at)) {
            if (const auto form = eti_at(first, whole, at)) return form;
        }
        if ((byte == 'A' || byte == 'P') && first[at + 1] == 'F' && checked < 8 * first.size()) {
            if (is_edi_at(first.part(at))) return container_form::edi;
            checked += edi_at(first.part(at)).size;
        }
    }
    // One raw frame is confirmed by nothing but the end.
    const bool single =
        whole && first.size() < kRawEtiFrame + 4 && sync_at(first, 1) && frame_fits(first, 0, kRawEtiFrame);
    return single ? std::optional(container_form::raw_eti) : std::nullopt;
}

const char* form_words(container_form form) {
    switch (form) {
        case container_form::raw_eti: return "ETI(NI), raw";
        case container_form::streamed_eti: return "ETI(NI), streamed";
        case container_form::framed_eti: return "ETI(NI), framed";
        case container_form::edi: return "EDI";
        case container_form::capture: break;
    }
    return "EDI in a packet capture";
}

}  // namespace dabspi::air
