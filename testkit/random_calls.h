// Random calls of the programme database's host and parser, dense enough that programmes meet: few start
// minutes, few stations, days around the host's.
#pragma once

#include <random>
#include <string>

#include "src/parse/pi_schedule_programme.h"

namespace event_db {

struct call {
    enum kind_t { kProgramme, kDateTime, kService, kResend, kClear };
    kind_t kind = kResend;
    spi::ServElemId service;
    spi::PiScheduleProgramme programme;
    spi::MotDateTime time;
};

class random_calls {
 public:
    explicit random_calls(unsigned seed) : random_(seed) {}
    call next();

 private:
    int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
    bool one_in(int n) { return below(n) == 0; }
    spi::ServElemId any_service();
    spi::PiScheduleProgramme any_programme();
    void move_clock();

    std::mt19937 random_;  // its numbers are the same everywhere, those of the distributions are not
    int day_ = 10;         // of March 2026
    int minute_ = 0;       // of the day
    int serial_ = 0;
};

std::string as_text(const call& c);

}  // namespace event_db
