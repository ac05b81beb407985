// Writes a carousel as a file of its form, whole or not at all. Memory does not depend on its length.
#pragma once

#include <cstdint>
#include <string>

#include "tools/carousel/prepared_carousel.h"

namespace dabspi::carousel {

// Bytes of a form, one logical frame after another, without end: the stretch is repeated.
class form_writer {
 public:
    form_writer(const prepared_carousel& of, output_form form);

    // What stands at the beginning of a file of so many frames.
    bytes file_header(std::uint64_t frames) const;
    // The next frame's; with an SPI sub-channel's bytes from elsewhere.
    void append_frame(bytes& to);
    void append_frame(bytes& to, spi_object::byte_view spi);

 private:
    const prepared_carousel& of_;
    std::optional<transmit::multiplex_writer> multiplex_;
    std::uint32_t next_ = 0;  // frame of the stretch
};

// How many logical frames a file has: one stretch, or as long as asked for; packets are whole stretches.
std::uint64_t frames_of(const prepared_carousel& of, const carousel_options& options, output_form form);

// The error's text, or an empty one. `path` "-" is standard output.
std::string write_carousel(const prepared_carousel& of, output_form form, std::uint64_t frames,
                           const std::string& path);

}  // namespace dabspi::carousel
