// Token tables and the texts that use them.
#include "tests/tools/spi/decoded.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kName = "epg/schedule/programme/longName/text";

sb::bytes object_with(const std::vector<sb::bytes>& tables, const std::string& name) {
    std::vector<sb::bytes> inside = tables;
    inside.push_back(sb::elem(0x21, {sb::elem(0x1C, {sb::elem(0x12, {sb::text(name)})})}));
    return sb::elem(0x02, inside);
}

TEST(DecodeTokens, AreExpandedInTexts) {
    const so::object read =
        so::decode(object_with({sb::token_table({{1, "News"}, {0x13, " at "}})}, "\x01\x13Ten"));
    EXPECT_THAT(codes_of(read), IsEmpty());
    EXPECT_EQ(so::value_text(node_at(read, kName)), "News at Ten");
    EXPECT_TRUE(std::get<so::text_value>(node_at(read, kName).decoded).tokens);
    EXPECT_EQ(so::value_text(node_at(read, "epg/tokenTable/<13>")), " at ");
    EXPECT_EQ(node_at(read, "epg/tokenTable/<01>").kind, so::node_kind::token);
}

TEST(DecodeTokens, UndefinedOnesVanish) {
    const so::object read = so::decode(object_with({},
                                                   "A\x07"
                                                   "B"));
    EXPECT_EQ(so::value_text(node_at(read, kName)), "AB");
    EXPECT_THAT(codes_of(read), ElementsAre("token-undefined@11"));
    EXPECT_EQ(receiver_of(read), "drops the byte");
}

TEST(DecodeTokens, DefinedBehindTheTextTheyVanishToo) {
    const sb::bytes object =
        sb::elem(0x02, {sb::elem(0x21, {sb::elem(0x1C, {sb::elem(0x12, {sb::text("\x01!")})})}),
                        sb::token_table({{1, "News"}})});
    const so::object read = so::decode(object);
    EXPECT_EQ(so::value_text(node_at(read, kName)), "!");
    EXPECT_THAT(codes_of(read), ElementsAre("token-before-table@10"));
}

TEST(DecodeTokens, TheFirstDefinitionCounts) {
    const so::object read = so::decode(object_with({sb::token_table({{1, "one"}, {1, "two"}})}, "\x01"));
    EXPECT_EQ(so::value_text(node_at(read, kName)), "one");
    EXPECT_THAT(codes_of(read), ElementsAre("token-twice@9"));
    EXPECT_EQ(receiver_of(read), "keeps the first text");
}

TEST(DecodeTokens, EmptyAndVeryLongTextsDefineNothing) {
    const so::object read = so::decode(
        object_with({sb::token_table({{1, ""}, {2, std::string(256, 'x')}, {1, "one"}})}, "\x01\x02"));
    EXPECT_EQ(so::value_text(node_at(read, kName)), "one");
    EXPECT_THAT(codes_of(read),
                ElementsAre("token-empty@8", "token-too-long@10", testing::StartsWith("token-undefined@")));
}

TEST(DecodeTokens, OnlySixteenBytesAreTokens) {
    const so::object read = so::decode(object_with({sb::token_table({{9, "tab"}})}, "a\tb"));
    EXPECT_EQ(so::value_text(node_at(read, kName)), "a\tb");
    EXPECT_THAT(codes_of(read), ElementsAre("token-not-a-token@4"));
}

TEST(DecodeTokens, InPlainStringsAreExpandedAndReported) {
    const sb::bytes object = sb::elem(
        0x03,
        {sb::token_table({{1, "image/"}}),
         sb::elem(
             0x26,
             {sb::elem(0x28, {sb::elem(0x13, {sb::elem(0x2B, {sb::attr(0x80, sb::str("\x01png"))})})})})});
    const so::object read = so::decode(object);
    EXPECT_EQ(so::value_text(node_at(
                  read, "serviceInformation/ensemble/service/mediaDescription/multimedia/@mimeValue")),
              "image/png");
    EXPECT_THAT(codes_of(read), ElementsAre(testing::StartsWith("token-in-plain-string@")));
    EXPECT_EQ(receiver_of(read), "expands it");
}

TEST(DecodeTokens, TheirExpansionIsBounded) {
    const so::object read =
        so::decode(object_with({sb::token_table({{1, std::string(255, 'x')}})}, std::string(60000, '\x01')));
    EXPECT_LE(so::value_text(node_at(read, kName)).size(), 16U * 60600 + 65536);
    EXPECT_THAT(codes_of(read), ElementsAre(testing::StartsWith("text-too-long@")));
}

TEST(DecodeTexts, BytesThatAreNotUtf8AreCountedAndPlaced) {
    const so::object read = so::decode(object_with({sb::token_table({{1, "News"}})}, "\x01 \xE9 \xFF"));
    EXPECT_THAT(codes_of(read), ElementsAre("text-not-utf8@20"));
    EXPECT_EQ(so::problems_of(read)[0].what->text, "not UTF-8, and 1 more in this text");
    EXPECT_EQ(receiver_of(read), "passes the bytes on as they are");
}

TEST(DecodeTexts, ControlCharactersAreReported) {
    const so::object read = so::decode(object_with({}, "a\x1B[1m\n"));
    EXPECT_THAT(codes_of(read), ElementsAre("text-control-character@11"));
    EXPECT_EQ(so::problems_of(read)[0].what->text, "the control character U+001B");
}

}  // namespace
