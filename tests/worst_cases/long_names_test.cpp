// Names of sixteen megabytes, the longest that a length can state: how many copies of them are in memory at
// the same time.
#include <atomic>

#include "src/server/spi_server.h"
#include "testkit/spi_builder_objects.h"
#include "tests/event/watchdog.h"
#include "tests/worst_cases/costed.h"

namespace {

using namespace hostile;

constexpr std::size_t kLong = 0xFFFF00;  // bytes

class LongNames : public Costed {};

TEST_F(LongNames, OfAProgramme) {
    const bytes body = join(
        {service_named_first(),
         elem(tag::epg, {elem(tag::schedule,
                              {elem(tag::programme,
                                    {elem(tag::long_name, {elem(tag::text, bytes(kLong - 64, 'n'))})})})})});
    const cost all = cost_of("programme's name", kProgrammeInformation, body);
    EXPECT_EQ(all.done.text, kLong - 64);
    // The body, and the name once: it is read into the record that travels.
    expect_below(all, body.size(), {2.1, 10000}, {2.1, 10000});
}

TEST_F(LongNames, OfALogosUrl) {
    const bytes body =
        elem(tag::service_information,
             {elem(tag::ensemble,
                   {elem(tag::service, {elem(tag::media_description,
                                             {elem(tag::multimedia, {attr(attribute::multimedia::url,
                                                                          bytes(kLong - 64, 'u'))})})})})});
    const cost all = cost_of("logo's URL", kServiceInformation, body);
    EXPECT_EQ(all.done.text, kLong - 64);
    // The body, and the URL once: it is read into the record that travels.
    expect_below(all, body.size(), {2.1, 10000}, {2.1, 10000});
}

// ---- the way through a whole server, with a listener that takes what it is given ----

class listener final : public spi::ISpiListener {
 public:
    void ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo&) override {}
    void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo&) override {
        longest = std::max(longest.load(), now.name.size());
    }
    void StationLogoReceived(spi::SpiLogoInfo&) override {}
    std::atomic<std::size_t> longest{0};
};

struct LongNamesInAServer : ::testing::Test {
    const watchdog guard;
    const std::shared_ptr<listener> received = std::make_shared<listener>();
    spi::SpiServer server{received, "/temp/dab", "/nowhere"};
    spi::ServElemId service{0xC221, 0xE1, 0};
    static constexpr std::size_t kName = 4000000;

    LongNamesInAServer() {
        spi::MotDateTime now{2026, 3, 2, 10, 30};
        server.SetDateTime(now);
        server.SetCurrentService(service, 0xCE15);
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
    }

    // Copies of a name of kName bytes at the highest point, and those that stay, as `feed` works through.
    struct copies {
        double peak;
        double kept;
    };
    template <class Feed>
    copies of(const char* construction, Feed feed) {
        const counted_heap heap;
        feed();
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        const copies counted{static_cast<double>(heap.peak()) / kName,
                             static_cast<double>(heap.live()) / kName};
        std::printf("%-34s %9zu bytes: %.1f copies at most, %.1f kept\n", construction, kName, counted.peak,
                    counted.kept);
        return counted;
    }
};

TEST_F(LongNamesInAServer, OfAProgrammeThatIsOn) {
    programme_data morning{{"", "", std::string(kName, 'n')}, {mjd(2026, 3, 2), 10, 0}, 3600};
    bytes object = pi_object({{service_id{0xE1, 0xCE15, 0xC221}, {}, {}, {morning}}});
    const copies counted = of("a programme's name, in a server", [&] {
        server.FeedMotBody({7, 7, 1, "pi"}, body_of(object), service);
    });
    EXPECT_EQ(received->longest, kName);
    // Kept: the schedule's and now's. Besides them for a time, if all meet: the body, the event to the
    // database, the two to the notifier, and the record for the listener.
    EXPECT_LE(counted.kept, 2.1);
    EXPECT_LE(counted.peak, 7.1);
}

TEST_F(LongNamesInAServer, OfAContentName) {
    const bytes object = elem(tag::epg, bytes{});
    std::string name(kName, 'c');
    const copies counted = of("an object's content name", [&] {
        server.FeedMotBody({7, 7, 1, name}, body_of(object), service);
    });
    EXPECT_LE(counted.kept, 1.1);  // by which a repetition is known
    EXPECT_LE(counted.peak, 2.1);
    const copies again = of("the same object again", [&] {
        server.FeedMotBody({7, 7, 1, name}, body_of(object), service);
    });
    EXPECT_LE(again.kept, 0.1);
    EXPECT_LE(again.peak, 2.1);
    const copies image = of("an image's content name", [&] {
        server.FeedMotBody({7, 2, 3, name}, body_of(object), service);
    });
    EXPECT_LE(image.kept, 0.1);
    EXPECT_LE(image.peak, 1.1);
}

TEST_F(LongNamesInAServer, OfAnAnnouncedLogo) {
    const bytes object = si_object(
        0xE1, 0xCE15, {{{"", "R", ""}, {}, {{"image/png", std::string(kName, 'u'), {}, 320, 240}}}});
    const copies counted = of("an announced URL, in a server", [&] {
        server.FeedMotBody({7, 7, 0, "si"}, body_of(object), service);
    });
    EXPECT_LE(counted.kept, 1.1);
    EXPECT_LE(counted.peak, 3.1);
}

}  // namespace
