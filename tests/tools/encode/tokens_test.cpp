// Token tables: which texts they hold, where they are put, what they save.

#include "tests/tools/encode/encoding.h"
#include "tools/encode/token_builder.h"
#include "tools/spi/decode.h"
#include "tools/spi/xml_document.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::string names(const std::vector<std::string>& all) {
    std::string programmes;
    for (const std::string& each : all)
        programmes += "<programme><longName>" + each + "</longName></programme>";
    return pi_document("<schedule>" + programmes + "</schedule>");
}

dabspi::broadcast_object with_built_tokens(const std::string& document) {
    const auto made = encoded(document);
    dabspi::token_choice choice;
    choice.build = true;
    return make_object(made.objects.at(0), choice);
}

TEST(Tokens, TheTextThatSavesMostIsChosenFirst) {
    EXPECT_THAT(dabspi::choose_tokens({"Morning News", "Evening News", "Evening News"}),
                ElementsAre(Pair(0x01, "ning News")))
        << "three uses of 9 bytes save 24 and cost 11; two uses of 12 bytes save 22 and cost 14";
    EXPECT_THAT(
        dabspi::choose_tokens({"Morning Concert", "Evening Concert", "Evening Concert", "Evening Concert"}),
        ElementsAre(Pair(0x01, "ning Concert"), Pair(0x02, "Eve")))
        << "48 bytes less 18";
}

TEST(Tokens, NoneAreMadeWhereNoneSave) {
    EXPECT_THAT(dabspi::choose_tokens({"ab", "ab", "ab"}), IsEmpty())
        << "three bytes saved, four for the entry";
    EXPECT_THAT(dabspi::choose_tokens({}), IsEmpty());
    EXPECT_THAT(dabspi::choose_tokens({"", "x"}), IsEmpty());
}

TEST(Tokens, EqualSavingsGoToTheLongerThenToTheFirstInOrder) {
    EXPECT_THAT(dabspi::choose_tokens({"uvwxyz1", "uvwxyz2", "abcdef3", "abcdef4"}),
                ElementsAre(Pair(0x01, "abcdef"), Pair(0x02, "uvwxyz")));
    // Five uses of three bytes save 10 less 5; three uses of five bytes 12 less 7.
    EXPECT_THAT(dabspi::choose_tokens({"uvw1", "uvw2", "uvw3", "uvw4", "uvw5", "abcde1", "abcde2", "abcde3"}),
                ElementsAre(Pair(0x01, "abcde"), Pair(0x02, "uvw")));
}

TEST(Tokens, AreNoLongerThanTheirLengthCanTell) {
    const std::string text = std::string(300, 'x') + "y";
    for (const auto& [code, token] : dabspi::choose_tokens({text, text, text}))
        EXPECT_LE(token.size(), 255u) << int{code};
}

TEST(Tokens, DoNotCutCharacters) {
    // The two letters share their first byte.
    const auto tokens =
        dabspi::choose_tokens({"12345678\xC3\xA9", "12345678\xC3\xA8", "12345678\xC3\xA9", "\xC3\xA8"});
    for (const auto& [code, token] : tokens) {
        EXPECT_NE(token.back(), '\xC3') << int{code};
        EXPECT_NE(token.front(), '\xA9') << int{code};
    }
    EXPECT_THAT(tokens, testing::Not(IsEmpty()));
}

TEST(Tokens, UsesThatOverlapCountOnce) {
    // "abab" stands four times in it, and can be used twice: 6 bytes saved, 6 for the entry.
    EXPECT_THAT(dabspi::choose_tokens({"ababababab"}), ElementsAre(Pair(0x01, "ab")));
}

TEST(Tokens, SixteenAtMostAndOnlyOnTheBytesOfTokens) {
    std::vector<std::string> texts;
    for (char c = 'a'; c <= 'z'; ++c)
        texts.insert(texts.end(), 5, std::string(12, c));
    std::vector<std::string_view> views(texts.begin(), texts.end());
    const auto tokens = dabspi::choose_tokens(views);
    std::vector<std::uint8_t> codes;
    for (const auto& each : tokens)
        codes.push_back(each.first);
    EXPECT_THAT(codes, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 0x0B, 0x0C, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13));
}

TEST(Tokens, TheLongestThatFitsIsPutIn) {
    EXPECT_EQ(dabspi::with_tokens("Newsroom News", {{0x01, "News"}, {0x02, "Newsroom"}}), "\x02 \x01");
}

TEST(Tokens, TheTableStandsBehindTheAttributesAndBeforeEverythingElse) {
    const auto made =
        encoded("<serviceInformation xml:lang='en' originator='Radio Radio' xmlns='" + kNamespace +
                "'><ensemble id='e0.10c1'><longName>Radio</longName></ensemble></serviceInformation>");
    EXPECT_EQ(
        write_object(made.objects.at(0).top, {{0x0B, "Radio"}}),
        sb::elem(sb::tag::service_information,
                 {sb::attr(0x82, sb::str("Radio Radio")),  // a string without tokens
                  sb::token_table({{0x0B, "Radio"}}), sb::elem(sb::tag::default_language, sb::str("en")),
                  sb::elem(sb::tag::ensemble, {sb::attr(0x80, {0xE0, 0x10, 0xC1}),
                                               sb::elem(sb::tag::long_name, {sb::text("\x0B")})})}));
}

TEST(Tokens, MakeTheObjectSmallerAndLeaveItsMeaning) {
    const std::string document = names({"Morning News", "Evening News", "Evening News with Guests"});
    const dabspi::broadcast_object made = with_built_tokens(document);
    EXPECT_LT(made.body.size(), made.size_without_tokens);
    EXPECT_EQ(made.size_without_tokens, object_of(document).size());
    EXPECT_EQ(xml_of(dabspi::spi_object::decode(made.body)).text,
              xml_of(dabspi::spi_object::decode(object_of(document))).text);
}

TEST(Tokens, ATableThatCostsMoreThanItSavesIsLeftOut) {
    // An entry saves a byte; the table's own tag and length are two.
    const dabspi::broadcast_object made = with_built_tokens(names({"abc1", "abc2", "abc3", "u"}));
    EXPECT_EQ(dabspi::choose_tokens({"abc1", "abc2", "abc3"}).size(), 1u);
    EXPECT_THAT(made.tokens, IsEmpty());
    EXPECT_EQ(made.body.size(), made.size_without_tokens);
}

TEST(Tokens, ThatWouldExpandBeyondWhatReadersTakeAreLeftOut) {
    const std::string name(255, 'n');
    const dabspi::broadcast_object made = with_built_tokens(names(std::vector<std::string>(800, name)));
    EXPECT_TRUE(dabspi::spi_object::decode(made.body).well_formed());
}

TEST(Tokens, ThatAreGivenAreTakenAsTheyAre) {
    const auto document = encoded(names({"News"}));
    dabspi::token_choice choice;
    choice.given = {{0x01, "News"}};
    const dabspi::broadcast_object made = make_object(document.objects.at(0), choice);
    EXPECT_EQ(made.tokens, choice.given);
    EXPECT_GT(made.body.size(), made.size_without_tokens);
}

}  // namespace
