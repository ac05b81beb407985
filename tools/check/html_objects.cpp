#include <algorithm>
#include <filesystem>
#include <map>

#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"
#include "tools/check/overview.h"
#include "tools/text/utf8.h"

namespace dabspi::check::html {

namespace {

std::string kind_of(const sent_object& object) {
    if (object.type == 7) return kind_name(object.tree.kind);
    return object.type == 2 ? "image" : "ContentType " + std::to_string(object.type);
}

constexpr std::size_t kSomeObjects = 100;  // in one table

// Where it is not as the content name says.
std::string file_of(const check_report& of, const sent_object& object) {
    const std::string file =
        std::filesystem::path(of.input.location(object.lines.front())).filename().string();
    const std::size_t slash = object.content_name.rfind('/');
    const bool same =
        file == printable(object.content_name.substr(slash == std::string::npos ? 0 : slash + 1));
    return same ? std::string() : escaped(file);
}

std::string lines_of(const check_report& of, const sent_object& object) {
    std::string text = of.input.places.empty() ? std::to_string(object.lines.front())
                                               : place_words(of.input.places, object.lines.front());
    if (object.lines.size() > 1)
        text += " <small>and " + number_of(object.lines.size() - 1, "repetition") + "</small>";
    return text;
}

std::string table(const check_report& of, const anchors& where,
                  const std::map<std::size_t, object_version>& versions, std::size_t from, std::size_t to) {
    std::string text =
        "<div class=\"scroll\" tabindex=\"0\" role=\"group\" aria-label=\"Table of objects\"><table "
        "class=\"objects\">\n<thead><tr><th>Content name<th>Kind<th>Bytes<th>Version<th>Created<th>" +
        std::string(of.input.folder           ? "File"
                    : of.input.places.empty() ? "Line"
                                              : "Frame") +
        "<th>Findings</tr></thead>\n<tbody>\n";
    for (std::size_t i = from; i < to; ++i) {
        const sent_object& object = of.past.objects[i];
        const auto version = versions.find(i);
        const object_version none{i, {}, {}};
        const object_version& coded = version == versions.end() ? none : version->second;
        text += "<tr id=\"" + id('o', i) + "\"><td>" + from_broadcast(object.content_name) + "<td>" +
                escaped(kind_of(object)) + "<td class=\"number\">" + std::to_string(object.body->size()) +
                "<td class=\"number\">" + escaped(coded.version) + "<td class=\"number\">" +
                escaped(coded.created) + "<td>" +
                (of.input.folder ? file_of(of, object) : lines_of(of, object)) + "<td>" +
                where.links_at(of, id('o', i)) + "</tr>\n";
    }
    return text + "</tbody>\n</table></div>\n";
}

}  // namespace

std::string objects_section(const check_report& of, const anchors& where) {
    std::map<std::size_t, object_version> versions;
    for (object_version& each : overview_of(of).objects)
        versions[each.object] = std::move(each);
    std::string text = "<section id=\"objects\">\n<h2>Objects</h2>\n";
    const std::size_t count = of.past.objects.size();
    for (std::size_t from = 0; from < count; from += kSomeObjects) {
        const std::size_t to = std::min(count, from + kSomeObjects);
        const std::string rows = table(of, where, versions, from, to);
        text += from == 0 ? rows
                          : "<details class=\"more\">\n<summary>Objects " + std::to_string(from + 1) +
                                " to " + std::to_string(to) + " of " + std::to_string(count) +
                                "</summary>\n" + rows + "</details>\n";
    }
    return text + "</section>\n";
}

}  // namespace dabspi::check::html
