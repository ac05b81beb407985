#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testkit/spi_builder.h"
#include "tests/tools/spi/decoded.h"
#include "tools/spi/values.h"

namespace {

so::problem only_problem_of_identifier(const sb::bytes& from) {
    std::vector<so::problem> problems;
    so::decode_content_id(from, problems);
    return the_only(problems);
}

TEST(ContentIdValue, IsADabUri) {
    std::vector<so::problem> problems;
    EXPECT_EQ(so::content_id_text(so::decode_content_id(sb::content_id(0xE1, 0xC185, 0xC221), problems)),
              "dab:ce1.c185.c221.0");
    EXPECT_EQ(
        so::content_id_text(so::decode_content_id(sb::content_id(0xE0, 0x10C1, 0xE0D00001, 3), problems)),
        "dab:de0.10c1.e0d00001.3");
    EXPECT_EQ(so::content_id_text(
                  so::decode_content_id(so::bytes{0x60, 0xE1, 0xC1, 0x85, 0xC2, 0x21, 0x04}, problems)),
              "dab:ce1.c185.c221.0.004");
    EXPECT_TRUE(problems.empty());
}

TEST(ContentIdValue, UrisAreCodedAndReadBack) {
    for (const char* uri : {"dab:ce1.c185.c221.0", "dab:de0.10c1.e0d00001.f", "dab:ce1.c185.c221.0.01f",
                            "dab:0e0.0001.00000001.1"}) {
        const auto id = so::parse_content_id(uri);
        ASSERT_TRUE(id) << uri;
        std::vector<so::problem> problems;
        EXPECT_EQ(so::decode_content_id(so::encode_content_id(*id), problems), *id) << uri;
        EXPECT_EQ(so::content_id_text(*id), uri);
        EXPECT_TRUE(problems.empty());
    }
    EXPECT_EQ(so::encode_content_id(*so::parse_content_id("dab:ce1.c185.c221.2")),
              sb::content_id(0xE1, 0xC185, 0xC221, 2));
    EXPECT_EQ(so::encode_content_id(*so::parse_content_id("dab:de0.10c1.e0d00001.0")),
              sb::content_id(0xE0, 0x10C1, 0xE0D00001));
}

TEST(ContentIdValue, WhatIsNoDabUriIsRefused) {
    for (const char* uri :
         {"", "dab:", "fm:ce1.c479.09580", "http://a.b.c.d", "dab:ce1.c185.c221", "dab:e1.c185.c221.0",
          "dab:ce1.c185.c221.10", "dab:ce1.c185.c22.0", "dab:ce1.c185.c2211.0", "dab:ce1.c185.c221.0.020",
          "dab:ce1.c185.c221.0.1.1", "dab:ce1.c185.c2x1.0", "dab:ce1.c185.c221.0 "})
        EXPECT_FALSE(so::parse_content_id(uri)) << uri;
}

TEST(ContentIdValue, CountryOfTheUriIsThatOfTheService) {
    EXPECT_FALSE(so::parse_content_id("dab:de1.c185.c221.0"));
}

TEST(ContentIdValue, AUriInItsPlaceMakesAServiceOfItsLetters) {
    const so::problem found = only_problem_of_identifier(sb::str("http://a/b"));
    EXPECT_EQ(found.code, so::problem_code::content_id_as_text);
    EXPECT_EQ(found.text, "the text \"http://a/b\" stands where a content ID belongs");
    EXPECT_EQ(found.receiver, "reads service 74.3A2F.8 on ensemble 7470");
}

TEST(ContentIdValue, WithoutTheEnsembleItIsMisread) {
    const so::problem found = only_problem_of_identifier({0x00, 0xC2, 0x21});
    EXPECT_EQ(found.code, so::problem_code::content_id_without_ensemble);
    EXPECT_EQ(found.receiver, "expects them all the same, and reads service C2.FFFF.0 on ensemble FFFF");
    std::vector<so::problem> ignored;
    EXPECT_EQ(so::decode_content_id(so::bytes{0x00, 0xC2, 0x21}, ignored).sid, 0xC221U);
}

TEST(ContentIdValue, TooFewAndTooManyBytesAreReported) {
    const sb::bytes whole = sb::content_id(0xE1, 0xC185, 0xC221);
    EXPECT_EQ(only_problem_of_identifier(sb::cut(whole, 5)).code, so::problem_code::value_too_short);
    EXPECT_EQ(only_problem_of_identifier(sb::cut(whole, 5)).receiver,
              "takes missing bytes as 255, and reads service E1.FFFF.0 on ensemble C185");
    EXPECT_EQ(only_problem_of_identifier(sb::join({whole, {0}})).code, so::problem_code::value_too_long);
    EXPECT_EQ(only_problem_of_identifier({0xC0, 0xE1, 0xC1, 0x85, 0xC2, 0x21}).code,
              so::problem_code::reserved_bits);
}

TEST(EnsembleIdValue, IsEccAndEid) {
    std::vector<so::problem> problems;
    EXPECT_EQ(so::ensemble_id_text(so::decode_ensemble_id(so::bytes{0xE1, 0xCE, 0x15}, problems)), "e1.ce15");
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(so::encode_ensemble_id(*so::parse_ensemble_id("e1.ce15")), (sb::bytes{0xE1, 0xCE, 0x15}));
    EXPECT_EQ(so::parse_ensemble_id("ce1.ce15"), so::parse_ensemble_id("e1.ce15"));
    for (const char* text : {"", "e1", "e1.ce1", "1.ce15", "de1.ce15", "e1.ce15.0", "xx.ce15"})
        EXPECT_FALSE(so::parse_ensemble_id(text)) << text;
    so::decode_ensemble_id(so::bytes{0xE1}, problems);
    EXPECT_EQ(problems.at(0).code, so::problem_code::value_too_short);
}

TEST(ContentIdValue, ACodingMayHappenToBeAllLetters) {
    // SCIdS 15, ECC 0x3A (":"), EId 0x7C3E, SId 0x6F52.
    const so::bytes coding = {'O', ':', '|', '>', 'o', 'R'};
    std::vector<so::problem> problems;
    const so::content_id id = so::decode_content_id(coding, problems);
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(id.eid, 0x7C3E);
    EXPECT_EQ(id.scids, 15);
}

}  // namespace
