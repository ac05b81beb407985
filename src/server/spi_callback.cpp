#include "src/server/spi_callback.h"

#include "src/event/payloads.h"

namespace spi {
namespace {

SpiProgramInfo program_info(const PiScheduleProgramme& programme) {
    constexpr unsigned kSecondsPerMinute = 60;
    SpiProgramInfo info;
    info.start = programme.time.local_time(0);
    info.duration = static_cast<std::uint16_t>(programme.duration / kSecondsPerMinute);
    info.name = programme.name;
    return info;
}

}  // namespace

SpiCallback::SpiCallback() : event_proc(QID_CBHDL, worker_duties{}) {
    begin(*this);
}
SpiCallback::~SpiCallback() {
    destroy_proc();
}

void SpiCallback::process_event(event& e) {
    const std::shared_ptr<i_evt_base> payload = e.payload;  // kept for the length of the call
    switch (e.code()) {
        case EC_EVTINFO: {
            const auto& stored = static_cast<const pi_programme_event&>(*payload);
            send_evtinfo(stored.service, stored.programme);
            break;
        }
        case EC_EVTCB: listener_ = static_cast<const cb_register_event&>(*payload).listener; break;
        case EC_NOWNEXT: {
            const auto& update = static_cast<const nownext_update_event&>(*payload);
            send_nownext(update.now, update.next);
            break;
        }
        case EC_LOGOCB: send_logoinfo(static_cast<si_logo_event&>(*payload).logo); break;
        case EC_TERM: event_proc::process_event(e); break;
        default: break;
    }
}

int SpiCallback::send_evtinfo(const ServElemId& service, const PiScheduleProgramme& programme) {
    if (!listener_) return 0;
    SpiProgramInfo info = program_info(programme);
    listener_->ProgramInfoReceived(service, info);
    return 0;
}

int SpiCallback::send_nownext(const PiScheduleProgramme& now, const PiScheduleProgramme& next) {
    if (!listener_) return 0;
    SpiProgramInfo now_info = program_info(now);
    SpiProgramInfo next_info = program_info(next);
    listener_->ProgramNowNextUpdated(now_info, next_info);
    return 0;
}

int SpiCallback::send_logoinfo(SpiLogoInfo& logo) {
    if (!listener_) return 0;
    listener_->StationLogoReceived(logo);
    return 0;
}

}  // namespace spi
