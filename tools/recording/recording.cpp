#include "tools/recording/recording.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>

#include "tools/files/body_files.h"
#include "tools/files/input_kind.h"
#include "tools/recording/recording_line.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr std::size_t kMostErrors = 1000;
constexpr std::size_t kMostOfOddLine = 4096;  // kept of a line that holds no call
constexpr const char* kRaise = "; --limit raises what is taken";

std::string mebibytes(std::size_t bytes) {
    return std::to_string(bytes / recording_limits::kMebibyte) + " MiB";
}

// Takes the text of one recording, from its front.
class recording_reader {
 public:
    recording_reader(std::string name, std::string directory, const recording_limits& limits)
        : limits_(limits), files_(std::move(directory), limits.most_bodies) {
        result_.name = std::move(name);
    }

    // Any part of the text. False: no more is wanted.
    bool take(std::string_view text) {
        taken_ += text.size();
        if (taken_ > limits_.most_bytes)
            return stop("the recording is longer than " + mebibytes(limits_.most_bytes) + kRaise);
        while (!text.empty()) {
            const std::size_t end = text.find('\n');
            const std::string_view part = text.substr(0, end);
            if (!keep(part)) return false;
            if (end == std::string_view::npos) return true;
            text.remove_prefix(end + 1);
            if (!end_line()) return false;
        }
        return true;
    }

    void fail(const std::string& why) { result_.errors.push_back({0, why}); }

    recording finish() {
        if (!stopped_ && begun_) end_line();
        return std::move(result_);
    }

 private:
    bool stop(const std::string& why, std::size_t line = 0) {
        stopped_ = true;
        result_.errors.push_back({line, why});
        return false;
    }

    // Of a line that cannot hold a call only the beginning is kept.
    bool keep(std::string_view part) {
        begun_ = true;
        if (first_ == '\0') {
            const std::size_t first = std::min(part.find_first_not_of(" \t\r\xEF\xBB\xBF"), part.size());
            kept_ += part.substr(0, kMostOfOddLine - std::min(kMostOfOddLine, kept_.size())).substr(0, first);
            part.remove_prefix(first);
            if (!part.empty()) first_ = part.front() == '\0' ? '?' : part.front();
        }
        const std::size_t room =
            first_ == '{' ? part.size() : kMostOfOddLine - std::min(kMostOfOddLine, kept_.size());
        kept_ += part.substr(0, room);
        cut_ = cut_ || (first_ != '{' && part.size() > room);
        return kept_.size() <= limits_.most_line ||
               stop("the line is longer than " + mebibytes(limits_.most_line) + kRaise, line_ + 1);
    }

    bool end_line() {
        ++line_;
        take_line(kept_);
        kept_.clear();
        begun_ = false;
        cut_ = false;
        first_ = '\0';
        if (result_.errors.size() >= kMostErrors) return stop("there are many errors; the rest is not read");
        return result_.calls.size() <= limits_.most_calls ||
               stop("the recording has more than " + std::to_string(limits_.most_calls) + " calls" + kRaise);
    }

    void take_line(std::string_view line) {
        if (line.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
            // Some editors put one at the beginning of a file; further down it means that files were joined.
            if (line_ != 1) {
                result_.errors.push_back(
                    {line_, "a byte order mark (EF BB BF) may only stand at the beginning; remove it"});
                return;
            }
            line.remove_prefix(kByteOrderMark.size());
        }
        // The carriage return of a CR LF line end is a blank like any other.
        const auto first = line.find_first_not_of(" \t\r");
        if (first == std::string_view::npos || line[first] == '#') return;
        if (cut_) {
            result_.errors.push_back({line_, "a long line that holds no JSON object; is this a recording?"});
            return;
        }
        recording_line read = read_recording_line(line, files_);
        for (std::string& error : read.errors)
            result_.errors.push_back({line_, std::move(error)});
        if (read.what) result_.calls.push_back({line_, std::move(*read.what)});
    }

    recording_limits limits_;
    body_files files_;
    recording result_;
    std::size_t line_ = 0;   // that were taken
    std::size_t taken_ = 0;  // bytes
    std::string kept_;       // of the line that is being read
    char first_ = '\0';      // its first byte that is no blank; no byte yet
    bool begun_ = false;
    bool cut_ = false;  // only its beginning was kept
    bool stopped_ = false;
};

struct file_closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// What begins so and is no recording, in words; empty for what may be one, with mistakes in its lines.
std::string other_kind(std::string_view beginning) {
    const sniffed_input input = sniff(beginning);
    const bool may_be = input.kind == input_kind::call_recording || input.kind == input_kind::other_json ||
                        input.kind == input_kind::empty;
    return may_be ? std::string() : "this is no call recording: " + what_it_is(input);
}

void read_all(const recording_text& from, recording_reader& reader) {
    std::string buffer(65536, '\0');
    for (bool first = true;; first = false) {
        std::size_t filled = 0;
        while (filled < buffer.size()) {
            const std::size_t got = from.read(buffer.data() + filled, buffer.size() - filled);
            if (got == 0) break;
            filled += got;
        }
        const std::string_view text = std::string_view(buffer).substr(0, filled);
        const std::string other = first ? other_kind(text.substr(0, kSniffedBytes)) : std::string();
        if (!other.empty()) return reader.fail(other);
        if (!reader.take(text)) return;
        if (filled == buffer.size()) continue;
        if (const int error = from.error())
            reader.fail("cannot read the recording: " + std::generic_category().message(error));
        return;
    }
}

recording_text text_of(std::FILE* file) {
    errno = 0;
    return {[file](char* to, std::size_t space) { return std::fread(to, 1, space, file); },
            [file] { return std::ferror(file) != 0 ? errno : 0; }};
}

}  // namespace

recording_limits recording_limits::of(std::size_t mebibytes) {
    const recording_limits usual;
    // On 32 bits a limit may be beyond what can be counted; then it is the most that can be.
    const auto in_proportion = [&](std::uint64_t of) {
        const std::uint64_t wanted = of * mebibytes / (usual.most_bytes / kMebibyte);
        return static_cast<std::size_t>(
            std::min<std::uint64_t>(wanted, std::numeric_limits<std::size_t>::max()));
    };
    recording_limits limits;
    limits.most_line = std::max(in_proportion(usual.most_line), kMebibyte);
    limits.most_calls = std::max<std::size_t>(in_proportion(usual.most_calls), 1);
    limits.most_bodies = in_proportion(usual.most_bodies);
    limits.most_bytes = in_proportion(usual.most_bytes);
    return limits;
}

recording read_recording(const std::string& path, const recording_limits& limits) {
    if (path == "-") {
        recording_reader reader("<stdin>", "", limits);
        read_all(text_of(stdin), reader);
        return reader.finish();
    }
    recording_reader reader(path, std::filesystem::path(path).parent_path().string(), limits);
    const std::unique_ptr<std::FILE, file_closer> file(std::fopen(path.c_str(), "re"));
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown)) {
        reader.fail("this is no call recording: " + what_a_folder_is());
    } else if (file != nullptr) {
        read_all(text_of(file.get()), reader);
    } else {
        reader.fail("cannot open the recording: " + std::generic_category().message(errno));
    }
    return reader.finish();
}

recording read_recording(const recording_text& from, const std::string& name, const std::string& directory,
                         const recording_limits& limits) {
    recording_reader reader(name, directory, limits);
    read_all(from, reader);
    return reader.finish();
}

recording parse_recording(std::string_view text, const std::string& name, const std::string& directory,
                          const recording_limits& limits) {
    recording_reader reader(name, directory, limits);
    reader.take(text);
    return reader.finish();
}

std::string error_text(const recording& of, const recording_error& error) {
    std::string text = printable(of.name) + ":";
    if (error.line != 0) text += std::to_string(error.line) + ":";
    return text + " " + error.text;
}

}  // namespace dabspi
