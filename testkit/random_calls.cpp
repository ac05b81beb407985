#include "testkit/random_calls.h"

#include <array>

#include "testkit/database_model.h"
#include "testkit/spi_builder.h"

namespace event_db {
namespace {

constexpr int kGrid = 10;  // programmes start and end on few minutes, so that they meet

}  // namespace

spi::ServElemId random_calls::any_service() {
    if (!one_in(4)) return {0xC221, 0xE1, 0};
    switch (below(4)) {
        case 0: return {0xC221, 0xE1, 1};
        case 1: return {0xC222, 0xE1, 0};
        case 2: return {0xC221, 0, 0};  // no ECC
        default: return {};
    }
}

spi::PiScheduleProgramme random_calls::any_programme() {
    static constexpr std::array<int, 8> kDurations{10, 20, 30, 60, 90, 180, 0, 1092};
    spi::PiScheduleProgramme p;
    p.eid = 0xC181;
    p.crid = static_cast<std::uint32_t>(++serial_);  // tells every programme from every other
    if (!one_in(8)) p.name = std::string(1, static_cast<char>('A' + below(5)));
    const int day = day_ + (one_in(8) ? below(5) - 2 : below(2));
    p.time.mjd = one_in(50) ? 0 : spi_builder::mjd(2026, 3, static_cast<unsigned>(day));
    // Near the clock more often than not, and around midnight.
    int start = one_in(2) ? below(144) * kGrid : (minute_ / kGrid + below(13) - 6) * kGrid;
    if (one_in(4)) start = (below(24) + 132) * kGrid;
    start = (start % 1440 + 1440) % 1440;
    p.time.lto = static_cast<std::int8_t>(one_in(4) ? below(9) - 4 : 0);
    p.time.hour = static_cast<std::uint8_t>(start / 60);
    p.time.minute = static_cast<std::uint8_t>(start % 60);
    p.time.second = static_cast<std::uint8_t>(below(60));
    p.duration = static_cast<std::uint16_t>(kDurations[static_cast<std::size_t>(below(8))] * 60 + below(15));
    if (one_in(5)) p.duration = static_cast<std::uint16_t>(below(65536));
    return p;
}

void random_calls::move_clock() {
    if (one_in(5)) return;  // the same time again
    if (one_in(12)) {       // to a day nearby, back too
        day_ += below(4) - 1;
    } else if (one_in(10)) {
        minute_ = below(1440);
    } else {
        minute_ += one_in(3) ? 1 : below(12) * kGrid / 2;
        if (one_in(2)) minute_ -= minute_ % kGrid;  // when programmes start and end
    }
    if (minute_ >= 1440) {
        minute_ -= 1440;
        ++day_;
    }
    if (day_ < 3 || day_ > 28) day_ = 10;
}

call random_calls::next() {
    call c;
    const int choice = below(100);
    if (choice < 60) {
        c.kind = call::kProgramme;
        c.service = any_service();
        c.programme = any_programme();
    } else if (choice < 90) {
        c.kind = call::kDateTime;
        move_clock();
        c.time = spi::MotDateTime{2026, 3, static_cast<std::uint8_t>(day_),
                                  static_cast<std::uint8_t>(minute_ / 60),
                                  static_cast<std::uint8_t>(minute_ % 60)};
    } else if (choice < 96) {
        c.kind = call::kService;
        c.service = any_service();
    } else if (choice < 99) {
        c.kind = call::kResend;
    } else {
        c.kind = call::kClear;
    }
    return c;
}

std::string as_text(const call& c) {
    switch (c.kind) {
        case call::kProgramme: return "programme of " + as_text(c.service) + ": " + as_text(c.programme);
        case call::kDateTime: return "it is " + c.time.date() + ' ' + c.time.time();
        case call::kService: return "service " + as_text(c.service);
        case call::kResend: return "resend";
        default: return "clear";
    }
}

}  // namespace event_db
