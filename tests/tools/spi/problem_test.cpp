#include "tools/spi/problem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace so = dabspi::spi_object;

namespace {

TEST(ProblemCatalogue, NamesAreDifferentAndReadable) {
    std::set<std::string> names;
    for (int code = 0; code <= static_cast<int>(so::problem_code::text_too_long); ++code) {
        const std::string name = so::code_name(static_cast<so::problem_code>(code));
        EXPECT_THAT(name, testing::MatchesRegex("[a-z0-9-]+"));
        EXPECT_TRUE(names.insert(name).second) << name;
    }
}

TEST(ProblemCatalogue, NamesDoNotChange) {
    EXPECT_STREQ(so::code_name(so::problem_code::empty_object), "empty-object");
    EXPECT_STREQ(so::code_name(so::problem_code::content_id_as_text), "content-id-as-text");
    EXPECT_STREQ(so::code_name(so::problem_code::text_too_long), "text-too-long");
}

}  // namespace
