#include "src/event/serr.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <locale>
#include <memory>
#include <sstream>
#include <thread>

#include "tests/event/log_lines.h"

namespace {

using namespace spi;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::StartsWith;

// Puts the zero of the lines' times back, for a test.
class loaded_ago {
 public:
    explicit loaded_ago(std::chrono::steady_clock::duration age) : before_(s_start) {
        s_start = std::chrono::steady_clock::now() - age;
    }
    ~loaded_ago() { s_start = before_; }
    loaded_ago(const loaded_ago&) = delete;
    loaded_ago& operator=(const loaded_ago&) = delete;

 private:
    const std::chrono::steady_clock::time_point before_;
};

std::string one_line() {
    const captured_stderr log;
    serr() << " text";
    return log.text();
}

TEST(Serr, WritesOneWholeLineWhenTheTemporaryEnds) {
    EXPECT_THAT(one_line(),
                MatchesRegex("\\[q\\(B0\\] [0-9]{2}\\.[0-9]{2}:[0-9]{2}:[0-9]{3} \\[[0-9a-f]+\\] text\n"));
}

TEST(Serr, WritesNothingBeforeItsEnd) {
    const captured_stderr log;
    {
        serr line;
        line << " text" << std::flush;
        EXPECT_EQ(log.text(), "");
    }
    EXPECT_EQ(lines_of(log.text()).size(), 1U);
}

TEST(Serr, BeginsWithTheFixedPrefix) {
    EXPECT_THAT(one_line(), StartsWith("[q(B0] "));
}

TEST(Serr, HasAFullStopAfterTheHoursAndColonsElsewhere) {
    using namespace std::chrono_literals;
    const loaded_ago age(9h + 8min + 7s + 6ms);
    // The clock goes on between the two: only the milliseconds may differ.
    EXPECT_THAT(one_line(), ContainsRegex("^\\[q\\(B0\\] 09\\.08:07:[0-9]{3} \\["));
}

TEST(Serr, FillsTheMillisecondsToThreeDigits) {
    using namespace std::chrono_literals;
    const loaded_ago age(59min + 59s);
    EXPECT_THAT(one_line(), ContainsRegex("^\\[q\\(B0\\] 00\\.59:59:0[0-9]{2} \\["));
}

TEST(Serr, CountsTheHoursModulo24) {
    using namespace std::chrono_literals;
    {
        const loaded_ago age(25h);
        EXPECT_THAT(one_line(), StartsWith("[q(B0] 01.00:00:"));
    }
    {
        const loaded_ago age(24h);
        EXPECT_THAT(one_line(), StartsWith("[q(B0] 00.00:00:"));
    }
    {
        const loaded_ago age(23h + 59min + 59s);
        EXPECT_THAT(one_line(), StartsWith("[q(B0] 23.59:"));
    }
}

TEST(Serr, ShowsTheCallingThreadInHexadecimal) {
    std::ostringstream id;
    id << std::hex << std::this_thread::get_id();
    EXPECT_NE(one_line().find(" [" + id.str() + "] text"), std::string::npos);
}

TEST(Serr, IsLeftInHexadecimalMode) {
    const captured_stderr log;
    serr() << ' ' << 255 << ' ' << std::dec << 255;
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" ff 255"));
}

TEST(Serr, KeepsLinesOfManyThreadsWhole) {
    const captured_stderr log;
    const std::string text(300, 'x');
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&text] {
            for (int line = 0; line < 100; ++line)
                serr() << ' ' << text;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const auto messages = messages_of(log.text());
    EXPECT_EQ(messages.size(), 800U);
    EXPECT_EQ(std::count(messages.begin(), messages.end(), ' ' + text), 800);
}

TEST(Serr, HoldsNoLockWhileALineIsComposed) {
    const captured_stderr log;
    serr outer;
    outer << " outer";
    serr() << " inner";
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" inner"));
    EXPECT_TRUE(s_log_mx.try_lock());
    s_log_mx.unlock();
}

TEST(Serr, WaitsForTheLogMutexBeforeItWrites) {
    const captured_stderr log;
    std::unique_lock<std::mutex> held(s_log_mx);
    std::future<void> writer = std::async(std::launch::async, [] { serr() << " late"; });
    EXPECT_EQ(writer.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    EXPECT_EQ(log.text(), "");
    held.unlock();
    writer.get();
    EXPECT_THAT(messages_of(log.text()), ElementsAre(" late"));
}

struct grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\1"; }
};

TEST(Serr, IsUntouchedByAHostsGroupingLocale) {
    using namespace std::chrono_literals;
    const loaded_ago age(23h + 59min);
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new grouping));
    std::ostringstream host;
    host << 1234;
    const captured_stderr log;
    serr() << ' ' << 0x12345;
    const std::string text = log.text();
    std::locale::global(before);
    EXPECT_EQ(host.str(), "1,2,3,4");  // the locale does group
    EXPECT_THAT(messages_of(text), ElementsAre(" 12345"));
    EXPECT_THAT(text, StartsWith("[q(B0] 23.59:"));
}

}  // namespace
