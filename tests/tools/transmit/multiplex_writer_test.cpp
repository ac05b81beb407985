// Every container, read back.
#include "tools/transmit/container/multiplex_writer.h"

#include <gtest/gtest.h>

#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/eti_writer.h"
#include "tools/air/container/open_frames.h"
#include "tools/air/fic/fic_decoder.h"
#include "tools/transmit/container/edi_packet_writer.h"
#include "tools/transmit/container/eti_frame_writer.h"

namespace {

namespace mb = multiplex_builder;
namespace air = dabspi::air;
using namespace dabspi::transmit;

announced_ensemble small_ensemble() {
    announced_ensemble made;
    made.ecc = 0xE1;
    made.eid = 0xC185;
    made.label = "Ensemble";
    made.services = {{0xC221, "One"}};
    made.spi = {1, 0, 24};
    made.sound = {2, 18, 8};
    made.spi_sid = 0xE1C00098;
    made.spi_label = "Guide";
    return made;
}

TEST(EtiFrameWriter, WritesWhatTheStandardHas) {
    mb::logical_frame expected = mb::noise_frames(1, 1232).front();
    air::frame frame;
    frame.count = 1232;
    frame.index = 3;
    frame.fic = expected.fic;
    for (const mb::sub_channel& each : expected.sub_channels)
        frame.sub_channels.push_back({each.id, each.start, each.tpl, each.content});
    bytes eti;
    append_eti_frame(eti, frame);
    EXPECT_EQ(eti, mb::eti_frame(expected, true));
    bytes edi;
    append_edi_packet(edi, frame);
    mb::af_options options;
    options.with_time = options.unknown_items = false;
    EXPECT_EQ(edi, mb::af_packet(expected, 3, options));
}

TEST(MultiplexWriter, EveryFormComesBack) {
    constexpr unsigned kFrames = 600;
    for (const multiplex_form form :
         {multiplex_form::raw, multiplex_form::streamed, multiplex_form::framed, multiplex_form::edi}) {
        multiplex_writer writer(small_ensemble(), form, std::int64_t{60000} * 86'400'000);
        bytes file = writer.file_header(kFrames);
        bytes spi;
        for (unsigned i = 0; i < kFrames; ++i) {
            const bytes part(72, static_cast<std::uint8_t>(i));
            writer.append_frame(file, part);
            append_bytes(spi, part);
        }
        const air::opened_frames in =
            air::open_frames(std::make_unique<air::memory_source>(file, 1000), "made");
        ASSERT_NE(in.frames, nullptr) << in.error;
        bytes received;
        air::fic_decoder fic;
        std::size_t frames = 0;
        for (air::frame each; in.frames->next(each); ++frames) {
            EXPECT_EQ(each.missing_before, 0U);
            EXPECT_FALSE(each.damaged);
            ASSERT_EQ(each.sub_channels.size(), 2U);
            EXPECT_EQ(each.sub_channels[1].bytes.size(), 24U);
            append_bytes(received, each.sub_channels[0].bytes);
            fic.feed(each);
        }
        EXPECT_EQ(frames, kFrames);
        EXPECT_EQ(received, spi);
        EXPECT_EQ(air::spi_components(fic.describe()).size(), 1U);
        EXPECT_EQ(short_name(in.found.kind), std::string(form == multiplex_form::raw        ? "raw"
                                                         : form == multiplex_form::streamed ? "streamed"
                                                         : form == multiplex_form::framed   ? "framed"
                                                                                            : "edi"));
    }
}

}  // namespace
