#include "tools/guide/guide_reader.h"

#include <algorithm>
#include <string_view>

#include "tools/inspect/image_header.h"
#include "tools/spi/decode.h"
#include "tools/spi/xml_document.h"

namespace dabspi::guide {

namespace {

using spi_object::node;
namespace tag = spi_object::tag;
namespace attribute = spi::attribute;

constexpr std::int64_t kDayOfUnixTime = 40587;  // 1970-01-01 as a modified Julian date

std::int64_t unix_time(const spi_object::time_value& of) {
    return (static_cast<std::int64_t>(of.mjd) - kDayOfUnixTime) * 86400 + of.hour * 3600 + of.minute * 60 +
           of.second;
}

service_id service_of_id(const spi_object::content_id& id) {
    return {id.long_sid ? static_cast<std::uint8_t>(id.sid >> 24) : id.ecc, id.sid, id.scids};
}

const spi_object::time_value* time_of(const node& from, std::uint8_t attribute_tag) {
    const node* const found = from.attribute_at(attribute_tag);
    return found == nullptr ? nullptr : std::get_if<spi_object::time_value>(&found->decoded);
}

std::optional<std::uint32_t> number_of(const node& from, std::uint8_t attribute_tag) {
    const node* const found = from.attribute_at(attribute_tag);
    const auto* const number = found == nullptr ? nullptr : std::get_if<std::uint32_t>(&found->decoded);
    return number == nullptr ? std::nullopt : std::optional(*number);
}

bool is_same(const programme& a, const programme& b) {
    return a.duration == b.duration && name_of(a) == name_of(b);
}

}  // namespace

void guide_reader::add_object(std::shared_ptr<const bytes> body, const std::string& name,
                              std::optional<std::uint16_t> ensemble_received_on) {
    const std::size_t number = objects_.size();
    if (!name.empty()) {
        const std::string key =
            (ensemble_received_on ? std::to_string(*ensemble_received_on) : "") + "/" + name;
        const auto [known, is_new] = by_name_.emplace(key, number);
        if (!is_new) {
            read_object none;
            none.replaced = true;
            objects_[known->second] = std::move(none);
            ++result_.counts.replaced_objects;
            known->second = number;
        }
    }
    const spi_object::object tree = spi_object::decode(*body);
    ++result_.counts.objects;
    if (!tree.well_formed()) ++result_.counts.malformed_objects;
    result_.sources.push_back(std::move(body));
    objects_.emplace_back();
    received_on_ = ensemble_received_on;
    for (const node& top : tree.tops) {
        const node* const language = top.child(tag::default_language);
        language_ = language == nullptr ? std::string() : text_of(*language);
        default_id_.reset();
        if (const node* const id = top.child(tag::default_content_id))
            if (const auto* const value = std::get_if<spi_object::content_id>(&id->decoded))
                default_id_ =
                    bearer_id{service_of_id(*value), value->ensemble_coded
                                                         ? std::optional(ensemble_id{value->ecc, value->eid})
                                                         : std::nullopt};
        for (const node& each : top.children) {
            if (each.kind != spi_object::node_kind::element || each.element == nullptr) continue;
            if (top.tag == tag::epg && each.tag == tag::schedule) schedule(each, objects_.back());
            if (top.tag == tag::service_information && each.tag == tag::ensemble)
                ensemble(each, objects_.back());
        }
    }
}

void guide_reader::add_image(std::shared_ptr<const bytes> body, const std::string& name) {
    images_[name] = std::move(body);
}

void guide_reader::schedule(const node& from, read_object& into) {
    std::vector<bearer_id> scope;
    for (const node& each : from.children) {
        if (each.kind != spi_object::node_kind::element) continue;
        if (each.tag == tag::scope)
            for (const node& part : each.children)
                if (part.tag == tag::service_scope && part.kind == spi_object::node_kind::element)
                    if (const auto id = id_of(part, attribute::service_scope::id)) scope.push_back(*id);
    }
    if (scope.empty() && default_id_) scope.push_back(*default_id_);
    for (const node& each : from.children)
        if (each.kind == spi_object::node_kind::element && each.tag == tag::programme)
            add_programme(each, scope, into);
}

void guide_reader::add_programme(const node& from, const std::vector<bearer_id>& scope, read_object& into) {
    programme made;
    static_cast<described&>(made) = description(from);
    made.id = attribute_text(from, attribute::programme::id);
    made.short_id = number_of(from, attribute::programme::short_id);
    made.language = attribute_text(from, attribute::programme::language);
    if (made.language.empty()) made.language = language_;
    made.source = objects_.size() - 1;
    made.place = from.offset;
    bool has_time = false;
    bool has_service = false;
    for (const node& location : from.children) {
        if (location.kind != spi_object::node_kind::element || location.tag != tag::location) continue;
        std::vector<bearer_id> services;
        for (const node& each : location.children)
            if (each.kind == spi_object::node_kind::element && each.tag == tag::bearer)
                if (const auto id = id_of(each, attribute::bearer::id)) services.push_back(*id);
        if (services.empty()) services = scope;
        for (const node& each : location.children) {
            if (each.kind != spi_object::node_kind::element || each.tag != tag::time) continue;
            const spi_object::time_value* const start = time_of(each, attribute::time::time);
            if (start == nullptr || start->mjd == 0) continue;
            has_time = true;
            made.start = unix_time(*start);
            made.offset = start->offset;
            made.duration = number_of(each, attribute::time::duration).value_or(0);
            std::set<service_id> done;  // on two ensembles it is one programme
            for (const bearer_id& id : services) {
                has_service = true;
                if (!done.insert(id.service).second) continue;
                into.programmes.push_back(
                    {id.service, id.ensemble ? std::optional(id.ensemble->eid) : received_on_, made});
            }
        }
    }
    if (!has_time) {
        ++result_.counts.without_time;
    } else if (!has_service) {
        ++result_.counts.without_service;
    }
}

void guide_reader::ensemble(const node& from, read_object& into) {
    std::optional<ensemble_id> on;
    if (const node* const id = from.attribute_at(attribute::ensemble::id))
        if (const auto* const value = std::get_if<spi_object::ensemble_id>(&id->decoded)) {
            on = ensemble_id{value->ecc, value->eid};
            into.ensembles[*on] = description(from).names;
        }
    for (const node& each : from.children)
        if (each.kind == spi_object::node_kind::element && each.tag == tag::service)
            service_of(each, on, into);
}

void guide_reader::service_of(const node& from, std::optional<ensemble_id> on, read_object& into) {
    read_service made;
    made.what = description(from);
    made.what.language = language_;
    for (const node& each : from.children) {
        if (each.kind != spi_object::node_kind::element || each.tag != tag::service_bearer) continue;
        const auto id = id_of(each, attribute::bearer::id);
        if (id) made.bearers.emplace_back(id->service, id->ensemble ? id->ensemble : on);
    }
    if (!made.bearers.empty()) into.services.push_back(std::move(made));
}

described guide_reader::description(const node& from) {
    described made;
    for (const node& each : from.children) {
        if (each.kind != spi_object::node_kind::element || each.element == nullptr) continue;
        switch (each.tag) {
            case tag::short_name: made.names.short_texts.push_back(text_in(each)); break;
            case tag::medium_name: made.names.medium_texts.push_back(text_in(each)); break;
            case tag::long_name: made.names.long_texts.push_back(text_in(each)); break;
            case tag::media_description: media(each, made); break;
            case tag::keywords: made.keywords.push_back(text_in(each).value); break;
            case tag::genre:
                if (const node* const href = each.attribute_at(attribute::genre::href))
                    if (const auto* const genre = std::get_if<spi_object::genre_value>(&href->decoded))
                        made.genres.push_back(*genre);
                break;
            case tag::link:
                made.links.push_back({attribute_text(each, attribute::link::uri),
                                      attribute_text(each, attribute::link::mime),
                                      attribute_text(each, attribute::link::description)});
                break;
            default: break;
        }
    }
    for (std::vector<text>* const all :
         {&made.names.short_texts, &made.names.medium_texts, &made.names.long_texts,
          &made.descriptions.short_texts, &made.descriptions.long_texts})
        all->erase(
            std::remove_if(all->begin(), all->end(), [](const text& each) { return each.value.empty(); }),
            all->end());
    return made;
}

void guide_reader::media(const node& from, described& into) {
    for (const node& each : from.children) {
        if (each.kind != spi_object::node_kind::element || each.element == nullptr) continue;
        if (each.tag == tag::short_description) into.descriptions.short_texts.push_back(text_in(each));
        if (each.tag == tag::long_description) into.descriptions.long_texts.push_back(text_in(each));
        if (each.tag != tag::multimedia) continue;
        picture made;
        made.url = attribute_text(each, attribute::multimedia::url);
        made.mime = attribute_text(each, attribute::multimedia::mime);
        made.type = attribute_text(each, attribute::multimedia::type);
        made.width = number_of(each, attribute::multimedia::width).value_or(0);
        made.height = number_of(each, attribute::multimedia::height).value_or(0);
        into.pictures.push_back(std::move(made));
    }
}

std::string guide_reader::text_of(const node& from) {
    std::size_t replaced = 0;
    std::string made = spi_object::xml_safe(spi_object::value_text(from), replaced);
    result_.counts.repaired_characters += replaced;
    return made;
}

std::string guide_reader::attribute_text(const node& from, std::uint8_t attribute_tag) {
    const node* const found = from.attribute_at(attribute_tag);
    return found == nullptr ? std::string() : text_of(*found);
}

text guide_reader::text_in(const node& from) {
    text made;
    if (const node* const value = from.child(tag::text)) made.value = text_of(*value);
    made.language = attribute_text(from, attribute::name::language);
    if (made.language.empty()) made.language = language_;
    return made;
}

std::optional<guide_reader::bearer_id> guide_reader::id_of(const node& from,
                                                           std::uint8_t attribute_tag) const {
    const node* const found = from.attribute_at(attribute_tag);
    if (found == nullptr) return default_id_;
    const auto* const id = std::get_if<spi_object::content_id>(&found->decoded);
    if (id == nullptr) return std::nullopt;
    return bearer_id{service_of_id(*id),
                     id->ensemble_coded ? std::optional(ensemble_id{id->ecc, id->eid}) : std::nullopt};
}

service_id guide_reader::known(service_id id, std::optional<std::uint16_t> eid) const {
    if (id.ecc != 0) return id;
    const auto service = ecc_of_services_.find({id.sid, id.scids});
    if (service != ecc_of_services_.end()) {
        id.ecc = service->second;
        return id;
    }
    const auto ensemble = eid ? ecc_of_ensembles_.find(*eid) : ecc_of_ensembles_.end();
    if (ensemble != ecc_of_ensembles_.end()) id.ecc = ensemble->second;
    return id;
}

void guide_reader::gather_services(std::map<service_id, service>& all) {
    std::map<service_id, std::optional<ensemble_id>> described_by;
    for (read_object& object : objects_) {
        for (auto& [id, names] : object.ensembles) {
            texts& known_names = result_.ensembles[id];
            if (names.first() != nullptr) known_names = std::move(names);
        }
        for (read_service& each : object.services)
            for (const auto& [bearer, ensemble] : each.bearers) {
                const service_id id = known(bearer, ensemble ? std::optional(ensemble->eid) : std::nullopt);
                service& made = all[id];
                made.id = id;
                made.announced = true;
                if (ensemble) made.ensembles.insert(*ensemble);
                // Another ensemble's service information usually says the same of it. The ensemble with the
                // highest identifier counts, so that the order in which they come does not matter; of one
                // ensemble the latest.
                const auto [by, is_first] = described_by.emplace(id, ensemble);
                if (!is_first && ensemble < by->second) continue;
                by->second = ensemble;
                static_cast<described&>(made) = each.what;
            }
    }
}

void guide_reader::gather_programmes(std::map<service_id, service>& all) {
    std::map<service_id, std::map<std::int64_t, programme>> schedules;
    for (read_object& object : objects_)
        for (read_programme& each : object.programmes) {
            const service_id id = known(each.service, each.eid);
            if (each.eid && id.ecc != 0) all[id].ensembles.insert({id.ecc, *each.eid});
            const auto [at, is_new] = schedules[id].emplace(each.what.start, programme());
            if (!is_new && !is_same(at->second, each.what)) ++result_.counts.same_start;
            at->second = std::move(each.what);
        }
    for (auto& [id, schedule] : schedules) {
        service& made = all[id];
        made.id = id;
        made.programmes.reserve(schedule.size());
        for (auto& [start, each] : schedule)
            made.programmes.push_back(std::move(each));
    }
}

void guide_reader::find_pictures(std::map<service_id, service>& all) {
    result_.counts.images = images_.size();
    std::set<std::string> used;
    const auto find = [&](described& in) {
        for (picture& each : in.pictures) {
            const auto image = images_.find(each.url);
            if (image == images_.end()) continue;
            used.insert(each.url);
            each.content = image->second;
            const auto header = read_image_header(*each.content);
            if (header && header->width != 0) {
                each.width = header->width;
                each.height = header->height;
            }
        }
    };
    for (auto& [id, each] : all) {
        find(each);
        for (programme& one : each.programmes)
            find(one);
    }
    result_.counts.unused_images = images_.size() - used.size();
}

programme_guide guide_reader::finish() {
    for (const read_object& object : objects_) {
        for (const auto& [id, names] : object.ensembles)
            ecc_of_ensembles_.emplace(id.eid, id.ecc);
        for (const read_service& each : object.services)
            for (const auto& [id, ensemble] : each.bearers)
                if (id.ecc != 0) ecc_of_services_.emplace(std::make_pair(id.sid, id.scids), id.ecc);
        for (const read_programme& each : object.programmes)
            if (each.service.ecc != 0)
                ecc_of_services_.emplace(std::make_pair(each.service.sid, each.service.scids),
                                         each.service.ecc);
    }
    std::map<service_id, service> all;
    gather_services(all);
    gather_programmes(all);
    find_pictures(all);
    for (auto& [id, each] : all)
        result_.services.push_back(std::move(each));
    return std::move(result_);
}

}  // namespace dabspi::guide
