#include "tools/spi/decode.h"

#include <algorithm>
#include <utility>

#include "src/parse/spi_token_table.h"
#include "tools/spi/node_values.h"
#include "tools/spi/texts.h"
#include "tools/spi/value_problems.h"

namespace dabspi::spi_object {

namespace {

constexpr std::size_t kMostNodes = 250000;
constexpr std::size_t kMostProblems = 1000;
constexpr unsigned kDeepest = 24;
constexpr std::uint8_t kTwoByteLength = 0xFE;
constexpr std::uint8_t kThreeByteLength = 0xFF;
constexpr std::uint8_t kNoTag = 127;  // as the receiver reads it

std::string at_byte(std::size_t offset) {
    return "byte " + std::to_string(offset);
}

class decoder {
 public:
    decoder(byte_view body, const decode_options& options)
        : body_(body), options_(options), texts_(16 * std::min<std::size_t>(body.size(), 1U << 26) + 65536) {}

    object run() {
        out_.size = static_cast<std::uint32_t>(body_.size());
        if (body_.empty()) {
            add_to_object(problem_code::empty_object, 0, "the object is empty", "reads nothing");
            return std::move(out_);
        }
        choose_kind();
        find_definitions();
        node object_node;  // stands for the object while its top elements are read
        object_node.length = out_.size;
        read_children(object_node, nullptr, 0, true);
        out_.tops = std::move(object_node.children);
        check_tops();
        return std::move(out_);
    }

 private:
    // What is known of an element while its children are read.
    struct state {
        bool element_seen = false;
        bool has_name = false;  // of a programme or service, as the receiver takes it
        bool has_mime = false;
        bool has_url = false;
        std::size_t texts = 0;
        bool attribute_seen[128] = {};
    };

    void count(problem_code code) {
        ++(severity_of(code) == severity::malformed ? out_.malformed : out_.remarks);
    }
    // The object's own problems are few, and always kept.
    void add_to_object(problem_code code, std::size_t offset, std::string text, std::string receiver = {}) {
        count(code);
        out_.problems.push_back(
            {code, static_cast<std::uint32_t>(offset), std::move(text), std::move(receiver)});
    }
    void add_to(node& to, problem_code code, std::size_t offset, std::string text,
                std::string receiver = {}) {
        count(code);
        if (kept_ == kMostProblems) {
            ++out_.omitted;
            return;
        }
        ++kept_;
        if (to.receiver != reading::read && (!receiver.empty() || severity_of(code) == severity::malformed))
            receiver = "passes over it";
        to.problems.push_back(
            {code, static_cast<std::uint32_t>(offset), std::move(text), std::move(receiver)});
    }

    // The sub-type is what the receiver goes by; without one the top element tells.
    void choose_kind() {
        if (body_[0] == tag::service_information) {
            out_.kind = object_kind::service_information;
        } else if (body_[0] == tag::epg) {
            out_.kind = object_kind::programme_information;  // or group information, see check_tops
        }
        if (options_.content_subtype) {
            subtype_ = *options_.content_subtype;
        } else {
            subtype_ = out_.kind == object_kind::service_information ? 0 : 1;
        }
    }

    bool top_is_read(std::uint8_t top) const {
        return receiver_reads(0, top) && subtype_ == (top == tag::service_information ? 0 : 1);
    }

    // Reads tag and length of what stands at `at`, inside `parent`.
    node read_header(std::uint32_t at, const node& parent, bool parent_is_read) {
        const std::uint32_t limit = parent.end();
        const bool last = limit == body_.size();  // nothing stands behind the parent
        node read;
        read.offset = at;
        read.tag = body_[at];
        read.header = 1;
        read.receiver = parent_is_read ? reading::read : reading::passed_over;  // refined by the caller
        const auto cut = [&](problem_code code, std::uint32_t present, std::uint32_t stated, std::string text,
                             const std::string& receiver_at_end) {
            read.header = static_cast<std::uint8_t>(1 + present);
            read.stated = stated;
            add_to(read, code, at, std::move(text),
                   last ? receiver_at_end
                        : "takes bytes behind the " + container_name(parent) + " for the length");
        };
        if (at + 1 >= limit) {
            cut(problem_code::length_missing, 0, 255, "the length is missing",
                "takes it as 255 bytes that are not there");
            return read;
        }
        const std::uint8_t first = body_[at + 1];
        const std::uint32_t more = first < kTwoByteLength ? 0 : first == kTwoByteLength ? 2 : 3;
        if (limit - at - 2 < more) {
            cut(problem_code::length_cut, limit - at - 1, more == 2 ? 65535 : 0xFFFFFF,
                "the length has " + std::to_string(more) + " bytes, and " + std::to_string(limit - at - 2) +
                    " of them are there",
                more == 2 ? "takes it as 65,535 bytes that are not there"
                          : "takes this as an element without content, and moves on by one byte");
            return read;
        }
        read.header = static_cast<std::uint8_t>(2 + more);
        read.stated = more == 0 ? first : body_.number(at + 2, more);
        const std::uint32_t present = limit - read.content();
        read.length = std::min(read.stated, present);
        if (first == kThreeByteLength && body_.size() - at - 2 < 4 && parent_is_read)
            add_to(
                read, problem_code::length_in_last_bytes, at, "a length of three bytes ends the object",
                "cannot read it there, takes this as an element without content, and moves on by one byte");
        if (read.stated > present) note_overlong(read, parent);
        if (read.tag == kNoTag && parent_is_read)
            add_to(read, problem_code::tag_127, at, "the tag 0x7F",
                   "takes it for no tag, moves on by one byte, and takes the length for a tag");
        return read;
    }

    void note_overlong(node& read, const node& parent) {
        const std::uint64_t claimed = std::uint64_t{read.content()} + read.stated;
        const std::string text = "the length says " + std::to_string(read.stated) + " bytes, and " +
                                 std::to_string(read.length) + " are left in the " + container_name(parent);
        if (claimed > body_.size()) {
            add_to(read, problem_code::length_beyond_object, read.offset, text,
                   "takes what is there, and the object as ended");
        } else {
            add_to(read, problem_code::length_beyond_parent, read.offset, text,
                   "reads on to " + at_byte(static_cast<std::size_t>(claimed) - 1) +
                       " as its content, then goes back and reads again from " + at_byte(parent.end()));
        }
    }

    static std::string container_name(const node& parent) {
        return parent.header == 0 ? "object" : shown_name(parent);
    }

    // All that stands inside an element (or, with a null entry and header 0, inside the object).
    void read_children(node& parent, const element_entry* entry, unsigned depth, bool parent_is_read) {
        state seen;
        for (std::uint32_t at = parent.content(); at < parent.end();) {
            if (nodes_ == kMostNodes) {
                if (!nodes_reported_)
                    add_to_object(
                        problem_code::too_many_elements, at,
                        "the object has more than 250,000 elements and attributes; the rest is left out");
                nodes_reported_ = true;
                return;
            }
            ++nodes_;
            node child = read_header(at, parent, parent_is_read);
            at = std::max(child.end(), at + 1);
            if (child.tag >= tag::first_attribute) {
                read_attribute(child, parent, entry, parent_is_read, seen);
            } else {
                read_element(child, parent, entry, depth, parent_is_read, seen);
            }
            parent.children.push_back(std::move(child));
        }
    }

    std::uint8_t tag_of(const element_entry* entry) const {
        return entry == nullptr ? std::uint8_t{0} : entry->tag;
    }

    void read_attribute(node& child, const node& parent, const element_entry* entry, bool parent_is_read,
                        state& seen) {
        child.kind = node_kind::attribute;
        child.attribute = entry == nullptr ? nullptr : find_attribute(*entry, child.tag);
        const bool read = parent_is_read && receiver_reads(tag_of(entry), child.tag) && entry != nullptr;
        child.receiver = read ? reading::read : reading::passed_over;
        refer_to_reading(child);
        bool& twice = seen.attribute_seen[child.tag & 0x7F];
        if (twice && child.attribute != nullptr)
            add_to(child, problem_code::attribute_twice, child.offset,
                   "the attribute " + shown_name(child) + " stands here a second time",
                   first_one_counts(entry, child) ? "takes the first one that is not empty"
                                                  : "takes the last one");
        twice = true;
        if (seen.element_seen)
            add_to(child, problem_code::attribute_after_element, child.offset,
                   "the attribute " + shown_name(child) + " stands behind an element", "does not mind");
        if (child.attribute == nullptr) {
            add_to(child, problem_code::unknown_tag, child.offset, "an attribute that is not known here");
            return;
        }
        decode_value(child, child.attribute->type, parent, tag_of(entry));
        if (read && first_one_counts(entry, child)) {
            bool& has = child.tag == spi_attribute_mime ? seen.has_mime : seen.has_url;
            if (has) child.receiver = reading::not_needed;
            if (const auto* text = std::get_if<text_value>(&child.decoded)) has = has || !text->text.empty();
        }
    }

    static constexpr std::uint8_t spi_attribute_mime = 0x80;
    static constexpr std::uint8_t spi_attribute_url = 0x82;
    static bool first_one_counts(const element_entry* entry, const node& attribute) {
        return entry != nullptr && entry->tag == tag::multimedia &&
               (attribute.tag == spi_attribute_mime || attribute.tag == spi_attribute_url);
    }

    // What was noted while reading the header speaks of a receiver that reads this; repair it if it does not.
    static void refer_to_reading(node& child) {
        if (child.receiver == reading::read) return;
        for (problem& each : child.problems)
            if (!each.receiver.empty() && each.code != problem_code::tag_127 &&
                each.code != problem_code::length_in_last_bytes)
                each.receiver = "passes over it";
    }

    void read_element(node& child, const node& parent, const element_entry* entry, unsigned depth,
                      bool parent_is_read, state& seen) {
        seen.element_seen = true;
        child.element = find_element(child.tag);
        const bool is_top = parent.header == 0;
        bool read = parent_is_read && (is_top ? top_is_read(child.tag)
                                              : entry != nullptr && receiver_reads(entry->tag, child.tag));
        child.receiver = read ? reading::read : reading::passed_over;
        if (read && is_needless_name(child, entry, seen)) {
            child.receiver = reading::not_needed;
            read = false;
        }
        refer_to_reading(child);
        if (child.element == nullptr) {
            add_to(child, problem_code::unknown_tag, child.offset, "an element that is not known", "");
            return;
        }
        // Top elements that are none are told once, for the whole object.
        if (!is_top && !may_stand_in(*child.element, tag_of(entry)))
            add_to(child, problem_code::misplaced_element, child.offset,
                   "the element " + shown_name(child) + " does not belong into the " + container_name(parent),
                   read ? "reads it all the same" : "passes over it");
        if (child.tag == tag::text && ++seen.texts == 2)
            add_to(child, problem_code::text_twice, child.offset,
                   "a second text in the " + container_name(parent), "takes the last one");
        if (depth == kDeepest) {
            add_to(child, problem_code::nested_too_deep, child.offset,
                   "elements stand inside each other more than 24 deep; what is in this one is left out");
            return;
        }
        read_content(child, parent, depth, read);
        if (read) note_name(child, entry, seen);
    }

    // A programme takes its long name, else its medium name; a service its medium name, else its short name.
    static bool is_needless_name(const node& child, const element_entry* entry, const state& seen) {
        if (entry == nullptr || !seen.has_name) return false;
        return (entry->tag == tag::programme && child.tag == tag::medium_name) ||
               (entry->tag == tag::service && child.tag == tag::short_name);
    }

    static void note_name(const node& child, const element_entry* entry, state& seen) {
        if (entry == nullptr || child.element->content != content_kind::text ||
            (entry->tag != tag::programme && entry->tag != tag::service))
            return;
        for (const node& each : child.children)
            if (each.tag == tag::text && each.kind == node_kind::element)
                if (const auto* text = std::get_if<text_value>(&each.decoded))
                    seen.has_name = !text->text.empty();
    }

    void read_content(node& child, const node& parent, unsigned depth, bool read) {
        const byte_view content = body_.part(child.content(), child.length);
        switch (child.element->content) {
            case content_kind::value: {
                // The text of a place is no text.
                const bool is_position =
                    parent.element != nullptr && parent.element->content == content_kind::positions;
                decode_value(child, is_position ? value_type::positions : child.element->bare, parent,
                             parent.tag);
                break;
            }
            case content_kind::token_table: read_tokens(child); break;
            case content_kind::positions:
                // Without a text element around them, too: six bytes a place, which a text element never has.
                if (!content.empty() && content.size() % 6 == 0) {
                    decode_value(child, value_type::positions, parent, parent.tag);
                    break;
                }
                read_children(child, child.element, depth + 1, read);
                break;
            case content_kind::children:
            case content_kind::text: read_children(child, child.element, depth + 1, read); break;
        }
    }

    void read_tokens(node& table) {
        bool seen[256] = {};
        const bool read = table.receiver == reading::read;
        for (std::uint32_t at = table.content(); at < table.end() && nodes_ < kMostNodes;) {
            ++nodes_;
            node token = read_header(at, table, read);
            token.kind = node_kind::token;
            at = std::max(token.end(), at + 1);
            if (!spi::SpiTokenTable::is_code(token.tag))
                add_to(token, problem_code::token_not_a_token, token.offset,
                       "the byte " + token_name(token.tag) + " is none of the 16 tokens",
                       "keeps it, and never asks for it");
            if (token.stated == 0)
                add_to(token, problem_code::token_empty, token.offset,
                       "the token " + token_name(token.tag) + " has no text", "takes it as not defined");
            if (token.stated > 255)
                add_to(token, problem_code::token_too_long, token.offset,
                       "the token " + token_name(token.tag) + " has more than 255 bytes",
                       "takes it as not defined");
            if (seen[token.tag] && token.stated != 0)
                add_to(token, problem_code::token_twice, token.offset,
                       "the token " + token_name(token.tag) + " is defined a second time",
                       "keeps the first text");
            if (token.stated != 0 && token.stated <= 255) seen[token.tag] = true;
            token.decoded = text_value{std::string(body_.part(token.content(), token.length).text()), false};
            table.children.push_back(std::move(token));
        }
        texts_.take_table(body_.part(table.content(), table.length));
    }

    // All token codes that tables directly inside top elements define.
    void find_definitions() {
        const auto each_child = [this](std::uint32_t from, std::uint32_t limit, const auto& call) {
            for (std::uint32_t at = from; at < limit;) {
                const std::uint8_t first = body_[at + 1];
                const std::uint32_t more = first < kTwoByteLength ? 0 : first == kTwoByteLength ? 2 : 3;
                if (limit - at < 2 + more) return;
                const std::uint32_t content = at + 2 + more;
                const std::uint32_t stated = more == 0 ? first : body_.number(at + 2, more);
                const std::uint32_t end = content + std::min(stated, limit - content);
                call(body_[at], content, end);
                at = end;
            }
        };
        each_child(0, out_.size, [&](std::uint8_t, std::uint32_t top, std::uint32_t top_end) {
            each_child(top, top_end, [&](std::uint8_t child, std::uint32_t table, std::uint32_t table_end) {
                if (child != tag::token_table) return;
                each_child(table, table_end, [&](std::uint8_t code, std::uint32_t text, std::uint32_t end) {
                    if (end > text && end - text <= 255) texts_.will_define(code);
                });
            });
        });
    }

    void decode_value(node& of, value_type type, const node& parent, std::uint8_t parent_tag) {
        const byte_view content = body_.part(of.content(), of.length);
        std::vector<problem> found;
        if (type == value_type::string || type == value_type::token_string) {
            of.decoded = texts_.read(content, type == value_type::token_string, found);
        } else {
            value_context context;
            context.attribute = of.attribute;
            context.parent = parent_tag;
            context.behind_in_parent = parent.end() - std::min(of.content(), parent.end());
            context.behind_in_object = out_.size - of.content();
            context.body = body_.part(of.content());
            context.read = of.receiver == reading::read;
            of.decoded = spi_object::decode_value(content, type, context, found);
        }
        for (problem& each : found) {
            each.offset += of.content();
            // How the receiver reads a time matters only where it does.
            const bool about_receiver =
                each.code == problem_code::time_misread || each.code == problem_code::number_misread;
            if (about_receiver && of.receiver != reading::read) continue;
            add_to(of, each.code, each.offset, std::move(each.text), std::move(each.receiver));
        }
    }

    void check_tops() {
        const node& first = out_.tops.front();
        if (out_.kind == object_kind::programme_information && first.child(tag::schedule) == nullptr &&
            first.child(tag::programme_groups) != nullptr)
            out_.kind = object_kind::group_information;
        if (out_.kind == object_kind::unknown)
            add_to_object(problem_code::not_an_object, 0,
                          "the object begins with " + shown_name(first) +
                              "; SPI objects begin with epg or serviceInformation",
                          "passes over it");
        if (out_.tops.size() > 1)
            add_to_object(problem_code::several_tops, out_.tops[1].offset,
                          "bytes follow the top element, which ends before " + at_byte(out_.tops[1].offset),
                          "looks for further top elements there");
        if (!options_.content_subtype) return;
        if (subtype_ > 1) {
            add_to_object(
                problem_code::subtype_not_read, 0,
                "ContentSubType " + std::to_string(subtype_) + (subtype_ == 2 ? ", group information" : ""),
                "reads sub-types 0 and 1 only");
        } else if (out_.kind != object_kind::unknown &&
                   (subtype_ == 0) != (out_.kind == object_kind::service_information)) {
            add_to_object(problem_code::subtype_and_content_differ, 0,
                          std::string("ContentSubType ") + std::to_string(subtype_) + " is " +
                              (subtype_ == 0 ? "service" : "programme") + " information, and the object is " +
                              kind_name(out_.kind),
                          "goes by the sub-type, and finds nothing");
        }
    }

    byte_view body_;
    const decode_options options_;
    unsigned subtype_ = 0;
    text_reader texts_;
    object out_;
    std::size_t nodes_ = 0;
    std::size_t kept_ = 0;  // problems of nodes
    bool nodes_reported_ = false;
};

}  // namespace

object decode(byte_view body, const decode_options& options) {
    return decoder(body, options).run();
}

}  // namespace dabspi::spi_object
