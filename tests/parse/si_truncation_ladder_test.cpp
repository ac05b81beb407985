// A rich service information object, cut at each byte.
#include "tests/parse/truncation_ladder.h"

namespace {

using namespace truncation;

struct expected_logo {
    spi::ServElemId service;
    int image_format;
    int size_code;
    std::string name;
};

struct expected_service {
    spi::ServElemId id;
    std::string short_name;  // as it would be without the medium name
    std::string name;
    std::vector<expected_logo> logos;
};

std::vector<bytes> rich_services() {
    const auto bearer = [](const bytes& id) { return elem(tag::service_bearer, {attr(0x80, id)}); };
    const auto media = [](const bytes& attributes) {
        return elem(tag::media_description, {elem(tag::multimedia, attributes)});
    };
    namespace m = attribute::multimedia;
    return {
        elem(tag::service,
             join({attr(attribute::service::version, u16(1)), elem(tag::short_name, {text("R4")}),
                   elem(tag::medium_name, {text("\x01 4")}), bearer(content_id(0xE1, 0xC185, 0xC221)),
                   media(join({attr(m::mime, str("image/\x02")), attr(m::language, str("en")),
                               attr(m::url, str("\x03r4")), attr(m::width, u16(320)),
                               attr(m::height, u16(240))})),
                   media(join({attr(m::type, u8(logo_colour_square)), attr(m::url, str("\x03r4.jpg"))}))})),
        elem_fe(tag::service, join({elem_fe(tag::short_name, elem_fe(tag::text, str("R5"))),
                                    media(attr(m::url, str("early.PNG"))),
                                    bearer(content_id(0xE1, 0xC185, 0xE1234567, 2))})),
        elem_ff(tag::service,
                join({elem_ff(tag::medium_name, elem_ff(tag::text, str(kLongTitle))),
                      elem(tag::keywords, {text("k")}), bearer(content_id(0xE2, 0xC186, 0xC223)),
                      elem_ff(tag::media_description,
                              elem_ff(tag::multimedia,
                                      join({attr(m::width, u16(600)), attr(m::url, str("x.JPEG"))})))})),
    };
}

const std::vector<expected_service>& expected_services() {
    const spi::ServElemId four = service_of(0xE1, 0xC221);
    static const std::vector<expected_service> all = {
        {four, "R4", "Radio 4", {{four, 2, 4, "logos/r4"}, {four, 1, 1, "logos/r4.jpg"}}},
        {service_of(0xE1, 0xE1234567, 2), "R5", "R5", {{service_of(0, 0), 2, 0, "early.PNG"}}},
        {service_of(0xE2, 0xC223), "", kLongTitle, {{service_of(0xE2, 0xC223), 0, 5, "x.JPEG"}}},
    };
    return all;
}

bytes rich_si(element_form outer_form, element_form ensemble_form) {
    const std::vector<bytes> s = rich_services();
    const bytes id = attr(attribute::ensemble::id, u24(0xE1C185));
    return outer_form(
        tag::service_information,
        join(
            {attr(0x80, u16(1)), token_table({{0x01, "Radio"}, {0x02, "png"}, {0x03, "logos/"}}),
             ensemble_form(tag::ensemble, join({id, elem(tag::medium_name, {text("Ensemble")}), s[0], s[1]})),
             ensemble_form(tag::ensemble, join({id, s[2]}))}));
}

void expect_whole(const sent_service& sent, const expected_service& expected) {
    EXPECT_EQ(sent.received_with, service_of(0xE1, 0xD001));
    EXPECT_EQ(sent.info.id, expected.id);
    EXPECT_EQ(sent.info.name, expected.name);
    ASSERT_EQ(sent.info.logos.size(), expected.logos.size());
    auto logo = sent.info.logos.begin();
    for (const expected_logo& e : expected.logos) {
        EXPECT_EQ(logo->service, e.service);
        EXPECT_EQ(logo->image_format, e.image_format);
        EXPECT_EQ(logo->size_code, e.size_code);
        EXPECT_EQ(logo->name, e.name);
        ++logo;
    }
}

void expect_part(const sent_service& sent, const expected_service& expected) {
    EXPECT_EQ(sent.received_with, service_of(0xE1, 0xD001));
    EXPECT_TRUE(is_part_of(expected.name, sent.info.name) || is_part_of(expected.short_name, sent.info.name))
        << sent.info.name;
    ASSERT_LE(sent.info.logos.size(), expected.logos.size());
    std::size_t i = 0;
    for (const spi::SpiLogoInfo& logo : sent.info.logos)
        EXPECT_TRUE(starts_with(expected.logos[i++].name, logo.name)) << logo.name;
}

class SiTruncationLadder : public parse_fixture {
 protected:
    void climb(const bytes& object) {
        truncation::climb(object, rich_services(), expected_services(), [this](const bytes& part) {
            feed_si(part);
            return take_services();
        });
    }
};

TEST_F(SiTruncationLadder, WithShortLengths) {
    climb(rich_si(elem, elem));
}
TEST_F(SiTruncationLadder, WithTwoByteLengths) {
    climb(rich_si(elem_fe, elem_fe));
}
TEST_F(SiTruncationLadder, WithThreeByteLengths) {
    climb(rich_si(elem_ff, elem_ff));
}

TEST_F(SiTruncationLadder, WholeObjectDeliversEverything) {
    feed_si(rich_si(elem, elem));
    const auto sent = take_services();
    ASSERT_EQ(sent.size(), expected_services().size());
    for (std::size_t i = 0; i < sent.size(); ++i)
        expect_whole(sent[i], expected_services()[i]);
}

TEST_F(SiTruncationLadder, UnderTheWrongSubTypeSendsNothing) {
    const bytes object = rich_si(elem, elem);
    for (std::size_t at = 0; at <= object.size(); ++at)
        feed_pi(cut(object, at));
    EXPECT_TRUE(router.take().empty());
}

}  // namespace
