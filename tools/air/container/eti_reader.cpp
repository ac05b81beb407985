#include "tools/air/container/eti_reader.h"

#include "tools/air/crc16.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kCount = 4;    // in front of all frames
constexpr std::size_t kLength = 2;   // in front of each
constexpr std::size_t kSyncEnd = 4;  // ERR and FSYNC

// A frame, what stands in front of it, and the beginning of the one behind it.
constexpr std::size_t kLookAhead = kLength + kMostEtiFrame + kLength + kSyncEnd;

// Of the first synchronisation word from `from` on; the size if there is none.
std::size_t find_sync(byte_view in, std::size_t from) {
    const std::uint8_t* const begin = in.begin();
    for (std::size_t i = from; i + 3 <= in.size(); ++i)
        if (is_eti_sync(begin + i)) return i;
    return in.size();
}

}  // namespace

eti_reader::eti_reader(input_window& input, eti_form form)
    : input_(input), raw_(form == eti_form::raw), prefix_(raw_ ? 0 : kLength) {
    if (form == eti_form::framed) {
        input_.see(kCount);
        input_.skip(kCount);
    }
}

void eti_reader::skip_counted(std::size_t count) {
    input_.skip(count);
    statistics_.bytes_skipped += count;
}

// `at` begins in front of the length, if there is one.
bool eti_reader::begins_frame(byte_view at) const {
    return at.size() >= prefix_ + kSyncEnd && is_eti_sync(at.begin() + prefix_ + 1) && stated_size(at) != 0;
}

// With what stands in front; 0 where no frame can be so short or so long.
std::size_t eti_reader::stated_size(byte_view at) const {
    if (raw_) return kRawEtiFrame;
    const std::size_t length = at[0] | static_cast<std::size_t>(at[1]) << 8;
    return length < kEtiFrameStart || length > kMostEtiFrame ? 0 : kLength + length;
}

// Another frame begins behind it, or the input ends with it.
bool eti_reader::is_confirmed() {
    const byte_view here = input_.see(prefix_ + kSyncEnd);
    const std::size_t size = stated_size(here);
    if (size == 0) return false;
    const byte_view with_next = input_.see(size + prefix_ + kSyncEnd);
    if (with_next.size() >= size + prefix_ + kSyncEnd) return begins_frame(with_next.part(size));
    read_eti_frame(with_next.part(prefix_, size - prefix_), current_);
    return current_.fits;
}

// Moves to the next confirmed frame.
bool eti_reader::find_frame() {
    for (;;) {
        const byte_view seen = input_.see(kLookAhead);
        const std::size_t sync = find_sync(seen, prefix_ + 1);
        if (sync == seen.size()) {
            const std::size_t kept = seen.size() < kLookAhead ? 0 : prefix_ + kSyncEnd;
            skip_counted(seen.size() - kept);
            if (kept == 0) return false;
            continue;
        }
        skip_counted(sync - prefix_ - 1);
        if (is_confirmed()) return true;
        skip_counted(1);
    }
}

// In step: the frame that stands here, with what is in front of it. False: not in step, look for one.
bool eti_reader::size_of_next(std::size_t& size) {
    const byte_view here = input_.see(prefix_ + kEtiFrameStart);
    if (here.size() < prefix_ + kSyncEnd) {
        skip_counted(here.size());
        size = 0;
        return true;
    }
    size = stated_size(here);
    if (begins_frame(here)) return true;
    ++statistics_.wrong_sync;
    // Only the word itself may be damaged: then the next frame stands where it must.
    if (size != 0 && begins_frame(input_.see(size + prefix_ + kSyncEnd).part(size))) {
        input_.skip(size);
        return size_of_next(size);
    }
    return false;
}

bool eti_reader::next(frame& to) {
    input_.skip(pending_);
    pending_ = 0;
    for (;;) {
        std::size_t size = 0;
        if (!in_step_ || !size_of_next(size)) {
            in_step_ = find_frame();
            if (!in_step_) return false;
            size = stated_size(input_.see(prefix_ + kSyncEnd));
        }
        if (size == 0) return false;
        byte_view whole = input_.see(size).part(prefix_, size - prefix_);
        read_eti_frame(whole, current_);
        const bool cut = whole.size() < size - prefix_;
        // A damaged length in front of a frame that is as long as it says itself.
        if (!raw_ && !cut && current_.fits && current_.length_agrees && current_.length != size - prefix_ &&
            !begins_frame(input_.see(size + prefix_ + kSyncEnd).part(size))) {
            const std::size_t own = prefix_ + current_.length;
            if (begins_frame(input_.see(own + prefix_ + kSyncEnd).part(own))) size = own;
            whole = input_.see(size).part(prefix_, size - prefix_);
            read_eti_frame(whole, current_);
        }
        if (cut && !current_.fits) {
            ++statistics_.cut_short;
            input_.skip(prefix_ + whole.size());
            return false;
        }
        if (take(to)) {
            pending_ = prefix_ + whole.size();
            return true;
        }
        input_.skip(size);
    }
}

// False: the frame is dropped, and counted.
bool eti_reader::take(frame& to) {
    if (!current_.fits) {
        ++statistics_.layout_wrong;
        return false;
    }
    const bool damaged_header = header_is_damaged();
    if (damaged_header && !same_layout()) {
        ++statistics_.header_dropped;
        return false;
    }
    const bool damaged_body = body_is_damaged();
    const bool marked = current_.error_level != 0xFF;
    statistics_.marked_as_errored += marked ? 1U : 0U;
    to.damaged = damaged_header || damaged_body || marked;
    to.fic = current_.fic;
    to.sub_channels.clear();
    for (std::size_t i = 0; i < current_.streams; ++i) {
        const eti_stream& each = current_.stream[i];
        to.sub_channels.push_back({each.id, each.start, each.tpl, each.bytes});
    }
    counter_.number(to, damaged_header ? std::nullopt : std::optional<std::uint16_t>(current_.count),
                    statistics_);
    return true;
}

bool eti_reader::same_layout() const {
    if (layout_.size() != current_.streams) return false;
    for (std::size_t i = 0; i < layout_.size(); ++i) {
        const eti_stream& each = current_.stream[i];
        if (layout_[i].id != each.id || layout_[i].start != each.start ||
            layout_[i].size != each.bytes.size())
            return false;
    }
    return true;
}

// Some writers leave the checksums out: a wrong one says nothing until a right one was seen.
bool eti_reader::header_is_damaged() {
    if (!ends_with_crc16(current_.header)) {
        ++statistics_.header_crc_wrong;
        return header_crcs_seen_;
    }
    header_crcs_seen_ = true;
    if (same_layout()) return false;
    layout_.clear();
    for (std::size_t i = 0; i < current_.streams; ++i)
        layout_.push_back({current_.stream[i].id, current_.stream[i].start, current_.stream[i].bytes.size()});
    return false;
}

bool eti_reader::body_is_damaged() {
    if (!current_.body.empty() && ends_with_crc16(current_.body)) {
        body_crcs_seen_ = true;
        return false;
    }
    ++statistics_.body_crc_wrong;
    return body_crcs_seen_;
}

}  // namespace dabspi::air
