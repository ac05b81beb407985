#include "examples/generator/malformed_scenes.h"

#include <string>
#include <utility>

#include "testkit/spi_builder_objects.h"
#include "tools/recording/recording_writer.h"

namespace generator {

using namespace spi_builder;

namespace {

constexpr const char* today = "20260310";

const service_id& quillhaven() {
    static const service_id id = {0xE0, 0x10C1, 0x1A01};
    return id;
}

// A programme with a medium name that starts today at "HHMM", coded in plain UTC.
programme_data show(const std::string& start, unsigned minutes, const std::string& name) {
    programme_data out;
    out.name.medium_name = name;
    out.start.day = mjd(2026, 3, 10);
    out.start.hour = static_cast<unsigned>(std::stoul(start.substr(0, 2)));
    out.start.minute = static_cast<unsigned>(std::stoul(start.substr(2)));
    out.duration = static_cast<std::uint16_t>(minutes * 60);
    return out;
}

bytes schedule_of(const std::vector<programme_data>& programmes) {
    schedule_data out;
    out.scope = quillhaven();
    out.programmes = programmes;
    return pi_object({out});
}

class scene {
 public:
    // `explanation` becomes the comment at the top.
    scene(std::string name, std::string_view explanation) : name_(std::move(name)) { note(explanation); }

    void note(std::string_view text) { recording_.comment(text); }
    void clock(const std::string& time) { recording_.set_date_time(today, time); }
    void listen(const service_id& service) {
        recording_.set_current_service({service.sid, service.ecc, service.scids}, service.eid);
    }
    void pi(const std::string& content_name, const bytes& body) {
        recording_.feed_body({7, 1, content_name, {0xE0110001, 0xE0, 0}}, body);
    }

    // Ends the scene: its recording joins the files.
    void save(file_set& files) const { files.add(name_ + ".jsonl", recording_.text()); }

 private:
    std::string name_;
    dabspi::recording_writer recording_;
};

void cut_short(file_set& files) {
    scene s("object-cut-short",
            "Of an object that was cut short, everything that stood whole before the cut is used. What is "
            "missing\n"
            "reads as all ones; a programme without a start day is dropped.");
    const bytes whole = schedule_of(
        {show("1000", 60, "Morning Post"), show("1100", 60, "Quay Notes"), show("1200", 60, "Midday Table")});
    s.clock("1030");
    s.listen(quillhaven());
    s.note("Cut inside the third name: two programmes.");
    constexpr std::size_t time_and_duration = 14;  // location, time and duration with their tags and lengths
    s.pi("pi-1a01", cut(whole, whole.size() - time_and_duration - 5));
    s.note("Cut inside the third duration: it reads as 65535 seconds, 1092 minutes.");
    s.pi("pi-1a01", cut(whole, whole.size() - 1));
    s.note("The whole object: its programmes are there already, the first for a minute wins.");
    s.pi("pi-1a01", whole);
    s.clock("1101");
    s.note("Midday Table now seems to last until 06:12 tomorrow; tomorrow's schedule is not known.");
    s.clock("1201");
    s.save(files);
}

void token_table_after_use(file_set& files) {
    scene s("token-table-after-use",
            "A token stands for a text that the object's token table defines, from the table onward: a table "
            "that\n"
            "comes after the programmes expands nothing, and its tokens vanish from the names.");
    s.clock("1030");
    s.listen(quillhaven());
    s.note(
        "The table first. It defines 01 twice (the first holds), 02 first as empty (which defines nothing), "
        "and\n"
        "09, which stays a tab all the same. 07 is defined nowhere and vanishes.");
    schedule_data early;
    early.scope = quillhaven();
    early.programmes = {show("1000", 60, "\x01 at Ten"), show("1100", 60, "\x01\tand \x02"),
                        show("1200", 60, "Noon\x07 \x01")};
    s.pi("pi-table-first",
         pi_object({early}, {{0x01, "News"}, {0x01, "Sport"}, {0x02, ""}, {0x02, "Weather"}, {0x09, "TAB"}}));
    s.note("The table last.");
    schedule_data late;
    late.scope = quillhaven();
    late.programmes = {show("1300", 60, "\x01 at One")};
    s.pi("pi-table-last", elem(tag::epg, {schedule(late), token_table({{0x01, "News"}})}));
    s.clock("1101");
    s.save(files);
}

void not_utf8(file_set& files) {
    scene s("names-that-are-not-utf8",
            "Names are passed on byte for byte, well-formed or not. The printed form shows U+FFFD for each "
            "maximal\n"
            "ill-formed part and adds all bytes as name_hex.");
    s.clock("1030");
    s.listen(quillhaven());
    s.note(
        "10:00 Latin-1 instead of UTF-8; 11:00 well-formed; 12:00 a character cut short; 13:00 an overlong "
        "form;\n"
        "14:00 a surrogate; 15:00 a four-byte character cut short, then a letter; 16:00 a byte that begins "
        "nothing;\n"
        "17:00 well-formed, with control characters.");
    s.pi("pi-1a01",
         schedule_of({show("1000", 60, "Caf\xE9 au Lait"), show("1100", 60, "Zw\xC3\xB6lf"),
                      show("1200", 60, "Euro \xE2\x82"), show("1300", 60, "Slash \xC0\xAF"),
                      show("1400", 60, "Half \xED\xA0\x80"), show("1500", 60, "Party \xF0\x9F\x8Ex"),
                      show("1600", 60, "Beyond \xF5\x80"), show("1700", 60, "Tab\tand \x14")}));
    s.clock("1101");
    s.save(files);
}

}  // namespace

void add_malformed_scenes(file_set& files) {
    cut_short(files);
    token_table_after_use(files);
    not_utf8(files);
}

}  // namespace generator
