// Names of images in dumps: each way in which receivers save content names.

#include "tools/check/dump_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace dabspi::check;
using testing::HasSubstr;

const std::vector<announced_name> kAnnounced = {{"http://logos.example/32x32/a.png", "32x32"},
                                                {"http://logos.example/128x128/a.png", "128x128"},
                                                {"http://logos.example/128x128/b.png", "128x128"},
                                                {"plain.png", "320x240"}};

std::vector<std::string> names_of(const matched_names& of) {
    std::vector<std::string> all;
    for (const auto& each : of.names)
        all.push_back(each.value_or("-"));
    return all;
}

std::vector<std::string> first(std::size_t count) {
    std::vector<std::string> all;
    for (std::size_t i = 0; i < count; ++i)
        all.push_back(kAnnounced[i].name);
    return all;
}

TEST(DumpNames, AsTheyAreSayNothing) {
    const matched_names match = match_names({{"x/plain.png"}, {"other.png"}}, kAnnounced);
    EXPECT_EQ(names_of(match), (std::vector<std::string>{"plain.png", "-"}));
    EXPECT_EQ(match.said, "");
}

TEST(DumpNames, WithUnderscoresForWhatFilesCannotHave) {
    for (const std::vector<saved_image>& saved :
         {std::vector<saved_image>{{"http___logos.example_32x32_a.png"},
                                   {"http___logos.example_128x128_a.png"}},
          {{"http:__logos.example_32x32_a.png"}, {"http:__logos.example_128x128_a.png"}},
          {{"x/http_logos.example_32x32_a.png"}, {"x/http_logos.example_128x128_a.png"}}}) {
        const matched_names match = match_names(saved, kAnnounced);
        EXPECT_EQ(names_of(match), first(2));
        EXPECT_THAT(match.said, HasSubstr("2 of 2 images"));
        EXPECT_THAT(match.said, HasSubstr("are saved as _"));
        EXPECT_THAT(match.said, HasSubstr("only in characters that file names cannot have"));
    }
}

TEST(DumpNames, WithFoldersForSlashes) {
    for (const char* const scheme : {"http:/", "http_/", "", "dump/http_/"}) {
        const std::string host = std::string(scheme) + "logos.example/";
        const matched_names match = match_names(
            {{host + "32x32/a.png"}, {host + "128x128/a.png"}, {host + "128x128/b.png"}}, kAnnounced);
        EXPECT_EQ(names_of(match), first(3)) << scheme;
        EXPECT_THAT(match.said, HasSubstr("slashes are saved as folders"));
    }
}

TEST(DumpNames, OfTheLastComponentGoByTheSizeOfTheImage) {
    const matched_names match = match_names({{"a.png", "128x128"}, {"b.png", "128x128"}}, kAnnounced);
    EXPECT_EQ(names_of(match), (std::vector<std::string>{kAnnounced[1].name, kAnnounced[2].name}));
    EXPECT_THAT(match.said, HasSubstr("follows the last slash"));
    EXPECT_THAT(match.said, HasSubstr("1 announced names give the same file name"));
    EXPECT_EQ(match.cannot_tell, (std::set<std::string>{kAnnounced[0].name}));
}

TEST(DumpNames, BehindAPrefix) {
    for (const char* const prefix :
         {"20190204_130000_0x12AB_", "12AB_", "2019-02-04T13:00:00Z-4779-", "tid_4779_", "0017."}) {
        const matched_names match = match_names(
            {{std::string(prefix) + "http___logos.example_32x32_a.png"}, {std::string(prefix) + "plain.png"}},
            kAnnounced);
        EXPECT_EQ(names_of(match), (std::vector<std::string>{kAnnounced[0].name, "plain.png"})) << prefix;
        EXPECT_THAT(match.said, HasSubstr("behind a prefix of time or transport identifier")) << prefix;
        EXPECT_EQ(match.prefix_words,
                  std::string(prefix).find("130000") == std::string::npos ? match.prefix_words : 3U);
        EXPECT_NE(match.prefix_words, 0U) << prefix;
    }
    EXPECT_EQ(without_prefix("x/20190204_130000_0x12AB_ee1c185.ehb", 3), "x/ee1c185.ehb");
    EXPECT_EQ(without_prefix("w20190204dC221.EHB", 1), "w20190204dC221.EHB");
    EXPECT_EQ(without_prefix("12_w.ehb", 2), "12_w.ehb");
}

TEST(DumpNames, TakeTheRuleThatMatchesMost) {
    const matched_names match = match_names({{"plain.png"},
                                             {"http___logos.example_32x32_a.png"},
                                             {"http___logos.example_128x128_b.png"},
                                             {"stranger.png"}},
                                            kAnnounced);
    EXPECT_EQ(names_of(match),
              (std::vector<std::string>{"plain.png", kAnnounced[0].name, kAnnounced[2].name, "-"}));
    EXPECT_THAT(match.said, HasSubstr("3 of 4 images"));
}

TEST(DumpNames, StayApartWhereOnlyANumberDiffers) {
    EXPECT_EQ(names_of(match_names({{"c.png"}, {"32x32_c.png"}}, kAnnounced)),
              (std::vector<std::string>{"-", "-"}));
}

}  // namespace
