#include "src/event/teardown.h"

#include "platform/never_destroyed.h"

namespace spi {

monitor& teardown_monitor() {
    static never_destroyed<monitor> instance;
    return *instance;
}

}  // namespace spi
