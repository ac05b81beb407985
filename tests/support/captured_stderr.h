// Collects what is written to standard error (the descriptor itself, whoever writes) while it lives.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>

class captured_stderr {
 public:
    captured_stderr() : file_(memfd_create("captured-stderr", MFD_CLOEXEC)), before_(dup(STDERR_FILENO)) {
        if (file_ == -1 || before_ == -1) throw std::runtime_error("standard error cannot be captured");
        // A memory file has no lock over its position: without appending, writes of two threads could
        // overlap.
        fcntl(file_, F_SETFL, O_APPEND);
        std::fflush(stderr);
        dup2(file_, STDERR_FILENO);
    }
    ~captured_stderr() {
        dup2(before_, STDERR_FILENO);
        close(before_);
        close(file_);
    }
    captured_stderr(const captured_stderr&) = delete;
    captured_stderr& operator=(const captured_stderr&) = delete;

    // Everything since the construction.
    std::string text() const {
        std::string out;
        char buffer[4096];
        for (off_t at = 0;;) {
            const ssize_t count = pread(file_, buffer, sizeof buffer, at);
            if (count <= 0) return out;
            out.append(buffer, static_cast<std::size_t>(count));
            at += count;
        }
    }

 private:
    int file_;
    int before_;
};
