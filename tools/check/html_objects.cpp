#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"

namespace dabspi::check::html {

namespace {

std::string kind_of(const sent_object& object) {
    if (object.type == 7) return kind_name(object.tree.kind);
    return object.type == 2 ? "image" : "ContentType " + std::to_string(object.type);
}

std::string lines_of(const sent_object& object) {
    std::string text = std::to_string(object.lines.front());
    if (object.lines.size() > 1)
        text += " <small>and " + number_of(object.lines.size() - 1, "repetition") + "</small>";
    return text;
}

}  // namespace

std::string objects_section(const check_report& of, const anchors& where) {
    std::string text =
        "<section id=\"objects\">\n<h2>Objects</h2>\n<div class=\"scroll\" tabindex=\"0\" role=\"group\" "
        "aria-label=\"Table of objects\"><table>\n<thead><tr><th>Content name<th>Kind<th>Bytes<th>Line"
        "<th>Findings</tr></thead>\n<tbody>\n";
    for (std::size_t i = 0; i < of.past.objects.size(); ++i) {
        const sent_object& object = of.past.objects[i];
        text += "<tr id=\"" + id('o', i) + "\"><td>" + from_broadcast(object.content_name) + "<td>" +
                escaped(kind_of(object)) + "<td class=\"number\">" + std::to_string(object.body->size()) +
                "<td>" + (of.input.folder ? "" : lines_of(object)) + "<td>" + where.links_at(of, id('o', i)) +
                "</tr>\n";
    }
    return text + "</tbody>\n</table></div>\n</section>\n";
}

}  // namespace dabspi::check::html
