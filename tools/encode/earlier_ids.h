// Identifiers of services as they were written before they became URIs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dabspi {

// "e1.c185.c221.0" and "ce1.c185.c221.0" as "dab:ce1.c185.c221.0"; nothing for other texts.
std::optional<std::string> uri_of_earlier_id(std::string_view id);

}  // namespace dabspi
