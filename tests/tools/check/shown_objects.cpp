#include "tests/tools/check/shown.h"

namespace check_test {

using namespace spi_builder;
using dabspi::check::finding_code;

namespace {

// A schedule object with other bytes for its scope and its programmes.
bytes object_of(const bytes& scope, const std::vector<bytes>& programmes) {
    std::vector<bytes> parts = {scope};
    parts.insert(parts.end(), programmes.begin(), programmes.end());
    return elem(tag::epg, {elem(tag::schedule, parts)});
}

bytes scope_of(const bytes& content_id) {
    return elem(tag::scope, {elem(tag::service_scope, {attr(attribute::service_scope::id, content_id)})});
}

std::vector<bytes> day_elements() {
    std::vector<bytes> all;
    for (const programme_data& each : whole_day(kToday))
        all.push_back(spi_builder::programme(each));
    return all;
}

std::vector<programme_data> renamed(const std::string& first) {
    auto day = whole_day(kToday);
    day.front().name.medium_name = first;
    return day;
}

broadcast west_of_greenwich() {
    auto day = whole_day(kToday);
    for (programme_data& each : day)
        each.start.offset_half_hours = -2;
    return with_today(schedule_object(day));
}

}  // namespace

std::vector<shown> shown_by_objects() {
    const bytes good = schedule_object(whole_day(kToday));
    return {
        {finding_code::malformed, [good] { return with_today(cut(good, good.size() - 2)); }, kPiLine,
         "today.ehb", "the length says"},
        {finding_code::malformed_unread,
         [] {
             auto elements = day_elements();
             elements.front() = elem(
                 tag::programme,
                 {elem(tag::genre, {attr(0x80, str("urn:tva:metadata"))}), name_elements({"", "Night", ""}),
                  elem(tag::location, {elem(tag::time, {attr(0x80, time_point(local_time(kToday, 0, 0, 2))),
                                                        attr(0x81, u16(360 * 60))})})});
             return with_today(object_of(scope_of(content_id(kStation)), elements));
         },
         kPiLine, "today.ehb", "genre"},
        {finding_code::misread,
         [] {
             auto elements = day_elements();
             elements.push_back(elem(0x7F, bytes{}));
             return with_today(object_of(scope_of(content_id(kStation)), elements));
         },
         kPiLine, "today.ehb", "0x7F"},
        {finding_code::subtype_differs,
         [] { return clean().si("wrong.eib", schedule_object(whole_day(kToday))); }, 9, "wrong.eib",
         "ContentSubType 0"},
        {finding_code::subtype_blocks,
         [good] {
             broadcast calls = tuned();
             return calls.feed(7, 2, "same", good).pi("same", good);
         },
         4, "same", "because of the object of line 3", false},
        {finding_code::subtype_not_read, [good] { return clean().feed(7, 2, "group", good); }, 9, "group",
         "group information", false},
        {finding_code::content_type, [] { return clean().feed(3, 0, "page.html", str("<html>")); }, 9,
         "page.html", "ContentType 3", false},
        {finding_code::changed_same_size,
         [] { return clean().pi("today.ehb", schedule_object(renamed("Light"))); }, 9, "today.ehb",
         "differs from the object of line 6"},
        {finding_code::content_name_long, [good] { return tuned().pi(std::string(127, 'n'), good); }, 3,
         std::string(127, 'n'), "127 bytes", false},
        {finding_code::not_utf8, [] { return with_today(schedule_object(renamed("Caf\xE9"))); }, kPiLine,
         "today.ehb", "not UTF-8"},
        {finding_code::control_character, [] { return with_today(schedule_object(renamed("Bell\x1F"))); },
         kPiLine, "today.ehb", "U+001F"},
        {finding_code::token_undefined, [] { return with_today(schedule_object(renamed("Night\x05"))); },
         kPiLine, "today.ehb", "<05>"},
        {finding_code::token_after_use,
         [] {
             auto elements = day_elements();
             elements.front() = spi_builder::programme(renamed("Night \x01").front());
             elements.insert(elements.begin(), scope_of(content_id(kStation)));
             return with_today(
                 elem(tag::epg, {elem(tag::schedule, elements), token_table({{0x01, "Shift"}})}));
         },
         kPiLine, "today.ehb", "only later"},
        {finding_code::token_twice,
         [] {
             return with_today(schedule_object(whole_day(kToday), {{0x01, "One"}, {0x01, "Two"}}));
         },
         kPiLine, "today.ehb", "second time"},
        {finding_code::token_too_long,
         [] {
             return with_today(schedule_object(whole_day(kToday), {{0x01, std::string(256, 'x')}}));
         },
         kPiLine, "today.ehb", "more than 255"},
        {finding_code::text_as_id,
         [] {
             service_data service = station_with({});
             const bytes bearer =
                 elem(tag::service_bearer,
                      {attr(attribute::service_bearer::id, str("http://example.invalid/stream"))});
             return clean().si(
                 "ghost.eib",
                 elem(tag::service_information,
                      {elem(tag::ensemble, {attr(attribute::ensemble::id, join({u8(0xE1), u16(kEnsemble)})),
                                            elem(tag::service, {name_elements(service.name), bearer})})}));
         },
         9, "ghost.eib", "service/bearer"},
        {finding_code::no_ensemble_flag,
         [] {
             return with_today(object_of(scope_of(bytes{0x00, 0xC2, 0x21}), day_elements()));
         },
         kPiLine, "today.ehb", "serviceScope"},
        {finding_code::negative_offset, west_of_greenwich, kPiLine, "today.ehb",
         "negative local time offset"},
    };
}

}  // namespace check_test
