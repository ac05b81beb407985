// An ETI recording of any bytes, in any form: every frame lies inside what was read, and no more comes out
// than went in.
#include "fuzz/fuzz_support.h"
#include "tools/air/container/eti_reader.h"
#include "tools/files/content_kind.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace dabspi::air;
    if (size < 1) return 0;
    const auto form = static_cast<eti_form>(data[0] % 3);
    const std::size_t step = data[0] < 128 ? size : 1U + data[0] % 64;
    const byte_view all(data + 1, size - 1);
    dabspi::content_of(all, true, "fuzzed");
    memory_source bytes(all, step);
    input_window window(bytes);
    eti_reader reader(window, form);
    std::size_t given = 0;
    std::uint32_t sum = 0;
    std::uint64_t frames = 0;
    for (frame each; reader.next(each); ++frames) {
        expect(each.index == frames, "frames are numbered");
        expect(each.count < each.count_modulus && each.missing_before < each.count_modulus,
               "counts are in range");
        given += 12 + each.fic.size();
        for (const std::uint8_t byte : each.fic)
            sum += byte;
        for (const sub_channel_bytes& stream : each.sub_channels) {
            given += 4 + stream.bytes.size();
            for (const std::uint8_t byte : stream.bytes)
                sum += byte;
        }
    }
    expect(given <= all.size(), "no byte comes out twice");
    expect(reader.position() <= all.size(), "the place is inside");
    expect(reader.statistics().frames == frames, "frames are counted");
    asm volatile("" : : "r"(sum));
    return 0;
}
