#include "tools/carousel/planned_objects.h"

#include <filesystem>

#include "src/parse/mot_content.h"
#include "tools/files/whole_file.h"
#include "tools/record/plan_bodies.h"
#include "tools/text/utf8.h"

namespace dabspi::carousel {

namespace {

std::string at_date(std::string text, const std::string& date) {
    constexpr std::string_view kPlace = "{date}";
    for (std::size_t at = 0; (at = text.find(kPlace, at)) != std::string::npos; at += date.size())
        text.replace(at, kPlace.size(), date);
    return text;
}

bool needs_date(const planned_object& object) {
    return object.source.find("{date}") != std::string::npos ||
           object.name.value_or("").find("{date}") != std::string::npos;
}

class planned_reader {
 public:
    planned_reader(const std::string& path, const reading_options& how, const plan& from,
                   carousel_objects& to)
        : path_(path),
          from_(from),
          bodies_(std::filesystem::path(path).parent_path().string(), kMostOfFile),
          now_(how.now),
          to_(to) {
        if (!now_ && from.clock) now_ = broadcast_minute{from.clock->from.number};
        for (const planned_step& each : from.steps)
            if (!now_ && each.clock) now_ = broadcast_minute{each.clock->number};
        to_.clock = now_;
        if (from.data_service) to_.data_service = from.data_service->sid;
    }

    void read(const std::string& wanted) {
        if (from_.carousels.empty()) {
            for (const planned_step& each : from_.steps)
                if (each.feed) add(*each.feed, true);
            if (to_.all.empty() && to_.errors.empty()) error("", "the plan sends no object");
        } else if (const planned_carousel* const which = choose(wanted)) {
            if (which->data_service) to_.data_service = which->data_service->sid;
            for (const planned_object& each : which->objects)
                add(each, false);
        }
        for (const std::string& each : bodies_.sources())
            to_.files.push_back(each);
        for (const std::string& each : bodies_.messages())
            to_.messages.push_back(each);
    }

 private:
    void error(const std::string& where, const std::string& text) {
        to_.errors.push_back(printable(path_ + (where.empty() ? "" : ": " + where)) + ": " + text);
    }

    const planned_carousel* choose(const std::string& wanted) {
        const auto found = from_.carousels.find(wanted);
        if (found != from_.carousels.end()) return &found->second;
        if (wanted.empty() && from_.carousels.size() == 1) return &from_.carousels.begin()->second;
        std::string names;
        for (const auto& [name, each] : from_.carousels)
            names += (names.empty() ? "" : ", ") + printable(name);
        error("/carousels", (wanted.empty() ? "the plan has several carousels"
                                            : "there is no carousel " + in_quotes(wanted)) +
                                "; choose with --carousel: " + names);
        return nullptr;
    }

    void add(const planned_object& object, bool once) {
        if (needs_date(object) && !now_) {
            error(object.where, "{date} is not known: the plan has no clock; say it with --clock");
            return;
        }
        for (const int days : object.days) {
            const std::string date =
                now_ ? broadcast_minute{now_->number + days * kMinutesOfDay}.date() : std::string();
            const std::optional<planned_body> body = bodies_.make(object, at_date(object.source, date));
            for (const std::string& each : bodies_.take_errors())
                error(object.where, each);
            if (body) add(object, *body, at_date(object.name.value_or(body->content_name), date), once);
        }
    }

    void add(const planned_object& object, const planned_body& body, const std::string& name, bool once) {
        const std::uint8_t type = object.content_type.value_or(body.content_type);
        carousel_object made;
        if (type == spi::kMotSpiObject) {
            made = spi_carousel_object(path_, *body.body, name);
        } else {
            made.sent.body = body.body;
            made.sent.name = name;
            if (type == spi::kMotImage) made.image = read_image_header(*body.body);
        }
        made.source = path_ + ": " + object.where;
        made.sent.content_type = type;
        made.sent.content_subtype = object.content_subtype.value_or(body.content_subtype);
        if (once)  // what is fed again is a repetition; another body is a later version
            for (carousel_object& each : to_.all)
                if (each.sent.name == name) {
                    each = std::move(made);
                    return;
                }
        to_.all.push_back(std::move(made));
    }

    const std::string path_;
    const plan& from_;
    plan_bodies bodies_;
    std::optional<broadcast_minute> now_;
    carousel_objects& to_;
};

}  // namespace

void read_planned_objects(const std::string& path, const std::string& text, const reading_options& how,
                          carousel_objects& to) {
    const plan from = read_plan(text);
    for (const plan_error& each : from.errors)
        to.errors.push_back(printable(path + (each.where.empty() ? "" : ": " + each.where)) + ": " +
                            printable(each.text));
    if (from.errors.empty()) planned_reader(path, how, from, to).read(how.carousel);
}

}  // namespace dabspi::carousel
