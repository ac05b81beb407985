#include "bench/material.h"

#include <algorithm>

namespace bench {
namespace {

using namespace spi_builder;

const tokens& token_texts() {
    static const tokens table = {{0x01, "The "},     {0x02, " with "}, {0x03, "Morning "}, {0x04, "Evening "},
                                 {0x05, "Concert "}, {0x06, "News "},  {0x07, " and "},    {0x08, "Report"}};
    return table;
}

std::string title(unsigned number, bool coded) {
    static const char* const plain[] = {"Morning News and Weather", "The Evening Concert with Guests",
                                        "Book of the Week", "Late Night Report"};
    static const char* const by_tokens[] = {"\x03\x06\x07Weather", "\x01\x04\x05\x02Guests",
                                            "Book of \x01Week", "Late Night \x08"};
    return (coded ? by_tokens : plain)[number % 4] + std::string(" ") + std::to_string(number % 90 + 10);
}

bytes descriptions_of(unsigned number) {
    const std::string text_of_it =
        "Reports, interviews and music from the region, with a guest in the studio and the weather of the "
        "coming day in edition " +
        std::to_string(number % 900 + 100) + ".";
    return join({elem(tag::media_description, {elem(tag::short_description, {text(text_of_it)})}),
                 elem(tag::genre, {attr(0x80, {3, 1, 1})}), elem(tag::genre, {attr(0x80, {3, 6, 4})})});
}

bytes programme_of(unsigned number, unsigned minute, unsigned duration, const coding& how) {
    const utc_time start{today() + minute / 1440, minute % 1440 / 60, minute % 60, 0};
    const bytes location =
        elem(tag::location, {elem(tag::time, {attr(attribute::time::time, time_point(start)),
                                              attr(attribute::time::duration, u16(duration * 60))})});
    return elem(tag::programme,
                {attr(attribute::programme::short_id, u24(0x10000 + number)),
                 elem(tag::medium_name, {text("Edition " + std::to_string(number % 90 + 10))}),
                 elem(tag::long_name, {text(title(number, how.tokens))}), location,
                 how.descriptions ? descriptions_of(number) : bytes()});
}

}  // namespace

std::uint32_t today() {
    return mjd(2026, 3, 10);
}

spi::MotDateTime clock_at(unsigned minute_of_day) {
    return {2026, 3, 10, static_cast<std::uint8_t>(minute_of_day / 60),
            static_cast<std::uint8_t>(minute_of_day % 60)};
}

spi::ServElemId station(unsigned number) {
    return {0x1000 + number, kEcc, 0};
}

bytes programme_object(unsigned station_number, unsigned count, const coding& how) {
    const service_id id{kEcc, kEnsemble, 0x1000 + station_number, 0};
    std::vector<bytes> parts;
    if (how.scope) {
        parts.push_back(elem(
            tag::scope, {attr(attribute::scope::start_time, time_point(utc_time{today(), 0, 0})),
                         attr(attribute::scope::stop_time, time_point(utc_time{today() + 2, 0, 0})),
                         elem(tag::service_scope, {attr(attribute::service_scope::id, content_id(id))})}));
    }
    for (unsigned i = 0; i < count; ++i) {
        const unsigned begin = i * kMinutesOfTwoDays / count;
        const unsigned end = (i + 1) * kMinutesOfTwoDays / count;
        parts.push_back(programme_of(i, begin, std::min(end - begin, 1080U), how));
    }
    std::vector<bytes> object;
    if (how.tokens) object.push_back(token_table(token_texts()));
    object.push_back(elem(tag::schedule, parts));
    return elem(tag::epg, object);
}

bytes service_object(unsigned count, bool tokens_used) {
    std::vector<service_data> services;
    for (unsigned i = 0; i < count; ++i) {
        service_data one;
        one.name.short_name = "R " + std::to_string(i);
        one.name.medium_name = (tokens_used ? "\x01\x05" : "The Concert ") + std::to_string(i);
        one.bearers = {{kEcc, kEnsemble, 0x1000 + i, 0}};
        const std::string stem = "logos/" + std::to_string(0x1000 + i) + "_";
        one.logos = {{"image/png", stem + "32x32.png", logo_colour_square, {}, {}},
                     {"image/png", stem + "112x32.png", logo_colour_rectangle, {}, {}},
                     {"image/png", stem + "128x128.png", logo_unrestricted, 128, 128},
                     {"image/png", stem + "320x240.png", logo_unrestricted, 320, 240}};
        services.push_back(one);
    }
    return si_object(kEcc, kEnsemble, services, tokens_used ? token_texts() : tokens());
}

spi::PiScheduleProgramme programme_at(unsigned minute) {
    spi::PiScheduleProgramme programme;
    programme.eid = kEnsemble;
    programme.crid = 0x10000 + minute;
    programme.name = title(minute, false);
    programme.time.mjd = today() + minute / 1440;
    programme.time.hour = static_cast<std::uint8_t>(minute % 1440 / 60);
    programme.time.minute = static_cast<std::uint8_t>(minute % 60);
    programme.duration = 30 * 60;
    return programme;
}

}  // namespace bench
