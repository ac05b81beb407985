#include "tools/air/reception/spi_sub_channel.h"

namespace dabspi::air {

void spi_sub_channel::feed(std::uint64_t frame, byte_view sent) {
    const std::uint64_t missing = begun_ && frame > frame_ + 1 ? frame - frame_ - 1 : 0;
    begun_ = true;
    frame_ = frame;
    if (missing != 0) packets_.missing(static_cast<std::size_t>(missing) * sent.size());
    packets_.feed(sent);
}

void spi_sub_channel::set_fec(packet_fec fec) {
    if (fec == fec_) return;
    fec_ = fec;
    packets_.set_fec(fec);
}

void spi_sub_channel::data_group(std::uint16_t address, byte_view group) {
    const auto found = carousels_.find(address);
    if (found != carousels_.end()) found->second->take(group, frame_);
}

}  // namespace dabspi::air
