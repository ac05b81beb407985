// What spi_recorder writes down of a host's calls makes the library tell the same once more.

#include "spi_wrap/spi_recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "src/event/quiet.h"
#include "tests/tools/files/files.h"
#include "tests/tools/recording/sample_broadcast.h"
#include "tools/playing/player.h"
#include "tools/playing/shared_block.h"
#include "tools/recording/notification_json.h"

namespace {

namespace fs = std::filesystem;
using dabspi::play_end;
using dabspi::recording;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// As a host feeds, from its own records.
class feeding {
 public:
    explicit feeding(spi_wrap::toSpiServer& server) : server_(server) {}

    void operator()(const dabspi::set_date_time& call) {
        spi::MotDateTime core;
        core.put_date(call.date);
        core.put_time(call.time);
        spi_wrap::MotDateTime now{core.year, core.month, core.day, core.hour, core.minute};
        server_.SetDateTime(now);
    }
    void operator()(const dabspi::set_current_service& call) {
        auto id = dabspi::identifier_of<spi_wrap::ServElemId>(call.service);
        server_.SetCurrentService(id, call.ensemble);
    }
    void operator()(const dabspi::feed_mot_body& call) {
        spi_wrap::MotBodyMetadata metadata;
        metadata.content_type = call.content_type;
        metadata.content_subtype = call.content_subtype;
        metadata.content_name = call.content_name;
        spi_wrap::MotBody body;
        body.size = static_cast<std::uint32_t>(call.body->size());
        body.data = call.body->data();
        auto id = dabspi::identifier_of<spi_wrap::ServElemId>(call.service);
        server_.FeedMotBody(metadata, body, id);
    }
    void operator()(const dabspi::resend_now_next&) {}

 private:
    spi_wrap::toSpiServer& server_;
};

class SpiRecorder : public testing::Test {
 protected:
    // With a storage path of the test's own, which the library reads while it starts.
    std::unique_ptr<spi_wrap::spi_recorder> server(const std::string& directory,
                                                   std::uint64_t most_bytes = 1 << 30) {
        const dabspi::temporary_storage_path temporary(fs::canonical(storage_.path()).string());
        return std::make_unique<spi_wrap::spi_recorder>(nullptr, directory, most_bytes);
    }

    std::vector<std::string> told_by(const recording& of) {
        std::vector<std::string> reported;
        dabspi::player_settings settings;
        settings.storage_path = fs::canonical(storage_.path()).string();
        dabspi::player_hooks hooks;
        hooks.notify = [&](const dabspi::notification& what, const dabspi::notification_time&) {
            reported.push_back(notification_json(what));
            return true;
        };
        EXPECT_EQ(dabspi::play(of, settings, hooks), play_end::finished);
        return reported;
    }

    recording recorded(const spi_wrap::spi_recorder& by) {
        recording read = dabspi::read_recording(by.recording_file());
        for (const dabspi::recording_error& each : read.errors)
            ADD_FAILURE() << error_text(read, each);
        return read;
    }

    std::size_t bodies() const {
        const fs::directory_iterator all(files_.path() / "trace/objects");
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    temporary_directory files_;
    temporary_directory storage_;
    const std::string trace_ = (files_.path() / "trace").string();
};

TEST_F(SpiRecorder, WhatItWroteTellsTheSameOnceMore) {
    const recording host =
        dabspi::read_recording(sample_broadcast::write_recording(files_, sample_broadcast::whole()));
    const auto recorder = server(trace_);
    feeding feed(*recorder);
    for (const dabspi::call& each : host.calls)
        std::visit(feed, each.what);
    ASSERT_TRUE(spi::wait_until_quiet(std::chrono::seconds(60)));
    EXPECT_EQ(recorder->recording_error(), "");
    const recording written = recorded(*recorder);
    EXPECT_EQ(written.calls.size(), host.calls.size());
    const std::vector<std::string> reported = told_by(host);
    EXPECT_FALSE(reported.empty());
    EXPECT_EQ(told_by(written), reported);
}

TEST_F(SpiRecorder, ABodyThatComesAgainIsKeptOnce) {
    const auto recorder = server(trace_);
    spi_wrap::MotBodyMetadata metadata;
    metadata.content_type = 7;
    spi_wrap::ServElemId service{0xE1C00098, 0xE1, 3};
    const std::vector<unsigned char> bytes = {1, 2, 3};
    spi_wrap::MotBody body{3, bytes.data()};
    recorder->FeedMotBody(metadata, body, service);
    recorder->FeedMotBody(metadata, body, service);
    body.size = 2;
    recorder->FeedMotBody(metadata, body, service);
    spi_wrap::MotBody nothing{5, nullptr};
    recorder->FeedMotBody(metadata, nothing, service);
    EXPECT_EQ(bodies(), 3u);
    const recording written = recorded(*recorder);
    ASSERT_EQ(written.calls.size(), 4u);
    const auto& last = std::get<dabspi::feed_mot_body>(written.calls[3].what);
    EXPECT_TRUE(last.body->empty());
    EXPECT_EQ(last.service.scids, 3u);
}

TEST_F(SpiRecorder, NamesAreWrittenAsTheyAre) {
    const auto recorder = server(trace_);
    spi_wrap::MotBodyMetadata metadata;
    metadata.content_name = std::string("a\"\\\0\n\x7F", 6) + "\xC3\xA9\xF0\x9F\x93\xBB";
    spi_wrap::ServElemId service;
    spi_wrap::MotBody body;
    recorder->FeedMotBody(metadata, body, service);
    std::string odd = "\xC0\xAF|\xED\xA0\x80|\xF5|\xE2\x82";
    std::swap(metadata.content_name, odd);
    recorder->FeedMotBody(metadata, body, service);
    const recording written = recorded(*recorder);
    ASSERT_EQ(written.calls.size(), 2u);
    EXPECT_EQ(std::get<dabspi::feed_mot_body>(written.calls[0].what).content_name, odd);
    EXPECT_THAT(std::get<dabspi::feed_mot_body>(written.calls[1].what).content_name,
                HasSubstr("\xEF\xBF\xBD"));
}

TEST_F(SpiRecorder, ADateThatARecordingCannotHoldIsAComment) {
    const auto recorder = server(trace_);
    spi_wrap::MotDateTime odd{2026, 255, 10, 8, 0};
    recorder->SetDateTime(odd);
    spi_wrap::MotDateTime now{2026, 3, 10, 8, 5};
    recorder->SetDateTime(now);
    const recording written = recorded(*recorder);
    ASSERT_EQ(written.calls.size(), 1u);
    EXPECT_EQ(std::get<dabspi::set_date_time>(written.calls[0].what).date, "20260310");
    EXPECT_THAT(read_file(recorder->recording_file()), HasSubstr("# not to be replayed: "));
}

TEST_F(SpiRecorder, EachServerWritesARecordingOfItsOwn) {
    const auto first = server(trace_);
    const auto second = server(trace_);
    EXPECT_EQ(first->recording_file(), trace_ + "/recording.jsonl");
    EXPECT_EQ(second->recording_file(), trace_ + "/recording-2.jsonl");
}

TEST_F(SpiRecorder, WhatCannotBeWrittenDisturbsNoCall) {
    const auto nowhere = server((files_.path() / "none/trace").string());
    EXPECT_THAT(nowhere->recording_error(), HasSubstr("No such file or directory"));
    EXPECT_EQ(nowhere->recording_file(), "");
    spi_wrap::MotDateTime now{2026, 3, 10, 8, 5};
    EXPECT_EQ(nowhere->SetDateTime(now), 0);
    const auto small = server(trace_, 150);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(small->SetDateTime(now), 0);
    EXPECT_THAT(small->recording_error(), HasSubstr("all the room that it may"));
    EXPECT_EQ(recorded(*small).calls.size(), 1u) << "whole lines only";
}

}  // namespace
