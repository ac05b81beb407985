// The stream through which the library writes its diagnostic lines to standard error.
//
// Make a temporary, stream into it, and let it go: the line is written, whole, when it is destroyed. Any
// thread may do so.
//
//     serr() << ' ' << "term_lock - illicit unlock " << ' ' << who;
//
// A line begins with "[q(B0] ", the time since the library was loaded as HH.MM:SS:mmm (a full stop after the
// hours, colons elsewhere: deliberate) and " [", the thread's id, "]". The stream is left in hexadecimal
// mode: an integer streamed into it prints in hexadecimal. Writing a line never fails visibly.
#pragma once

#include <chrono>
#include <mutex>
#include <sstream>

namespace spi {

class serr : public std::ostringstream {
 public:
    serr();
    ~serr() override;
};

// The zero of the lines' times, taken once when the library is loaded.
extern std::chrono::steady_clock::time_point s_start;
// Held while one finished line is written, so that lines never interleave.
extern std::mutex s_log_mx;

}  // namespace spi
