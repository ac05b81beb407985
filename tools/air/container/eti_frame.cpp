#include "tools/air/container/eti_frame.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kFixedHeader = 8;    // SYNC and FC
constexpr std::size_t kEndOfHeader = 4;    // MNSC and CRC
constexpr std::size_t kBehindStreams = 8;  // EOF and TIST

}  // namespace

void read_eti_frame(byte_view whole, eti_frame& to) {
    to.fits = false;
    if (whole.size() < kFixedHeader + kEndOfHeader) return;
    const std::uint8_t* const at = whole.begin();
    to.error_level = at[0];
    to.count = at[4];
    const bool with_fic = (at[5] & 0x80) != 0;
    to.streams = at[5] & 0x7F;
    const unsigned mode = at[6] >> 3 & 3;
    const std::size_t field = static_cast<std::size_t>(at[6] & 7) << 8 | at[7];
    const std::size_t body = kFixedHeader + 4 * to.streams + kEndOfHeader;
    if (whole.size() < body) return;

    std::size_t offset = body;
    const std::size_t fic_size = !with_fic ? 0 : mode == 3 ? 128 : 96;
    to.fic = whole.part(offset, fic_size);
    offset += fic_size;
    for (std::size_t i = 0; i < to.streams; ++i) {
        const std::uint8_t* const stc = at + kFixedHeader + 4 * i;
        eti_stream& stream = to.stream[i];
        stream.id = static_cast<std::uint8_t>(stc[0] >> 2);
        stream.start = static_cast<std::uint16_t>((stc[0] & 3) << 8 | stc[1]);
        stream.tpl = static_cast<std::uint8_t>(stc[2] >> 2);
        const std::size_t size = 8 * (static_cast<std::size_t>(stc[2] & 3) << 8 | stc[3]);
        stream.bytes = whole.part(offset, size);
        offset += size;
    }
    if (offset > whole.size()) return;
    to.header = whole.part(4, body - 4);
    to.body = offset + 2 <= whole.size() ? whole.part(body, offset + 2 - body) : byte_view();
    to.length = offset + kBehindStreams;
    to.length_agrees = to.length == 4 * (field + 4);
    to.fits = true;
}

}  // namespace dabspi::air
