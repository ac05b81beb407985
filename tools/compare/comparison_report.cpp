#include "tools/compare/comparison_report.h"

#include <map>
#include <nlohmann/json.hpp>

#include "tools/compare/time_words.h"
#include "tools/text/utf8.h"

namespace dabspi::compare {

namespace {

using json = nlohmann::ordered_json;

std::size_t programmes_of(const compared_side& of) {
    std::size_t count = 0;
    for (const guide::service& each : of.guide->services)
        count += each.programmes.size();
    return count;
}

std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string side_line(const char* letter, const compared_side& of) {
    std::string line = std::string(letter) + ": ";
    for (std::size_t i = 0; i < of.inputs.size(); ++i)
        line += (i == 0 ? "" : ", ") + printable(of.inputs[i]);
    return line + ": " + counted(of.guide->services.size(), "service") + ", " +
           counted(programmes_of(of), "programme") + "\n";
}

// By kind, in the order of kinds.
std::map<difference_kind, std::vector<const difference*>> by_kind(const comparison& of) {
    std::map<difference_kind, std::vector<const difference*>> made;
    for (const difference& each : of.differences)
        made[each.kind].push_back(&each);
    return made;
}

std::string place_of(const difference& of) {
    const std::string id = of.service->id.text();
    const std::string name = name_of(*of.service);
    return id + (name == id ? "" : " " + in_quotes(name)) + (of.day ? ", " + date_text(*of.day) : "");
}

json json_of(const guide::programme& of) {
    json made = {{"start", utc_text(of.start)}, {"duration", of.duration}, {"name", name_of(of)}};
    if (!of.id.empty()) made["id"] = of.id;
    return made;
}

json json_of(const difference& of) {
    const kind_words& words = words_of(of.kind);
    json made = {{"kind", words.name},
                 {"topic", words.topic},
                 {"service", of.service->id.text()},
                 {"service_name", name_of(*of.service)}};
    if (of.day) made["day"] = date_text(*of.day);
    if (of.a != nullptr) made["a"] = json_of(*of.a);
    if (of.b != nullptr) made["b"] = json_of(*of.b);
    made["text"] = of.text;
    return made;
}

json json_of(const compared_side& of) {
    json inputs = json::array();
    for (const std::string& each : of.inputs)
        inputs.push_back(printable(each));
    return {{"inputs", inputs},
            {"services", of.guide->services.size()},
            {"programmes", programmes_of(of)},
            {"images", of.guide->counts.images}};
}

}  // namespace

std::string text_report(const comparison& of, const compared_side& a, const compared_side& b,
                        std::size_t most) {
    std::string text = side_line("A", a) + side_line("B", b);
    bool cut = false;
    for (const auto& [kind, all] : by_kind(of)) {
        text += std::string("\n") + words_of(kind).heading + ": " + std::to_string(all.size()) + "\n";
        std::string place;
        std::size_t listed = 0;
        for (const difference* const each : all) {
            if (most != 0 && listed == most) break;
            ++listed;
            std::string here = place_of(*each);
            if (each->a == nullptr && each->b == nullptr) {  // of the service or the day as a whole
                text += "  " + here + ": " + each->text + "\n";
                continue;
            }
            if (here != place) text += "  " + here + "\n";
            place = std::move(here);
            text += "    " + each->text + "\n";
        }
        if (listed == all.size()) continue;
        text += "  and " + std::to_string(all.size() - listed) + " more\n";
        cut = true;
    }
    text += "\n";
    for (const std::string& each : of.said)
        text += each + "\n";
    text += of.differences.empty() ? "no difference\n" : counted(of.differences.size(), "difference") + "\n";
    if (cut) text += "--all lists all of them\n";
    return text;
}

std::string json_report(const comparison& of, const compared_side& a, const compared_side& b,
                        std::int64_t tolerance) {
    json made = {{"a", json_of(a)}, {"b", json_of(b)}, {"tolerance", tolerance}};
    made["counts"] = json::object();
    for (const auto& [kind, all] : by_kind(of))
        made["counts"][words_of(kind).name] = all.size();
    made["differences"] = json::array();
    for (const difference& each : of.differences)
        made["differences"].push_back(json_of(each));
    made["not_compared"] = of.said;
    return printable_json(made.dump(1)) + "\n";
}

}  // namespace dabspi::compare
