// Objects that are broken, hostile, or meant for somebody else. What they say is known all the same: mostly
// nothing.
#include "testkit/ensemble/dice.h"
#include "testkit/ensemble/ensemble.h"
#include "testkit/overlapping_elements.h"

namespace soak {
namespace {

using spi_builder::bytes;

carousel_object junk_object(const std::string& name, std::uint8_t type, std::uint16_t subtype,
                            const spi::ServElemId& data_service, bytes content) {
    carousel_object object;
    object.name = name;
    object.content_type = type;
    object.content_subtype = subtype;
    object.data_service = data_service;
    object.versions = {{0, std::move(content)}};
    return object;
}

// No byte is a tag that means anything.
bytes noise(std::uint64_t seed, long day, std::size_t size) {
    dice random(seed, static_cast<std::size_t>(day % kPeriod), 99);
    bytes out;
    while (out.size() < size)
        out.push_back(static_cast<std::uint8_t>(random.between(0x40, 0xFF)));
    return out;
}

// A schedule that ends inside a programme's name: what stands before it is whole, and the broken one has no
// time.
carousel_object cut_schedule(const ensemble& e, int index, long day) {
    const day_schedule schedule = schedule_of(e, index, day, 1);
    spi_builder::schedule_data data;
    data.scope = coded_id(e, e.stations[static_cast<std::size_t>(index)].id);
    data.programmes = schedule.coded;
    const std::size_t whole = schedule.coded.size() / 2;
    data.programmes[whole].short_id.reset();
    data.programmes[whole].name = {"", "", "a name that is cut short"};
    const bytes object = spi_builder::pi_object({data}, schedule.tokens);
    std::size_t behind = 0;
    for (std::size_t i = whole; i < data.programmes.size(); ++i)
        behind += spi_builder::programme(data.programmes[i]).size();
    carousel_object cut = junk_object(number_text("cut-%u.EHB", static_cast<unsigned>(index)), kSpiObject,
                                      kProgrammeInformation, e.second_service,
                                      spi_builder::cut(object, object.size() - behind + 12));
    cut.versions[0].programmes = {schedule.said.begin(),
                                  schedule.said.begin() + static_cast<std::ptrdiff_t>(whole)};
    return cut;
}

}  // namespace

void add_junk(std::vector<carousel_object>& objects, const ensemble& e, long day) {
    namespace tag = spi_builder::tag;
    const auto shape = static_cast<std::size_t>(day % kPeriod);
    for (unsigned i = 0; i < 24; ++i) {
        const std::uint16_t subtype = i % 3 == 2 ? 2 : static_cast<std::uint16_t>(i % 3);
        objects.push_back(junk_object(number_text("noise-%u", i), kSpiObject, subtype, e.second_service,
                                      noise(i, day, 50 + 150 * i + 7 * shape)));
    }
    for (int i = 0; i < 4; ++i)
        objects.push_back(cut_schedule(e, i, day + i % 2));

    // For another ensemble, for no service, for none that is complete.
    const day_schedule schedule = schedule_of(e, 0, day, 1);
    spi_builder::schedule_data data;
    data.programmes = schedule.coded;
    const auto add_refused = [&](const char* name) {
        objects.push_back(junk_object(name, kSpiObject, kProgrammeInformation, e.main_service,
                                      spi_builder::pi_object({data}, schedule.tokens)));
    };
    add_refused("without-service.EHB");
    data.scope = spi_builder::service_id{0xE1, static_cast<std::uint16_t>(e.eid ^ 1), 0xC221, 0};
    add_refused("of-the-neighbours.EHB");
    data.scope = spi_builder::service_id{0, e.eid, 0xC221, 0};
    add_refused("without-country.EHB");

    const bytes service = spi_builder::elem(
        tag::epg, {spi_builder::elem(tag::default_content_id, spi_builder::content_id(0xE1, e.eid, 0xC221))});
    const bytes nothing;
    // No programme of these has a time, and no logo a name of the carousel.
    objects.push_back(junk_object("nested-pi", kSpiObject, kProgrammeInformation, e.main_service,
                                  spi_builder::nested_schedules(20 + shape, service)));
    objects.push_back(junk_object("nested-si", kSpiObject, kServiceInformation, e.main_service,
                                  spi_builder::nested_logos(10)));
    objects.push_back(junk_object("empty", kSpiObject, kProgrammeInformation, e.main_service, nothing));
    objects.push_back(junk_object("one-byte", kSpiObject, kServiceInformation, e.main_service, {0x03}));
    objects.push_back(junk_object("text", 1, 0, e.main_service, noise(50, day, 200)));
    objects.push_back(junk_object("directory", 5, 0, e.main_service, noise(51, day, 200)));
    // Images that are not taken: no logo by its type, and one that nobody announces.
    objects.push_back(junk_object(number_text("logos/%X_320x240.PNG", e.stations[0].id.sid << 4), kImage, 2,
                                  e.main_service, noise(52, day, 500)));
    objects.push_back(junk_object("slide.png", kImage, kPng, e.main_service, noise(53, day, 9000)));
}

}  // namespace soak
