// Which service a listener is on, of those of an ensemble. Pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/air/fic/ensemble.h"
#include "tools/recording/recording.h"

namespace dabspi::air {

// What can be listened to: services with audio as their primary component, by identifier.
std::vector<service_id> audio_services(const ensemble& in);

// `wanted` is an identifier or a label, whose case does not matter; empty: the first with audio.
std::optional<service_id> choose_service(const ensemble& in, const std::string& wanted);

// "C221 Radio 1, C222 Radio 2", for messages.
std::string services_text(const ensemble& in);

// As a data decoder hands it on: 32 bits, the topmost 8 of them the ECC.
service_id data_service_of(const spi_component& component, std::uint8_t ecc);

}  // namespace dabspi::air
