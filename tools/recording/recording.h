// A recording: what a host fed to the library, call by call, as JSON Lines. This reader serves `dabspi
// replay`, the tests and the benchmarks; it knows nothing of the library, only of the format.
//
// The whole recording is checked while it is read: every line, every number's range, every body file. Nothing
// is thrown for a bad recording: what is wrong stands in `errors`, and a recording with errors must not be
// fed. Memory: all bodies are held, up to a limit; a file that is named many times is read and held once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace dabspi {

using bytes = std::vector<std::uint8_t>;

struct service_id {
    std::uint32_t sid = 0;
    std::uint8_t ecc = 0;
    std::uint8_t scids = 0;
};

// The same in the words of either interface of the library: their identifiers have parts of the same names.
template <class Identifier>
Identifier identifier_of(const service_id& id) {
    Identifier result;
    result.sid = id.sid;
    result.ecc = id.ecc;
    result.scids = id.scids;
    return result;
}

// The host's own texts. A text of 8 (date) or 4 (time) bytes is all digits; one of another length leaves its
// part of the date and time zero, as it would for a host.
struct set_date_time {
    std::string date;
    std::string time;

    // "2026-03-02 10:31", of texts that are digits.
    std::string text() const {
        if (date.size() != 8 || time.size() != 4) return date + " " + time;
        return date.substr(0, 4) + "-" + date.substr(4, 2) + "-" + date.substr(6) + " " + time.substr(0, 2) +
               ":" + time.substr(2);
    }
};

struct set_current_service {
    service_id service;
    std::uint16_t ensemble = 0;
};

struct feed_mot_body {
    std::uint8_t content_type = 0;
    std::uint16_t content_subtype = 0;
    std::string content_name;  // UTF-8
    service_id service;
    std::shared_ptr<const bytes> body;  // never null; shared between all calls that name the same file
};

struct resend_now_next {};

struct call {
    std::size_t line = 0;  // counted from 1; 0: not of a recording
    std::variant<set_date_time, set_current_service, feed_mot_body, resend_now_next> what;
    std::uint64_t frame = 0;  // of a multiplex, which has no lines: 24 ms each, counted from 0
};

struct recording_error {
    std::size_t line = 0;  // 0: the recording as a whole
    std::string text;
};

struct recording {
    std::string name;                     // as it was given; "<stdin>" for standard input
    std::vector<call> calls;              // those without an error; not to be fed while there are errors
    std::vector<recording_error> errors;  // in the order of the lines
};

// What a recording may hold; more is an error that names the option --limit, by which a caller raises all.
struct recording_limits {
    std::size_t most_bytes = 256 * kMebibyte;  // of its text
    std::size_t most_line = 64 * kMebibyte;
    std::size_t most_bodies = 256 * kMebibyte;  // of all bodies, each file once
    std::size_t most_calls = 1000000;           // nearly two years of minutes

    static constexpr std::size_t kMebibyte = 1024 * 1024;
    // Of so many MiB of text, and everything else in proportion.
    static recording_limits of(std::size_t mebibytes);
};

// Endless input is read to its limit; one that is no recording, to its first line. After a thousand errors
// the rest is not read.
//
// `path` "-" is standard input; body files are then relative to the current directory, else to the
// recording's own.
recording read_recording(const std::string& path, const recording_limits& limits = {});

// A recording's text, wherever it comes from.
struct recording_text {
    // Puts at most `space` bytes there; 0 at the end.
    std::function<std::size_t(char* to, std::size_t space)> read;
    std::function<int()> error;  // a system error number, or 0
};
recording read_recording(const recording_text& from, const std::string& name, const std::string& directory,
                         const recording_limits& limits = {});

// The same for a text in memory.
recording parse_recording(std::string_view text, const std::string& name, const std::string& directory,
                          const recording_limits& limits = {});

// "FILE:LINE: what is wrong", or "FILE: what is wrong" for an error without a line.
std::string error_text(const recording& of, const recording_error& error);

}  // namespace dabspi
