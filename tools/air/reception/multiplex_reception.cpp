#include "tools/air/reception/multiplex_reception.h"

#include <algorithm>

namespace dabspi::air {

namespace {

packet_fec fec_of(const spi_component& component) {
    return component.fec_scheme == 1 ? packet_fec::rs_12_9 : packet_fec::none;
}

carousel_place place_of(const spi_component& component) {
    return {component.sub_channel, component.address};
}

// Of the component that it was announced by; else of another one that announces its place.
const spi_component* announcement_of(const spi_carousel& of, const std::vector<spi_component>& announced) {
    const spi_component* at_its_place = nullptr;
    for (const spi_component& each : announced) {
        if (each.sid == of.component().sid && each.scids == of.component().scids) return &each;
        if (place_of(each) == of.place()) at_its_place = &each;
    }
    return at_its_place;
}

// For what is sent on one address before its carousel is there.
class backlog_reader final : public data_group_sink {
 public:
    explicit backlog_reader(spi_carousel& to) : to_(to) {}
    void data_group(std::uint16_t address, byte_view group) override {
        if (address == to_.place().address) to_.take(group, frame);
    }
    std::uint64_t frame = 0;

 private:
    spi_carousel& to_;
};

}  // namespace

multiplex_reception::multiplex_reception(reception_sink& sink, delivery which, const reception_limits& limits)
    : sink_(sink), delivery_(which), limits_(limits), memory_left_(limits.memory) {
    is_candidate_.fill(true);
}

void multiplex_reception::take(const frame& of) {
    frame_ += begun_ ? std::uint64_t{of.missing_before} + 1 : 0;
    begun_ = true;
    ++backlog_credit_;
    const fic_news news = fic_.feed(of);
    if (news.changed) follow_ensemble();
    if (news.minute) sink_.minute(*news.minute);
    read_sub_channels(of);
}

void multiplex_reception::read_sub_channels(const frame& of) {
    for (const sub_channel_bytes& each : of.sub_channels) {
        const std::size_t id = each.id;
        if (id >= is_candidate_.size() || !is_candidate_[id]) continue;
        if (sub_channels_[id] != nullptr) sub_channels_[id]->feed(frame_, each.bytes);
        if (backlogs_[id] == nullptr) backlogs_[id] = std::make_unique<sub_channel_backlog>();
        backlogs_[id]->add(frame_, each.bytes);
    }
}

void multiplex_reception::follow_ensemble() {
    ensemble_ = fic_.describe();
    find_candidates();
    const std::vector<spi_component> announced = carousels_announced(ensemble_);
    sink_.ensemble_changed(ensemble_);
    stop_or_move(announced);
    for (const spi_component& each : announced)
        begin(each);
}

// What is said to carry audio or a stream of data carries no packets.
void multiplex_reception::find_candidates() {
    is_candidate_.fill(true);
    for (const described_service& service : ensemble_.services)
        for (const described_component& each : service.components)
            if (each.organisation.mode != transport::packet && each.sub_channel)
                is_candidate_[*each.sub_channel % is_candidate_.size()] = false;
    for (std::size_t id = 0; id < is_candidate_.size(); ++id)
        if (!is_candidate_[id]) backlogs_[id].reset();
}

void multiplex_reception::stop_or_move(const std::vector<spi_component>& announced) {
    std::vector<held_carousel> moved;
    for (auto at = carousels_.begin(); at != carousels_.end();) {
        held_carousel& held = at->second;
        const spi_component* const now = announcement_of(*held.carousel, announced);
        const bool stays = now != nullptr && place_of(*now) == at->first;
        if (!held.present || stays) {
            ++at;
            continue;
        }
        stop(held);
        if (now == nullptr) {
            ++at;
            continue;
        }
        held.carousel->set_component(*now);
        held.begins_here = true;
        moved.push_back(std::move(held));
        at = carousels_.erase(at);
    }
    for (held_carousel& held : moved) {
        held_carousel& there = carousels_[held.carousel->place()];
        if (there.carousel != nullptr) memory_left_ += there.carousel->memory;
        there = std::move(held);
    }
}

void multiplex_reception::stop(held_carousel& of) {
    of.present = false;
    of.last_frame = frame_;
    const carousel_place place = of.carousel->place();
    if (sub_channels_[place.sub_channel] != nullptr) sub_channels_[place.sub_channel]->detach(place.address);
    of.carousel->finish();
}

void multiplex_reception::begin(const spi_component& announced) {
    const carousel_place place = place_of(announced);
    if (!is_candidate_[place.sub_channel]) return;
    auto found = carousels_.find(place);
    if (found == carousels_.end()) {
        if (!make_room()) {
            ++beyond_limit_;
            return;
        }
        carousel_limits limits = limits_.carousel;
        limits.memory = std::min(limits.memory, memory_left_ / 2);
        limits.unlisted = std::min(limits.unlisted, limits.memory / 4);
        limits.unpacked = std::min(limits.unpacked, limits.memory / 2);
        limits.directory = std::min(limits.directory, limits.memory / 4);
        memory_left_ -= limits.memory;
        held_carousel made{std::make_unique<spi_carousel>(sink_, announced, delivery_, limits), frame_,
                           frame_};
        found = carousels_.emplace(place, std::move(made)).first;
    }
    held_carousel& held = found->second;
    held.carousel->set_component(announced);
    if (!held.present) {
        held.present = true;
        attach(held);
    }
    sub_channels_[place.sub_channel]->set_fec(fec_of(announced));
}

// For one carousel more: the place of that which has not been announced for the longest time.
bool multiplex_reception::make_room() {
    if (carousels_.size() < limits_.carousels) return true;
    auto oldest = carousels_.end();
    for (auto at = carousels_.begin(); at != carousels_.end(); ++at)
        if (!at->second.present &&
            (oldest == carousels_.end() || at->second.last_frame < oldest->second.last_frame))
            oldest = at;
    if (oldest == carousels_.end()) return false;
    memory_left_ += oldest->second.carousel->memory;
    carousels_.erase(oldest);
    return true;
}

void multiplex_reception::attach(held_carousel& to) {
    spi_carousel& carousel = *to.carousel;
    const carousel_place place = carousel.place();
    std::unique_ptr<spi_sub_channel>& live = sub_channels_[place.sub_channel];
    const bool is_first = live == nullptr;
    if (is_first) live = std::make_unique<spi_sub_channel>(fec_of(carousel.component()));
    if (is_first) live->attach(place.address, carousel);
    if (to.begins_here) read_backlog(carousel, is_first ? live.get() : nullptr);
    to.begins_here = false;
    live->attach(place.address, carousel);
}

// Into `live` where that is new. One that runs has these bytes behind it, and they are read beside it: what
// it is collecting or holding back comes out of it, and not of these.
void multiplex_reception::read_backlog(spi_carousel& of, spi_sub_channel* live) {
    const sub_channel_backlog* const backlog = backlogs_[of.place().sub_channel].get();
    if (backlog == nullptr || backlog_credit_ < backlog->frames()) return;
    backlog_credit_ -= backlog->frames();
    backlog_reader reader(of);
    packet_decoder packets(reader, fec_of(of.component()));
    bool begun = false;
    backlog->for_each([&](std::uint64_t frame, byte_view sent) {
        if (live != nullptr) {
            live->feed(frame, sent);
            return;
        }
        const std::uint64_t missing = begun ? frame - reader.frame - 1 : 0;
        if (missing != 0) packets.missing(static_cast<std::size_t>(missing) * sent.size());
        begun = true;
        reader.frame = frame;
        packets.feed(sent);
    });
}

void multiplex_reception::finish() {
    for (std::unique_ptr<spi_sub_channel>& each : sub_channels_)
        if (each != nullptr) each->finish();
    for (auto& [place, held] : carousels_)
        if (held.present) held.carousel->finish();
}

std::vector<carousel_report> multiplex_reception::carousels() const {
    std::vector<carousel_report> all;
    for (const auto& [place, held] : carousels_) {
        carousel_report report{
            held.carousel->component(), held.first_frame, held.present, held.carousel->statistics(), {}};
        report.packets.address = place.address;
        if (sub_channels_[place.sub_channel] != nullptr)
            for (const address_counts& each : sub_channels_[place.sub_channel]->addresses())
                if (each.address == place.address) report.packets = each;
        all.push_back(std::move(report));
    }
    return all;
}

std::vector<sub_channel_report> multiplex_reception::sub_channels() const {
    std::vector<sub_channel_report> all;
    for (std::size_t id = 0; id < sub_channels_.size(); ++id)
        if (sub_channels_[id] != nullptr)
            all.push_back({static_cast<std::uint8_t>(id), sub_channels_[id]->counts()});
    return all;
}

}  // namespace dabspi::air
