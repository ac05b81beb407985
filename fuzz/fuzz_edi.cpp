// EDI of any bytes, one packet after another or in a packet capture. The checksums of what looks like a
// fragment are made right, and those of packets waived, so that what is behind them is reached.
#include <vector>

#include "fuzz/fuzz_support.h"
#include "testkit/multiplex/checksum.h"
#include "tools/air/container/capture_reader.h"
#include "tools/air/container/edi_reader.h"

namespace {

using namespace dabspi::air;

void make_right(std::vector<std::uint8_t>& all) {
    for (std::size_t i = 0; i + 22 < all.size(); ++i) {
        if (all[i] == 'A' && all[i + 1] == 'F') all[i + 8] &= 0x7F;
        if (all[i] != 'P' || all[i + 1] != 'F') continue;
        const std::size_t header =
            12 + ((all[i + 10] & 0x80) != 0 ? 2U : 0U) + ((all[i + 10] & 0x40) != 0 ? 4U : 0U);
        const auto begin = all.begin() + static_cast<std::ptrdiff_t>(i);
        const std::uint16_t crc =
            multiplex_builder::crc16({begin, begin + static_cast<std::ptrdiff_t>(header)});
        all[i + header] = static_cast<std::uint8_t>(crc >> 8);
        all[i + header + 1] = static_cast<std::uint8_t>(crc);
    }
}

void read_all(frame_source& from) {
    std::uint64_t frames = 0;
    std::uint32_t sum = 0;
    for (frame each; from.next(each); ++frames) {
        expect(each.index == frames && each.count < each.count_modulus, "frames are numbered");
        for (const std::uint8_t byte : each.fic)
            sum += byte;
        for (const sub_channel_bytes& stream : each.sub_channels)
            for (const std::uint8_t byte : stream.bytes)
                sum += byte;
    }
    expect(from.statistics().frames == frames, "frames are counted");
    asm volatile("" : : "r"(sum));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    std::vector<std::uint8_t> all(data + 1, data + size);
    if ((data[0] & 1) != 0) make_right(all);
    memory_source bytes(all, (data[0] & 4) != 0 ? 1U + data[0] / 8U : all.size() + 1);
    if ((data[0] & 2) == 0) {
        input_window window(bytes);
        edi_reader reader(window);
        read_all(reader);
        return 0;
    }
    try {
        capture_reader reader(bytes, "");
        read_all(reader);
    } catch (const std::runtime_error&) {  // no capture, or a link type that is not read
    }
    return 0;
}
