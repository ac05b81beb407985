#include "tools/transmit/container/edi_packet_writer.h"

#include <string_view>

#include "tools/air/crc16.h"

namespace dabspi::transmit {

namespace {

constexpr unsigned kWithCrcVersionOne = 0x90;
constexpr unsigned kWithFic = 0x40;
constexpr unsigned kErrorFree = 0xFF;
constexpr unsigned kMode1 = 1;
constexpr std::size_t kPacketFields = 10;
constexpr std::size_t kStreamFields = 3;

void append_text(bytes& to, std::string_view text) {
    to.insert(to.end(), text.begin(), text.end());
}

void append_item(bytes& to, std::string_view name, std::size_t size) {
    append_text(to, name);
    append_number(to, 8 * size, 4);
}

}  // namespace

void append_edi_packet(bytes& to, const air::frame& of) {
    const std::size_t begin = to.size();
    append_text(to, "AF");
    append_number(to, 0, 4);  // the length, filled in below
    append_number(to, of.index & 0xFFFF, 2);
    append_number(to, kWithCrcVersionOne, 1);
    append_text(to, "T");

    append_item(to, "*ptr", 8);
    append_text(to, "DETI");
    append_number(to, 0, 4);
    constexpr std::size_t kDetiFields = 6;
    append_item(to, "deti", kDetiFields + of.fic.size());
    append_number(to, kWithFic | of.count / 250U, 1);
    append_number(to, of.count % 250U, 1);
    append_number(to, kErrorFree, 1);
    append_number(to, kMode1 << 6 | of.count % 8U << 3, 1);
    append_number(to, 0, 2);  // MNSC
    append_bytes(to, of.fic);
    for (std::size_t i = 0; i < of.sub_channels.size(); ++i) {
        const air::sub_channel_bytes& each = of.sub_channels[i];
        const char name[] = {'e', 's', 't', static_cast<char>(i + 1)};
        append_item(to, {name, sizeof name}, kStreamFields + each.bytes.size());
        append_number(
            to, std::uint64_t{each.id} << 18 | std::uint64_t{each.start} << 8 | std::uint64_t{each.tpl} << 2,
            kStreamFields);
        append_bytes(to, each.bytes);
    }
    const std::size_t length = to.size() - begin - kPacketFields;
    for (unsigned i = 0; i < 4; ++i)
        to[begin + 2 + i] = static_cast<std::uint8_t>(length >> 8 * (3 - i));
    append_number(to, air::crc16(byte_view(to).part(begin)), 2);
}

}  // namespace dabspi::transmit
