#include "tools/compare/difference.h"

namespace dabspi::compare {

const std::vector<kind_words>& all_kinds() {
    using kind = difference_kind;
    static const std::vector<kind_words> all = {
        {kind::service_missing, "service-missing", "services", "Services that B does not have"},
        {kind::service_added, "service-added", "services", "Services that only B has"},
        {kind::service_information_missing, "service-information-missing", "services",
         "Services that B does not announce"},
        {kind::service_information_added, "service-information-added", "services",
         "Services that only B announces"},
        {kind::service_renamed, "service-renamed", "services", "Services with other names"},
        {kind::day_missing, "day-missing", "days", "Days that B does not have"},
        {kind::day_added, "day-added", "days", "Days that only B has"},
        {kind::programme_missing, "programme-missing", "programmes", "Programmes that B does not have"},
        {kind::programme_added, "programme-added", "programmes", "Programmes that only B has"},
        {kind::programme_moved, "programme-moved", "programmes", "Programmes that begin at another time"},
        {kind::programme_renamed, "programme-renamed", "programmes", "Programmes with other names"},
        {kind::programme_duration, "programme-duration", "programmes", "Programmes of another duration"},
        {kind::description, "description", "descriptions", "Other descriptions"},
        {kind::genre, "genre", "genres", "Other genres"},
        {kind::logo_missing, "logo-missing", "logos", "Logos that B does not have"},
        {kind::logo_added, "logo-added", "logos", "Logos that only B has"},
        {kind::logo_picture, "logo-picture", "logos", "Logos that are another picture"},
        {kind::logo_size, "logo-size", "logos", "Logos of another size"},
        {kind::logo_name, "logo-name", "logos", "Logos under another name"},
    };
    return all;
}

const kind_words& words_of(difference_kind kind) {
    return all_kinds()[static_cast<std::size_t>(kind)];
}

}  // namespace dabspi::compare
