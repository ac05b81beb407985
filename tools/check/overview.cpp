#include "tools/check/overview.h"
#include "src/parse/mot_content.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "tools/check/local_day.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

// What programme elements say beyond what a receiver reads, by object and offset.
struct programme_extras {
    bool described = false;
    bool genre = false;
};
using extras_by_place = std::map<std::pair<std::size_t, std::uint32_t>, programme_extras>;

extras_by_place extras_of(const history& in) {
    namespace tag = spi_object::tag;
    extras_by_place all;
    for (std::size_t i = 0; i < in.objects.size(); ++i) {
        spi_object::visit(in.objects[i].tree, [&](const spi_object::node& each, const auto&) {
            if (each.kind != spi_object::node_kind::element || each.tag != tag::programme) return;
            programme_extras extras;
            for (const spi_object::node& child : each.children) {
                extras.genre = extras.genre || child.tag == tag::genre;
                extras.described = extras.described || (child.tag == tag::media_description &&
                                                        (child.child(tag::short_description) != nullptr ||
                                                         child.child(tag::long_description) != nullptr));
            }
            all[{i, each.offset}] = extras;
        });
    }
    return all;
}

class overview_maker {
 public:
    explicit overview_maker(const check_report& of) : in_(of.past), extras_(extras_of(of.past)) {}

    overview make() {
        for (const spi::ServElemId& each : in_.listened)
            if (each.sid != 0) of_service(each);
        for (const announced_service& each : in_.services) {
            if (each.service.sid == 0) continue;
            of_service(each.service).announced = true;
            result_.any_announced = true;
        }
        add_logos();
        add_days();
        for (auto& [id, service] : services_)
            result_.services.push_back(std::move(service));
        add_objects();
        return std::move(result_);
    }

 private:
    service_overview& of_service(const spi::ServElemId& id) {
        service_overview& of = services_[id];
        of.service = id;
        const auto name = in_.names.find(id);
        if (name != in_.names.end()) of.name = name->second;
        return of;
    }

    void add_logos() {
        std::map<std::pair<spi::ServElemId, std::string>, std::size_t> sent;  // bytes
        std::map<std::size_t, std::size_t> written;                           // announcement to bytes
        for (const image_arrival& each : in_.images) {
            const sent_object& object = in_.objects[each.object];
            sent[{object.data_service, object.content_name}] = object.body->size();
            for (const image_arrival::use& use : each.uses)
                if (use.refusal == spi::logo_refusal::none) written[use.announcement] = object.body->size();
        }
        std::set<std::tuple<spi::ServElemId, std::size_t, std::string>> counted;
        for (std::size_t i = 0; i < in_.announcements.size(); ++i) {
            const announcement& each = in_.announcements[i];
            const spi::ServElemId& service = in_.services[each.service].service;
            if (service.sid == 0) continue;
            const std::size_t size = std::min<std::size_t>(each.size_code, kLogoSizes - 1);
            logo_cell& cell = of_service(service).logos.at(size);
            const auto here = written.find(i);
            if (here != written.end()) {
                cell.written = true;
                cell.bytes = here->second;
            }
            if (!counted.insert({service, size, each.content_name}).second) continue;
            ++cell.announced;
            const auto image = sent.find({each.data_service, each.content_name});
            if (image == sent.end()) continue;
            ++cell.sent;
            if (!cell.written) cell.bytes = image->second;
        }
    }

    void add_days() {
        std::map<spi::ServElemId, std::map<long, std::size_t>> sent;  // by start
        for (std::size_t i = 0; i < in_.programmes.size(); ++i) {
            const programme_arrival& each = in_.programmes[i];
            const bool counts = each.filed() || (!each.dropped && each.decision == spi::filing::other_day);
            if (!counts || each.unreachable) continue;
            const auto [at, is_new] = sent[each.service].emplace(each.start, i);
            if (each.filed()) at->second = i;
        }
        for (const auto& [id, programmes] : sent) {
            result_.any_programmes = true;
            service_schedule all;
            for (const auto& [start, index] : programmes)
                all.programmes.push_back(index);
            of_service(id).days = days_with_extras(all);
        }
    }

    std::vector<sent_day> days_with_extras(const service_schedule& schedule) const {
        std::map<long, sent_day> days;
        for (const day_summary& each : days_of(in_, schedule))
            days[each.day].sum = each;
        for (const std::size_t index : schedule.programmes) {
            const programme_arrival& each = in_.programmes[index];
            sent_day& day = days[each.start / kDayMinutes];
            const auto extras = extras_.find({each.object, each.offset});
            day.kept = day.kept || each.filed();
            if (extras == extras_.end()) continue;
            day.described += extras->second.described ? 1 : 0;
            day.with_genre += extras->second.genre ? 1 : 0;
        }
        for (const schedule_boundary& each : boundaries_of(in_, schedule)) {
            const long end = in_.programmes[each.first].end();
            const auto day = days.find(in_.programmes[each.first].start / kDayMinutes);
            if (end < in_.programmes[each.second].start && day != days.end()) ++day->second.gaps;
        }
        std::vector<sent_day> all;
        for (auto& [day, of] : days)
            all.push_back(of);
        return all;
    }

    void add_objects() {
        for (std::size_t i = 0; i < in_.objects.size(); ++i) {
            if (in_.objects[i].type != spi::kMotSpiObject) continue;
            object_version object{i, {}, {}};
            for (const spi_object::node& top : in_.objects[i].tree.tops) {
                note_version(top, object);
                for (const spi_object::node& child : top.children)
                    if (child.tag == spi_object::tag::schedule) note_version(child, object);
            }
            result_.objects.push_back(std::move(object));
        }
    }

    static void note_version(const spi_object::node& of, object_version& to) {
        for (const spi_object::node& each : of.children) {
            if (each.attribute == nullptr) continue;
            const std::string name = each.attribute->name;
            if (name == "version" && to.version.empty()) to.version = spi_object::value_text(each);
            if (name == "creationTime" && to.created.empty()) to.created = spi_object::value_text(each);
        }
    }

    const history& in_;
    const extras_by_place extras_;
    std::map<spi::ServElemId, service_overview> services_;
    overview result_;
};

template <class Condition>
std::vector<std::size_t> those(const std::vector<service_overview>& services, Condition holds) {
    std::vector<std::size_t> all;
    for (std::size_t i = 0; i < services.size(); ++i)
        if (holds(services[i])) all.push_back(i);
    return all;
}

}  // namespace

bool service_overview::has_logo() const {
    return std::any_of(logos.begin(), logos.end(), [](const logo_cell& each) { return each.announced != 0; });
}

std::vector<std::size_t> overview::logo_sizes() const {
    std::vector<std::size_t> sizes;
    for (std::size_t i = 1; i <= kLogoSizes; ++i) {
        const std::size_t size = i % kLogoSizes;
        const bool used = std::any_of(services.begin(), services.end(), [size](const service_overview& each) {
            return each.logos.at(size).announced != 0;
        });
        if (used) sizes.push_back(size);
    }
    return sizes;
}

std::vector<std::size_t> overview::without_schedule() const {
    if (!any_programmes) return {};
    return those(services, [](const service_overview& each) { return each.announced && each.days.empty(); });
}

std::vector<std::size_t> overview::without_logo() const {
    return those(services, [](const service_overview& each) { return each.announced && !each.has_logo(); });
}

std::vector<std::size_t> overview::not_announced() const {
    if (!any_announced) return {};
    return those(services,
                 [](const service_overview& each) { return !each.announced && !each.days.empty(); });
}

overview overview_of(const check_report& of) {
    return overview_maker(of).make();
}

std::string service_text(const service_overview& of) {
    return service_text(of.service) + (of.name.empty() ? "" : " " + printable(of.name));
}

std::string cell_text(const logo_cell& of) {
    if (of.announced == 0) return {};
    if (of.sent == 0) return "not sent";
    return std::string(of.written ? "written, " : "sent, ") + number_of(of.bytes, "byte") +
           (of.announced > 1 ? ", " + std::to_string(of.sent) + " of " + std::to_string(of.announced) : "");
}

}  // namespace dabspi::check
