#include "tools/transmit/container/multiplex_writer.h"

#include "tools/air/frame.h"
#include "tools/transmit/container/edi_packet_writer.h"
#include "tools/transmit/container/eti_frame_writer.h"

namespace dabspi::transmit {

namespace {

constexpr std::uint8_t kEep3A = 0x22;  // TPL
constexpr unsigned kCountModulus = 5000;
constexpr std::uint8_t kFilling = 0x55;

void append_little_endian(bytes& to, std::uint64_t value, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        to.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

}  // namespace

multiplex_writer::multiplex_writer(const announced_ensemble& of, multiplex_form form, std::int64_t begin)
    : of_(of),
      form_(form),
      begin_(begin),
      fic_(of),
      silence_(of.services.empty() ? 0 : of.sound.bytes_of_frame()) {}

bytes multiplex_writer::file_header(std::uint64_t frames) const {
    bytes made;
    if (form_ == multiplex_form::framed) append_little_endian(made, frames, 4);
    return made;
}

void multiplex_writer::append_frame(bytes& to, byte_view spi) {
    fic_.write(count_, begin_ + static_cast<std::int64_t>(count_) * air::kMillisecondsOfFrame, fic_bytes_);
    air::frame frame;
    frame.index = count_;
    frame.count = static_cast<std::uint16_t>(count_ % kCountModulus);
    frame.count_modulus = kCountModulus;
    frame.fic = {fic_bytes_, kFicBytes};
    frame.sub_channels.push_back({of_.spi.id, of_.spi.start, kEep3A, spi});
    if (!silence_.empty()) frame.sub_channels.push_back({of_.sound.id, of_.sound.start, kEep3A, silence_});
    ++count_;
    if (form_ == multiplex_form::edi) {
        append_edi_packet(to, frame);
        return;
    }
    if (form_ == multiplex_form::raw) {
        const std::size_t end = to.size() + kRawEtiFrame;
        append_eti_frame(to, frame);
        to.resize(end, kFilling);
        return;
    }
    eti_.clear();
    append_eti_frame(eti_, frame);
    append_little_endian(to, eti_.size(), 2);
    append_bytes(to, eti_);
}

}  // namespace dabspi::transmit
