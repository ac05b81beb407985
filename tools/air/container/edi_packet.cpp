#include "tools/air/container/edi_packet.h"

#include <string_view>

#include "tools/air/crc16.h"

namespace dabspi::air {

namespace {

constexpr std::uint32_t kTimeBits = 64;

bool begins_with(byte_view here, std::string_view word) {
    return here.part(0, word.size()).text() == word;
}

edi_unit af_packet_at(byte_view here) {
    const std::uint32_t length = here.number(2, 4);
    // Version 1.0, protocol type T.
    const bool known = here.size() >= kAfHeader && (here[8] & 0x7F) == 0x10 && here[9] == 'T';
    if (!known || length > kMostAfPacket - kAfHeader - kEdiCrc) return {};
    return {edi_kind::af_packet, kAfHeader + length + kEdiCrc};
}

std::size_t pf_header_size(byte_view here) {
    const bool fec = (here[10] & 0x80) != 0;
    const bool addressed = (here[10] & 0x40) != 0;
    return 12 + (fec ? 2U : 0U) + (addressed ? 4U : 0U) + kEdiCrc;
}

edi_unit pf_fragment_at(byte_view here) {
    const std::size_t header = pf_header_size(here);
    if (here.size() < header) return {};
    if (!ends_with_crc16(here.part(0, header))) return {edi_kind::wrong_fragment, 0};
    return {edi_kind::pf_fragment, header + (here.number(10, 2) & 0x3FFF)};
}

}  // namespace

edi_unit edi_at(byte_view here) {
    if (begins_with(here, "AF")) return af_packet_at(here);
    if (begins_with(here, "PF")) return pf_fragment_at(here);
    // File framing: an item `fio_` that holds `time` and `afpf`. Their headers are gone past one by one, so
    // that whatever is inside stands here next.
    if (here.size() < kTagHeader) return {};
    if (begins_with(here, "fio_") || begins_with(here, "afpf")) return {edi_kind::file_framing, kTagHeader};
    if (begins_with(here, "time") && here.number(4, 4) == kTimeBits)
        return {edi_kind::file_framing, kTagHeader + kTimeBits / 8};
    return {};
}

pf_fragment read_pf_fragment(byte_view whole) {
    pf_fragment result;
    result.sequence = static_cast<std::uint16_t>(whole.number(2, 2));
    result.index = whole.number(4, 3);
    result.count = whole.number(7, 3);
    result.fec = (whole[10] & 0x80) != 0;
    if (result.fec) {
        result.chunk_data = whole[12];
        result.filling = whole[13];
    }
    result.payload = whole.part(pf_header_size(whole));
    return result;
}

}  // namespace dabspi::air
