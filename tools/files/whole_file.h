// Files read and written as a whole.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace dabspi {

// "-" is standard input. Nothing, and `error` filled ("cannot be read: No such file or directory"), when it
// cannot be read, or holds more than `most_bytes`: a pipe or a device may have no end.
constexpr std::size_t kMostOfFile = std::size_t{256} << 20;
std::optional<std::string> read_whole_file(const std::string& path, std::string& error,
                                           std::size_t most_bytes = kMostOfFile);

// Replaces what stood there in one step: nobody ever sees half a file, and when it fails the old one is still
// there, as it was. A file that stood there passes its permissions on. Of two that write at once the later
// wins, whole. Only regular files are replaced: a link, a directory, a pipe or a device at the name is an
// error, and nothing waits for it. The error's text, or an empty one.
std::string write_whole_file(const std::string& path, std::string_view content);

// The same for content that comes piece by piece, however much: until commit() what stood there is left
// alone, and without it nothing is ever seen of the new file.
class whole_file_writer {
 public:
    explicit whole_file_writer(std::string path);
    ~whole_file_writer();
    whole_file_writer(const whole_file_writer&) = delete;
    whole_file_writer& operator=(const whole_file_writer&) = delete;

    // All give the error's text, or an empty one; after an error it is always that.
    const std::string& write(std::string_view content);
    const std::string& commit();
    const std::string& error() const { return error_; }

 private:
    void fail(int error);

    const std::string path_;
    std::string made_;  // the name that it has until then
    int descriptor_ = -1;
    std::string error_;
};

// The same as write_whole_file, and makes the directories above it. Throws std::runtime_error with a text for
// the user.
void write_whole_file_and_folders(const std::string& path, std::string_view content);

}  // namespace dabspi
