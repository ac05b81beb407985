#include "tools/record/plan.h"

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

#include "tools/json_values.h"
#include "tools/spi/values.h"
#include "tools/utf8.h"

namespace dabspi {

namespace {

using nlohmann::json;

constexpr std::int64_t kMinutesOfDay = 1440;
constexpr unsigned kLongestTick = kMinutesOfDay;
constexpr int kMostDays = 366;

spi_object::time_value time_of(const plan_minute& minute) {
    spi_object::time_value value;
    value.mjd = static_cast<std::uint32_t>(minute.number / kMinutesOfDay);
    value.hour = static_cast<unsigned>(minute.number % kMinutesOfDay / 60);
    value.minute = static_cast<unsigned>(minute.number % 60);
    return value;
}

std::string known_names(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& each : names)
        text += (text.empty() ? "" : ", ") + each;
    return text.empty() ? "there are none" : "there are: " + text;
}

template <class Value>
std::vector<std::string> keys_of(const std::map<std::string, Value>& of) {
    std::vector<std::string> names;
    for (const auto& each : of)
        names.push_back(each.first);
    return names;
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

// A number, whose top byte is the ECC if it has 32 bits, or sid, ecc and scids by themselves.
std::optional<service_id> take_data_service(plan_keys& keys, const char* key) {
    const json* const value = keys.find(key);
    if (value == nullptr) return std::nullopt;
    service_id service;
    if (value->is_object()) {
        plan_keys inner(*value, keys.at(key), "a data service", keys.errors());
        inner.number("sid", service.sid, true);
        inner.number("ecc", service.ecc);
        inner.number("scids", service.scids);
        inner.refuse_others();
        return service;
    }
    if (keys.number(key, service.sid)) service.ecc = static_cast<std::uint8_t>(service.sid >> 24);
    return service;
}

// true, or the tokens themselves: {"0x01": "News"}.
token_choice take_tokens(plan_keys& keys) {
    token_choice choice;
    const json* const value = keys.find("tokens");
    if (value == nullptr) return choice;
    if (value->is_boolean()) {
        choice.build = value->get<bool>();
        return choice;
    }
    if (!value->is_object()) {
        keys.error_at("tokens",
                      "is " + json_text(*value) + "; true is needed, or the tokens: {\"0x01\": \"News\"}");
        return choice;
    }
    for (const auto& [code, text] : value->items()) {
        const whole_number number = read_whole_number(json(code), 255);
        const auto byte = static_cast<std::uint8_t>(number.value);
        const auto& codes = token_codes();
        const std::string where = keys.at("tokens") + "/" + code;
        if (!number.error.empty() || std::find(codes.begin(), codes.end(), byte) == codes.end()) {
            keys.errors().push_back(
                {where, "is no token byte; these are 0x01 to 0x08, 0x0B, 0x0C, 0x0E to 0x13"});
        } else if (!text.is_string() || text.get_ref<const std::string&>().empty() ||
                   text.get_ref<const std::string&>().size() > 255) {
            keys.errors().push_back({where, "a token stands for a text of 1 to 255 bytes"});
        } else if (!choice.given.emplace(byte, text.get<std::string>()).second) {
            keys.errors().push_back({where, "the token byte stands twice"});
        }
    }
    return choice;
}

std::vector<int> take_days(plan_keys& keys) {
    std::vector<int> days;
    const json* const value = keys.array("days");
    if (value == nullptr) return {0};
    for (const json& each : *value) {
        const bool whole = each.is_number_integer();
        const auto day = whole ? each.get<std::int64_t>() : 0;
        if (whole && day >= -kMostDays && day <= kMostDays) {
            days.push_back(static_cast<int>(day));
        } else {
            keys.error_at("days", json_text(each) + " is no count of days from -366 to 366");
        }
    }
    return days;
}

// A path inside the recording's folder.
bool stays_inside(const std::string& path) {
    if (path.empty() || path.front() == '/' || path.back() == '/') return false;
    for (std::size_t at = 0; at <= path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string part = path.substr(at, end - at);
        if (part.empty() || part == "." || part == "..") return false;
        at = end + 1;
    }
    return true;
}

planned_object take_object(const json& from, const std::string& where, std::vector<plan_error>& errors) {
    plan_keys keys(from, where, "an object to send", errors);
    planned_object made;
    made.where = where;
    const std::size_t errors_before = errors.size();
    const std::pair<const char*, planned_object::kind> kinds[] = {{"xml", planned_object::kind::xml},
                                                                  {"image", planned_object::kind::image},
                                                                  {"object", planned_object::kind::object}};
    std::size_t given = 0;
    for (const auto& [key, what] : kinds) {
        const std::string* const source = keys.text(key);
        if (source == nullptr) continue;
        ++given;
        made.what = what;
        made.source = *source;
    }
    if (given != 1 && from.is_object() && errors.size() == errors_before)
        keys.error(given == 0 ? "say what is sent: \"xml\", \"image\" or \"object\", with the name of a file"
                              : "\"xml\", \"image\" and \"object\" exclude one another");
    if (const std::string* const name = keys.text("name")) made.name = *name;
    if (const std::string* const file = keys.text("file")) {
        made.file = *file;
        if (!stays_inside(*file))
            keys.error_at("file", in_quotes(*file) + " is no name inside the recording's folder");
    }
    made.in_line = keys.flag("inline");
    if (made.in_line && made.file) keys.error("\"file\" and \"inline\" exclude one another");
    made.days = take_days(keys);
    made.data_service = take_data_service(keys, "data_service");
    std::uint8_t type = 0;
    std::uint16_t subtype = 0;
    const bool ready = made.what == planned_object::kind::object && given == 1;
    if (keys.number("content_type", type, ready)) made.content_type = type;
    if (keys.number("content_subtype", subtype, ready)) made.content_subtype = subtype;
    if (ready && !made.name) keys.error("an object that is sent as it is needs the key \"name\"");
    if (made.what == planned_object::kind::xml) {
        made.tokens = take_tokens(keys);
        made.lenient = keys.flag("lenient");
        if (const std::string* const id = keys.text("ensemble")) {
            made.ensemble = spi_object::parse_ensemble_id(*id);
            if (!made.ensemble)
                keys.error_at("ensemble",
                              in_quotes(*id) + " is no ensemble such as \"e1.ce15\": ECC and EId");
        }
    }
    keys.refuse_others();
    return made;
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
        clock.from = *first;
        clock.to = *last;
        plan_.clock = clock;
    }

    void services() {
        const json* const all = keys_.object("services");
        if (all == nullptr) return;
        plan_keys names(*all, keys_.at("services"), "the services", plan_.errors);
        for (const auto& [name, each] : all->items()) {
            plan_keys keys(each, names.at(name), "a service", plan_.errors);
            planned_service& made = plan_.services[name];
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
                keys.error_at("service", "there is no service " + in_quotes(*name) + "; " +
                                             known_names(keys_of(plan_.services)));
        }
        if (const std::string* const name = keys.text("carousel")) {
            made.carousel = *name;
            if (plan_.carousels.count(*name) == 0)
                keys.error_at("carousel", "there is no carousel " + in_quotes(*name) + "; " +
                                              known_names(keys_of(plan_.carousels)));
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

// The JSON library takes the last of several equal keys; a person meant both.
class duplicate_keys {
 public:
    explicit duplicate_keys(std::vector<plan_error>& errors) : errors_(errors) {}

    bool operator()(int, json::parse_event_t event, json& parsed) {
        if (event == json::parse_event_t::object_start) open_.emplace_back();
        if (event == json::parse_event_t::object_end) open_.pop_back();
        if (event == json::parse_event_t::key &&
            !open_.back().insert(parsed.get_ref<const std::string&>()).second)
            errors_.push_back({"", "the key " + in_quotes(parsed.get_ref<const std::string&>()) +
                                       " stands twice in one object"});
        return true;
    }

 private:
    std::vector<plan_error>& errors_;
    std::vector<std::set<std::string>> open_;
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
    json parsed;
    duplicate_keys duplicates(result.errors);
    try {
        parsed = json::parse(text.begin(), text.end(), std::ref(duplicates));
    } catch (const json::exception& error) {
        result.errors.assign(1, {"", json_error_text(error, true)});
        return result;
    }
    plan_reader(parsed, result).read();
    return result;
}

}  // namespace dabspi
