#include "src/event/term_lock.h"

#include <exception>

#include "src/event/serr.h"
#include "src/event/teardown.h"

namespace spi {

void term_lock::unlock(std::string&& who) noexcept {
    if (lock_.owns_lock()) {
        lock_.unlock();
        return;
    }
    try {
        serr() << ' ' << "term_lock - illicit unlock " << ' ' << who;
        try {
            lock_.unlock();  // throws: it is not owned. Deliberate: an illicit unlock always yields the pair
                             // of lines
        } catch (const std::exception& error) {
            serr() << ' ' << "term_lock - unlock fail " << ' ' << who << ' ' << ' ' << ' ' << error.what();
        }
    } catch (...) {
        // No memory for the lines.
    }
}

term_event_proc::term_event_proc(_qid id)
    : event_proc(id, {{}, {}, [this] {
                          if (owns_lock()) unlock("thread end");
                          disarm();
                      }}) {
    if (!started()) disarm();  // nobody will take the lock
}

void term_event_proc::disarm() noexcept {
    disarmed_ = true;
    teardown_monitor().announce();
}

}  // namespace spi
