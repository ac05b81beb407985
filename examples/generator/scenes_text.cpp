// Small recordings: texts, from tokens to bytes.
#include "examples/generator/scene.h"

namespace generator {

using namespace spi_builder;

namespace {

void token_table_after_use(file_set& files) {
    scene s("token-table-after-use",
            "A token stands for a text that the object's token table defines, from the table onward: a table "
            "that\n"
            "comes after the programmes expands nothing, and its tokens vanish from the names.");
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.note(
        "The table first. It defines 01 twice (the first holds), 02 first as empty (which defines nothing), "
        "and\n"
        "09, which stays a tab all the same. 07 is defined nowhere and vanishes.");
    schedule_data early;
    early.scope = quillhaven();
    early.programmes = {show(today, "1000", 60, "\x01 at Ten"), show(today, "1100", 60, "\x01\tand \x02"),
                        show(today, "1200", 60, "Noon\x07 \x01")};
    s.pi("pi-table-first",
         pi_object({early}, {{0x01, "News"}, {0x01, "Sport"}, {0x02, ""}, {0x02, "Weather"}, {0x09, "TAB"}}));
    s.note("The table last.");
    schedule_data late;
    late.scope = quillhaven();
    late.programmes = {show(today, "1300", 60, "\x01 at One")};
    s.pi("pi-table-last", elem(tag::epg, {schedule(late), token_table({{0x01, "News"}})}));
    s.clock(today, "1101");
    s.save(files);
}

void not_utf8(file_set& files) {
    scene s("names-that-are-not-utf8",
            "Names are passed on byte for byte, well-formed or not. The printed form shows U+FFFD for each "
            "maximal\n"
            "ill-formed part and adds all bytes as name_hex.");
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.note(
        "10:00 Latin-1 instead of UTF-8; 11:00 well-formed; 12:00 a character cut short; 13:00 an overlong "
        "form;\n"
        "14:00 a surrogate; 15:00 a four-byte character cut short, then a letter; 16:00 a byte that begins "
        "nothing;\n"
        "17:00 well-formed, with control characters.");
    s.pi("pi-1a01",
         schedule_of(
             quillhaven(),
             {show(today, "1000", 60, "Caf\xE9 au Lait"), show(today, "1100", 60, "Zw\xC3\xB6lf"),
              show(today, "1200", 60, "Euro \xE2\x82"), show(today, "1300", 60, "Slash \xC0\xAF"),
              show(today, "1400", 60, "Half \xED\xA0\x80"), show(today, "1500", 60, "Party \xF0\x9F\x8Ex"),
              show(today, "1600", 60, "Beyond \xF5\x80"), show(today, "1700", 60, "Tab\tand \x14")}));
    s.clock(today, "1101");
    s.save(files);
}

}  // namespace

void add_text_scenes(file_set& files) {
    token_table_after_use(files);
    not_utf8(files);
}

}  // namespace generator
