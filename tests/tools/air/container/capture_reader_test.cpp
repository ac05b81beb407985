#include "tools/air/container/capture_reader.h"

#include <gtest/gtest.h>

#include "testkit/multiplex/appending.h"
#include "testkit/multiplex/capture_writer.h"
#include "testkit/multiplex/damage.h"
#include "testkit/multiplex/edi_writer.h"
#include "tests/tools/air/container/collected.h"

namespace {

namespace mb = multiplex_builder;
using air_tests::collect;
using air_tests::collected;
using air_tests::expect_same;

std::vector<mb::datagram> packets(const std::vector<mb::logical_frame>& frames, std::uint16_t port) {
    std::vector<mb::bytes> all;
    for (std::size_t i = 0; i < frames.size(); ++i)
        all.push_back(mb::af_packet(frames[i], static_cast<std::uint16_t>(i)));
    return mb::datagrams_of(all, port);
}

// Two flows in turns, and datagrams of something else.
mb::bytes two_flows(const std::vector<mb::logical_frame>& first,
                    const std::vector<mb::logical_frame>& second) {
    const auto one = packets(first, 12001);
    const auto other = packets(second, 12002);
    std::vector<mb::datagram> all = mb::datagrams_of({mb::bytes(100, 'x')}, 53);
    for (std::size_t i = 0; i < one.size(); ++i) {
        all.push_back(one[i]);
        all.push_back(other[i]);
    }
    return mb::pcap_file(all);
}

TEST(CaptureReader, ReadsTheFirstOfSeveralFlowsAndListsAll) {
    const auto first = mb::noise_frames(5, 0, 1);
    const auto second = mb::noise_frames(5, 100, 2);
    const mb::bytes file = two_flows(first, second);
    expect_same(collect(file).frames, first);

    dabspi::air::memory_source source(file);
    dabspi::air::capture_reader reader(source, "");
    for (dabspi::air::frame each; reader.next(each);) {
    }
    ASSERT_EQ(reader.flows().size(), 2U);
    EXPECT_EQ(destination_text(reader.flows()[1].flow), "239.1.2.3:12002");
    EXPECT_EQ(reader.flows()[1].datagrams, 5U);
    EXPECT_EQ(reader.chosen(), &reader.flows()[0]);
    EXPECT_EQ(reader.statistics().captured_other, 6U);
}

TEST(CaptureReader, ReadsTheFlowThatIsChosen) {
    const auto first = mb::noise_frames(5, 0, 1);
    const auto second = mb::noise_frames(5, 100, 2);
    const mb::bytes file = two_flows(first, second);
    expect_same(collect(file, file.size(), "12002").frames, second);
    expect_same(collect(file, file.size(), "239.1.2.3:12002").frames, second);
    EXPECT_TRUE(collect(file, file.size(), "12003").frames.empty());
}

TEST(CaptureReader, LostDatagramsAreMissingFrames) {
    const auto frames = mb::noise_frames(30);
    const auto all = mb::with_loss(packets(frames, 12000), 0.2, 4);
    const collected got = collect(mb::pcap_file(all));
    EXPECT_EQ(got.frames.size(), all.size());
    EXPECT_GT(got.statistics.frames_missing, 0U);
}

TEST(CaptureReader, ALinkTypeThatIsNotKnownIsNamed) {
    mb::bytes file = mb::pcap_file({});
    file[20] = 105;  // wireless LAN
    const collected got = collect(file);
    EXPECT_NE(got.error.find("IEEE802_11"), std::string::npos) << got.error;
}

TEST(CaptureReader, ADatagramWithoutOneOfItsFragmentsIsCounted) {
    const auto frames = mb::noise_frames(40);
    std::vector<mb::datagram> all = packets(frames, 12000);
    for (mb::datagram& each : all)
        each.fragment_size = 104;
    mb::bytes file = mb::pcap_file(all);
    // The record of the second fragment of the first datagram.
    const std::size_t record = 16 + 14 + 20 + 104;
    file.erase(file.begin() + 24 + static_cast<std::ptrdiff_t>(record),
               file.begin() + 24 + static_cast<std::ptrdiff_t>(2 * record));
    const collected got = collect(file);
    EXPECT_EQ(got.frames.size(), 39U);
}

}  // namespace
