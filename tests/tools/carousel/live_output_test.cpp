// Where a carousel goes that does not end.
#include "tools/carousel/live_output.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "tests/tools/carousel/small_broadcast.h"

namespace {

using namespace dabspi::carousel;
using carousel_test::bytes;
using testing::HasSubstr;

class LiveOutput : public testing::Test {
 protected:
    std::unique_ptr<live_output> open(const std::string& target) {
        return open_live_output(
            target, [this](const std::string& line) { said_ += line + "\n"; }, [] { return false; }, error_);
    }
    // What the target said that it listens on.
    int connect_to_it() const {
        const std::string before = "listening on port ";
        sockaddr_in where{};
        where.sin_family = AF_INET;
        where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        where.sin_port =
            htons(static_cast<std::uint16_t>(std::stoi(said_.substr(said_.find(before) + before.size()))));
        const int client = ::socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(::connect(client, reinterpret_cast<sockaddr*>(&where), sizeof where), 0);
        return client;
    }
    static std::string read_some(int from, std::size_t size) {
        std::string got(size, '\0');
        EXPECT_EQ(::recv(from, got.data(), size, MSG_WAITALL), static_cast<ssize_t>(size));
        return got;
    }

    temporary_directory folder_;
    std::string said_;
    std::string error_;
};

const bytes kFrame = {'f', 'r', 'a', 'm', 'e'};

TEST_F(LiveOutput, EveryClientGetsTheFramesFromThenOn) {
    const auto out = open("tcp://127.0.0.1:0");
    ASSERT_NE(out, nullptr) << error_;
    EXPECT_EQ(out->write(kFrame), "");  // nobody is there
    const int first = connect_to_it();
    EXPECT_EQ(out->write(kFrame), "");
    const int second = connect_to_it();
    EXPECT_EQ(out->write(kFrame), "");
    EXPECT_EQ(read_some(first, 10), "frameframe");
    EXPECT_EQ(read_some(second, 5), "frame");
    ::close(first);
    while (said_.find("a client has gone") == std::string::npos)  // the system tells after some writes
        ASSERT_EQ(out->write(kFrame), "");
    EXPECT_EQ(read_some(second, 5), "frame");
    ::close(second);
}

TEST_F(LiveOutput, AClientThatDoesNotReadIsDisconnected) {
    const auto out = open("tcp://127.0.0.1:0");
    ASSERT_NE(out, nullptr) << error_;
    const int client = connect_to_it();
    const bytes large(100'000);
    for (int i = 0; i < 1000 && said_.find("does not keep up") == std::string::npos; ++i)
        ASSERT_EQ(out->write(large), "");
    EXPECT_THAT(said_, HasSubstr("a client that does not keep up is disconnected\n"));
    ::close(client);
}

TEST_F(LiveOutput, APipeWaitsForItsNextReader) {
    const std::string path = (folder_.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const auto out = open(path);
    ASSERT_NE(out, nullptr) << error_;
    int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(out->write(kFrame), "");
    std::string got(5, '\0');
    EXPECT_EQ(::read(reader, got.data(), 5), 5);
    EXPECT_EQ(got, "frame");
    ::close(reader);
    EXPECT_EQ(out->write(kFrame), "");
    EXPECT_THAT(said_, HasSubstr("the reader has gone; waiting for another one\n"));
    reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(out->write(kFrame), "");
    EXPECT_EQ(::read(reader, got.data(), 5), 5);
    ::close(reader);
}

TEST_F(LiveOutput, RefusesWhatIsNoTarget) {
    EXPECT_EQ(open("tcp://example.com:1"), nullptr);
    EXPECT_THAT(error_, HasSubstr("is no address such as 127.0.0.1:9201"));
    EXPECT_EQ(open("tcp://127.0.0.1:70000"), nullptr);
    EXPECT_EQ(open(write_file(folder_, "file", "x")), nullptr);
    EXPECT_THAT(error_, HasSubstr("is no named pipe"));
    EXPECT_EQ(open((folder_.path() / "none").string()), nullptr);
    EXPECT_THAT(error_, HasSubstr("mkfifo"));
}

class SignalsIgnored : public testing::Environment {
    void SetUp() override { std::signal(SIGPIPE, SIG_IGN); }
};
const auto* const kSignalsIgnored = testing::AddGlobalTestEnvironment(new SignalsIgnored);

}  // namespace
