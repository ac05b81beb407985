// Which service is listened to.
#include "tools/air/calls/service_choice.h"

#include <gtest/gtest.h>

namespace {

using namespace dabspi::air;

described_service service(std::uint32_t sid, const std::string& label, transport mode, bool long_id = false) {
    described_service made;
    made.sid = sid;
    made.label = label;
    made.long_id = long_id;
    described_component component;
    component.organisation.mode = mode;
    component.organisation.primary = true;
    made.components.push_back(component);
    return made;
}

ensemble described_stations() {
    ensemble made;
    made.eid = 0xC185;
    made.ecc = 0xE1;
    made.services = {service(0xC221, "Radio 1", transport::audio),
                     service(0xC222, "Radio 2", transport::audio),
                     service(0xE1C00098, "Guide", transport::packet, true)};
    return made;
}

std::string chosen(const std::string& wanted) {
    const auto id = choose_service(described_stations(), wanted);
    if (!id) return "none";
    return std::to_string(id->ecc) + "." + service_id_text(id->sid, id->sid > 0xFFFF) + "." +
           std::to_string(id->scids);
}

TEST(ServiceChoice, TakesTheFirstWithAudioWithoutAWish) {
    EXPECT_EQ(chosen(""), "225.C221.0");
}

TEST(ServiceChoice, TakesIdentifiersAndLabels) {
    EXPECT_EQ(chosen("c222"), "225.C222.0");
    EXPECT_EQ(chosen("0xC222"), "225.C222.0");
    EXPECT_EQ(chosen("e1.c222.1"), "225.C222.1");
    EXPECT_EQ(chosen("E1C00098"), "225.E1C00098.0");
    EXPECT_EQ(chosen("radio 2"), "225.C222.0");
}

TEST(ServiceChoice, FindsNothingThatIsNotThere) {
    EXPECT_EQ(chosen("C223"), "none");
    EXPECT_EQ(chosen("e2.c222.0"), "none");
    EXPECT_EQ(chosen("Radio"), "none");
    EXPECT_EQ(services_text(described_stations()), "C221 Radio 1, C222 Radio 2, E1C00098 Guide");
}

TEST(ServiceChoice, HandsOnTheDataServiceWith32Bits) {
    spi_component component;
    component.sid = 0xE1C00098;
    component.long_id = true;
    EXPECT_EQ(data_service_of(component, 0xE2).sid, 0xE1C00098U);
    EXPECT_EQ(data_service_of(component, 0xE2).ecc, 0xE1);
    component.sid = 0xC221;
    component.long_id = false;
    component.scids = 1;
    EXPECT_EQ(data_service_of(component, 0xE2).sid, 0xE200C221U);
    EXPECT_EQ(data_service_of(component, 0xE2).ecc, 0xE2);
    EXPECT_EQ(data_service_of(component, 0xE2).scids, 1);
}

}  // namespace
