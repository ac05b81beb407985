// Files in the logo root: writing one, and what the searches of SpiLogoDb build their patterns from. The one
// place of the logo unit that touches the disk and the platform's framework. Logo worker's thread only.
#pragma once

#include <string>

#include "src/parse/mot_body.h"

namespace spi {

// True when every byte of the body is in the file. Only regular files are written to: a link, pipe or device
// that stands at the path counts as a file that cannot be opened.
bool write_logo_file(const std::string& path, const MotBody& body);

// How the searches name a station: ECC, service identifier and SCIdS packed into one number (of which 8, 16
// and 4 bits take part), in upper-case hexadecimal.
std::string station_prefix(int ecc, int sid, int scids);

}  // namespace spi
