// Identifiers of ensembles and services as people write them, one way everywhere: on the command line, in
// plans, in names of folders, in messages.
//
//   0xC185, c185          EId or SId: four hexadecimal digits, of a data service eight
//   e1.c185               ECC and EId, or ECC and SId
//   e1.c221.0             ECC, SId, SCIdS
//   e1.c185.c221.0        ECC, EId, SId, SCIdS; also ce1.c185.c221.0 and with dab: in front, as in bearer
//   URIs
//
// Upper and lower case are the same. Decimal numbers are none: 49541 is refused, not taken for something
// else. Values only; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dabspi {

class dab_identifier {
 public:
    // Nothing for a text that says none.
    static std::optional<dab_identifier> of_ensemble(std::string_view text);
    static std::optional<dab_identifier> of_service(std::string_view text);

    std::optional<std::uint8_t> ecc;
    std::optional<std::uint16_t> ensemble;
    std::optional<std::uint32_t> sid;
    std::optional<std::uint8_t> scids;

    // As they are printed: "E1.C185", "C185"; "E1.C221.0", "C221".
    std::string ensemble_text() const;
    std::string service_text() const;
};

// What is wrong with a text, for messages: "\"49541\" is no ensemble; an ensemble is written ...".
std::string no_ensemble(std::string_view text);
std::string no_service(std::string_view text);

}  // namespace dabspi
