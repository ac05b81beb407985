#include <algorithm>
#include <cerrno>

#include "tests/faults/reception_checks.h"
#include "tests/faults/system_sweep.h"

namespace {

using texts = std::vector<std::string>;

// ---- what a reception may come to ----

void expect_construction_failed(const reception_result& reception, const texts& messages) {
    EXPECT_EQ(reception.construction, reception_result::kLogicError);
    EXPECT_EQ(lines_and_texts(reception), messages);
    EXPECT_TRUE(reception.notes.empty());
    EXPECT_TRUE(logo_files(reception).empty());
}

// Everything but logos is told as ever, and the logos that were told are exactly the files there.
void expect_only_logos_lost(const reception_result& reception, const strike& at) {
    EXPECT_EQ(reception.construction, reception_result::kConstructed);
    EXPECT_EQ(without_logos(reception.notes), without_logos(reference_notes(at.interface)));
    EXPECT_EQ(logo_files(reception), logos_reported(reception));
}

void expect_lost(const reception_result& reception, const strike& at, std::size_t lost) {
    expect_only_logos_lost(reception, at);
    EXPECT_EQ(logo_files(reception).size(), 2 - lost);
}

void expect_untouched(const reception_result& reception, const strike& at) {
    expect_only_logos_lost(reception, at);
    EXPECT_EQ(reception.notes, reference_notes(at.interface));
}

bool is_lock(const std::string& name) {
    return name == kLockFile;
}
bool is_logo(const std::string& name) {
    return name.find(".PNG") != std::string::npos;
}
std::string given_up(const std::string& what) {
    return std::string("0 ") + kLockFile + " cannot be " + what + "; locked within this process only\n";
}
// How many messages are neither of these.
long others(const reception_result& reception, const texts& known) {
    const texts all = lines_and_texts(reception);
    return std::count_if(all.begin(), all.end(), [&](const std::string& text) {
        return std::find(known.begin(), known.end(), text) == known.end();
    });
}
bool stays(const reception_result& reception, const std::string& name) {
    return std::any_of(reception.files.begin(), reception.files.end(),
                       [&](const auto& file) { return file.first.find(name) != std::string::npos; });
}

// ---- the shared block ----

void check_shm_open(const reception_result& reception, const strike& at) {
    // The second open is not looked at: it shows at the mapping.
    expect_construction_failed(reception, {at.n == 1 ? "122 shm_open error\n" : "151 mmap error\n"});
}
void check_ftruncate(const reception_result& reception, const strike&) {
    expect_construction_failed(reception, {"135 ftruncate error\n", "151 mmap error\n"});
}
void check_mmap(const reception_result& reception, const strike&) {
    expect_construction_failed(reception, {"151 mmap error\n"});
}
void check_flock(const reception_result& reception, const strike& at) {
    expect_untouched(reception, at);
    // Once, however often the lock is taken in vain.
    EXPECT_EQ(lines_and_texts(reception), at.error == EINTR ? texts{} : texts{given_up("locked")});
}

// ---- files ----

// The wrapper looks at the lock's file, the block, and the lock's file again; then both look at each logo.
void check_fstat(const reception_result& reception, const strike& at) {
    const long first_logo = at.interface == surface::kCore ? 1 : 4;
    if (at.n >= first_logo) {
        expect_lost(reception, at, at.once() ? 1 : static_cast<std::size_t>(first_logo + 2 - at.n));
        EXPECT_EQ(lines_and_texts(reception), texts{});
        return;
    }
    const std::string lock = given_up("looked at");
    const std::string block = "151 mmap error\n";
    if (at.once()) {
        if (at.n == 2) return expect_construction_failed(reception, {block});
        expect_untouched(reception, at);
        EXPECT_EQ(lines_and_texts(reception), texts{lock});
    } else if (at.n == 3) {
        expect_lost(reception, at, 2);
        EXPECT_EQ(lines_and_texts(reception), texts{lock});
    } else {
        expect_construction_failed(reception, at.n == 1 ? texts{lock, block} : texts{block, lock});
    }
}

// A directory that cannot be looked up counts as missing: the logo store says so, and tries to write all the
// same.
void check_stat(const reception_result& reception, const strike& at) {
    const std::string root = at.interface == surface::kCore             ? "/mnt/data/HdStationLogo/"
                             : at.block == whole_reception::kFreshBlock ? "/HdStationLogo//"
                                                                        : "/mnt/data/HdStationLogo//";
    expect_only_logos_lost(reception, at);
    std::vector<std::string> known;
    for (const std::string& directory : {root, std::string("/temp/dab/")}) {
        known.push_back("164 Failed: Station Logo path:[" + directory + "]\n");
        known.push_back("204 Failed: Station Logo path:[" + directory + "]\n");
    }
    std::vector<std::string> messages = lines_and_texts(reception);
    for (std::string& message : messages) {
        // The core was given the root's real name.
        const std::size_t real = message.find("[/tmp/");
        if (real != std::string::npos) message.erase(real + 1, message.find("/mnt/data", real) - real - 1);
    }
    const auto count = [&](const std::string& text) {
        return std::count(messages.begin(), messages.end(), text);
    };
    EXPECT_EQ(
        count(given_up("looked at")) + count(known[0]) + count(known[1]) + count(known[2]) + count(known[3]),
        static_cast<long>(messages.size()))
        << testing::PrintToString(messages);
    if (at.once()) {
        EXPECT_LE(messages.size(), 1U);
        EXPECT_EQ(count(given_up("looked at")), is_lock(at.name) ? 1 : 0);
        // A root that is there counts as not made, and the logos, the third one too, go to the other one.
        EXPECT_EQ(logo_files(reception).size(), stays(reception, "/temp/dab/E1C2230_3.PNG") ? 3U : 2U);
    }
}

// Where the logo root cannot be made logos go to the other one, and nowhere if that is missing too.
void check_mkdir(const reception_result& reception, const strike& at) {
    expect_only_logos_lost(reception, at);
    const bool no_root = !at.once() && at.n <= 2;
    const std::string small = "164 Failed: Station Logo path:[/temp/dab/]\n";
    const std::string failed = "204 Failed: Station Logo path:[/temp/dab/]\n";
    EXPECT_EQ(lines_and_texts(reception), no_root ? (texts{small, failed, failed, small, failed}) : texts{});
    EXPECT_EQ(logo_files(reception).size(), no_root ? 0U : 2U);
}

void check_open(const reception_result& reception, const strike& at) {
    if (is_logo(at.name)) {
        const bool blocked = at.name.find("E1C2230") != std::string::npos;  // could not be opened in any case
        const bool large = at.name.find("_4.") != std::string::npos;
        expect_lost(reception, at, blocked ? 0 : at.once() || large ? 1 : 2);
        EXPECT_EQ(lines_and_texts(reception), texts{});
        return;
    }
    // The lock's file is opened twice, each time first as it stands and then to make it.
    const bool made = at.n % 2 == 0;
    if (at.once()) {
        expect_untouched(reception, at);
        EXPECT_EQ(lines_and_texts(reception), made ? texts{given_up("opened")} : texts{});
    } else {
        expect_lost(reception, at, 2);
        EXPECT_EQ(lines_and_texts(reception), texts{given_up("opened")});
    }
}

void check_write(const reception_result& reception, const strike& at) {
    expect_lost(reception, at, at.once() || at.n == 2 ? 1 : 2);
    EXPECT_EQ(lines_and_texts(reception), texts{});
}

// The wrapper closes its lock's file twice, then the block; only a logo's close is looked at.
void check_close(const reception_result& reception, const strike& at) {
    const long first_logo = at.interface == surface::kCore ? 1 : 4;
    const std::size_t lost = at.n < first_logo ? (at.once() ? 0 : 2) : at.once() || at.n > first_logo ? 1 : 2;
    expect_lost(reception, at, lost);
    EXPECT_EQ(lines_and_texts(reception), texts{});
}

// A directory that cannot be read, or not to its end, holds nothing: nothing is skipped, nothing cleaned
// away.
void check_reading(const reception_result& reception, const strike& at) {
    expect_untouched(reception, at);
    EXPECT_EQ(lines_and_texts(reception), texts{});
}
void check_opendir(const reception_result& reception, const strike& at) {
    check_reading(reception, at);
    EXPECT_EQ(stays(reception, "E1C2230_3.PNG"), !at.once() || at.n == 3);
}

void check_unlink(const reception_result& reception, const strike& at) {
    expect_untouched(reception, at);
    EXPECT_EQ(lines_and_texts(reception), texts{});
    EXPECT_EQ(stays(reception, "E1C2230_3.PNG"), !at.once() || is_logo(at.name));
    // The lock's file is removed at its second use.
    EXPECT_EQ(stays(reception, "SysDataInfo.lock"), is_lock(at.name) && (!at.once() || at.n == 2));
}

// What gives something back, or is for looking at only.
void check_ignored(const reception_result& reception, const strike& at) {
    expect_untouched(reception, at);
    EXPECT_EQ(lines_and_texts(reception), texts{});
}

// ---- threads ----

constexpr long kThreads = 6;

// Six workers are made first, then, one for each worker that there is, the watchers of their ends.
void check_pthread_create(const reception_result& reception, const strike& at) {
    EXPECT_EQ(reception.construction, reception_result::kConstructed);
    const std::string no_worker = "223 ZebThread::Start() failed !! [dabspi]\r\n";
    const std::string no_watcher = "257 Error, pthread_create failed.\n";
    long workers = 0;
    long watchers = 0;
    if (at.once()) {
        (at.n <= kThreads ? workers : watchers) = 1;
    } else {
        workers = std::max(0L, kThreads + 1 - at.n);
        watchers = at.n <= kThreads ? at.n - 1 : 2 * kThreads + 1 - at.n;
    }
    const texts messages = lines_and_texts(reception);
    EXPECT_EQ(std::count(messages.begin(), messages.end(), no_worker), workers);
    EXPECT_EQ(std::count(messages.begin(), messages.end(), no_watcher), watchers);
    EXPECT_EQ(others(reception, {no_worker, no_watcher}), 0);
    if (workers == 0) {
        EXPECT_EQ(reception.notes, reference_notes(at.interface));
    } else {
        for (const std::string& note : reception.notes)
            EXPECT_THAT(reference_notes(at.interface), testing::Contains(note));
    }
}

// Each worker is joined and then its watcher; a worker that could not be is reported.
void check_pthread_join(const reception_result& reception, const strike& at) {
    expect_untouched(reception, at);
    const long workers = at.once() ? at.n % 2 : kThreads - at.n / 2;
    const std::string report = "276 , pthread_join() failed !! ret[" + std::to_string(at.error) + "]\n";
    EXPECT_EQ(lines_and_texts(reception), texts(static_cast<std::size_t>(workers), report));
}

}  // namespace

const std::vector<fault_row>& system_call_rows() {
    static const std::vector<fault_row> rows = {
        {"shm_open", {EACCES, EMFILE, ENOSPC}, false, &check_shm_open},
        {"ftruncate", {ENOSPC, EIO}, false, &check_ftruncate},
        {"mmap", {ENOMEM, EACCES}, false, &check_mmap},
        {"munmap", {ENOMEM}, false, &check_ignored},
        {"flock", {ENOLCK, EIO}, false, &check_flock},
        {"flock", {EINTR}, false, &check_flock, true},
        {"fstat", {EIO, ENOMEM}, true, &check_fstat},
        {"stat", {EACCES, EIO, ENOMEM}, true, &check_stat},
        {"mkdir", {EACCES, ENOSPC, EROFS}, false, &check_mkdir},
        {"open", {EMFILE, ENOSPC, EACCES, EROFS, EINTR}, true, &check_open},
        {"write", {ENOSPC, EIO, EDQUOT, EINTR}, true, &check_write},
        {"close", {EIO, ENOSPC, EINTR}, true, &check_close},
        {"opendir", {EMFILE, ENOMEM, EACCES}, true, &check_opendir},
        {"readdir", {EIO}, true, &check_reading},
        {"closedir", {EIO}, true, &check_ignored},
        {"unlink", {EACCES, EROFS, EIO}, true, &check_unlink},
        {"pthread_create", {EAGAIN, ENOMEM}, true, &check_pthread_create},
        {"pthread_join", {EINVAL, ESRCH}, true, &check_pthread_join},
        {"pthread_setname_np", {ERANGE}, true, &check_ignored},
        {"getpriority", {ESRCH}, true, &check_ignored},
    };
    return rows;
}
