// The computed order, and what a receiver that tunes in waits for.
#include "tools/transmit/schedule/order.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/tools/transmit/random_objects.h"
#include "tools/transmit/schedule/tune_in.h"

namespace {

using namespace dabspi::transmit;
using namespace transmit_test;

sent_object sized(const std::string& name, std::size_t size) {
    sent_object made;
    made.name = name;
    made.content_type = 7;
    made.body = std::make_shared<const bytes>(size, std::uint8_t{1});
    return made;
}

// An ensemble of ten services: descriptions, two days of schedules, logos.
struct sample {
    std::vector<sent_object> objects;
    std::vector<tuned_object> tuned;
    std::vector<importance> importances;
    sent_carousel carousel;

    sample() {
        add("si", 1500, importance::service_information, "");
        for (int i = 0; i < 10; ++i) {
            const std::string service = std::to_string(i);
            add("today" + service, 900, importance::today, service);
            add("tomorrow" + service, 900, importance::tomorrow, service);
            add("small" + service, 4000, importance::logo, "");
            add("large" + service, 9000, importance::logo, "");
            add("other" + service, 12000, importance::other, "");
        }
        carousel = carousel_maker({}).make(objects);
    }
    void add(const std::string& name, std::size_t size, importance what, const std::string& service) {
        objects.push_back(sized(name, size));
        tuned.push_back({what, service});
        importances.push_back(what);
    }
    waits played(sending_order order) const {
        close_order(order, carousel);
        const stretch sent = make_stretch(carousel, order, {});
        return tune_in(carousel, order, sent, tuned);
    }
    std::map<std::size_t, std::size_t> copies(const sending_order& order) const {
        std::map<std::size_t, std::size_t> counts;
        for (const planned_segment& each : order)
            if (each.segment == 0) ++counts[each.entity];
        return counts;
    }
};

TEST(ComputedOrder, SendsWhatIsUrgentFirstAndMoreOften) {
    const sample of;
    const sending_order order = computed_order(of.carousel, of.importances);
    EXPECT_EQ(of.carousel.entities[order.front().entity].type, group_type::directory);
    auto copies = of.copies(order);
    const auto of_object = [&](std::size_t object) { return copies[object + 1]; };  // behind the directory
    EXPECT_GT(of_object(1), of_object(2));                                          // today before tomorrow
    EXPECT_GT(of_object(0), of_object(3));  // service information before logos
    EXPECT_GT(of_object(0), of_object(5));  // and before all other images
    EXPECT_GE(of_object(3), of_object(5));  // logos before the rest
    EXPECT_GE(of_object(5), 1U);
    EXPECT_GE(copies[0], of_object(1));
}

TEST(ComputedOrder, SendsServiceInformationAndSchedulesBehindTheDirectory) {
    const sample of;
    const sending_order order = computed_order(of.carousel, of.importances);
    std::string seen;
    for (std::size_t i = 0; i < order.size() && seen.size() < 5; ++i) {
        if (order[i].segment != 0) continue;
        const auto& object = of.carousel.entities[order[i].entity].object;
        seen += !object ? 'd' : of.importances[*object] == importance::service_information ? 's' : 't';
    }
    EXPECT_EQ(seen, "dsttt");
}

// Fifty services with long schedules: the directory is not far away, wherever a receiver tunes in.
TEST(ComputedOrder, SendsTheDirectoryBetweenManySchedules) {
    sample of;
    for (int i = 10; i < 60; ++i)
        of.add("today" + std::to_string(i), 5000, importance::today, std::to_string(i));
    of.carousel = carousel_maker({}).make(of.objects);
    const sending_order order = computed_order(of.carousel, of.importances);
    auto copies = of.copies(order);
    EXPECT_GT(copies[0], 3 * copies[2]);
    EXPECT_EQ(copies[0], copies[1]);
}

TEST(ComputedOrder, SendsEverySegmentOfEveryRandomCarousel) {
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        const random_carousel from(seed);
        const sent_carousel made = carousel_maker(from.settings).make(from.objects);
        sending_order order = computed_order(made, from.importances);
        std::map<std::pair<std::uint32_t, std::uint32_t>, std::size_t> sent;
        for (const planned_segment& each : order)
            ++sent[{each.entity, each.segment}];
        for (std::uint32_t entity = 0; entity < made.entities.size(); ++entity)
            for (std::uint32_t segment = 0; segment < made.entities[entity].groups.size(); ++segment)
                EXPECT_EQ((sent[{entity, segment}]), (sent[{entity, 0}])) << seed;
        close_order(order, made);
        std::map<group_type, std::size_t> groups;
        for (const planned_segment& each : order)
            ++groups[made.entities[each.entity].type];
        for (const auto& [type, count] : groups)
            EXPECT_EQ(count % 16, 0U) << seed;
    }
}

TEST(TuneIn, NowAndNextComeSoonerThanWithPlainRepetition) {
    const sample of;
    const waits computed = of.played(computed_order(of.carousel, of.importances));
    const waits plain = of.played(plain_order(of.carousel));
    ASSERT_TRUE(computed.now_next.any && computed.logos.any && computed.everything.any);
    EXPECT_LT(computed.now_next.median, plain.now_next.median / 2);
    EXPECT_LT(computed.now_next.worst, plain.now_next.worst / 2);
    EXPECT_LT(computed.logos.worst, plain.logos.worst);
    EXPECT_LT(computed.everything.worst, plain.everything.worst * 1.5);
    EXPECT_LE(computed.now_next.median, computed.now_next.worst);
}

// Counted by hand: one object in one segment, always on air, so that a receiver waits for the next directory
// and then for the next body.
TEST(TuneIn, CountsFramesUntilTheLastPacket) {
    const std::vector<sent_object> objects = {sized("a", 100)};
    const sent_carousel carousel = carousel_maker({}).make(objects);
    sending_order order = plain_order(carousel);
    close_order(order, carousel);
    const stretch sent = make_stretch(carousel, order, {});
    const waits got = tune_in(carousel, order, sent, {{importance::today, "s"}});
    EXPECT_FALSE(got.logos.any);
    EXPECT_EQ(got.now_next.worst, got.everything.worst);
    EXPECT_GT(got.now_next.worst, 0.1);
    EXPECT_LT(got.now_next.worst, 2 * 0.024 * sent.frames);
}

}  // namespace
