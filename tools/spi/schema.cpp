#include "tools/spi/schema.h"

#include <algorithm>
#include <utility>

namespace dabspi::spi_object {

namespace {

namespace attribute = spi::attribute;
using type = value_type;
using content = content_kind;

// Elements that are described: by names, media, genres, links.
const std::vector<std::uint8_t> kDescribed = {tag::programme, tag::programme_event, tag::programme_group,
                                              tag::ensemble, tag::service};
const std::vector<std::uint8_t> kProgrammeLike = {tag::programme, tag::programme_event, tag::programme_group};
const std::vector<std::uint8_t> kTops = {tag::epg, tag::service_information};

const std::vector<attribute_entry> kLanguage = {{attribute::name::language, "xml:lang", type::string}};
const std::vector<attribute_entry> kIssue = {
    {attribute::schedule::version, "version", type::number16},
    {attribute::schedule::creation_time, "creationTime", type::time},
    {attribute::schedule::originator, "originator", type::token_string}};
const std::vector<attribute_entry> kProgramme = {
    {attribute::programme::id, "id", type::string},
    {attribute::programme::short_id, "shortId", type::number24},
    {attribute::programme::version, "version", type::number16},
    {attribute::programme::recommendation, "recommendation", type::enumeration, {{1, "no"}, {2, "yes"}}},
    {attribute::programme::broadcast, "broadcast", type::enumeration, {{1, "on-air"}, {2, "off-air"}}},
    {attribute::programme::language, "xml:lang", type::string}};
const std::vector<attribute_entry> kBearer = {{attribute::bearer::id, "id", type::content_id},
                                              {attribute::bearer::url, "url", type::string}};

const std::vector<element_entry> kElements = {
    {tag::text,
     "text",
     {tag::short_name, tag::medium_name, tag::long_name, tag::keywords, tag::short_description,
      tag::long_description, tag::country, tag::point, tag::polygon},
     content::value,
     {},
     type::token_string},
    {tag::epg, "epg", {}, content::children},
    {tag::service_information,
     "serviceInformation",
     {},
     content::children,
     {{attribute::service_information::version, "version", type::number16},
      {attribute::service_information::creation_time, "creationTime", type::time},
      {attribute::service_information::originator, "originator", type::string},
      {attribute::service_information::service_provider, "serviceProvider", type::string}}},
    {tag::token_table, "tokenTable", kTops, content::token_table},
    {tag::default_content_id, "defaultContentID", kTops, content::value, {}, type::content_id},
    {tag::default_language, "defaultLanguage", kTops, content::value, {}, type::string},
    {tag::short_name, "shortName", kDescribed, content::text, kLanguage},
    {tag::medium_name, "mediumName", kDescribed, content::text, kLanguage},
    {tag::long_name, "longName", kDescribed, content::text, kLanguage},
    {tag::media_description, "mediaDescription", kDescribed, content::children},
    {tag::genre,
     "genre",
     kDescribed,
     content::children,
     {{attribute::genre::href, "href", type::genre},
      {attribute::genre::type, "type", type::enumeration, {{1, "main"}, {2, "secondary"}, {3, "other"}}}}},
    {tag::keywords, "keywords", kDescribed, content::text, kLanguage},
    {tag::member_of,
     "memberOf",
     kProgrammeLike,
     content::children,
     {{attribute::member_of::id, "id", type::string},
      {attribute::member_of::short_id, "shortId", type::number24},
      {attribute::member_of::index, "index", type::number16}}},
    {tag::link,
     "link",
     kDescribed,
     content::children,
     {{attribute::link::uri, "uri", type::token_string},
      {attribute::link::mime, "mimeValue", type::string},
      {attribute::link::language, "xml:lang", type::string},
      {attribute::link::description, "description", type::token_string},
      {attribute::link::expiry_time, "expiryTime", type::time}}},
    {tag::location, "location", {tag::programme, tag::programme_event}, content::children},
    {tag::short_description, "shortDescription", {tag::media_description}, content::text, kLanguage},
    {tag::long_description, "longDescription", {tag::media_description}, content::text, kLanguage},
    {tag::programme, "programme", {tag::schedule}, content::children, kProgramme},
    {tag::programme_groups, "programmeGroups", {tag::epg}, content::children, kIssue},
    {tag::schedule, "schedule", {tag::epg}, content::children, kIssue},
    {tag::programme_group,
     "programmeGroup",
     {tag::programme_groups},
     content::children,
     {{attribute::programme_group::id, "id", type::string},
      {attribute::programme_group::short_id, "shortId", type::number24},
      {attribute::programme_group::version, "version", type::number16},
      {attribute::programme_group::type,
       "type",
       type::enumeration,
       {{2, "series"},
        {3, "show"},
        {4, "programConcept"},
        {5, "magazine"},
        {6, "programCompilation"},
        {7, "otherCollection"},
        {8, "otherChoice"},
        {9, "topic"}}},
      {attribute::programme_group::items, "numOfItems", type::number16}}},
    {tag::scope,
     "scope",
     {tag::schedule},
     content::children,
     {{attribute::scope::start_time, "startTime", type::time},
      {attribute::scope::stop_time, "stopTime", type::time}}},
    {tag::service_scope,
     "serviceScope",
     {tag::scope},
     content::children,
     {{attribute::service_scope::id, "id", type::content_id}}},
    {tag::ensemble,
     "ensemble",
     {tag::service_information},
     content::children,
     {{attribute::ensemble::id, "id", type::ensemble_id}}},
    {tag::service,
     "service",
     {tag::ensemble},
     content::children,
     {{attribute::service::version, "version", type::number16}}},
    {tag::service_bearer, "bearer", {tag::service}, content::children, kBearer},
    {tag::multimedia,
     "multimedia",
     {tag::media_description},
     content::children,
     {{attribute::multimedia::mime, "mimeValue", type::string},
      {attribute::multimedia::language, "xml:lang", type::string},
      {attribute::multimedia::url, "url", type::token_string},
      {attribute::multimedia::type,
       "type",
       type::enumeration,
       {{2, "logo_unrestricted"}, {4, "logo_colour_square"}, {6, "logo_colour_rectangle"}}},
      {attribute::multimedia::width, "width", type::number16},
      {attribute::multimedia::height, "height", type::number16}}},
    {tag::time,
     "time",
     {tag::location},
     content::children,
     {{attribute::time::time, "time", type::time},
      {attribute::time::duration, "duration", type::seconds},
      {attribute::time::actual_time, "actualTime", type::time},
      {attribute::time::actual_duration, "actualDuration", type::seconds}}},
    {tag::bearer, "bearer", {tag::location}, content::children, kBearer},
    {tag::programme_event, "programmeEvent", {tag::programme}, content::children, kProgramme},
    {tag::relative_time,
     "relativeTime",
     {tag::location},
     content::children,
     {{attribute::time::time, "time", type::seconds},
      {attribute::time::duration, "duration", type::seconds},
      {attribute::time::actual_time, "actualTime", type::seconds},
      {attribute::time::actual_duration, "actualDuration", type::seconds}}},
    {tag::radiodns,
     "radiodns",
     {tag::service},
     content::children,
     {{attribute::radiodns::fqdn, "fqdn", type::token_string},
      {attribute::radiodns::service_identifier, "serviceIdentifier", type::token_string}}},
    {tag::geolocation,
     "geolocation",
     {tag::service},
     content::children,
     {{attribute::geolocation::id, "xml:id", type::string},
      {attribute::geolocation::ref, "ref", type::string}}},
    {tag::country, "country", {tag::geolocation}, content::text},
    {tag::point, "point", {tag::geolocation}, content::positions},
    {tag::polygon, "polygon", {tag::geolocation}, content::positions},
    {tag::on_demand, "onDemand", {tag::programme}, content::children},
    {tag::presentation_time,
     "presentationTime",
     {tag::on_demand},
     content::children,
     {{attribute::presentation_time::start, "start", type::time},
      {attribute::presentation_time::end, "end", type::time},
      {attribute::presentation_time::duration, "duration", type::seconds}}},
    {tag::acquisition_time,
     "acquisitionTime",
     {tag::on_demand},
     content::children,
     {{attribute::acquisition_time::start, "start", type::time},
      {attribute::acquisition_time::end, "end", type::time}}},
};

// What the parsers of src/parse act on, as they nest.
constexpr std::pair<std::uint8_t, std::uint8_t> kRead[] = {
    {0, tag::epg},
    {0, tag::service_information},
    {tag::epg, tag::token_table},
    {tag::epg, tag::default_content_id},
    {tag::epg, tag::schedule},
    {tag::schedule, tag::scope},
    {tag::schedule, tag::programme},
    {tag::scope, spi::attribute::scope::start_time},
    {tag::scope, spi::attribute::scope::stop_time},
    {tag::scope, tag::service_scope},
    {tag::service_scope, spi::attribute::service_scope::id},
    {tag::programme, spi::attribute::programme::short_id},
    {tag::programme, tag::long_name},
    {tag::programme, tag::medium_name},
    {tag::programme, tag::location},
    {tag::location, tag::time},
    {tag::location, tag::bearer},
    {tag::time, spi::attribute::time::time},
    {tag::time, spi::attribute::time::duration},
    {tag::bearer, spi::attribute::bearer::id},
    {tag::short_name, tag::text},
    {tag::medium_name, tag::text},
    {tag::long_name, tag::text},
    {tag::service_information, tag::token_table},
    {tag::service_information, tag::ensemble},
    {tag::ensemble, tag::service},
    {tag::service, tag::medium_name},
    {tag::service, tag::short_name},
    {tag::service, tag::media_description},
    {tag::service, tag::service_bearer},
    {tag::service_bearer, spi::attribute::bearer::id},
    {tag::media_description, tag::multimedia},
    {tag::multimedia, spi::attribute::multimedia::mime},
    {tag::multimedia, spi::attribute::multimedia::url},
    {tag::multimedia, spi::attribute::multimedia::type},
    {tag::multimedia, spi::attribute::multimedia::width},
    {tag::multimedia, spi::attribute::multimedia::height},
};

template <class Range, class Condition>
auto find_in(const Range& range, Condition condition) -> decltype(&*range.begin()) {
    const auto found = std::find_if(range.begin(), range.end(), condition);
    return found == range.end() ? nullptr : &*found;
}

}  // namespace

const char* type_name(value_type of) {
    switch (of) {
        case type::string: return "string";
        case type::token_string: return "string with tokens";
        case type::number16: return "u16";
        case type::number24: return "u24";
        case type::seconds: return "seconds";
        case type::time: return "time";
        case type::content_id: return "content ID";
        case type::ensemble_id: return "ensemble ID";
        case type::genre: return "genre";
        case type::enumeration: return "enumeration";
        case type::positions: return "positions";
    }
    return "";
}

const std::vector<element_entry>& all_elements() {
    return kElements;
}

const element_entry* find_element(std::uint8_t element_tag) {
    return find_in(kElements, [&](const element_entry& each) { return each.tag == element_tag; });
}

const attribute_entry* find_attribute(const element_entry& of, std::uint8_t attribute_tag) {
    return find_in(of.attributes, [&](const attribute_entry& each) { return each.tag == attribute_tag; });
}

const attribute_entry* find_attribute(const element_entry& of, std::string_view name) {
    return find_in(of.attributes, [&](const attribute_entry& each) { return each.name == name; });
}

const element_entry* find_child(std::uint8_t parent, std::string_view name) {
    return find_in(kElements, [&](const element_entry& each) {
        return each.name == name && is_in_xml(each) && may_stand_in(each, parent);
    });
}

bool is_in_xml(const element_entry& element) {
    return element.content != content::value && element.content != content::token_table;
}

bool may_stand_in(const element_entry& element, std::uint8_t parent) {
    if (parent == 0) return element.parents.empty();
    return std::find(element.parents.begin(), element.parents.end(), parent) != element.parents.end();
}

const char* enum_text(const attribute_entry& attribute, std::uint8_t code) {
    const enum_name* const found =
        find_in(attribute.names, [&](const enum_name& each) { return each.code == code; });
    return found == nullptr ? nullptr : found->name;
}

const enum_name* find_enum(const attribute_entry& attribute, std::string_view name) {
    return find_in(attribute.names, [&](const enum_name& each) { return each.name == name; });
}

bool receiver_reads(std::uint8_t parent, std::uint8_t child) {
    return std::find(std::begin(kRead), std::end(kRead), std::make_pair(parent, child)) != std::end(kRead);
}

}  // namespace dabspi::spi_object
