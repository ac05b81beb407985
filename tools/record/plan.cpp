#include "tools/record/plan.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/record/plan_object.h"
#include "tools/recording/json_reader.h"
#include "tools/spi/values.h"
#include "tools/text/dab_identifier.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using nlohmann::json;
using spi_object::kMinutesOfDay;

constexpr unsigned kLongestTick = kMinutesOfDay;
constexpr std::size_t kMostValues = 200000;
constexpr std::int64_t kMostTicks = 1000000;  // nearly two years of minutes; more is a mistaken year

spi_object::time_value time_of(const plan_minute& minute) {
    spi_object::time_value value;
    value.mjd = static_cast<std::uint32_t>(minute.number / kMinutesOfDay);
    value.hour = static_cast<unsigned>(minute.number % kMinutesOfDay / 60);
    value.minute = static_cast<unsigned>(minute.number % 60);
    return value;
}

template <class Value>
std::string known_names(const std::map<std::string, Value>& of) {
    constexpr std::size_t kMost = 20;
    std::string text;
    std::size_t count = 0;
    for (const auto& each : of) {
        if (++count > kMost) break;
        text += (text.empty() ? "" : ", ") + printable(each.first);
    }
    if (of.size() > kMost) text += " and " + std::to_string(of.size() - kMost) + " more";
    return text.empty() ? "there are none" : "there are: " + text;
}

std::optional<plan_minute> take_minute(plan_keys& keys, const char* key, bool needed = false) {
    const std::string* const text = keys.text(key, needed);
    if (text == nullptr) return std::nullopt;
    // Without seconds and zone: the broadcast clock counts local minutes.
    const std::optional<spi_object::time_value> time =
        text->size() == 16 ? spi_object::parse_time(*text + ":00Z") : std::nullopt;
    // A year's room on both sides, for days counted from there.
    if (time && time->mjd > kMostDays && time->mjd < 0x1FFFF - kMostDays)
        return plan_minute{std::int64_t{time->mjd} * kMinutesOfDay + time->hour * 60 + time->minute};
    keys.error_at(key, in_quotes(*text) + " is no minute; write it like \"2026-03-10T05:00\", in local time");
    return std::nullopt;
}

class plan_reader {
 public:
    plan_reader(const json& from, plan& result) : keys_(from, "", "a plan", result.errors), plan_(result) {}

    void read() {
        plan_.about = keys_.lines("about");
        plan_.data_service = take_data_service(keys_, "data_service");
        clock();
        services();
        carousels();
        if (const json* const steps = keys_.array("steps", true)) {
            std::size_t index = 0;
            for (const json& each : *steps)
                step(each, keys_.at("steps") + "/" + std::to_string(index++));
        }
        keys_.refuse_others();
    }

 private:
    void clock() {
        const json* const from = keys_.object("clock");
        if (from == nullptr) return;
        plan_keys keys(*from, keys_.at("clock"), "the clock", plan_.errors);
        const std::optional<plan_minute> first = take_minute(keys, "from", true);
        const std::optional<plan_minute> last = take_minute(keys, "to", true);
        planned_clock clock;
        if (keys.number("every", clock.every) && (clock.every == 0 || clock.every > kLongestTick))
            keys.error_at("every", "is " + std::to_string(clock.every) + "; 1 to 1440 minutes are needed");
        keys.refuse_others();
        if (!first || !last) return;
        if (last->number < first->number) keys.error("it ends before it begins");
        if (clock.every != 0 && (last->number - first->number) / clock.every >= kMostTicks)
            keys.error("it ticks more than " + std::to_string(kMostTicks) + " times; are the years right?");
        clock.from = *first;
        clock.to = *last;
        plan_.clock = clock;
    }

    // In one text, as everywhere: "e1.c185.c221.0".
    void written_service(const std::string& text, const std::string& where, planned_service& made) {
        const auto id = dab_identifier::of_service(text);
        if (!id || !id->ecc || !id->ensemble) {
            plan_.errors.push_back(
                {where, id ? "is " + in_quotes(text) + "; a plan needs ECC and EId as well: e1.c185.c221.0"
                           : no_service(text)});
            return;
        }
        made.service.sid = *id->sid;
        made.service.ecc = *id->ecc;
        made.service.scids = id->scids.value_or(0);
        made.ensemble = *id->ensemble;
    }

    void services() {
        const json* const all = keys_.object("services");
        if (all == nullptr) return;
        plan_keys names(*all, keys_.at("services"), "the services", plan_.errors);
        for (const auto& [name, each] : all->items()) {
            planned_service& made = plan_.services[name];
            if (each.is_string()) {
                written_service(each.get_ref<const std::string&>(), names.at(name), made);
                continue;
            }
            plan_keys keys(each, names.at(name), "a service", plan_.errors);
            keys.number("sid", made.service.sid, true);
            keys.number("ecc", made.service.ecc);
            keys.number("scids", made.service.scids);
            keys.number("ensemble", made.ensemble, true);
            keys.refuse_others();
        }
    }

    void carousels() {
        const json* const all = keys_.object("carousels");
        if (all == nullptr) return;
        plan_keys names(*all, keys_.at("carousels"), "the carousels", plan_.errors);
        for (const auto& [name, each] : all->items()) {
            plan_keys keys(each, names.at(name), "a carousel", plan_.errors);
            planned_carousel& made = plan_.carousels[name];
            made.data_service = take_data_service(keys, "data_service");
            keys.number("objects_a_minute", made.objects_a_minute);
            if (made.objects_a_minute != 0 && !plan_.clock)
                keys.error_at("objects_a_minute", "needs a clock that ticks: give the plan a \"clock\"");
            if (const json* const objects = keys.array("objects", true)) {
                std::size_t index = 0;
                for (const json& object : *objects) {
                    made.objects.push_back(take_object(
                        object, keys.at("objects") + "/" + std::to_string(index++), plan_.errors));
                    check_data_service(made.objects.back(), made.data_service);
                }
            }
            keys.refuse_others();
        }
    }

    void check_data_service(const planned_object& object, const std::optional<service_id>& around) {
        if (!object.data_service && !around && !plan_.data_service)
            plan_.errors.push_back({object.where,
                                    "no \"data_service\" carries it: name one here, in its carousel, or in "
                                    "the plan"});
    }

    void step(const json& from, const std::string& where) {
        plan_keys keys(from, where, "a step", plan_.errors);
        planned_step made;
        made.where = where;
        made.at = take_minute(keys, "at");
        made.note = keys.lines("note");
        made.clock = take_minute(keys, "clock");
        if (const std::string* const name = keys.text("service")) {
            made.service = *name;
            if (plan_.services.count(*name) == 0)
                keys.error_at("service",
                              "there is no service " + in_quotes(*name) + "; " + known_names(plan_.services));
        }
        if (const std::string* const name = keys.text("carousel")) {
            made.carousel = *name;
            if (plan_.carousels.count(*name) == 0)
                keys.error_at("carousel", "there is no carousel " + in_quotes(*name) + "; " +
                                              known_names(plan_.carousels));
        }
        if (const json* const object = keys.find("feed")) {
            made.feed = take_object(*object, keys.at("feed"), plan_.errors);
            check_data_service(*made.feed, std::nullopt);
        }
        made.resend = keys.flag("resend");
        keys.refuse_others();
        check_time(keys, made);
        const int things = (made.clock ? 1 : 0) + (made.service ? 1 : 0) + (made.carousel ? 1 : 0) +
                           (made.feed ? 1 : 0) + (made.resend ? 1 : 0);
        if (things > 1) keys.error("a step does one thing; make two of it");
        plan_.steps.push_back(std::move(made));
    }

    void check_time(plan_keys& keys, const planned_step& made) {
        if (!plan_.clock) {
            if (made.at) keys.error_at("at", "needs a clock that ticks: give the plan a \"clock\"");
            return;
        }
        if (made.clock) keys.error_at("clock", "the plan's clock ticks by itself; use \"at\"");
        if (made.at &&
            (made.at->number < plan_.clock->from.number || made.at->number > plan_.clock->to.number))
            keys.error_at("at", made.at->text() + " is outside the clock, " + plan_.clock->from.text() +
                                    " to " + plan_.clock->to.text());
        if (made.at && (made.at->number - plan_.clock->from.number) % plan_.clock->every != 0)
            keys.error_at("at", "the clock does not tick at " + made.at->text());
    }

    plan_keys keys_;
    plan& plan_;
};

}  // namespace

std::string plan_minute::text() const {
    std::string shown = local_text(time_of(*this));
    shown[10] = 'T';
    return shown;
}

std::string plan_minute::date() const {
    const std::string shown = text();
    return shown.substr(0, 4) + shown.substr(5, 2) + shown.substr(8, 2);
}

std::string plan_minute::time() const {
    const std::string shown = text();
    return shown.substr(11, 2) + shown.substr(14, 2);
}

plan_minute plan_minute::days_later(int days) const {
    return {number + days * kMinutesOfDay};
}

plan read_plan(std::string_view text) {
    plan result;
    json_limits limits;
    limits.most_values = kMostValues;
    const read_json_text read = read_json(text, limits, true);
    for (const std::string& each : read.twice)
        result.errors.push_back({each, "the key stands twice in one object"});
    if (!read.error.empty()) {
        result.errors.assign(1, {"", read.error});
        return result;
    }
    plan_reader(read.value, result).read();
    return result;
}

}  // namespace dabspi
