// Records what a host feeds, for when "the listener hears nothing": a server that writes down every call
// before it passes it on. What it writes is a call recording, which the command explains on a desk:
//
//     spi_wrap::spi_recorder server(&listener, "/data/spi-trace");  // in place of toSpiServer
//     server(&listener)
//
//     $ dabspi check /data/spi-trace/recording.jsonl
//     $ dabspi replay /data/spi-trace/recording.jsonl
//
// Header-only: the library exports nothing of it, and a host that does not include it pays nothing.
//
// Threads: as toSpiServer, all calls from one thread, or kept apart by the host. It writes on that thread
// before the call is passed on, so a call takes as long as the disk does: for looking for a fault, not for
// production. The listener is called as without it.
//
// Failures never reach the host's calls: when something cannot be written, recording ends, everything goes on
// being fed, and recording_error() says why.
//
// The folder gets recording.jsonl (recording-2.jsonl and so on, when one is there already: each server writes
// one) and a file for each different body in objects/. Bodies that come again take no room but their line's.
// Every line is in the file when the call is passed on, so that a host which crashes leaves it whole.
#pragma once

#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <system_error>

#include "spi_wrap/to_spi_server.h"

namespace spi_wrap {

class spi_recorder : public toSpiServer {
 public:
    // `listener` as for toSpiServer. `directory` is made if it is missing (not those above it). Recording
    // ends when it has taken `most_bytes` there: a carousel goes on for ever.
    spi_recorder(ISpiListener* listener, const std::string& directory,
                 std::uint64_t most_bytes = std::uint64_t{1} << 30)
        : toSpiServer(listener), directory_(directory), left_(most_bytes) {
        guarded([this] { open(); });
    }

    // Writes the call down, and makes it.
    int SetCurrentService(ServElemId& service, unsigned short ensemble) override {
        guarded([&] {
            line("{\"call\":\"SetCurrentService\"," + identifier(service) +
                 ",\"ensemble\":" + hexadecimal(ensemble) + "}");
        });
        return toSpiServer::SetCurrentService(service, ensemble);
    }

    // The same. A date or time whose parts have too many digits is a comment in the recording.
    int SetDateTime(MotDateTime& now) override {
        guarded([&] {
            const std::string date = digits(now.year, 4) + digits(now.month, 2) + digits(now.day, 2);
            const std::string time = digits(now.hour, 2) + digits(now.minute, 2);
            // A recording has no words for such a date; a replay goes on with the one before.
            const bool odd = date.size() != 8 || time.size() != 4;
            line((odd ? "# not to be replayed: " : "") +
                 std::string("{\"call\":\"SetDateTime\",\"date\":\"") + date + "\",\"time\":\"" + time +
                 "\"}");
        });
        return toSpiServer::SetDateTime(now);
    }

    // The same. A content name that is not UTF-8 is written with U+FFFD for each odd byte, and is another
    // then.
    int FeedMotBody(MotBodyMetadata& metadata, MotBody& body, ServElemId& service) override {
        guarded([&] {
            const std::string file = body_file(body);
            if (file.empty()) return;
            line("{\"call\":\"FeedMotBody\",\"content_type\":" + std::to_string(metadata.content_type) +
                 ",\"content_subtype\":" + std::to_string(metadata.content_subtype) + ",\"content_name\":\"" +
                 json_text(metadata.content_name) + "\"," + identifier(service) + ",\"file\":\"" + file +
                 "\"}");
        });
        return toSpiServer::FeedMotBody(metadata, body, service);
    }

    // Where the calls are written; empty when that could not begin.
    const std::string& recording_file() const { return file_name_; }
    // Why recording ended; empty while it goes on. On the calling thread.
    const std::string& recording_error() const { return error_; }

 private:
    struct closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using file_ptr = std::unique_ptr<std::FILE, closer>;

    // Nothing of recording may disturb the host.
    template <class Work>
    void guarded(Work work) noexcept {
        if (ended_) return;
        try {
            work();
        } catch (...) {
            ended_ = true;
            file_.reset();
            error_ = "no memory";  // fits without any
        }
    }

    void end(const std::string& why) {
        ended_ = true;
        file_.reset();
        error_ = why;
    }
    void end(const std::string& what, int error) {
        end(what + ": " + std::generic_category().message(error));
    }

    void open() {
        for (const char* const folder : {"", "/objects"}) {
            const std::string path = directory_ + folder;
            if (::mkdir(path.c_str(), 0777) != 0 && errno != EEXIST) return end(path, errno);
        }
        for (unsigned number = 1; number < 10000; ++number) {
            file_name_ =
                directory_ + "/recording" + (number == 1 ? "" : "-" + std::to_string(number)) + ".jsonl";
            file_.reset(std::fopen(file_name_.c_str(), "wxe"));
            if (file_ != nullptr) return line("# What a host fed to the library, call by call.");
            if (errno != EEXIST) break;
        }
        const int error = errno;
        end(file_name_, error);
        file_name_.clear();
    }

    // True when there is room for so much more.
    bool take(std::uint64_t bytes) {
        if (bytes > left_) {
            end("the recording has taken all the room that it may");
            return false;
        }
        left_ -= bytes;
        return true;
    }

    void line(const std::string& text) {
        if (!take(text.size() + 1)) return;
        const bool written = std::fwrite(text.data(), 1, text.size(), file_.get()) == text.size() &&
                             std::fputc('\n', file_.get()) != EOF && std::fflush(file_.get()) == 0;
        if (!written) end(file_name_, errno);
    }

    // "objects/....bin"; empty when recording has ended.
    std::string body_file(const MotBody& body) {
        const std::size_t size = body.data == nullptr ? 0 : body.size;
        const std::string name = "objects/" + name_of(body.data, size);
        if (written_.count(name) != 0) return name;
        if (!take(size)) return {};
        const std::string path = directory_ + "/" + name;
        std::FILE* const opened = std::fopen(path.c_str(), "wbe");
        file_ptr file(opened);
        bool good = file != nullptr && (size == 0 || std::fwrite(body.data, 1, size, opened) == size);
        if (good) good = std::fclose(file.release()) == 0;
        if (!good) {
            end(path, errno);
            return {};
        }
        written_.insert(name);
        return name;
    }

    // Of the bytes: 128 bits of two sums (FNV-1a, with two primes), and the size.
    static std::string name_of(const unsigned char* data, std::size_t size) {
        std::uint64_t one = 0xCBF29CE484222325;
        std::uint64_t other = 0x9E3779B97F4A7C15;
        for (std::size_t i = 0; i < size; ++i) {
            one = (one ^ data[i]) * 0x100000001B3;
            other = (other ^ data[i]) * 0xD6E8FEB86659FD93;
        }
        char text[64];
        std::snprintf(text, sizeof text, "%016llx%016llx-%zu.bin", static_cast<unsigned long long>(one),
                      static_cast<unsigned long long>(other), size);
        return text;
    }

    static std::string hexadecimal(std::uint32_t number) {
        char text[16];
        std::snprintf(text, sizeof text, "\"0x%X\"", static_cast<unsigned>(number));
        return text;
    }

    static std::string digits(unsigned number, int width) {
        char text[16];
        std::snprintf(text, sizeof text, "%0*u", width, number);
        return text;
    }

    static std::string identifier(const ServElemId& of) {
        return "\"sid\":" + hexadecimal(of.sid) + ",\"ecc\":" + hexadecimal(of.ecc) +
               ",\"scids\":" + std::to_string(of.scids);
    }

    // Of a well-formed character, in bytes; 0 for what is not UTF-8.
    static std::size_t character(const std::string& text, std::size_t at) {
        const auto byte = [&](std::size_t i) -> unsigned {
            return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0;
        };
        const unsigned first = byte(0);
        if (first < 0x80) return 1;
        const std::size_t length = first >= 0xF0 && first < 0xF5 ? 4
                                   : first >= 0xE0               ? 3
                                   : first >= 0xC2               ? 2
                                                                 : 0;
        if (first >= 0xF5 || length == 0) return 0;
        for (std::size_t i = 1; i < length; ++i)
            if ((byte(i) & 0xC0) != 0x80) return 0;
        // Overlong forms, surrogates, and what is beyond the last character.
        const bool wrong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) >= 0xA0) ||
                           (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) >= 0x90);
        return wrong ? 0 : length;
    }

    // Recordings are UTF-8: a byte that is none becomes U+FFFD, and the name is then another.
    static std::string json_text(const std::string& text) {
        std::string escaped;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = character(text, at);
            const auto first = static_cast<unsigned char>(text[at]);
            if (length == 0) {
                escaped += "\xEF\xBF\xBD";
            } else if (first < 0x20) {
                char code[8];
                std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(first));
                escaped += code;
            } else {
                if (first == '"' || first == '\\') escaped += '\\';
                escaped.append(text, at, length);
            }
            at += length == 0 ? 1 : length;
        }
        return escaped;
    }

    std::string directory_;
    std::uint64_t left_;  // bytes
    file_ptr file_;
    std::string file_name_;
    std::string error_;
    std::set<std::string> written_;  // bodies, by their files
    bool ended_ = false;
};

}  // namespace spi_wrap
