#include "src/parse/serv_elem_id.h"

namespace spi {

bool operator<(const ServElemId& a, const ServElemId& b) {
    return a.val() < b.val();
}

}  // namespace spi
