// One multiplex in every container: the same frames come out.
#include <gtest/gtest.h>

#include "testkit/multiplex/capture_writer.h"
#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/eti_writer.h"
#include "tests/tools/air/container/collected.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::collect;
using air_tests::collected;
using air_tests::expect_same;

struct form {
    std::string name;
    std::string kind;
    mb::bytes file;
};

std::vector<mb::bytes> af_packets(const std::vector<mb::logical_frame>& frames) {
    std::vector<mb::bytes> all;
    for (std::size_t i = 0; i < frames.size(); ++i)
        all.push_back(mb::af_packet(frames[i], static_cast<std::uint16_t>(i)));
    return all;
}

std::vector<mb::bytes> all_fragments(const std::vector<mb::logical_frame>& frames,
                                     const mb::pf_options& options) {
    std::vector<mb::bytes> all;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const auto number = static_cast<std::uint16_t>(i);
        for (const mb::bytes& each : mb::pf_fragments(mb::af_packet(frames[i], number), number, options))
            all.push_back(each);
    }
    return all;
}

std::vector<form> all_forms(const std::vector<mb::logical_frame>& frames) {
    mb::pf_options with_fec;
    with_fec.fec = true;
    mb::pf_options with_addresses;
    with_addresses.source = 7;
    with_addresses.fec = true;
    mb::af_options without_crc;
    without_crc.crc = false;
    without_crc.with_time = false;
    mb::eti_options bare;
    bare.header_crc = bare.body_crc = bare.length = false;
    std::vector<form> all = {
        {"raw", "ETI(NI), raw", mb::raw_eti(frames)},
        {"streamed", "ETI(NI), streamed", mb::streamed_eti(frames)},
        {"framed", "ETI(NI), framed", mb::framed_eti(frames)},
        {"raw, no checksums", "ETI(NI), raw", mb::raw_eti(frames, bare)},
        {"streamed, no checksums", "ETI(NI), streamed", mb::streamed_eti(frames, bare)},
        {"AF", "EDI", mb::af_stream(frames)},
        {"AF without CRC", "EDI", mb::af_stream(frames, without_crc)},
        {"PF", "EDI", mb::pf_stream(frames)},
        {"PF with FEC", "EDI", mb::pf_stream(frames, with_fec)},
        {"PF with FEC and addresses", "EDI", mb::pf_stream(frames, with_addresses)},
        {"file framing", "EDI", mb::framed_stream(frames)},
    };
    using mb::link;
    for (const link on : {link::ethernet, link::ethernet_vlan, link::linux_any, link::linux_any_2,
                          link::loopback, link::raw}) {
        mb::capture_options options;
        options.on = on;
        const std::string number = std::to_string(static_cast<int>(on));
        all.push_back({"pcap " + number, "a packet capture",
                       mb::pcap_file(mb::datagrams_of(af_packets(frames)), options)});
        options.big_endian = options.nanoseconds = true;
        all.push_back({"pcap, big-endian " + number, "a packet capture",
                       mb::pcap_file(mb::datagrams_of(all_fragments(frames, with_fec)), options)});
        auto six = mb::datagrams_of(all_fragments(frames, {}));
        for (mb::datagram& each : six)
            each.six = true;
        all.push_back({"pcapng " + number, "a packet capture", mb::pcapng_file(six, options)});
    }
    for (const bool six : {false, true}) {
        auto fragmented = mb::datagrams_of(af_packets(frames));
        for (mb::datagram& each : fragmented) {
            each.fragment_size = 104;
            each.six = six;
        }
        all.push_back({"IP fragments", "a packet capture", mb::pcap_file(fragmented)});
    }
    return all;
}

TEST(Containers, AllGiveTheSameFrames) {
    const auto frames = mb::noise_frames(40, 4980);
    for (const form& each : all_forms(frames)) {
        SCOPED_TRACE(each.name);
        const collected got = collect(each.file);
        EXPECT_EQ(got.kind, each.kind);
        expect_same(got.frames, frames);
        EXPECT_EQ(got.statistics.frames_missing, 0U);
        EXPECT_EQ(got.statistics.frames_damaged, 0U);
        EXPECT_EQ(got.statistics.bytes_skipped, 0U);
    }
}

TEST(Containers, MayGiveTheirBytesOneByOne) {
    const auto frames = mb::noise_frames(5);
    for (const form& each : all_forms(frames)) {
        SCOPED_TRACE(each.name);
        expect_same(collect(each.file, 1).frames, frames);
    }
}

TEST(Containers, EndAnywhereWithTheFramesUpToThere) {
    const auto frames = mb::noise_frames(3);
    for (const form& each : all_forms(frames)) {
        SCOPED_TRACE(each.name);
        std::size_t most = 0;
        for (std::size_t size = 0; size <= each.file.size(); size += each.file.size() > 10000 ? 7 : 1) {
            const mb::bytes cut(each.file.begin(), each.file.begin() + static_cast<std::ptrdiff_t>(size));
            const collected got = collect(cut);
            ASSERT_LE(got.frames.size(), frames.size());
            EXPECT_GE(got.frames.size(), most) << size << " bytes: no frame is lost by more of the file";
            most = std::max(most, got.frames.size());
            for (std::size_t i = 0; i < got.frames.size(); ++i)
                ASSERT_TRUE(air_tests::same_content(got.frames[i], frames[i]))
                    << size << " bytes, frame " << i;
        }
    }
}

TEST(Containers, BeginAnywhereWithTheNextFrame) {
    const auto frames = mb::noise_frames(6);
    for (const form& each : all_forms(frames)) {
        if (each.kind == "a packet capture") continue;  // their header cannot be done without
        SCOPED_TRACE(each.name);
        const std::size_t third = each.file.size() / 3;
        for (std::size_t begin = 0; begin<third; begin += each.file.size()> 10000 ? 11 : 1) {
            const mb::bytes rest(each.file.begin() + static_cast<std::ptrdiff_t>(begin), each.file.end());
            const collected got = collect(rest);
            ASSERT_GE(got.frames.size(), 3U) << "from byte " << begin;
            const std::size_t first = frames.size() - got.frames.size();
            for (std::size_t i = 0; i < got.frames.size(); ++i)
                ASSERT_TRUE(air_tests::same_content(got.frames[i], frames[first + i]))
                    << "from byte " << begin;
        }
    }
}

}  // namespace
