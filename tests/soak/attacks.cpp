#include "tests/soak/attacks.h"

#include "testkit/overlapping_elements.h"

namespace soak {
namespace {

namespace tag = spi_builder::tag;
using spi_builder::append;
using spi_builder::attr;
using spi_builder::bytes;
using spi_builder::elem;

constexpr std::uint8_t kImageType = 2;
constexpr std::uint8_t kSpiType = 7;
constexpr std::uint8_t kEcc = 0xE1;
constexpr unsigned kDay = 1440;  // minutes

// A service that was not there before: identifiers of 32 bits are without number.
bytes scope_of(std::uint32_t sid) {
    return elem(tag::scope,
                {elem(tag::service_scope, {attr(spi_builder::attribute::service_scope::id,
                                                spi_builder::content_id_32(kEcc, kHostileEnsemble, sid))})});
}

bytes location_at(std::uint32_t day, unsigned minute) {
    return elem(
        tag::location,
        {elem(tag::time,
              {attr(spi_builder::attribute::time::time,
                    spi_builder::time_point(day + minute / kDay, minute % kDay / 60, minute % 60))})});
}

// 255 characters for the code 0x01.
bytes table() {
    return spi_builder::token_table({{0x01, std::string(255, 'x')}});
}

hostile_object schedules(unsigned serial, bytes content) {
    return {"p" + std::to_string(serial), kSpiType, 1, std::move(content)};
}

hostile_object description(unsigned serial, bytes content) {
    return {"s" + std::to_string(serial), kSpiType, 0, std::move(content)};
}

bytes description_of(const std::vector<bytes>& media, const bytes& before = {}) {
    return elem(tag::service_information,
                {before, elem(tag::ensemble, {elem(tag::service, {elem(tag::media_description, media)})})});
}

bytes url(const std::string& name) {
    return attr(spi_builder::attribute::multimedia::url, spi_builder::str(name));
}

// Each of `elements` ends in the two bytes of a length that reaches to the object's end, which is `tail` away
// from the last element's end.
bytes with_lengths_to_the_end(const std::vector<bytes>& elements, const bytes& tail) {
    std::size_t left = tail.size();
    for (const bytes& element : elements)
        left += element.size() + 2;
    bytes out;
    for (const bytes& element : elements) {
        append(out, element);
        left -= element.size() + 2;
        append(out, spi_builder::u16(static_cast<std::uint32_t>(left)));
    }
    append(out, tail);
    return out;
}

}  // namespace

std::size_t on_air(const hostile_object& object) {
    return object.bytes.size() + object.name.size() + 16;
}

hostile_object full_service(unsigned serial, std::uint32_t day) {
    bytes content = scope_of(0xE1000000 + serial);
    for (unsigned minute = 0; minute < 2 * kDay; ++minute)
        append(content, elem(tag::programme, location_at(day, minute)));
    return schedules(serial, elem(tag::epg, elem(tag::schedule, content)));
}

hostile_object shared_schedule(unsigned serial, std::uint32_t day) {
    constexpr unsigned kServices = 30;
    constexpr unsigned kProgrammes = 34;
    bytes rest;
    for (unsigned minute = 0; minute < kProgrammes; ++minute)
        append(rest, elem(tag::programme, location_at(day, minute)));
    // Each epg ends behind its scope, but its schedule reaches to the end of the object. The other epg
    // elements inside are passed over.
    std::vector<bytes> scopes;
    std::size_t total = rest.size();
    for (unsigned i = 0; i < kServices; ++i) {
        scopes.push_back(scope_of(0xE1000000 + serial * kServices + i));
        total += 6 + scopes.back().size();
    }
    bytes content;
    for (const bytes& scope : scopes) {
        append(content, {tag::epg, static_cast<std::uint8_t>(4 + scope.size()), tag::schedule, 0xFE});
        append(content, spi_builder::u16(static_cast<std::uint32_t>(total - content.size() - 2)));
        append(content, scope);
    }
    append(content, rest);
    return schedules(serial, content);
}

hostile_object many_services(unsigned serial, std::uint32_t day) {
    constexpr unsigned kServices = 1000;
    bytes content;
    for (unsigned i = 0; i < kServices; ++i) {
        append(content, scope_of(0xE1000000 + serial * kServices + i));
        append(content, elem(tag::programme, location_at(day, 0)));
    }
    return schedules(serial, elem(tag::epg, elem(tag::schedule, content)));
}

hostile_object long_name(unsigned serial, std::uint32_t day, std::size_t tokens) {
    const bytes programme =
        elem(tag::programme,
             {elem(tag::long_name, {spi_builder::text(std::string(tokens, '\x01'))}), location_at(day, 1)});
    return schedules(
        serial, elem(tag::epg, {table(), elem(tag::schedule, {scope_of(0xE1000000 + serial), programme})}));
}

hostile_object shared_long_names(unsigned serial, std::uint32_t day) {
    constexpr unsigned kProgrammes = 46;
    const bytes tail(1100, 0x01);
    std::vector<bytes> elements;
    for (unsigned minute = 0; minute < kProgrammes; ++minute) {
        const bytes location = location_at(day, minute);
        // Programme and name end behind the length of the text, which reaches to the end.
        elements.push_back(
            spi_builder::join({spi_builder::u8(tag::programme), spi_builder::length(location.size() + 6),
                               location, spi_builder::u8(tag::long_name), spi_builder::u8(4),
                               spi_builder::u8(tag::text), spi_builder::u8(0xFE)}));
    }
    bytes content = table();
    bytes schedule = scope_of(0xE1000000 + serial);
    append(schedule, with_lengths_to_the_end(elements, tail));
    append(content, elem(tag::schedule, schedule));
    return schedules(serial, elem(tag::epg, content));
}

hostile_object nameless_logos(unsigned serial) {
    return description(serial, description_of(std::vector<bytes>(16000, elem(tag::multimedia, bytes{}))));
}

hostile_object named_logos(unsigned serial) {
    std::vector<bytes> media;
    for (unsigned i = 0; i < 2000; ++i) {
        bytes name;  // four digits of a large base, none of them a token
        for (unsigned rest = serial * 2000 + i; name.size() < 4; rest /= 64)
            name.push_back(static_cast<std::uint8_t>(0x20 + rest % 64));
        media.push_back(elem(tag::multimedia, attr(spi_builder::attribute::multimedia::url, name)));
    }
    return description(serial, description_of(media));
}

hostile_object shared_logo_names(unsigned serial) {
    constexpr unsigned kLogos = 60;
    bytes tail(950, 0x01);
    append(tail, spi_builder::str(std::to_string(serial)));  // no name as in any other object
    // The multimedia element ends behind the length of its URL, which reaches to the end.
    const std::vector<bytes> elements(kLogos,
                                      {tag::multimedia, 4, spi_builder::attribute::multimedia::url, 0xFE});
    return description(serial, description_of({with_lengths_to_the_end(elements, tail)}, table()));
}

hostile_object empty_object(unsigned serial) {
    return {std::to_string(serial), kSpiType, 2, {}};
}

hostile_object one_logo_announced_often(unsigned serial) {
    const bytes logo =
        elem(tag::multimedia,
             {url("a.png"), attr(spi_builder::attribute::multimedia::width, spi_builder::u16(320)),
              attr(spi_builder::attribute::multimedia::height, spi_builder::u16(240))});
    const bytes bearer =
        elem(tag::service_bearer, {attr(spi_builder::attribute::service_bearer::id,
                                        spi_builder::content_id(kEcc, kHostileEnsemble, 0xC221))});
    const bytes service =
        elem(tag::service, {bearer, elem(tag::media_description, std::vector<bytes>(500, logo))});
    return description(serial, elem(tag::service_information, {elem(tag::ensemble, service)}));
}

hostile_object image_of_the_one_logo() {
    return {"a.png", kImageType, 3, {0x89}};
}

}  // namespace soak
