#include "tools/encode/earlier_ids.h"

#include "tools/spi/values.h"

namespace dabspi {

std::optional<std::string> uri_of_earlier_id(std::string_view id) {
    const std::size_t ensemble = id.find('.');
    const std::size_t service = ensemble == std::string_view::npos ? ensemble : id.find('.', ensemble + 1);
    if (service == std::string_view::npos || service + 1 >= id.size()) return std::nullopt;
    std::string uri = "dab:" + std::string(id);
    if (ensemble == 2) {
        const bool is_long = id.find('.', service + 1) == service + 9;  // the country stands behind the ECC
        uri.insert(4, 1, id[service + (is_long ? 3 : 1)]);
    }
    if (!spi_object::parse_content_id(uri)) return std::nullopt;
    return uri;
}

}  // namespace dabspi
