#include "tools/terminal/interrupt.h"

#include <unistd.h>

namespace dabspi {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t noted_signal = 0;

void note(int signal) {
    noted_signal = signal;
}

}  // namespace

interrupt_watch::interrupt_watch() {
    noted_signal = 0;
    for (const int signal : kSignals) {
        struct sigaction before {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = note;
        // No SA_RESTART: a write to a reader that has stopped is cut short. SA_RESETHAND: the next one has
        // its own way.
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigemptyset(&action.sa_mask);
        ::sigaction(signal, &action, nullptr);
    }
}

interrupt_watch::~interrupt_watch() {
    for (const int signal : kSignals) {
        struct sigaction now {};
        if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == note) ::signal(signal, SIG_DFL);
    }
}

int interrupt_watch::noted() {
    return noted_signal;
}

void die_by(int signal) {
    ::signal(signal, SIG_DFL);
    ::raise(signal);
    ::_exit(128 + signal);  // reached only if the signal is blocked
}

}  // namespace dabspi
