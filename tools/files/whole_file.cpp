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

[[noreturn]] void cannot_write(const std::string& path, int error) {
    throw std::runtime_error(printable(path) + " cannot be written: " + system_text(error));
}

// Everything, or the error's number.
int write_all(int descriptor, const std::string& content) {
    for (std::size_t done = 0; done < content.size();) {
        const ssize_t written = ::write(descriptor, content.data() + done, content.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        done += static_cast<std::size_t>(written);
    }
    return 0;
}

// What is no regular file (a terminal, a pipe, a device) is written to where it stands.
bool is_special(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

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

void write_whole_file(const std::string& path, const std::string& content) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code failed;
    if (!folder.empty()) std::filesystem::create_directories(folder, failed);
    if (failed) cannot_write(path, failed.value());

    const bool in_place = is_special(path);
    const std::string target = in_place ? path : path + ".new" + std::to_string(::getpid());
    const int flags = O_WRONLY | O_CLOEXEC | (in_place ? 0 : O_CREAT | O_EXCL);
    const int descriptor = ::open(target.c_str(), flags, 0666);
    if (descriptor < 0) cannot_write(path, errno);
    int error = write_all(descriptor, content);
    if (::close(descriptor) != 0 && error == 0) error = errno;
    if (error == 0 && !in_place && ::rename(target.c_str(), path.c_str()) != 0) error = errno;
    if (error == 0) return;
    if (!in_place) ::unlink(target.c_str());
    cannot_write(path, error);
}

}  // namespace dabspi
