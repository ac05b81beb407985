#include "tests/soak/soak_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "src/event/quiet.h"
#include "testkit/ensemble/calendar.h"

namespace soak {
namespace {

constexpr int kRound = 5;         // minutes in which every object comes once
constexpr int kComparisons = 15;  // minutes
constexpr auto kPatience = std::chrono::minutes(2);

// The days of a period on which something out of the ordinary happens.
constexpr int kClockGoesBack = 1;
constexpr int kSwitchedOff = 3;  // all day
constexpr int kParkedAtNight = 5;
constexpr int kAbroad = 6;  // another ensemble for some hours
constexpr int kTunnel = 8;  // no ensemble for some minutes

bool is_date(const spi::MotDateTime& t, unsigned month, unsigned day) {
    return t.month == month && t.day == day;
}

}  // namespace

soak_run::soak_run(receiver& tested, std::filesystem::path logo_root, long first_day, habits h)
    : tested_(tested), logo_root_(std::move(logo_root)), day_(first_day), first_day_(first_day), habits_(h) {}

std::uint64_t soak_run::carousel_bytes() const {
    std::uint64_t sum = 0;
    for (const carousel_object& object : objects_)
        sum += object.at(0).bytes.size();
    return sum;
}

bool soak_run::play_day() {
    objects_ = carousel_of(*on_air_, day_);
    if (day_ == first_day_) set_service(home_.stations[0].id, home_.eid);
    for (int minute = 0; minute < kDayMinutes && !failed_; ++minute) {
        if (is_off(minute)) continue;
        play_minute(minute);
    }
    settle();
    compare_files();
    model_.forget_retired_days();
    ++day_;
    ++figures_.days;
    return !failed_;
}

bool soak_run::is_off(int minute) const {
    const long of_period = (day_ - first_day_) % kPeriod;
    if (habits_.switches_off && of_period == kSwitchedOff) {
        // The ends of years and February's last days are too good to be missed.
        const spi::MotDateTime date = date_time_of(day_, 0);
        return !is_date(date, 12, 31) && !is_date(date, 1, 1) && !is_date(date, 2, 29);
    }
    return of_period == kParkedAtNight && minute >= 120 && minute < 330;
}

void soak_run::play_minute(int minute) {
    minute_ = minute;
    ++figures_.minutes;
    const long of_period = (day_ - first_day_) % kPeriod;
    set_date_time(minute);
    if (of_period == kClockGoesBack && minute % 240 == 0 && minute > 0) {
        set_date_time(minute - 2);
        set_date_time(minute);
        set_date_time(minute);  // twice the same
    }
    change_ensemble(minute);
    if (host_.one_in(90)) choose_service(minute);
    if (host_.one_in(200)) {
        if (programmes_in_flight_) settle();
        if (tested_.resend()) {
            model_.resend();
            ++figures_.calls;
        }
    }
    feed_carousel(minute);
    if (minute % kComparisons == kComparisons - 1) settle();
}

void soak_run::set_date_time(int minute) {
    if (programmes_in_flight_) settle();
    const spi::MotDateTime t = date_time_of(day_, minute);
    tested_.set_date_time(t);
    model_.set_date_time(t);
    ++figures_.calls;
}

void soak_run::set_service(const spi::ServElemId& service, std::uint16_t eid) {
    if (programmes_in_flight_ || services_in_flight_) settle();
    tested_.set_service(service, eid);
    model_.set_service(service, eid);
    ++figures_.calls;
}

void soak_run::choose_service(int) {
    const auto count = static_cast<int>(on_air_->stations.size());
    const int chosen = host_.below(count + 1);
    spi::ServElemId id{0xCAFE, 0xE1, 0};  // a station without any programme
    if (chosen < count) id = on_air_->stations[static_cast<std::size_t>(chosen)].id;
    set_service(id, known_ ? on_air_->eid : 0);
}

void soak_run::change_ensemble(int minute) {
    const long of_period = (day_ - first_day_) % kPeriod;
    if (!habits_.travels) return;
    const auto move_to = [this](const ensemble& e) {
        on_air_ = &e;
        objects_ = carousel_of(e, day_);
        set_service(e.stations[1].id, e.eid);
    };
    if (of_period == kAbroad && minute == 540) move_to(foreign_);
    if (of_period == kAbroad && minute == 690) move_to(home_);
    if (of_period == kTunnel && (minute == 900 || minute == 910)) {
        known_ = minute == 910;
        set_service(on_air_->stations[2].id, known_ ? on_air_->eid : 0);
    }
}

void soak_run::feed_carousel(int minute) {
    for (std::size_t i = static_cast<std::size_t>(minute % kRound); i < objects_.size(); i += kRound) {
        const carousel_object& object = objects_[i];
        const object_version& version = object.at(minute);
        if (object.content_type == kImage && services_in_flight_) settle();
        tested_.feed(object, version);
        if (model_.feed(object, version)) {
            const bool programmes = object.content_subtype == kProgrammeInformation;
            (programmes ? programmes_in_flight_ : services_in_flight_) = true;
        }
        ++figures_.calls;
        ++figures_.objects;
        figures_.bytes += version.bytes.size();
    }
}

void soak_run::settle() {
    if (failed_) return;
    if (!spi::wait_until_quiet(kPatience)) {
        failed_ = true;
        ADD_FAILURE() << "the library does not come to rest";
        return;
    }
    ++figures_.waits;
    programmes_in_flight_ = services_in_flight_ = false;
    std::vector<std::string> expected = model_.take_database();
    if (!tested_.reports_programmes()) {
        const auto stays_inside = [](const std::string& text) { return text.rfind("programme ", 0) == 0; };
        expected.erase(std::remove_if(expected.begin(), expected.end(), stays_inside), expected.end());
    }
    compare("programmes and now/next", tested_.received.take_database(), std::move(expected));
    compare("logos", tested_.received.take_logos(), model_.take_logos());
}

void soak_run::compare(const char* what, std::vector<std::string> received,
                       std::vector<std::string> expected) {
    figures_.notifications += received.size();
    if (received == expected || failed_) return;
    failed_ = true;
    const auto differ =
        std::mismatch(received.begin(), received.end(), expected.begin(), expected.end()).first -
        received.begin();
    const auto around = [differ](const std::vector<std::string>& all) {
        std::string text;
        for (std::size_t i = static_cast<std::size_t>(differ); i < all.size() && text.size() < 600; ++i)
            text += "\n    " + all[i];
        return text.empty() ? std::string("\n    (nothing)") : text;
    };
    const spi::MotDateTime now = date_time_of(day_, minute_);
    ADD_FAILURE() << what << " at " << now.date() << ' ' << now.time() << ", notification " << differ
                  << " since the last comparison\n  received:" << around(received)
                  << "\n  expected:" << around(expected);
}

void soak_run::compare_files() {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(logo_root_)) {
        ++count;
        const auto known = model_.files().find(entry.path().filename().string());
        if (known == model_.files().end()) {
            failed_ = true;
            ADD_FAILURE() << "a file that should not be there: " << entry.path();
            continue;
        }
        std::ifstream in(entry.path(), std::ios::binary);
        const spi_builder::bytes content{std::istreambuf_iterator<char>(in), {}};
        if (content != known->second) {
            failed_ = true;
            ADD_FAILURE() << "another content than expected: " << entry.path();
        }
        ++figures_.files_compared;
    }
    if (count != model_.files().size()) {
        failed_ = true;
        ADD_FAILURE() << count << " logo files instead of " << model_.files().size();
    }
}

}  // namespace soak
