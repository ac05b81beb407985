#include "tools/encode/document_encoder.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "tools/encode/element_encoder.h"
#include "tools/encode/value_fault.h"
#include "tools/spi/schema.h"
#include "tools/spi/value_problems.h"

namespace dabspi {

namespace {

using spi_object::element_entry;
using spi_object::ensemble_id;
namespace tag = spi_object::tag;

const coded_node* part_of(const coded_node& of, std::uint8_t wanted) {
    const auto found = std::find_if(of.parts.begin(), of.parts.end(),
                                    [&](const coded_node& each) { return each.tag == wanted; });
    return found == of.parts.end() ? nullptr : &*found;
}

// Of elements that an object must not lose: how many a document has, and how many of them say when they are
// on, or where.
struct main_elements {
    std::size_t all = 0;
    std::size_t placed = 0;
};

struct main_names {
    const char* name;
    const char* place;          // inside it, at any depth
    const char* earlier_place;  // as earlier editions call it
    const char* place_attribute;
};
constexpr main_names kProgrammes = {"programme", "time", "time", "time"};
constexpr main_names kServices = {"service", "bearer", "serviceID", "id"};
constexpr main_names kGroups = {"programmeGroup", "", "", ""};

main_elements counted(pugi::xml_node in, const main_names& names) {
    struct counting : pugi::xml_tree_walker {
        const main_names& names;
        main_elements found;
        explicit counting(const main_names& of) : names(of) {}

        bool for_each(pugi::xml_node& node) override {
            if (is_named(node, names.name)) ++found.all;
            if ((is_named(node, names.place) || is_named(node, names.earlier_place)) &&
                node.attribute(names.place_attribute))
                ++found.placed;
            return true;
        }
    } walker(names);
    in.traverse(walker);
    return walker.found;
}

main_elements counted(const coded_node& in, std::uint8_t element, std::uint8_t place) {
    main_elements found;
    for (const coded_node& each : in.parts) {
        const main_elements inside = counted(each, element, place);
        found.all += inside.all + (each.tag == element ? 1 : 0);
        found.placed += inside.placed;
        const bool has_place =
            each.tag == place && !each.parts.empty() && each.parts.front().tag == tag::first_attribute;
        if (has_place) ++found.placed;
    }
    return found;
}

// The ensemble of a bearer, or of an ensemble.
ensemble_id ensemble_of(const coded_node& bearer) {
    std::vector<spi_object::problem> none;
    const coded_node& id = *part_of(bearer, tag::first_attribute);
    if (bearer.tag == tag::ensemble) return spi_object::decode_ensemble_id(id.value, none);
    const spi_object::content_id service = spi_object::decode_content_id(id.value, none);
    return {service.ecc, service.eid};
}

std::uint32_t key_of(const ensemble_id& id) {
    return std::uint32_t{id.ecc} << 16 | id.eid;
}

// A service, by the ensembles that its bearers name.
struct service_parts {
    const coded_node& service;
    std::vector<ensemble_id> ensembles;  // each once
    std::vector<std::size_t> shared;     // all parts but bearers
    std::unordered_map<std::uint32_t, std::vector<std::size_t>> bearers;

    explicit service_parts(const coded_node& of) : service(of) {
        for (std::size_t i = 0; i < of.parts.size(); ++i) {
            if (of.parts[i].tag != tag::service_bearer) {
                shared.push_back(i);
                continue;
            }
            const ensemble_id id = ensemble_of(of.parts[i]);
            std::vector<std::size_t>& here = bearers[key_of(id)];
            if (here.empty()) ensembles.push_back(id);
            here.push_back(i);
        }
    }

    // With its bearers on this one, everything in its order.
    coded_node on(const ensemble_id& id) const {
        const std::vector<std::size_t>& here = bearers.at(key_of(id));
        std::vector<std::size_t> all;
        std::merge(shared.begin(), shared.end(), here.begin(), here.end(), std::back_inserter(all));
        coded_node made{service.tag, {}, false, {}};
        for (const std::size_t each : all)
            made.parts.push_back(service.parts[each]);
        return made;
    }
};

class document {
 public:
    document(const xml_source& source, const encode_options& options, encoded_document& result)
        : source_(source), options_(options), result_(result), encoder_(source, options, result) {}

    void encode() {
        const pugi::xml_node root = source_.root();
        if (!encoder_.take_namespace(root)) return;
        const std::optional<std::string> name = encoder_.local_name(root);
        const element_entry* const entry = name ? spi_object::find_child(0, *name) : nullptr;
        if (entry == nullptr)
            return encoder_.error(source_.at(root, "no SPI document begins with this element",
                                             "it begins with <serviceInformation> or <epg>"));
        coded_node top;
        top.tag = entry->tag;
        encoder_.attributes(root, *entry, top);
        language(root, top);
        if (entry->tag == tag::service_information) {
            service_information(root, *entry, top);
        } else {
            encoder_.children(root, *entry, top);
            refuse_loss(root, kProgrammes, counted(top, tag::programme, tag::time));
            refuse_loss(root, kGroups, counted(top, tag::programme_group, tag::first_attribute));
            for (coded_node& each : top.parts)
                if (each.tag == tag::schedule) name_service(root, each);
            result_.objects.push_back({std::move(top), std::nullopt});
        }
        if (encoder_.times_in_utc() != 0)
            result_.remarks.push_back(
                source_.at(root,
                           spi_object::count_of(encoder_.times_in_utc(), "time") +
                               " in UTC, without an offset: receivers show UTC plus the offset "
                               "that is coded, so these are shown in UTC",
                           "--offset +01:00 or --zone Europe/London codes that of local time"));
    }

 private:
    void language(pugi::xml_node root, coded_node& top) {
        const pugi::xml_attribute given = root.attribute("xml:lang");
        if (!given) return;
        const coded_value coded = code_value(
            {tag::default_language, "xml:lang", spi_object::value_type::string, {}}, given.value());
        if (coded.fault)
            return encoder_.fault(source_.at(root, given, coded.fault->text, coded.fault->remedy),
                                  "left out");
        top.parts.push_back({tag::default_language, coded.coding, false, {}});
    }

    // What a document says, and none of it could be coded: an object without it is worth nothing.
    void refuse_loss(pugi::xml_node from, const main_names& names, const main_elements& made) {
        if (!result_.errors.empty()) return;  // that is why
        const main_elements written = counted(from, names);
        const std::string what = "<" + std::string(names.name) + ">";
        if (written.all != 0 && made.all == 0) {
            encoder_.error(source_.at(
                from,
                "no " + what + " of " + std::to_string(written.all) + " could be coded, and nothing is left",
                "see what is said above of them, or with --verbose"));
        } else if (written.placed != 0 && made.placed == 0) {
            encoder_.error(source_.at(
                from, "no " + what + " of " + std::to_string(written.all) + " kept its <" + names.place + ">",
                "see what is said above of them, or with --verbose"));
        }
    }

    // Receivers file programmes under the service of the scope or of the bearer.
    void name_service(pugi::xml_node root, coded_node& schedule) {
        const auto has = [](const coded_node& of, std::uint8_t parent, std::uint8_t child) {
            return std::any_of(of.parts.begin(), of.parts.end(), [&](const coded_node& each) {
                return each.tag == parent && part_of(each, child) != nullptr;
            });
        };
        bool named = has(schedule, tag::scope, tag::service_scope);
        bool any_programme = false;
        for (const coded_node& each : schedule.parts) {
            if (each.tag != tag::programme) continue;
            any_programme = true;
            named = named || has(each, tag::location, tag::bearer);
        }
        if (named || !any_programme) return;
        if (!options_.service)
            return result_.remarks.push_back(
                source_.at(root, "no service is named: receivers keep none of the programmes",
                           "say which with --service, such as dab:ce1.c185.c221.0"));
        coded_node id{tag::service_scope, {}, false, {}};
        id.parts.push_back(
            {tag::first_attribute, spi_object::encode_content_id(*options_.service), false, {}});
        auto scope = std::find_if(schedule.parts.begin(), schedule.parts.end(),
                                  [](const coded_node& each) { return each.tag == tag::scope; });
        if (scope == schedule.parts.end()) {
            scope = std::find_if(schedule.parts.begin(), schedule.parts.end(),
                                 [](const coded_node& each) { return each.tag < tag::first_attribute; });
            scope = schedule.parts.insert(scope, coded_node{tag::scope, {}, false, {}});
        }
        scope->parts.push_back(std::move(id));
        encoder_.convert("schedules of " + content_id_text(*options_.service),
                         [&] { return source_.at(root, "gets this service"); });
    }

    void service_information(pugi::xml_node root, const element_entry& entry, const coded_node& top) {
        if (options_.service && counted(root, kServices).all == 1) encoder_.has_one_service();
        coded_node ensembles;  // as they are written
        for (const pugi::xml_node each : root.children()) {
            if (each.type() != pugi::node_element) continue;
            if (encoder_.local_name(each) == std::string("services")) {
                services(each);
                continue;
            }
            const std::size_t before = ensembles.parts.size();
            encoder_.child(each, entry, ensembles);
            if (ensembles.parts.size() == before || ensembles.parts.back().tag != tag::ensemble) continue;
            refuse_loss(each, kServices, counted(ensembles.parts.back(), tag::service, tag::service_bearer));
        }
        bool any_chosen = false;
        coded_node written = top;
        for (coded_node& each : ensembles.parts) {
            if (!chosen(ensemble_of(each))) continue;
            any_chosen = true;
            written.parts.push_back(std::move(each));
        }
        if (any_chosen) {
            std::optional<ensemble_id> id;
            const auto first = std::find_if(written.parts.begin(), written.parts.end(),
                                            [](const coded_node& each) { return each.tag == tag::ensemble; });
            if (std::count_if(first, written.parts.end(),
                              [](const coded_node& each) { return each.tag == tag::ensemble; }) == 1)
                id = ensemble_of(*first);
            result_.objects.push_back({std::move(written), id});
        }
        distribute(top);
        if (!result_.objects.empty() || made_ > options_.most_bytes) return;
        if (options_.ensembles.empty())
            return encoder_.error(source_.at(root, "no service has a bearer of the DAB domain",
                                             "add bearers such as <bearer id=\"dab:ce1.c185.c221.0\"/>, or "
                                             "of a single service say --service dab:ce1.c185.c221.0"));
        encoder_.error(source_.at(root, "the document says nothing of the ensemble that is asked for",
                                  "choose among: " + all_ensembles(ensembles)));
    }

    void services(pugi::xml_node from) {
        const element_entry& parent = *spi_object::find_element(tag::ensemble);
        coded_node found;
        for (const pugi::xml_node each : from.children()) {
            if (each.type() != pugi::node_element) continue;
            found.parts.clear();
            encoder_.child(each, parent, found);
            if (found.parts.empty()) continue;
            coded_node& made = found.parts.front();
            if (made.tag != tag::service) {
                encoder_.fault(source_.at(each, "does not belong in <services>",
                                          "services and a serviceProvider belong there"),
                               "left out");
            } else if (part_of(made, tag::service_bearer) == nullptr) {
                encoder_.omit(kServicesElsewhere,
                              [&] { return source_.at(each, "has no bearer of the DAB domain"); });
            } else {
                services_.push_back(std::move(made));
            }
        }
    }

    // Each ensemble gets the services that it carries, with their bearers on it; ensembles stand in the order
    // in which the document names them.
    void distribute(const coded_node& top) {
        std::vector<coded_node> objects;
        std::unordered_map<std::uint32_t, std::size_t> by_ensemble;
        for (const coded_node& service : services_) {
            const service_parts parts(service);
            for (const ensemble_id& id : parts.ensembles) {
                if (!chosen(id)) continue;
                const auto [place, fresh] = by_ensemble.emplace(key_of(id), objects.size());
                if (fresh) {
                    if (!take(size_of(top))) return;
                    coded_node ensemble{tag::ensemble, {}, false, {}};
                    ensemble.parts.push_back(
                        {tag::first_attribute, spi_object::encode_ensemble_id(id), false, {}});
                    objects.push_back(std::move(ensemble));
                }
                const coded_node here = parts.on(id);
                if (!take(size_of(here))) return;
                objects[place->second].parts.push_back(here);
            }
        }
        for (coded_node& each : objects) {
            const ensemble_id id = ensemble_of(each);
            coded_node object = top;
            object.parts.push_back(std::move(each));
            result_.objects.push_back({std::move(object), id});
        }
    }

    // False, with an error, once the objects are larger than is allowed.
    bool take(std::size_t bytes) {
        const bool before = made_ <= options_.most_bytes;
        made_ += bytes;
        if (made_ <= options_.most_bytes) return true;
        if (before)
            encoder_.error(source_.at(source_.root(),
                                      "the document becomes objects of more than " +
                                          spi_object::count_of(options_.most_bytes, "byte"),
                                      "split it, choose with --ensemble, or raise --limit"));
        return false;
    }

    // In the order in which the document names them.
    std::vector<ensemble_id> ensembles_of_services() const {
        std::vector<ensemble_id> found;
        std::unordered_set<std::uint32_t> seen;
        for (const coded_node& service : services_)
            for (const ensemble_id& each : service_parts(service).ensembles)
                if (seen.insert(key_of(each)).second) found.push_back(each);
        return found;
    }

    bool chosen(const ensemble_id& id) const {
        return options_.ensembles.empty() || std::find(options_.ensembles.begin(), options_.ensembles.end(),
                                                       id) != options_.ensembles.end();
    }

    std::string all_ensembles(const coded_node& written) const {
        constexpr std::size_t kMost = 20;
        std::vector<ensemble_id> all = ensembles_of_services();
        for (const coded_node& each : written.parts)
            if (each.tag == tag::ensemble) all.push_back(ensemble_of(each));
        std::string text;
        for (std::size_t i = 0; i < std::min(all.size(), kMost); ++i)
            text += (text.empty() ? "" : ", ") + ensemble_id_text(all[i]);
        if (all.size() > kMost) text += " and " + std::to_string(all.size() - kMost) + " more";
        return text.empty() ? "none" : text;
    }

    const xml_source& source_;
    const encode_options& options_;
    encoded_document& result_;
    element_encoder encoder_;
    std::vector<coded_node> services_;  // of the form without ensembles
    std::size_t made_ = 0;              // bytes of objects, about
};

}  // namespace

encoded_document encode_document(const xml_source& source, const encode_options& options) {
    encoded_document result;
    result.errors = source.errors();
    if (source.root()) document(source, options, result).encode();
    if (!result.errors.empty()) {
        result.objects.clear();
        result.remarks.clear();
    }
    return result;
}

}  // namespace dabspi
