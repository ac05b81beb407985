#include "tools/air/container/dump_reader.h"

#include "tools/air/fic/fic_decoder.h"

namespace dabspi::air {

namespace {

std::string address_text(const spi_component& of) {
    return std::to_string(of.address) + " in sub-channel " + std::to_string(of.sub_channel);
}

}  // namespace

bool find_dumped_component(byte_view fic, int address, spi_component& found, std::string& error) {
    fic_decoder decoder;
    std::vector<spi_component> seen;
    for (std::size_t at = 0; at + kFib <= fic.size(); at += dump_reader::kFicOfFrame) {
        frame each;
        each.fic = fic.part(at, dump_reader::kFicOfFrame);
        if (!decoder.feed(each).changed) continue;
        seen = spi_components(decoder.describe());
        for (const spi_component& one : seen) {
            if (one.bit_rate == 0 || (address >= 0 && one.address != address)) continue;
            found = one;
            return true;
        }
    }
    if (decoder.statistics().fibs == decoder.statistics().fibs_crc_wrong)
        error = "holds no FIB: 32 bytes each, with their CRC";
    else if (seen.empty())
        error = "announces no SPI that can be read";
    else {
        error = "announces no SPI at address " + std::to_string(address) + "; there is";
        for (const spi_component& one : seen)
            error += (&one == seen.data() ? " " : ", ") + address_text(one);
    }
    return false;
}

bool dump_reader::next(frame& to) {
    input_.skip(pending_);
    pending_ = 0;
    const byte_view seen = input_.see(size_).part(0, size_);
    if (seen.size() < size_) {
        statistics_.cut_short += seen.empty() ? 0U : 1U;
        input_.skip(seen.size());
        return false;
    }
    pending_ = size_;
    const std::uint64_t index = statistics_.frames++;
    to = frame();
    to.index = index;
    to.count_modulus = 5000;
    to.count = static_cast<std::uint16_t>(index % to.count_modulus);
    to.fic = byte_view(fic_).part(static_cast<std::size_t>(index) * kFicOfFrame, kFicOfFrame);
    to.sub_channels.push_back({id_, 0, 0, seen});
    return true;
}

}  // namespace dabspi::air
