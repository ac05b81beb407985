#include "tools/encode/document_encoder.h"

#include <algorithm>
#include <iterator>

#include "tools/encode/element_encoder.h"
#include "tools/encode/value_fault.h"
#include "tools/spi/schema.h"

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

// The ensemble of a bearer, or of an ensemble.
ensemble_id ensemble_of(const coded_node& bearer) {
    std::vector<spi_object::problem> none;
    const coded_node& id = *part_of(bearer, tag::first_attribute);
    if (bearer.tag == tag::ensemble) return spi_object::decode_ensemble_id(id.value, none);
    const spi_object::content_id service = spi_object::decode_content_id(id.value, none);
    return {service.ecc, service.eid};
}

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
            result_.objects.push_back({std::move(top), std::nullopt});
        }
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

    void service_information(pugi::xml_node root, const element_entry& entry, const coded_node& top) {
        coded_node ensembles;  // as they are written
        for (const pugi::xml_node each : root.children()) {
            if (each.type() != pugi::node_element) continue;
            if (encoder_.local_name(each) == std::string("services")) {
                services(each);
            } else {
                encoder_.child(each, entry, ensembles);
            }
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
        if (!result_.objects.empty()) return;
        if (options_.ensembles.empty())
            return encoder_.error(source_.at(root, "no service has a bearer of the DAB domain",
                                             "add bearers such as <bearer id=\"dab:ce1.c185.c221.0\"/>"));
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
                encoder_.omit(kServicesElsewhere, source_.at(each, "has no bearer of the DAB domain"));
            } else {
                services_.push_back(std::move(made));
            }
        }
    }

    // Each ensemble gets the services that it carries, with their bearers on it.
    void distribute(const coded_node& top) {
        for (const ensemble_id& id : ensembles_of_services()) {
            if (!chosen(id)) continue;
            coded_node ensemble{tag::ensemble, {}, false, {}};
            ensemble.parts.push_back({tag::first_attribute, spi_object::encode_ensemble_id(id), false, {}});
            const auto is_here = [&](const coded_node& each) {
                return each.tag == tag::service_bearer && ensemble_of(each) == id;
            };
            for (const coded_node& service : services_) {
                if (std::none_of(service.parts.begin(), service.parts.end(), is_here)) continue;
                coded_node here{service.tag, {}, false, {}};
                std::copy_if(
                    service.parts.begin(), service.parts.end(), std::back_inserter(here.parts),
                    [&](const coded_node& each) { return each.tag != tag::service_bearer || is_here(each); });
                ensemble.parts.push_back(std::move(here));
            }
            coded_node object = top;
            object.parts.push_back(std::move(ensemble));
            result_.objects.push_back({std::move(object), id});
        }
    }

    // In the order in which the document names them.
    std::vector<ensemble_id> ensembles_of_services() const {
        std::vector<ensemble_id> found;
        for (const coded_node& service : services_)
            for (const coded_node& each : service.parts)
                if (each.tag == tag::service_bearer &&
                    std::find(found.begin(), found.end(), ensemble_of(each)) == found.end())
                    found.push_back(ensemble_of(each));
        return found;
    }

    bool chosen(const ensemble_id& id) const {
        return options_.ensembles.empty() || std::find(options_.ensembles.begin(), options_.ensembles.end(),
                                                       id) != options_.ensembles.end();
    }

    std::string all_ensembles(const coded_node& written) const {
        std::string text;
        for (const ensemble_id& each : ensembles_of_services())
            text += (text.empty() ? "" : ", ") + ensemble_id_text(each);
        for (const coded_node& each : written.parts)
            text += (text.empty() ? "" : ", ") + ensemble_id_text(ensemble_of(each));
        return text.empty() ? "none" : text;
    }

    const xml_source& source_;
    const encode_options& options_;
    encoded_document& result_;
    element_encoder encoder_;
    std::vector<coded_node> services_;  // of the form without ensembles
};

}  // namespace

std::map<std::string, std::size_t> encoded_document::omitted_counts() const {
    std::map<std::string, std::size_t> counts;
    for (const left_out& each : omitted)
        ++counts[each.what];
    return counts;
}

encoded_document encode_document(const xml_source& source, const encode_options& options) {
    encoded_document result;
    result.errors = source.errors();
    if (source.root()) document(source, options, result).encode();
    if (!result.errors.empty()) result.objects.clear();
    return result;
}

}  // namespace dabspi
