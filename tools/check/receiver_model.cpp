#include "tools/check/receiver_model.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "src/event_db/programme_time.h"
#include "src/logo_db/logo_files.h"
#include "src/logo_db/spi_logo_data.h"
#include "src/parse/spi_body_table.h"
#include "tools/check/input.h"
#include "tools/check/local_day.h"
#include "tools/receiver/receiver_view.h"
#include "tools/spi/decode.h"

namespace dabspi::check {

namespace {

constexpr std::uint16_t kLastReadSubtype = 1;  // of SPI objects
constexpr std::uint16_t kJfif = 1;             // ContentSubType of images
constexpr std::uint16_t kPng = 3;

bool same_date(const spi::MotDateTime& a, const spi::MotDateTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

// The logo files that the listener was told of, by line.
using told_files = std::multimap<std::size_t, std::string>;

class receiver {
 public:
    explicit receiver(const hearing& heard) {
        for (const heard_notification& each : heard.all)
            if (const auto* logo = std::get_if<station_logo>(&each.what))
                told_.emplace(each.line, logo->file);
    }

    void take(const call& next) {
        line_ = next.line;
        std::visit([this](const auto& what) { take(what); }, next.what);
    }

    history finish() {
        note_tomorrows();
        for (const auto& [key, line] : without_tomorrow_)
            if (with_tomorrow_.count(key) == 0)
                out_.missing_tomorrows.push_back({key.first, key.second, line});
        return std::move(out_);
    }

 private:
    // ---- the host's calls ----

    void take(const set_date_time& call) {
        spi::MotDateTime now;
        now.put_date(call.date);
        now.put_time(call.time);
        // The parser looks at the day of the month alone.
        if (now.day != parser_day_) {
            if (parser_year_ != 0) forget_read_objects();
            parser_day_ = now.day;
            parser_year_ = now.year;
        }
        if (clock_.year != 0 && !same_date(clock_, now)) {
            note_tomorrows();
            for (auto& [service, days] : schedules_)
                if (!days.empty()) days.erase(days.begin());
        }
        clock_ = now;
        if (now.year != 0) out_.clock.push_back({line_, minute_of(now)});
    }

    void take(const set_current_service& call) {
        if (call.ensemble != host_ensemble_) {
            if (host_ensemble_ != 0) forget_everything();
            if (call.ensemble != 0) parser_ensemble_ = call.ensemble;
            host_ensemble_ = call.ensemble;
        }
        out_.listened.insert(id_of(call.service));
    }

    void take(const resend_now_next&) {}

    void take(const feed_mot_body& call) {
        const std::size_t object = object_of(call);
        switch (call.content_type) {
            case kSpiContent: take_spi(object); break;
            case kImageContent:
                arrive(object, object_arrival::image);
                take_image(object);
                break;
            default: arrive(object, object_arrival::content_type); break;
        }
    }

    // ---- objects ----

    using object_key = std::tuple<unsigned, unsigned, spi::ServElemId, std::string>;

    std::size_t object_of(const feed_mot_body& call) {
        const spi::ServElemId service = id_of(call.service);
        const object_key key{call.content_type, call.content_subtype, service, call.content_name};
        const auto [first, last] = known_.equal_range(key);
        const auto same = std::find_if(first, last, [&](const auto& entry) {
            const auto& body = out_.objects[entry.second].body;
            return body == call.body || *body == *call.body;
        });
        if (same != last) {
            out_.objects[same->second].lines.push_back(line_);
            return same->second;
        }
        sent_object object{
            call.content_name, call.content_type, call.content_subtype, service, call.body, {line_}, {}};
        if (call.content_type == kSpiContent)
            object.tree = spi_object::decode(*call.body, {call.content_subtype});
        out_.objects.push_back(std::move(object));
        known_.emplace(key, out_.objects.size() - 1);
        return out_.objects.size() - 1;
    }

    void arrive(std::size_t object, object_arrival::fate_t fate, std::size_t before = 0) {
        out_.arrivals.push_back({line_, object, fate, before});
    }

    void take_spi(std::size_t object) {
        const sent_object& sent = out_.objects[object];
        const auto size = static_cast<unsigned>(sent.body->size());
        const auto key = std::make_pair(sent.data_service, sent.content_name);
        if (table_.has_body(sent.content_name, size, sent.data_service)) {
            const std::size_t before = remembered_.at(key);
            const sent_object& first = out_.objects[before];
            if (first.subtype != sent.subtype) return arrive(object, object_arrival::blocked, before);
            return arrive(object, before == object ? object_arrival::repeated : object_arrival::changed,
                          before);
        }
        remembered_[key] = object;
        if (sent.subtype > kLastReadSubtype) return arrive(object, object_arrival::subtype);
        arrive(object, object_arrival::read);
        const spi_object::receiver_view taken = spi_object::take(*sent.body, sent.subtype, parser_ensemble_);
        out_.cut = out_.cut || taken.more != 0;
        for (const spi_object::taken_programme& each : taken.programmes)
            take_programme(object, each);
        for (const spi_object::taken_service& each : taken.services)
            take_service(object, each);
    }

    void forget_read_objects() {
        table_.clear();
        remembered_.clear();
    }

    void forget_everything() {
        note_tomorrows();
        ++life_;
        forget_read_objects();
        schedules_.clear();
        waiting_.clear();
    }

    // ---- programmes ----

    void take_programme(std::size_t object, const spi_object::taken_programme& taken) {
        programme_arrival arrival;
        arrival.line = line_;
        arrival.object = object;
        arrival.offset = taken.offset;
        arrival.ensemble = parser_ensemble_;
        arrival.life = life_;
        arrival.service = taken.service;
        arrival.name = taken.programme.name;
        arrival.time = taken.programme.time;
        arrival.duration = taken.programme.duration;
        arrival.start = local_start(taken.programme);
        arrival.fate = taken.dropped ? programme_arrival::without_service : file(taken, arrival);
        out_.programmes.push_back(std::move(arrival));
    }

    programme_arrival::fate_t file(const spi_object::taken_programme& taken, programme_arrival& arrival) {
        if (taken.programme.time.mjd == 0) return programme_arrival::without_start;
        if (clock_.year == 0) return programme_arrival::before_date;
        const int minute = spi::start_minute(taken.programme);
        const std::uint32_t day =
            taken.programme.time.mjd - (minute < 0 ? 1U : 0U) + (minute >= spi::kMinutesPerDay ? 1U : 0U);
        if (!is_date_of(day) && !is_date_of(day - 1)) return programme_arrival::other_day;
        arrival.unreachable = minute < 0;
        const auto [place, is_new] =
            schedules_[arrival.service][day].emplace(minute % spi::kMinutesPerDay, out_.programmes.size());
        arrival.holder = place->second;
        return is_new ? programme_arrival::filed : programme_arrival::minute_taken;
    }

    bool is_date_of(std::uint32_t day) const {
        spi::SpiTimePoint midnight;
        midnight.mjd = day;
        return same_date(midnight.local_time(0), clock_);
    }

    void note_tomorrows() {
        if (clock_.year == 0) return;
        const long today = minute_of(clock_) / kDayMinutes;
        for (const auto& [service, days] : schedules_) {
            if (days.count(static_cast<std::uint32_t>(today)) == 0) continue;
            const auto key = std::make_pair(service, today);
            if (days.count(static_cast<std::uint32_t>(today + 1)) != 0) {
                with_tomorrow_.insert(key);
            } else {
                without_tomorrow_[key] = line_;
            }
        }
    }

    // ---- logos ----

    void take_service(std::size_t object, const spi_object::taken_service& taken) {
        const std::size_t service = out_.services.size();
        out_.services.push_back({line_, object, taken.offset, taken.info.id, taken.info.name});
        if (!taken.info.name.empty()) out_.names[taken.info.id] = taken.info.name;
        auto offset = taken.logo_offsets.begin();
        for (const spi::SpiLogoInfo& logo : taken.info.logos) {
            const spi::ServElemId data_service = out_.objects[object].data_service;
            waiting_[{data_service, logo.name}].push_back(out_.announcements.size());
            out_.announcements.push_back({line_, object, *offset++, service, logo.service, logo.image_format,
                                          logo.size_code, logo.name, spi::SpiLogoData(logo).get_meta().name,
                                          data_service});
        }
    }

    void take_image(std::size_t object) {
        const sent_object& sent = out_.objects[object];
        image_arrival arrival{line_, object};
        arrival.subtype_used = sent.subtype == kJfif || sent.subtype == kPng;
        const auto found = waiting_.find({sent.data_service, sent.content_name});
        if (arrival.subtype_used && found != waiting_.end()) {
            std::multiset<std::string> told;
            for (auto [at, last] = told_.equal_range(line_); at != last; ++at)
                told.insert(at->second);
            for (const std::size_t each : found->second)
                arrival.uses.push_back({each, use(out_.announcements[each], *sent.body, told)});
            waiting_.erase(found);
        }
        out_.images.push_back(std::move(arrival));
    }

    image_arrival::use_t use(const announcement& of, const bytes& body, std::multiset<std::string>& told) {
        spi::SpiLogoInfo logo;
        logo.service = of.station;
        logo.image_format = of.format;
        logo.size_code = of.size_code;
        logo.name = of.file;
        const auto size = static_cast<std::uint32_t>(body.size());
        if (!spi::is_writable_logo(logo, size))
            return spi::is_writable_logo(logo, 0) ? image_arrival::too_large : image_arrival::refused;
        const std::string large =
            spi::station_prefix(of.station.ecc, static_cast<int>(of.station.sid), of.station.scids) + "_4.";
        const auto there = files_.lower_bound(large);
        const auto heard = told.find(of.file);
        // When one image serves both sizes, the order among them is not laid down: the listener knows it.
        if (logo.size_code == spi::LOGO_SIZE_128x128 && there != files_.end() &&
            there->compare(0, large.size(), large) == 0 && heard == told.end())
            return image_arrival::larger_there;
        if (heard != told.end()) told.erase(heard);
        files_.insert(of.file);
        return image_arrival::written;
    }

    history out_;
    std::size_t line_ = 0;
    told_files told_;
    std::multimap<object_key, std::size_t> known_;

    // The server's, the parser's and the database's own notes.
    std::uint16_t host_ensemble_ = 0;
    std::uint16_t parser_ensemble_ = 0;
    std::size_t life_ = 0;
    std::uint8_t parser_day_ = 0;
    std::uint16_t parser_year_ = 0;
    spi::SpiBodyTable table_;
    std::map<std::pair<spi::ServElemId, std::string>, std::size_t> remembered_;  // what the table knows
    spi::MotDateTime clock_;
    std::map<spi::ServElemId, std::map<std::uint32_t, std::map<int, std::size_t>>> schedules_;
    std::map<std::pair<spi::ServElemId, long>, std::size_t> without_tomorrow_;
    std::set<std::pair<spi::ServElemId, long>> with_tomorrow_;

    // The logo store's.
    std::map<std::pair<spi::ServElemId, std::string>, std::vector<std::size_t>> waiting_;
    std::set<std::string> files_;
};

std::string told_text(const spi::ServElemId& service, const spi::MotDateTime& start, unsigned minutes,
                      const std::string& name) {
    return std::to_string(service.val()) + " " + start.date() + " " + start.time() + " " +
           std::to_string(minutes) + " " + name;
}

}  // namespace

history make_history(const recording& from, const hearing& heard) {
    receiver receiving(heard);
    for (const call& each : from.calls)
        receiving.take(each);
    return receiving.finish();
}

std::vector<std::string> disagreements(const history& told, const hearing& heard) {
    // Programmes in their order, logos in any.
    std::map<std::size_t, std::vector<std::string>> expected_programmes, heard_programmes;
    std::map<std::size_t, std::multiset<std::string>> expected_logos, heard_logos;
    for (const programme_arrival& each : told.programmes)
        if (each.fate == programme_arrival::filed)
            expected_programmes[each.line].push_back(
                told_text(each.service, each.time.local_time(0), each.duration / 60, each.name));
    for (const image_arrival& each : told.images)
        for (const image_arrival::use& use : each.uses)
            if (use.how == image_arrival::written)
                expected_logos[each.line].insert(told.announcements[use.announcement].file);
    for (const heard_notification& each : heard.all) {
        if (const auto* programme = std::get_if<programme_info>(&each.what)) {
            heard_programmes[each.line].push_back(told_text(id_of(programme->service), programme->item.start,
                                                            programme->item.duration, programme->item.name));
        } else if (const auto* logo = std::get_if<station_logo>(&each.what)) {
            heard_logos[each.line].insert(logo->file);
        }
    }
    std::vector<std::string> lines;
    const auto compare = [&](const auto& expected, const auto& real, const char* things) {
        std::set<std::size_t> all;
        for (const auto& [line, what] : expected)
            all.insert(line);
        for (const auto& [line, what] : real)
            all.insert(line);
        for (const std::size_t line : all) {
            const auto ours = expected.find(line);
            const auto theirs = real.find(line);
            if (ours != expected.end() && theirs != real.end() && ours->second == theirs->second) continue;
            lines.push_back("line " + std::to_string(line) + ": " +
                            std::to_string(theirs == real.end() ? 0 : theirs->second.size()) + " " + things +
                            " were reported, and " +
                            std::to_string(ours == expected.end() ? 0 : ours->second.size()) +
                            " are explained, or they differ");
        }
    };
    if (!told.cut) compare(expected_programmes, heard_programmes, "programmes");
    compare(expected_logos, heard_logos, "logos");
    return lines;
}

}  // namespace dabspi::check
