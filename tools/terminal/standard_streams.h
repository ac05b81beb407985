// Standard input, output and error, for a command that was started without one of them.
#pragma once

namespace dabspi {

// To be called first of all. A standard descriptor that the caller has closed would be given to the next file
// that is opened, and what is printed would end up in that file. One that refuses to be used takes its place:
// using it fails with EBADF, as if it were still closed.
void occupy_closed_standard_streams();

}  // namespace dabspi
