// Elements that claim more than their parents hold, so that the same bytes are read again and again.
#include "tests/worst_cases/costed.h"

namespace {

using namespace hostile;

constexpr std::size_t kSizes[] = {1024, 65536, 1048576};

class Overlaps : public Costed {};

TEST_F(Overlaps, OfSchedulesTakeMemoryInProportionToTheBody) {
    for (const std::size_t size : kSizes) {
        const bytes body = nested_schedules(size / 8);
        const cost all = cost_of("overlapping schedules", kProgrammeInformation, body);
        expect_within_budget(all.done, body.size());
        // An event and its place in a queue take 145 bytes, and two scopes at least.
        expect_below(all, body.size(), {160, 350000}, {160, 350000});
    }
}

TEST_F(Overlaps, OfLogoAnnouncementsTakeMemoryInProportionToTheBody) {
    for (const std::size_t size : kSizes) {
        const bytes body = nested_logos(size / 18);
        const cost all = cost_of("overlapping announcements", kServiceInformation, body);
        expect_within_budget(all.done, body.size());
        // Each string byte that may be read is kept once; an address that is read stands twice for a moment.
        expect_below(all, body.size(), {6, 80000}, {12, 160000});
    }
}

// Schedules as above whose programmes have a name that reaches to the end of the body.
bytes nested_names(std::size_t count, const bytes& in_front) {
    bytes body = join({service_named_first(), in_front});
    const std::size_t total = body.size() + 16 * count;
    for (std::size_t i = 0; i < count; ++i) {
        append(body, {0x02, 0x0E, 0x21, 0xFE});
        append(body, length_to(total, body));
        append(body, {0x1C, 0x0E, 0x12, 0x0C, 0x01, 0xFE});
        append(body, length_to(total, body));
        append(body, {0x01, 0x01});
    }
    return body;
}

TEST_F(Overlaps, OfNamesTakeMemoryInProportionToTheBody) {
    for (const std::size_t size : kSizes) {
        const bytes body = nested_names(size / 16, {});
        const cost all = cost_of("overlapping names", kProgrammeInformation, body);
        expect_within_budget(all.done, body.size());
        expect_below(all, body.size(), {6, 80000}, {6, 80000});
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
        expect_below(cost_of("smallest programmes", kProgrammeInformation, pi), pi.size(), {80, 4000},
                     {80, 4000});
        const bytes si = elem(tag::service_information, {elem(tag::ensemble, services)});
        expect_below(cost_of("smallest services", kServiceInformation, si), si.size(), {80, 4000},
                     {80, 4000});
        const bytes one =
            elem(tag::service_information,
                 {elem(tag::ensemble, {elem(tag::service, {elem(tag::media_description, logos)})})});
        expect_below(cost_of("smallest announcements", kServiceInformation, one), one.size(), {42, 4000},
                     {42, 4000});
    }
}

}  // namespace
