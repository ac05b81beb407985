// A carousel: the input is a row of data groups, made of a few bytes each (whose segment, which type, how
// long), or whole entities. Memory stays within its bound, every byte on air is somebody's, and what is
// handed on has the size that its header says.
#include <cstdint>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "testkit/carousel/mot_carousel.h"
#include "tools/air/mot/carousel.h"

namespace {

using namespace dabspi::air;
namespace kit = carousel_kit;

struct objects final : object_sink {
    void object(const mot_object& received) override {
        expect(received.body != nullptr && received.header.name.has_value(), "a body and a name");
        expect(!received.header.scrambled, "not scrambled");
        expect(received.was_compressed || received.body->size() == received.header.body_size,
               "its header's size");
        expect(received.body->size() <= 20'000, "within the limit of what is unpacked");
        ++count;
        news += received.is_new ? 1 : 0;
    }
    std::uint64_t count = 0;
    std::uint64_t news = 0;
};

struct input {
    const std::uint8_t* data;
    std::size_t size;
    unsigned byte() {
        if (size == 0) return 0;
        --size;
        return *data++;
    }
    kit::bytes bytes(std::size_t count) {
        const std::size_t taken = std::min(count, size);
        kit::bytes all(data, data + taken);
        data += taken;
        size -= taken;
        return all;
    }
};

constexpr unsigned kTypes[] = {3, 4, 5, 6, 7, 4, 1, 9};

// The groups of one step.
std::vector<kit::bytes> groups_of(input& from) {
    const unsigned step = from.byte();
    const unsigned type = kTypes[step & 7];
    const unsigned id = from.byte() & 7;
    switch (step >> 3 & 3) {
        case 0: {  // one segment
            const unsigned number = from.byte();
            const std::size_t length = from.byte();
            return {kit::segment_group(type, id, number == 0xFF ? 32767 : number & 7, (number & 8) != 0,
                                       from.bytes(length))};
        }
        case 1: {  // an entity as it is
            const std::size_t length = from.byte() * 4;
            const std::size_t segment = 16 + from.byte();
            return kit::segment_groups(type, id, from.bytes(length), segment);
        }
        case 2: {  // a directory or a header of objects, and their bodies
            std::vector<kit::object> all(1 + (step >> 5));
            for (kit::object& each : all) {
                each.transport_id = from.byte() & 7;
                each.content_type = from.byte() & 7;
                each.name = std::string(1, static_cast<char>(from.byte()));
                each.body = from.bytes(from.byte());
                if ((id & 1) != 0) each.body = kit::gzip(each.body);
                const unsigned parameter = from.byte();
                each.more_parameters = kit::parameter(parameter & 0x3F, from.bytes(parameter >> 6));
            }
            return (id & 2) != 0 ? kit::header_round(all, 16 + from.byte())
                                 : kit::directory_round(id, all, 16 + from.byte(), (id & 4) != 0);
        }
        default: return {from.bytes(from.byte())};  // a group as it is
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    input from{data, size};
    const unsigned settings = from.byte();
    carousel_limits limits;
    limits.memory = (settings & 2) != 0 ? 6'000 : 60'000;
    limits.unlisted = limits.memory / 4;
    limits.unpacked = 20'000;
    limits.directory = limits.memory / 4;
    limits.objects = 6;
    limits.gone_objects = 3;
    limits.directories = 3;
    objects sink;
    carousel played(sink, (settings & 1) != 0 ? delivery::once : delivery::every, limits);
    std::uint64_t frame = 0;
    for (int step = 0; step < 64 && from.size != 0; ++step) {
        if ((settings & 4) != 0 && step % 8 == 7) frame += 150'001;
        for (const kit::bytes& group : groups_of(from))
            played.take(group, frame++);
        // Headers of one directory may stand beyond it until the next segment.
        if (step % 8 == 0) expect(played.statistics().memory <= limits.memory + 40'000, "memory is bounded");
    }
    played.finish();
    const carousel_statistics all = played.statistics();
    std::uint64_t bytes = all.directory_bytes + all.other_bytes;
    for (const object_statistics& object : all.objects)
        bytes += object.bytes_on_air;
    expect(bytes <= all.counts.bytes, "no byte is counted twice");
    expect(all.gone.size() <= 3 && all.directories.size() <= 3 && all.objects.size() <= 6,
           "statistics are bounded");
    expect((settings & 1) != 0 ? sink.count == sink.news && sink.news <= all.counts.objects
                               : sink.count == all.counts.objects,
           "what is received is handed on");
    return 0;
}
