// Service identifiers that share one hash value, all that there are: a broadcast chooses the identifiers.
// What the tables do with them is counted in comparisons of identifiers.
#include "src/event_db/spi_event_db.h"
#include "src/logo_db/spi_logo_db.h"
#include "src/parse/body/spi_body_table.h"
#include "tests/worst_cases/costed.h"

namespace {

using namespace hostile;
using counted_order::comparisons;

// A balanced tree of 65,536 is at most 32 levels deep; an insertion looks at a neighbour or two besides.
constexpr std::uint64_t kMostForOne = 40;

// They differ in the ECC and in the top byte of the service identifier, of which the hash takes neither.
std::vector<spi::ServElemId> equal_hashes() {
    std::vector<spi::ServElemId> all;
    for (unsigned ecc = 0; ecc < 256; ++ecc) {
        for (std::uint32_t top = 0; top < 256; ++top)
            all.push_back(service_of(static_cast<std::uint8_t>(ecc), top << 24 | 0xC221));
    }
    return all;
}

class EqualHashes : public Costed {
 protected:
    const std::vector<spi::ServElemId> services = equal_hashes();

    void SetUp() override {
        ASSERT_EQ(services.size(), 65536U);
        for (const spi::ServElemId& service : services)
            ASSERT_EQ(spi::SeidHash()(service), spi::SeidHash()(services.front()));
    }
    template <class Action>
    void expect_few(const char* construction, Action for_one) {
        comparisons = 0;
        const counted_heap heap;
        for (const spi::ServElemId& service : services)
            for_one(service);
        std::printf("%-34s %9zu identifiers %9llu comparisons, %5.1f each, %llu bytes of heap\n",
                    construction, services.size(), static_cast<unsigned long long>(comparisons),
                    static_cast<double>(comparisons) / static_cast<double>(services.size()),
                    static_cast<unsigned long long>(heap.peak()));
        EXPECT_GE(comparisons, services.size());  // it is these that are counted
        EXPECT_LE(comparisons, services.size() * kMostForOne);
    }
};

TEST_F(EqualHashes, InTheTableOfParsedObjectsAreFoundInAFewSteps) {
    spi::SpiBodyTable table;
    expect_few("parsed objects, recorded",
               [&](const spi::ServElemId& service) { ASSERT_FALSE(table.has_body("object", 100, service)); });
    expect_few("parsed objects, known",
               [&](const spi::ServElemId& service) { ASSERT_TRUE(table.has_body("object", 100, service)); });
}

TEST_F(EqualHashes, InTheScheduleStoreAreFoundInAFewSteps) {
    spi::SpiEventDb store;
    router.register_queue(&store);
    store.cfu_date_time(date_time_of(2026, 3, 2, 10, 30));
    spi::PiScheduleProgramme programme;
    programme.name = "Morning";
    programme.time.mjd = mjd(2026, 3, 2);
    programme.time.hour = 10;
    expect_few("schedules, filed", [&](const spi::ServElemId& service) {
        ASSERT_EQ(store.handle_programme(service, programme), 0);
    });
    EXPECT_EQ(router.events, services.size());
    router.events = 0;
    expect_few("schedules, repeated", [&](const spi::ServElemId& service) {
        ASSERT_EQ(store.handle_programme(service, programme), 0);
    });
    EXPECT_EQ(router.events, 0U);
}

TEST_F(EqualHashes, InTheLogoStoreAreFoundInAFewSteps) {
    spi::SpiLogoDb store;
    router.register_queue(&store);
    spi::SiServiceInfo info;
    info.logos.push_back({service_of(0xE1, 0xC221), spi::LOGO_FORMAT_PNG, spi::LOGO_SIZE_320x240, "r4.png"});
    expect_few("announcements, recorded",
               [&](const spi::ServElemId& service) { store.handle_meta(service, info); });
    expect_few("announcements, images", [&](const spi::ServElemId& service) {
        ASSERT_EQ(store.handle_bodyimg({7, 2, 3, "other.png"}, body_of({0x89}), service),
                  spi::SpiLogoDb::kHandled);
    });
}

}  // namespace
