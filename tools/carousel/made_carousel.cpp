#include "tools/carousel/made_carousel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <stdexcept>

#include "src/parse/mot_content.h"
#include "tools/air/frame.h"

namespace dabspi::carousel {

namespace {

using namespace transmit;

// A receiver gives up on a service that is not there by then.
constexpr double kLongestDirectory = 60;  // seconds
constexpr double kRateStep = 8;           // kbit/s
constexpr double kSecondsOfFrame = air::kMillisecondsOfFrame / 1000.0;

double seconds_of(std::size_t size, const packet_settings& packets) {
    return static_cast<double>(size) / static_cast<double>(packets.frame_size) * kSecondsOfFrame;
}

std::vector<sent_object> sent_objects(const std::vector<carousel_object>& objects) {
    std::vector<sent_object> all;
    for (const carousel_object& each : objects)
        all.push_back(each.sent);
    return all;
}

sending_order order_of(const sent_carousel& carousel, const std::vector<tuned_object>& tuned, bool plain) {
    std::vector<importance> importances;
    for (const tuned_object& each : tuned)
        importances.push_back(each.what);
    sending_order order = plain ? plain_order(carousel) : computed_order(carousel, importances);
    close_order(order, carousel);
    return order;
}

void refuse_long_directory(const sent_carousel& carousel, const packet_settings& packets) {
    if (carousel.directory_size == 0) return;
    std::size_t least = 0;
    for (const sent_entity& each : carousel.entities)
        if (!each.object) least = least == 0 ? each.size : std::min(least, each.size);
    const double seconds = seconds_of(least, packets);
    if (seconds <= kLongestDirectory) return;
    const double rate = static_cast<double>(packets.frame_size) / 3 * seconds / kLongestDirectory;
    char text[256];
    std::snprintf(text, sizeof text,
                  "the bit rate cannot hold even the directory: its %zu bytes alone take %.0f s, and a "
                  "receiver waits for %.0f s at most; send fewer objects, compress the directory, or use "
                  "%.0f kbit/s",
                  least, seconds, kLongestDirectory, std::ceil(rate / kRateStep) * kRateStep);
    throw std::length_error(text);
}

std::uint32_t period_of(const stretch& sent) {
    return (sent.frames * air::kMillisecondsOfFrame + 99) / 100;
}

double worst_of(const waits& all, wanted_wait wanted) {
    switch (wanted) {
        case wanted_wait::now_next: return all.now_next.worst;
        case wanted_wait::logos: return all.logos.worst;
        case wanted_wait::everything: break;
    }
    return all.everything.worst;
}

}  // namespace

std::vector<tuned_object> tuned_objects(const std::vector<carousel_object>& objects, long today,
                                        const std::vector<bool>& shown) {
    std::vector<tuned_object> all;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const carousel_object& each = objects[i];
        tuned_object tuned;
        if (each.sent.content_type == spi::kMotSpiObject) {
            if (each.sent.content_subtype == spi::kMotServiceInformation)
                tuned.what = importance::service_information;
            if (each.sent.content_subtype == spi::kMotProgrammeInformation) {
                const long day = each.day.value_or(today);
                if (day == today) tuned = {importance::today, each.service};
                if (day == today + 1) tuned.what = importance::tomorrow;
            }
        } else if (shown[i]) {
            tuned.what = importance::logo;
        }
        all.push_back(std::move(tuned));
    }
    return all;
}

made_carousel make_carousel(const std::vector<carousel_object>& objects,
                            const std::vector<tuned_object>& tuned, const sending_settings& how,
                            carousel_maker& maker) {
    const std::vector<sent_object> all = sent_objects(objects);
    made_carousel made;
    // The directory tells the period, which is known when everything is in its place.
    carousel_maker trial = maker;
    made.carousel = trial.make(all);
    refuse_long_directory(made.carousel, how.packets);
    made.order = order_of(made.carousel, tuned, how.plain_order);
    made.sent = make_stretch(made.carousel, made.order, how.packets);
    made.carousel = maker.make(all, period_of(made.sent));
    made.order = order_of(made.carousel, tuned, how.plain_order);
    made.sent = make_stretch(made.carousel, made.order, how.packets);
    made.waits = tune_in(made.carousel, made.order, made.sent, tuned);
    const sending_order plain = order_of(made.carousel, tuned, true);
    made.plain_waits = tune_in(made.carousel, plain, make_stretch(made.carousel, plain, how.packets), tuned);
    return made;
}

const char* wanted_wait_text(wanted_wait of) {
    switch (of) {
        case wanted_wait::now_next: return "now and next";
        case wanted_wait::logos: return "all logos";
        case wanted_wait::everything: break;
    }
    return "everything";
}

left_out_objects what_has_to_go(const std::vector<carousel_object>& objects,
                                const std::vector<tuned_object>& tuned, const sending_settings& how,
                                wanted_wait wanted, double seconds) {
    // The least important first, of these the largest.
    std::vector<std::size_t> leaving;
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (tuned[i].what > importance::today) leaving.push_back(i);
    std::stable_sort(leaving.begin(), leaving.end(), [&](std::size_t a, std::size_t b) {
        if (tuned[a].what != tuned[b].what) return tuned[a].what > tuned[b].what;
        return objects[a].sent.sent_body().size() > objects[b].sent.sent_body().size();
    });
    const auto worst_without = [&](std::size_t count) {
        std::vector<bool> gone(objects.size());
        for (std::size_t i = 0; i < count; ++i)
            gone[leaving[i]] = true;
        std::vector<carousel_object> left;
        std::vector<tuned_object> left_tuned;
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (gone[i]) continue;
            left.push_back(objects[i]);
            left_tuned.push_back(tuned[i]);
        }
        if (left.empty()) return 0.0;
        const sent_carousel carousel = carousel_maker(how.carousel).make(sent_objects(left));
        const sending_order order = order_of(carousel, left_tuned, how.plain_order);
        return worst_of(tune_in(carousel, order, make_stretch(carousel, order, how.packets), left_tuned),
                        wanted);
    };
    left_out_objects result;
    result.before = worst_without(0);
    std::size_t low = 0;  // so many do not suffice, unless it is 0
    std::size_t high = leaving.size();
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        if (worst_without(middle) <= seconds) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    result.after = worst_without(low);
    result.enough = result.after <= seconds;
    result.objects.assign(leaving.begin(), leaving.begin() + static_cast<std::ptrdiff_t>(low));
    return result;
}

}  // namespace dabspi::carousel
