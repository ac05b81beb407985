// The logo root is one for the whole process: several stores share it.
#include <chrono>
#include <thread>

#include "tests/logo_db/logo_db_fixture.h"

namespace logo_db {
namespace {

class SharedRoot : public LogoDb {
 protected:
    SharedRoot() { other_router.register_queue(&other); }
    temporary_directory other_root;
    recording_router other_router;
    spi::SpiLogoDb other;
};

TEST_F(SharedRoot, TheLastOneSetIsEveryones) {
    announce("logo", 4);
    spi::event e(spi::QID_LOGODB, std::make_shared<spi::logo_root_event>(other_root.path().string()));
    other.process_event(e);
    receive("logo", "image");
    expect_reported({"E1C2210_4.PNG"});
    expect_files({});
    EXPECT_TRUE(std::filesystem::exists(other_root / "E1C2210_4.PNG"));
}

TEST_F(SharedRoot, AnnouncementsAreEachStoresOwn) {
    announce("logo", 4);
    EXPECT_EQ(other.handle_bodyimg(image("logo"), body("image"), data_service), 1);
    EXPECT_TRUE(other_router.take().empty());
    receive("logo", "image");
    expect_reported({"E1C2210_4.PNG"});
}

TEST_F(SharedRoot, MayBeSetWhileAnotherStoreWrites) {
    // Two stores at work on their own threads; ThreadSanitizer watches the root.
    for (int i = 0; i < 50; ++i) {
        db.post(std::make_shared<spi::logo_root_event>(root.path().string()), spi::QID_LOGODB);
        spi::SiServiceInfo description;
        description.logos = {logo_of(station, kPng, 4)};
        other.post(std::make_shared<spi::si_service_event>(data_service, std::move(description)),
                   spi::QID_LOGODB);
        other.post(std::make_shared<spi::image_body_event>(image("logo"), body("image"), data_service),
                   spi::QID_LOGODB);
    }
    std::size_t reported_by_other = 0;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (reported_by_other < 50 && std::chrono::steady_clock::now() < limit) {
        reported_by_other += other_router.take().size();
        std::this_thread::yield();
    }
    EXPECT_EQ(reported_by_other, 50U);
    EXPECT_EQ(content("E1C2210_4.PNG"), "image");
}

}  // namespace
}  // namespace logo_db
