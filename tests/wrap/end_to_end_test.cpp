// The whole library through its host-facing layer, with a host's listener.
#include <atomic>
#include <memory>

#include "tests/wrap/host.h"
#include "tests/wrap/wrap_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EndToEnd : public Wrapped {
 protected:
    EndToEnd() { put_block(block_with("/mnt/data")); }
    keeping_listener listener;
};

TEST_F(EndToEnd, NowAndNextReachTheHost) {
    broadcasting_host host(&listener);
    host.set_time(10, 30);
    host.tune();
    host.feed_schedule();
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), ElementsAre("now News, next ", "now News, next Talk"));
    host.set_time(11, 0);
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), IsEmpty());
    host.set_time(11, 1);
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), ElementsAre("now Talk, next "));
}

TEST_F(EndToEnd, WholeSchedulesDoNotReachTheHost) {
    broadcasting_host host(&listener);
    host.set_time(10, 30);
    host.tune();
    host.feed_schedule();
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), ::testing::Not(::testing::Contains("programme information")));
}

TEST_F(EndToEnd, ALogoIsWrittenAndReachesTheHost) {
    broadcasting_host host(&listener);
    host.tune();
    host.feed_description();
    ASSERT_TRUE(quiet());
    host.feed_image("a PNG");  // taken although the host names no application
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), ElementsAre("logo E1C2210_4.PNG of size 4"));
    EXPECT_EQ(file_content(here.at("/mnt/data/HdStationLogo/E1C2210_4.PNG")), "a PNG");
}

TEST_F(EndToEnd, LogosGoToTheTempRootWhenTheirOwnCannotBeMade) {
    std::ofstream(here.at("/mnt/data")) << "a file";
    broadcasting_host host(&listener);
    host.tune();
    host.feed_description();
    ASSERT_TRUE(quiet());
    host.feed_image("a PNG");
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), ElementsAre("logo E1C2210_4.PNG of size 4"));
    EXPECT_EQ(file_content(here.at("/temp/dab/E1C2210_4.PNG")), "a PNG");
}

TEST_F(EndToEnd, ALogoRootThatVanishedIsReportedWithItsTwoSlashes) {
    broadcasting_host host(&listener);
    host.tune();
    host.feed_description();
    ASSERT_TRUE(quiet());
    std::filesystem::remove(here.at("/mnt/data/HdStationLogo"));
    host.feed_image("a PNG");
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), IsEmpty());
    const auto messages = debug.take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].line, 204);
    EXPECT_EQ(messages[0].text, "Failed: Station Logo path:[/mnt/data/HdStationLogo//]\n");
}

TEST_F(EndToEnd, EveryCallComesOnOneThreadWhichIsNotTheHosts) {
    broadcasting_host host(&listener);
    host.set_time(10, 30);
    host.tune();
    host.feed_schedule();
    host.feed_description();
    ASSERT_TRUE(quiet());
    host.feed_image("a PNG");
    ASSERT_TRUE(quiet());
    EXPECT_EQ(listener.take().size(), 3U);
    ASSERT_EQ(listener.threads().size(), 1U);
    EXPECT_NE(listener.threads()[0], std::this_thread::get_id());
}

TEST_F(EndToEnd, WithoutAListenerEverythingElseWorks) {
    broadcasting_host host(nullptr);
    host.set_time(10, 30);
    host.tune();
    host.feed_schedule();
    host.feed_description();
    ASSERT_TRUE(quiet());
    host.feed_image("a PNG");
    ASSERT_TRUE(quiet());
    EXPECT_EQ(file_content(here.at("/mnt/data/HdStationLogo/E1C2210_4.PNG")), "a PNG");
    EXPECT_TRUE(debug.take().empty());
}

// A listener that looks whether the server is gone already.
class watching_listener final : public spi_wrap::ISpiListener {
 public:
    std::atomic<bool> server_gone{false};
    std::atomic<int> calls{0};
    std::atomic<int> calls_too_late{0};

    void ProgramInfoReceived(const spi_wrap::ServElemId&, spi_wrap::SpiProgramInfo&) override { count(); }
    void ProgramNowNextUpdated(spi_wrap::SpiProgramInfo&, spi_wrap::SpiProgramInfo&) override { count(); }
    void StationLogoReceived(spi_wrap::SpiLogoInfo&) override { count(); }

 private:
    void count() {
        ++calls;
        if (server_gone) ++calls_too_late;
    }
};

TEST_F(EndToEnd, NoCallComesAfterTheDestruction) {
    const int threads = running_threads();
    int calls = 0;
    for (int i = 0; i < 30; ++i) {
        watching_listener watcher;
        {
            broadcasting_host host(&watcher);
            host.set_time(10, 30);
            host.tune();
            host.feed_schedule();
            if (i == 0) {
                ASSERT_TRUE(quiet());  // or a slow machine might hear nothing in any round
            }
            // In flight as the server is destroyed.
            for (std::uint8_t minute = 1; minute < 20; ++minute)
                host.set_time(11, minute);
        }
        watcher.server_gone = true;
        EXPECT_TRUE(wait_for_threads(threads));
        EXPECT_EQ(watcher.calls_too_late, 0);
        calls += watcher.calls;
    }
    EXPECT_GT(calls, 0);
}

TEST_F(EndToEnd, SixThreadsServeAndNoneStays) {
    const int threads = running_threads();
    const int descriptors = open_descriptors();
    {
        broadcasting_host host(&listener);
        // The time reaches every thread: a thread that starts under AddressSanitizer has a file open for a
        // while.
        host.set_time(10, 0);
        ASSERT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1)));
        EXPECT_EQ(running_threads(), threads + 6);
        EXPECT_EQ(open_descriptors(), descriptors);
        EXPECT_EQ(mappings_of("SysDataInfo"), 0);
    }
    EXPECT_TRUE(wait_for_threads(threads));
    EXPECT_EQ(running_threads(), threads);
    EXPECT_EQ(open_descriptors(), descriptors);
}

TEST_F(EndToEnd, TwoServersLiveSideBySide) {
    keeping_listener other_listener;
    broadcasting_host host(&listener);
    broadcasting_host other(&other_listener);
    host.set_time(10, 30);
    host.tune();
    other.set_time(10, 30);
    other.tune();
    other.feed_schedule();
    ASSERT_TRUE(quiet());
    EXPECT_THAT(listener.take(), IsEmpty());
    EXPECT_EQ(other_listener.take().size(), 2U);
}

TEST_F(EndToEnd, TheHostsBodyMayGoRightAfterTheCall) {
    broadcasting_host host(&listener);
    host.tune();
    host.feed_description();
    {
        auto bytes = std::make_unique<spi_builder::bytes>(spi_builder::str(std::string(20000, 'p')));
        ASSERT_TRUE(quiet());
        host.feed(2, 3, "logo.png", *bytes);
        std::fill(bytes->begin(), bytes->end(), std::uint8_t{0});
    }
    ASSERT_TRUE(quiet());
    EXPECT_EQ(file_content(here.at("/mnt/data/HdStationLogo/E1C2210_4.PNG")), std::string(20000, 'p'));
}

}  // namespace
