#include "tools/encode/element_encoder.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "tools/encode/earlier_ids.h"
#include "tools/encode/value_fault.h"
#include "tools/encode/without_coding.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using spi_object::attribute_entry;
using spi_object::content_kind;
using spi_object::element_entry;
using spi_object::value_type;
namespace tag = spi_object::tag;

constexpr std::string_view kNamespace = "http://www.worlddab.org/schemas/spi";
constexpr std::size_t kMostErrors = 1000;
constexpr std::size_t kMostOfShownName = 60;
constexpr std::int64_t kDay1970 = 40587;  // as a Modified Julian Date
constexpr std::int64_t kLastCodedDay = 0x1FFFF;
constexpr int kMostHalfHours = 31;

// Before edition 3.1 each kind of document had a namespace of its own, and the types that they shared a
// third; broadcasters' extensions of these have the same names in namespaces of their own.
bool is_earlier_namespace(std::string_view name) {
    constexpr std::string_view kParts[] = {"epgSI", "epgSchedule", "epgDataTypes"};
    while (!name.empty()) {
        const std::string_view part = name.substr(0, name.find('/'));
        if (std::find(std::begin(kParts), std::end(kParts), part) != std::end(kParts)) return true;
        name.remove_prefix(std::min(part.size() + 1, name.size()));
    }
    return false;
}

std::int64_t seconds_of(const spi_object::time_value& time) {
    return (std::int64_t{time.mjd} - kDay1970) * 86400 + time.hour * 3600 + time.minute * 60 + time.second;
}

// False: beyond the days that a time can tell.
bool move(spi_object::time_value& time, std::int64_t seconds) {
    const std::int64_t moved = seconds_of(time) + seconds + kDay1970 * 86400;
    if (moved < 0 || moved / 86400 > kLastCodedDay) return false;
    time.mjd = static_cast<std::uint32_t>(moved / 86400);
    time.hour = static_cast<unsigned>(moved % 86400 / 3600);
    time.minute = static_cast<unsigned>(moved % 3600 / 60);
    time.second = static_cast<unsigned>(moved % 60);
    return true;
}

bool is_spi_namespace(std::string_view name) {
    if (name.substr(0, kNamespace.size()) != kNamespace) return false;
    const std::string_view edition = name.substr(kNamespace.size());
    return edition.empty() || (edition.size() > 1 && edition[0] == '/' &&
                               edition.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

bool is_zero_id(std::string_view id) {
    const std::optional<std::string> uri = uri_of_earlier_id(id);
    const std::optional<spi_object::content_id> service = spi_object::parse_content_id(uri ? *uri : id);
    return service && service->sid == 0 && service->eid == 0 && service->ecc == 0;
}

std::string_view prefix_of(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

bool is_blank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// "<genre>"
std::string tagged(std::string_view name) {
    return "<" + std::string(name.substr(0, kMostOfShownName)) +
           (name.size() > kMostOfShownName ? "..." : "") + ">";
}

const attribute_entry* content_id_of(const element_entry& entry) {
    const auto found =
        std::find_if(entry.attributes.begin(), entry.attributes.end(),
                     [](const attribute_entry& each) { return each.type == value_type::content_id; });
    return found == entry.attributes.end() ? nullptr : &*found;
}

std::vector<std::string> attribute_names(const element_entry& of) {
    std::vector<std::string> names;
    for (const attribute_entry& each : of.attributes)
        names.emplace_back(each.name);
    return names;
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& each : names)
        text += (text.empty() ? "" : ", ") + each;
    return text.empty() ? "none" : text;
}

std::vector<std::string> child_names(const element_entry& parent) {
    std::vector<std::string> names;
    for (const element_entry& each : spi_object::all_elements())
        if (is_in_xml(each) && may_stand_in(each, parent.tag)) names.emplace_back(each.name);
    if (parent.tag == tag::service_information) names.emplace_back("services");
    return names;
}

// Elements in which this name may stand.
std::vector<std::string> parent_names(std::string_view child) {
    std::vector<std::string> names;
    for (const element_entry& each : spi_object::all_elements()) {
        if (each.name != child || !is_in_xml(each)) continue;
        for (const std::uint8_t parent : each.parents)
            names.emplace_back(spi_object::find_element(parent)->name);
    }
    return names;
}

}  // namespace

element_encoder::element_encoder(const xml_source& source, const encode_options& options,
                                 encoded_document& result)
    : source_(source), options_(options), result_(result) {}

bool element_encoder::take_namespace(pugi::xml_node root) {
    namespace_ = namespace_of(root);
    count_edition(root);
    if (is_spi_namespace(namespace_) || is_earlier_namespace(namespace_)) return true;
    fault(source_.at(root,
                     namespace_.empty() ? "the element is in no namespace"
                                        : "the element is in the namespace " + in_quotes(namespace_),
                     "SPI documents are in xmlns=\"" + std::string(kNamespace) + "/31\""),
          "taken as one of SPI");
    return options_.lenient;
}

const element_encoder::declarations& element_encoder::declarations_of(pugi::xml_node element) {
    static const declarations none;
    if (!element.first_attribute()) return none;
    const auto [entry, fresh] = declarations_.try_emplace(element.internal_object());
    if (!fresh) return entry->second;
    for (const pugi::xml_attribute each : element.attributes()) {
        const std::string_view name = each.name();
        if (name == "xmlns") entry->second.namespaces.emplace("", each.value());
        if (name.substr(0, 6) == "xmlns:") entry->second.namespaces.emplace(name.substr(6), each.value());
        if (name == "xml:space") entry->second.keeps_blanks = each.value() == std::string_view("preserve");
    }
    return entry->second;
}

// What the element's prefix is bound to; empty for none.
std::string element_encoder::namespace_of(pugi::xml_node element) {
    const std::string prefix(prefix_of(element.name()));
    for (pugi::xml_node at = element; at; at = at.parent()) {
        const declarations& here = declarations_of(at);
        const auto found = here.namespaces.find(prefix);
        if (found != here.namespaces.end()) return found->second;
    }
    return {};
}

bool element_encoder::is_of_earlier_edition(pugi::xml_node element) {
    return is_earlier_namespace(namespace_of(element));
}

void element_encoder::count_edition(pugi::xml_node element) {
    if (is_of_earlier_edition(element))
        convert("elements in the namespaces of earlier editions",
                [&] { return source_.at(element, "is taken as of the edition of today"); });
}

std::optional<std::string> element_encoder::local_name(pugi::xml_node element) {
    const std::string_view name = element.name();
    const std::string_view prefix = prefix_of(name);
    const std::string bound = namespace_of(element);
    if (bound != namespace_ && !is_earlier_namespace(bound) && !is_spi_namespace(bound)) return std::nullopt;
    return std::string(prefix.empty() ? name : name.substr(prefix.size() + 1));
}

std::optional<coded_node> element_encoder::element(pugi::xml_node from, const element_entry& entry) {
    if (is_of_other_domain(from, entry) || names_nothing(from, entry)) return std::nullopt;
    coded_node made;
    made.tag = entry.tag;
    attributes(from, entry, made);
    if (!has_needed_id(from, entry, made)) return std::nullopt;
    if (entry.content == content_kind::children) {
        children(from, entry, made);
    } else {
        text(from, entry, made);
    }
    if (is_service_of_other_domains(from, entry, made)) return std::nullopt;
    return made;
}

void element_encoder::attributes(pugi::xml_node from, const element_entry& entry, coded_node& to) {
    for (const pugi::xml_attribute each : from.attributes())
        attribute(from, each, entry, to);
    std::stable_sort(to.parts.begin(), to.parts.end(),
                     [](const coded_node& a, const coded_node& b) { return a.tag < b.tag; });
}

void element_encoder::attribute(pugi::xml_node from, pugi::xml_attribute each, const element_entry& entry,
                                coded_node& to) {
    const std::string_view name = each.name();
    const std::string_view prefix = prefix_of(name);
    if (name == "xmlns" || prefix == "xmlns" || name == "xml:space") return;
    // The top element's language has an element of its own.
    if (entry.parents.empty() && name == "xml:lang") return;
    if (!prefix.empty() && prefix != "xml")
        return omit("attributes of other namespaces",
                    [&] { return source_.at(from, each, "is of another namespace"); });
    const attribute_entry* known = find_attribute(entry, name);
    if (known == nullptr && entry.tag == tag::link && name == "url" && !from.attribute("uri")) {
        known = find_attribute(entry, "uri");
        convert("<link url> as uri", [&] { return source_.at(from, each, "is taken as uri"); });
    }
    if (known == nullptr) return unknown_attribute(from, each, entry);
    coded_value value = coded(from, each, entry, *known);
    if (value.fault) {
        if (known->type == value_type::genre && std::string_view(each.value()).substr(0, 4) == "urn:")
            return omit("genres that have no coding",
                        [&] { return source_.at(from, each, value.fault->text, value.fault->remedy); });
        fault(source_.at(from, each, value.fault->text, value.fault->remedy),
              value.fault->repaired ? value.fault->repaired_how : "left out");
        if (!value.fault->repaired) return;
        value.coding = std::move(*value.fault->repaired);
    }
    to.parts.push_back({known->tag, std::move(value.coding), known->type == value_type::token_string, {}});
}

void element_encoder::unknown_attribute(pugi::xml_node from, pugi::xml_attribute each,
                                        const element_entry& entry) {
    const std::string_view name = each.name();
    if (is_attribute_without_coding(entry.name, name))
        return omit("attributes that have no coding",
                    [&] { return source_.at(from, each, "has no coding"); });
    if (is_of_earlier_edition(from))
        return omit("attributes of earlier editions",
                    [&] { return source_.at(from, each, "is not of the edition of today"); });
    std::string remedy;
    if (keeps_another_fault()) {
        const std::vector<std::string> names = attribute_names(entry);
        remedy = similar_name(name, names);
        if (remedy.empty()) remedy = "its attributes: " + listed(names);
    }
    fault(source_.at(from, each, tagged(entry.name) + " has no such attribute", std::move(remedy)),
          "left out");
}

coded_value element_encoder::coded(pugi::xml_node from, pugi::xml_attribute each, const element_entry& entry,
                                   const attribute_entry& known) {
    const std::string text = each.value();
    if (known.type == value_type::time) return coded_time(from, each, entry, text);
    if (known.type == value_type::content_id) {
        if (options_.service && is_zero_id(text)) {
            convert("identifiers that name no service as " + content_id_text(*options_.service),
                    [&] { return source_.at(from, each, "is taken as the one that is given"); });
            return {spi_object::encode_content_id(*options_.service), std::nullopt};
        }
        if (const std::optional<std::string> uri = uri_of_earlier_id(text)) {
            convert("identifiers without dab:",
                    [&] { return source_.at(from, each, "is taken as " + *uri); });
            return code_value(known, *uri);
        }
    }
    return code_value(known, text);
}

coded_value element_encoder::coded_time(pugi::xml_node from, pugi::xml_attribute each,
                                        const element_entry& entry, const std::string& text) {
    const attribute_entry as{0, each.name(), value_type::time, {}};
    const std::size_t behind = text.find_last_not_of(" \t\r\n") + 1;
    const std::size_t first = std::min(text.find_first_not_of(" \t\r\n"), behind);
    std::optional<spi_object::time_value> time = spi_object::parse_time(text.substr(first, behind - first));
    if (!time || time->offset) return code_value(as, text);
    const bool is_creation = each.name() == std::string_view("creationTime");
    const bool in_utc = text[behind - 1] == 'Z';
    if (in_utc && (is_creation || !options_.local)) {
        if (entry.tag == tag::time) ++times_in_utc_;
        return code_value(as, text);
    }
    if (!options_.local) {
        if (!is_creation) return code_value(as, text);
        convert("creationTime without a time zone as UTC",
                [&] { return source_.at(from, each, "is taken as UTC"); });
        return {spi_object::encode_time(*time), std::nullopt};
    }
    const std::int64_t offset =
        in_utc ? options_.local->at(seconds_of(*time)) : options_.local->at_local(seconds_of(*time));
    if ((!in_utc && !move(*time, -offset)) || offset % 1800 != 0 || std::abs(offset / 1800) > kMostHalfHours)
        return {{},
                value_fault{"the offset of " + options_.local->name() + " at " + in_quotes(text) +
                                " has no coding: half-hours are counted, up to 15:30",
                            "give it with another offset, or with Z", spi_object::encode_time(*time),
                            "coded in UTC, without an offset"}};
    time->offset = static_cast<int>(offset / 1800);
    convert(in_utc ? "times in UTC with the offset of local time" : "times without a time zone as local time",
            [&] { return source_.at(from, each, "is taken as " + time_text(*time)); });
    return {spi_object::encode_time(*time), std::nullopt};
}

void element_encoder::children(pugi::xml_node from, const element_entry& entry, coded_node& to) {
    for (const pugi::xml_node each : from.children()) {
        if (each.type() == pugi::node_element) {
            child(each, entry, to);
        } else if (!is_blank(each.value())) {
            omit("texts that have no coding",
                 [&] { return source_.at(from, "the text inside has no coding"); });
        }
    }
    if (entry.tag != tag::service) return;
    const auto is = [](std::uint8_t wanted) {
        return [wanted](const coded_node& each) { return each.tag == wanted; };
    };
    const auto media = std::find_if(to.parts.begin(), to.parts.end(), is(tag::media_description));
    std::stable_partition(media, to.parts.end(), is(tag::service_bearer));
}

void element_encoder::child(pugi::xml_node from, const element_entry& parent, coded_node& to) {
    std::optional<std::string> name = local_name(from);
    if (!name)
        return omit("elements of other namespaces",
                    [&] { return source_.at(from, "is of another namespace"); });
    count_edition(from);
    if (parent.tag == tag::service && *name == "serviceID") {
        convert("<serviceID> as <bearer>", [&] { return source_.at(from, "is taken as <bearer>"); });
        name = "bearer";
    }
    if (const element_entry* const known = spi_object::find_child(parent.tag, *name)) {
        std::optional<coded_node> made = element(from, *known);
        // A genre without its value says nothing; its type alone is no reason to keep it.
        const bool says_nothing =
            made && known->tag == tag::genre && from.attribute("href") &&
            std::none_of(made->parts.begin(), made->parts.end(),
                         [](const coded_node& each) { return each.tag == tag::first_attribute; });
        if (made && !says_nothing) to.parts.push_back(std::move(*made));
        return;
    }
    if (!wrap(from, *name, parent, to)) unknown_element(from, *name, parent);
}

bool element_encoder::wrap(pugi::xml_node from, const std::string& name, const element_entry& parent,
                           coded_node& to) {
    const element_entry& media = *spi_object::find_element(tag::media_description);
    const element_entry* const known = spi_object::find_child(media.tag, name);
    if (known == nullptr || !may_stand_in(media, parent.tag)) return false;
    convert("<" + name + "> in a <mediaDescription> of its own",
            [&] { return source_.at(from, "is put into a <mediaDescription>"); });
    if (std::optional<coded_node> made = element(from, *known))
        to.parts.push_back({media.tag, {}, false, {std::move(*made)}});
    return true;
}

void element_encoder::unknown_element(pugi::xml_node from, const std::string& name,
                                      const element_entry& parent) {
    if (is_element_without_coding(name))
        return omit("elements that have no coding", [&] { return source_.at(from, "has no coding"); });
    if (is_of_earlier_edition(from))
        return omit("elements of earlier editions",
                    [&] { return source_.at(from, "is not of the edition of today"); });
    std::string what = "there is no element " + tagged(name);
    std::string remedy;
    if (keeps_another_fault()) {
        const std::vector<std::string> parents = parent_names(name);
        if (!parents.empty()) {
            what = tagged(name) + " does not belong in " + tagged(parent.name);
            remedy = "it belongs in: " + listed(parents);
        } else {
            const std::vector<std::string> names = child_names(parent);
            remedy = similar_name(name, names);
            if (remedy.empty()) remedy = "in " + tagged(parent.name) + " belong: " + listed(names);
        }
    }
    fault(source_.at(from, std::move(what), std::move(remedy)), "left out");
}

void element_encoder::text(pugi::xml_node from, const element_entry& entry, coded_node& to) {
    const std::string content = text_of(from, entry);
    if (content.empty()) return;
    const bool positions = entry.content == content_kind::positions;
    const attribute_entry as{tag::text, "", positions ? value_type::positions : value_type::token_string, {}};
    coded_value coded = code_value(as, content);
    if (coded.fault) {
        fault(source_.at(from, coded.fault->text, coded.fault->remedy),
              coded.fault->repaired ? coded.fault->repaired_how : "left out");
        if (!coded.fault->repaired) return;
        coded.coding = std::move(*coded.fault->repaired);
    }
    to.parts.push_back({tag::text, std::move(coded.coding), !positions, {}});
}

// Blanks at either end belong to the layout of the file when a line ends among them, and to the text when
// not.
std::string element_encoder::text_of(pugi::xml_node from, const element_entry& entry) {
    std::string content;
    for (const pugi::xml_node each : from.children()) {
        if (each.type() == pugi::node_element) {
            fault(source_.at(each, tagged(entry.name) + " holds text, no elements", {}), "left out");
        } else {
            content += each.value();
        }
    }
    if (keeps_blanks(from)) return content;
    const std::size_t first = std::min(content.find_first_not_of(" \t\r\n"), content.size());
    if (content.find('\n') < first) content.erase(0, first);
    const std::size_t behind = content.find_last_not_of(" \t\r\n") + 1;
    if (content.find('\n', behind) != std::string::npos) content.erase(behind);
    return content;
}

bool element_encoder::keeps_blanks(pugi::xml_node element) {
    for (; element; element = element.parent())
        if (const std::optional<bool>& said = declarations_of(element).keeps_blanks) return *said;
    return false;
}

bool element_encoder::is_of_other_domain(pugi::xml_node from, const element_entry& entry) {
    const attribute_entry* const id = content_id_of(entry);
    if (id == nullptr) return false;
    const pugi::xml_attribute given = from.attribute(id->name);
    const std::string_view uri = given.value();
    const std::string_view domain = uri.substr(0, uri.find(':'));
    const bool dab = domain.size() == 3 && (domain[0] | 0x20) == 'd' && (domain[1] | 0x20) == 'a' &&
                     (domain[2] | 0x20) == 'b';
    if (domain.size() == uri.size() || dab) return false;
    omit(entry.tag == tag::service_scope ? "service scopes of other domains" : "bearers of other domains",
         [&] { return source_.at(from, given, in_quotes(uri) + " is not of the DAB domain"); });
    return true;
}

// "00.0000.0000.0" stands where the broadcaster has no DAB service to name.
bool element_encoder::names_nothing(pugi::xml_node from, const element_entry& entry) {
    const attribute_entry* const id = content_id_of(entry);
    if (id == nullptr || options_.service) return false;
    const pugi::xml_attribute given = from.attribute(id->name);
    if (!is_zero_id(given.value())) return false;
    omit("identifiers that name no service",
         [&] { return source_.at(from, given, in_quotes(given.value()) + " names no service"); });
    return true;
}

bool element_encoder::is_service_of_other_domains(pugi::xml_node from, const element_entry& entry,
                                                  coded_node& made) {
    if (entry.tag != tag::service) return false;
    const auto is_bearer = [](const coded_node& each) { return each.tag == tag::service_bearer; };
    if (std::any_of(made.parts.begin(), made.parts.end(), is_bearer)) return false;
    bool has_others = false;
    for (const pugi::xml_node each : from.children())
        has_others = has_others || is_named(each, "bearer") || is_named(each, "serviceID");
    if (options_.service && one_service_) {
        convert("the service as " + content_id_text(*options_.service),
                [&] { return source_.at(from, "gets this bearer"); });
        coded_node bearer{tag::service_bearer, {}, false, {}};
        bearer.parts.push_back(
            {tag::first_attribute, spi_object::encode_content_id(*options_.service), false, {}});
        const auto media = std::find_if(made.parts.begin(), made.parts.end(), [](const coded_node& each) {
            return each.tag == tag::media_description;
        });
        made.parts.insert(media, std::move(bearer));
        return false;
    }
    if (has_others)
        omit(kServicesElsewhere, [&] { return source_.at(from, "has no bearer of the DAB domain"); });
    return has_others;
}

bool element_encoder::has_needed_id(pugi::xml_node from, const element_entry& entry, const coded_node& made) {
    const bool needed = content_id_of(entry) != nullptr || entry.tag == tag::ensemble;
    const auto is_id = [](const coded_node& each) { return each.tag == tag::first_attribute; };
    if (!needed || std::any_of(made.parts.begin(), made.parts.end(), is_id)) return true;
    // What is wrong with one that is there has been said.
    if (from.attribute("id")) return false;
    fault(source_.at(from, tagged(entry.name) + " has no id", "say which it is: id=\"...\""), "left out");
    return false;
}

bool element_encoder::keeps_another_fault() const {
    return (options_.lenient ? result_.warnings : result_.errors).size() < kMostErrors;
}

void element_encoder::error(source_note note) {
    if (result_.errors.size() < kMostErrors) result_.errors.push_back(std::move(note));
}

void element_encoder::fault(source_note note, const std::string& lenient_way) {
    if (!options_.lenient) return error(std::move(note));
    note.remedy = lenient_way;
    warn(std::move(note));
}

void element_encoder::warn(source_note note) {
    if (result_.warnings.size() < kMostErrors) {
        result_.warnings.push_back(std::move(note));
    } else {
        ++result_.more_warnings;
    }
}

}  // namespace dabspi
