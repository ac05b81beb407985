// Bodies made to cost: elements that claim more than their parents hold, so that the same bytes are read
// again and again, and lengths that point far beyond the body. What one body can cause is bounded by its
// size.
#include "tests/parse/hostile_bodies.h"

namespace {

using namespace hostile;

TEST_F(HostileBodies, NestedSchedulesBelowTheBudgetAreReadByTheLetter) {
    for (const std::size_t count : {1U, 2U, 3U, 10U, 40U}) {
        const bytes body = nested_schedules(count);
        EXPECT_EQ(of_pi(body).events, count * (count + 1) / 2);
        EXPECT_EQ(events_of(1, body), count * (count + 1) / 2);
    }
    EXPECT_EQ(events_of(1, nested_schedules(3)), 6U);
}

TEST_F(HostileBodies, NestedLogosBelowTheBudgetAreReadByTheLetter) {
    for (const std::size_t count : {1U, 2U, 3U, 4U, 8U, 12U}) {
        const bytes body = nested_logos(count);
        EXPECT_EQ(of_si(body).logos, count * (count + 1) * (count + 2) / 6);
        EXPECT_EQ(events_of(0, body), count * (count + 1) / 2);
        EXPECT_EQ(router.logos, count * (count + 1) * (count + 2) / 6);
    }
}

TEST_F(HostileBodies, NestedSchedulesOfAnySizeStayWithinTheBudget) {
    for (const std::size_t size : {1024U, 65536U, 1048576U}) {
        const bytes body = nested_schedules(size / 8);
        const work done = of_pi(body);
        expect_within_budget(done, body.size());
        EXPECT_EQ(done.scopes, 2 * body.size() + 4096);  // by the letter it would be far more
        EXPECT_GT(done.events, 0U);                      // what was sent stays sent
        EXPECT_EQ(events_of(1, body), done.events);
    }
}

TEST_F(HostileBodies, NestedLogosOfAnySizeStayWithinTheBudget) {
    for (const std::size_t size : {1024U, 65536U, 1048576U}) {
        const bytes body = nested_logos(size / 18);
        const work done = of_si(body);
        expect_within_budget(done, body.size());
        EXPECT_EQ(done.string_bytes, 4 * body.size() + 65536);
        EXPECT_GT(done.logos, 0U);
        EXPECT_EQ(events_of(0, body), done.events);
        EXPECT_EQ(router.logos, done.logos);
        EXPECT_EQ(router.text, done.text);
    }
}

TEST_F(HostileBodies, WorkerGoesOnWithTheNextObject) {
    events_of(1, nested_schedules(8192));
    events_of(0, nested_logos(3600));
    EXPECT_EQ(events_of(1, nested_schedules(3)), 6U);
    EXPECT_EQ(events_of(0, nested_logos(3)), 6U);
}

TEST_F(HostileBodies, ProperlyNestedObjectsUseAtMostOneScopeAndOneStringByteForEachByte) {
    // As many elements as fit: empty ones of two bytes, and ones of tag 0x7F, which end behind their tag.
    for (const bytes& dense : {bytes(3000, 0x00), bytes(3000, 0x7F)}) {
        const bytes pi = elem(tag::epg, {elem(tag::schedule, {elem(tag::programme, dense)})});
        const work of_programmes = of_pi(pi);
        EXPECT_LE(of_programmes.scopes, pi.size());
        EXPECT_GE(of_programmes.scopes, 1500U);
        const bytes si = elem(tag::service_information, {elem(tag::ensemble, {elem(tag::service, dense)})});
        EXPECT_LE(of_si(si).scopes, si.size());
    }
    // As many string bytes as fit.
    const bytes title = text(std::string(60000, 'x'));
    const bytes pi =
        join({service_named_first(),
              elem(tag::epg, {elem(tag::schedule, {elem(tag::programme, {elem(tag::long_name, title)})})})});
    const work done = of_pi(pi);
    EXPECT_EQ(done.text, 60000U);
    EXPECT_EQ(done.string_bytes, 60000U);
}

TEST_F(HostileBodies, BodyOfTheSmallestProgrammesIsReadWhole) {
    for (const std::size_t programmes : {1000U, 100000U}) {
        bytes content;
        for (std::size_t i = 0; i < programmes; ++i) {
            content.push_back(0x1C);
            content.push_back(0x00);
        }
        const bytes body = join({service_named_first(), elem(tag::epg, {elem(tag::schedule, content)})});
        EXPECT_EQ(of_pi(body).events, programmes);
        EXPECT_EQ(events_of(1, body), programmes);
    }
}

TEST_F(HostileBodies, LengthsThatPointFarBeyondTheBodyAreCheap) {
    // 208 bytes: 20 schedules that claim 16 megabytes each, and zeros. Only bytes that exist are walked: each
    // schedule opens at most one scope for each of them.
    bytes body;
    for (int i = 0; i < 20; ++i)
        body = join({std::move(body), bytes{0x02, 0x08, 0x21, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00}});
    body = join({std::move(body), bytes(8, 0x00)});
    ASSERT_EQ(body.size(), 208U);
    EXPECT_LE(of_pi(body).scopes, 208U);
    std::replace(body.begin(), body.end(), std::uint8_t{0x02}, std::uint8_t{0x03});
    std::replace(body.begin(), body.end(), std::uint8_t{0x21}, std::uint8_t{0x26});
    EXPECT_LE(of_si(body).scopes, 208U);
}

TEST_F(HostileBodies, LongestLengthAtTheEndEndsTheWalk) {
    const bytes prefixes[] = {{},
                              {0x02, 0x7F},
                              {0x02, 0x7F, 0x21, 0x7F},
                              {0x02, 0x7F, 0x21, 0x7F, 0x1C, 0x7F},
                              {0x02, 0x7F, 0x21, 0x7F, 0x1C, 0x7F, 0x19, 0x7F, 0x2C, 0x7F},
                              {0x02, 0x7F, 0x21, 0x7F, 0x24, 0x7F, 0x25, 0x7F},
                              {0x02, 0x7F, 0x04, 0x7F},
                              {0x03, 0x7F},
                              {0x03, 0x7F, 0x26, 0x7F},
                              {0x03, 0x7F, 0x26, 0x7F, 0x28, 0x7F},
                              {0x03, 0x7F, 0x26, 0x7F, 0x28, 0x7F, 0x29, 0x7F},
                              {0x03, 0x7F, 0x26, 0x7F, 0x28, 0x7F, 0x13, 0x7F, 0x2B, 0x7F}};
    for (const bytes& prefix : prefixes) {
        for (unsigned tag = 0; tag < 256; ++tag) {
            for (const bytes& end : {bytes{0xFF, 0xFF, 0xFF, 0xFF}, bytes{0xFF, 0xFF, 0xFF, 0xFF, 0x00},
                                     bytes{0xFE, 0xFF, 0xFF}, bytes{0xFF}, bytes{0xFE}}) {
                const bytes body = join({prefix, u8(tag), end});
                const work pi = of_pi(body);
                const work si = of_si(body);
                ASSERT_LE(pi.scopes, body.size());
                ASSERT_LE(si.scopes, body.size());
                ASSERT_LE(pi.string_bytes, body.size());
                ASSERT_LE(si.string_bytes, body.size());
            }
        }
    }
}

TEST_F(HostileBodies, TokenTextsMultiplyOnlyWhatWasReadFromTheBody) {
    // Every byte of the name stands for a text of 255 bytes; a text of 256 would define nothing.
    const bytes table = token_table({{0x01, std::string(255, 'x')}, {0x02, std::string(256, 'y')}});
    const bytes name = elem(tag::long_name, {elem(tag::text, bytes(1000, 0x01))});
    const bytes other = elem(tag::long_name, {elem(tag::text, bytes(1000, 0x02))});
    const bytes body =
        join({service_named_first(),
              elem(tag::epg,
                   {table, elem(tag::schedule, {elem(tag::programme, name), elem(tag::programme, other)})})});
    const work done = of_pi(body);
    EXPECT_EQ(done.events, 2U);
    EXPECT_EQ(done.text, 255U * 1000);
    EXPECT_EQ(done.string_bytes, 255U + 1000 + 1000);
}

}  // namespace
