// What XML documents (ETSI TS 102 818) say and binary objects have no coding for: it is left out, not
// refused.
#pragma once

#include <string_view>

namespace dabspi {

bool is_element_without_coding(std::string_view name);
bool is_attribute_without_coding(std::string_view element, std::string_view name);

}  // namespace dabspi
