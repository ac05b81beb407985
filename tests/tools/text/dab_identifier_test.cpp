#include "tools/text/dab_identifier.h"

#include <gtest/gtest.h>

namespace {

using dabspi::dab_identifier;

TEST(DabIdentifier, OfAnEnsembleIsReadInEachForm) {
    for (const char* const text : {"0xC185", "C185", "c185", "0xc185"}) {
        const auto read = dab_identifier::of_ensemble(text);
        ASSERT_TRUE(read) << text;
        EXPECT_EQ(read->ensemble, 0xC185) << text;
        EXPECT_FALSE(read->ecc) << text;
        EXPECT_EQ(read->ensemble_text(), "C185");
    }
    for (const char* const text : {"e1.c185", "E1.C185", "ce1.c185", "0xE1.0xC185", "dab:ce1.c185"}) {
        const auto read = dab_identifier::of_ensemble(text);
        ASSERT_TRUE(read) << text;
        EXPECT_EQ(read->ensemble, 0xC185) << text;
        EXPECT_EQ(read->ecc, 0xE1) << text;
        EXPECT_EQ(read->ensemble_text(), "E1.C185");
    }
    EXPECT_EQ(dab_identifier::of_ensemble("0x1")->ensemble, 1);
}

TEST(DabIdentifier, OfAServiceIsReadInEachForm) {
    const auto all = dab_identifier::of_service("e1.c185.c221.2");
    ASSERT_TRUE(all);
    EXPECT_EQ(all->ecc, 0xE1);
    EXPECT_EQ(all->ensemble, 0xC185);
    EXPECT_EQ(all->sid, 0xC221U);
    EXPECT_EQ(all->scids, 2);
    EXPECT_EQ(all->service_text(), "E1.C221.2");
    EXPECT_EQ(dab_identifier::of_service("dab:ce1.c185.c221.f")->scids, 15);
    EXPECT_EQ(dab_identifier::of_service("E1.C221.12")->scids, 12);
    EXPECT_EQ(dab_identifier::of_service("0xC221")->sid, 0xC221U);
    EXPECT_EQ(dab_identifier::of_service("c221")->service_text(), "C221");
    EXPECT_EQ(dab_identifier::of_service("e1.c185.c221")->ensemble, 0xC185);
    EXPECT_EQ(dab_identifier::of_service("e0.e1c00001")->sid, 0xE1C00001U);
    EXPECT_EQ(dab_identifier::of_service("E1.E1C00098.0")->service_text(), "E1.E1C00098.0");
}

TEST(DabIdentifier, IsNeitherDecimalNorHalf) {
    for (const char* const text : {"", "49541", "1", "C18", "0x", "0xC1855", "g185", "e1.", ".c185",
                                   "e1.c185.c221", "e1.c185.c221.0", "c185 ", "0x0xC185", "xe1.c185"})
        EXPECT_FALSE(dab_identifier::of_ensemble(text)) << text;
    for (const char* const text : {"", "49697", "221", "E1.", "E1.C221.16", "E1.C221.", "E1.G221.0",
                                   "E1.C221.0.1", "1.C221.0", "e1.c185.c221.0.0", "dab:", "C221.0x1"})
        EXPECT_FALSE(dab_identifier::of_service(text)) << text;
}

TEST(DabIdentifier, MessagesShowTheFormsAndConvertADecimalNumber) {
    EXPECT_EQ(dabspi::no_ensemble("49541"),
              "\"49541\" is no ensemble; an ensemble is written 0xC185, C185 or e1.C185 (ECC and EId); "
              "decimal 49541 "
              "is 0xC185");
    EXPECT_NE(dabspi::no_service("x").find("\"x\" is no service; a service is written 0xC221"),
              std::string::npos);
}

}  // namespace
