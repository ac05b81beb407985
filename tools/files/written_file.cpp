#include "tools/files/written_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "tools/terminal/output.h"

namespace dabspi::check {

namespace {

std::string system_text(int error) {
    return std::generic_category().message(error);
}

}  // namespace

std::string write_whole_file(const std::string& path, std::string_view content) {
    if (path == "-") return {};
    struct stat status {};
    // Through a link, the file behind it is meant.
    const bool direct = ::lstat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
    const std::string name = direct ? path : path + ".new";
    const int descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0) return system_text(errno);
    output out(descriptor);
    out.write(content);
    out.flush();
    int error = out.error();
    if (::close(descriptor) != 0 && error == 0) error = errno;
    if (error == 0 && !direct && std::rename(name.c_str(), path.c_str()) != 0) error = errno;
    if (error != 0 && !direct) ::unlink(name.c_str());
    return error == 0 ? std::string() : system_text(error);
}

}  // namespace dabspi::check
