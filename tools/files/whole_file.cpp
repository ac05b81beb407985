#include "tools/files/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

struct file_closer {
    void operator()(std::FILE* file) const {
        if (file != stdin) std::fclose(file);
    }
};

std::string system_text(int error) {
    return std::generic_category().message(error);
}

// Everything, or the error's number.
int write_all(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

// A new file beside `path`, which nobody else has.
struct temporary_file {
    explicit temporary_file(const std::string& path) {
        // A run that was killed may have left one under this process's number.
        for (int i = 0; descriptor < 0 && i < 100; ++i) {
            name = path + ".new" + std::to_string(::getpid()) + "." + std::to_string(i);
            descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
            if (descriptor < 0 && errno != EEXIST) return;
        }
    }

    std::string name;
    int descriptor = -1;
};

}  // namespace

std::optional<std::string> read_whole_file(const std::string& path, std::string& error,
                                           std::size_t most_bytes) {
    const std::unique_ptr<std::FILE, file_closer> file(path == "-" ? stdin : std::fopen(path.c_str(), "re"));
    std::string content;
    char buffer[65536];
    while (file != nullptr) {
        const std::size_t got = std::fread(buffer, 1, sizeof buffer, file.get());
        content.append(buffer, got);
        if (content.size() > most_bytes) {
            error =
                "is longer than " + std::to_string(most_bytes >> 20) + " MiB; --limit raises what is taken";
            return std::nullopt;
        }
        if (got == sizeof buffer) continue;
        if (std::ferror(file.get()) == 0) return content;
        break;
    }
    error = "cannot be read: " + system_text(errno);
    return std::nullopt;
}

whole_file_writer::~whole_file_writer() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

std::string whole_file_writer::open(const std::string& path) {
    if (std::filesystem::path(path).filename().empty()) return "this is not a file's name";
    struct stat there {};
    const bool replaces = ::lstat(path.c_str(), &there) == 0;
    if (replaces && S_ISLNK(there.st_mode)) return "it is a symbolic link; name the file itself";
    if (replaces && S_ISDIR(there.st_mode)) return system_text(EISDIR);
    if (replaces && !S_ISREG(there.st_mode)) return "it is not a regular file";

    const temporary_file made(path);
    if (made.descriptor < 0) return system_text(errno);
    path_ = path;
    temporary_ = made.name;
    descriptor_ = made.descriptor;
    if (replaces && ::fchmod(descriptor_, there.st_mode & 0777) != 0) return system_text(errno);
    return {};
}

std::string whole_file_writer::write(std::string_view content) {
    const int error = write_all(descriptor_, content);
    return error == 0 ? std::string() : system_text(error);
}

std::string whole_file_writer::commit() {
    const int error = ::close(std::exchange(descriptor_, -1)) != 0 ? errno : 0;
    if (error != 0) return system_text(error);
    if (::rename(temporary_.c_str(), path_.c_str()) != 0) return system_text(errno);
    temporary_.clear();
    return {};
}

std::string write_whole_file(const std::string& path, std::string_view content) {
    whole_file_writer file;
    std::string error = file.open(path);
    if (error.empty()) error = file.write(content);
    return error.empty() ? file.commit() : error;
}

void write_whole_file_and_folders(const std::string& path, std::string_view content) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code failed;
    if (!folder.empty()) std::filesystem::create_directories(folder, failed);
    const std::string error = failed ? failed.message() : write_whole_file(path, content);
    if (!error.empty()) throw std::runtime_error(printable(path) + " cannot be written: " + error);
}

}  // namespace dabspi
