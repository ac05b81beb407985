#include "examples/generator/carousel.h"

#include "examples/generator/image_files.h"
#include "examples/generator/scene.h"

namespace generator {

using namespace spi_builder;

namespace {

constexpr int block = 8;  // pixels of a JPEG block

struct size {
    int width;
    int height;
};

// The order of the two sizes that a receiver keeps differs from station to station.
std::vector<size> sizes_of(const station& which) {
    const size small = {128, 128};
    const size large = {320, 240};
    std::vector<size> out =
        which.id.sid % 2 != 0 ? std::vector<size>{small, large} : std::vector<size>{large, small};
    if (which.all_sizes) out.insert(out.end(), {{32, 32}, {112, 32}, {600, 600}});
    return out;
}

bytes picture(const station& which, const size& wanted) {
    if (which.jpeg_logos)
        return jfif_file(draw_logo(which.logo, wanted.width / block, wanted.height / block));
    if (which.oversize_logo && wanted.width == 320) return oversize_png();
    return png_file(draw_logo(which.logo, wanted.width, wanted.height));
}

std::string url_of(const std::string& prefix, const station& which, const size& wanted) {
    return prefix + picture_name(which, wanted.width, wanted.height);
}

// The small sizes have types of their own and need no width and height. Every third station leaves the MIME
// type out: the ending of the name tells.
logo_data announcement(const std::string& prefix, const station& which, const size& wanted) {
    const std::string mime = which.jpeg_logos ? "image/jpeg" : "image/png";
    logo_data out = logo(which.id.sid % 3 == 0 ? "" : mime, url_of(prefix, which, wanted),
                         static_cast<std::uint16_t>(wanted.width), static_cast<std::uint16_t>(wanted.height));
    if (wanted.height == 32) {
        out.type = wanted.width == 32 ? logo_colour_square : logo_colour_rectangle;
        out.width.reset();
        out.height.reset();
    }
    return out;
}

std::vector<service_data> descriptions(const std::vector<station>& stations, const std::string& prefix) {
    std::vector<service_data> out;
    for (const station& one : stations) {
        service_data service;
        service.name = one.name;
        service.bearers = {one.id};
        for (const size& wanted : sizes_of(one))
            service.logos.push_back(announcement(prefix, one, wanted));
        out.push_back(service);
    }
    return out;
}

bytes schedule_object(const station& which, std::uint32_t day, bool with_seconds) {
    schedule_data out;
    out.scope = which.id;
    out.scope_start = local_time(day, 0, 0, 2);
    out.scope_stop = local_time(day, 24, 0, 2);
    out.programmes = programmes_of(which, day);
    if (with_seconds) {
        for (programme_data& one : out.programmes)
            one.start.fraction = utc_fraction{30, 500};
    }
    return pi_object({out}, which.tokens);
}

// The date of a day number in the one month that is needed.
std::string march_2026(std::uint32_t day) {
    const std::string digits = std::to_string(day - mjd(2026, 3, 1) + 1);
    return "202603" + std::string(2 - digits.size(), '0') + digits;
}

struct ensemble {
    const std::vector<station>& stations;
    std::uint32_t data_service;
    const char* name;
    std::string announced_prefix;  // of logo names, as coded (may be a token)
    std::string prefix;            // as it reads
    tokens table;
    bool with_seconds;
};

std::vector<carousel_object> one_round(const ensemble& what, const std::string& date, file_set& files) {
    std::vector<carousel_object> out;
    const auto send = [&](const mot_object& header, const std::string& file, const bytes& body) {
        files.add("objects/" + file, body);
        out.push_back({header, "objects/" + file});
    };
    const std::uint32_t today_number = day_number(date);
    for (std::size_t i = 0; i < what.stations.size(); ++i) {
        const station& one = what.stations[i];
        if (i == what.stations.size() / 2) {
            const std::string name = std::string("si-") + what.name;
            send(service_information(name + ".ehb", what.data_service), name + ".bin",
                 si_object(ecc, one.id.eid, descriptions(what.stations, what.announced_prefix), what.table));
        }
        for (const std::uint32_t day : {today_number, today_number + 1}) {
            const std::string name = std::string("pi-") + one.file_stem + '-' + march_2026(day);
            send(programme_information(name + ".ehb", what.data_service), name + ".bin",
                 schedule_object(one, day, what.with_seconds));
        }
        for (const size& wanted : sizes_of(one)) {
            const std::string file = one.oversize_logo && wanted.width == 320
                                         ? "oversize-320x240.png"
                                         : picture_name(one, wanted.width, wanted.height);
            send(image_object(one.jpeg_logos ? subtype_jfif : subtype_png, url_of(what.prefix, one, wanted),
                              what.data_service),
                 file, picture(one, wanted));
        }
    }
    return out;
}

}  // namespace

std::vector<carousel_object> home_round(const std::string& date, file_set& files) {
    return one_round({home_stations(), home_data_service, "10c1", "", "", {}, false}, date, files);
}

// The other ensemble codes seconds in its times (a receiver here shows minutes only) and uses a token in logo
// names.
std::vector<carousel_object> other_round(const std::string& date, file_set& files) {
    return one_round(
        {other_stations(), other_data_service, "10c2", "\x01", "logos/", {{0x01, "logos/"}}, true}, date,
        files);
}

}  // namespace generator
