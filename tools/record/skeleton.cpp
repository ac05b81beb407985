#include "tools/record/skeleton.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

#include "tools/encode/broadcast_object.h"
#include "tools/files/whole_file.h"
#include "tools/inspect/image_header.h"
#include "tools/receiver/receiver_view.h"
#include "tools/record/plan.h"
#include "tools/spi/decode.h"
#include "tools/spi/schema.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;
using spi_object::content_id;
using spi_object::node;
namespace tag = spi_object::tag;

constexpr std::size_t kMostOfFile = std::size_t{8} << 20;
constexpr std::size_t kMostFiles = 10000;
constexpr std::size_t kMostServices = 20;  // a plan to start from, not a list

std::string hexadecimal(std::uint32_t number, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%0*X", digits, static_cast<unsigned>(number));
    return text;
}

// "c221", "c221c1" for SCIdS 1: also the key of a service in the plan.
std::string name_of(const content_id& id) {
    char text[32];
    std::snprintf(text, sizeof text, id.scids == 0 ? "%04x" : "%04xc%x", static_cast<unsigned>(id.sid),
                  unsigned{id.scids});
    return text;
}

class skeleton_writer {
 public:
    explicit skeleton_writer(plan_skeleton& result) : result_(result) {}

    void take(const std::string& path) {
        std::error_code failed;
        if (!fs::is_directory(path, failed)) return file(path, true);
        std::vector<std::string> files;
        for (auto each = fs::recursive_directory_iterator(path, failed);
             !failed && each != fs::recursive_directory_iterator() && files.size() < kMostFiles;
             each.increment(failed))
            if (each->is_regular_file(failed)) files.push_back(each->path().string());
        if (failed) result_.errors.push_back(printable(path) + ": " + failed.message());
        std::sort(files.begin(), files.end());
        for (const std::string& each : files)
            file(each, false);
    }

    void write(const std::string& today) {
        if (information_.empty() && schedules_.empty() && images_.empty()) {
            if (result_.errors.empty())
                result_.errors.push_back("there is no document, object or image to send");
            return;
        }
        const std::string day = day_.value_or(today);
        if (!day_) result_.messages.push_back("no schedule tells the day: the clock begins today, " + day);
        ordered_json plan;
        plan["about"] = {
            "A plan to start from; change what was guessed: the data service, the clock, who listens."};
        plan["data_service"] = hexadecimal(std::uint32_t{ecc()} << 24 | 0x000001, 8);
        plan["clock"] = {{"from", day + "T" + time_of_day(0)}, {"to", day + "T" + time_of_day(180)}};
        plan["services"] = services();
        plan["carousels"]["all"]["objects"] = objects();
        plan["steps"] = steps(day);
        result_.messages.push_back("the data service is guessed: " + plan["data_service"].get<std::string>());
        result_.text = plan.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
    }

 private:
    // Named on the command line, it is meant; in a folder, anything may stand.
    void file(const std::string& path, bool is_meant) {
        std::string error;
        const std::optional<std::string> content = read_whole_file(path, error, kMostOfFile);
        if (!content) return leave_out(path, error, is_meant);
        const bytes body(content->begin(), content->end());
        const std::size_t first =
            std::min(content->find_first_not_of(" \t\r\n\xEF\xBB\xBF"), content->size());
        if (first < content->size() && (*content)[first] == '<') return document(path, *content, is_meant);
        if (read_image_header(body)) {
            images_.push_back({{"image", path}});
        } else if (!body.empty() && (body[0] == tag::epg || body[0] == tag::service_information)) {
            object(path, body);
        } else {
            leave_out(path, "is no document, no SPI object and no image", is_meant);
        }
    }

    void leave_out(const std::string& path, const std::string& why, bool is_meant) {
        (is_meant ? result_.errors : result_.messages)
            .push_back(printable(path) + ": " + why + (is_meant ? "" : "; left out"));
    }

    void document(const std::string& path, const std::string& text, bool is_meant) {
        const xml_source source(text);
        encode_options how;
        encoded_document made = encode_document(source, how);
        if (made.objects.empty()) {
            how.lenient = true;
            const std::vector<source_note> errors = made.errors;
            made = encode_document(source, how);
            if (made.objects.empty())
                return leave_out(path, note_text("", errors.front()).substr(1), is_meant);
            result_.messages.push_back(printable(path) + ": can be coded leniently only");
        }
        for (const encoded_object& each : made.objects) {
            ordered_json entry = {{"xml", path}};
            if (made.objects.size() > 1 && each.ensemble)
                entry["ensemble"] = ensemble_id_text(*each.ensemble);
            if (how.lenient) entry["lenient"] = true;
            add(std::move(entry), make_object(each, {}).body);
        }
    }

    void object(const std::string& path, const bytes& body) {
        const spi_object::object tree = spi_object::decode(body);
        ordered_json entry = {{"object", path},
                              {"name", fs::path(path).filename().string()},
                              {"content_type", 7},
                              {"content_subtype", spi_object::natural_subtype(tree)}};
        add(std::move(entry), body);
    }

    // Objects of one name would be written over one another beside the recording.
    void add(ordered_json entry, const bytes& body) {
        const spi_object::object tree = spi_object::decode(body);
        const mot_header header = header_of(tree);
        const std::string name = entry.value("name", header.content_name);
        const std::size_t number = ++names_[name];
        if (number > 1) {
            entry["name"] = name + "-" + std::to_string(number);
            result_.messages.push_back(printable(name) + " is the name of several objects; one is named " +
                                       printable(entry["name"].get<std::string>()));
        }
        look_through(tree);
        if (tree.kind == spi_object::object_kind::programme_information) {
            schedules_.push_back(std::move(entry));
        } else {
            information_.push_back(std::move(entry));
        }
    }

    // The day is that of the first schedule that names its service, which is the one that is listened to.
    void look_through(const spi_object::object& tree) {
        const auto before = std::make_pair(day_, first_time_);
        if (!is_day_settled_) {
            day_.reset();
            first_time_.clear();
        }
        for (const node& each : tree.tops)
            look(each);
        if (is_day_settled_ || !day_) std::tie(day_, first_time_) = before;
        is_day_settled_ = is_day_settled_ || (day_ && !scheduled_.empty());
    }

    // Services, and the first programme's start.
    void look(const node& in) {
        const node* const value = in.attribute_at(tag::first_attribute);
        if (value != nullptr) {
            const auto* const id = std::get_if<content_id>(&value->decoded);
            if (id != nullptr && id->sid != 0 && id->ensemble_coded) {
                // Those that schedules name come first: there is something to show.
                auto& to = in.tag == tag::service_bearer ? described_ : scheduled_;
                if (to.size() < kMostServices &&
                    std::none_of(to.begin(), to.end(), [&](const content_id& each) { return each == *id; }))
                    to.push_back(*id);
            }
            const auto* const time = std::get_if<spi_object::time_value>(&value->decoded);
            if (in.tag == tag::time && time != nullptr) {
                const std::string start = local_text(*time);  // "2026-03-10 07:00"
                if (!day_ || start.substr(0, 16) < *day_ + " " + first_time_) {
                    day_ = start.substr(0, 10);
                    first_time_ = start.substr(11, 5);
                }
            }
        }
        for (const node& each : in.children)
            if (each.kind != spi_object::node_kind::attribute) look(each);
    }

    // So many minutes behind the first start; the plan's clock ends with the day.
    std::string time_of_day(int minutes_later) const {
        const int first = first_time_.empty() ? 6 * 60
                                              : std::stoi(first_time_.substr(0, 2)) * 60 +
                                                    std::stoi(first_time_.substr(3, 2));
        const int minute = std::min(first + minutes_later, 24 * 60 - 1);
        char text[16];
        std::snprintf(text, sizeof text, "%02d:%02d", minute / 60 % 24, minute % 60);
        return text;
    }

    std::vector<content_id> all_services() const {
        std::vector<content_id> all = scheduled_;
        for (const content_id& each : described_)
            if (all.size() < kMostServices && std::find(all.begin(), all.end(), each) == all.end())
                all.push_back(each);
        return all;
    }

    std::uint8_t ecc() const {
        const std::vector<content_id> all = all_services();
        return all.empty() ? std::uint8_t{0xE1} : all.front().ecc;
    }

    ordered_json services() const {
        ordered_json services = ordered_json::object();
        for (const content_id& each : all_services())
            if (!services.contains(name_of(each)))
                services[name_of(each)] = {{"sid", hexadecimal(each.sid, each.long_sid ? 8 : 4)},
                                           {"ecc", hexadecimal(each.ecc, 2)},
                                           {"scids", each.scids},
                                           {"ensemble", hexadecimal(each.eid, 4)}};
        return services;
    }

    ordered_json objects() const {
        ordered_json objects = ordered_json::array();
        for (const auto* each : {&information_, &schedules_, &images_})  // announcements before their images
            for (const ordered_json& object : *each)
                objects.push_back(object);
        return objects;
    }

    ordered_json steps(const std::string& day) const {
        ordered_json steps = ordered_json::array();
        const std::vector<content_id> all = all_services();
        if (!all.empty()) steps.push_back({{"note", "The listener."}, {"service", name_of(all.front())}});
        steps.push_back({{"carousel", "all"}});
        if (time_of_day(1) != time_of_day(0))
            steps.push_back({{"at", day + "T" + time_of_day(1)},
                             {"note", "Once more: images that overtook their announcements."},
                             {"carousel", "all"}});
        return steps;
    }

    plan_skeleton& result_;
    std::vector<ordered_json> information_;
    std::vector<ordered_json> schedules_;
    std::vector<ordered_json> images_;
    std::vector<content_id> scheduled_;
    std::vector<content_id> described_;
    std::map<std::string, std::size_t> names_;
    std::optional<std::string> day_;
    std::string first_time_;
    bool is_day_settled_ = false;
};

}  // namespace

plan_skeleton make_skeleton(const std::vector<std::string>& paths, const std::string& today) {
    plan_skeleton result;
    skeleton_writer writer(result);
    for (const std::string& each : paths)
        writer.take(each);
    writer.write(today);
    if (!result.errors.empty()) result.text.clear();
    return result;
}

}  // namespace dabspi
