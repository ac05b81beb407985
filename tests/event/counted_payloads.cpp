#include "tests/event/counted_payloads.h"

#include <atomic>
#include <cstddef>

#include "src/event/event.h"
#include "src/event/quiet.h"

namespace {

// By code. Changed under the mutex, so that a condition sees all of one moment.
std::atomic<long> made_of[spi::EC_MAX + 1];
std::atomic<long> alive_of[spi::EC_MAX + 1];

}  // namespace

namespace counted_payloads {

std::mutex mutex;
std::condition_variable changed;

void forget() {
    const std::lock_guard<std::mutex> lock(mutex);
    for (auto& count : made_of)
        count = 0;
}
long made(spi::event_code code) {
    return made_of[code];
}
long alive(spi::event_code code) {
    return alive_of[code];
}
long alive() {
    long all = 0;
    for (const auto& count : alive_of)
        all += count;
    return all;
}
void announce() {
    const std::lock_guard<std::mutex> lock(mutex);
    changed.notify_all();
}

}  // namespace counted_payloads

namespace spi {

i_evt_base::i_evt_base(event_code event) : code(event) {
    count_payload();
    const std::lock_guard<std::mutex> lock(counted_payloads::mutex);
    ++made_of[code];
    ++alive_of[code];
    counted_payloads::changed.notify_all();
}
i_evt_base::~i_evt_base() {
    uncount_payload();
    const std::lock_guard<std::mutex> lock(counted_payloads::mutex);
    --alive_of[code];
    counted_payloads::changed.notify_all();
}
int i_evt_base::exec() {
    return 0;
}

}  // namespace spi
