// A MOT entity in segments (EN 301 234, 5.1): a header, a body or a directory that is sent again and again.
//
// Owned by an entity store, used on its thread. Order and repetition are free. A segment that was received
// before is compared: where it differs, or does not fit those that are held, another version is being sent,
// and the entity is started again with this segment, so that no two versions are mixed.
//
// A reception is complete when every segment was received since the reception before. What one round lost the
// next one fills in; then the rest of that round is waited for, since it may show that it is another version.
// Work per segment does not depend on how many there are, memory is that of the bytes held and about 64 bytes
// a segment.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;
using spi_object::bytes;

class segmented_entity {
 public:
    struct taken {
        bool received = false;   // a reception is complete: body() is the whole entity
        bool restarted = false;  // what was held is thrown away
        bool misfit = false;     // of another size or number than those held allow: why it was restarted
    };
    taken take(std::uint16_t number, bool last, byte_view data);

    // Nothing follows: is there a reception that only waited for the end of its round?
    bool finish();

    bool whole() const { return body_ != nullptr; }
    // Of the entity as a whole, null before that; shared, since who was handed it may keep it.
    const std::shared_ptr<const bytes>& body() const { return body_; }
    std::size_t segments_held() const { return slots_.size(); }
    std::size_t segments() const {
        return last_ < 0 ? 0 : static_cast<std::size_t>(last_) + 1;
    }                                                           // 0: unknown
    std::size_t segment_size() const { return segment_size_; }  // of all but the last; 0: unknown
    std::uint32_t version() const { return version_; }          // grows with each restart
    std::size_t memory() const;                                 // bytes

 private:
    struct slot {
        std::uint32_t offset = 0;
        std::uint32_t size = 0;
        std::uint32_t reception = 0;  // in which it was received last
        std::uint32_t round = 0;
    };

    bool fits(std::uint16_t number, bool last, std::size_t size) const;
    bool equal(const slot& held, byte_view data) const;
    void restart();
    slot& append(std::uint16_t number, bool last, byte_view data);
    bool note(std::uint16_t number, slot& at);
    void join();
    void begin_reception();
    void begin_round();

    bytes held_;  // in the order of arrival, until it is whole
    std::shared_ptr<const bytes> body_;
    std::unordered_map<std::uint16_t, slot> slots_;
    bool in_order_ = true;  // held_ is in the order of the numbers
    int last_ = -1;         // the last segment's number
    int highest_ = -1;
    std::size_t segment_size_ = 0;
    std::size_t last_size_ = 0;
    std::uint32_t version_ = 0;

    std::uint32_t reception_ = 1;
    std::uint32_t round_ = 1;
    std::size_t in_reception_ = 0;
    std::size_t in_round_ = 0;
    int previous_ = -1;      // the segment before
    bool ascending_ = true;  // in this round
    bool waiting_ = false;   // for the end of the round
};

}  // namespace dabspi::air
