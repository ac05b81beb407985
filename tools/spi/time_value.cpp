// Times: bytes, ISO 8601, and how the receiver takes them.

#include <cstdio>
#include <cstdlib>

#include "tools/spi/receiver_values.h"
#include "tools/spi/value_problems.h"
#include "tools/spi/values.h"

namespace dabspi::spi_object {

namespace {

constexpr std::int64_t kLastDay = 0x1FFFF;

// Days since 1858-11-17 in the Gregorian calendar, and back. Years are counted from March, so that the leap
// day is the last of its year; 400 years have 146,097 days; the 678,881st day after 1 March of year 0 is day
// 0.
constexpr std::int64_t kDaysTo1858 = 678881;

struct calendar_date {
    int year;
    unsigned month;
    unsigned day;
};

std::int64_t day_number(const calendar_date& date) {
    const std::int64_t year = date.year - (date.month <= 2 ? 1 : 0);
    const std::int64_t era = year / 400;
    const std::int64_t year_of_era = year - era * 400;
    const std::int64_t month = (date.month + 9) % 12;
    const std::int64_t day_of_year = (153 * month + 2) / 5 + date.day - 1;
    return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year - kDaysTo1858;
}

calendar_date date_of(std::int64_t mjd) {
    const std::int64_t days = mjd + kDaysTo1858;
    const std::int64_t era = days / 146097;
    const std::int64_t day_of_era = days - era * 146097;
    const std::int64_t year_of_era =
        (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
    const std::int64_t day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const std::int64_t month = (5 * day_of_year + 2) / 153;
    calendar_date date{};
    date.day = static_cast<unsigned>(day_of_year - (153 * month + 2) / 5 + 1);
    date.month = static_cast<unsigned>(month < 10 ? month + 3 : month - 9);
    date.year = static_cast<int>(year_of_era + era * 400 + (date.month <= 2 ? 1 : 0));
    return date;
}

unsigned days_in(int year, unsigned month) {
    if (month == 12) return 31;
    return static_cast<unsigned>(day_number({year, month + 1, 1}) - day_number({year, month, 1}));
}

// "2026-03-10", the separator, "07:00" and seconds and milliseconds as wanted.
std::string clock_text(const time_value& value, int half_hours, char separator, bool with_seconds) {
    const std::int64_t minutes =
        std::int64_t{value.mjd} * kMinutesOfDay + value.hour * 60 + value.minute + half_hours * 30;
    // Half a day before the first day of all can be named, too.
    const std::int64_t day = (minutes + kMinutesOfDay) / kMinutesOfDay - 1;
    const std::int64_t minute = minutes - day * kMinutesOfDay;
    const calendar_date date = date_of(day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u%c%02d:%02d", date.year, date.month, date.day, separator,
                  static_cast<int>(minute / 60), static_cast<int>(minute % 60));
    std::string result = text;
    if (with_seconds) {
        std::snprintf(text, sizeof text, value.millisecond == 0 ? ":%02u" : ":%02u.%03u", value.second,
                      value.millisecond);
        result += text;
    }
    return result;
}

void note_range(const time_value& value, std::vector<problem>& problems) {
    const auto check = [&](std::size_t at, const char* what, unsigned is, unsigned most) {
        if (is > most)
            note(problems, problem_code::time_out_of_range, at,
                 std::string("the ") + what + " is " + std::to_string(is), "counts with it as it stands");
    };
    check(2, "hour", value.hour, 23);
    check(3, "minute", value.minute, 59);
    check(4, "second", value.second, 59);
    check(4, "millisecond", value.millisecond, 999);
}

// The library's own reading, where it is another: it takes the offset's magnitude modulo 31 over the whole
// byte, does not bring minutes before midnight into range, and knows no dates behind February 2100.
void note_receiver(byte_view from, const time_value& value, std::vector<problem>& problems) {
    const spi::SpiTimePoint taken = receiver_time(from);
    const int offset = value.offset.value_or(0);
    const std::string taken_text = receiver_time_text(taken);
    if (taken.lto == offset && taken_text == clock_text(value, offset, ' ', false)) return;
    const int minutes = taken.lto * 30;
    char how[64];
    std::snprintf(how, sizeof how, "takes the offset as %c%02d:%02d, and so the local time as ",
                  minutes < 0 ? '-' : '+', std::abs(minutes) / 60, std::abs(minutes) % 60);
    note(problems, problem_code::time_misread, offset == taken.lto ? 0 : from.size() - 1,
         offset < 0 ? "a time with a negative local time offset" : "a time that receivers are not made for",
         (taken.lto == offset ? "takes the local time as " : how) + taken_text);
}

}  // namespace

bool operator==(const time_value& a, const time_value& b) {
    return a.mjd == b.mjd && a.hour == b.hour && a.minute == b.minute && a.second == b.second &&
           a.millisecond == b.millisecond && a.offset == b.offset;
}

time_value decode_time(byte_view from, std::vector<problem>& problems) {
    time_value value;
    const unsigned c = from[2];
    value.mjd = (from[0] & 0x7Fu) << 10 | std::uint32_t{from[1]} << 2 | c >> 6;
    value.hour = (c & 0x07u) << 2 | from[3] >> 6;
    value.minute = from[3] & 0x3Fu;
    const bool has_offset = (c & 0x10u) != 0;
    const bool long_form = (c & 0x08u) != 0;
    const std::size_t wanted = 4 + (long_form ? 2u : 0u) + (has_offset ? 1u : 0u);
    if (long_form) {
        value.second = from[4] >> 2;
        value.millisecond = (from[4] & 0x03u) << 8 | from[5];
    }
    const std::uint8_t offset = from[wanted - 1];
    if (has_offset) value.offset = (offset & 0x20) != 0 ? -(offset & 0x1F) : offset & 0x1F;

    if (from.size() != wanted &&
        !check_size(from, wanted, problems,
                    "takes missing bytes as 255, and so this as " + receiver_time_text(receiver_time(from)),
                    "passes over what is too much"))
        return value;
    note_range(value, problems);
    if ((from[0] & 0x80) != 0 || (c & 0x20u) != 0 || (has_offset && (offset & 0xC0) != 0))
        note(problems, problem_code::reserved_bits, 0, "reserved bits are set");
    note_receiver(from.part(0, wanted), value, problems);
    return value;
}

bytes encode_time(const time_value& value, bool long_form) {
    const bool fraction = long_form || value.second != 0 || value.millisecond != 0;
    bytes out = {static_cast<std::uint8_t>(value.mjd >> 10 & 0x7F), static_cast<std::uint8_t>(value.mjd >> 2),
                 static_cast<std::uint8_t>(value.mjd << 6 | (value.offset ? 0x10u : 0u) |
                                           (fraction ? 0x08u : 0u) | (value.hour >> 2 & 0x07u)),
                 static_cast<std::uint8_t>(value.hour << 6 | (value.minute & 0x3Fu))};
    if (fraction) {
        out.push_back(static_cast<std::uint8_t>(value.second << 2 | (value.millisecond >> 8 & 0x03u)));
        out.push_back(static_cast<std::uint8_t>(value.millisecond));
    }
    if (value.offset) {
        const int half_hours = *value.offset;
        out.push_back(static_cast<std::uint8_t>((half_hours < 0 ? 0x20 : 0) | (std::abs(half_hours) & 0x1F)));
    }
    return out;
}

std::string time_text(const time_value& value) {
    if (!value.offset) return utc_text(value);
    const int minutes = std::abs(*value.offset) * 30;
    char offset[16];
    std::snprintf(offset, sizeof offset, "%c%02d:%02d", *value.offset < 0 ? '-' : '+', minutes / 60,
                  minutes % 60);
    return clock_text(value, *value.offset, 'T', true) + offset;
}

std::string utc_text(const time_value& value) {
    return clock_text(value, 0, 'T', true) + "Z";
}

std::string local_text(const time_value& value) {
    return clock_text(value, value.offset.value_or(0), ' ', value.second != 0 || value.millisecond != 0);
}

namespace {

// Takes parts off the front of a text; `good` turns false at the first that is not there.
struct time_reader {
    std::string_view rest;
    bool good = true;

    unsigned digits(std::size_t count) {
        unsigned value = 0;
        good = good && rest.size() >= count && parse_digits(rest.substr(0, count), value);
        if (good) rest.remove_prefix(count);
        return value;
    }
    void mark(char wanted) {
        good = good && !rest.empty() && rest.front() == wanted;
        if (good) rest.remove_prefix(1);
    }
    bool next_is(char wanted) const { return good && !rest.empty() && rest.front() == wanted; }
    bool take(char wanted) {
        const bool there = next_is(wanted);
        if (there) rest.remove_prefix(1);
        return there;
    }
    // The digits behind a point: at least one; the fourth and later ones are dropped.
    unsigned milliseconds() {
        unsigned value = 0;
        std::size_t count = 0;
        for (; !rest.empty() && rest.front() >= '0' && rest.front() <= '9'; rest.remove_prefix(1), ++count)
            if (count < 3) value = value * 10 + static_cast<unsigned>(rest.front() - '0');
        good = good && count != 0;
        for (; count < 3; ++count)
            value *= 10;
        return value;
    }
};

}  // namespace

std::optional<time_value> parse_time(std::string_view text) {
    time_reader in{text};
    const auto year = static_cast<int>(in.digits(4));
    in.mark('-');
    const unsigned month = in.digits(2);
    in.mark('-');
    const unsigned day = in.digits(2);
    in.mark('T');
    const unsigned hour = in.digits(2);
    in.mark(':');
    const unsigned minute = in.digits(2);
    time_value value;
    if (in.take(':')) value.second = in.digits(2);
    if (in.take('.')) value.millisecond = in.milliseconds();
    if (in.next_is('+') || in.next_is('-')) {
        const bool negative = in.rest.front() == '-';
        in.rest.remove_prefix(1);
        const unsigned hours = in.digits(2);
        in.mark(':');
        const unsigned minutes = in.digits(2);
        if (minutes % 30 != 0 || minutes >= 60 || hours > 15) return std::nullopt;
        const auto half_hours = static_cast<int>(hours * 2 + minutes / 30);
        value.offset = negative ? -half_hours : half_hours;
    } else {
        in.take('Z');
    }
    const bool end_of_day = hour == 24 && minute == 0 && value.second == 0 && value.millisecond == 0;
    if (!in.good || !in.rest.empty() || month < 1 || month > 12 || day < 1 || day > days_in(year, month) ||
        (hour > 23 && !end_of_day) || minute > 59 || value.second > 59)
        return std::nullopt;
    const std::int64_t minutes =
        day_number({year, month, day}) * kMinutesOfDay + hour * 60 + minute - value.offset.value_or(0) * 30;
    if (minutes < 0 || minutes / kMinutesOfDay > kLastDay) return std::nullopt;
    value.mjd = static_cast<std::uint32_t>(minutes / kMinutesOfDay);
    value.hour = static_cast<unsigned>(minutes % kMinutesOfDay / 60);
    value.minute = static_cast<unsigned>(minutes % 60);
    return value;
}

}  // namespace dabspi::spi_object
