// Findings in single programmes: those that are dropped, and those that are kept and not shown as they were
// meant.

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/check/input.h"
#include "tools/check/local_day.h"
#include "tools/check/rules.h"
#include "tools/spi/receiver_values.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

std::string hexadecimal(std::uint16_t ensemble) {
    std::string digits;
    for (int shift = 12; shift >= 0; shift -= 4)
        digits += "0123456789ABCDEF"[ensemble >> shift & 0xF];
    return "0x" + digits;
}

std::string shown(const programme_arrival& of) {
    return (of.name.empty() ? "a programme without a title" : in_quotes(of.name)) +
           (of.time.mjd == 0 ? "" : ", " + minute_text(of.start));
}

// The identifiers of one object that a receiver looks at, by the ensembles that they name.
struct named_ensembles {
    explicit named_ensembles(const sent_object& object) {
        const spi_object::byte_view body(*object.body);
        spi_object::visit(object.tree, [&](const spi_object::node& node,
                                           const std::vector<const spi_object::node*>& above) {
            const bool is_id =
                node.attribute != nullptr
                    ? node.attribute->type == spi_object::value_type::content_id
                    : node.element != nullptr && node.tag == spi_object::tag::default_content_id;
            if (!is_id || node.receiver != spi_object::reading::read) return;
            const std::uint16_t ensemble =
                spi_object::receiver_ensemble(body.part(node.content(), node.length));
            const auto programme =
                std::find_if(above.begin(), above.end(), [](const spi_object::node* outer) {
                    return outer->kind == spi_object::node_kind::element &&
                           outer->tag == spi_object::tag::programme;
                });
            if (programme != above.end()) {
                of_programme[(*programme)->offset].push_back(ensemble);
            } else {
                if (!first_offset) {
                    first_offset = node.offset;
                    first = ensemble;
                }
                of_object.emplace(ensemble, node.offset);  // its first place
            }
        });
    }

    // Of one programme: its own bearers, and what stands before it in the object.
    bool any(std::uint32_t programme) const {
        return (first_offset && *first_offset < programme) || of_programme.count(programme) != 0;
    }
    bool names(std::uint32_t programme, std::uint16_t ensemble) const {
        const auto before = of_object.find(ensemble);
        if (before != of_object.end() && before->second < programme) return true;
        const auto own = of_programme.find(programme);
        return own != of_programme.end() && std::count(own->second.begin(), own->second.end(), ensemble) != 0;
    }
    // Where there is any.
    std::uint16_t example(std::uint32_t programme) const {
        return first_offset && *first_offset < programme ? first : of_programme.at(programme).front();
    }

    std::map<std::uint16_t, std::uint32_t> of_object;
    std::optional<std::uint32_t> first_offset;
    std::uint16_t first = 0;
    std::map<std::uint32_t, std::vector<std::uint16_t>> of_programme;
};

void note_without_service(const named_ensembles& named, const programme_arrival& of, finding what,
                          finding_list& found) {
    if (!named.any(of.offset)) {
        what.code = finding_code::no_scope_no_bearer;
        what.text = shown(of);
    } else if (named.names(of.offset, of.ensemble)) {
        what.code = finding_code::no_service;
        what.text = shown(of) + ": its SId or ECC reads as zero";
    } else if (of.ensemble == 0) {
        what.code = finding_code::before_ensemble;
        what.text = shown(of) + " names ensemble " + hexadecimal(named.example(of.offset));
    } else {
        what.code = finding_code::other_ensemble;
        what.text = shown(of) + " names ensemble " + hexadecimal(named.example(of.offset)) +
                    ", and the receiver is on " + hexadecimal(of.ensemble);
    }
    found.add_of_object(what, std::to_string(of.offset));
}

void note_taken_minute(const history& in, const programme_arrival& of, finding what, finding_list& found) {
    const programme_arrival& holder = in.programmes[of.holder];
    const bool same = holder.name == of.name && holder.duration / 60 == of.duration / 60;
    const bool repeated = same && (holder.line != of.line || holder.offset == of.offset);
    if (repeated) return;
    what.code = finding_code::same_start;
    what.text = shown(of) + " for " + minutes_text(of.duration / 60) + " comes after " +
                in_quotes(holder.name) + " for " + minutes_text(holder.duration / 60) + ", line " +
                std::to_string(holder.line);
    found.add(what, std::to_string(of.offset));
}

void note_filed(const programme_arrival& of, finding what, finding_list& found) {
    const std::string key = std::to_string(of.offset);
    if (of.unreachable) {
        what.code = finding_code::start_out_of_day;
        what.text = in_quotes(of.name) + " starts at " + minute_text(of.start) +
                    ", before the day that its time is coded with; it is reported as " +
                    of.time.local_time(0).time();
        found.add(what, key);
    }
    if (of.name.empty()) {
        what.code = finding_code::no_title;
        what.text = minute_text(of.start) + ", " + minutes_text(of.duration / 60);
        found.add(what, key);
    }
    if (of.duration < 60) {
        what.code = finding_code::no_duration;
        what.text = shown(of) + ": " + std::to_string(of.duration) + " s";
        found.add(what, key);
    }
}

}  // namespace

void look_at_programmes(const history& in, finding_list& found) {
    std::map<std::size_t, named_ensembles> named;  // by object, looked at once each
    for (const programme_arrival& each : in.programmes) {
        finding what{finding_code::other_day, each.line, each.object, each.offset};
        const std::string key = std::to_string(each.offset);
        if (each.outcome != programme_arrival::without_service) {
            what.service = each.service;
            what.minute = each.start;
        }
        switch (each.outcome) {
            case programme_arrival::filed: note_filed(each, what, found); break;
            case programme_arrival::minute_taken: note_taken_minute(in, each, what, found); break;
            case programme_arrival::without_service:
                note_without_service(named.try_emplace(each.object, in.objects[each.object]).first->second,
                                     each, what, found);
                break;
            case programme_arrival::before_date:
                what.code = finding_code::before_date;
                what.text = shown(each) + " of " + service_text(each.service);
                found.add_of_object(what, key);
                break;
            case programme_arrival::without_start:
                what.code = finding_code::no_start;
                what.text = shown(each) + " of " + service_text(each.service);
                what.minute.reset();
                found.add_of_object(what, key);
                break;
            case programme_arrival::other_day:
                what.code = finding_code::other_day;
                what.text = shown(each) + " of " + service_text(each.service);
                found.add_of_object(what, key);
                break;
        }
    }
}

}  // namespace dabspi::check
