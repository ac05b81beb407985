// JSON of strangers: read in linear time, bounded.

#include "tools/recording/json_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using dabspi::json_limits;
using dabspi::read_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(JsonReader, GivesTheValueAndKeysThatStandTwice) {
    const auto read = read_json(R"({"a":[1,{"b":"x","b":null}],"a/b":true,"a/b":1.5,"c":-1})", {}, false);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.value.dump(), R"({"a":[1,{"b":null}],"a/b":1.5,"c":-1})");
    EXPECT_THAT(read.twice, ElementsAre("/a/1/b", "/a~1b"));
}

TEST(JsonReader, KeepsOnlyWhatIsWanted) {
    json_limits limits;
    limits.kept_depth = 1;
    const auto read = read_json(R"({"a":[1,[2],{"b":1,"b":2}],"c":{"d":[]},"e":7})", limits, false);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.value.dump(), R"({"a":[],"c":{},"e":7})");
    EXPECT_THAT(read.twice, IsEmpty());
}

TEST(JsonReader, BoundsDepthAndValues) {
    json_limits limits;
    limits.most_values = 10;
    EXPECT_EQ(read_json("[" + repeated("1,", 8) + "1]", limits, false).error, "");
    EXPECT_EQ(read_json("[" + repeated("1,", 9) + "1]", limits, false).error, "it holds more than 10 values");
    EXPECT_EQ(read_json(repeated("[", 32) + repeated("]", 32), {}, false).error, "");
    EXPECT_THAT(read_json(repeated("[", 100000), {}, false).error, HasSubstr("more than 32 deep"));
}

TEST(JsonReader, SaysWhatIsWrong) {
    EXPECT_THAT(read_json("{", {}, false).error, HasSubstr("this is not JSON: column 2"));
    EXPECT_THAT(read_json("{\n]", {}, true).error, HasSubstr("this is not JSON: line 2, column 1"));
    EXPECT_THAT(read_json("1e999", {}, false).error, HasSubstr("this is not JSON"));
    EXPECT_THAT(read_json("[] []", {}, false).error, HasSubstr("this is not JSON"));
    EXPECT_TRUE(read_json("{", {}, false).value.is_null());
}

// A library's callback looked at each container again for each element in it.
TEST(JsonReader, ManyArraysAndObjectsInOneLine) {
    json_limits limits;
    limits.kept_depth = 1;
    EXPECT_EQ(read_json("{\"a\":[" + repeated("[],{\"b\":1},", 100000) + "0]}", limits, false).value.dump(),
              "{\"a\":[]}");
    EXPECT_EQ(read_json("[" + repeated("[],", 100000) + "0]", {}, false).value.size(), 100001u);
}

}  // namespace
