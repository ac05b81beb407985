// Documents of strangers: work and memory are linear in the document and in what is made of it. Each of these
// was quadratic once, and took minutes.

#include "tests/tools/encode/encoding.h"
#include "tools/encode/document_messages.h"
#include "tools/encode/token_builder.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

template <class Part>
std::string repeated(std::size_t count, Part part) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += part(i);
    return text;
}

std::string hexadecimal(std::size_t number) {
    char text[8];
    std::snprintf(text, sizeof text, "%04x", static_cast<unsigned>(number));
    return text;
}

TEST(EncodeGrowth, ManyNotesOnOneLine) {
    const auto made =
        leniently(programme_document(repeated(100000, [](std::size_t) { return "<alias/><oops/>"; })));
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("elements that have no coding", 100000u)));
    EXPECT_THAT(made.omitted.notes(), SizeIs(1000));
    EXPECT_THAT(made.warnings, SizeIs(1000));
    EXPECT_EQ(made.more_warnings, 99000u);
    EXPECT_THAT(messages_of(made, "a.xml", false), Contains("a.xml: and 99000 more warnings"));
}

TEST(EncodeGrowth, ManyAttributes) {
    const std::string attributes =
        repeated(60000, [](std::size_t i) { return " a" + std::to_string(i) + "='x'"; });
    const auto made = leniently(
        "<epg xmlns='" + kNamespace + "'" + attributes + "><schedule>" +
        repeated(2000, [](std::size_t) { return "<programme><longName>a</longName></programme>"; }) +
        "</schedule></epg>");
    EXPECT_THAT(made.errors, IsEmpty());
    EXPECT_EQ(made.warnings.size() + made.more_warnings, 60000u);
}

TEST(EncodeGrowth, ManyNamespaces) {
    const auto made = encoded(
        "<epg xmlns='" + kNamespace + "'" +
        repeated(30000,
                 [](std::size_t i) {
                     return " xmlns:n" + std::to_string(i) + "='urn:" + std::to_string(i) + "'";
                 }) +
        "><schedule>" + repeated(30000, [](std::size_t i) { return "<n" + std::to_string(i) + ":x/>"; }) +
        "</schedule></epg>");
    EXPECT_THAT(made.omitted_counts(), ElementsAre(Pair("elements of other namespaces", 30000u)));
}

TEST(EncodeGrowth, ManyEnsemblesAndServices) {
    const auto made =
        encoded(si_document("<services>" +
                            repeated(20000,
                                     [](std::size_t i) {
                                         return "<service><shortName>s</shortName><bearer id=\"dab:1e0." +
                                                hexadecimal(i) + ".1a01.0\"/></service>";
                                     }) +
                            "</services>"));
    EXPECT_THAT(made.errors, IsEmpty());
    EXPECT_THAT(made.objects, SizeIs(20000));
}

TEST(EncodeGrowth, AServiceOnManyEnsemblesIsWrittenForEachUpToALimit) {
    const auto document = [](std::size_t name) {
        return si_document(
            "<services><service><longName>" + std::string(name, 'n') + "</longName>" +
            repeated(10000,
                     [](std::size_t i) { return "<bearer id=\"dab:1e0." + hexadecimal(i) + ".1a01.0\"/>"; }) +
            "</service></services>");
    };
    EXPECT_THAT(encoded(document(10)).objects, SizeIs(10000));
    const auto refused = encoded(document(100000));
    EXPECT_THAT(texts_of(refused.errors),
                ElementsAre(HasSubstr("the document becomes objects of more than "
                                      "67108864 bytes; split it, choose with --ensemble")));
    EXPECT_THAT(refused.objects, IsEmpty());
}

TEST(EncodeGrowth, LongNamesAndDeepElementsAreCutInMessages) {
    const std::string name(100000, 'n');
    const auto errors = errors_of(programme_document("<" + name + " " + name + "='x'/>"));
    ASSERT_THAT(errors, SizeIs(1));
    EXPECT_LT(errors.front().size(), 1000u);
    std::string deep;
    for (int i = 0; i < 20000; ++i)
        deep += "<a>";
    EXPECT_THAT(errors_of(pi_document(deep + "<b c='1' c='2'/>")), SizeIs(1))
        << "not well formed, and said so";
}

TEST(EncodeGrowth, TokensOfLongAndOfPeriodicTexts) {
    const std::vector<std::string> texts = {
        std::string(30000, 'a'), repeated(10000, [](std::size_t) { return "ab"; }),
        repeated(2000, [](std::size_t i) {
            return "Programme " + std::to_string(i * 7919 % 10007) + " of the day";
        })};
    for (const std::string& each : texts) {
        const auto tokens = dabspi::choose_tokens({each});
        EXPECT_FALSE(tokens.empty());
        EXPECT_LT(dabspi::with_tokens(each, tokens).size(), each.size() / 2);
    }
}

}  // namespace
