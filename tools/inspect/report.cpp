#include "tools/inspect/report.h"

#include "tools/text/utf8.h"

namespace dabspi {

object_report inspect_object(const inspected_body& body, std::optional<std::uint16_t> ensemble) {
    object_report report;
    report.body = &body;
    spi_object::decode_options options;
    options.content_subtype = body.content_subtype;
    report.tree = spi_object::decode(*body.body, options);
    if (!ensemble) ensemble = body.ensemble;
    if (ensemble) {
        report.ensemble_from = ensemble_source::named;
    } else if ((ensemble = spi_object::home_ensemble(report.tree))) {
        report.ensemble_from = ensemble_source::own;
    }
    const std::uint16_t subtype =
        body.content_subtype ? *body.content_subtype : spi_object::natural_subtype(report.tree);
    report.taken = spi_object::take(*body.body, subtype, ensemble.value_or(0));
    return report;
}

std::string summary(const object_report& of) {
    const spi_object::object& tree = of.tree;
    const auto counted = [](std::size_t count, const char* thing) {
        return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
    };
    std::string text = std::string(kind_name(tree.kind)) + ", " + counted(tree.size, "byte") + ", ";
    text += tree.well_formed() ? "well formed" : "malformed in " + counted(tree.malformed, "place");
    if (tree.remarks != 0) text += ", " + counted(tree.remarks, "remark");
    return text;
}

std::string heading(const inspected_body& of) {
    std::string text = printable(of.location());
    if (of.lines.size() > 1)
        text += " (and " + std::to_string(of.lines.size() - 1) + " more, to line " +
                std::to_string(of.lines.back()) + ")";
    if (!of.content_name.empty()) text += ": " + printable(of.content_name);
    return text;
}

}  // namespace dabspi
