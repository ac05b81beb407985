#include "tools/terminal/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace dabspi {

void occupy_closed_standard_streams() {
    // In this order, each open() gives the lowest descriptor that is free: the closed one.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1)
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

}  // namespace dabspi
