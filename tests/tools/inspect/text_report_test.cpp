// The text of inspect, whole and piece by piece.
#include "tools/inspect/text_report.h"

#include "tests/tools/inspect/reports.h"

namespace {

using namespace dabspi;
using testing::HasSubstr;
using testing::Not;

std::string text_of(const sb::bytes& content, bool hex = false) {
    const owned_report owned(content);
    text_style style;
    style.hex = hex;
    return text_report(owned.report, style);
}

TEST(TextReport, OfProgrammeInformation) {
    EXPECT_EQ(text_of(small_programme_information()),
              "x.bin: programme information, 67 bytes, well formed\n"
              "  offset  length  r: the receiver reads it   -: passes over it   o: an earlier one counts\n"
              "       0      65  r epg\n"
              "       2       6  r   tokenTable\n"
              "       4       4  r     <01> \"News\"\n"
              "      10      55  r   schedule\n"
              "      12      10  r     scope\n"
              "      14       8  r       serviceScope\n"
              "      16       6  r         @id dab:1e0.10c1.1a01.0\n"
              "      24      41  r     programme\n"
              "      26       3  r       @shortId 66051\n"
              "      31       7  -       shortName\n"
              "      33       5  -         text \"Short\"\n"
              "      40      10  r       longName\n"
              "      42       8  r         text \"News at Ten\" coded \"<01> at Ten\"\n"
              "      52      13  r       location\n"
              "      54      11  r         time\n"
              "      56       5  r           @time 2026-03-10T10:00:00+01:00 = 2026-03-10T09:00:00Z\n"
              "      63       2  r           @duration PT1H30M = 5400 s\n"
              "  a receiver on ensemble 10C1 (the object's own) takes from it:\n"
              "      24  E0.1A01.0  2026-03-10 10:00    90 min  News at Ten\n");
}

TEST(TextReport, OfServiceInformation) {
    EXPECT_EQ(text_of(small_service_information()),
              "x.bin: service information, 73 bytes, well formed\n"
              "  offset  length  r: the receiver reads it   -: passes over it   o: an earlier one counts\n"
              "       0      71  r serviceInformation\n"
              "       2      69  r   ensemble\n"
              "       4       3  -     @id e0.10c1\n"
              "       9      62  r     service\n"
              "      11       5  r       shortName\n"
              "      13       3  r         text \"Orb\"\n"
              "      18      10  r       mediumName\n"
              "      20       8  r         text \"Orbitale\"\n"
              "      30       8  r       bearer\n"
              "      32       6  r         @id dab:1e0.10c1.1a01.0\n"
              "      40      31  r       mediaDescription\n"
              "      42      29  r         multimedia\n"
              "      44       9  r           @mimeValue \"image/png\"\n"
              "      55       5  r           @url \"a.png\"\n"
              "      62       1  r           @type logo_unrestricted = 2\n"
              "      65       2  r           @width 128\n"
              "      69       2  r           @height 128\n"
              "  a receiver takes from it:\n"
              "       9  E0.1A01.0  Orbitale\n"
              "      42    logo  PNG 128x128  a.png\n");
}

TEST(TextReport, WithTheBytesBesideIt) {
    EXPECT_EQ(text_of(sb::elem(0x02, {sb::elem(0x06, sb::str("a long language"))}), true),
              "x.bin: programme information, 19 bytes, well formed\n"
              "  offset  length  bytes                    r: the receiver reads it   -: passes over it   o: "
              "an earlier one counts\n"
              "       0      17  02 11                    r epg\n"
              "       2      15  06 0F 61 20 6C 6F 6E 67  -   defaultLanguage \"a long language\"\n"
              "      10          20 6C 61 6E 67 75 61 67\n"
              "      18          65\n"
              "  a receiver takes nothing from it\n");
}

TEST(TextReport, FaultsStandWhereTheyAre) {
    EXPECT_EQ(text_of(sb::bytes{0x02, 0x09, 0x21, 0x03, 0x82, 0x01, 0xE9}),
              "x.bin: programme information, 7 bytes, malformed in 2 places\n"
              "  offset  length  r: the receiver reads it   -: passes over it   o: an earlier one counts\n"
              "       0       5  r epg\n"
              "       0          malformed: the length says 9 bytes, and 5 are left in the object "
              "[length-beyond-object]\n"
              "                    the receiver takes what is there, and the object as ended\n"
              "       2       3  r   schedule\n"
              "       4       1  -     @originator \"\xEF\xBF\xBD\"\n"
              "       6          malformed: not UTF-8 [text-not-utf8]\n"
              "                    the receiver passes over it\n"
              "  a receiver takes nothing from it\n");
}

TEST(TextReport, UnknownTagsShowTheirBytes) {
    const std::string text =
        text_of(sb::elem(0x02, {sb::attr(0x8F, {1, 2}), sb::elem(0x7A, sb::bytes(40, 0xAB))}));
    EXPECT_THAT(text, HasSubstr("       2       2  -   0x8F unknown attribute: 01 02\n"));
    EXPECT_THAT(text, HasSubstr("-   0x7A unknown element: AB AB"));
    EXPECT_THAT(text, HasSubstr("AB ...\n"));
    EXPECT_THAT(text, HasSubstr("well formed, 2 remarks\n"));
    EXPECT_THAT(text, Not(HasSubstr("[unknown-tag]")));
}

TEST(TextReport, NoByteDrivesTheTerminal) {
    const std::string text = text_of(sb::elem(
        0x02, {sb::elem(0x21, {sb::attr(0x82, sb::str("\x1B[2J")),
                               sb::elem(0x1C, {sb::elem(0x12, {sb::text("\x1B]0;\x07 \xE2\x80\xAE")})})})}));
    for (const char c : text)
        ASSERT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << testing::PrintToString(text);
    EXPECT_THAT(text, HasSubstr("\\u001b"));
    EXPECT_THAT(text, HasSubstr("\\u202e"));
}

TEST(TextReport, ColoursAreOnlyAdded) {
    text_style coloured;
    coloured.colours = colouring(true);
    const owned_report owned(sb::bytes{0x02, 0x09, 0x21, 0x03, 0x82, 0x01, 0xE9});
    std::string text = text_report(owned.report, coloured);
    EXPECT_THAT(text, HasSubstr("\033[31m"));
    for (std::size_t at; (at = text.find('\033')) != std::string::npos;)
        text.erase(at, text.find('m', at) - at + 1);
    EXPECT_EQ(text, text_report(owned.report, {}));
}

TEST(TextReport, RecordingsAreNamedWithTheirLines) {
    inspected_body body = gathered_body(sb::elem(0x02, {}), "day.jsonl");
    body.lines = {12, 40, 77};
    body.content_name = "w.ehb";
    body.content_type = std::uint8_t{7};
    body.content_subtype = std::uint16_t{1};
    const owned_report owned(body);
    EXPECT_THAT(text_report(owned.report, {}),
                testing::StartsWith(
                    "day.jsonl:12 (and 2 more, to line 77): w.ehb (ContentType 7, sub-type 1): programme "
                    "information, 2 bytes, well formed\n"));
}

TEST(TextReport, WhatIsLeftOutIsCounted) {
    sb::bytes many;
    for (int i = 0; i < 1500; ++i)
        many.insert(many.end(), {0x7A, 0x00});
    EXPECT_THAT(text_of(sb::elem(0x02, many)), HasSubstr("  and 500 more malformed places and remarks\n"));
}

TEST(TextReport, OutputOfHostileObjectsIsBounded) {
    sb::bytes body;
    while (body.size() + 8 < 65536) {
        const std::size_t left = 65536 - body.size() - 6;
        body = sb::join({body,
                         {0x02, 0x06, 0x21, 0xFE, static_cast<std::uint8_t>(left >> 8),
                          static_cast<std::uint8_t>(left), 0x1C, 0x06}});
    }
    EXPECT_LT(text_of(body, true).size(), 8U << 20);
}

TEST(TextOfOther, IsOneLine) {
    EXPECT_EQ(text_of_other(gathered_body(sb::join({sb::str("GIF89a"), {64, 1, 240, 0}}), "a.gif"), {}),
              "a.gif: GIF image, 320x240, 10 bytes\n");
    inspected_body body = gathered_body(sb::str("x"), "day.jsonl");
    body.lines = {3};
    body.content_name = "a.png";
    body.content_type = std::uint8_t{2};
    body.content_subtype = std::uint16_t{3};
    body.kind = body_kind::image;
    EXPECT_EQ(text_of_other(body, {}),
              "day.jsonl:3: a.png (ContentType 2, sub-type 3): no image of a known kind, 1 byte\n");
}

TEST(ShownValue, IsInTheWordsOfAPerson) {
    const auto shown = [](const sb::bytes& object, const std::vector<std::size_t>& way) {
        const owned_report owned(object);
        const spi_object::node* at = &owned.report.tree.tops.front();
        for (const std::size_t index : way)
            at = &at->children.at(index);
        return shown_value(*at, object);
    };
    const auto in_programme = [](const sb::bytes& content) {
        return sb::elem(0x02, {sb::elem(0x21, {sb::elem(0x1C, content)})});
    };
    EXPECT_EQ(shown(in_programme(sb::attr(0x83, {2})), {0, 0, 0}), "yes = 2");
    EXPECT_EQ(shown(in_programme(sb::attr(0x83, {9})), {0, 0, 0}), "9");
    EXPECT_EQ(shown(in_programme(sb::attr(0x82, {0, 9})), {0, 0, 0}), "9");
    EXPECT_EQ(shown(in_programme(sb::attr(0x82, {7})), {0, 0, 0}), "07");
    EXPECT_EQ(shown(in_programme(sb::elem(0x14, sb::attr(0x80, {3, 6, 8}))), {0, 0, 0, 0}),
              "urn:tva:metadata:cs:ContentCS:2005:3.6.8");
    EXPECT_EQ(
        shown(in_programme(sb::elem(0x19, {sb::elem(0x2C, {sb::attr(0x80, sb::time_point(61109, 9, 0, 2)),
                                                           sb::attr(0x81, sb::u16(60))})})),
              {0, 0, 0, 0, 0}),
        "2026-03-10T10:00:00+01:00 = 2026-03-10T09:00:00Z");
    EXPECT_EQ(shown(in_programme(sb::elem(0x19, {sb::elem(0x2C, {sb::attr(0x80, sb::time_point(61109, 9, 0)),
                                                                 sb::attr(0x81, sb::u16(90))})})),
                    {0, 0, 0, 0, 1}),
              "PT1M30S = 90 s");
}

}  // namespace
