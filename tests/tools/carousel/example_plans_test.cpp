// Every plan of the examples, sent as a carousel, comes back as its objects; played to the library, what
// comes back tells what the objects told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tools/carousel/small_broadcast.h"
#include "tests/tools/transmit/received.h"
#include "tools/carousel/checked_carousel.h"
#include "tools/check/replay_result.h"
#include "tools/playing/storage.h"
#include "tools/recording/notification_text.h"

namespace {

using namespace dabspi::carousel;
using carousel_test::prepared;

std::vector<std::string> plans() {
    std::vector<std::string> all;
    for (const auto& each : std::filesystem::directory_iterator(DABSPI_EXAMPLE_PLANS))
        if (each.path().extension() == ".json") all.push_back(each.path().string());
    std::sort(all.begin(), all.end());
    return all;
}

std::vector<std::string> notifications(const dabspi::recording& of) {
    const dabspi::storage store = dabspi::storage::temporary();
    std::vector<std::string> all;
    for (const auto& each : dabspi::check::replay_recording(of, store.path()).all)
        all.push_back(notification_text(each.what, each.at, ""));
    return all;
}

TEST(ExamplePlans, ComeBackAndTellTheSame) {
    std::size_t told = 0;
    for (const std::string& plan : plans()) {
        SCOPED_TRACE(plan);
        carousel_options options;
        options.inputs = {plan};
        if (plan.find("day-on-air") != std::string::npos) options.carousel = "home";
        const prepared_carousel of = prepared(options);
        ASSERT_THAT(of.errors, testing::IsEmpty());
        transmit_test::receiver got;
        for (int round = 0; round < 2; ++round)
            got.feed(of.made.sent.packets, of.settings.packets.frame_size);
        got.finish();
        ASSERT_EQ(got.objects.size(), of.objects.size());
        dabspi::recording sent = calls_of(of);
        dabspi::recording received = sent;
        for (dabspi::call& each : received.calls) {
            auto* const fed = std::get_if<dabspi::feed_mot_body>(&each.what);
            if (fed == nullptr) continue;
            const transmit_test::received_body& back = got.objects.at(fed->content_name);
            fed->content_type = back.header.content_type;
            fed->content_subtype = back.header.content_subtype;
            fed->body = std::make_shared<const dabspi::bytes>(back.body);
        }
        const std::vector<std::string> expected = notifications(sent);
        EXPECT_EQ(notifications(received), expected);
        told += expected.size();
    }
    EXPECT_GT(told, 100U);
}

}  // namespace
