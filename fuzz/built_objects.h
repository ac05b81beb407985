// Objects made from fuzzer input, together with what a receiver must read in them. Written from the
// standard's coding and the receiver's rules, independent of the library.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <string>
#include <vector>

#include "testkit/spi_builder_objects.h"

namespace built {

namespace sb = spi_builder;

struct programme {
    sb::service_id service;
    std::string name;
    std::uint16_t duration = 0;
    std::uint32_t short_id = 0;
    std::uint32_t mjd = 0;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    int lto = 0;
};

struct schedule_object {
    sb::bytes object;
    std::uint16_t eid = 0;
    std::vector<programme> expected;
};

struct logo {
    unsigned format = 0;
    unsigned size_code = 0;
    std::string url;
};

struct service {
    sb::service_id id;
    std::string name;
    std::vector<logo> logos;
};

struct service_object {
    sb::bytes object;
    std::vector<service> expected;
};

inline sb::service_id make_service_id(FuzzedDataProvider& input, std::uint16_t likely_eid) {
    sb::service_id id;
    id.ecc = input.ConsumeIntegral<std::uint8_t>();
    id.eid = input.ConsumeBool() ? likely_eid : input.ConsumeIntegral<std::uint16_t>();
    id.sid =
        input.ConsumeBool() ? input.ConsumeIntegral<std::uint16_t>() : input.ConsumeIntegral<std::uint32_t>();
    id.scids = input.ConsumeIntegralInRange<std::uint8_t>(0, 15);
    return id;
}

inline sb::tokens make_tokens(FuzzedDataProvider& input) {
    sb::tokens table;
    for (int left = input.ConsumeIntegralInRange(0, 5); left > 0; --left) {
        // 0x7F would be no token but a tag that says "nothing here".
        const auto code = input.ConsumeIntegralInRange<std::uint8_t>(0, 0x20);
        table.emplace_back(code, input.ConsumeRandomLengthString(300));
    }
    return table;
}

// The first definition wins; empty texts and those of 256 bytes and more define nothing.
inline std::string expand(const std::string& coded, const sb::tokens& table) {
    std::string text;
    for (const char c : coded) {
        const auto byte = static_cast<std::uint8_t>(c);
        const bool code = byte >= 0x01 && byte <= 0x13 && byte != 0x09 && byte != 0x0A && byte != 0x0D;
        if (!code) {
            text += c;
            continue;
        }
        for (const auto& [defined, meaning] : table) {
            if (defined == byte && !meaning.empty() && meaning.size() <= 255) {
                text += meaning;
                break;
            }
        }
    }
    return text;
}

inline sb::names make_names(FuzzedDataProvider& input) {
    sb::names names;
    names.short_name = input.ConsumeRandomLengthString(8);
    names.medium_name = input.ConsumeRandomLengthString(20);
    names.long_name = input.ConsumeRandomLengthString(300);
    return names;
}

inline bool counts(const sb::service_id& id) {
    return id.sid != 0 && id.ecc != 0;
}

inline schedule_object make_schedules(FuzzedDataProvider& input) {
    schedule_object made;
    made.eid = input.ConsumeIntegral<std::uint16_t>();
    const sb::tokens table = make_tokens(input);
    sb::service_id scope;  // holds for the rest of the object once it is read
    std::vector<sb::schedule_data> schedules;
    for (int left = input.ConsumeIntegralInRange(0, 3); left > 0; --left) {
        sb::schedule_data schedule;
        if (input.ConsumeBool()) {
            schedule.scope = make_service_id(input, made.eid);
            if (schedule.scope->eid == made.eid) scope = *schedule.scope;
        }
        for (int programmes = input.ConsumeIntegralInRange(0, 5); programmes > 0; --programmes) {
            sb::programme_data data;
            data.name = make_names(input);
            data.start.day = input.ConsumeIntegralInRange<std::uint32_t>(0, 0x1FFFF);
            data.start.hour = input.ConsumeIntegralInRange(0U, 23U);
            data.start.minute = input.ConsumeIntegralInRange(0U, 59U);
            if (input.ConsumeBool()) data.start.offset_half_hours = input.ConsumeIntegralInRange(-31, 31);
            if (input.ConsumeBool()) {
                data.start.fraction = sb::utc_fraction{input.ConsumeIntegralInRange(0U, 59U), 0};
            }
            data.duration = input.ConsumeIntegral<std::uint16_t>();
            if (input.ConsumeBool()) data.short_id = input.ConsumeIntegralInRange<std::uint32_t>(0, 0xFFFFFF);
            sb::service_id bearer;
            for (int bearers = input.ConsumeIntegralInRange(0, 2); bearers > 0; --bearers) {
                data.bearers.push_back(make_service_id(input, made.eid));
                if (data.bearers.back().eid == made.eid) bearer = data.bearers.back();
            }

            programme want;
            want.service = counts(scope) ? scope : bearer;
            // Programmes have no short name for a receiver; the long one wins over the medium one.
            // Even one of undefined tokens alone, which leaves nothing.
            want.name =
                expand(data.name.long_name.empty() ? data.name.medium_name : data.name.long_name, table);
            want.duration = data.duration;
            want.short_id = data.short_id.value_or(0);
            want.mjd = data.start.day;
            want.hour = data.start.hour;
            want.minute = data.start.minute;
            want.second = data.start.fraction ? data.start.fraction->second : 0;
            if (data.start.offset_half_hours) {
                // The magnitude is read modulo 31 over the whole byte, its sign bit included.
                const int offset = *data.start.offset_half_hours;
                const int byte = offset < 0 ? 0x20 | -offset : offset;
                want.lto = offset < 0 ? -(byte % 31) : byte % 31;
            }
            if (counts(want.service)) made.expected.push_back(want);
            schedule.programmes.push_back(std::move(data));
        }
        schedules.push_back(std::move(schedule));
    }
    made.object = sb::pi_object(schedules, table);
    return made;
}

inline unsigned size_code(unsigned width, unsigned height) {
    if (width == 0) width = height;
    if (height == 0) height = width;
    if (width == 32 && height == 32) return 1;
    if (width == 112 && height == 32) return 2;
    if (width == 128 && height == 128) return 3;
    if (width == 320 && height == 240) return 4;
    if (width == 600 && height == 600) return 5;
    return width == 0 ? 0 : 6;
}

inline unsigned format(const std::string& mime, const std::string& url) {
    if (mime == "image/jpeg") return 1;
    if (mime == "image/png") return 2;
    const std::size_t dot = url.rfind('.');
    const std::string ext = url.substr(dot == std::string::npos ? 0 : dot + 1, 8);
    if (ext == "png" || ext == "PNG") return 2;
    if (ext == "jpg" || ext == "JPG" || ext == "jpeg") return 1;
    return 0;
}

inline service_object make_services(FuzzedDataProvider& input) {
    service_object made;
    const sb::tokens table = make_tokens(input);
    std::vector<sb::service_data> services;
    for (int left = input.ConsumeIntegralInRange(0, 4); left > 0; --left) {
        sb::service_data data;
        service want;
        data.name = make_names(input);
        want.name =
            expand(data.name.medium_name.empty() ? data.name.short_name : data.name.medium_name, table);
        for (int bearers = input.ConsumeIntegralInRange(0, 2); bearers > 0; --bearers) {
            data.bearers.push_back(make_service_id(input, 0x10C1));
            want.id = data.bearers.back();
        }
        for (int logos = input.ConsumeIntegralInRange(0, 4); logos > 0; --logos) {
            static const char* const kMimes[] = {"", "image/png", "image/jpeg", "image/gif"};
            static const char* const kEnds[] = {"", ".png", ".PNG", ".jpg", ".JPG", ".jpeg", ".JPEG", ".Png"};
            static const std::uint16_t kSides[] = {0, 32, 112, 128, 240, 320, 600, 65535};
            sb::logo_data announced;
            announced.mime = input.PickValueInArray(kMimes);
            announced.url = input.ConsumeRandomLengthString(20) + input.PickValueInArray(kEnds);
            logo expected;
            unsigned width = 0;
            unsigned height = 0;
            if (input.ConsumeBool()) {
                announced.type = input.ConsumeIntegralInRange<std::uint8_t>(0, 8);
                if (*announced.type == 4) width = height = 32;
                if (*announced.type == 6) width = 112, height = 32;
            }
            if (input.ConsumeBool()) width = *(announced.width = input.PickValueInArray(kSides));
            if (input.ConsumeBool()) height = *(announced.height = input.PickValueInArray(kSides));
            expected.url = expand(announced.url, table);
            expected.format = format(announced.mime, expected.url);
            expected.size_code = size_code(width, height);
            data.logos.push_back(announced);
            want.logos.push_back(expected);
        }
        made.expected.push_back(std::move(want));
        services.push_back(std::move(data));
    }
    made.object = sb::si_object(0xE0, 0x10C1, services, table);
    return made;
}

}  // namespace built
