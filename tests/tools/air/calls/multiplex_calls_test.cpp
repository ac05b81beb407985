// What a receiver calls while it receives: in which order, with what, and the same whatever the container.
#include "tools/air/calls/multiplex_calls.h"

#include <gtest/gtest.h>

#include "testkit/multiplex/capture_writer.h"
#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/eti_writer.h"
#include "testkit/on_air/spi_multiplex.h"
#include "tools/air/container/open_frames.h"

namespace {

namespace kit = carousel_kit;
namespace mb = multiplex_builder;
using namespace dabspi;
using strings = std::vector<std::string>;

kit::object object_of(unsigned id, const std::string& name, std::size_t size = 300) {
    kit::object made;
    made.transport_id = id;
    made.name = name;
    made.body = kit::bytes(size, static_cast<std::uint8_t>(id));
    return made;
}

const std::vector<kit::object> kObjects = {object_of(1, "first"), object_of(2, "second")};

// Begins three seconds before a minute; the carousel comes twice.
on_air::multiplex two_stations() {
    std::vector<kit::bytes> groups = kit::directory_round(9, kObjects);
    kit::append(groups, kit::directory_round(9, kObjects));
    on_air::multiplex sent;
    sent.milliseconds = 57'000;
    sent.audio.push_back({0xC222, "Radio 2", 2});
    sent.spi.emplace_back();
    sent.sub_channels.push_back({30, 192, on_air::stream_of(5, groups), false});
    return sent;
}

std::string text_of(const set_date_time& of) {
    return of.date + " " + of.time;
}
std::string text_of(const set_current_service& of) {
    char text[64];
    std::snprintf(text, sizeof text, "%X.%X.%u in %X", of.service.ecc, of.service.sid, of.service.scids,
                  of.ensemble);
    return text;
}
std::string text_of(const feed_mot_body& of) {
    char text[64];
    std::snprintf(text, sizeof text, "%u/%u %zu of %X: ", of.content_type, of.content_subtype,
                  of.body->size(), of.service.sid);
    return text + of.content_name;
}
std::string text_of(const resend_now_next&) {
    return "?";
}

struct made_calls {
    strings texts;
    std::vector<std::uint64_t> frames;
    std::string error;
};

made_calls calls_of(const mb::bytes& file, const air::calls_options& options = {}) {
    air::opened_frames in = air::open_frames(std::make_unique<air::memory_source>(file), "test");
    made_calls made;
    if (in.frames == nullptr) {
        made.error = in.error;
        return made;
    }
    air::multiplex_calls calls(*in.frames, options);
    while (const auto each = calls.next()) {
        made.texts.push_back(std::visit([](const auto& what) { return text_of(what); }, each->what));
        made.frames.push_back(each->frame);
    }
    made.error = calls.error();
    return made;
}

made_calls calls_of(const on_air::multiplex& sent, const std::string& service = {},
                    air::delivery which = air::delivery::every, unsigned frames = 150) {
    air::calls_options options;
    options.service = service;
    options.which = which;
    return calls_of(mb::raw_eti(on_air::frames_of(sent, frames)), options);
}

TEST(MultiplexCalls, BeginWithServiceAndClockThenFeedObjects) {
    EXPECT_EQ(calls_of(two_stations()).texts,
              (strings{"E1.C221.0 in C185", "20260302 1030", "7/1 300 of E1C00098: first",
                       "7/1 300 of E1C00098: second", "7/1 300 of E1C00098: first",
                       "7/1 300 of E1C00098: second", "20260302 1031"}));
}

TEST(MultiplexCalls, DeliverOnceFeedsEachVersionOnce) {
    EXPECT_EQ(calls_of(two_stations(), "", air::delivery::once).texts,
              (strings{"E1.C221.0 in C185", "20260302 1030", "7/1 300 of E1C00098: first",
                       "7/1 300 of E1C00098: second", "20260302 1031"}));
}

TEST(MultiplexCalls, ListensToTheServiceThatIsWanted) {
    EXPECT_EQ(calls_of(two_stations(), "Radio 2").texts.at(0), "E1.C222.0 in C185");
    EXPECT_EQ(calls_of(two_stations(), "c222").texts.at(0), "E1.C222.0 in C185");
}

TEST(MultiplexCalls, SaysWhichServicesThereAreForOneThatIsNot) {
    const made_calls made = calls_of(two_stations(), "Radio 3", air::delivery::every, 600);
    EXPECT_EQ(made.texts, strings{});
    EXPECT_EQ(made.error,
              "there is no service \"Radio 3\" in this multiplex; there are C221 Radio 1, C222 Radio 2, "
              "E1C00098 Guide");
}

TEST(MultiplexCalls, VisitAllServicesAfterEachMinute) {
    EXPECT_EQ(calls_of(two_stations(), "all", air::delivery::once).texts,
              (strings{"E1.C221.0 in C185", "20260302 1030", "E1.C221.0 in C185", "E1.C222.0 in C185",
                       "7/1 300 of E1C00098: first", "7/1 300 of E1C00098: second", "20260302 1031",
                       "E1.C221.0 in C185", "E1.C222.0 in C185"}));
    // A last time at the end, for what came after the last minute.
    on_air::multiplex sent = two_stations();
    sent.milliseconds = 0;
    const strings one_minute = calls_of(sent, "all", air::delivery::once).texts;
    EXPECT_EQ(one_minute.at(one_minute.size() - 1), "E1.C222.0 in C185");
    EXPECT_EQ(one_minute.at(one_minute.size() - 2), "E1.C221.0 in C185");
}

TEST(MultiplexCalls, ClockIsLocal) {
    on_air::multiplex sent = two_stations();
    sent.minute_of_day = 23 * 60 + 59;
    sent.offset_half_hours = 3;
    const strings texts = calls_of(sent, "", air::delivery::once).texts;
    EXPECT_EQ(texts.at(1), "20260303 0129");
    EXPECT_EQ(texts.back(), "20260303 0130");
}

TEST(MultiplexCalls, GoOnWithoutAClockAfterTenSeconds) {
    on_air::multiplex sent = two_stations();
    sent.has_clock = false;
    const made_calls made = calls_of(sent, "", air::delivery::once, 600);
    EXPECT_EQ(made.texts,
              (strings{"0.C221.0 in C185", "7/1 300 of E1C00098: first", "7/1 300 of E1C00098: second"}));
    EXPECT_EQ(made.frames.at(0), 416U);
    EXPECT_LT(made.frames.at(1), 30U);
}

TEST(MultiplexCalls, SetTheEnsembleEvenWithoutAudio) {
    on_air::multiplex sent = two_stations();
    sent.audio.clear();
    EXPECT_EQ(calls_of(sent, "", air::delivery::once).texts.at(0), "E1.0.0 in C185");
}

TEST(MultiplexCalls, BeginAnewWithAnotherEnsemble) {
    auto frames = on_air::frames_of(two_stations(), 100);
    on_air::multiplex other = two_stations();
    other.eid = 0xC186;
    other.audio.erase(other.audio.begin());
    const auto behind = on_air::frames_of(other, 100, 100);
    frames.insert(frames.end(), behind.begin(), behind.end());
    const strings texts = calls_of(mb::raw_eti(frames), {}).texts;
    EXPECT_NE(std::find(texts.begin(), texts.end(), "E1.C222.0 in C186"), texts.end());
}

TEST(MultiplexCalls, AreTheSameFromEveryContainer) {
    const auto frames = on_air::frames_of(two_stations(), 150);
    std::vector<mb::bytes> packets;
    for (std::uint16_t i = 0; i < frames.size(); ++i)
        packets.push_back(mb::af_packet(frames[i], i));
    mb::pf_options with_fec;
    with_fec.fec = true;
    const made_calls raw = calls_of(mb::raw_eti(frames));
    ASSERT_EQ(raw.texts.size(), 7U);
    for (const mb::bytes& file :
         {mb::streamed_eti(frames), mb::framed_eti(frames), mb::af_stream(frames), mb::pf_stream(frames),
          mb::pf_stream(frames, with_fec), mb::framed_stream(frames),
          mb::pcap_file(mb::datagrams_of(packets)), mb::pcapng_file(mb::datagrams_of(packets))}) {
        const made_calls made = calls_of(file);
        EXPECT_EQ(made.error, "");
        EXPECT_EQ(made.texts, raw.texts);
        EXPECT_EQ(made.frames, raw.frames);
    }
}

TEST(MultiplexCalls, CutAtEveryByteGiveABeginningOfAll) {
    on_air::multiplex sent = two_stations();
    sent.audio.pop_back();
    const auto frames = on_air::frames_of(sent, 7);
    const mb::bytes file = mb::streamed_eti(frames);
    air::calls_options options;
    const strings all = calls_of(file, options).texts;
    ASSERT_GE(all.size(), 4U);
    std::size_t most = 0;
    for (std::size_t size = 0; size <= file.size(); ++size) {
        const made_calls cut =
            calls_of(mb::bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)), options);
        if (!cut.error.empty()) continue;  // too short to be told
        // The service and the clock may not be known yet.
        std::size_t objects = 0;
        for (const std::string& each : cut.texts)
            objects += each.find(": ") != std::string::npos ? 1U : 0U;
        ASSERT_GE(objects + 2, most) << size;
        ASSERT_LE(cut.texts.size(), all.size()) << size;
        most = std::max(most, objects);
    }
    EXPECT_GE(most, 2U);
}

}  // namespace
