// What the receiver reads and what it passes over.
#include "tests/tools/spi/decoded.h"

namespace {

using so::reading;

TEST(DecodeReading, ProgrammesAreReadForNameTimeAndBearer) {
    const so::object read = so::decode(around_programme(
        sb::join({sb::attr(0x80, sb::str("crid")), sb::attr(0x81, sb::u24(1)),
                  sb::elem(0x10, {sb::text("s")}), sb::elem(0x11, {sb::text("m")}),
                  sb::elem(0x19, {sb::elem(0x2C, sb::attr(0x82, sb::time_point(61000, 1, 0)))}),
                  sb::elem(0x13, {sb::elem(0x2B, {})})})));
    const std::string in = "epg/schedule/programme";
    EXPECT_EQ(node_at(read, in).receiver, reading::read);
    EXPECT_EQ(node_at(read, in + "/@id").receiver, reading::passed_over);
    EXPECT_EQ(node_at(read, in + "/@shortId").receiver, reading::read);
    EXPECT_EQ(node_at(read, in + "/shortName").receiver, reading::passed_over);
    EXPECT_EQ(node_at(read, in + "/shortName/text").receiver, reading::passed_over);
    EXPECT_EQ(node_at(read, in + "/mediumName/text").receiver, reading::read);
    EXPECT_EQ(node_at(read, in + "/location/time/@actualTime").receiver, reading::passed_over);
    EXPECT_EQ(node_at(read, in + "/mediaDescription/multimedia").receiver, reading::passed_over);
}

TEST(DecodeReading, AMediumNameBehindALongOneIsNotNeeded) {
    const so::object read = so::decode(
        around_programme(sb::join({sb::elem(0x12, {sb::text("l")}), sb::elem(0x11, {sb::text("m")})})));
    EXPECT_EQ(node_at(read, "epg/schedule/programme/mediumName").receiver, reading::not_needed);
    EXPECT_EQ(node_at(read, "epg/schedule/programme/mediumName/text").receiver, reading::passed_over);
    const so::object empty = so::decode(
        around_programme(sb::join({sb::elem(0x12, {sb::text("")}), sb::elem(0x11, {sb::text("m")})})));
    EXPECT_EQ(node_at(empty, "epg/schedule/programme/mediumName").receiver, reading::read);
}

TEST(DecodeReading, AShortNameOfAServiceIsNotNeededBehindAMediumOne) {
    const std::string in = "serviceInformation/ensemble/service/";
    const so::object read = so::decode(
        around_service(sb::join({sb::elem(0x11, {sb::text("m")}), sb::elem(0x10, {sb::text("s")})})));
    EXPECT_EQ(node_at(read, in + "shortName").receiver, reading::not_needed);
    const so::object other = so::decode(
        around_service(sb::join({sb::elem(0x10, {sb::text("s")}), sb::elem(0x11, {sb::text("m")})})));
    EXPECT_EQ(node_at(other, in + "shortName").receiver, reading::read);
    EXPECT_EQ(node_at(other, in + "mediumName").receiver, reading::read);
}

TEST(DecodeReading, TheFirstUrlThatIsNotEmptyCounts) {
    const so::object read = so::decode(around_service(sb::elem(
        0x13,
        {sb::elem(0x2B, {sb::attr(0x82, {}), sb::attr(0x82, sb::str("a")), sb::attr(0x82, sb::str("b"))})})));
    const so::node& media = node_at(read, "serviceInformation/ensemble/service/mediaDescription/multimedia");
    EXPECT_EQ(media.children[0].receiver, reading::read);
    EXPECT_EQ(media.children[1].receiver, reading::read);
    EXPECT_EQ(media.children[2].receiver, reading::not_needed);
}

TEST(DecodeReading, NothingOfAnObjectIsReadUnderAnotherSubType) {
    for (const std::uint16_t subtype : std::initializer_list<std::uint16_t>{0, 2, 3}) {
        so::decode_options options;
        options.content_subtype = subtype;
        const so::object read = so::decode(around_programme(sb::elem(0x12, {sb::text("l")})), options);
        so::visit(read, [](const so::node& each, const std::vector<const so::node*>&) {
            EXPECT_EQ(each.receiver, reading::passed_over) << so::shown_name(each);
        });
    }
}

}  // namespace
