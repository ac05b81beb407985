// FIGs and FIBs (EN 300 401), written from the standard and not from what reads them. Every function gives
// the FIG as a whole, with its byte of type and length.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "testkit/multiplex/checksum.h"

namespace multiplex_builder {

// For any FIG of type 0; the content is the builder's below, or a test's own.
struct fig_flags {
    bool next = false;     // C/N
    bool others = false;   // OE
    bool long_id = false;  // P/D; the builders below set it by the SId
};
bytes fig(unsigned type, const bytes& data);
bytes fig_0(unsigned extension, const bytes& fields, const fig_flags& flags = {});

bytes fig_0_0(std::uint16_t eid, unsigned count, unsigned change = 0, unsigned occurrence = 0);
bytes fig_0_1_short(unsigned sub_channel, unsigned start, unsigned index, const fig_flags& flags = {});
bytes fig_0_1_long(unsigned sub_channel, unsigned start, unsigned option, unsigned level, unsigned size,
                   const fig_flags& flags = {});

struct component_field {
    unsigned mode = 3;   // TMId
    unsigned where = 0;  // SubChId or SCId
    bool primary = true;
    bool access_control = false;
    unsigned type = 0;  // ASCTy, DSCTy
};
// 32 bits for the SId if it does not fit in 16.
bytes fig_0_2(std::uint32_t sid, const std::vector<component_field>& components, const fig_flags& flags = {});
bytes fig_0_3(unsigned scid, unsigned sub_channel, unsigned address, unsigned type = 60,
              bool data_groups = true, std::optional<std::uint16_t> ca_organisation = std::nullopt,
              const fig_flags& flags = {});
bytes fig_0_8(std::uint32_t sid, unsigned scids, bool packet, unsigned where, bool extended = false);
bytes fig_0_9(int half_hours, unsigned ecc);
bytes fig_0_10(unsigned day, unsigned hour, unsigned minute,
               std::optional<unsigned> milliseconds = std::nullopt);
bytes fig_0_13(std::uint32_t sid, unsigned scids, const std::vector<std::pair<unsigned, bytes>>& applications,
               const fig_flags& flags = {});
bytes fig_0_14(unsigned sub_channel, unsigned scheme, const fig_flags& flags = {});

// `characters` are those of the label as they are sent, filled up to 16 bytes with `filling`.
bytes ensemble_label(std::uint16_t eid, const std::string& characters, unsigned charset = 0,
                     char filling = '\0');
bytes service_label(std::uint32_t sid, const std::string& characters, unsigned charset = 0,
                    char filling = '\0');
bytes component_label(std::uint32_t sid, unsigned scids, const std::string& characters, unsigned charset = 0);

// Modified Julian Date.
unsigned day_number(int year, unsigned month, unsigned day);

// As many FIBs as are needed, each with its CRC; FIGs are not parted.
bytes fibs(const std::vector<bytes>& figs);
// The FIC of one frame: three FIBs. Throws std::length_error if they do not fit.
bytes fic(const std::vector<bytes>& figs);

}  // namespace multiplex_builder
