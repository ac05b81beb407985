// What is written in each form comes back through the layers that receive, as the same objects.
#include "tools/carousel/written_carousel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/carousel/small_broadcast.h"
#include "tests/tools/transmit/received.h"
#include "tools/air/container/open_frames.h"
#include "tools/air/fic/fic_decoder.h"

namespace {

using namespace dabspi::carousel;
using namespace carousel_test;
using transmit_test::receiver;
namespace air = dabspi::air;

bytes file_of(const std::string& path) {
    const std::string text = read_file(path);
    return {text.begin(), text.end()};
}

void expect_objects(const receiver& got, const prepared_carousel& of) {
    ASSERT_EQ(got.objects.size(), of.objects.size());
    for (const carousel_object& each : of.objects) {
        ASSERT_EQ(got.objects.count(each.sent.name), 1U) << each.sent.name;
        const transmit_test::received_body& received = got.objects.at(each.sent.name);
        EXPECT_EQ(received.body, *each.sent.body);
        EXPECT_EQ(received.header.content_type, each.sent.content_type);
        EXPECT_EQ(received.header.content_subtype, each.sent.content_subtype);
    }
}

// A multiplex as a receiver takes it: what the FIC says leads to the sub-channel, the address and the FEC.
void expect_multiplex(const std::string& path, const prepared_carousel& of) {
    const bytes file = file_of(path);
    std::vector<air::spi_component> spi;
    for (const bool first_time : {true, false}) {
        const air::opened_frames in = air::open_frames(std::make_unique<air::memory_source>(file), path);
        ASSERT_NE(in.frames, nullptr) << in.error;
        air::fic_decoder fic;
        std::unique_ptr<receiver> got;
        if (!first_time) {
            ASSERT_EQ(spi.size(), 1U);
            got = std::make_unique<receiver>(spi[0].fec_scheme == 1, spi[0].address);
        }
        for (air::frame each; in.frames->next(each);) {
            EXPECT_FALSE(each.damaged);
            fic.feed(each);
            if (first_time) continue;
            for (const air::sub_channel_bytes& part : each.sub_channels)
                if (part.id == spi[0].sub_channel) got->feed(part.bytes, part.bytes.size());
        }
        if (first_time) {
            spi = air::spi_components(fic.describe());
            ASSERT_TRUE(fic.clock().now().has_value());
            EXPECT_EQ(air::minute_text(*fic.clock().now()).substr(0, 15), "2026-03-02 10:3");
            EXPECT_EQ(fic.describe().services.size(), 3U);
            continue;
        }
        got->finish();
        expect_objects(*got, of);
    }
}

TEST(WrittenCarousel, EveryFormComesBack) {
    small_broadcast broadcast;
    for (const bool fec : {false, true})
        for (const unsigned rate : {8U, 16U, 40U, 96U}) {
            broadcast.options.fec = fec;
            broadcast.options.bit_rate = rate;
            broadcast.options.compress = rate == 40;
            const prepared_carousel of = prepared(broadcast.options);
            ASSERT_THAT(of.errors, testing::IsEmpty());
            const std::string path = broadcast.path("out");
            for (const output_form form :
                 {output_form::raw, output_form::streamed, output_form::framed, output_form::edi}) {
                ASSERT_EQ(write_carousel(of, form, frames_of(of, broadcast.options, form), path), "");
                expect_multiplex(path, of);
            }
            ASSERT_EQ(write_carousel(of, output_form::packets, 2 * of.made.sent.frames, path), "");
            receiver got(fec);
            got.feed(file_of(path), std::size_t{rate} * 3);
            got.finish();
            expect_objects(got, of);
            EXPECT_EQ(got.continuity_jumps, 0U);
        }
}

TEST(WrittenCarousel, GroupsStandBehindTheirLengths) {
    const small_broadcast broadcast;
    const prepared_carousel of = prepared(broadcast.options);
    const std::string path = broadcast.path("out.groups");
    ASSERT_EQ(write_carousel(of, output_form::groups, 0, path), "");
    const bytes file = file_of(path);
    receiver got;
    for (air::byte_view left = file; !left.empty();) {
        const std::size_t size = left.number(0, 2);
        ASSERT_LE(size + 2, left.size());
        got.data_group(1, left.part(2, size));
        left = left.part(2 + size);
    }
    got.finish();
    EXPECT_EQ(got.groups, of.made.order.size());
    expect_objects(got, of);
}

TEST(WrittenCarousel, IsAsLongAsAskedFor) {
    small_broadcast broadcast;
    broadcast.options.duration = "2min";
    const prepared_carousel of = prepared(broadcast.options);
    EXPECT_EQ(frames_of(of, broadcast.options, output_form::raw), 5000U);
    const std::uint64_t packets = frames_of(of, broadcast.options, output_form::packets);
    EXPECT_GE(packets, 5000U);
    EXPECT_EQ(packets % of.made.sent.frames, 0U);
}

TEST(WrittenCarousel, AFailureLeavesWhatStoodThere) {
    const small_broadcast broadcast;
    const prepared_carousel of = prepared(broadcast.options);
    EXPECT_NE(write_carousel(of, output_form::packets, 10, broadcast.path("no/such/folder")), "");
    EXPECT_NE(write_carousel(of, output_form::packets, 10, broadcast.path("logos")), "");
}

}  // namespace
