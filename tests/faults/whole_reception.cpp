#include "tests/faults/whole_reception.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <stdexcept>

#include "platform/zeb_debug.h"
#include "platform/zeb_shared_memory.h"
#include "src/event/quiet.h"
#include "tests/event/counted_payloads.h"
#include "tests/event/log_lines.h"
#include "tests/faults/system_faults.h"
#include "tests/support/captured_stderr.h"
#include "tests/wrap/failing_new.h"
#include "tests/wrap/process_state.h"

namespace fs = std::filesystem;

namespace {

std::atomic<int> deaths{0};  // threads that an exception ended, in this reception

// A worker that died, or never lived, keeps its events for good: nothing comes to rest any more. (Threads are
// refused in the construction only, before anything waits.)
void come_to_rest() {
    const bool rests = counted_payloads::wait_until([] {
        return counted_payloads::alive() == 0 || deaths != 0 || system_faults::threads_refused() != 0;
    });
    if (rests) return;
    ++deaths;  // one wait is enough
    ADD_FAILURE() << "an event is never handled, and no worker's death is reported";
}

int tasks() {
    const fs::directory_iterator first("/proc/self/task");
    return static_cast<int>(std::distance(begin(first), end(first)));
}

std::string block_for(const std::string& storage_path) {
    std::string block("\x10\x14\0\0", 4);
    block += storage_path;
    block.resize(5140, '\0');
    return block;
}

std::string content_of(const fs::path& path) {
    if (fs::is_symlink(path)) return "-> " + fs::read_symlink(path).string();
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::map<std::string, std::string> files_below(const fs::path& root, const std::string& block) {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_directory() && !entry.is_symlink()) continue;
        if (entry.path() != block)
            files[entry.path().string().substr(root.string().size())] = content_of(entry);
    }
    return files;
}

// "[source function:line] text"; false for any other line.
bool parse_message(const std::string& line, debug_message& message) {
    const std::size_t end = line.find("] ");
    const std::size_t blank = line.find(' ');
    if (line.empty() || line[0] != '[' || end == std::string::npos || blank == std::string::npos)
        return false;
    const std::size_t colon = line.rfind(':', end);
    if (blank > end || colon == std::string::npos || colon < blank) return false;
    const std::string number = line.substr(colon + 1, end - colon - 1);
    if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos) return false;
    message = {line.substr(1, blank - 1), line.substr(blank + 1, colon - blank - 1), std::stoi(number),
               line.substr(end + 2) + "\n"};
    return true;
}

void take_apart(const std::string& output, reception_result& result) {
    bool in_banner = false;
    for (const std::string& line : lines_of(output)) {
        debug_message message;
        if (parse_message(line, message)) {
            in_banner = message.text == "#########\n";
            if (in_banner) {
                ++result.banners;
            } else {
                result.messages.push_back(message);
            }
        } else if (in_banner && (line == "#########" || line.rfind("ASSERT Failed! - ", 0) == 0)) {
            continue;
        } else {
            result.other_output += line + "\n";
        }
    }
}

}  // namespace

// In the place of the platform's: the report of a thread's end.
void ZebCallStack::dumpDirectly(int) {
    ++deaths;
    counted_payloads::announce();
}

whole_reception::whole_reception(surface interface, block_t block)
    : interface_(interface),
      root_(here.at(interface == surface::kCore || block == kStandingBlock ? "/mnt/data/HdStationLogo"
                                                                           : "/HdStationLogo")),
      root_link_(root_ + "/E1C2230_3.PNG"),
      temp_link_(here.at("/temp/dab/E1C2230_3.PNG")) {
    here.notes_calls = false;
    if (interface == surface::kCore) fs::create_directories(root_);
    if (interface == surface::kWrapper && block == kStandingBlock)
        std::ofstream(here.block(), std::ios::binary) << block_for("/mnt/data");
}

namespace {

// The desk platform says once that a lock file cannot be had, until one can be again: each reception is to
// hear of its own.
void let_locks_be_reported_again() {
    const ZebSharedSyncObject another("dabspi-another-lock");
    another.lock();
    another.unlock();
}

}  // namespace

reception_result whole_reception::run(const reception_fault& fault) {
    reception_result result;
    const std::unique_ptr<host> subject = make_host(interface_, notes, root_);
    deaths = 0;
    std::string output;
    {
        const captured_stderr log;
        const int threads = tasks();
        const int descriptors = open_descriptors();
        const long memory = failing_new::living();
        let_locks_be_reported_again();
        fault.begin();
        play(*subject, fault, result);
        fault.end();
        const long memory_after = failing_new::living();

        if (!wait_for_threads(threads)) result.left_behind += "threads ";
        if (open_descriptors() != descriptors) result.left_behind += "descriptors ";
        if (memory_after != memory)
            result.left_behind += "memory (" + std::to_string(memory_after - memory) + " blocks) ";
        if (!spi::wait_until_quiet(std::chrono::milliseconds(0))) result.left_behind += "payloads ";
        if (interface_ == surface::kWrapper && mappings_of("SysDataInfo") != 0)
            result.left_behind += "a mapping ";
        output = log.text();
    }
    take_apart(output, result);
    result.notes = notes.all();
    result.files = files_below(here.path(), here.block());
    return result;
}

void whole_reception::play(host& subject, const reception_fault& fault, reception_result& result) {
    const auto note_strike = [&](reception_phase phase) {
        if (result.struck || !fault.struck()) return;
        result.struck = true;
        result.struck_in = phase;
    };
    const auto call = [&](reception_phase phase, auto&& operation) {
        const bool struck_before = fault.struck();
        const int thrown_before = result.thrown;
        for (bool again = fault.host_tries_again;; again = false) {
            try {
                operation();
                break;
            } catch (const std::bad_alloc&) {
                ++result.thrown;
                if (!again) break;
            } catch (...) {
                result.astray = true;
                break;
            }
        }
        if (struck_before && result.thrown == thrown_before) ++result.calls_as_ever;
        come_to_rest();
        note_strike(phase);
    };

    try {
        subject.construct();
    } catch (const std::bad_alloc&) {
        result.construction = reception_result::kOutOfMemory;
    } catch (const std::logic_error&) {
        result.construction = reception_result::kLogicError;
    } catch (...) {
        result.construction = reception_result::kOtherError;
    }
    note_strike(reception_phase::kConstruction);
    if (result.construction != reception_result::kConstructed) return;

    // The wrapper goes to the other root where its own cannot be made.
    if (symlink("/nowhere/at/all", root_link_.c_str()) != 0 &&
        symlink("/nowhere/at/all", temp_link_.c_str()) != 0)
        result.astray = interface_ == surface::kCore;

    using on_air::kEnsemble;
    using on_air::kOtherEnsemble;
    using on_air::kStation;
    static const auto& description = *new spi_builder::bytes(on_air::description());
    static const auto& today = *new spi_builder::bytes(on_air::today());
    static const auto& tomorrow = *new spi_builder::bytes(on_air::tomorrow());
    static const auto& png = on_air::png();
    constexpr reception_phase kRunning = reception_phase::kRunning;
    // The first event that reaches every worker: afterwards each thread has made its entry in the platform's
    // table.
    call(reception_phase::kFirstEvent, [&] { subject.set_time(2, 10, 30); });
    call(kRunning, [&] { subject.tune(kStation, kEnsemble); });
    call(kRunning, [&] { subject.feed(7, 0, "si", description); });
    call(kRunning, [&] { subject.feed(2, 3, "small.png", png); });
    call(kRunning, [&] { subject.feed(2, 3, "large.png", png); });
    call(kRunning, [&] { subject.feed(2, 3, "blocked.png", png); });
    call(kRunning, [&] { subject.feed(7, 1, "today", today); });
    call(kRunning, [&] { subject.feed(7, 1, "tomorrow", tomorrow); });
    call(kRunning, [&] { subject.set_time(2, 11, 1); });
    const bool can_ask = interface_ == surface::kCore;
    if (can_ask) call(kRunning, [&] { subject.resend(); });
    call(kRunning, [&] { subject.tune(kStation, kOtherEnsemble); });
    if (can_ask) call(kRunning, [&] { subject.resend(); });
    call(kRunning, [&] { subject.tune(kStation, kEnsemble); });
    call(kRunning, [&] { subject.feed(7, 1, "today", today); });  // forgotten meanwhile, so parsed once more
    subject.destroy();
    note_strike(reception_phase::kDestruction);
}

std::vector<std::string> reference_notes(surface interface) {
    const std::vector<std::string> all = {
        "logo E1C2210_3.PNG size 3",
        "logo E1C2210_4.PNG size 4",
        "programme Morning 10:00",
        "now Morning next ",
        "programme Noon 11:00",
        "now Morning next Noon",
        "programme Dawn 06:00",
        "now Noon next ",
        "now Noon next ",  // asked for
        "now  next ",      // asked for, after a change of ensemble
        "programme Morning 10:00",
        "programme Noon 11:00",
        "now Noon next ",
    };
    if (interface == surface::kCore) return all;
    // The host gets no schedules, and cannot ask.
    std::vector<std::string> received;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].rfind("programme", 0) != 0 && i != 8 && i != 9) received.push_back(all[i]);
    return received;
}

std::vector<std::string> lines_and_texts(const reception_result& result) {
    std::vector<std::string> all;
    for (const debug_message& message : result.messages)
        all.push_back(std::to_string(message.line) + " " + message.text);
    return all;
}
