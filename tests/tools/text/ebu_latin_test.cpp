#include "tools/text/ebu_latin.h"

#include <gtest/gtest.h>

#include <set>

#include "tools/text/utf8.h"

namespace {

using namespace dabspi;

TEST(EbuLatin, LettersOfTheStandardsTable) {
    EXPECT_EQ(ebu_latin_to_utf8("Val 202 \xCB\xCC\xDB\xDC"), "Val 202 ČŠčš");
    EXPECT_EQ(ebu_latin_to_utf8("\x81\x82\x90\x91\x97\x99\x8D\xA9\xE2\xF2"), "àéâäöüß€Ææ");
    EXPECT_EQ(ebu_latin_to_utf8("\x24\xAB\x5C\x5E\x60\x7B\x7D\x7E\x7F"), "ł$ŮŁĄ«»ĽĦ");
    EXPECT_EQ(ebu_latin_to_utf8("\x01\x10\x1E\xFF"), "Ęążħ");
}

TEST(EbuLatin, EveryByteIsAnotherCharacter) {
    std::set<std::string> characters;
    for (int byte = 0; byte < 256; ++byte) {
        const std::string character = ebu_latin_to_utf8(std::string(1, static_cast<char>(byte)));
        EXPECT_TRUE(is_well_formed_utf8(character)) << byte;
        EXPECT_TRUE(characters.insert(character).second) << byte;
    }
}

TEST(EbuLatin, Iso88591IsTheFirst256CodePoints) {
    EXPECT_EQ(iso_8859_1_to_utf8("a\xE9\xFF"), "aéÿ");
    std::string all;
    append_utf8(all, 0x20AC);
    append_utf8(all, 0x1F600);
    EXPECT_EQ(all, "€😀");
}

TEST(EbuLatin, EveryCharacterOfASetFindsItsByteAgain) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string one(1, static_cast<char>(byte));
        EXPECT_EQ(utf8_to_ebu_latin(ebu_latin_to_utf8(one)), one) << byte;
        EXPECT_EQ(utf8_to_iso_8859_1(iso_8859_1_to_utf8(one)), one) << byte;
    }
}

TEST(EbuLatin, ACharacterOfNoByteGivesNothing) {
    EXPECT_EQ(utf8_to_ebu_latin("Zwölf ☃"), std::nullopt);
    EXPECT_EQ(utf8_to_iso_8859_1("10 €"), std::nullopt);
    EXPECT_EQ(utf8_to_ebu_latin("\xC3"), std::nullopt);
}

}  // namespace
