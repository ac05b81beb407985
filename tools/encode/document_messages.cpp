#include "tools/encode/document_messages.h"

#include <map>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

std::string counts_text(const char* heading, const std::map<std::string, std::size_t>& counts) {
    std::string text;
    for (const auto& [what, count] : counts)
        text += (text.empty() ? heading : ", ") + what + " (" + std::to_string(count) + ")";
    return text;
}

}  // namespace

std::vector<std::string> messages_of(const encoded_document& of, const std::string& name, bool verbose,
                                     const std::string& hint) {
    std::vector<std::string> messages;
    std::map<std::string, std::size_t> said;  // by what it is, to its line
    std::vector<std::size_t> times;
    std::vector<const source_note*> first;
    for (const source_note& each : of.warnings) {
        const auto [entry, fresh] =
            said.emplace(verbose ? note_text(name, each) : each.where + '\n' + each.remedy, first.size());
        if (fresh) {
            first.push_back(&each);
            times.push_back(0);
        }
        ++times[entry->second];
    }
    for (std::size_t i = 0; i < first.size(); ++i)
        messages.push_back(note_text(name, *first[i]) +
                           (times[i] > 1 ? " (" + std::to_string(times[i]) + " of this kind)" : ""));
    for (const source_note& each : of.remarks)
        messages.push_back(note_text(name, each));
    if (of.more_warnings != 0)
        messages.push_back(printable(name) + ": and " + std::to_string(of.more_warnings) + " more warnings");
    for (const counted_notes* each : {&of.converted, &of.omitted}) {
        const bool converted = each == &of.converted;
        if (verbose)
            for (const counted_note& one : each->notes())
                messages.push_back(note_text(name, one.note) + (converted ? "" : "; left out"));
        const std::string counts = counts_text(converted ? "converted: " : "left out: ", each->counts());
        if (!counts.empty()) messages.push_back(printable(name) + ": " + counts + (verbose ? "" : hint));
    }
    return messages;
}

}  // namespace dabspi
