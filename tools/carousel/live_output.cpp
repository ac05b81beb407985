#include "tools/carousel/live_output.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "tools/text/utf8.h"

namespace dabspi::carousel {

namespace {

using spi_object::byte_view;

constexpr int kWaitForReader = 100;  // milliseconds between looks
constexpr int kWaitForRoom = 100;    // milliseconds
constexpr std::size_t kMostClients = 16;
constexpr int kBacklog = 4;

std::string text_of_error(int error) {
    return std::generic_category().message(error);
}

class descriptor {
 public:
    explicit descriptor(int number = -1) : number_(number) {}
    descriptor(descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
    descriptor& operator=(descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~descriptor() {
        if (number_ > STDERR_FILENO) ::close(number_);
    }
    int get() const { return number_; }

 private:
    int number_;
};

// Standard output, or a pipe that is opened again when its reader has gone.
class pipe_output final : public live_output {
 public:
    pipe_output(std::string path, std::function<void(const std::string&)> say, std::function<bool()> given_up)
        : path_(std::move(path)), say_(std::move(say)), given_up_(std::move(given_up)) {}

    std::string write(byte_view frame) override {
        const bool is_standard = path_.empty();
        if (pipe_.get() < 0) {
            pipe_ = descriptor(is_standard ? STDOUT_FILENO : wait_for_reader());
            if (pipe_.get() < 0) return given_up_() ? std::string() : text_of_error(errno);
        }
        while (!frame.empty()) {
            const ssize_t written = ::write(pipe_.get(), frame.begin(), frame.size());
            if (written >= 0) {
                frame = frame.part(static_cast<std::size_t>(written));
            } else if (errno == EAGAIN) {
                if (given_up_()) return {};
                pollfd room{pipe_.get(), POLLOUT, 0};
                ::poll(&room, 1, kWaitForRoom);
            } else if (errno == EPIPE && !is_standard) {
                say_(printable(path_) + ": the reader has gone; waiting for another one");
                pipe_ = descriptor();
                return {};
            } else if (errno != EINTR || given_up_()) {
                return text_of_error(errno);
            }
        }
        return {};
    }

 private:
    int wait_for_reader() {
        for (;;) {
            const int opened = ::open(path_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            if (opened >= 0 || (errno != ENXIO && errno != EINTR)) return opened;
            if (given_up_()) return -1;
            ::poll(nullptr, 0, kWaitForReader);
        }
    }

    const std::string path_;  // empty: standard output
    const std::function<void(const std::string&)> say_;
    const std::function<bool()> given_up_;
    descriptor pipe_;
};

// Everybody who connects gets the frames from then on, whole. One that does not keep up is disconnected.
class tcp_output final : public live_output {
 public:
    tcp_output(descriptor listening, std::function<void(const std::string&)> say)
        : listening_(std::move(listening)), say_(std::move(say)) {}

    std::string write(byte_view frame) override {
        accept_all();
        for (std::size_t i = 0; i < clients_.size();) {
            const ssize_t sent =
                ::send(clients_[i].get(), frame.begin(), frame.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent == static_cast<ssize_t>(frame.size())) {
                ++i;
                continue;
            }
            const bool slow = sent >= 0 || errno == EAGAIN || errno == EWOULDBLOCK;
            say_(slow ? "a client that does not keep up is disconnected" : "a client has gone");
            clients_.erase(clients_.begin() + static_cast<std::ptrdiff_t>(i));
        }
        return {};
    }

 private:
    void accept_all() {
        for (;;) {
            descriptor client(::accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
            if (client.get() < 0) return;
            if (clients_.size() == kMostClients) {
                say_("a client is refused: there are " + std::to_string(kMostClients) + " already");
                continue;
            }
            say_("a client has connected");
            clients_.push_back(std::move(client));
        }
    }

    descriptor listening_;
    const std::function<void(const std::string&)> say_;
    std::vector<descriptor> clients_;
};

// "127.0.0.1:9201"
bool parse_address(const std::string& text, sockaddr_in& to) {
    const std::size_t sign = text.rfind(':');
    if (sign == std::string::npos) return false;
    const std::string port = text.substr(sign + 1);
    if (port.empty() || port.size() > 5 || port.find_first_not_of("0123456789") != std::string::npos)
        return false;
    const unsigned long number = std::strtoul(port.c_str(), nullptr, 10);
    to = {};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<std::uint16_t>(number));
    return number <= 65535 && ::inet_pton(AF_INET, text.substr(0, sign).c_str(), &to.sin_addr) == 1;
}

std::unique_ptr<live_output> listen_at(const std::string& address,
                                       const std::function<void(const std::string&)>& say,
                                       std::string& error) {
    sockaddr_in where{};
    if (!parse_address(address, where)) {
        error = in_quotes(address) + " is no address such as 127.0.0.1:9201";
        return nullptr;
    }
    descriptor listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int on = 1;
    socklen_t size = sizeof where;
    if (listening.get() < 0 || ::setsockopt(listening.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        ::bind(listening.get(), reinterpret_cast<sockaddr*>(&where), sizeof where) != 0 ||
        ::listen(listening.get(), kBacklog) != 0 ||
        ::getsockname(listening.get(), reinterpret_cast<sockaddr*>(&where), &size) != 0) {
        error = printable(address) + ": " + text_of_error(errno);
        return nullptr;
    }
    say("listening on port " + std::to_string(ntohs(where.sin_port)));
    return std::make_unique<tcp_output>(std::move(listening), say);
}

}  // namespace

std::unique_ptr<live_output> open_live_output(const std::string& target,
                                              const std::function<void(const std::string&)>& say,
                                              const std::function<bool()>& given_up, std::string& error) {
    constexpr std::string_view kTcp = "tcp://";
    if (target == "-") return std::make_unique<pipe_output>(std::string(), say, given_up);
    if (target.compare(0, kTcp.size(), kTcp) == 0) return listen_at(target.substr(kTcp.size()), say, error);
    struct stat there {};
    if (::stat(target.c_str(), &there) != 0) {
        error = printable(target) + ": " + text_of_error(errno) + "; make the pipe first: mkfifo " +
                printable(target);
        return nullptr;
    }
    if (!S_ISFIFO(there.st_mode)) {
        error =
            printable(target) + " is no named pipe; --follow writes to one, to - or to tcp://ADDRESS:PORT";
        return nullptr;
    }
    return std::make_unique<pipe_output>(target, say, given_up);
}

}  // namespace dabspi::carousel
