#include "src/event/serr.h"

#include <iomanip>
#include <iostream>
#include <locale>
#include <thread>

namespace spi {

std::chrono::steady_clock::time_point s_start = std::chrono::steady_clock::now();
std::mutex s_log_mx;

serr::serr() {
    using std::chrono::duration_cast;
    const auto elapsed = std::chrono::steady_clock::now() - s_start;
    const auto hours = duration_cast<std::chrono::hours>(elapsed).count();
    const auto minutes = duration_cast<std::chrono::minutes>(elapsed).count();
    const auto seconds = duration_cast<std::chrono::seconds>(elapsed).count();
    const auto milliseconds = duration_cast<std::chrono::milliseconds>(elapsed).count();
    imbue(std::locale::classic());  // a host's locale may group digits
    *this << "[q(B0] " << std::dec << std::setfill('0') << std::setw(2) << hours % 24 << '.' << std::setw(2)
          << minutes % 60 << ':' << std::setw(2) << seconds % 60 << ':' << std::setw(3) << milliseconds % 1000
          << " [" << std::hex << std::this_thread::get_id() << ']';
}

serr::~serr() {
    try {
        const std::string line = str();
        const std::lock_guard<std::mutex> lock(s_log_mx);
        std::cerr << line << '\n' << std::flush;
    } catch (...) {
        // Nothing is left to report it to.
    }
}

}  // namespace spi
