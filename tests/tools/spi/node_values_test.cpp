#include "tools/spi/node_values.h"

#include <gtest/gtest.h>

namespace so = dabspi::spi_object;

namespace {

std::optional<so::bytes> encoded(std::uint8_t element, const char* attribute, const char* text) {
    return so::encode_value(*so::find_attribute(*so::find_element(element), std::string_view(attribute)),
                            text);
}

TEST(EncodeValue, CodesEachTypeOfAttribute) {
    EXPECT_EQ(encoded(so::tag::multimedia, "url", "a.png"), (so::bytes{'a', '.', 'p', 'n', 'g'}));
    EXPECT_EQ(encoded(so::tag::multimedia, "width", "320"), (so::bytes{1, 64}));
    EXPECT_EQ(encoded(so::tag::multimedia, "type", "logo_unrestricted"), (so::bytes{2}));
    EXPECT_EQ(encoded(so::tag::programme, "shortId", "66051"), (so::bytes{1, 2, 3}));
    EXPECT_EQ(encoded(so::tag::time, "duration", "PT1H"), (so::bytes{0x0E, 0x10}));
    EXPECT_EQ(encoded(so::tag::ensemble, "id", "e1.ce15"), (so::bytes{0xE1, 0xCE, 0x15}));
    EXPECT_EQ(encoded(so::tag::bearer, "id", "dab:ce1.ce15.c221.0"),
              (so::bytes{0x40, 0xE1, 0xCE, 0x15, 0xC2, 0x21}));
    EXPECT_EQ(encoded(so::tag::genre, "href", "urn:tva:metadata:cs:ContentCS:2010:3.1"), (so::bytes{3, 1}));
    EXPECT_EQ(encoded(so::tag::scope, "startTime", "1858-11-17T00:00:00Z"), (so::bytes{0, 0, 0, 0}));
}

TEST(EncodeValue, RefusesWhatHasNoRoomOrNoMeaning) {
    EXPECT_FALSE(encoded(so::tag::multimedia, "width", "65536"));
    EXPECT_FALSE(encoded(so::tag::multimedia, "width", "-1"));
    EXPECT_FALSE(encoded(so::tag::multimedia, "type", "logo"));
    EXPECT_FALSE(encoded(so::tag::programme, "shortId", "16777216"));
    EXPECT_FALSE(encoded(so::tag::time, "duration", "PT18H12M16S"));
    EXPECT_FALSE(encoded(so::tag::bearer, "id", "fm:ce1.c479.09580"));
}

}  // namespace
