#include "tests/wrap/private_root.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

bool write_file(const char* path, const std::string& text) {
    std::ofstream out(path);
    out << text << std::flush;
    return out.good();
}

bool enter_namespaces() {
    if (unshare(CLONE_NEWNS) == 0) return true;
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
    write_file("/proc/self/setgroups", "deny");
    return write_file("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") &&
           write_file("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
}

bool bind(const fs::path& from, const fs::path& to) {
    return mount(from.c_str(), to.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0;
}

// Everything at the top of the system's tree but what the library makes there itself.
bool build_tree(const fs::path& root) {
    if (mount("tmpfs", root.c_str(), "tmpfs", 0, nullptr) != 0) return false;
    for (const fs::directory_entry& entry : fs::directory_iterator("/")) {
        const fs::path name = entry.path().filename();
        if (name == "temp" || name == "HdStationLogo" || name == "mnt") continue;
        if (entry.is_symlink()) {
            fs::create_symlink(fs::read_symlink(entry.path()), root / name);
        } else if (entry.is_directory()) {
            fs::create_directory(root / name);
            // What cannot be bound stays an empty directory; what the test needs is looked at below.
            if (!bind(entry.path(), root / name) && (name == "proc" || name == "dev")) return false;
        }
    }
    fs::create_directory(root / "mnt");
    return mount("tmpfs", (root / "dev/shm").c_str(), "tmpfs", 0, nullptr) == 0;
}

bool enter_private_root(const std::string& mount_point) {
    if (!enter_namespaces()) return false;
    // From here on no mount reaches the system.
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    return build_tree(mount_point) && chroot(mount_point.c_str()) == 0 && chdir("/") == 0;
}

constexpr int kPassedCode = 0;
constexpr int kFailedCode = 1;
constexpr int kNotPermittedCode = 77;

[[noreturn]] void run_child(const std::string& mount_point, const std::function<std::string()>& action,
                            int out) {
    int code = kNotPermittedCode;
    try {
        if (enter_private_root(mount_point)) {
            const std::string failure = action();
            code = failure.empty() ? kPassedCode : kFailedCode;
            if (write(out, failure.data(), failure.size()) < 0) code = kFailedCode;
        }
    } catch (const std::exception& error) {
        const std::string text = std::string("exception: ") + error.what();
        if (write(out, text.data(), text.size()) >= 0) code = kFailedCode;
    }
    _exit(code);
}

}  // namespace

private_root_result in_private_root(const std::string& mount_point,
                                    const std::function<std::string()>& action, std::string& failure) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        failure = "no pipe";
        return private_root_result::kFailed;
    }
    const pid_t child = fork();
    if (child == 0) run_child(mount_point, action, ends[1]);
    close(ends[1]);
    char buffer[4096];
    for (ssize_t count = 0; (count = read(ends[0], buffer, sizeof buffer)) > 0;)
        failure.append(buffer, static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    if (child == -1 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        failure += " (the process did not end regularly)";
        return private_root_result::kFailed;
    }
    switch (WEXITSTATUS(status)) {
        case kPassedCode: return private_root_result::kPassed;
        case kNotPermittedCode: return private_root_result::kNotPermitted;
        default: return private_root_result::kFailed;
    }
}
