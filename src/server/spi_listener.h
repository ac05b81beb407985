// The listener of the core interface: implemented by the host, called by the library.
//
// Every call comes from one thread of the library, the callback worker's: one at a time, in the order in
// which things happened, never from the host's own calling thread. While a call runs all further
// notifications wait, so return promptly. The records are the library's: copy what you keep. Do not destroy
// the server from inside a call: its destructor waits for this very thread. An exception that leaves a call
// is reported on the debug channel and ends the callback worker: nothing is notified from then on, everything
// else goes on.
#pragma once

#include "platform/dabspi_export.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_logo_info.h"
#include "src/parse/spi_program_info.h"

namespace spi {

// What the library tells its host.
class DABSPI_EXPORT ISpiListener {
 public:
    // A programme of a received schedule has been stored, for whatever service: today's and tomorrow's, each
    // start minute once. `info.start` is local time, `info.duration` minutes.
    virtual void ProgramInfoReceived(const ServElemId& service, SpiProgramInfo& info) = 0;

    // The programme on air on the current service, or the one after it, has changed. `next` is empty (no
    // name, start 1859-255-19 00:00) when no programme starts in the minute in which `now` ends; its duration
    // is then of no meaning.
    virtual void ProgramNowNextUpdated(SpiProgramInfo& now, SpiProgramInfo& next) = 0;

    // A station logo has been written to the file `logo.name` in the logo root. A file of that name may have
    // been there before and is now replaced.
    virtual void StationLogoReceived(SpiLogoInfo& logo) = 0;

 protected:
    // Not virtual: nothing is ever destroyed through this interface. The shared pointer that the host hands
    // over destroys the listener through its own type.
    ~ISpiListener() = default;
};

}  // namespace spi
