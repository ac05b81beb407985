// Small recordings: what is on now and what comes next, within one day.
#include "examples/generator/scene.h"

namespace generator {

using namespace spi_builder;

namespace {

void one_minute_after_the_end(file_set& files) {
    scene s(
        "now-next-changes-one-minute-after-the-end",
        "A programme counts as running up to and including its end minute, so the change is reported by the\n"
        "first minute after it: at 11:01, not at 11:00. While nothing covers the time, nothing is reported.");
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.note(
        "Three programmes without a gap. The first is found as soon as it is filed (nothing is known to "
        "follow\n"
        "it yet), the second completes the pair, the third changes nothing.");
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1000", 60, "Morning Post"),
                                               show(today, "1100", 30, "Quay Notes"),
                                               show(today, "1130", 45, "Midday Table")}));
    s.note("Nothing until the minute after the end.");
    s.clock(today, "1031");
    s.clock(today, "1059");
    s.clock(today, "1100");
    s.note("Quay Notes with Midday Table next.");
    s.clock(today, "1101");
    s.clock(today, "1130");
    s.note(
        "Midday Table, and nothing after it. An empty programme has no name and a start of day 0; its "
        "duration\n"
        "is whatever stood there before (45 minutes, of Midday Table when that was still next).");
    s.clock(today, "1131");
    s.clock(today, "1215");
    s.note("Midday Table is over and nothing covers the time: it stays, silently.");
    s.clock(today, "1216");
    s.clock(today, "1300");
    s.save(files);
}

void gap_or_overlap(file_set& files) {
    scene s("gap-or-overlap-leaves-next-empty",
            "The next programme is the one that starts exactly at the minute at which the present one ends. "
            "A gap of\n"
            "five minutes or an overlap of one leave it empty.");
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.note("10:00-11:00, 11:05-12:00, 11:59-12:30.");
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1000", 60, "Morning Post"),
                                               show(today, "1105", 55, "Quay Notes"),
                                               show(today, "1159", 31, "Midday Table")}));
    s.note("In the gap Morning Post stays. Quay Notes is reported at its first minute.");
    s.clock(today, "1101");
    s.clock(today, "1104");
    s.clock(today, "1105");
    s.note("Midday Table has begun at 11:59, but Quay Notes lasts until its end minute.");
    s.clock(today, "1159");
    s.clock(today, "1200");
    s.clock(today, "1201");
    s.save(files);
}

void service_change(file_set& files) {
    scene s("service-change-sends-the-new-pair",
            "A change of service forgets now and next and looks for the new service's at once. A service "
            "without a\n"
            "schedule gives nothing, and the same service again gives nothing.");
    const service_id tidepool = {ecc, home_ensemble, 0x1A08};
    s.clock(today, "1030");
    s.listen(tidepool);
    s.note("Two schedules; the current service, Tidepool, has none.");
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1000", 60, "Morning Post"),
                                               show(today, "1100", 30, "Quay Notes")}));
    s.pi("pi-1a02", schedule_of(fennmark(), {show(today, "1015", 45, "Field Report"),
                                             show(today, "1100", 120, "Long Furrow")}));
    s.note("Quillhaven: one pair, complete. Once more Quillhaven: nothing.");
    s.listen(quillhaven());
    s.listen(quillhaven());
    s.note("Fennmark.");
    s.listen(fennmark());
    s.note(
        "Back to the service without a schedule: nothing, though the host still shows the old pair. Then\n"
        "Quillhaven again.");
    s.listen(tidepool);
    s.listen(quillhaven());
    s.save(files);
}

void untitled(file_set& files) {
    scene s("untitled-programme-is-reported-every-minute",
            "Of a programme's names the long one is read, or else the medium one; the short name is not. A "
            "programme\n"
            "with a short name alone has no title, and a programme without a title never counts as known: it "
            "is found\n"
            "and reported again at every new minute.");
    programme_data brief = show(today, "1000", 60, "");
    brief.name.short_name = "Post";
    programme_data full = show(today, "1100", 60, "Quay Notes");
    full.name.short_name = "Notes";
    full.name.long_name = "Quay Notes with the Harbour Band";
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.note(
        "Both programmes are filed, each filing looks for now and next: the untitled one is reported twice.");
    s.pi("pi-1a01", schedule_of(quillhaven(), {brief, full}));
    s.note("A new minute reports it again, the same minute does not.");
    s.clock(today, "1031");
    s.clock(today, "1031");
    s.note("11:00 is already the next programme's first minute: no known programme holds the change back.");
    s.clock(today, "1100");
    s.clock(today, "1101");
    s.save(files);
}

void resend(file_set& files) {
    scene s("resend-now-next.core",
            "ResendNowNext (core interface only) reports now and next as they stand, known or not, and looks "
            "for\n"
            "nothing. What is not known has no name and a start of day 0.");
    s.note("Nothing is known yet.");
    s.resend();
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1000", 60, "Morning Post"),
                                               show(today, "1100", 30, "Quay Notes")}));
    s.note("The same pair again, twice.");
    s.resend();
    s.resend();
    s.note("Another service clears names and starts only: the durations of 60 and 30 minutes still show.");
    s.listen(fennmark());
    s.resend();
    s.save(files);
}

}  // namespace

void add_now_next_scenes(file_set& files) {
    one_minute_after_the_end(files);
    gap_or_overlap(files);
    service_change(files);
    untitled(files);
    resend(files);
}

}  // namespace generator
