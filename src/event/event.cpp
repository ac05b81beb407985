#include "src/event/event.h"

#include "src/event/quiet.h"

namespace spi {

i_evt_base::i_evt_base(event_code event) : code(event) {
    count_payload();
}
i_evt_base::~i_evt_base() {
    uncount_payload();
}
int i_evt_base::exec() {
    return 0;
}

}  // namespace spi
