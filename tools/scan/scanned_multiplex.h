// What a multiplex has shown, gathered frame by frame. Plain values; the reports read them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/air/container/capture_reader.h"
#include "tools/air/container/container_statistics.h"
#include "tools/air/fic/broadcast_clock.h"
#include "tools/air/fic/ensemble.h"
#include "tools/air/fic/fib.h"
#include "tools/air/reception/multiplex_reception.h"
#include "tools/files/content_kind.h"

namespace dabspi::scan {

// An SPI component at one place. One that moves to another sub-channel or address is there once more.
struct spi_found {
    air::spi_component what;  // as it was described last
    std::uint64_t first_frame = 0;
    std::uint64_t last_frame = 0;  // the last one in which it was described
    bool present = false;          // it still was at the end
};

struct scanned_multiplex {
    std::string name;  // of the input
    content form;
    air::container_statistics container;
    air::fic_statistics fic;
    air::ensemble ensemble;  // as it was described last
    std::vector<spi_found> spi;
    std::vector<air::carousel_report> carousels;        // by place
    std::vector<air::sub_channel_report> sub_channels;  // those with a carousel
    std::uint64_t carousels_beyond_limit = 0;
    std::vector<std::string> unreadable_spi;  // announced, and not to be read; in words
    std::optional<air::local_minute> first_minute;
    std::optional<air::local_minute> last_minute;
    std::vector<air::edi_flow> flows;   // of a capture
    std::optional<std::size_t> chosen;  // which of them was read
    bool interrupted = false;

    // Of the frames received and those missing between them.
    double seconds() const { return air::seconds_of(container.frames + container.frames_missing); }

    // The carousel at a component's place. Null: it has moved, or was one too many.
    const air::carousel_report* carousel_of(const spi_found& component) const;
    // What its sub-channel carried; empty without a carousel there.
    air::packet_counts packets_of(std::uint8_t sub_channel) const;
};

}  // namespace dabspi::scan
