#include "tools/encode/encode_report.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using row = std::vector<std::string>;

// Columns of equal width; the first two to the left, numbers to the right.
std::string aligned(const std::vector<row>& rows) {
    std::vector<std::size_t> widths(rows.front().size());
    for (const row& each : rows)
        for (std::size_t i = 0; i < each.size(); ++i)
            widths[i] = std::max(widths[i], each[i].size());
    std::string text;
    for (const row& each : rows) {
        std::string line;
        for (std::size_t i = 0; i < each.size(); ++i) {
            const std::string padding(widths[i] - each[i].size(), ' ');
            line += (i == 0 ? "" : "  ") + (i < 2 ? each[i] + padding : padding + each[i]);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

std::string code_text(std::uint8_t code) {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", unsigned{code});
    return text;
}

// "1.3 %", rounded down to a tenth.
std::string share(std::size_t saved, std::size_t of) {
    const std::size_t tenths = of == 0 ? 0 : saved * 1000 / of;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " %";
}

std::string total_line(const std::vector<made_file>& files) {
    std::size_t size = 0;
    std::size_t without_tokens = 0;
    for (const made_file& each : files) {
        size += each.object.body.size();
        without_tokens += each.object.size_without_tokens;
    }
    return std::to_string(files.size()) + " objects: " + std::to_string(size) + " bytes; tokens save " +
           std::to_string(without_tokens - size) + ", " + share(without_tokens - size, without_tokens) + "\n";
}

std::string token_lines(const made_file& of) {
    std::string text;
    for (const auto& [code, token] : of.object.tokens)
        text += "  " + code_text(code) + "  " + in_quotes(token) + "\n";
    return text.empty() ? text : printable(of.file) + ": tokens\n" + text;
}

}  // namespace

std::string file_table(const std::vector<made_file>& files, const table_options& options) {
    std::vector<row> rows = {{"FILE", "CONTENT NAME", "TYPE", "BYTES"}};
    if (options.tokens) rows[0].insert(rows[0].end(), {"TOKENS", "SAVED", ""});
    for (const made_file& each : files) {
        const broadcast_object& object = each.object;
        rows.push_back(
            {printable(each.file), printable(object.header.content_name),
             std::to_string(object.header.content_type) + "/" + std::to_string(object.header.content_subtype),
             std::to_string(object.body.size())});
        if (!options.tokens) continue;
        const std::size_t saved = object.size_without_tokens - object.body.size();
        rows.back().insert(rows.back().end(), {std::to_string(object.tokens.size()), std::to_string(saved),
                                               share(saved, object.size_without_tokens)});
    }
    std::string text = aligned(rows);
    if (options.tokens && files.size() > 1) text += total_line(files);
    if (options.tokens && options.verbose)
        for (const made_file& each : files)
            text += token_lines(each);
    return text;
}

std::string file_json(const made_file& file) {
    const broadcast_object& object = file.object;
    nlohmann::ordered_json json;
    json["source"] = file.source;
    json["file"] = file.file;
    json["content_type"] = object.header.content_type;
    json["content_subtype"] = object.header.content_subtype;
    json["content_name"] = object.header.content_name;
    json["body_size"] = object.body.size();
    json["body_size_without_tokens"] = object.size_without_tokens;
    json["tokens"] = nlohmann::ordered_json::object();
    for (const auto& [code, token] : object.tokens)
        json["tokens"][code_text(code)] = token;
    json["parameters"] = nlohmann::ordered_json::array();
    for (const mot_parameter& each : object.header.parameters())
        json["parameters"].push_back(
            nlohmann::ordered_json{{"id", code_text(each.id)}, {"name", each.name}, {"value", each.value}});
    return printable_json(json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

}  // namespace dabspi
