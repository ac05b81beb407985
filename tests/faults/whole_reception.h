// One whole reception of the library, through either interface, with a fault somewhere in it: construction in
// a sandbox, time, service, a description with its logos, today's and tomorrow's schedule, a tick, now and
// next once more, another ensemble, destruction. After each of the host's calls the library comes to rest, so
// that the n-th allocation, or the n-th call of a function, is nearly always the same one.
//
// What a reception left behind is measured right after it: threads, descriptors, memory, payloads, mappings.
// What is written to standard error meanwhile is kept and taken apart; a sanitizer that ends the process
// writes there too (ASAN_OPTIONS=log_path=... shows it).
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "testkit/sandbox.h"
#include "tests/faults/host_of.h"

// A message of the platform's debug output, as it was printed.
struct debug_message {
    std::string source;
    std::string function;
    int line;
    std::string text;
};

enum class reception_phase { kConstruction, kFirstEvent, kRunning, kDestruction };

struct reception_result {
    enum construction_t { kConstructed, kOutOfMemory, kLogicError, kOtherError };
    construction_t construction = kConstructed;
    int thrown = 0;         // calls of the host, other than construction, that threw std::bad_alloc
    int calls_as_ever = 0;  // calls begun after the fault came that did not throw it
    bool astray = false;    // one of them threw something else
    bool struck = false;    // the fault came
    reception_phase struck_in = reception_phase::kConstruction;
    std::vector<std::string> notes;
    std::vector<debug_message> messages;  // but the ASSERT banners, which are counted
    std::size_t banners = 0;
    std::string other_output;                  // log lines, and what should not be there
    std::map<std::string, std::string> files;  // below the sandbox, but the block: content, or "-> target"
    std::string left_behind;                   // empty, or what is still there
};

struct reception_fault {
    std::function<void()> begin = [] {};
    std::function<void()> end = [] {};
    std::function<bool()> struck = [] { return false; };
    bool host_tries_again = false;  // once more after a call that threw
};

class whole_reception {
 public:
    enum block_t { kFreshBlock, kStandingBlock };

    // The core's logo root exists, the wrapper's is made by it: "/HdStationLogo/" with a fresh block, below
    // "/mnt/data" with one that stands there.
    explicit whole_reception(surface interface, block_t block = kStandingBlock);

    reception_result run(const reception_fault& fault = {});

    sandbox here;
    listener_notes notes;

 private:
    void play(host& subject, const reception_fault& fault, reception_result& result);

    const surface interface_;
    const std::string root_;       // where the logos go
    const std::string root_link_;  // what stands there at the name of the blocked station's logo
    const std::string temp_link_;
};

// What the listener receives in a reception without a fault.
std::vector<std::string> reference_notes(surface interface);

// Messages as "line text", for comparisons.
std::vector<std::string> lines_and_texts(const reception_result& result);
