// Which event does what: each code once, through the handler that the worker's thread calls.
#include "tests/logo_db/logo_db_fixture.h"

namespace logo_db {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

using Dispatch = LogoDb;

struct coded_event : spi::i_evt_base {
    explicit coded_event(int value) : i_evt_base(static_cast<spi::event_code>(value)) {}
};

TEST_F(Dispatch, LogoRootSetsTheRoot) {
    handle(std::make_shared<spi::logo_root_event>(root / "elsewhere"));
    EXPECT_EQ(spi::SpiLogoData::root(), root / "elsewhere");
}

TEST_F(Dispatch, TempRootChangesNothing) {
    const std::string before = spi::SpiLogoData::root();
    handle(std::make_shared<spi::temp_root_event>(root / "elsewhere"));
    EXPECT_EQ(spi::SpiLogoData::root(), before);
    EXPECT_THAT(router.take_codes(), IsEmpty());
}

TEST_F(Dispatch, ADescriptionAndAnImageMakeALogo) {
    spi::SiServiceInfo description;
    description.id = station;
    description.logos = {logo_of(station, kPng, 4)};
    handle(std::make_shared<spi::si_service_event>(data_service, std::move(description)));
    EXPECT_THAT(router.take_codes(), IsEmpty());
    handle(std::make_shared<spi::image_body_event>(image("logo"), body("image"), data_service));
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_CBHDL, spi::EC_LOGOCB)));
    EXPECT_EQ(content("E1C2210_4.PNG"), "image");
}

TEST_F(Dispatch, TheImagesBodyIsMovedOutOfItsEvent) {
    const auto payload = std::make_shared<spi::image_body_event>(image("logo"), body("image"), data_service);
    handle(payload);
    EXPECT_EQ(payload->body.size, 0U);
    EXPECT_EQ(payload->body.data, nullptr);
}

TEST_F(Dispatch, ClearForgetsAnnouncementsAndKeepsFilesAndRoot) {
    announce("first", 4);
    announce("second", 4);
    receive("first", "image");
    router.take();
    handle(std::make_shared<spi::db_clear_event>());
    EXPECT_THAT(router.take_codes(), IsEmpty());
    EXPECT_EQ(receive("second", "image"), 1);
    expect_files({"E1C2210_4.PNG"});
    announce("third", 4);
    receive("third", "new image");
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Dispatch, TermIsAnsweredToTheServerOnce) {
    handle(std::make_shared<spi::term_event>());
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(spi::QID_SERV, spi::EC_TERM)));
}

TEST_F(Dispatch, EveryOtherCodeIsIgnored) {
    announce("logo", 4);
    for (int code = 0; code < 256; ++code) {
        switch (code) {
            case spi::EC_LOGOROOT:
            case spi::EC_BODYIMG:
            case spi::EC_SERVINFO:
            case spi::EC_DBCLEAR:
            case spi::EC_TERM: continue;
            default: handle(std::make_shared<coded_event>(code)); break;
        }
        EXPECT_THAT(router.take_codes(), IsEmpty()) << "code " << code;
    }
    receive("logo", "image");
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(Dispatch, AnEventWithoutAPayloadIsIgnored) {
    handle(nullptr);
    EXPECT_THAT(router.take_codes(), IsEmpty());
}

TEST_F(Dispatch, TheWorkerServesTheLogoStoresQueue) {
    EXPECT_EQ(db.queue_id(), spi::QID_LOGODB);
}

}  // namespace
}  // namespace logo_db
