// One service element: names, bearers, logos.
#include "src/parse/si_service_info.h"

#include <gtest/gtest.h>

#include "testkit/spi_builder_objects.h"
#include "tests/parse/reading.h"

namespace {

using namespace spi_builder;
using spi::SiServiceInfo;
namespace media_attribute = attribute::multimedia;

SiServiceInfo read_service(const std::vector<bytes>& children, const bytes& table = token_table({})) {
    spi::SpiTokenTable tokens = table_of(table);
    element_of service(elem(tag::service, children));
    SiServiceInfo info;
    EXPECT_EQ(info.parse(service, tokens), 0);
    return info;
}

bytes service_bearer_of(std::uint32_t sid, std::uint16_t eid = 0xC185) {
    return elem(tag::service_bearer, {attr(attribute::service_bearer::id, content_id(0xE1, eid, sid))});
}
bytes media_of(const std::vector<bytes>& attributes) {
    return elem(tag::media_description, {elem(tag::multimedia, attributes)});
}
spi::SpiLogoInfo logo_of(const std::vector<bytes>& attributes) {
    const SiServiceInfo info = read_service({media_of(attributes)});
    EXPECT_EQ(info.logos.size(), 1U);
    return info.logos.empty() ? spi::SpiLogoInfo() : info.logos.front();
}
bytes type_of(std::uint8_t type) {
    return attr(media_attribute::type, u8(type));
}
bytes width_of(std::uint32_t pixels) {
    return attr(media_attribute::width, u16(pixels));
}
bytes height_of(std::uint32_t pixels) {
    return attr(media_attribute::height, u16(pixels));
}
bytes url_of(const char* url) {
    return attr(media_attribute::url, str(url));
}

TEST(SiServiceInfo, EmptyElementGivesAnEmptyService) {
    const SiServiceInfo info = read_service({});
    EXPECT_EQ(info.id, service_of(0, 0));
    EXPECT_EQ(info.name, "");
    EXPECT_TRUE(info.logos.empty());
}

TEST(SiServiceName, MediumNameWinsInEitherOrder) {
    EXPECT_EQ(read_service({name_of(tag::short_name, "R4"), name_of(tag::medium_name, "Radio 4")}).name,
              "Radio 4");
    EXPECT_EQ(read_service({name_of(tag::medium_name, "Radio 4"), name_of(tag::short_name, "R4")}).name,
              "Radio 4");
}

TEST(SiServiceName, ShortNameIsTakenWhereThereIsNoOther) {
    EXPECT_EQ(read_service({name_of(tag::short_name, "R4")}).name, "R4");
    EXPECT_EQ(read_service({name_of(tag::short_name, "R4"), name_of(tag::short_name, "R5")}).name, "R4");
}

TEST(SiServiceName, LastMediumNameWins) {
    EXPECT_EQ(read_service({name_of(tag::medium_name, "one"), name_of(tag::medium_name, "two")}).name, "two");
}

TEST(SiServiceName, EmptyMediumNameClearsAndLeavesRoomForAShortName) {
    EXPECT_EQ(read_service({name_of(tag::short_name, "R4"), name_of(tag::medium_name, "")}).name, "");
    EXPECT_EQ(read_service({name_of(tag::medium_name, ""), name_of(tag::short_name, "R4")}).name, "R4");
}

TEST(SiServiceName, LongNameIsNotReadForServices) {
    EXPECT_EQ(read_service({name_of(tag::long_name, "Radio Four")}).name, "");
}

TEST(SiServiceName, LastTextOfANameWins) {
    EXPECT_EQ(read_service({elem(tag::medium_name, {text("one"), text("two")})}).name, "two");
    EXPECT_EQ(read_service({elem(tag::medium_name, {text("one"), text("")})}).name, "");
}

TEST(SiServiceName, WithoutATextLeavesWhatIsThere) {
    EXPECT_EQ(read_service({name_of(tag::short_name, "R4"), elem(tag::medium_name, bytes{})}).name, "R4");
    EXPECT_EQ(
        read_service({name_of(tag::short_name, "R4"), elem(tag::medium_name, {attr(0x80, str("en"))})}).name,
        "R4");
}

TEST(SiServiceName, AttributesOfANameArePassedOver) {
    EXPECT_EQ(read_service({elem(tag::medium_name, {attr(0x80, str("\x01\x02")), text("Radio 4")})}).name,
              "Radio 4");
}

TEST(SiServiceName, TokensAreExpanded) {
    EXPECT_EQ(read_service({name_of(tag::medium_name, "\x01 4")}, token_table({{0x01, "Radio"}})).name,
              "Radio 4");
}

TEST(SiServiceName, WhoseLengthCannotBeReadIsCleared) {
    // The text's three-byte length stands in the last three bytes of the body.
    const SiServiceInfo info = read_service(
        {name_of(tag::short_name, "R4"), elem(tag::medium_name, bytes{0x01, 0xFF, 0x00, 0x00, 0x02})});
    EXPECT_EQ(info.name, "");
}

TEST(SiServiceBearer, GivesTheIdentifierOfAnyEnsemble) {
    EXPECT_EQ(read_service({service_bearer_of(0xC221)}).id, service_of(0xE1, 0xC221));
    EXPECT_EQ(read_service({service_bearer_of(0xC221, 0x1234)}).id, service_of(0xE1, 0xC221));
}

TEST(SiServiceBearer, LastOneWins) {
    EXPECT_EQ(read_service({service_bearer_of(0xC221), service_bearer_of(0xE1234567, 0x1234)}).id,
              service_of(0xE1, 0xE1234567));
    const bytes two_in_one = elem(tag::service_bearer, {attr(0x80, content_id(0xE1, 1, 0xC221)),
                                                        attr(0x80, content_id(0xE2, 2, 0xC222, 3))});
    EXPECT_EQ(read_service({two_in_one}).id, service_of(0xE2, 0xC222, 3));
}

TEST(SiServiceBearer, OtherAttributesArePassedOver) {
    EXPECT_EQ(
        read_service({elem(tag::service_bearer, {attr(attribute::service_bearer::url, str("dab:e1c185"))})})
            .id,
        service_of(0, 0));
}

TEST(SiServiceBearer, EmptyAttributeGivesAllOnes) {
    EXPECT_EQ(read_service({elem(tag::service_bearer, {attr(0x80, {})})}).id,
              service_of(255, 0xFFFFFFFF, 15));
}

TEST(SiServiceBearer, OfAProgrammesLocationIsNotOneOfAService) {
    EXPECT_EQ(read_service({elem(tag::bearer, {attr(0x80, content_id(0xE1, 1, 0xC221))})}).id,
              service_of(0, 0));
}

TEST(SiServiceLogo, OneForEachMultimediaElementInOrder) {
    const SiServiceInfo info = read_service(
        {media_of({url_of("a.png")}),
         elem(tag::media_description, {elem(tag::multimedia, {url_of("b.jpg")}), elem(0x1A, {text("x")}),
                                       elem(tag::multimedia, bytes{})})});
    ASSERT_EQ(info.logos.size(), 3U);
    auto logo = info.logos.begin();
    EXPECT_EQ(logo->name, "a.png");
    EXPECT_EQ((++logo)->name, "b.jpg");
    EXPECT_EQ((++logo)->name, "");
    EXPECT_EQ(logo->image_format, 0);
    EXPECT_EQ(logo->size_code, 0);
}

TEST(SiServiceLogo, MediaDescriptionWithoutMultimediaAnnouncesNone) {
    EXPECT_TRUE(read_service({elem(tag::media_description, {elem(0x1A, {text("words")})})}).logos.empty());
    EXPECT_TRUE(read_service({elem(tag::multimedia, {url_of("a.png")})}).logos.empty());
}

TEST(SiServiceLogo, BelongsToTheServiceAsKnownWhenItIsReached) {
    const SiServiceInfo info =
        read_service({media_of({url_of("a")}), service_bearer_of(0xC221), media_of({url_of("b")}),
                      service_bearer_of(0xC222), media_of({url_of("c")})});
    ASSERT_EQ(info.logos.size(), 3U);
    auto logo = info.logos.begin();
    EXPECT_EQ(logo->service, service_of(0, 0));
    EXPECT_EQ((++logo)->service, service_of(0xE1, 0xC221));
    EXPECT_EQ((++logo)->service, service_of(0xE1, 0xC222));
    EXPECT_EQ(info.id, service_of(0xE1, 0xC222));
}

TEST(SiServiceLogo, TypeGivesTheSizeWhereNoneIsCoded) {
    EXPECT_EQ(logo_of({type_of(logo_colour_square)}).size_code, 1);
    EXPECT_EQ(logo_of({type_of(logo_colour_rectangle)}).size_code, 2);
    EXPECT_EQ(logo_of({type_of(logo_unrestricted)}).size_code, 0);
}

TEST(SiServiceLogo, EmptyTypeChangesNothing) {
    EXPECT_EQ(logo_of({width_of(128), attr(media_attribute::type, {})}).size_code, 3);
    // The byte behind an empty attribute, here the tag of the next one, is not taken for it.
    EXPECT_EQ(logo_of({attr(media_attribute::type, {}), attr(0x04, {})}).size_code, 0);
}

TEST(SiServiceLogo, LaterOfTypeAndSizeWins) {
    EXPECT_EQ(logo_of({type_of(4), width_of(320), height_of(240)}).size_code, 4);
    EXPECT_EQ(logo_of({width_of(320), height_of(240), type_of(4)}).size_code, 1);
    EXPECT_EQ(logo_of({type_of(4), width_of(112)}).size_code, 2);
    EXPECT_EQ(logo_of({type_of(6), type_of(4)}).size_code, 1);
}

TEST(SiServiceLogo, OneDimensionStandsForBoth) {
    EXPECT_EQ(logo_of({width_of(600)}).size_code, 5);
    EXPECT_EQ(logo_of({height_of(128)}).size_code, 3);
    EXPECT_EQ(logo_of({width_of(240), height_of(320)}).size_code, 6);
}

TEST(SiServiceLogo, DimensionOfFewerThanTwoBytesIs65535) {
    EXPECT_EQ(logo_of({attr(media_attribute::width, u8(32)), height_of(32)}).size_code, 6);
    EXPECT_EQ(logo_of({width_of(32), attr(media_attribute::height, {})}).size_code, 6);
    spi::SpiTokenTable tokens;
    SiServiceInfo info;
    spi::SiMediaInfo media;
    element_of read(
        elem(tag::multimedia, {attr(media_attribute::width, u8(32)), attr(media_attribute::height, u8(32))}));
    EXPECT_EQ(info.parse_multimedia(read, tokens, media), 0);
    EXPECT_EQ(media.width, 65535);
    EXPECT_EQ(media.height, 65535);
}

TEST(SiServiceLogo, DimensionIsReadFromTheFirstTwoBytes) {
    EXPECT_EQ(logo_of({attr(media_attribute::width, u32(0x00200020))}).size_code, 1);
}

TEST(SiServiceLogo, FirstMimeTypeAndFirstUrlCount) {
    const spi::SpiLogoInfo logo = logo_of({attr(media_attribute::mime, str("image/png")), url_of("a.jpg"),
                                           attr(media_attribute::mime, str("image/jpeg")), url_of("b.jpg")});
    EXPECT_EQ(logo.image_format, 2);
    EXPECT_EQ(logo.name, "a.jpg");
}

TEST(SiServiceLogo, OtherAttributesArePassedOver) {
    const spi::SpiLogoInfo logo =
        logo_of({attr(media_attribute::language, str("en")), attr(0x86, str("x")), url_of("a.png")});
    EXPECT_EQ(logo.name, "a.png");
    EXPECT_EQ(logo.image_format, 2);
    EXPECT_EQ(logo.size_code, 0);
}

TEST(SiServiceInfo, OtherChildrenArePassedOver) {
    const SiServiceInfo info =
        read_service({attr(attribute::service::version, u16(7)), elem(tag::genre, {attr(0x80, u8(1))}),
                      elem(tag::keywords, {text("not the name")}), elem(tag::link, {text("not the name")}),
                      name_of(tag::short_name, "R4"), elem(tag::radiodns, bytes(300, 0x11))});
    EXPECT_EQ(info.name, "R4");
    EXPECT_TRUE(info.logos.empty());
}

}  // namespace
