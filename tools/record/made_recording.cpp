#include "tools/record/made_recording.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <utility>

#include "tools/record/plan_bodies.h"
#include "tools/recording/recording_writer.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::string_view kDate = "{date}";

std::string with_date(const std::string& text, const std::string& date) {
    std::string made;
    std::size_t from = 0;
    for (std::size_t at = 0; (at = text.find(kDate, from)) != std::string::npos; from = at + kDate.size())
        (made.append(text, from, at - from)) += date;
    return made.append(text, from, std::string::npos);
}

bool names_a_date(const planned_object& object) {
    const auto has = [](const std::string& text) { return text.find(kDate) != std::string::npos; };
    return has(object.source) || has(object.name.value_or("")) || has(object.file.value_or(""));
}

class maker {
 public:
    maker(const plan& from, const std::string& directory, std::size_t most_bytes, made_recording& result)
        : plan_(from), bodies_(directory, most_bytes), most_bytes_(most_bytes), result_(result) {}

    void make() {
        if (!plan_.about.empty()) out_.comment(plan_.about);
        if (plan_.clock) {
            now_ = plan_.clock->from;
            const std::int64_t ticks =
                (plan_.clock->to.number - plan_.clock->from.number) / plan_.clock->every;
            charge("/clock", static_cast<std::size_t>(ticks) * kTick);
            for (const planned_step& each : plan_.steps)
                if (!is_too_large()) take(each);
            if (!is_too_large()) play();
        } else {
            for (const planned_step& each : plan_.steps) {
                if (is_too_large()) break;
                take(each);
                for (const auto& step : timed_)
                    step.second();
                timed_.clear();
            }
        }
        result_.text = out_.text();
        result_.calls = out_.calls();
        result_.messages = bodies_.messages();
        result_.sources = bodies_.sources();
    }

 private:
    void at(std::int64_t minute, std::function<void()> what) { timed_.emplace_back(minute, std::move(what)); }

    bool is_too_large() const { return made_ > most_bytes_; }

    // Of the recording, before they are made: a plan of a few lines can unfold into gigabytes.
    bool charge(const std::string& where, std::size_t bytes) {
        if (is_too_large()) return false;
        made_ += bytes;
        if (!is_too_large()) return true;
        result_.errors.push_back({where, "the plan becomes more than " + std::to_string(most_bytes_ >> 20) +
                                             " MiB; send less or for fewer days, or raise --limit"});
        return false;
    }

    void take(const planned_step& step) {
        if (!charge(step.where, kCall + step.note.size())) return;
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
            if (!is_too_large()) send(each, what.data_service, next);
        if (!is_too_large() && plan_.clock && !timed_.empty() && timed_.back().first > plan_.clock->to.number)
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
            // A date takes two characters more than {date}.
            const std::size_t names =
                object.source.size() + object.name.value_or("").size() + object.file.value_or("").size();
            if (!charge(object.where, kCall + 2 * names)) return;
            const std::string date = now_ ? now_->days_later(days).date() : std::string();
            std::optional<planned_body> body = bodies_.make(object, with_date(object.source, date));
            for (const std::string& each : bodies_.take_errors())
                result_.errors.push_back({object.where, each});
            if (!body) continue;
            if (object.in_line && !charge(object.where, body->body->size() * 4 / 3)) return;
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
            if (std::filesystem::path(file).filename().string().size() > kLongestFileName) {
                result_.errors.push_back(
                    {object.where, in_quotes(file, 80) + " is too long for a file's name"});
                return;
            }
            keep(object, file, body->body);
            at(minute, [this, fed, file] { out_.feed_file(fed, file); });
        }
    }

    static std::string file_of(const planned_object& object, const planned_body& body,
                               const std::string& content_name, const std::string& date) {
        if (object.file) return with_date(*object.file, date);
        // Images keep the name of their file, several stations may announce one under different names.
        std::string name = object.what == planned_object::kind::xml ? content_name : body.content_name;
        for (char& each : name)
            if (each == '/' || each == '\0') each = '_';
        // A content name may be longer than a file's.
        std::size_t end = std::min(name.size(), kLongestName);
        while (end < name.size() && end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80)
            --end;
        name.resize(end);
        return "objects/" + (name == "." || name == ".." || name.empty() ? "object" : name);
    }

    void keep(const planned_object& object, const std::string& file,
              const std::shared_ptr<const bytes>& body) {
        const auto [entry, fresh] = result_.files.emplace(file, body);
        if (fresh) charge(object.where, body->size());
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

    static constexpr std::size_t kLongestFileName = 240;
    static constexpr std::size_t kLongestName = 200;  // of a file, with room for what a writer puts behind it
    static constexpr std::size_t kTick = 64;
    static constexpr std::size_t kCall = 256;  // what one takes while it is made, without its names

    const plan& plan_;
    plan_bodies bodies_;
    std::size_t most_bytes_;
    std::size_t made_ = 0;  // bytes, about
    made_recording& result_;
    recording_writer out_;
    std::optional<plan_minute> now_;  // unknown before the first clock
    std::vector<std::pair<std::int64_t, std::function<void()>>> timed_;
};

}  // namespace

made_recording make_recording(const plan& from, const std::string& directory, std::size_t most_bytes) {
    made_recording result;
    maker(from, directory, most_bytes, result).make();
    if (!result.errors.empty()) result.text.clear();
    return result;
}

}  // namespace dabspi
