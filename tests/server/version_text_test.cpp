#include "src/server/version_text.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using spi::version_text;

TEST(VersionText, IsThePrefixTheRevisionsDigitsAndTheBuildDate) {
    EXPECT_EQ(version_text("$Rev: 2286 $", "Jul  1 2026 10:29:36"), "Morvex R2286 Jul  1 2026 10:29:36");
}

TEST(VersionText, TakesFourCharactersAtMost) {
    EXPECT_EQ(version_text("$Rev: 123456 $", "date"), "Morvex R1234 date");
    EXPECT_EQ(version_text("$Rev: 12", "date"), "Morvex R12 date");
    EXPECT_EQ(version_text("$Rev: ", "date"), "Morvex R date");
}

TEST(VersionText, RefusesARevisionOfFewerThanSixCharacters) {
    try {
        version_text("$Rev:", "date");
        FAIL() << "accepted";
    } catch (const std::out_of_range& error) {
        EXPECT_EQ(std::string(error.what()).substr(0, 20), "basic_string::substr");
    }
}

}  // namespace
