#include "tools/encode/without_coding.h"

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

struct attribute_without_coding {
    std::string_view element;
    std::string_view name;
};
constexpr attribute_without_coding kAttributes[] = {
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

bool is_element_without_coding(std::string_view name) {
    return std::find(std::begin(kElements), std::end(kElements), name) != std::end(kElements);
}

bool is_attribute_without_coding(std::string_view element, std::string_view name) {
    return std::any_of(
        std::begin(kAttributes), std::end(kAttributes),
        [&](const attribute_without_coding& each) { return each.element == element && each.name == name; });
}

}  // namespace dabspi
