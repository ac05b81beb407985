// Small recordings: one ensemble and another.
#include "examples/generator/scene.h"

namespace generator {

using namespace spi_builder;

namespace {

void other_ensemble_is_ignored(file_set& files) {
    scene s(
        "other-ensemble-is-ignored",
        "A schedule is accepted only for the ensemble that the receiver is tuned to: identifiers that name\n"
        "another ensemble are passed over, and a programme that is left without a service is dropped.");
    const service_id quillhaven_elsewhere = {ecc, other_ensemble, quillhaven().sid};
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.note("The same service, but on the other ensemble: dropped.");
    s.pi("pi-1a01-elsewhere", schedule_of(quillhaven_elsewhere, {show(today, "1000", 60, "Elsewhere")}));
    s.note(
        "A schedule without a scope; each programme names its service itself. 10:00 on the other ensemble "
        "is\n"
        "dropped, 10:15 on this one is kept, and 11:00 with both bearers counts for this one.");
    schedule_data own_bearers;
    own_bearers.programmes = {show(today, "1000", 60, "Elsewhere Too"), show(today, "1015", 45, "Here"),
                              show(today, "1100", 60, "Here and There")};
    own_bearers.programmes[0].bearers = {quillhaven_elsewhere};
    own_bearers.programmes[1].bearers = {quillhaven()};
    own_bearers.programmes[2].bearers = {quillhaven(), quillhaven_elsewhere};
    s.pi("pi-bearers", pi_object({own_bearers}));
    s.note(
        "The scope's service goes before the bearers: 12:00 is filed for Quillhaven though its bearer names\n"
        "Fennmark.");
    programme_data foreign = show(today, "1200", 60, "By the Scope");
    foreign.bearers = {fennmark()};
    s.pi("pi-1a01", schedule_of(quillhaven(), {foreign}));
    s.save(files);
}

void ensemble_change_clears(file_set& files) {
    scene s("ensemble-change-clears",
            "Tuning to another ensemble forgets schedules, announcements and which objects were read; "
            "nothing is\n"
            "reported for it. Back on the first ensemble its objects are read anew.");
    const bytes at_home = schedule_of(
        quillhaven(), {show(today, "1000", 60, "Morning Post"), show(today, "1100", 30, "Quay Notes")});
    const bytes away = schedule_of(
        gullmere(), {show(today, "1010", 50, "Coast Road"), show(today, "1100", 20, "Ebb Report")});
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.pi("pi", at_home);
    s.note(
        "The other ensemble. Names and starts of now and next were cleared, the duration of the empty next "
        "is\n"
        "still that of Quay Notes.");
    s.listen(gullmere());
    s.pi("pi", away, other_data_service);
    s.note("Back: nothing is left of the first visit, and the object is not taken for already read.");
    s.listen(quillhaven());
    s.pi("pi", at_home);
    s.save(files);
}

}  // namespace

void add_ensemble_scenes(file_set& files) {
    other_ensemble_is_ignored(files);
    ensemble_change_clears(files);
}

}  // namespace generator
