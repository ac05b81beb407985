// What the environment may ask of the stress tests: a setting that would play nothing is refused.
#include "tests/stress/stress_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

constexpr const char* kRounds = "DABSPI_STRESS_ROUNDS";
constexpr const char* kSeed = "DABSPI_STRESS_SEED";

struct StressSettings : testing::Test {
    // What the run itself is asked for comes back at the end.
    const std::optional<std::string> rounds = text_of(kRounds);
    const std::optional<std::string> seed = text_of(kSeed);

    static std::optional<std::string> text_of(const char* variable) {
        const char* const text = std::getenv(variable);
        return text == nullptr ? std::nullopt : std::optional<std::string>(text);
    }
    static void set(const char* variable, const std::optional<std::string>& text) {
        text ? setenv(variable, text->c_str(), 1) : unsetenv(variable);
    }
    void TearDown() override {
        set(kRounds, rounds);
        set(kSeed, seed);
    }
};

TEST_F(StressSettings, ThatAreMissingLeaveATestItsOwnRoundsAndSeveralSeeds) {
    set(kRounds, {});
    set(kSeed, {});
    EXPECT_EQ(stress_rounds(125), 125U);
    EXPECT_GT(stress_seeds().size(), 1U);
}

TEST_F(StressSettings, OfRoundsAndSeedTakeTheirPlace) {
    set(kRounds, "2000");
    set(kSeed, "18446744073709551615");
    EXPECT_EQ(stress_rounds(125), 2000U);
    EXPECT_THAT(stress_seeds(), testing::ElementsAre(18446744073709551615U));
}

TEST_F(StressSettings, ThatAreNoNumberFromOneAreRefusedByTheirName) {
    for (const char* const wrong : {"0", "00", "", "-1", "+1", " 1", "1 ", "ten", "99999999999999999999"}) {
        SCOPED_TRACE(wrong);
        set(kRounds, wrong);
        set(kSeed, wrong);
        EXPECT_THAT([] { stress_rounds(125); },
                    testing::ThrowsMessage<std::invalid_argument>(testing::StartsWith(kRounds)));
        EXPECT_THAT([] { stress_seeds(); },
                    testing::ThrowsMessage<std::invalid_argument>(testing::StartsWith(kSeed)));
    }
}

TEST_F(StressSettings, NeverLeadToNoRoundAtAll) {
    set(kRounds, {});
    EXPECT_THROW(stress_rounds(0), std::invalid_argument);
    set(kRounds, "4294967296");
    EXPECT_THROW(stress_rounds(125), std::invalid_argument);
}

}  // namespace
