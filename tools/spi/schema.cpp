#include "tools/spi/schema.h"

#include <algorithm>
#include <utility>

#include "src/parse/spi_tags.h"

namespace dabspi::spi_object {

namespace {

using type = value_type;
using content = content_kind;

// Elements that are described: by names, media, genres, links.
const std::vector<std::uint8_t> kDescribed = {tag::programme, tag::programme_event, tag::programme_group,
                                              tag::ensemble, tag::service};
const std::vector<std::uint8_t> kProgrammeLike = {tag::programme, tag::programme_event, tag::programme_group};
const std::vector<std::uint8_t> kTops = {tag::epg, tag::service_information};

const std::vector<attribute_entry> kLanguage = {{0x80, "xml:lang", type::string}};
const std::vector<attribute_entry> kIssue = {{0x80, "version", type::number16},
                                             {0x81, "creationTime", type::time},
                                             {0x82, "originator", type::token_string}};
const std::vector<attribute_entry> kProgramme = {
    {0x80, "id", type::string},
    {0x81, "shortId", type::number24},
    {0x82, "version", type::number16},
    {0x83, "recommendation", type::enumeration, {{1, "no"}, {2, "yes"}}},
    {0x84, "broadcast", type::enumeration, {{1, "on-air"}, {2, "off-air"}}},
    {0x86, "xml:lang", type::string}};
const std::vector<attribute_entry> kBearer = {{0x80, "id", type::content_id}, {0x82, "url", type::string}};

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
     {{0x80, "version", type::number16},
      {0x81, "creationTime", type::time},
      {0x82, "originator", type::string},
      {0x83, "serviceProvider", type::string}}},
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
     {{0x80, "href", type::genre},
      {0x81, "type", type::enumeration, {{1, "main"}, {2, "secondary"}, {3, "other"}}}}},
    {tag::keywords, "keywords", kDescribed, content::text, kLanguage},
    {tag::member_of,
     "memberOf",
     kProgrammeLike,
     content::children,
     {{0x80, "id", type::string}, {0x81, "shortId", type::number24}, {0x82, "index", type::number16}}},
    {tag::link,
     "link",
     kDescribed,
     content::children,
     {{0x80, "uri", type::token_string},
      {0x81, "mimeValue", type::string},
      {0x82, "xml:lang", type::string},
      {0x83, "description", type::token_string},
      {0x84, "expiryTime", type::time}}},
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
     {{0x80, "id", type::string},
      {0x81, "shortId", type::number24},
      {0x82, "version", type::number16},
      {0x83,
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
      {0x84, "numOfItems", type::number16}}},
    {tag::scope,
     "scope",
     {tag::schedule},
     content::children,
     {{0x80, "startTime", type::time}, {0x81, "stopTime", type::time}}},
    {tag::service_scope, "serviceScope", {tag::scope}, content::children, {{0x80, "id", type::content_id}}},
    {tag::ensemble,
     "ensemble",
     {tag::service_information},
     content::children,
     {{0x80, "id", type::ensemble_id}}},
    {tag::service, "service", {tag::ensemble}, content::children, {{0x80, "version", type::number16}}},
    {tag::service_bearer, "bearer", {tag::service}, content::children, kBearer},
    {tag::multimedia,
     "multimedia",
     {tag::media_description},
     content::children,
     {{0x80, "mimeValue", type::string},
      {0x81, "xml:lang", type::string},
      {0x82, "url", type::token_string},
      {0x83,
       "type",
       type::enumeration,
       {{2, "logo_unrestricted"}, {4, "logo_colour_square"}, {6, "logo_colour_rectangle"}}},
      {0x84, "width", type::number16},
      {0x85, "height", type::number16}}},
    {tag::time,
     "time",
     {tag::location},
     content::children,
     {{0x80, "time", type::time},
      {0x81, "duration", type::seconds},
      {0x82, "actualTime", type::time},
      {0x83, "actualDuration", type::seconds}}},
    {tag::bearer, "bearer", {tag::location}, content::children, kBearer},
    {tag::programme_event, "programmeEvent", {tag::programme}, content::children, kProgramme},
    {tag::relative_time,
     "relativeTime",
     {tag::location},
     content::children,
     {{0x80, "time", type::seconds},
      {0x81, "duration", type::seconds},
      {0x82, "actualTime", type::seconds},
      {0x83, "actualDuration", type::seconds}}},
    {tag::radiodns,
     "radiodns",
     {tag::service},
     content::children,
     {{0x80, "fqdn", type::token_string}, {0x81, "serviceIdentifier", type::token_string}}},
    {tag::geolocation,
     "geolocation",
     {tag::service},
     content::children,
     {{0x80, "xml:id", type::string}, {0x81, "ref", type::string}}},
    {tag::country, "country", {tag::geolocation}, content::text},
    {tag::point, "point", {tag::geolocation}, content::positions},
    {tag::polygon, "polygon", {tag::geolocation}, content::positions},
    {tag::on_demand, "onDemand", {tag::programme}, content::children},
    {tag::presentation_time,
     "presentationTime",
     {tag::on_demand},
     content::children,
     {{0x80, "start", type::time}, {0x81, "end", type::time}, {0x82, "duration", type::seconds}}},
    {tag::acquisition_time,
     "acquisitionTime",
     {tag::on_demand},
     content::children,
     {{0x80, "start", type::time}, {0x81, "end", type::time}}},
};

// What the parsers of src/parse act on, as they nest.
constexpr std::pair<std::uint8_t, std::uint8_t> kRead[] = {
    {0, spi::TAG_EPG},
    {0, spi::TAG_SERVICE_INFORMATION},
    {spi::TAG_EPG, spi::TAG_TOKEN_TABLE},
    {spi::TAG_EPG, spi::TAG_DEFAULT_CONTENT_ID},
    {spi::TAG_EPG, spi::TAG_SCHEDULE},
    {spi::TAG_SCHEDULE, spi::TAG_SCOPE},
    {spi::TAG_SCHEDULE, spi::TAG_PROGRAMME},
    {spi::TAG_SCOPE, spi::TAG_SCOPE_START_TIME},
    {spi::TAG_SCOPE, spi::TAG_SCOPE_STOP_TIME},
    {spi::TAG_SCOPE, spi::TAG_SERVICE_SCOPE},
    {spi::TAG_SERVICE_SCOPE, spi::TAG_SERVICE_SCOPE_ID},
    {spi::TAG_PROGRAMME, spi::TAG_PROGRAMME_SHORT_ID},
    {spi::TAG_PROGRAMME, spi::TAG_LONG_NAME},
    {spi::TAG_PROGRAMME, spi::TAG_MEDIUM_NAME},
    {spi::TAG_PROGRAMME, spi::TAG_LOCATION},
    {spi::TAG_LOCATION, spi::TAG_TIME},
    {spi::TAG_LOCATION, spi::TAG_BEARER},
    {spi::TAG_TIME, spi::TAG_TIME_TIME},
    {spi::TAG_TIME, spi::TAG_TIME_DURATION},
    {spi::TAG_BEARER, spi::TAG_BEARER_ID},
    {spi::TAG_SHORT_NAME, spi::TAG_CDATA},
    {spi::TAG_MEDIUM_NAME, spi::TAG_CDATA},
    {spi::TAG_LONG_NAME, spi::TAG_CDATA},
    {spi::TAG_SERVICE_INFORMATION, spi::TAG_TOKEN_TABLE},
    {spi::TAG_SERVICE_INFORMATION, spi::TAG_ENSEMBLE},
    {spi::TAG_ENSEMBLE, spi::TAG_SERVICE},
    {spi::TAG_SERVICE, spi::TAG_MEDIUM_NAME},
    {spi::TAG_SERVICE, spi::TAG_SHORT_NAME},
    {spi::TAG_SERVICE, spi::TAG_MEDIA_DESCRIPTION},
    {spi::TAG_SERVICE, spi::TAG_SERVICE_BEARER},
    {spi::TAG_SERVICE_BEARER, spi::TAG_BEARER_ID},
    {spi::TAG_MEDIA_DESCRIPTION, spi::TAG_MULTIMEDIA},
    {spi::TAG_MULTIMEDIA, spi::TAG_MULTIMEDIA_MIME_VALUE},
    {spi::TAG_MULTIMEDIA, spi::TAG_MULTIMEDIA_URL},
    {spi::TAG_MULTIMEDIA, spi::TAG_MULTIMEDIA_TYPE},
    {spi::TAG_MULTIMEDIA, spi::TAG_MULTIMEDIA_WIDTH},
    {spi::TAG_MULTIMEDIA, spi::TAG_MULTIMEDIA_HEIGHT},
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
