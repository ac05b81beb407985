#include "testkit/database_model.h"

#include <algorithm>
#include <sstream>

#include "testkit/spi_builder.h"

namespace event_db {

std::string as_text(const spi::ServElemId& service) {
    std::ostringstream out;
    out << std::hex << unsigned{service.ecc} << '.' << service.sid << '.' << unsigned{service.scids};
    return out.str();
}

std::string as_text(const spi::PiScheduleProgramme& p) {
    std::ostringstream out;
    out << '"' << p.name << "\" " << p.time.mjd << ' ' << int{p.time.hour} << ':' << int{p.time.minute} << ':'
        << int{p.time.second} << ' ' << int{p.time.lto} << ' ' << p.duration << "s " << p.crid << ' ' << p.eid
        << ' ' << as_text(p.bearer);
    return out.str();
}

void database_model::unset(spi::PiScheduleProgramme& p) {
    p.name.clear();
    p.time = spi::SpiTimePoint();
}

std::string as_text(const notice& n) {
    if (n.kind == notice::kStored) {
        return "QID_CBHDL EC_EVTINFO " + as_text(n.service) + ' ' + as_text(n.programme);
    }
    return "QID_CBHDL EC_NOWNEXT " + as_text(n.programme) + " / " + as_text(n.next);
}

// The local day, hour and minute, as the broadcast's time arithmetic gives them: at most one day is carried,
// and minutes before midnight wrap to hours of another world.
database_model::instant database_model::instant_after(const spi::PiScheduleProgramme& p, int minutes) {
    const int sum = start(p) + minutes;
    const long day = static_cast<long>(p.time.mjd) + (sum < 0 ? -1 : sum >= 1440 ? 1 : 0);
    const int of_day = sum < 0 ? 65536 + sum % 1440 : sum % 1440;
    const int wrapped = of_day == 65536 ? 0 : of_day;
    return {day, wrapped / 60 % 256, wrapped % 60};
}

bool database_model::running_at(const spi::PiScheduleProgramme& p, long day, int hour, int minute) {
    const instant first = instant_after(p, 0);
    const instant last = instant_after(p, p.duration / 60);
    const auto at = std::make_tuple(day, hour, minute);
    return at >= std::make_tuple(first.day, first.hour, first.minute) &&
           at <= std::make_tuple(last.day, last.hour, last.minute);
}

const database_model::row* database_model::row_at(int day_object, int key) const {
    for (const row& r : rows_)
        if (r.day_object == day_object && r.key == key) return &r;
    return nullptr;
}

std::vector<const database_model::row*> database_model::rows_of(int day_object) const {
    std::vector<const row*> found;
    for (const row& r : rows_)
        if (r.day_object == day_object) found.push_back(&r);
    std::sort(found.begin(), found.end(), [](const row* a, const row* b) { return a->key < b->key; });
    return found;
}

std::vector<notice> database_model::programme(const spi::ServElemId& id, const spi::PiScheduleProgramme& p) {
    const int m = start(p);
    const long day = static_cast<long>(p.time.mjd) + (m < 0 ? -1 : m >= 1440 ? 1 : 0);
    if (p.time.mjd == 0 || !date_known_ || (day != today_ && day != today_ + 1)) {
        ++seen.refused;
        return {};
    }
    auto& days = stations_[key_of(id)];
    if (days.count(day) == 0) {
        days[day] = static_cast<int>(retired_.size());
        retired_.push_back(false);
    }
    const int key = m >= 0 ? m % 1440 : (65536 + m % 1440) % 65536;
    if (row_at(days[day], key) != nullptr) {
        ++seen.taken;
        return {};
    }
    rows_.push_back({days[day], key, p});
    ++seen.stored;
    if (key >= 1440) ++seen.wrapped_keys;
    std::vector<notice> sent{{notice::kStored, id, p, {}}};
    const bool own = key_of(id) == key_of(current_) && current_.sid != 0 && current_.ecc != 0;
    if (own && !(set(now_) && set(next_))) {
        const std::vector<notice> more = search();
        sent.insert(sent.end(), more.begin(), more.end());
    }
    return sent;
}

std::vector<notice> database_model::date_time(const spi::MotDateTime& t) {
    const long day = spi_builder::mjd(t.year, t.month, t.day);
    if (date_known_ && day == today_ && t.hour == hour_ && t.minute == minute_) return {};
    if (date_known_ && day != today_) {
        for (auto& [id, days] : stations_) {
            if (days.empty()) continue;
            retired_[static_cast<std::size_t>(days.begin()->second)] = true;
            days.erase(days.begin());
            ++seen.retired;
        }
        choose_timetable(false);
    }
    date_known_ = true;
    today_ = day;
    hour_ = t.hour;
    minute_ = t.minute;
    if (set(now_) && running_at(now_, day, hour_, minute_)) {
        ++seen.still_running;
        const instant last = instant_after(now_, now_.duration / 60);
        if (last.hour == hour_ && last.minute == minute_) ++seen.end_minute_still_running;
        return {};
    }
    return search();
}

std::vector<notice> database_model::service(const spi::ServElemId& id) {
    if (key_of(id) == key_of(current_)) return {};
    unset(now_);
    unset(next_);
    timetable_.reset();
    current_ = id;
    return search();
}

std::vector<notice> database_model::resend() {
    return {update()};
}

std::vector<notice> database_model::clear() {
    unset(now_);
    unset(next_);
    timetable_.reset();
    stations_.clear();
    rows_.clear();
    return {};
}

void database_model::forget_retired_days() {
    const auto unreachable = [this](const row& r) {
        return retired_[static_cast<std::size_t>(r.day_object)] && timetable_ != r.day_object;
    };
    rows_.erase(std::remove_if(rows_.begin(), rows_.end(), unreachable), rows_.end());
}

bool database_model::choose_timetable(bool tomorrow) {
    const auto station = stations_.find(key_of(current_));
    if (station == stations_.end()) return false;
    const std::size_t wanted = tomorrow ? 1 : 0;
    if (station->second.size() <= wanted) return false;
    timetable_ = std::next(station->second.begin(), static_cast<long>(wanted))->second;  // never without rows
    return true;
}

bool database_model::replace_now() {
    const int minute = hour_ * 60 + minute_;
    for (const row* r : rows_of(*timetable_)) {
        if (r->key > minute) break;
        const int until = end(r->programme);
        if (minute >= until && until >= r->key) continue;
        if (set(now_) && start(now_) % 1440 == start(r->programme) % 1440) {
            ++seen.unchanged_now;
            return false;
        }
        now_ = r->programme;
        unset(next_);
        if (now_.name.empty()) ++seen.untitled_now;
        return true;
    }
    ++seen.nothing_on;
    return false;
}

bool database_model::replace_next() {
    if (!set(now_)) return false;
    if (end(now_) < start(now_) % 1440) {
        if (!choose_timetable(true)) {
            ++seen.no_tomorrow;
            return false;
        }
        ++seen.switched_to_tomorrow;
    }
    const int t = end(now_);
    const row* const r = row_at(*timetable_, t >= 0 ? t : 65536 + t);
    if (r == nullptr) return false;
    if (set(next_) && start(next_) % 1440 == start(r->programme) % 1440) {
        ++seen.unchanged_next;
        return false;
    }
    next_ = r->programme;
    return true;
}

std::vector<notice> database_model::search() {
    if (!timetable_ && !choose_timetable(false)) return {};
    if (retired_[static_cast<std::size_t>(*timetable_)]) ++seen.searched_in_retired_day;
    const bool now_replaced = replace_now();
    const bool next_replaced = replace_next();
    if (!now_replaced && !next_replaced) return {};
    ++seen.updates;
    if (!set(next_)) ++seen.updates_without_next;
    return {update()};
}

}  // namespace event_db
