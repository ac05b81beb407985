#include "tools/text/nearest.h"

#include <gtest/gtest.h>

namespace {

using dabspi::did_you_mean;
using dabspi::nearest;

const std::vector<std::string> kWords = {"replay", "inspect", "check", "explain", "encode", "record"};

TEST(Nearest, FindsWhatWasMeant) {
    EXPECT_EQ(nearest("chekc", kWords), "check");
    EXPECT_EQ(nearest("chek", kWords), "check");
    EXPECT_EQ(nearest("inspct", kWords), "inspect");
    EXPECT_EQ(nearest("recrod", kWords), "record");
    EXPECT_EQ(did_you_mean("encod", kWords), "; did you mean encode?");
}

TEST(Nearest, IsNothingForAnotherWord) {
    EXPECT_EQ(nearest("play-it-again", kWords), "");
    EXPECT_EQ(nearest("x", kWords), "");
    EXPECT_EQ(nearest("", kWords), "");
    EXPECT_EQ(nearest(std::string(100000, 'c'), kWords), "");
    EXPECT_EQ(did_you_mean("rewind", kWords), "");
}

}  // namespace
