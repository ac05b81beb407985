#include "tools/check/folder.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <utility>

#include "src/parse/mot_content.h"
#include "tools/check/dump_names.h"
#include "tools/check/dump_tree.h"
#include "tools/check/local_day.h"
#include "tools/check/logo_text.h"
#include "tools/inspect/image_header.h"
#include "tools/inspect/inspected.h"
#include "tools/receiver/receiver_view.h"
#include "tools/spi/decode.h"
#include "tools/text/hexadecimal.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

// Where no folder says the data service any will do, as long as all objects of a carousel come with the same
// one.
constexpr std::uint32_t kSomeDataService = 0x00000FFE;
constexpr std::size_t kFewFiles = 5;  // that are named when they are left out

std::string image_size(const bytes& body) {
    const auto header = read_image_header(body);
    if (!header || header->width == 0) return {};
    return std::to_string(header->width) + "x" + std::to_string(header->height);
}

std::string ensemble_text(std::optional<std::uint8_t> ecc, std::uint16_t eid) {
    dab_identifier id;
    id.ecc = ecc;
    id.ensemble = eid;
    return id.ensemble_text();
}

// The most frequent; the smallest of several.
template <class Key>
std::optional<Key> most_frequent(const std::map<Key, std::size_t>& counts) {
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == counts.end() ? std::nullopt : std::optional(most->first);
}

// One ensemble's folder as a recording.
class ensemble_reader {
 public:
    ensemble_reader(dumped_ensemble from, const folder_options& options)
        : from_(std::move(from)), options_(options) {
        in_.folder = true;
        in_.calls.name = from_.folder;
    }

    checked_input read() {
        set_ensemble();
        look_into_objects();
        set_clock();
        set_service();
        name_images();
        make_calls();
        return std::move(in_);
    }

 private:
    void set_ensemble() {
        // Programmes need it: theirs counts more than that of service information, which may be for others.
        std::map<std::uint16_t, std::size_t> schedules, others;
        for (const dumped_file& each : from_.files) {
            if (each.is_image()) continue;
            const auto home = spi_object::home_ensemble(each.tree);
            const bool pi = each.tree.kind == spi_object::object_kind::programme_information;
            if (home) ++(pi ? schedules : others)[*home];
        }
        const auto guess = most_frequent(schedules.empty() ? others : schedules);
        ensemble_ = from_.named ? *from_.named : guess.value_or(1);
        if (options_.ensemble) ensemble_ = *options_.ensemble->ensemble;
        set_ecc();
        const std::string text = ensemble_text(in_.ecc, ensemble_);
        if (options_.ensemble) return;
        if (from_.named) {
            in_.said.push_back("ensemble " + text + ", as the folder " + in_quotes(from_.named_by) + " says");
        } else {
            in_.said.push_back(
                guess ? "no ensemble was given: " + text + ", which most objects name"
                      : "no ensemble was given, and no object names one: give it with --ensemble");
        }
    }

    void set_ecc() {
        if (options_.ensemble && options_.ensemble->ecc) {
            in_.ecc = options_.ensemble->ecc;
            return;
        }
        for (const dumped_file& each : from_.files) {
            spi_object::visit(each.tree, [this](const spi_object::node& node, const auto&) {
                const auto* id = std::get_if<spi_object::content_id>(&node.decoded);
                if (!in_.ecc && id != nullptr && id->ensemble_coded && id->eid == ensemble_)
                    in_.ecc = id->ecc;
            });
            if (in_.ecc) return;
        }
    }

    void look_into_objects() {
        for (dumped_file& each : from_.files) {
            if (each.is_image()) continue;
            const auto taken =
                spi_object::take(*each.body.body, spi_object::natural_subtype(each.tree), ensemble_);
            for (const auto& one : taken.programmes) {
                if (one.dropped || one.programme.time.mjd == 0) continue;
                cover(local_start(one.programme), one.programme.duration / 60);
                ++services_[one.service];
            }
            for (const auto& one : taken.services) {
                if (one.info.id.sid != 0 && one.info.id.sid < 0x10000) announced_.push_back(one.info.id);
                for (const auto& logo : one.info.logos) {
                    logos_.push_back({logo.name, size_text(logo.size_code)});
                    announcing_.emplace(logo.name, each.carousel);
                }
            }
        }
    }

    // Minutes of each day with a programme. One without a duration counts as one minute.
    void cover(long from, long minutes) {
        const long to = from + std::max(minutes, 1L);
        while (from < to) {
            const long end = std::min(to, (from / kDayMinutes + 1) * kDayMinutes);
            covered_[from / kDayMinutes] += static_cast<std::size_t>(end - from);
            from = end;
        }
    }

    void set_clock() {
        if (options_.clock) {
            clock_ = options_.clock;
            return;
        }
        if (covered_.empty()) {
            in_.clock = clock_source::none;
            in_.said.emplace_back(
                "no date was given, and no programme has one: give it with --date DATE, or --date today");
            return;
        }
        in_.clock = clock_source::guessed;
        std::size_t most = 0;
        for (const auto& [day, minutes] : covered_)
            most = std::max(most, minutes);
        // Of several full days the first; the evening before one is no day of its own.
        const auto day = std::find_if(covered_.begin(), covered_.end(),
                                      [&](const auto& each) { return each.second >= most - most / 10; });
        clock_ = date_time_of(day->first * kDayMinutes + kNoon);
        in_.said.push_back(
            "no date was given: " + clock_->date() + " at noon, " +
            (covered_.size() == 1 ? "the day of all programmes"
             : covered_.rbegin()->second >= most - most / 10 && day->first != covered_.rbegin()->first
                 ? "the first of the days that programmes cover most"
                 : "the day that programmes cover most"));
    }

    // With the ECC that the broadcast gives it, where none was said.
    std::optional<spi::ServElemId> known_service(std::uint32_t sid) const {
        std::optional<spi::ServElemId> found;
        for (const auto& [id, count] : services_)
            if (id.sid == sid && !found) found = id;
        for (const spi::ServElemId& id : announced_)
            if (id.sid == sid && !found) found = id;
        return found;
    }

    void set_service() {
        if (options_.service) {
            const dab_identifier& given = *options_.service;
            service_ = known_service(*given.sid).value_or(spi::ServElemId());
            service_.sid = *given.sid;
            if (given.ecc || service_.ecc == 0) service_.ecc = given.ecc.value_or(in_.ecc.value_or(0));
            if (given.scids) service_.scids = *given.scids;
            return;
        }
        for (const dumped_carousel& each : from_.carousels) {
            if (!each.service || *each.service > 0xFFFF) continue;
            const auto known = known_service(*each.service);
            if (!known || service_.sid != 0) continue;
            service_ = *known;
            in_.said.push_back("service " + service_text(service_) + ", as the folder " +
                               in_quotes(each.folder.empty() ? from_.folder : each.folder) + " says");
        }
        if (service_.sid != 0) return;
        auto guess = most_frequent(services_);
        const char* why =
            services_.size() == 1 ? ", the only one with programmes" : ", which has most programmes";
        if (!guess && !announced_.empty()) {
            guess = announced_.front();
            why = ", the first one announced";
        }
        if (guess) service_ = *guess;
        in_.said.push_back(guess ? "no service was given: " + service_text(service_) + why
                                 : "no service was given, and no object names one: give it with --service");
    }

    // Below the carousel's folder.
    std::string path_of(const dumped_file& file) const {
        std::string path;
        const std::size_t above = from_.depth + (is_in_its_folder(file) ? 1 : 0);
        for (std::size_t i = above; i < file.folders.size(); ++i)
            path += file.folders[i] + "/";
        return path + std::filesystem::path(file.body.source).filename().string();
    }

    bool is_in_its_folder(const dumped_file& file) const {
        const std::string& folder = from_.carousels[file.carousel].folder;
        return !folder.empty() && file.folders.size() > from_.depth && file.folders[from_.depth] == folder;
    }

    // By what they were announced under, and into the carousel that announces them.
    void name_images() {
        std::vector<saved_image> images;
        for (const dumped_file& each : from_.files)
            if (each.is_image()) images.push_back({path_of(each), image_size(*each.body.body)});
        matched_names match = match_names(images, logos_);
        if (!match.said.empty()) in_.said.push_back(std::move(match.said));
        in_.cannot_tell = std::move(match.cannot_tell);
        auto next = match.names.begin();
        for (dumped_file& each : from_.files) {
            each.body.content_name = path_of(each);
            if (!each.is_image()) {
                each.body.content_name = without_prefix(each.body.content_name, match.prefix_words);
                continue;
            }
            const auto& name = *next++;
            if (!name) continue;
            each.body.content_name = *name;
            const auto [first, last] = announcing_.equal_range(*name);
            if (std::none_of(first, last, [&](const auto& at) { return at.second == each.carousel; }))
                each.carousel = first->second;
        }
    }

    void make_calls() {
        in_.files.emplace_back();
        const auto add = [this](auto what, const std::string& file) {
            in_.calls.calls.push_back({in_.files.size(), std::move(what)});
            in_.files.push_back(file);
        };
        if (clock_) {
            char date[16];
            char time[8];
            std::snprintf(date, sizeof date, "%04u%02u%02u", unsigned{clock_->year}, unsigned{clock_->month},
                          unsigned{clock_->day});
            std::snprintf(time, sizeof time, "%02u%02u", unsigned{clock_->hour}, unsigned{clock_->minute});
            add(set_date_time{date, time}, in_.calls.name);
        }
        add(set_current_service{{service_.sid, service_.ecc, service_.scids}, ensemble_}, in_.calls.name);
        for (std::uint16_t subtype = 0; subtype <= 2; ++subtype)
            for (const dumped_file& each : from_.files)
                if (!each.is_image() && spi_object::natural_subtype(each.tree) == subtype)
                    add(call_of(each, spi::kMotSpiObject, subtype), each.body.source);
        for (const dumped_file& each : from_.files) {
            if (!each.is_image()) continue;
            const auto header = read_image_header(*each.body.body);
            add(call_of(each, spi::kMotImage, header ? mot_subtype(*header) : spi::kMotGif),
                each.body.source);
        }
        say_data_services();
    }

    service_id data_service(std::size_t carousel) const {
        const auto& named = from_.carousels[carousel].service;
        const std::uint8_t ecc = in_.ecc.value_or(service_.ecc);
        if (named && *named > 0xFFFF) return {*named, static_cast<std::uint8_t>(*named >> 24), 0};
        if (named) return {*named, ecc, 0};
        return {std::uint32_t{ecc} << 24 | (kSomeDataService + static_cast<std::uint32_t>(carousel)), ecc, 0};
    }

    void say_data_services() {
        std::size_t named = 0;
        for (const dumped_carousel& each : from_.carousels)
            named += each.service ? 1 : 0;
        if (named == from_.carousels.size()) return;
        in_.said.emplace_back(
            from_.carousels.size() == 1
                ? "no data service is known: all objects are taken to come on one"
                : "not all data services are known: objects of one folder are taken to come on one");
    }

    feed_mot_body call_of(const dumped_file& file, std::uint8_t type, std::uint16_t subtype) const {
        feed_mot_body call;
        call.content_type = type;
        call.content_subtype = subtype;
        call.content_name = file.body.content_name;
        call.service = data_service(file.carousel);
        call.body = file.body.body;
        return call;
    }

    dumped_ensemble from_;
    const folder_options& options_;
    checked_input in_;
    std::map<long, std::size_t> covered_;  // minutes by local day
    std::map<spi::ServElemId, std::size_t> services_;
    std::vector<spi::ServElemId> announced_;
    std::vector<announced_name> logos_;
    std::multimap<std::string, std::size_t> announcing_;  // the carousels in which a name is announced
    std::uint16_t ensemble_ = 0;
    std::optional<spi::MotDateTime> clock_;
    spi::ServElemId service_;
};

// The folders between that of the dump and the file.
std::vector<std::string> folders_between(const std::string& path, const std::string& file) {
    std::vector<std::string> folders;
    for (const auto& part : std::filesystem::path(file).lexically_relative(path).parent_path())
        folders.push_back(part.string());
    return folders;
}

struct sorted_files {
    std::vector<dumped_file> files;
    std::vector<std::string> left_out;
};

sorted_files sort_bodies(const std::string& path, std::vector<inspected_body> bodies) {
    sorted_files sorted;
    for (inspected_body& each : bodies) {
        if (each.kind == body_kind::other) {
            sorted.left_out.push_back(printable(each.source) + ": left out, it is " + each.what);
            continue;
        }
        dumped_file file;
        file.folders = folders_between(path, each.source);
        if (each.kind == body_kind::spi_object) file.tree = spi_object::decode(*each.body);
        file.body = std::move(each);
        sorted.files.push_back(std::move(file));
    }
    if (sorted.left_out.size() > kFewFiles + 1) {
        const std::size_t more = sorted.left_out.size() - kFewFiles;
        sorted.left_out.resize(kFewFiles);
        sorted.left_out.push_back("and " + std::to_string(more) + " more files left out");
    }
    return sorted;
}

checked_input unusable(const std::string& path, std::vector<std::string> errors) {
    checked_input in;
    in.folder = true;
    in.calls.name = path;
    in.errors = std::move(errors);
    return in;
}

// Of several ensembles the one that was asked for.
void choose(std::vector<dumped_ensemble>& all, const folder_options& options) {
    if (!options.ensemble || all.size() < 2) return;
    const auto is_asked_for = [&](const dumped_ensemble& each) {
        if (each.named) return *each.named == *options.ensemble->ensemble;
        return std::any_of(each.files.begin(), each.files.end(), [&](const dumped_file& file) {
            return spi_object::home_ensemble(file.tree) == options.ensemble->ensemble;
        });
    };
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const dumped_ensemble& each) { return !is_asked_for(each); }),
              all.end());
}

}  // namespace

std::vector<checked_input> read_folders(const std::string& path, const folder_options& options) {
    gather_options how;
    how.limit = options.limit;
    gathered found = gather({path}, how);
    std::vector<checked_input> all;
    if (!found.errors.empty()) return {unusable(path, std::move(found.errors))};
    sorted_files sorted = sort_bodies(path, std::move(found.bodies));
    if (sorted.files.empty())
        return {unusable(path, {printable(path) + ": there is no SPI object and no image in the folder"})};
    std::vector<dumped_ensemble> ensembles = ensembles_of(path, std::move(sorted.files));
    choose(ensembles, options);
    if (ensembles.empty())
        return {unusable(
            path, {printable(path) + ": no folder is of ensemble " + options.ensemble->ensemble_text()})};
    for (dumped_ensemble& each : ensembles)
        all.push_back(ensemble_reader(std::move(each), options).read());
    std::vector<std::string>& said = all.front().said;
    said.insert(said.end(), sorted.left_out.begin(), sorted.left_out.end());
    return all;
}

}  // namespace dabspi::check
