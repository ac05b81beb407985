// A rich programme information object, cut at each byte.
#include "tests/parse/truncation_ladder.h"

namespace {

using namespace truncation;

struct expected_programme {
    std::uint32_t crid;
    std::string medium_name;  // as it would be without the long name
    std::string name;
    std::uint8_t hour;
    std::uint8_t second;
    std::int8_t lto;
    std::uint16_t duration;
    spi::ServElemId bearer;
};

std::vector<bytes> rich_programmes() {
    const auto located = [](const bytes& start, std::uint32_t seconds, const bytes& id) {
        return elem(tag::location, {elem(tag::time, {attr(attribute::time::time, start),
                                                     attr(attribute::time::duration, u16(seconds))}),
                                    elem(tag::bearer, {attr(attribute::bearer::id, id)})});
    };
    const bytes unread =
        join({elem(tag::genre, {attr(0x80, u8(1))}), elem(tag::member_of, {attr(0x81, u24(9))}),
              elem(tag::media_description, {elem(0x1A, {text("words about it")})})});
    return {
        elem(tag::programme,
             join({attr(attribute::programme::short_id, u24(0x010101)),
                   elem(tag::medium_name, {text("\x01 now")}), elem(tag::long_name, {text("\x01 at \x02")}),
                   unread, located(time_point(57754, 9, 0), 1800, content_id(0xE1, 0xC185, 0xC221))})),
        elem_fe(tag::programme, join({attr(attribute::programme::short_id, u24(0x020202)),
                                      elem_fe(tag::medium_name, elem_fe(tag::text, str("Weather"))),
                                      located(time_point(57754, 10, 0, -2, utc_fraction{17, 500}), 600,
                                              content_id(0xE1, 0xC185, 0xE1234567, 2))})),
        elem_ff(tag::programme,
                join({attr(attribute::programme::short_id, u24(0x030303)),
                      elem_ff(tag::long_name, elem_ff(tag::text, str(kLongTitle))),
                      located(time_point(57754, 11, 0, 2), 900, content_id(0xE1, 0xC186, 0xC223))})),
        elem(tag::programme, join({elem(tag::medium_name, {text("Last")}),
                                   located(time_point(57754, 12, 0), 60, content_id(0xE1, 0xC185, 0xC224))})),
    };
}

const std::vector<expected_programme>& expected_programmes() {
    static const std::vector<expected_programme> all = {
        {0x010101, "News now", "News at Ten", 9, 0, 0, 1800, service_of(0xE1, 0xC221)},
        {0x020202, "Weather", "Weather", 10, 17, -3, 600, service_of(0xE1, 0xE1234567, 2)},
        {0x030303, "", kLongTitle, 11, 0, 2, 900, service_of(0, 0)},
        {0, "Last", "Last", 12, 0, 0, 60, service_of(0xE1, 0xC224)},
    };
    return all;
}

bytes rich_pi(element_form epg_form, element_form schedule_form) {
    const bytes scope =
        elem(tag::scope, {attr(attribute::scope::start_time, time_point(57754, 0, 0)),
                          attr(attribute::scope::stop_time, time_point(57755, 0, 0)),
                          elem(tag::service_scope, {attr(0x80, content_id(0xE1, 0xC185, 0xC221))})});
    const std::vector<bytes> p = rich_programmes();
    return epg_form(tag::epg,
                    join({token_table({{0x01, "News"}, {0x02, "Ten"}, {0x09, "tab"}}),
                          elem(tag::default_content_id, content_id(0xE1, 0xC185, 0xC220)),
                          schedule_form(tag::schedule, join({attr(0x80, u16(1)), scope, p[0], p[1]})),
                          schedule_form(tag::schedule, join({p[2], p[3]})),
                          elem(tag::programme_groups, bytes(20, 0x55))}));
}

void expect_whole(const sent_programme& sent, const expected_programme& expected) {
    EXPECT_EQ(sent.service, service_of(0xE1, 0xC221));
    EXPECT_EQ(sent.programme.eid, 0xC185);
    EXPECT_EQ(sent.programme.crid, expected.crid);
    EXPECT_EQ(sent.programme.bearer, expected.bearer);
    EXPECT_EQ(sent.programme.name, expected.name);
    EXPECT_EQ(sent.programme.time.mjd, 57754U);
    EXPECT_EQ(sent.programme.time.hour, expected.hour);
    EXPECT_EQ(sent.programme.time.minute, 0);
    EXPECT_EQ(sent.programme.time.second, expected.second);
    EXPECT_EQ(sent.programme.time.lto, expected.lto);
    EXPECT_EQ(sent.programme.duration, expected.duration);
}

// A field of a programme that the cut goes through is as coded, or unset, or all ones.
void expect_part(const sent_programme& sent, const expected_programme& expected) {
    EXPECT_EQ(sent.service, service_of(0xE1, 0xC221));
    const spi::PiScheduleProgramme& part = sent.programme;
    EXPECT_TRUE(part.crid == expected.crid || part.crid == 0 || part.crid == 0xFFFFFFFF) << part.crid;
    EXPECT_TRUE(is_part_of(expected.name, part.name) || is_part_of(expected.medium_name, part.name))
        << part.name;
    EXPECT_TRUE(part.duration == expected.duration || part.duration == 0 || part.duration == 65535)
        << part.duration;
    EXPECT_TRUE(part.bearer == expected.bearer || part.bearer == service_of(0, 0) ||
                part.bearer.sid == 0xFFFF || part.bearer.sid == 0xFFFFFFFF)
        << part.bearer.sid;
}

class PiTruncationLadder : public parse_fixture {
 protected:
    PiTruncationLadder() { set_ensemble(kEnsemble); }
    void climb(const bytes& object) {
        truncation::climb(object, rich_programmes(), expected_programmes(), [this](const bytes& part) {
            feed_pi(part);
            return take_programmes();
        });
    }
};

TEST_F(PiTruncationLadder, WithShortLengths) {
    climb(rich_pi(elem, elem));
}
TEST_F(PiTruncationLadder, WithTwoByteLengths) {
    climb(rich_pi(elem_fe, elem_fe));
}
TEST_F(PiTruncationLadder, WithThreeByteLengths) {
    climb(rich_pi(elem_ff, elem_ff));
}

TEST_F(PiTruncationLadder, WholeObjectDeliversEverything) {
    feed_pi(rich_pi(elem, elem));
    const auto sent = take_programmes();
    ASSERT_EQ(sent.size(), expected_programmes().size());
    for (std::size_t i = 0; i < sent.size(); ++i)
        expect_whole(sent[i], expected_programmes()[i]);
}

TEST_F(PiTruncationLadder, UnderTheWrongSubTypeSendsNothing) {
    const bytes object = rich_pi(elem, elem);
    for (std::size_t at = 0; at <= object.size(); ++at)
        feed_si(cut(object, at));
    EXPECT_TRUE(router.take().empty());
}

}  // namespace
