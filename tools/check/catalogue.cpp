#include "tools/check/catalogue.h"

#include <algorithm>

#include "tools/check/catalogue_entries.h"

namespace dabspi::check {

const std::vector<catalogue_entry>& catalogue() {
    static const std::vector<catalogue_entry> all = [] {
        std::vector<catalogue_entry> joined;
        for (const auto* part : {&object_entries(), &programme_entries(), &schedule_entries(),
                                 &logo_entries(), &carousel_entries()})
            joined.insert(joined.end(), part->begin(), part->end());
        return joined;
    }();
    return all;
}

const catalogue_entry& entry_of(finding_code code) {
    return catalogue().at(static_cast<std::size_t>(code));
}

const catalogue_entry* find_entry(std::string_view name) {
    const auto found = std::find_if(catalogue().begin(), catalogue().end(),
                                    [&](const catalogue_entry& each) { return each.name == name; });
    return found == catalogue().end() ? nullptr : &*found;
}

const char* severity_name(severity of) {
    switch (of) {
        case severity::note: return "note";
        case severity::warning: return "warning";
        case severity::error: return "error";
    }
    return "";
}

std::optional<severity> severity_named(std::string_view name) {
    for (const severity each : {severity::note, severity::warning, severity::error})
        if (name == severity_name(each)) return each;
    return std::nullopt;
}

}  // namespace dabspi::check
