// Malformed objects: what is wrong, at which byte, and how a receiver takes it.
#include "tests/tools/spi/decoded.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DecodeProblems, AnEmptyObject) {
    const so::object read = so::decode(so::byte_view());
    EXPECT_THAT(codes_of(read), ElementsAre("empty-object@0"));
    EXPECT_FALSE(read.well_formed());
}

TEST(DecodeProblems, BytesThatAreNoSpiObject) {
    EXPECT_THAT(codes_of(so::decode(sb::elem(0x7A, sb::str("abc")))),
                ElementsAre("not-an-object@0", "unknown-tag@0"));
    const so::object read = so::decode(sb::elem(0x1C, {}));
    EXPECT_THAT(codes_of(read), ElementsAre("not-an-object@0"));
    EXPECT_EQ(read.problems[0].text,
              "the object begins with programme; SPI objects begin with epg or serviceInformation");
}

TEST(DecodeProblems, BytesBehindTheTopElement) {
    const so::object read = so::decode(sb::join({sb::elem(0x02, {}), sb::elem(0x02, {})}));
    EXPECT_THAT(codes_of(read), ElementsAre("several-tops@2"));
    EXPECT_EQ(receiver_of(read), "looks for further top elements there");
    EXPECT_EQ(read.tops.size(), 2U);
}

TEST(DecodeProblems, ALengthThatIsMissing) {
    const so::object read = so::decode(sb::bytes{0x02});
    EXPECT_THAT(codes_of(read), ElementsAre("length-missing@0"));
    EXPECT_EQ(receiver_of(read), "takes it as 255 bytes that are not there");
    EXPECT_EQ(read.tops[0].stated, 255U);
}

TEST(DecodeProblems, ALengthThatIsMissingInsideAnElement) {
    const so::object read = so::decode(sb::bytes{0x02, 0x01, 0x21, 0x01});
    EXPECT_THAT(codes_of(read), ElementsAre("several-tops@3", "length-missing@2", "length-missing@3"))
        << "the byte behind the epg is no element of the object";
    EXPECT_EQ(node_at(read, "epg/schedule").problems[0].receiver,
              "takes bytes behind the epg for the length");
}

TEST(DecodeProblems, ALengthThatIsCut) {
    EXPECT_EQ(receiver_of(so::decode(sb::bytes{0x02, 0xFE, 0x00})),
              "takes it as 65,535 bytes that are not there");
    const so::object read = so::decode(sb::bytes{0x02, 0xFF, 0x00, 0x00});
    EXPECT_THAT(codes_of(read), ElementsAre("length-cut@0"));
    EXPECT_EQ(read.tops[0].problems[0].text, "the length has 3 bytes, and 2 of them are there");
    EXPECT_EQ(receiver_of(read), "takes this as an element without content, and moves on by one byte");
}

TEST(DecodeProblems, AThreeByteLengthAtTheVeryEndIsWellFormedButMisread) {
    const so::object read = so::decode(sb::bytes{0x02, 0xFF, 0x00, 0x00, 0x00});
    EXPECT_THAT(codes_of(read), ElementsAre("length-in-last-bytes@0"));
    EXPECT_TRUE(read.well_formed());
    EXPECT_THAT(codes_of(so::decode(sb::elem_ff(0x02, {0x21, 0x00}))), IsEmpty());
}

TEST(DecodeProblems, ALengthThatReachesOutOfTheObject) {
    const so::object read = so::decode(sb::bytes{0x02, 0x0A, 0x21, 0x00});
    EXPECT_THAT(codes_of(read), ElementsAre("length-beyond-object@0"));
    EXPECT_EQ(read.tops[0].problems[0].text, "the length says 10 bytes, and 2 are left in the object");
    EXPECT_EQ(receiver_of(read), "takes what is there, and the object as ended");
    EXPECT_EQ(read.tops[0].length, 2U);
    EXPECT_EQ(read.tops[0].stated, 10U);
}

TEST(DecodeProblems, ALengthThatReachesOutOfItsElement) {
    const so::object read = so::decode(sb::bytes{0x02, 0x04, 0x21, 0x04, 0x1C, 0x00, 0x00, 0x00});
    EXPECT_THAT(codes_of(read), ElementsAre("several-tops@6", "length-beyond-parent@2", "unknown-tag@6"));
    EXPECT_EQ(node_at(read, "epg/schedule").problems[0].receiver,
              "reads on to byte 7 as its content, then goes back and reads again from byte 6");
}

TEST(DecodeProblems, WhatIsPassedOverCannotMislead) {
    const so::object read = so::decode(around_programme({0x14, 0x07, 0x80, 0x01, 0x03}));
    EXPECT_THAT(codes_of(read), ElementsAre("length-beyond-object@6"));
    EXPECT_EQ(receiver_of(read), "passes over it");
}

TEST(DecodeProblems, TagsThatAreNotKnownAreNoFault) {
    const so::object read =
        so::decode(sb::elem(0x02, {sb::attr(0x8F, {1, 2}), sb::elem(0x7A, sb::str("x"))}));
    EXPECT_THAT(codes_of(read), ElementsAre("unknown-tag@2", "unknown-tag@6"));
    EXPECT_TRUE(read.well_formed());
    EXPECT_EQ(read.remarks, 2U);
    EXPECT_EQ(node_at(read, "epg/0x7A").length, 1U);
}

TEST(DecodeProblems, TheTag127IsNoneToTheReceiver) {
    const so::object read = so::decode(sb::elem(0x02, {sb::elem(0x7F, {})}));
    EXPECT_THAT(codes_of(read), ElementsAre("tag-127@2", "unknown-tag@2"));
    EXPECT_EQ(node_at(read, "epg/0x7F").problems[0].receiver,
              "takes it for no tag, moves on by one byte, and takes the length for a tag");
}

TEST(DecodeProblems, ElementsInAWrongPlace) {
    const so::object read = so::decode(sb::elem(0x02, {sb::elem(0x1C, {})}));
    EXPECT_THAT(codes_of(read), ElementsAre("misplaced-element@2"));
    EXPECT_EQ(read.tops[0].children[0].problems[0].text,
              "the element programme does not belong into the epg");
    EXPECT_EQ(receiver_of(read), "passes over it");
}

TEST(DecodeProblems, AttributesTwiceAndBehindElements) {
    const so::object read =
        so::decode(sb::elem(0x02, {sb::elem(0x21, {sb::attr(0x80, sb::u16(1)), sb::attr(0x80, sb::u16(2)),
                                                   sb::elem(0x1C, {}), sb::attr(0x82, sb::str("x"))})}));
    EXPECT_THAT(codes_of(read), ElementsAre("attribute-twice@8", "attribute-after-element@14"));
}

TEST(DecodeProblems, ASecondTextTakesThePlaceOfTheFirst) {
    const so::object read = so::decode(around_programme(sb::elem(0x12, {sb::text("a"), sb::text("b")})));
    EXPECT_THAT(codes_of(read), ElementsAre("text-twice@11"));
    EXPECT_EQ(receiver_of(read), "takes the last one");
}

TEST(DecodeProblems, NestingIsBounded) {
    sb::bytes object = sb::elem(0x13, {});
    for (int i = 0; i < 30; ++i)
        object = sb::elem(0x13, object);
    const so::object read = so::decode(sb::elem(0x02, object));
    EXPECT_THAT(codes_of(read), testing::Contains(testing::StartsWith("nested-too-deep@")));
}

TEST(DecodeProblems, NumbersThatAreTooShort) {
    const auto receiver = [](const sb::bytes& object) {
        const so::object read = so::decode(object);
        EXPECT_THAT(codes_of(read), ElementsAre(testing::StartsWith("value-too-short@")));
        return receiver_of(read);
    };
    const auto media = [](const sb::bytes& attribute) {
        return around_service(sb::elem(0x13, {sb::elem(0x2B, attribute)}));
    };
    const auto time = [](const sb::bytes& attributes) {
        return around_programme(sb::elem(0x19, {sb::elem(0x2C, attributes)}));
    };
    EXPECT_EQ(receiver(around_programme(sb::attr(0x81, {1, 2}))), "takes it as 0xFFFFFF");
    EXPECT_EQ(receiver(media(sb::attr(0x84, {1}))), "takes it as 65,535");
    EXPECT_EQ(receiver(media(sb::attr(0x83, {}))), "takes it as 255");
    EXPECT_EQ(receiver(time(sb::attr(0x81, {1}))), "takes it as 65,535 s");
    EXPECT_EQ(receiver(time(sb::join({sb::attr(0x81, {0x0E}), sb::attr(0x83, sb::u16(60))}))),
              "takes what follows as the missing bytes: 3715 s");
    EXPECT_EQ(receiver(around_programme(sb::attr(0x82, {1}))), "passes over it");
}

TEST(DecodeProblems, ANumberOf24BitsAtTheVeryEndIsMisread) {
    const so::object read = so::decode(around_programme(sb::attr(0x81, {1, 2, 3})));
    EXPECT_THAT(codes_of(read), ElementsAre("number-misread@8"));
    EXPECT_EQ(receiver_of(read), "takes it as 0xFFFFFFFF");
    EXPECT_TRUE(read.well_formed());
}

TEST(DecodeProblems, EnumerationsThatAreNone) {
    const so::object read = so::decode(around_service(sb::elem(0x13, {sb::elem(0x2B, sb::attr(0x83, {3}))})));
    EXPECT_THAT(codes_of(read), ElementsAre("enumeration-unknown@12"));
    EXPECT_EQ(receiver_of(read), "takes it as no logo type");
}

TEST(DecodeProblems, AServiceScopeTakesWhatFollowsAShortIdentifier) {
    const sb::bytes id = sb::cut(sb::content_id(0xE1, 0xC185, 0xC221), 5);
    const so::object read = so::decode(sb::elem(
        0x02,
        {sb::elem(0x21, {sb::elem(0x24, {sb::elem(0x25, {sb::attr(0x80, id), sb::attr(0x8F, {})})})})}));
    EXPECT_EQ(node_at(read, "epg/schedule/scope/serviceScope/@id").problems[0].receiver,
              "takes what follows for the missing bytes, and reads service E1.C28F.0 on ensemble C185");
}

TEST(DecodeProblems, ContentThatIsNotWhatTheSubTypeSays) {
    so::decode_options options;
    options.content_subtype = std::uint16_t{0};
    const so::object read = so::decode(around_programme({}), options);
    EXPECT_THAT(codes_of(read), ElementsAre("subtype-and-content-differ@0"));
    EXPECT_EQ(read.tops[0].receiver, so::reading::passed_over);
}

TEST(DecodeProblems, PlacesWrittenAsText) {
    const so::object read = so::decode(around_service(
        sb::elem(sb::tag::geolocation, {sb::elem(sb::tag::point, {sb::text("51.473935 -2.508109")})})));
    EXPECT_THAT(codes_of(read), ElementsAre(testing::StartsWith("value-in-text@")));
    EXPECT_EQ(so::value_text(node_at(read, "serviceInformation/ensemble/service/geolocation/point/text")),
              "51.473935 -2.508109");
}

TEST(DecodeProblems, OnlyTheFirstThousandAreKept) {
    sb::bytes many;
    for (int i = 0; i < 3000; ++i)
        many.insert(many.end(), {0x7A, 0x00});
    const so::object read = so::decode(sb::elem(0x02, many));
    EXPECT_EQ(read.remarks, 3000U);
    EXPECT_EQ(so::problems_of(read).size(), 1000U);
    EXPECT_EQ(read.omitted, 2000U);
}

}  // namespace
