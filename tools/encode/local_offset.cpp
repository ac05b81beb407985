#include "tools/encode/local_offset.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "tools/files/whole_file.h"
#include "tools/spi/value_problems.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::size_t kHeader = 44;
constexpr std::uint32_t kMostEntries = 100000;  // of any table; real files have a few hundred

std::int64_t big_endian(std::string_view bytes) {
    std::uint64_t value = (static_cast<unsigned char>(bytes[0]) & 0x80) != 0 ? ~std::uint64_t{0} : 0;
    for (const char c : bytes)
        value = value << 8 | static_cast<unsigned char>(c);
    return static_cast<std::int64_t>(value);
}

// Days since 1970-01-01 in the Gregorian calendar.
std::int64_t day_number(std::int64_t year, int month, int day) {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t year_of_era = year - era * 400;
    const std::int64_t day_of_year = (153 * ((month + 9) % 12) + 2) / 5 + day - 1;
    return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year - 719468;
}

bool is_leap(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

// The header of one block of a TZif file, and where its parts stand.
struct block {
    std::size_t time_size;
    std::uint32_t ut_count, std_count, leap_count, time_count, type_count, char_count;

    std::size_t size() const {
        return time_count * (time_size + 1) + type_count * std::size_t{6} + char_count +
               leap_count * (time_size + 4) + std_count + ut_count;
    }
};

std::optional<block> read_header(std::string_view from, std::size_t time_size) {
    if (from.size() < kHeader || from.substr(0, 4) != "TZif") return std::nullopt;
    const auto count = [&](std::size_t at) {
        return static_cast<std::uint32_t>(big_endian(from.substr(at, 4)));
    };
    const block read = {time_size, count(20), count(24), count(28), count(32), count(36), count(40)};
    for (const std::uint32_t each :
         {read.ut_count, read.std_count, read.leap_count, read.time_count, read.type_count, read.char_count})
        if (each > kMostEntries) return std::nullopt;
    if (read.type_count == 0 || from.size() - kHeader < read.size()) return std::nullopt;
    return read;
}

// Parts of a POSIX rule, from the front.
struct rule_reader {
    std::string_view rest;
    bool good = true;

    bool take(char wanted) {
        if (rest.empty() || rest.front() != wanted) return false;
        rest.remove_prefix(1);
        return true;
    }
    void name() {
        std::size_t end = 0;
        if (take('<')) {
            end = rest.find('>');
            good = good && end != std::string_view::npos;
            rest.remove_prefix(good ? end + 1 : 0);
            return;
        }
        while (end < rest.size() && ((rest[end] | 0x20) >= 'a' && (rest[end] | 0x20) <= 'z'))
            ++end;
        good = good && end >= 3;
        rest.remove_prefix(end);
    }
    int number() {
        int value = 0;
        std::size_t digits = 0;
        for (; digits < rest.size() && digits < 4 && rest[digits] >= '0' && rest[digits] <= '9'; ++digits)
            value = value * 10 + (rest[digits] - '0');
        good = good && digits != 0;
        rest.remove_prefix(digits);
        return value;
    }
    // Hours, and minutes and seconds as wanted.
    std::int64_t time() {
        const bool negative = take('-');
        if (!negative) take('+');
        std::int64_t seconds = std::int64_t{number()} * 3600;
        if (take(':')) seconds += std::int64_t{number()} * 60;
        if (take(':')) seconds += number();
        return negative ? -seconds : seconds;
    }
};

}  // namespace

std::optional<local_offset> local_offset::fixed(std::string_view text) {
    local_offset made;
    made.name_ = text;
    if (text == "Z" || text == "z") return made;
    unsigned hours = 0;
    unsigned minutes = 0;
    if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':' ||
        !spi_object::parse_digits(text.substr(1, 2), hours) ||
        !spi_object::parse_digits(text.substr(4), minutes) || minutes % 30 != 0 || minutes > 59 || hours > 15)
        return std::nullopt;
    made.first_ = std::int64_t{hours} * 3600 + std::int64_t{minutes} * 60;
    if (text[0] == '-') made.first_ = -made.first_;
    return made;
}

std::optional<local_offset> local_offset::zone(const std::string& name, std::string& error) {
    const char* const given = std::getenv("TZDIR");
    const std::string folder = given != nullptr && *given != '\0' ? given : "/usr/share/zoneinfo";
    const bool odd =
        name.empty() || name.front() == '/' || name.find("..") != std::string::npos ||
        name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_+-/") !=
            std::string::npos;
    std::string why;
    std::optional<std::string> content;
    if (!odd) content = read_whole_file(folder + "/" + name, why);
    std::optional<local_offset> made = content ? tzif(*content) : std::nullopt;
    if (made) {
        made->name_ = name;
        return made;
    }
    std::string unused;
    if (!read_whole_file(folder + "/UTC", unused)) {
        error = "there is no time zone data in " + printable(folder) +
                "; install the package tzdata, or give --offset +01:00 instead";
    } else {
        error = in_quotes(name) + " is no time zone in " + printable(folder) +
                "; names are like Europe/London or Europe/Oslo";
    }
    return std::nullopt;
}

std::optional<local_offset> local_offset::tzif(std::string_view content) {
    std::optional<block> header = read_header(content, 4);
    if (!header) return std::nullopt;
    if (content[4] >= '2') {  // the first block is for readers of 32 bits
        content.remove_prefix(kHeader + header->size());
        header = read_header(content, 8);
        if (!header) return std::nullopt;
    }
    const std::string_view body = content.substr(kHeader);
    const std::size_t types = header->time_count * (header->time_size + 1);
    const auto offset_of = [&](std::size_t type) { return big_endian(body.substr(types + type * 6, 4)); };
    local_offset made;
    made.first_ = offset_of(0);
    for (std::size_t i = 0; i < header->time_count; ++i) {
        const auto type = static_cast<unsigned char>(body[header->time_count * header->time_size + i]);
        if (type >= header->type_count) return std::nullopt;
        made.transitions_.push_back(
            {big_endian(body.substr(i * header->time_size, header->time_size)), offset_of(type)});
    }
    std::string_view footer = body.substr(header->size());
    if (header->time_size == 8 && footer.size() > 2 && footer.front() == '\n')
        made.rule_ = read_rule(footer.substr(1, footer.find('\n', 1) - 1));
    return made;
}

std::optional<local_offset::rule> local_offset::read_rule(std::string_view text) {
    rule_reader in{text};
    rule read;
    in.name();
    read.standard = -in.time();  // POSIX counts west
    if (in.good && in.rest.empty()) return read;
    read.has_summer = true;
    in.name();
    read.summer = read.standard + 3600;
    if (in.good && !in.rest.empty() && in.rest.front() != ',') read.summer = -in.time();
    for (change_day* each : {&read.begin, &read.end}) {
        in.good = in.good && in.take(',');
        each->kind = in.take('M') ? 'M' : in.take('J') ? 'J' : '0';
        if (each->kind == 'M') {
            each->month = in.number();
            in.good = in.good && in.take('.');
            each->week = in.number();
            in.good = in.good && in.take('.');
            in.good = in.good && each->month >= 1 && each->month <= 12 && each->week >= 1 && each->week <= 5;
        }
        each->day = in.number();
        in.good = in.good && each->day <= (each->kind == 'M' ? 6 : 366);
        if (in.take('/')) each->time = in.time();
    }
    if (!in.good || !in.rest.empty()) return std::nullopt;
    return read;
}

// In seconds of local time.
std::int64_t local_offset::moment_of(const change_day& day, int year) {
    if (day.kind == '0') return (day_number(year, 1, 1) + day.day) * kDay + day.time;
    if (day.kind == 'J') {
        const int leap = is_leap(year) && day.day >= 60 ? 1 : 0;
        return (day_number(year, 1, 1) + day.day - 1 + leap) * kDay + day.time;
    }
    const std::int64_t first = day_number(year, day.month, 1);
    const std::int64_t behind =
        day.month == 12 ? day_number(year + 1, 1, 1) : day_number(year, day.month + 1, 1);
    const std::int64_t weekday = ((first + 4) % 7 + 7) % 7;  // 1970-01-01 was a Thursday
    std::int64_t wanted = first + (day.day - weekday + 7) % 7 + (day.week - 1) * 7;
    if (wanted >= behind) wanted -= 7;
    return wanted * kDay + day.time;
}

std::int64_t local_offset::by_rule(const rule& of, std::int64_t instant) {
    if (!of.has_summer) return of.standard;
    const int year = 1970 + static_cast<int>((instant + of.standard) / 31556952);
    // Around the turn of a year the estimate may be one off; a summer time may go over it, too.
    for (int each = year - 1; each <= year + 1; ++each) {
        const std::int64_t begin = moment_of(of.begin, each) - of.standard;
        std::int64_t end = moment_of(of.end, each) - of.summer;
        if (end < begin) end = moment_of(of.end, each + 1) - of.summer;
        if (instant >= begin && instant < end) return of.summer;
    }
    return of.standard;
}

std::int64_t local_offset::at(std::int64_t instant) const {
    const auto next = std::upper_bound(transitions_.begin(), transitions_.end(), instant,
                                       [](std::int64_t a, const transition& b) { return a < b.instant; });
    if (next == transitions_.end() && rule_) return by_rule(*rule_, instant);
    return next == transitions_.begin() ? first_ : std::prev(next)->offset;
}

std::int64_t local_offset::at_local(std::int64_t local) const {
    // The offsets of a day before and a day behind: of those, the ones that fit.
    const std::int64_t before = at(local - kDay);
    const std::int64_t behind = at(local + kDay);
    if (at(local - before) == before) return before;
    return at(local - behind) == behind ? behind : before;
}

}  // namespace dabspi
