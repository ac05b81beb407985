// Findings in objects as such: what the tree of each says, and what became of it when it came.

#include <algorithm>
#include <optional>
#include <string>

#include "src/parse/mot_content.h"
#include "tools/check/rules.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

constexpr std::size_t kMostShortName = 126;  // bytes; 127 with the one for the character set

// Nothing for what is known and harmless.
std::optional<finding_code> code_of(const spi_object::problem_at& at) {
    using problem = spi_object::problem_code;
    const bool read = at.where == nullptr || at.where->receiver == spi_object::reading::read;
    switch (at.what->code) {
        case problem::text_not_utf8: return finding_code::not_utf8;
        case problem::text_control_character: return finding_code::control_character;
        case problem::token_undefined: return finding_code::token_undefined;
        case problem::token_before_table: return finding_code::token_after_use;
        case problem::token_twice: return finding_code::token_twice;
        case problem::token_too_long: return finding_code::token_too_long;
        case problem::subtype_and_content_differ: return finding_code::subtype_differs;
        case problem::content_id_as_text:
            return read ? finding_code::text_as_id : finding_code::malformed_unread;
        case problem::content_id_without_ensemble:
            if (!read) return std::nullopt;
            return finding_code::no_ensemble_flag;
        case problem::time_misread: {
            const auto* time = std::get_if<spi_object::time_value>(&at.where->decoded);
            const bool west = time != nullptr && time->offset.value_or(0) < 0;
            return west ? finding_code::negative_offset : finding_code::misread;
        }
        case problem::length_in_last_bytes:
        case problem::tag_127:
        case problem::number_misread: return finding_code::misread;
        default: break;
    }
    if (spi_object::severity_of(at.what->code) == spi_object::severity::remark) return std::nullopt;
    return read ? finding_code::malformed : finding_code::malformed_unread;
}

void look_into(const history& in, std::size_t index, finding_list& found) {
    const sent_object& object = in.objects[index];
    for (const spi_object::problem_at& each : spi_object::problems_of(object.tree)) {
        const auto code = code_of(each);
        if (!code) continue;
        finding what{*code};
        what.line = object.lines.front();
        what.object = index;
        what.byte = each.what->offset;
        what.text = printable((each.path.empty() ? "" : each.path + ": ") + each.what->text);
        if (!each.what->receiver.empty()) what.text += "; a receiver " + printable(each.what->receiver);
        found.add_of_object(what, std::to_string(each.what->offset) + each.path);
    }
}

std::uint32_t first_difference(const bytes& a, const bytes& b) {
    const auto [at, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return static_cast<std::uint32_t>(at - a.begin());
}

// It is a key, not a text: what is odd in it does no harm to a receiver, and to nobody who has to type it any
// good.
void look_at_name(const sent_object& object, finding what, finding_list& found) {
    const std::string& name = object.content_name;
    if (name.size() > kMostShortName) {
        what.code = finding_code::content_name_long;
        what.text = std::to_string(name.size()) + " bytes";
        found.add(what);
    }
    if (!is_well_formed_utf8(name)) {
        what.code = finding_code::not_utf8;
        what.text = "the content name is not UTF-8";
        found.add(what, "content name");
    }
    const auto control = std::find_if(name.begin(), name.end(), [](char each) {
        const auto byte = static_cast<unsigned char>(each);
        return byte < 0x20 || byte == 0x7F;
    });
    if (control != name.end()) {
        what.code = finding_code::control_character;
        what.text = "the content name holds " + in_quotes(std::string(1, *control));
        found.add(what, "content name");
    }
}

void look_at_arrival(const history& in, const object_arrival& arrival, finding_list& found) {
    const sent_object& object = in.objects[arrival.object];
    finding what{finding_code::content_type, arrival.line, arrival.object};
    const std::string before = arrival.before < in.objects.size()
                                   ? place_words(in.places, in.objects[arrival.before].lines.front())
                                   : "";
    switch (arrival.outcome) {
        case object_arrival::read:
        case object_arrival::repeated:
        case object_arrival::image: return;
        case object_arrival::changed:
            what.code = finding_code::changed_same_size;
            what.byte = first_difference(*object.body, *in.objects[arrival.before].body);
            what.text = "differs from the object of " + before + " and has the same " +
                        std::to_string(object.body->size()) + " bytes";
            break;
        case object_arrival::blocked:
            what.code = finding_code::subtype_blocks;
            what.text = "ContentSubType " + std::to_string(object.subtype) +
                        ", not read because of the object of " + before + " with ContentSubType " +
                        std::to_string(in.objects[arrival.before].subtype) + ", the same name and " +
                        std::to_string(object.body->size()) + " bytes";
            break;
        case object_arrival::subtype:
            what.code = finding_code::subtype_not_read;
            what.text = "ContentSubType " + std::to_string(object.subtype) +
                        (object.subtype == spi::kMotGroupInformation ? ", group information" : "");
            break;
        case object_arrival::content_type: what.text = "ContentType " + std::to_string(object.type); break;
    }
    found.add(what);
}

}  // namespace

void look_at_objects(const history& in, finding_list& found) {
    for (std::size_t i = 0; i < in.objects.size(); ++i) {
        look_into(in, i, found);
        look_at_name(in.objects[i], {finding_code::content_name_long, in.objects[i].lines.front(), i}, found);
    }
    for (const object_arrival& each : in.arrivals)
        look_at_arrival(in, each, found);
}

}  // namespace dabspi::check
