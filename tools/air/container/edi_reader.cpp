#include "tools/air/container/edi_reader.h"

namespace dabspi::air {

bool edi_reader::next(frame& to) {
    input_.skip(pending_);
    pending_ = 0;
    for (;;) {
        const byte_view packet = fragments_.take();
        if (!packet.empty()) {
            if (frames_.take(packet, to)) return true;
            continue;
        }
        if (ended_) return false;
        if (step(to)) return true;
    }
}

// Goes on by one packet, one fragment, or what is none. True: there is a frame.
bool edi_reader::step(frame& to) {
    const byte_view here = input_.see(kMostEdiHeader);
    if (here.empty()) {
        ended_ = true;
        fragments_.finish();
        return false;
    }
    const edi_unit unit = edi_at(here);
    switch (unit.kind) {
        case edi_kind::af_packet: return take_packet(unit.size, to);
        case edi_kind::pf_fragment: take_fragment(unit.size); return false;
        case edi_kind::file_framing: input_.skip(unit.size); return false;
        case edi_kind::wrong_fragment: ++statistics_.pf_header_crc_wrong; break;
        case edi_kind::nothing: break;
    }
    look_on();
    return false;
}

// Something else of a stream begins behind it, or the input ends there.
bool edi_reader::is_confirmed(std::size_t size) {
    const byte_view behind = input_.see(size + kMostEdiHeader).part(size);
    return behind.empty() || edi_at(behind).kind != edi_kind::nothing;
}

bool edi_reader::take_packet(std::size_t size, frame& to) {
    if (input_.see(size).size() < size) {
        if (in_step_) ++statistics_.cut_short;
        look_on();
        return false;
    }
    // In step a packet needs no confirmation, so that it is handed on before the next one has come.
    const bool free_try = in_step_ && input_.position() >= tried_to_;
    if (!free_try && !is_confirmed(size)) {
        look_on();
        return false;
    }
    const byte_view whole = input_.see(size).part(0, size);
    if (edi_frames::is_intact(whole)) {
        in_step_ = true;
        if (frames_.take_intact(whole, to)) {
            pending_ = size;
            return true;
        }
        input_.skip(size);
        return false;
    }
    ++statistics_.af_crc_wrong;
    if (is_confirmed(size)) {  // its length is right
        input_.skip(size);
        return false;
    }
    tried_to_ = input_.position() + size;
    look_on();
    return false;
}

void edi_reader::take_fragment(std::size_t size) {
    const byte_view whole = input_.see(size).part(0, size);
    if (whole.size() < size) {
        ++statistics_.cut_short;
        look_on();
        return;
    }
    in_step_ = true;
    fragments_.add(read_pf_fragment(whole));
    input_.skip(size);
}

// To the next place where something may begin.
void edi_reader::look_on() {
    in_step_ = false;
    const byte_view here = input_.see(kMostEdiHeader);
    std::size_t at = 1;
    for (; at < here.size(); ++at) {
        const std::uint8_t first = here[at];
        if ((first == 'A' || first == 'P') && (at + 1 == here.size() || here[at + 1] == 'F')) break;
        if (first == 'f' && (at + 1 == here.size() || here[at + 1] == 'i')) break;
    }
    input_.skip(at);
    statistics_.bytes_skipped += at;
}

}  // namespace dabspi::air
