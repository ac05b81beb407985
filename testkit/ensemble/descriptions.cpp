// Service information and the images that it announces: sizes that are written and sizes that are not, the
// same logo under several names, names that never arrive, images that nobody announced.
#include "testkit/ensemble/dice.h"
#include "testkit/ensemble/ensemble.h"

namespace soak {
namespace {

constexpr std::uint8_t kJpegFormat = 1;

struct logo_kind {
    const char* name;  // behind the station's number
    const char* mime;
    std::uint8_t format;
    std::uint8_t size_code;
    std::uint16_t width;
    std::uint16_t height;
    std::uint16_t subtype;
    unsigned bytes;  // about
};

constexpr logo_kind kLogos[] = {
    {"_32x32.png", "image/png", kPngFormat, 1, 32, 32, kPng, 300},
    {"_112x32.png", "", kPngFormat, 2, 112, 32, kPng, 600},
    {"_128x128.png", "image/png", kPngFormat, 3, 128, 0, kPng, 1800},
    {"_320x240.PNG", "", kPngFormat, 4, 320, 240, kPng, 4000},
    {"_600x600.png", "image/png", kPngFormat, 5, 0, 600, kPng, 6000},
    {"_128x128.jpg", "", kJpegFormat, 3, 128, 128, kJfif, 1500},
    {"_128x128.gif", "", 0, 3, 128, 128, kPng, 900},
    {"_320x240.jpg", "image/jpeg", kJpegFormat, 4, 320, 240, kJfif, 3000},
};

spi_builder::bytes image_bytes(std::uint64_t seed, long day, std::size_t size) {
    dice random(seed, static_cast<std::uint64_t>(day % kPeriod), 77);
    spi_builder::bytes out = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    while (out.size() < size)
        out.push_back(static_cast<std::uint8_t>(random.below(256)));
    return out;
}

class description {
 public:
    explicit description(const ensemble& e) : ensemble_(e) {}

    void station_begins(const station& s) {
        services_.emplace_back();
        spi_builder::service_data& service = services_.back();
        service.name.short_name = number_text("S%X", s.id.sid);
        service.name.medium_name = number_text("Station %X.%u", s.id.sid, s.id.scids);
        service.bearers = {coded_id(ensemble_, s.id)};
        station_ = s.id;
    }
    void announce(const logo_kind& kind, const std::string& name) {
        spi_builder::logo_data logo;
        logo.mime = kind.mime;
        logo.url = name;
        if (kind.width != 0) logo.width = kind.width;
        if (kind.height != 0) logo.height = kind.height;
        services_.back().logos.push_back(logo);
        logos_.push_back({station_, kind.format, kind.size_code, name});
    }
    object_version version(int from_minute) const {
        return {from_minute, spi_builder::si_object(0xE1, ensemble_.eid, services_), {}, logos_};
    }

 private:
    const ensemble& ensemble_;
    spi::ServElemId station_;
    std::vector<spi_builder::service_data> services_;
    std::vector<said_logo> logos_;
};

std::string logo_name(const logo_kind& kind, const station& s) {
    return number_text("logos/%X", s.id.sid << 4 | s.id.scids) + kind.name;
}

void add_image(std::vector<carousel_object>& objects, const spi::ServElemId& data_service,
               const std::string& name, std::uint16_t subtype, const spi_builder::bytes& bytes) {
    carousel_object object;
    object.name = name;
    object.content_type = kImage;
    object.content_subtype = subtype;
    object.data_service = data_service;
    object.versions = {{0, bytes}};
    objects.push_back(object);
}

carousel_object si_object_of(const std::string& name, const spi::ServElemId& data_service) {
    carousel_object object;
    object.name = name;
    object.content_subtype = kServiceInformation;
    object.data_service = data_service;
    return object;
}

}  // namespace

void add_descriptions(std::vector<carousel_object>& objects, const ensemble& e, long day) {
    // All stations in one object, with the logos of every kind.
    carousel_object all = si_object_of("si.EHB", e.main_service);
    description everything(e);
    for (const station& s : e.stations) {
        everything.station_begins(s);
        for (const logo_kind& kind : kLogos)
            everything.announce(kind, logo_name(kind, s));
    }
    all.versions = {everything.version(0)};
    objects.push_back(all);

    // Two stations again, in an object whose size changes every three hours: each change announces anew.
    carousel_object changing = si_object_of("si-extra.EHB", e.main_service);
    for (int version = 0; version < 8; ++version) {
        description few(e);
        few.station_begins(e.stations[0]);
        few.announce(kLogos[3], logo_name(kLogos[3], e.stations[0]));
        if (version % 2 == 1) {
            few.station_begins(e.stations[1]);
            few.announce(kLogos[2], logo_name(kLogos[2], e.stations[1]));  // not written beside the large one
        }
        changing.versions.push_back(few.version(180 * version));
    }
    objects.push_back(changing);

    const unsigned scale = 1 + static_cast<unsigned>(day % kPeriod);
    for (const station& s : e.stations) {
        const unsigned number = s.id.sid << 4 | s.id.scids;
        for (const logo_kind& kind : kLogos) {
            const std::string name = logo_name(kind, s);
            add_image(objects, e.main_service, name, kind.subtype,
                      image_bytes(number, day, kind.bytes + 40 * scale + number % 16));
        }
        // A description of its own, with a small logo, one that is not in the carousel, and the large logo
        // under a name without an ending.
        carousel_object own = si_object_of(number_text("si-%X.EHB", number), e.second_service);
        description one(e);
        one.station_begins(s);
        const std::string second = number_text("%X large", number);
        const logo_kind nameless = {"", "image/png", kPngFormat, 4, 320, 240, kPng, 0};
        one.announce(kLogos[2], number_text("http://logos.example/%X/128.png", number));
        one.announce(nameless, second);
        own.versions = {one.version(0)};
        objects.push_back(own);
        // One is as large as a logo may be, one a byte larger and never written.
        const std::size_t size = s.id.sid % 16 == 6 ? 22528 : s.id.sid % 16 == 7 ? 22529 : 2500;
        add_image(objects, e.second_service, second, kPng, image_bytes(number + 1, day, size));
    }
}

}  // namespace soak
