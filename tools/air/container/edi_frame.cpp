#include "tools/air/container/edi_frame.h"

#include "tools/air/crc16.h"

namespace dabspi::air {

namespace {

constexpr std::uint32_t kDeti = 0x64657469;  // "deti"
constexpr std::uint32_t kEst = 0x657374;     // "est", then a number
constexpr std::uint16_t kCountsOfARound = 250;
constexpr std::uint16_t kRounds = 20;

}  // namespace

bool edi_frames::is_intact(byte_view packet) {
    const bool with_crc = (packet[8] & 0x80) != 0;
    return packet.size() >= kAfHeader + kEdiCrc && (!with_crc || ends_with_crc16(packet));
}

bool edi_frames::take(byte_view packet, frame& to) {
    if (packet.size() < kAfHeader + kEdiCrc || edi_at(packet).size != packet.size()) {
        ++statistics_.af_malformed;
        return false;
    }
    if (!is_intact(packet)) {
        ++statistics_.af_crc_wrong;
        return false;
    }
    return take_intact(packet, to);
}

bool edi_frames::take_intact(byte_view packet, frame& to) {
    if (is_repeated(packet)) {
        ++statistics_.af_repeated;
        return false;
    }
    has_deti_ = false;
    to.damaged = false;
    to.fic = {};
    to.sub_channels.clear();
    if (!read_items(packet.part(kAfHeader, packet.size() - kAfHeader - kEdiCrc), to)) {
        ++statistics_.af_malformed;
        return false;
    }
    if (!has_deti_) {
        ++statistics_.af_without_frame;
        return false;
    }
    counter_.number(to, count_, statistics_);
    return true;
}

// Captures often hold each datagram twice. Sequence number, length and CRC together tell.
bool edi_frames::is_repeated(byte_view packet) {
    const bool with_crc = (packet[8] & 0x80) != 0;
    const std::uint64_t known_by = std::uint64_t{packet.number(2, 4)} << 32 | packet.number(6, 2) << 16 |
                                   packet.number(packet.size() - 2, 2);
    const bool repeated = with_crc && known_by == last_;
    last_ = known_by;
    return repeated;
}

bool edi_frames::read_items(byte_view payload, frame& to) {
    for (std::size_t at = 0; at + kTagHeader <= payload.size();) {
        const std::size_t size = (std::size_t{payload.number(at + 4, 4)} + 7) / 8;
        const byte_view value = payload.part(at + kTagHeader, size);
        if (value.size() != size) return false;
        if (payload.number(at, 4) == kDeti) {
            if (!read_deti(value, to)) return false;
        } else if (payload.number(at, 3) == kEst) {
            read_sub_channel(value, to);
        }
        at += kTagHeader + size;
    }
    return true;
}

bool edi_frames::read_deti(byte_view value, frame& to) {
    constexpr std::size_t kFixed = 6;
    constexpr std::size_t kTime = 8;
    const bool with_time = (value[0] & 0x80) != 0;
    const bool with_fic = (value[0] & 0x40) != 0;
    const unsigned round = value[0] & 0x1F;
    const bool valid = round < kRounds && value[1] < kCountsOfARound;
    count_.reset();
    if (valid) count_ = static_cast<std::uint16_t>(round * kCountsOfARound + value[1]);
    if (value[2] != 0xFF) {
        ++statistics_.marked_as_errored;
        to.damaged = true;
    }
    const std::size_t fic_size = !with_fic ? 0 : (value[3] >> 6) == 3 ? 128 : 96;
    to.fic = value.part(kFixed + (with_time ? kTime : 0), fic_size);
    has_deti_ = true;
    return value.size() >= kFixed && to.fic.size() == fic_size;
}

void edi_frames::read_sub_channel(byte_view value, frame& to) {
    constexpr std::size_t kFixed = 3;
    if (value.size() < kFixed) return;
    const std::uint32_t header = value.number(0, kFixed);
    to.sub_channels.push_back({static_cast<std::uint8_t>(header >> 18),
                               static_cast<std::uint16_t>(header >> 8 & 0x3FF),
                               static_cast<std::uint8_t>(header >> 2 & 0x3F), value.part(kFixed)});
}

}  // namespace dabspi::air
