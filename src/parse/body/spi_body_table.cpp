#include "src/parse/body/spi_body_table.h"

namespace spi {

date_effect effect_of_date(const MotDateTime& last, const MotDateTime& now) {
    if (now.day == last.day) return date_effect::same_day;
    return last.year == 0 ? date_effect::first_date : date_effect::emptied;
}

bool SpiBodyTable::has_body(const std::string& name, unsigned size, const ServElemId& service) {
    name_table& names = bodies_[service];
    const auto [known, is_new] = names.try_emplace(name, size);
    if (is_new) return false;
    if (known->second == size) return true;
    known->second = size;
    return false;
}

}  // namespace spi
