// Takes root's right to pass over the permissions of files from the calling thread, and so from all threads
// that it makes meanwhile: what a directory forbids is then forbidden to a test that runs as root too.
#pragma once

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <string>

class bound_by_permissions {
 public:
    bound_by_permissions() {
        known_ = syscall(SYS_capget, &header_, before_) == 0;
        if (!known_) return;
        __user_cap_data_struct without[2] = {before_[0], before_[1]};
        without[0].effective &= ~(bit(CAP_DAC_OVERRIDE) | bit(CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &header_, without);
    }
    ~bound_by_permissions() {
        if (known_) syscall(SYS_capset, &header_, before_);
    }
    bound_by_permissions(const bound_by_permissions&) = delete;
    bound_by_permissions& operator=(const bound_by_permissions&) = delete;

    // Whether it has worked: no file can be made in a directory whose permissions forbid it.
    static bool holds_for(const std::string& directory) {
        const std::string probe = directory + "/probe";
        const int descriptor = open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (descriptor == -1) return true;
        close(descriptor);
        unlink(probe.c_str());
        return false;
    }

 private:
    static constexpr __u32 bit(unsigned capability) { return __u32{1} << capability; }

    __user_cap_header_struct header_ = {_LINUX_CAPABILITY_VERSION_3, 0};  // of the calling thread
    __user_cap_data_struct before_[2] = {};
    bool known_ = false;
};
