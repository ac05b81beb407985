#include "tools/air/fic/fic_decoder.h"

#include <algorithm>
#include <cstring>

#include "tools/air/crc16.h"
#include "tools/air/fic/label_text.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kLabel = 16;

bool organises(std::uint8_t extension) {
    return extension == 1 || extension == 2 || extension == 3 || extension == 8 || extension == 13 ||
           extension == 14;
}

bool is_empty(const configuration& of) {
    return of.sub_channels.empty() && of.services.empty() && of.packet_components.empty();
}

template <class Map>
void replace_if_known(Map& with_next, Map& next) {
    if (!next.empty()) with_next = std::move(next);
}

template <class Map>
void add(Map& to, const Map& next) {
    for (const auto& [key, value] : next)
        to[key] = value;
}

}  // namespace

fic_news fic_decoder::feed(const frame& of) {
    changed_ = false;
    for (std::size_t at = 0; at + kFib <= of.fic.size(); at += kFib)
        read_fib(of.fic.part(at, kFib));
    statistics_.fibs_cut += of.fic.size() % kFib != 0 ? 1U : 0U;
    fic_news news;
    news.changed = changed_;
    const auto now = clock_.now();
    if (now && now != last_minute_) news.minute = now;
    last_minute_ = now;
    return news;
}

void fic_decoder::read_fib(byte_view fib) {
    ++statistics_.fibs;
    if (!ends_with_crc16(fib)) {
        ++statistics_.fibs_crc_wrong;
        return;
    }
    fig_walk walk(fib);
    for (fig each; walk.next(each, statistics_);)
        read_fig(each);
}

void fic_decoder::change() {
    changed_ = true;
    ++generation_;
}

// Of FIGs with the same bytes it is the same.
fic_decoder::known_fig& fic_decoder::place_of(const fig& of) {
    std::uint64_t hash = of.type + of.data.size() * 8;
    std::size_t at = 0;
    for (; at + 8 <= of.data.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, of.data.begin() + at, sizeof word);
        hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 32;
    }
    for (; at < of.data.size(); ++at)
        hash = (hash ^ of.data[at]) * 0x9E3779B97F4A7C15U;
    return known_[hash >> 55];
}

void fic_decoder::read_fig(const fig& of) {
    const bool type_0 = of.type == 0;
    if (!type_0 && of.type != 1) {
        ++statistics_.figs_not_needed;
        return;
    }
    // What differs from frame to frame is not worth remembering.
    const std::uint8_t extension = of.data[0] & 0x1F;
    const bool passing = type_0 && (extension == 0 || extension == 10);
    if (passing) {
        read_type_0(of.data);
        return;
    }
    known_fig& place = place_of(of);
    const auto head = static_cast<std::uint8_t>(std::size_t{of.type} << 5 | of.data.size());
    if (place.generation == generation_ && place.bytes[0] == head &&
        std::memcmp(place.bytes.data() + 1, of.data.begin(), of.data.size()) == 0)
        return;
    read_well_ = true;
    if (type_0) {
        read_type_0(of.data);
    } else {
        read_type_1(of.data);
    }
    if (!read_well_) return;
    place.generation = generation_;
    place.bytes[0] = head;
    std::copy(of.data.begin(), of.data.end(), place.bytes.begin() + 1);
}

void fic_decoder::take(const fig_reading& reading) {
    if (reading.changed) change();
    switch (reading.problem) {
        case fig_problem::none: return;
        case fig_problem::malformed: ++statistics_.figs_malformed; break;
        case fig_problem::over_limit: ++statistics_.figs_over_limit; break;
        case fig_problem::not_needed: ++statistics_.figs_not_needed; break;
    }
    read_well_ = false;  // it is counted each time
}

void fic_decoder::read_type_0(byte_view data) {
    const bool next = (data[0] & 0x80) != 0;
    const bool others = (data[0] & 0x40) != 0;
    const bool long_id = (data[0] & 0x20) != 0;
    const std::uint8_t extension = data[0] & 0x1F;
    const byte_view fields = data.part(1);
    if (others) {
        ++statistics_.figs_of_others;
        read_well_ = false;
    } else if (organises(extension)) {
        take(read_organisation(extension, long_id, fields, next ? next_ : current_));
    } else if (extension == 0) {
        read_ensemble(fields);
    } else if (extension == 9) {
        const auto offset = clock_.offset_half_hours();
        const auto ecc = clock_.ecc();
        const bool good = clock_.read_offset(fields);
        const bool same = offset == clock_.offset_half_hours() && ecc == clock_.ecc();
        take({good && !same, good ? fig_problem::none : fig_problem::malformed});
    } else if (extension == 10) {
        if (!clock_.read_time(fields)) ++statistics_.figs_malformed;
    } else {
        ++statistics_.figs_not_needed;
        read_well_ = false;
    }
}

// 0/0 (6.4)
void fic_decoder::read_ensemble(byte_view fields) {
    if (fields.size() < 4) {
        ++statistics_.figs_malformed;
        return;
    }
    const auto eid = static_cast<std::uint16_t>(fields.number(0, 2));
    if (eid_ && *eid_ != eid) begin_anew();
    if (!eid_) change();
    eid_ = eid;
    const unsigned kind_of_change = fields[2] >> 6;
    const std::uint8_t count = fields[3];
    if (kind_of_change != 0 && !change_announced_) ++statistics_.reconfigurations;
    change_announced_ = kind_of_change != 0;
    if (change_announced_ && fields.size() >= 5) occurrence_ = fields[4];
    // Once nothing is announced any more it is over, whether or not the frame of the change was received.
    if (occurrence_ && (count == *occurrence_ || !change_announced_)) switch_configuration();
}

void fic_decoder::switch_configuration() {
    occurrence_.reset();
    if (is_empty(next_)) return;
    replace_if_known(current_.sub_channels, next_.sub_channels);
    replace_if_known(current_.services, next_.services);
    replace_if_known(current_.packet_components, next_.packet_components);
    add(current_.definitions, next_.definitions);
    add(current_.user_applications, next_.user_applications);
    add(current_.fec_schemes, next_.fec_schemes);
    next_ = configuration();
    change();
}

void fic_decoder::begin_anew() {
    ++statistics_.changes_of_ensemble;
    current_ = next_ = configuration();
    eid_.reset();
    label_.clear();
    service_labels_.clear();
    component_labels_.clear();
    clock_.reset();
    occurrence_.reset();
    change();
}

void fic_decoder::read_type_1(byte_view data) {
    const bool others = (data[0] & 0x08) != 0;
    if (others) {
        ++statistics_.figs_of_others;
        read_well_ = false;
        return;
    }
    read_label(data[0] & 7, static_cast<std::uint8_t>(data[0] >> 4), data.part(1));
}

// 1/0, 1/1, 1/4, 1/5 (8.1.13, 8.1.14)
void fic_decoder::read_label(std::uint8_t extension, std::uint8_t charset, byte_view rest) {
    switch (extension) {
        case 0:
            // Until 0/0 has come nobody knows whose it is; it is repeated.
            if (rest.size() >= 2 + kLabel && eid_ != static_cast<std::uint16_t>(rest.number(0, 2))) {
                read_well_ = false;
                return;
            }
            if (rest.size() < 2 + kLabel) break;
            if (const std::string text = label_text(charset, rest.part(2, kLabel)); text != label_) {
                label_ = text;
                change();
            }
            return;
        case 1: put_label(service_labels_, rest.number(0, 2), charset, rest.part(2)); return;
        case 5: put_label(service_labels_, rest.number(0, 4), charset, rest.part(4)); return;
        case 4: {
            const std::size_t id = (rest[0] & 0x80) != 0 ? 4 : 2;
            const auto scids = static_cast<std::uint8_t>(rest[0] & 0xF);
            put_label(component_labels_, component_id(rest.number(1, id), scids), charset, rest.part(1 + id));
            return;
        }
        default: take({false, fig_problem::not_needed}); return;
    }
    take({false, fig_problem::malformed});
}

template <class Map, class Key>
void fic_decoder::put_label(Map& into, const Key& key, std::uint8_t charset, byte_view rest) {
    if (rest.size() < kLabel) return take({false, fig_problem::malformed});
    const std::string text = label_text(charset, rest.part(0, kLabel));
    const auto place = into.find(key);
    if (place != into.end() && place->second == text) return;
    if (place == into.end() && into.size() >= kMostComponents) return take({false, fig_problem::over_limit});
    into[key] = text;
    change();
}

}  // namespace dabspi::air
