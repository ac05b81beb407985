#include "tools/record/made_recording.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "tools/record/plan_bodies.h"
#include "tools/recording/recording_writer.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::string_view kDate = "{date}";

std::string with_date(std::string text, const std::string& date) {
    for (std::size_t at = 0; (at = text.find(kDate, at)) != std::string::npos; at += date.size())
        text.replace(at, kDate.size(), date);
    return text;
}

bool names_a_date(const planned_object& object) {
    const auto has = [](const std::string& text) { return text.find(kDate) != std::string::npos; };
    return has(object.source) || has(object.name.value_or("")) || has(object.file.value_or(""));
}

class maker {
 public:
    maker(const plan& from, const std::string& directory, made_recording& result)
        : plan_(from), bodies_(directory), result_(result) {}

    void make() {
        if (!plan_.about.empty()) out_.comment(plan_.about);
        if (plan_.clock) {
            now_ = plan_.clock->from;
            for (const planned_step& each : plan_.steps)
                take(each);
            play();
        } else {
            for (const planned_step& each : plan_.steps) {
                take(each);
                for (const auto& step : timed_)
                    step.second();
                timed_.clear();
            }
        }
        result_.text = out_.text();
        result_.calls = out_.calls();
        result_.messages = bodies_.messages();
    }

 private:
    void at(std::int64_t minute, std::function<void()> what) { timed_.emplace_back(minute, std::move(what)); }

    void take(const planned_step& step) {
        if (step.at) now_ = *step.at;
        if (step.clock) now_ = *step.clock;
        const std::int64_t minute = now_ ? now_->number : 0;
        if (!step.note.empty()) at(minute, [this, &step] { out_.comment(step.note); });
        if (step.clock)
            at(minute, [this, &step] { out_.set_date_time(step.clock->date(), step.clock->time()); });
        if (step.service) {
            const planned_service& service = plan_.services.at(*step.service);
            at(minute, [this, &service] { out_.set_current_service(service.service, service.ensemble); });
        }
        if (step.resend) at(minute, [this] { out_.resend_now_next(); });
        if (step.feed) send(*step.feed, std::nullopt, [minute] { return minute; });
        if (step.carousel) carousel(step, plan_.carousels.at(*step.carousel), minute);
    }

    void carousel(const planned_step& step, const planned_carousel& what, std::int64_t minute) {
        std::size_t sent = 0;
        const auto next = [&] {
            const std::size_t minutes = what.objects_a_minute == 0 ? 0 : sent++ / what.objects_a_minute;
            return minute + static_cast<std::int64_t>(minutes);
        };
        for (const planned_object& each : what.objects)
            send(each, what.data_service, next);
        if (plan_.clock && !timed_.empty() && timed_.back().first > plan_.clock->to.number)
            result_.errors.push_back({step.where, "the carousel goes on after the clock's end, until " +
                                                      plan_minute{timed_.back().first}.text() +
                                                      "; let the clock tick longer"});
    }

    // An object on each of its days. `when` gives the minute of each.
    template <class Minute>
    void send(const planned_object& object, const std::optional<service_id>& around, Minute when) {
        if (!now_ && names_a_date(object)) {
            result_.errors.push_back({object.where, "{date} is not known before the first \"clock\""});
            return;
        }
        for (const int days : object.days) {
            const std::string date = now_ ? now_->days_later(days).date() : std::string();
            std::optional<planned_body> body = bodies_.make(object, with_date(object.source, date));
            for (const std::string& each : bodies_.take_errors())
                result_.errors.push_back({object.where, each});
            if (!body) continue;
            fed_object fed;
            fed.content_type = object.content_type.value_or(body->content_type);
            fed.content_subtype = object.content_subtype.value_or(body->content_subtype);
            fed.content_name = object.name ? with_date(*object.name, date) : body->content_name;
            fed.data_service = object.data_service ? *object.data_service
                               : around            ? *around
                                                   : plan_.data_service.value_or(service_id());
            const std::int64_t minute = when();
            if (object.in_line) {
                at(minute, [this, fed, content = body->body] { out_.feed_body(fed, *content); });
                continue;
            }
            const std::string file = file_of(object, *body, fed.content_name, date);
            keep(object, file, body->body);
            at(minute, [this, fed, file] { out_.feed_file(fed, file); });
        }
    }

    static std::string file_of(const planned_object& object, const planned_body& body,
                               const std::string& content_name, const std::string& date) {
        if (object.file) return with_date(*object.file, date);
        // Images keep the name of their file, several stations may announce one under different names.
        std::string name = object.what == planned_object::kind::xml ? content_name : body.content_name;
        std::replace(name.begin(), name.end(), '/', '_');
        return "objects/" + (name == "." || name == ".." || name.empty() ? "object" : name);
    }

    void keep(const planned_object& object, const std::string& file,
              const std::shared_ptr<const bytes>& body) {
        const auto [entry, fresh] = result_.files.emplace(file, body);
        if (fresh || *entry->second == *body) return;
        result_.errors.push_back({object.where, "another object is already kept in " + in_quotes(file, 200) +
                                                    "; give one of them another \"file\""});
    }

    void play() {
        std::stable_sort(timed_.begin(), timed_.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        auto next = timed_.begin();
        const planned_clock& clock = *plan_.clock;
        for (std::int64_t minute = clock.from.number; minute <= clock.to.number; minute += clock.every) {
            out_.set_date_time(plan_minute{minute}.date(), plan_minute{minute}.time());
            for (; next != timed_.end() && next->first < minute + clock.every; ++next)
                next->second();
        }
    }

    const plan& plan_;
    plan_bodies bodies_;
    made_recording& result_;
    recording_writer out_;
    std::optional<plan_minute> now_;  // unknown before the first clock
    std::vector<std::pair<std::int64_t, std::function<void()>>> timed_;
};

}  // namespace

made_recording make_recording(const plan& from, const std::string& directory) {
    made_recording result;
    maker(from, directory, result).make();
    return result;
}

}  // namespace dabspi
