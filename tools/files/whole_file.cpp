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

whole_file_writer::whole_file_writer(std::string path) : path_(std::move(path)) {
    if (std::filesystem::path(path_).filename().empty()) {
        error_ = "this is not a file's name";
        return;
    }
    struct stat there {};
    const bool replaces = ::lstat(path_.c_str(), &there) == 0;
    if (replaces && S_ISLNK(there.st_mode)) {
        error_ = "it is a symbolic link; name the file itself";
    } else if (replaces && S_ISDIR(there.st_mode)) {
        error_ = system_text(EISDIR);
    } else if (replaces && !S_ISREG(there.st_mode)) {
        error_ = "it is not a regular file";
    }
    if (!error_.empty()) return;
    const temporary_file made(path_);
    descriptor_ = made.descriptor;
    if (descriptor_ < 0) {
        fail(errno);
        return;
    }
    made_ = made.name;
    if (replaces && ::fchmod(descriptor_, there.st_mode & 0777) != 0) fail(errno);
}

whole_file_writer::~whole_file_writer() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!made_.empty()) ::unlink(made_.c_str());
}

void whole_file_writer::fail(int error) {
    error_ = system_text(error);
}

const std::string& whole_file_writer::write(std::string_view content) {
    if (!error_.empty()) return error_;
    const int error = write_all(descriptor_, content);
    if (error != 0) fail(error);
    return error_;
}

const std::string& whole_file_writer::commit() {
    if (!error_.empty()) return error_;
    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (::close(descriptor) != 0) {
        fail(errno);
    } else if (::rename(made_.c_str(), path_.c_str()) != 0) {
        fail(errno);
    } else {
        made_.clear();
    }
    return error_;
}

std::string write_whole_file(const std::string& path, std::string_view content) {
    whole_file_writer file(path);
    file.write(content);
    return file.commit();
}

void write_whole_file_and_folders(const std::string& path, std::string_view content) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code failed;
    if (!folder.empty()) std::filesystem::create_directories(folder, failed);
    const std::string error = failed ? failed.message() : write_whole_file(path, content);
    if (!error.empty()) throw std::runtime_error(printable(path) + " cannot be written: " + error);
}

}  // namespace dabspi
