#include "src/parse/spi_time_point.h"

#include "src/parse/reader/spi_parseable.h"

namespace spi {
namespace {

constexpr std::int64_t kFirstWholeDay = 15079;     // 1900-03-01, the first day that the formula holds for
constexpr std::int64_t kLastWholeDay = 1'000'000;  // so that nothing below leaves 32 bits

// The same formula in whole numbers: none of its quotients comes near enough to a whole number for double
// precision to matter. Cheaper on every processor, and much cheaper on one without double precision.
void put_calendar_date_of_whole_days(std::uint32_t days, MotDateTime& out) {
    const std::uint32_t y = (days * 100 - 1507820) / 36525;
    const std::uint32_t days_of_years = y * 1461 / 4;
    const std::uint32_t m = (days * 10 - 149561 - days_of_years * 10) * 1000 / 306001;
    const std::uint32_t k = (m == 14 || m == 15) ? 1 : 0;
    out.day = static_cast<std::uint8_t>(days - 14956 - days_of_years - m * 306001 / 10000);
    out.year = static_cast<std::uint16_t>(y + 1900 + k);
    out.month = static_cast<std::uint8_t>(m - 1 - 12 * k);
}

// The calendar date of a Modified Julian Date by the formula of ETSI EN 300 468, Annex C, in double
// precision. The formula holds from 1900-03-01 to 2100-02-28; what it gives outside is kept (day 0 is
// 1859-255-19). 64-bit intermediates: day 0 minus one must not wrap.
void put_calendar_date(std::int64_t mjd, MotDateTime& out) {
    if (mjd >= kFirstWholeDay && mjd <= kLastWholeDay) {
        return put_calendar_date_of_whole_days(static_cast<std::uint32_t>(mjd), out);
    }
    const auto days = static_cast<double>(mjd);
    const auto y = static_cast<std::int64_t>((days - 15078.2) / 365.25);
    const auto days_of_years = static_cast<std::int64_t>(static_cast<double>(y) * 365.25);
    const auto m = static_cast<std::int64_t>((days - 14956.1 - static_cast<double>(days_of_years)) / 30.6001);
    const auto days_of_months = static_cast<std::int64_t>(static_cast<double>(m) * 30.6001);
    const std::int64_t k = (m == 14 || m == 15) ? 1 : 0;
    out.day = static_cast<std::uint8_t>(mjd - 14956 - days_of_years - days_of_months);
    out.year = static_cast<std::uint16_t>(y + 1900 + k);
    out.month = static_cast<std::uint8_t>(m - 1 - 12 * k);
}

}  // namespace

int SpiTimePoint::parse(spi_parseable& attr) {
    const unsigned a = attr.ru8();
    const unsigned b = attr.ru8();
    const unsigned c = attr.ru8();
    mjd = (a & 0x7F) << 10 | b << 2 | c >> 6;
    const bool offset_coded = (c & 0x10) != 0;
    const bool long_form = (c & 0x08) != 0;
    const unsigned d = attr.ru8();
    hour = static_cast<std::uint8_t>((c & 0x07) << 2 | d >> 6);
    minute = static_cast<std::uint8_t>(d & 0x3F);
    if (long_form) {
        const unsigned e = attr.ru8();
        // Modulo 63: a coded 63 (and a missing byte) reads as 0. Deliberate.
        second = static_cast<std::uint8_t>((e >> 2) % 63);
        attr.ru8();  // the low bits of the milliseconds
    }
    if (offset_coded) {
        const int f = attr.ru8();
        // The magnitude is taken modulo 31 over the whole byte, its sign bit included. Deliberate: a negative
        // offset comes out one half-hour larger than coded (0x22, minus two, reads -3), and a missing byte
        // reads -7.
        const int magnitude = f % 31;
        lto = static_cast<std::int8_t>((f & 0x20) != 0 ? -magnitude : magnitude);
    }
    return 0;
}

MotDateTime SpiTimePoint::local_time(unsigned short offset_seconds) const {
    const auto base = static_cast<std::int16_t>(hour * 60 + lto * 30 + minute);
    const auto sum = static_cast<std::int16_t>(base + offset_seconds / 60);

    std::int64_t day = mjd;
    if (sum < 0) day -= 1;
    if (sum >= kMinutesPerDay) day += 1;

    // The remainder keeps the sign of the sum and is then taken as unsigned. Deliberate: a sum of -30 gives
    // minute 65506 of the previous day, which prints as hour 67, minute 46.
    const auto minute_of_day = static_cast<std::uint16_t>(sum % kMinutesPerDay);
    MotDateTime local;
    local.hour = static_cast<std::uint8_t>(minute_of_day / 60);
    local.minute = static_cast<std::uint8_t>(minute_of_day % 60);
    put_calendar_date(day, local);
    return local;
}

}  // namespace spi
