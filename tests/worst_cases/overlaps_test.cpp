// Elements that claim more than their parents hold, so that the same bytes are read again and again.
#include "tests/worst_cases/costed.h"

namespace {

using namespace hostile;

class Overlaps : public Costed {};

TEST_F(Overlaps, OfSchedulesTakeMemoryInProportionToTheBody) {
    for (const std::size_t size : kSizes) {
        const bytes body = nested_schedules(size / 8);
        const cost all = cost_of("overlapping schedules", kProgrammeInformation, body);
        expect_within_budget(all.done, body.size());
        expect_used_up(kScopes, all.done, body.size());
        // An event and its place in a queue take 145 bytes, and two scopes at least.
        expect_below(all, body.size(), {160, 350000}, {160, 350000});
    }
}

TEST_F(Overlaps, OfLogoAnnouncementsTakeMemoryInProportionToTheBody) {
    for (const std::size_t size : kSizes) {
        const bytes body = nested_logos(size / 18);
        const cost all = cost_of("overlapping announcements", kServiceInformation, body);
        expect_within_budget(all.done, body.size());
        expect_used_up(kStringBytes, all.done, body.size());
        // Each string byte that may be read is kept once; an address that is read stands twice for a moment.
        expect_below(all, body.size(), {6, 80000}, {12, 160000});
    }
}

TEST_F(Overlaps, OfNamesTakeMemoryInProportionToTheBody) {
    for (const std::size_t size : kSizes) {
        for (const reach lengths : {reach::kTwoBytes, reach::kThreeBytes}) {
            const bytes body =
                nested_names(size / size_of_nested_name(lengths), service_named_first(), lengths);
            const cost all = cost_of("overlapping names", kProgrammeInformation, body);
            expect_within_budget(all.done, body.size());
            expect_used_up(kStringBytes, all.done, body.size());
            expect_below(all, body.size(), {6, 80000}, {6, 80000});
        }
    }
}

// The smallest programmes and services that there are, properly nested: the most events for a body's bytes.
TEST_F(Overlaps, OrNotTheSmallestElementsTakeMemoryInProportionToTheBody) {
    for (const std::size_t size : kSizes) {
        bytes programmes;
        bytes services;
        bytes logos;
        for (std::size_t i = 0; i < size / 2; ++i) {
            append(programmes, {0x1C, 0x00});
            append(services, {0x28, 0x00});
            append(logos, {0x2B, 0x00});
        }
        const bytes pi = join({service_named_first(), elem(tag::epg, {elem(tag::schedule, programmes)})});
        const cost of_programmes = cost_of("smallest programmes", kProgrammeInformation, pi);
        EXPECT_EQ(of_programmes.done.events, size / 2);
        expect_below(of_programmes, pi.size(), {80, 4000}, {80, 4000});
        const bytes si = elem(tag::service_information, {elem(tag::ensemble, services)});
        const cost of_services = cost_of("smallest services", kServiceInformation, si);
        EXPECT_EQ(of_services.done.events, size / 2);
        expect_below(of_services, si.size(), {80, 4000}, {80, 4000});
        const bytes one =
            elem(tag::service_information,
                 {elem(tag::ensemble, {elem(tag::service, {elem(tag::media_description, logos)})})});
        const cost of_logos = cost_of("smallest announcements", kServiceInformation, one);
        EXPECT_EQ(of_logos.done.logos, size / 2);
        expect_below(of_logos, one.size(), {42, 4000}, {42, 4000});
    }
}

}  // namespace
