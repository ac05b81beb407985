#include "tools/encode/uncoded.h"

#include <algorithm>
#include <iterator>

namespace dabspi {

namespace {

constexpr std::string_view kElements[] = {"CA",
                                          "alias",
                                          "credits",
                                          "definition",
                                          "frequency",
                                          "name",
                                          "phoneme",
                                          "serviceGroup",
                                          "serviceGroupMember",
                                          "serviceGroups",
                                          "serviceProvider"};

struct uncoded_attribute {
    std::string_view element;
    std::string_view name;
};
constexpr uncoded_attribute kAttributes[] = {
    {"bearer", "bitrate"},
    {"bearer", "cost"},
    {"bearer", "mimeValue"},
    {"bearer", "offset"},
    {"bearer", "samplerate"},
    {"epg", "system"},
    {"link", "phoneme"},
    {"mediaDescription", "xml:lang"},
    {"serviceInformation", "system"},
};

}  // namespace

bool is_uncoded_element(std::string_view name) {
    return std::find(std::begin(kElements), std::end(kElements), name) != std::end(kElements);
}

bool is_uncoded_attribute(std::string_view element, std::string_view name) {
    return std::any_of(std::begin(kAttributes), std::end(kAttributes), [&](const uncoded_attribute& each) {
        return each.element == element && each.name == name;
    });
}

}  // namespace dabspi
