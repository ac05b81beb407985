// A notification for a person to read.
#pragma once

#include <string>

#include "tools/recording/notification.h"

namespace dabspi {

// One or two lines, each with its line end, in columns: the host's clock, the service, what it is, its
// content. A column that is not known holds "-". Names of the broadcast are made printable. `logo_root` is
// put in front of a logo's file.
std::string notification_text(const notification& what, const notification_time& at,
                              const std::string& logo_root);

}  // namespace dabspi
