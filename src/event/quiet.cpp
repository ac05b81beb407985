#include "src/event/quiet.h"

#include <algorithm>
#include <atomic>
#include <cstddef>

#include "platform/never_destroyed.h"
#include "src/event/monitor.h"

namespace spi {
namespace {

std::atomic<std::size_t> live_payloads{0};

monitor& quiet_monitor() {
    static never_destroyed<monitor> instance;
    return *instance;
}

}  // namespace

bool wait_until_quiet(std::chrono::milliseconds limit) {
    // A limit such as milliseconds::max() would overflow the clock; a year is as good as for ever.
    constexpr std::chrono::milliseconds kLongest = std::chrono::hours(24 * 365);
    return quiet_monitor().wait_for(std::clamp(limit, std::chrono::milliseconds(0), kLongest),
                                    [] { return live_payloads.load() == 0; });
}

void count_payload() noexcept {
    live_payloads.fetch_add(1);
}

void uncount_payload() noexcept {
    if (live_payloads.fetch_sub(1) == 1) quiet_monitor().announce();
}

}  // namespace spi
