#include "tools/check/folder.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <utility>

#include "tools/check/local_day.h"
#include "tools/inspect/image_header.h"
#include "tools/inspect/inspected.h"
#include "tools/receiver/receiver_view.h"
#include "tools/spi/decode.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

// The data service does not stand in the bodies; any will do, as long as all come with the same one.
constexpr std::uint32_t kSomeDataService = 0x00000FFE;

std::uint16_t image_subtype(const bytes& body) {
    const auto header = read_image_header(body);
    const std::string kind = header ? header->kind : "";
    return kind == "PNG" ? 3 : kind == "BMP" ? 2 : kind == "JPEG" ? 1 : 0;
}

std::string hexadecimal(std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(value));
    return text;
}

// The most frequent; the smallest of several.
template <class Key>
std::optional<Key> most_frequent(const std::map<Key, std::size_t>& counts) {
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == counts.end() ? std::nullopt : std::optional(most->first);
}

class folder_reader {
 public:
    folder_reader(const std::string& path, const folder_options& options) : options_(options) {
        in_.folder = true;
        in_.calls.name = path;
    }

    checked_input read() {
        gather_options how;
        how.limit = options_.limit;
        gathered found = gather({in_.calls.name}, how);
        in_.errors = std::move(found.errors);
        for (const inspected_body& each : found.bodies)
            sort_in(each);
        if (!in_.errors.empty()) return std::move(in_);
        if (objects_.empty() && images_.empty()) {
            in_.errors.push_back(printable(in_.calls.name) +
                                 ": there is no SPI object and no image in the folder");
            return std::move(in_);
        }
        set_ensemble();
        look_into_objects();
        set_clock();
        set_service();
        make_calls();
        return std::move(in_);
    }

 private:
    void sort_in(const inspected_body& body) {
        if (body.kind == body_kind::other) {
            in_.said.push_back(printable(body.source) + ": left out, it is " + body.what);
        } else if (body.kind == body_kind::image) {
            images_.push_back(body);
        } else {
            object one{body, spi_object::decode(*body.body)};
            objects_.push_back(std::move(one));
        }
    }

    void set_ensemble() {
        if (options_.ensemble) {
            ensemble_ = *options_.ensemble;
            return;
        }
        // Programmes need it: theirs counts more than that of service information, which may be for others.
        std::map<std::uint16_t, std::size_t> schedules, others;
        for (const object& each : objects_) {
            const auto home = spi_object::home_ensemble(each.tree);
            const bool pi = each.tree.kind == spi_object::object_kind::programme_information;
            if (home) ++(pi ? schedules : others)[*home];
        }
        const auto guess = most_frequent(schedules.empty() ? others : schedules);
        ensemble_ = guess.value_or(1);
        in_.said.push_back(guess ? "the ensemble is taken to be " + hexadecimal(ensemble_) +
                                       ", which most objects name; --ensemble sets it"
                                 : "no object names an ensemble; --ensemble sets it");
    }

    void look_into_objects() {
        for (const object& each : objects_) {
            const auto taken =
                spi_object::take(*each.body.body, spi_object::natural_subtype(each.tree), ensemble_);
            for (const auto& one : taken.programmes) {
                if (one.dropped || one.programme.time.mjd == 0) continue;
                ++days_[local_start(one.programme) / kDayMinutes];
                ++services_[one.service];
            }
            for (const auto& one : taken.services)
                if (one.info.id.sid != 0 && one.info.id.sid < 0x10000) announced_.push_back(one.info.id);
        }
    }

    void set_clock() {
        if (options_.clock) {
            clock_ = *options_.clock;
            return;
        }
        // The first day for which it and the day behind it hold the most.
        long best = 0;
        std::size_t most = 0;
        for (const auto& [day, count] : days_) {
            const auto tomorrow = days_.find(day + 1);
            const std::size_t both = count + (tomorrow == days_.end() ? 0 : tomorrow->second);
            if (both > most) best = day;
            most = std::max(most, both);
        }
        if (most == 0) best = kSomeDay;
        clock_ = date_time_of(best * kDayMinutes + kNoon);
        in_.said.push_back(most == 0
                               ? "no programme has a date; --date sets it"
                               : "the date is taken to be " + clock_.date() +
                                     ", noon, the day of most programmes with the next; --date sets it");
    }

    void set_service() {
        if (options_.service) {
            service_ = *options_.service;
            return;
        }
        auto guess = most_frequent(services_);
        const char* why = ", the one with most programmes";
        if (!guess && !announced_.empty()) {
            guess = announced_.front();
            why = ", the first one announced";
        }
        if (guess) service_ = *guess;
        in_.said.push_back(guess ? "the service is taken to be " + service_text(service_) + why +
                                       "; --service sets it"
                                 : "no object names a service; --service sets it");
    }

    void make_calls() {
        in_.files.emplace_back();
        const auto add = [this](auto what, const std::string& file) {
            in_.calls.calls.push_back({in_.files.size(), std::move(what)});
            in_.files.push_back(file);
        };
        char date[16];
        char time[8];
        std::snprintf(date, sizeof date, "%04u%02u%02u", unsigned{clock_.year}, unsigned{clock_.month},
                      unsigned{clock_.day});
        std::snprintf(time, sizeof time, "%02u%02u", unsigned{clock_.hour}, unsigned{clock_.minute});
        add(set_date_time{date, time}, in_.calls.name);
        add(set_current_service{{service_.sid, service_.ecc, service_.scids}, ensemble_}, in_.calls.name);
        for (std::uint16_t subtype = 0; subtype <= 2; ++subtype)
            for (const object& each : objects_)
                if (spi_object::natural_subtype(each.tree) == subtype)
                    add(call_of(each.body, kSpiContent, subtype), each.body.source);
        for (const inspected_body& each : images_)
            add(call_of(each, kImageContent, image_subtype(*each.body)), each.source);
    }

    feed_mot_body call_of(const inspected_body& body, std::uint8_t type, std::uint16_t subtype) const {
        feed_mot_body call;
        call.content_type = type;
        call.content_subtype = subtype;
        call.content_name =
            std::filesystem::path(body.source).lexically_relative(in_.calls.name).generic_string();
        call.service = {std::uint32_t{service_.ecc} << 24 | kSomeDataService, service_.ecc, 0};
        call.body = body.body;
        return call;
    }

    struct object {
        inspected_body body;
        spi_object::object tree;
    };

    const folder_options& options_;
    checked_input in_;
    std::vector<object> objects_;
    std::vector<inspected_body> images_;
    std::map<long, std::size_t> days_;  // programmes by local day
    std::map<spi::ServElemId, std::size_t> services_;
    std::vector<spi::ServElemId> announced_;
    std::uint16_t ensemble_ = 0;
    spi::MotDateTime clock_;
    spi::ServElemId service_;
};

}  // namespace

checked_input read_folder(const std::string& path, const folder_options& options) {
    return folder_reader(path, options).read();
}

}  // namespace dabspi::check
