#include "tools/check/catalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "tools/terminal/wrapped_text.h"

namespace {

using namespace dabspi::check;

TEST(Catalogue, StandsInTheOrderOfItsCodes) {
    for (std::size_t i = 0; i < catalogue().size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(catalogue()[i].code), i) << catalogue()[i].name;
        EXPECT_STREQ(entry_of(catalogue()[i].code).name, catalogue()[i].name);
    }
    EXPECT_EQ(catalogue().back().code, finding_code::clock_day_off);
}

TEST(Catalogue, HasDifferentNamesInLowerCase) {
    std::set<std::string> names;
    for (const catalogue_entry& each : catalogue()) {
        const std::string name = each.name;
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_LE(name.size(), 19U) << name;
        EXPECT_TRUE(std::all_of(name.begin(), name.end(), [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
        })) << name;
        EXPECT_EQ(find_entry(name), &each);
    }
    EXPECT_EQ(find_entry("no-such-code"), nullptr);
}

TEST(Catalogue, SaysWhyAndWhatRemediesInOneSentenceEach) {
    for (const catalogue_entry& each : catalogue()) {
        for (const std::string text : {each.why, each.remedy}) {
            EXPECT_GE(text.size(), 20U) << each.name;
            EXPECT_EQ(text.back(), '.') << each.name;
            EXPECT_EQ(text.find(". "), std::string::npos) << each.name << ": " << text;
            EXPECT_EQ(text.find('\n'), std::string::npos) << each.name;
        }
        EXPECT_GT(std::string(each.more).size(), std::string(each.why).size()) << each.name;
        EXPECT_NE(std::string(each.title).back(), '.') << each.name;
    }
}

TEST(Severity, HasNamesBothWays) {
    for (const severity each : {severity::note, severity::warning, severity::error})
        EXPECT_EQ(severity_named(severity_name(each)), each);
    EXPECT_EQ(severity_named("fatal"), std::nullopt);
}

TEST(WrappedText, BreaksLinesAtBlanksAndKeepsParagraphs) {
    EXPECT_EQ(wrapped_text("", "  "), "");
    EXPECT_EQ(wrapped_text("one two\nthree\n\nfour", "  "), "  one two three\n\n  four\n");
    const std::string long_text = wrapped_text(std::string(60, 'a') + " " + std::string(60, 'b'), "> ");
    EXPECT_EQ(long_text, "> " + std::string(60, 'a') + "\n> " + std::string(60, 'b') + "\n");
    EXPECT_EQ(wrapped_text(std::string(200, 'c'), ""), std::string(200, 'c') + "\n");
}

}  // namespace
