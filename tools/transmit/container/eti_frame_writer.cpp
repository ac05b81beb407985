#include "tools/transmit/container/eti_frame_writer.h"

#include "tools/air/crc16.h"

namespace dabspi::transmit {

namespace {

constexpr unsigned kNoError = 0xFF;
constexpr unsigned kModeOne = 1;
constexpr std::uint32_t kEvenSync = 0x073AB6;
constexpr std::uint32_t kOddSync = 0xF8C549;
constexpr std::uint32_t kNoTime = 0xFFFFFFFF;

}  // namespace

void append_eti_frame(bytes& to, const air::frame& of) {
    std::size_t words = of.sub_channels.size() + 1 + of.fic.size() / 4;
    for (const air::sub_channel_bytes& each : of.sub_channels)
        words += each.bytes.size() / 4;
    append_number(to, kNoError, 1);
    append_number(to, of.index % 2 == 0 ? kEvenSync : kOddSync, 3);
    const std::size_t header = to.size();
    append_number(to, of.count % 250U, 1);
    append_number(to, 0x80 | of.sub_channels.size(), 1);
    append_number(to, of.count % 8U << 13 | kModeOne << 11 | words, 2);
    for (const air::sub_channel_bytes& each : of.sub_channels)
        append_number(to,
                      std::uint64_t{each.id} << 26 | std::uint64_t{each.start} << 16 |
                          std::uint64_t{each.tpl} << 10 | each.bytes.size() / 8,
                      4);
    append_number(to, 0, 2);  // MNSC: nothing is signalled
    append_number(to, air::crc16(byte_view(to).part(header)), 2);
    const std::size_t body = to.size();
    append_bytes(to, of.fic);
    for (const air::sub_channel_bytes& each : of.sub_channels)
        append_bytes(to, each.bytes);
    append_number(to, air::crc16(byte_view(to).part(body)), 2);
    append_number(to, 0xFFFF, 2);
    append_number(to, kNoTime, 4);
}

}  // namespace dabspi::transmit
