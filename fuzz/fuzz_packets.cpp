// Packet mode: a first byte says whether there is FEC and whether packets get a right CRC, then come logical
// frames, each behind a byte with its length, or with how much is missing. How bytes are cut into calls
// changes nothing, no data group is longer than there can be, and every cell is counted once.
#include <cstdint>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "testkit/carousel/packet_mode.h"
#include "tools/air/packets/packet_decoder.h"

namespace {

using namespace dabspi::air;
using bytes = carousel_kit::bytes;

struct groups final : data_group_sink {
    void data_group(std::uint16_t address, byte_view group) override {
        expect(address != kPaddingAddress && address != kFecAddress && address < 1024, "an address of data");
        expect(group.size() <= 8300, "no longer than a data group");
        carousel_kit::append_u16(all, address);
        carousel_kit::append_u16(all, static_cast<unsigned>(group.size()));
        all.insert(all.end(), group.begin(), group.end());
    }
    bytes all;
};

// Gives the packets that begin at each cell, one behind the other, their CRC.
void give_crcs(bytes& stream) {
    for (std::size_t at = 0; at + kCell <= stream.size();) {
        const std::size_t size = kCell * cells_of_packet(stream[at]);
        if (at + size > stream.size()) break;
        const auto begin = stream.begin() + static_cast<std::ptrdiff_t>(at);
        if (fec_packet_counter({stream.data() + at, kCell}) < 0) {
            bytes packet(begin, begin + static_cast<std::ptrdiff_t>(size - 2));
            carousel_kit::append_crc(packet);
            std::copy(packet.begin(), packet.end(), begin);
        }
        at += size;
    }
}

struct frame {
    bytes fed;
    std::size_t missing = 0;
};

bytes play(const std::vector<frame>& frames, packet_fec fec, std::size_t portion) {
    groups sink;
    packet_limits limits;
    limits.groups = 20'000;
    packet_decoder decoder(sink, fec, limits);
    std::uint64_t size = 0;
    for (const frame& each : frames) {
        const byte_view all(each.fed);
        for (std::size_t at = 0; at < all.size(); at += portion)
            decoder.feed(all.part(at, portion));
        decoder.missing(each.missing);
        size += all.size() + each.missing;
    }
    decoder.finish();
    const packet_counts& counts = decoder.counts();
    // At the end, of a set of FEC packets those that are not there are put in.
    expect(counts.cells >= size / kCell && counts.cells <= size / kCell + kFecPackets,
           "each cell is counted once");
    expect(counts.fec_sets_repaired <= counts.fec_sets_used && counts.fec_sets_used <= counts.fec_sets,
           "sets");
    return sink.all;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const packet_fec fec = (data[0] & 1) != 0 ? packet_fec::rs_12_9 : packet_fec::none;
    std::vector<frame> frames;
    for (std::size_t at = 1; at < size;) {
        const std::size_t length = data[at++];
        frame next;
        if (length >= 0xF0) {
            next.missing = (length - 0xEF) * ((data[0] & 4) != 0 ? 24 : 800);
        } else {
            const std::size_t end = std::min(size, at + length * 24);
            next.fed.assign(data + at, data + end);
            at = end;
            if ((data[0] & 2) != 0) give_crcs(next.fed);
        }
        frames.push_back(std::move(next));
    }
    const bytes whole = play(frames, fec, 100'000);
    expect(play(frames, fec, 7) == whole, "the same however it is cut");
    return 0;
}
