#include "tests/soak/library_model.h"

#include "testkit/ensemble/calendar.h"
#include "testkit/ensemble/ensemble.h"

namespace soak {
namespace {

constexpr std::size_t kLargestLogo = 22528;
constexpr std::uint8_t kSmall = 3;
constexpr std::uint8_t kLarge = 4;

std::string id_text(const spi::ServElemId& id) {
    return number_text("%02X.%X.%u", unsigned{id.ecc}, id.sid, unsigned{id.scids});
}

std::string time_text(const spi::MotDateTime& t) {
    return number_text("%u-%02u-%02u %02u:%02u", unsigned{t.year}, unsigned{t.month}, unsigned{t.day},
                       unsigned{t.hour}, unsigned{t.minute});
}

// A programme's start on the local clock. An unset one reads as a date that never was.
spi::MotDateTime local_start(const spi::PiScheduleProgramme& p) {
    if (p.time.mjd == 0) return {1859, 255, 19, 0, 0};
    const int minute = p.time.hour * 60 + p.time.minute + p.time.lto * 30;
    const long day = static_cast<long>(p.time.mjd) + (minute < 0 ? -1 : minute >= kDayMinutes ? 1 : 0);
    spi::MotDateTime t = date_time_of(day, 0);
    // Before midnight of the coded day the minute wraps in 16 bits, and the hour is cut to eight.
    const int wrapped = minute < 0 ? 65536 + minute : minute % kDayMinutes;
    t.hour = static_cast<std::uint8_t>(wrapped / 60 % 256);
    t.minute = static_cast<std::uint8_t>(wrapped % 60);
    return t;
}

// The station's part of a file name: unpadded numbers; a service identifier of 32 bits stands alone.
std::string file_of(const said_logo& logo) {
    const char* const ending = logo.format == kPngFormat ? "PNG" : logo.format == 1 ? "JPG" : "";
    const std::string station = logo.station.sid > 0xFFFF
                                    ? number_text("%X", logo.station.sid)
                                    : number_text("%X%X%X", unsigned{logo.station.ecc}, logo.station.sid,
                                                  unsigned{logo.station.scids});
    return station + number_text("_%X.", unsigned{logo.size}) + ending;
}

}  // namespace

std::string reported_programme(const spi::ServElemId& service, const spi::MotDateTime& start,
                               unsigned minutes, const std::string& name) {
    return "programme " + id_text(service) + ' ' + time_text(start) + ' ' + std::to_string(minutes) + ' ' +
           name;
}

std::string reported_now_next(const spi::MotDateTime& now, unsigned now_minutes, const std::string& now_name,
                              const spi::MotDateTime& next, unsigned next_minutes,
                              const std::string& next_name) {
    return "now " + time_text(now) + ' ' + std::to_string(now_minutes) + ' ' + now_name + " | next " +
           time_text(next) + ' ' + std::to_string(next_minutes) + ' ' + next_name;
}

std::string reported_logo(const spi::ServElemId& station, unsigned format, int size,
                          const std::string& file) {
    return "logo " + id_text(station) + ' ' + std::to_string(format) + ' ' + std::to_string(size) + ' ' +
           file;
}

void library_model::report(const std::vector<event_db::notice>& notices) {
    for (const event_db::notice& n : notices) {
        const unsigned minutes = n.programme.duration / 60U;
        if (n.kind == event_db::notice::kStored) {
            database_reported_.push_back(
                reported_programme(n.service, local_start(n.programme), minutes, n.programme.name));
        } else {
            database_reported_.push_back(reported_now_next(local_start(n.programme), minutes,
                                                           n.programme.name, local_start(n.next),
                                                           n.next.duration / 60U, n.next.name));
        }
    }
}

void library_model::set_date_time(const spi::MotDateTime& t) {
    if (t.day != day_of_month_) {
        if (day_of_month_ != 0) read_.clear();
        day_of_month_ = t.day;
    }
    report(database_.date_time(t));
}

void library_model::clear() {
    read_.clear();
    announced_.clear();
    report(database_.clear());
}

void library_model::set_service(const spi::ServElemId& service, std::uint16_t ensemble) {
    if (ensemble != host_ensemble_) {
        if (host_ensemble_ != 0) clear();
        if (ensemble != 0) parser_ensemble_ = ensemble;
        host_ensemble_ = ensemble;
        ++seen.ensembles;
    }
    report(database_.service(service));
}

void library_model::resend() {
    report(database_.resend());
}

bool library_model::is_repeat(const carousel_object& object, const object_version& version) {
    const auto [known, is_new] = read_.try_emplace({key_of(object.data_service), object.name},
                                                   read_object{version.bytes.size(), version.from_minute});
    if (is_new) return false;
    if (known->second.size == version.bytes.size()) {
        ++seen.repeated;
        if (known->second.version != version.from_minute) ++seen.same_size;
        return true;
    }
    known->second = {version.bytes.size(), version.from_minute};
    ++seen.changed;
    return false;
}

bool library_model::feed(const carousel_object& object, const object_version& version) {
    if (object.content_type == kImage) {
        take_image(object, version.bytes);
        return false;
    }
    if (object.content_type != kSpiObject || is_repeat(object, version)) return false;
    ++seen.read;
    if (object.content_subtype == kProgrammeInformation) {
        for (const said_programme& said : version.programmes)
            if (said.ensemble == parser_ensemble_) report(database_.programme(said.service, said.programme));
    }
    if (object.content_subtype == kServiceInformation) {
        for (const said_logo& logo : version.logos)
            announced_[{key_of(object.data_service), logo.content_name}].push_back(logo);
    }
    return true;
}

void library_model::take_image(const carousel_object& object, const spi_builder::bytes& bytes) {
    if (object.content_subtype != kJfif && object.content_subtype != kPng) return;
    const auto found = announced_.find({key_of(object.data_service), object.name});
    if (found == announced_.end()) {
        ++seen.images_unknown;
        return;
    }
    for (const said_logo& logo : found->second) {
        said_logo large = logo;
        large.size = kLarge;
        if (logo.size == kSmall && files_.count(file_of(large)) != 0) {
            ++seen.images_skipped;
            continue;
        }
        if (logo.format != kPngFormat || logo.station.sid > 0xFFFF || bytes.size() > kLargestLogo ||
            (logo.size != kSmall && logo.size != kLarge)) {
            ++seen.images_refused;
            continue;
        }
        files_[file_of(logo)] = bytes;
        logos_reported_.push_back(reported_logo(logo.station, logo.format, logo.size, file_of(logo)));
        ++seen.images_written;
    }
    announced_.erase(found);
}

}  // namespace soak
