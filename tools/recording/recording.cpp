#include "tools/recording/recording.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "tools/files/body_files.h"
#include "tools/files/input_kind.h"
#include "tools/recording/recording_line.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Takes the lines of one recording, in order.
class recording_reader {
 public:
    recording_reader(std::string name, std::string directory) : files_(std::move(directory)) {
        result_.name = std::move(name);
    }

    void take(std::string_view line) {
        ++line_;
        if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
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
        recording_line read = read_recording_line(line, files_);
        for (std::string& error : read.errors)
            result_.errors.push_back({line_, std::move(error)});
        if (read.what) result_.calls.push_back({line_, std::move(*read.what)});
    }

    void fail(const std::string& why) { result_.errors.push_back({0, why}); }

    recording finish() { return std::move(result_); }

 private:
    body_files files_;
    recording result_;
    std::size_t line_ = 0;
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

// Of a file that can be read twice.
std::string other_kind(std::FILE* file) {
    const long start = std::ftell(file);
    std::string beginning(kSniffedBytes, '\0');
    beginning.resize(std::fread(beginning.data(), 1, beginning.size(), file));
    return std::fseek(file, start, SEEK_SET) == 0 ? other_kind(beginning) : std::string();
}

void read_lines(std::FILE* file, recording_reader& reader) {
    // A pipe is told by its first line.
    bool first = std::fseek(file, 0, SEEK_CUR) != 0;
    const std::string other = first ? std::string() : other_kind(file);
    if (!other.empty()) return reader.fail(other);
    struct freer {
        char* line = nullptr;
        ~freer() { std::free(line); }
    } buffer;
    std::size_t capacity = 0;
    errno = 0;
    for (ssize_t length; (length = ::getline(&buffer.line, &capacity, file)) >= 0; errno = 0) {
        const std::string kind =
            first ? other_kind({buffer.line, static_cast<std::size_t>(length)}) : std::string();
        if (!kind.empty()) return reader.fail(kind);
        first = false;
        reader.take({buffer.line, static_cast<std::size_t>(length)});
    }
    const int error = errno;
    // getline also fails, without marking the stream, when a line does not fit into memory.
    if (std::ferror(file) != 0 || std::feof(file) == 0)
        reader.fail("cannot read the recording: " + std::generic_category().message(error));
}

}  // namespace

recording read_recording(const std::string& path) {
    if (path == "-") {
        recording_reader reader("<stdin>", "");
        read_lines(stdin, reader);
        return reader.finish();
    }
    recording_reader reader(path, std::filesystem::path(path).parent_path().string());
    const std::unique_ptr<std::FILE, file_closer> file(std::fopen(path.c_str(), "re"));
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown)) {
        reader.fail("this is no call recording: " + what_a_folder_is());
    } else if (file != nullptr) {
        read_lines(file.get(), reader);
    } else {
        reader.fail("cannot open the recording: " + std::generic_category().message(errno));
    }
    return reader.finish();
}

recording parse_recording(std::string_view text, const std::string& name, const std::string& directory) {
    recording_reader reader(name, directory);
    while (!text.empty()) {
        const auto end = text.find('\n');
        const std::size_t length = end == std::string_view::npos ? text.size() : end + 1;
        reader.take(text.substr(0, length));
        text.remove_prefix(length);
    }
    return reader.finish();
}

std::string error_text(const recording& of, const recording_error& error) {
    std::string text = printable(of.name) + ":";
    if (error.line != 0) text += std::to_string(error.line) + ":";
    return text + " " + error.text;
}

}  // namespace dabspi
