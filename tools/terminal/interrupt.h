// Lets a command that has something to tidy up end in good order when it is asked to stop.
#pragma once

#include <csignal>

namespace dabspi {

// While one lives, the first SIGINT, SIGTERM or SIGHUP is only noted; one that comes a second time ends the
// process at once. A signal that the caller had ignored stays ignored. At most one at a time.
class interrupt_watch {
 public:
    interrupt_watch();
    ~interrupt_watch();
    interrupt_watch(const interrupt_watch&) = delete;
    interrupt_watch& operator=(const interrupt_watch&) = delete;

    // The signal that was noted, or 0.
    static int noted();
};

// Ends the process by that signal, as if it had never been held up: the parent sees that it was stopped.
[[noreturn]] void die_by(int signal);

}  // namespace dabspi
