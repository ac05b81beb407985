#include "tools/carousel/checked_carousel.h"

#include "tools/check/report.h"
#include "tools/playing/storage.h"
#include "tools/text/utf8.h"

namespace dabspi::carousel {

namespace {

constexpr std::size_t kMostFindings = 20;

// The service that is listened to: that of the first schedule of today.
std::optional<spi_object::content_id> service_of(const prepared_carousel& of) {
    for (std::size_t i = 0; i < of.objects.size(); ++i)
        if (of.tuned[i].what == transmit::importance::today)
            if (const auto id = spi_object::parse_content_id(of.objects[i].service)) return id;
    return std::nullopt;
}

}  // namespace

recording calls_of(const prepared_carousel& of) {
    recording made;
    made.name = "carousel";
    const auto add = [&](auto what) { made.calls.push_back({made.calls.size() + 1, std::move(what)}); };
    add(set_date_time{of.begin.date(), of.begin.time()});
    if (const auto service = service_of(of))
        add(set_current_service{{service->sid, service->ecc, service->scids}, service->eid});
    service_id carrier;
    carrier.sid = of.announced.spi_sid;
    carrier.ecc = of.announced.ecc;
    std::vector<std::size_t> missing(of.objects.size());
    for (const transmit::sent_entity& each : of.made.carousel.entities)
        if (each.object) missing[*each.object] += each.groups.size();
    for (const transmit::planned_segment& each : of.made.order) {
        const auto& object = of.made.carousel.entities[each.entity].object;
        if (!object || missing[*object] == 0 || --missing[*object] != 0) continue;
        const transmit::sent_object& sent = of.objects[*object].sent;
        add(feed_mot_body{sent.content_type, sent.content_subtype, sent.name, carrier, sent.body});
    }
    return made;
}

std::string check_report_of(const prepared_carousel& of) {
    const storage store = storage::temporary();
    const check::check_report report =
        check::check_input(check::input_of(calls_of(of)), check::check_settings(), store.path());
    std::string text = "Check: " + check::count_text(report.findings) + "\n";
    for (std::size_t i = 0; i < std::min(report.findings.size(), kMostFindings); ++i) {
        const check::finding& each = report.findings[i];
        const check::catalogue_entry& entry = check::entry_of(each.code);
        text += std::string("  ") + check::severity_name(entry.how_bad) + " " + entry.name + ": ";
        if (each.object != check::kNone)
            text += printable(report.past.objects[each.object].content_name) + ": ";
        text += each.text + "\n";
    }
    if (report.findings.size() > kMostFindings)
        text += "  and " + std::to_string(report.findings.size() - kMostFindings) + " more\n";
    return text;
}

}  // namespace dabspi::carousel
