// Bodies of a few bytes: every one of one and of two bytes, three-byte ones of the values that mean
// something, and the same three bytes as the end of a body that stops inside an element. Nothing outside a
// body is read: each is an array of exactly its size, under AddressSanitizer a byte too far is an error.
#include "tests/parse/parse_fixture.h"

#include "src/parse/pi_body_parser.h"
#include "src/parse/si_body_parser.h"

namespace {

using namespace spi_builder;

// Every tag that is read in some place, every form of length, and neighbours.
const bytes kTypicalBytes = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x10, 0x11, 0x12, 0x13, 0x19,
                             0x1C, 0x21, 0x24, 0x25, 0x26, 0x28, 0x29, 0x2B, 0x2C, 0x2D, 0x7F,
                             0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0xFD, 0xFE, 0xFF};

template <class Visit>
void every_three_of(const bytes& values, Visit visit) {
    for (const std::uint8_t a : values)
        for (const std::uint8_t b : values)
            for (const std::uint8_t c : values)
                visit(bytes{a, b, c});
}

class SmallBodies : public parse_fixture {
 protected:
    std::size_t events_in_pi(const bytes& body) {
        EXPECT_EQ(spi::PiBodyParser(parser, 0).parse(body_of(body)), 0);
        return router.take().size();
    }
    std::size_t events_in_si(const bytes& body) {
        EXPECT_EQ(spi::SiBodyParser(parser).parse(service_of(0xE1, 0xD001), body_of(body)), 0);
        return router.take().size();
    }
};

TEST_F(SmallBodies, OfOneAndTwoBytesHoldNothing) {
    for (unsigned a = 0; a < 256; ++a) {
        ASSERT_EQ(events_in_pi(u8(a)) + events_in_si(u8(a)), 0U) << a;
        for (unsigned b = 0; b < 256; ++b) {
            const bytes body = u16(a << 8 | b);
            ASSERT_EQ(events_in_pi(body) + events_in_si(body), 0U) << a << ' ' << b;
        }
    }
}

TEST_F(SmallBodies, OfThreeBytesHoldNothing) {
    every_three_of(kTypicalBytes,
                   [&](const bytes& body) { ASSERT_EQ(events_in_pi(body) + events_in_si(body), 0U); });
}

// Each element claims more than there is, so that the last three bytes stand inside the innermost one.
bytes open(std::uint8_t tag) {
    return {tag, 0x7F};
}

TEST_F(SmallBodies, ProgrammeInformationThatEndsWithAnyThreeBytes) {
    const bytes id = elem(tag::default_content_id, content_id(0xE1, 0, 0xC221));
    const bytes programme = join({open(tag::epg), id, open(tag::schedule), open(tag::programme)});
    const bytes location = join({programme, open(tag::location)});
    const bytes scope =
        join({open(tag::epg), id, open(tag::schedule), elem(tag::programme, bytes{}), open(tag::scope)});
    const bytes contexts[] = {
        programme,
        join({programme, open(tag::long_name)}),
        join({programme, open(tag::medium_name), open(tag::text)}),
        join({programme, open(attribute::programme::short_id)}),
        location,
        join({location, open(tag::time)}),
        join({location, open(tag::time), open(attribute::time::time)}),
        join({location, open(tag::time), open(attribute::time::time), bytes{0x38, 0x66, 0x9D}}),
        join({location, open(tag::bearer)}),
        join({location, open(tag::bearer), open(attribute::bearer::id), bytes{0x10, 0xE1, 0x00}}),
        scope,
        join({scope, open(tag::service_scope)}),
        join({scope, open(tag::service_scope), open(attribute::service_scope::id), bytes{0x00, 0xE1, 0x00}}),
    };
    for (const bytes& context : contexts) {
        every_three_of(kTypicalBytes, [&](const bytes& last) {
            const std::size_t events = events_in_pi(join({context, last}));
            ASSERT_GE(events, 1U);      // the programme that was begun, or stood whole
            ASSERT_LE(events, 1U + 3);  // and at most one for each byte
        });
    }
}

TEST_F(SmallBodies, ServiceInformationThatEndsWithAnyThreeBytes) {
    const bytes service = join({open(tag::service_information), open(tag::ensemble), open(tag::service)});
    const bytes multimedia = join({service, open(tag::media_description), open(tag::multimedia)});
    const bytes contexts[] = {
        service,
        join({service, open(tag::short_name)}),
        join({service, open(tag::medium_name), open(tag::text)}),
        join({service, open(tag::service_bearer)}),
        join({service, open(tag::service_bearer), open(attribute::service_bearer::id),
              bytes{0x10, 0xE1, 0x00}}),
        join({service, open(tag::media_description)}),
        multimedia,
        join({multimedia, open(attribute::multimedia::mime)}),
        join({multimedia, open(attribute::multimedia::url)}),
        join({multimedia, open(attribute::multimedia::type)}),
        join({multimedia, open(attribute::multimedia::width)}),
    };
    for (const bytes& context : contexts) {
        every_three_of(kTypicalBytes, [&](const bytes& last) {
            const std::size_t events = events_in_si(join({context, last}));
            ASSERT_GE(events, 1U);
            ASSERT_LE(events, 1U + 3);
        });
    }
}

TEST_F(SmallBodies, TokenTablesThatEndWithAnyThreeBytes) {
    const bytes pi = join({open(tag::epg), open(tag::token_table)});
    const bytes si = join({open(tag::service_information), open(tag::token_table)});
    every_three_of(kTypicalBytes, [&](const bytes& last) {
        ASSERT_EQ(events_in_pi(join({pi, last})), 0U);
        ASSERT_EQ(events_in_pi(join({pi, open(0x01), last})), 0U);
        ASSERT_EQ(events_in_si(join({si, last})), 0U);
        ASSERT_EQ(events_in_si(join({si, open(0x01), last})), 0U);
    });
}

}  // namespace
