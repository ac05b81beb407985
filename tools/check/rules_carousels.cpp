// Findings in the carousels of a multiplex.

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string>

#include "src/parse/mot_content.h"
#include "tools/air/frame.h"
#include "tools/air/reception/carousel_words.h"
#include "tools/check/local_day.h"
#include "tools/check/rules.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

constexpr double kLongCycle = 5 * 60;  // seconds
// FEC packets come after 94 cells each time; a recording of so many has had some.
constexpr std::uint64_t kCellsForFec = 3 * 103;
// After so many frames a clock that is sent has come.
constexpr std::uint64_t kFramesForClock = 10'000 / air::kMillisecondsOfFrame;

std::string seconds_words(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", seconds);
    return text;
}

std::string component_words(const air::spi_component& of) {
    return "data service " + air::service_id_text(of.sid, of.long_id) + ", sub-channel " +
           std::to_string(of.sub_channel) + ", address " + std::to_string(of.address);
}

bool is_service_information(const air::object_statistics& of) {
    return of.content_type == spi::kMotSpiObject && of.content_subtype == 0;
}

class carousel_rules {
 public:
    carousel_rules(const received_carousels& air, finding_list& found) : air_(air), found_(found) {}

    void look_at(const air::carousel_report& of) {
        where_ = component_words(of.component);
        const air::carousel_statistics& carousel = of.carousel;
        if (carousel.counts.groups == 0) add(finding_code::spi_not_sent, where_);
        if (carousel.mode == air::carousel_mode::directory && carousel.objects.empty())
            add(finding_code::directory_empty, where_);
        for (const air::object_statistics& each : carousel.objects)
            look_at(each);
        const auto cycle = carousel.cycle();
        if (cycle && air::seconds_of(*cycle) > kLongCycle)
            add(finding_code::cycle_long, where_ + ": " + seconds_words(air::seconds_of(*cycle)));
        look_at_order(carousel);
        look_at_fec(of.component);
    }

    void look_at_names() {
        std::map<std::string, const air::carousel_report*> names;
        for (const air::carousel_report& each : air_.carousels)
            for (const air::object_statistics& object : each.carousel.objects) {
                if (object.name.empty()) continue;
                const auto [at, is_new] = names.emplace(object.name, &each);
                if (!is_new && at->second != &each)
                    add(finding_code::names_in_two, in_quotes(object.name, 200) + " on " +
                                                        component_words(at->second->component) + " and on " +
                                                        component_words(each.component));
            }
    }

    void look_at_announcements() {
        for (const std::string& each : air_.unreadable)
            add(finding_code::spi_unreadable, printable(each));
    }

    void look_at_clock() {
        if (!air_.has_clock && air_.frames >= kFramesForClock)
            add(finding_code::clock_missing, "none in " + seconds_words(air::seconds_of(air_.frames)));
    }

 private:
    void add(finding_code code, const std::string& text) {
        finding what{code};
        what.text = text;
        found_.add(what, text);
    }

    void look_at(const air::object_statistics& object) {
        const std::string name =
            object.name.empty() ? "an object without a name" : in_quotes(object.name, 200);
        if (object.times.count == 0)
            add(finding_code::never_completed,
                name + ": " + air::why_not_received(object) + " in " +
                    seconds_words(air::seconds_of(air_.frames - std::min(air_.frames, object.listed))));
        if (object.compressed) add(finding_code::object_compressed, name);
    }

    // Rounds are told apart by the directory where it comes once in each, as service information does.
    void look_at_order(const air::carousel_statistics& of) {
        const air::object_statistics* info = nullptr;
        const air::object_statistics* often = nullptr;
        for (const air::object_statistics& each : of.objects) {
            if (is_service_information(each) && each.times.count >= 2) info = &each;
            const bool image = each.content_type == spi::kMotImage && each.times.count >= 2;
            if (image && (often == nullptr || *each.times.mean_interval() < *often->times.mean_interval()))
                often = &each;
        }
        if (info == nullptr || often == nullptr) return;
        const double interval = *info->times.mean_interval();
        constexpr double kClearly = 1.5;
        if (interval > kClearly * *often->times.mean_interval())
            add(finding_code::service_info_rare,
                in_quotes(info->name, 200) + " every " + seconds_words(air::seconds_of(interval)) + ", " +
                    in_quotes(often->name, 200) + " every " +
                    seconds_words(air::seconds_of(*often->times.mean_interval())));
        const std::uint64_t rounds = of.directory_times.count;
        if (of.mode != air::carousel_mode::directory || rounds + 1 < info->times.count ||
            rounds > info->times.count + 1)
            return;
        std::size_t early = 0;
        for (const air::object_statistics& each : of.objects)
            if (each.content_type == spi::kMotImage && each.times.count >= 2 &&
                each.times.last > of.directory_times.first && in_round(of, each) < in_round(of, *info))
                ++early;
        if (early != 0) add(finding_code::images_first, where_ + ": " + std::to_string(early) + " images");
    }

    // Frames since the round of its last reception began.
    static std::uint64_t in_round(const air::carousel_statistics& of, const air::object_statistics& object) {
        const auto round = static_cast<std::uint64_t>(*of.directory_times.mean_interval());
        const std::uint64_t since = object.times.last - std::min(object.times.last, of.directory_times.first);
        return round == 0 ? since : since % round;
    }

    void look_at_fec(const air::spi_component& of) {
        if (of.fec_scheme == 0) return;
        for (const air::sub_channel_report& each : air_.sub_channels)
            if (each.id == of.sub_channel && each.counts.fec_sets == 0 && each.counts.cells > kCellsForFec)
                add(finding_code::fec_not_sent, "sub-channel " + std::to_string(of.sub_channel));
    }

    const received_carousels& air_;
    finding_list& found_;
    std::string where_;
};

// Without case; and what was read as single bytes, though it is UTF-8, as that.
std::string folded_name(const std::string& name) {
    std::string single;
    bool is_single = true;
    for (std::string_view left = name; !left.empty() && is_single;) {
        const utf8_part part = first_utf8_part(left);
        is_single = part.well_formed && part.code_point < 0x100;
        single += static_cast<char>(part.code_point);
        left.remove_prefix(part.length);
    }
    std::string text = is_single && is_well_formed_utf8(single) ? single : name;
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

void look_at_image_names(const history& in, finding_list& found) {
    std::map<std::string, std::string> announced;  // by folded name
    std::set<std::string> exact;
    for (const announcement& each : in.announcements) {
        announced.emplace(folded_name(each.content_name), each.content_name);
        exact.insert(each.content_name);
    }
    for (const image_arrival& each : in.images) {
        const std::string& name = in.objects[each.object].content_name;
        const auto almost = announced.find(folded_name(name));
        if (almost == announced.end() || exact.count(name) != 0) continue;
        finding what{finding_code::name_case_differs, each.line, each.object};
        what.text = "announced as " + in_quotes(almost->second, 200);
        found.add(what);
    }
}

void look_at_days(const history& in, finding_list& found) {
    std::set<long> clock;
    std::set<long> scheduled;
    for (const clock_period& each : in.clock)
        clock.insert(each.minute / kDayMinutes);
    for (const programme_arrival& each : in.programmes)
        if (each.time.mjd != 0) scheduled.insert(each.start / kDayMinutes);
    if (clock.empty() || scheduled.empty()) return;
    const bool any_of_today =
        std::any_of(clock.begin(), clock.end(), [&](long day) { return scheduled.count(day) != 0; });
    const bool near = *scheduled.begin() >= *clock.begin() - 1 && *scheduled.rbegin() <= *clock.rbegin() + 1;
    if (any_of_today || !near) return;
    finding what{finding_code::clock_day_off};
    what.text = "the clock says " + day_text(*clock.begin()) + ", the schedules are for " +
                day_text(*scheduled.begin());
    found.add(what);
}

}  // namespace

void look_at_carousels(const received_carousels& air, const history& in, finding_list& found) {
    carousel_rules rules(air, found);
    for (const air::carousel_report& each : air.carousels)
        rules.look_at(each);
    rules.look_at_names();
    rules.look_at_announcements();
    rules.look_at_clock();
    look_at_image_names(in, found);
    look_at_days(in, found);
}

}  // namespace dabspi::check
