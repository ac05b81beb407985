// The table of stations. The days differ in what a receiver has to cope with: programmes past midnight, gaps
// and overlaps, odd minutes, half-hours through the day, names in other letters, names made of tokens.
#include "examples/generator/scene.h"
#include "examples/generator/stations.h"

namespace generator {

using namespace spi_builder;

namespace {

constexpr rgb navy = {16, 32, 80};
constexpr rgb teal = {0, 120, 128};
constexpr rgb wine = {120, 16, 48};
constexpr rgb moss = {48, 96, 32};
constexpr rgb sand = {232, 208, 152};
constexpr rgb amber = {240, 160, 16};
constexpr rgb sky = {96, 176, 232};
constexpr rgb coal = {32, 32, 36};
constexpr rgb chalk = {248, 248, 240};
constexpr rgb rust = {176, 72, 24};
constexpr rgb plum = {88, 40, 112};
constexpr rgb mint = {152, 224, 184};

service_id home(std::uint16_t sid) {
    return {ecc, home_ensemble, sid};
}
service_id other(std::uint16_t sid) {
    return {ecc, other_ensemble, sid};
}

// Every half-hour of the day, in a round of six titles of tokens.
std::vector<slot> half_hours() {
    static const char* const starts[] = {
        "0000", "0030", "0100", "0130", "0200", "0230", "0300", "0330", "0400", "0430", "0500", "0530",
        "0600", "0630", "0700", "0730", "0800", "0830", "0900", "0930", "1000", "1030", "1100", "1130",
        "1200", "1230", "1300", "1330", "1400", "1430", "1500", "1530", "1600", "1630", "1700", "1730",
        "1800", "1830", "1900", "1930", "2000", "2030", "2100", "2130", "2200", "2230", "2300", "2330"};
    static const char* const titles[] = {"\x02 \x01",  "\x01 in Depth", "\x02 \x01",
                                         "World \x03", "\x02 \x01",     "Markets \x03"};
    std::vector<slot> out;
    for (std::size_t i = 0; i < std::size(starts); ++i)
        out.push_back({starts[i], titles[i % std::size(titles)], ""});
    return out;
}

std::vector<station> make_home() {
    std::vector<station> out(12);
    // clang-format off
    out[0] = {home(0x1A01), "quillhaven", {"Quill 1", "Quillhaven One", "Quillhaven One, the Town Station"},
        {"Q1", pattern::columns, navy, teal, chalk},
        {{"0000", "Night Currents", ""}, {"0500", "Early Quill", ""}, {"0700", "Morning Post", "Morning Post: %"},
         {"0900", "Ink and Paper", ""}, {"1000", "The Long Table", "The Long Table, with Guests from %"},
         {"1200", "Noon Bulletin", ""}, {"1230", "Quay Notes", ""}, {"1400", "Afternoon Sheet", ""},
         {"1600", "Homeward", ""}, {"1830", "Evening Bulletin", ""}, {"1900", "Margins", "Margins: %"},
         {"2100", "Quill at Night", ""}, {"2300", "Small Print", ""}}};
    out[1] = {home(0x1A02), "fennmark", {"Fennmark", "Fennmark FM", ""},
        {"FM", pattern::rows, moss, mint, chalk},
        {{"0200", "Reed Bed", ""}, {"0545", "Field Report", "Field Report from %"}, {"0815", "Wet Boots", ""},
         {"1000", "Long Furrow", ""}, {"1315", "Sluice Gate", ""}, {"1545", "Drove Road", ""},
         {"1900", "Lapwing Hour", ""}, {"2000", "Fen Folk", ""}, {"2330", "Marsh Lights", "", 150}}};
    out[2] = {home(0x1A03), "zwoelfklang", {"Zwölf", "Radio Zwölfklang", "Radio Zwölfklang – Musik in zwölf Tönen"},
        {"12", pattern::checks, wine, amber, chalk},
        {{"0000", "Nachtstück", ""}, {"0600", "Frühgeläut", "Frühgeläut: Musik für Türmer"},
         {"0900", "Quintenzirkel", ""}, {"1130", "Mittagsfuge", ""}, {"1300", "Größere Sprünge", ""},
         {"1520", "Übergang", ""}, {"1700", "Zwölf um fünf", ""}, {"1900", "Konzertführer", "Konzertführer: %"},
         {"2200", "Schlusskadenz", ""}}};
    out[3] = {home(0x1A04), "cafe-nocturne", {"Nocturne", "Café Nocturne", ""},
        {"CN", pattern::disc, coal, amber, chalk},
        {{"0000", "Dernière tournée", ""}, {"0300", "Chaises renversées", ""}, {"0700", "Petit déjeuner", ""},
         {"1100", "À la carte", ""}, {"1400", "Sieste", ""}, {"1730", "Apéritif", ""}, {"1815", "Entrée", ""},
         {"1900", "Plat du soir", "Plat du soir : %"}, {"2115", "Fromage", ""}, {"2145", "Dessert", ""}}};
    out[4] = {home(0x1A05), "lanternfish", {"Lantern", "Lanternfish Talk", ""},
        {"LT", pattern::plain, teal, teal, sand},
        {{"0000", "Deep Water", ""}, {"0507", "First Bite", ""}, {"0833", "Open Line", ""}, {"1011", "Second Opinion", ""},
         {"1159", "Two Minutes to Noon", ""}, {"1201", "Cross Current", ""}, {"1447", "Small Fry", ""},
         {"1713", "Net Result", ""}, {"2041", "Undertow", "Undertow, tonight on %"}, {"2117", "Night Line", ""},
         {"2259", "Last Word", ""}}};
    out[5] = {home(0x1A06), "pine-copper", {"Pine&Cu", "Pine & Copper", ""},
        {"PC", pattern::diagonal, moss, rust, chalk},
        {{"0000", "Resin", ""}, {"0600", "Kettle On", ""}, {"0930", "Bench Work", ""}, {"1230", "\"Offcuts\"", ""},
         {"1500", "Grain & Knot", ""}, {"1600", "Solder <Live>", ""}, {"1745", "Workshop Rules", ""},
         {"2000", "Patina", "Patina: % \\ Forty Years"}, {"2200", "Embers", ""}}};
    out[6] = {home(0x1A07), "reka", {"Řeka", "Řeka Radio", "Řeka Radio – hlas po proudu"},
        {"RK", pattern::rings, navy, sky, chalk},
        {{"0045", "Tichá voda", ""}, {"0530", "Pramen", ""}, {"0900", "Po proudu", ""}, {"1200", "Soutok", ""},
         {"1500", "Meandry", ""}, {"1800", "Břehy", "Břehy: %"}, {"2100", "Hladina", ""}, {"2330", "Mlha", "", 75}}};
    out[7] = {home(0x1A08), "tidepool", {"Tidepool", "Tidepool Jazz", ""},
        {"TJ", pattern::sunrise, plum, amber, chalk},
        {{"0100", "Low Water", ""}, {"0600", "Brass Tacks", ""}, {"0900", "Rock Pool", "", 60},
         {"1005", "Slack Water", "", 55}, {"1100", "Sixth Wave", "", 61}, {"1200", "Blue Hour", ""},
         {"1700", "Spring Tide", "Spring Tide: %"}, {"2000", "Club Limpet", "", 175}, {"2300", "Neap", "", 120}}};
    out[8] = {home(0x1A09), "kitestring", {"Kites", "Kitestring Kids", ""},
        {"KK", pattern::diagonal, amber, sky, wine},
        {{"0600", "Wake Up, Wind!", ""}, {"0800", "School Run", ""}, {"0900", "Paper Tails", ""},
         {"1200", "Soup Songs", ""}, {"1300", "Nap", ""}, {"1500", "Knots", ""}, {"1800", "Good Night, Kite", "", 60}}};
    out[9] = {home(0x1A0A), "anvilwood", {"Anvil", "Anvilwood Rock", ""},
        {"AR", pattern::columns, coal, rust, chalk},
        {{"0100", "Slag", ""}, {"0600", "Hammer Time-Table", ""}, {"1000", "Bellows", ""}, {"1400", "Drop Forge", ""},
         {"1800", "Loud Hour", ""}, {"1900", "Steel Yard", ""}, {"2200", "Night Shift", "Night Shift: %", 180}}};
    out[10] = {home(0x1A0B), "blatimen", {"Blåtimen", "Blåtimen", ""},
        {"BT", pattern::rows, sky, navy, chalk},
        {{"0000", "Nattåpent", ""}, {"0600", "Før frokost", ""}, {"1000", "Lys på vei", ""}, {"1600", "Blåtimen", ""},
         {"1700", "Ærlig talt", "Ærlig talt om %"}, {"2000", "Øyeblikk", ""}}};
    out[11] = {home(0x1A0C), "orbitale", {"Orbitale", "Orbitale News", "Orbitale News, Every Half-Hour"},
        {"ON", pattern::rings, coal, teal, chalk}, half_hours(),
        {{0x01, "News"}, {0x02, "Orbitale"}, {0x03, "Desk"}}};
    // clang-format on
    for (std::size_t i = 0; i < 4; ++i)
        out[i].all_sizes = true;
    out[4].jpeg_logos = true;
    out[10].oversize_logo = true;
    return out;
}

std::vector<station> make_other() {
    // clang-format off
    return {
        {other(0x1B01), "gullmere", {"Gullmere", "Gullmere Coast", ""},
         {"GM", pattern::sunrise, sky, sand, navy},
         {{"0000", "Night Swell", ""}, {"0600", "Coast Road", "Coast Road: %"}, {"0715", "Ebb Report", ""},
          {"0730", "Pier End", ""}, {"1200", "Wide Bay", ""}, {"1800", "Harbour Lights", ""}}},
        {other(0x1B02), "saltpan", {"Saltpan", "Saltpan Sound", ""},
         {"SP", pattern::checks, sand, rust, coal},
         {{"0000", "Crystals", ""}, {"0700", "Brine", ""}, {"1300", "Flats", ""}, {"1900", "Evaporation", ""}}},
        {other(0x1B03), "oberlicht", {"Oberl.", "Oberlicht Kultur", ""},
         {"OL", pattern::disc, chalk, sky, coal},
         {{"0000", "Dachluke", ""}, {"0630", "Morgenlicht", ""}, {"1200", "Zenit", ""}, {"1800", "Dämmerung", ""}}},
    };
    // clang-format on
}

}  // namespace

const std::vector<station>& home_stations() {
    static const std::vector<station> table = make_home();
    return table;
}

const std::vector<station>& other_stations() {
    static const std::vector<station> table = make_other();
    return table;
}

}  // namespace generator
