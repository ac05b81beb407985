// Keeps the fixed names of the host-facing layer away from the system: the tests' executables send the
// library's calls of shm_open, open, mkdir, stat and so on through here (linker option --wrap). The names
// "/temp", "/dev/shm/..." , "/HdStationLogo" and "/mnt/data" then stand for entries of a temporary directory,
// the block "/SysDataInfo" for a file in it. Every such call is noted in order, and can be made to fail.
//
// Without a living sandbox everything passes through unchanged. One sandbox at a time; calls may come from
// any thread.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "testkit/temporary_directory.h"

class sandbox {
 public:
    sandbox();
    ~sandbox();
    sandbox(const sandbox&) = delete;
    sandbox& operator=(const sandbox&) = delete;

    // Where a name of the library stands in reality.
    std::string at(const std::string& name) const;
    // The block's file.
    std::string block() const { return block_; }
    const char* block_file() const { return block_.c_str(); }
    const std::filesystem::path& path() const { return directory_.path(); }

    // The calls with one of the library's names since the sandbox was made, or since this was last asked:
    // "mkdir /temp/dab", "mmap 5140".
    std::vector<std::string> take_calls();

    // Faults: errno of what fails, 0 for none.
    struct faults_t {
        int exclusive_shm_open = 0;  // the first open, which creates
        int second_shm_open = 0;     // the one after EEXIST
        int ftruncate = 0;
        int mmap = 0;
        int fstat = 0;                           // of the block
        std::vector<std::string> mkdir_refused;  // names that cannot be made
    };
    faults_t faults;

    // Asked, if set, by every one of these functions before it does anything, with or without a living
    // sandbox: the function's name, and the file name or null. An errno other than 0 refuses the call.
    using refusal = int (*)(const char* function, const char* name);
    static std::atomic<refusal> refuse;

    // Off: nothing is noted, and the sandbox takes no memory of its own.
    bool notes_calls = true;

    // Called with each noted call before it is carried out, without any lock.
    std::function<void(const std::string&)> before_call;

 private:
    temporary_directory directory_;
    const std::string block_ = directory_ / "SysDataInfo";
};
