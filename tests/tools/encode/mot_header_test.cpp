// Content names and MOT parameters.

#include "tests/tools/encode/encoding.h"
#include "tools/spi/decode.h"

namespace {

dabspi::mot_header header_of_document(const std::string& document) {
    return dabspi::header_of(dabspi::spi_object::decode(object_of(document)));
}

std::string schedule(const std::string& scope, const std::string& rest = {}) {
    return pi_document("<schedule><scope " + scope + "</scope>" + rest + "</schedule>");
}

std::string name_of(const std::string& document) {
    return header_of_document(document).content_name;
}

std::string parameters_of(const std::string& document) {
    std::string text;
    for (const dabspi::mot_parameter& each : header_of_document(document).parameters())
        text += std::to_string(each.id) + " " + each.name + "=" + each.value + "\n";
    return text;
}

TEST(MotHeader, ProgrammeInformationHasDayAndService) {
    const std::string document = schedule(
        "startTime='2026-03-02T00:00:00+01:00' stopTime='2026-03-03T00:00:00+01:00'>"
        "<serviceScope id='dab:ce1.c185.c221.0'/>");
    EXPECT_EQ(name_of(document), "w20260302dC221.EHB");
    EXPECT_EQ(header_of_document(document).content_type, 7);
    EXPECT_EQ(header_of_document(document).content_subtype, 1);
    EXPECT_EQ(parameters_of(document),
              "12 ContentName=w20260302dC221.EHB\n37 ScopeStart=2026-03-01T23:00:00Z\n"
              "38 ScopeEnd=2026-03-02T23:00:00Z\n39 ScopeID=dab:ce1.c185.c221.0\n");
}

TEST(MotHeader, SecondaryComponentsAndLongIdentifiersShow) {
    const char* const day = "startTime='2026-03-02T00:00:00Z' stopTime='2026-03-03T00:00:00Z'>";
    EXPECT_EQ(name_of(schedule(day + std::string("<serviceScope id='dab:ce1.c185.c221.1'/>"))),
              "w20260302dC221c1.EHB");
    EXPECT_EQ(name_of(schedule(day + std::string("<serviceScope id='dab:0e1.c185.e100aaaa.0'/>"))),
              "w20260302dE100AAAA.EHB");
}

TEST(MotHeader, TheDayIsThatInTheMiddleOfTheScope) {
    EXPECT_EQ(
        name_of(schedule("startTime='2026-03-01T22:00:00+01:00' stopTime='2026-03-03T01:00:00+01:00'>")),
        "w20260302.EHB");
    EXPECT_EQ(name_of(schedule("startTime='2026-03-01T22:00:00Z' stopTime='2026-03-08T22:00:00Z'>")),
              "w20260301.EHB")
        << "a week goes by its first day";
    EXPECT_EQ(name_of(schedule("startTime='2026-03-01T23:30:00-01:00'>")), "w20260301.EHB");
}

TEST(MotHeader, WithoutScopeTheFirstProgrammeTells) {
    EXPECT_EQ(name_of(programme_document("<location><time time='2026-03-02T06:00:00+01:00'/>"
                                         "<bearer id='dab:ce1.c185.c222.0'/></location>")),
              "w20260302dC222.EHB");
    EXPECT_EQ(name_of(programme_document("<longName>x</longName>")), "epg.EHB");
}

TEST(MotHeader, ServiceInformationHasItsCreationAndTheEnsemble) {
    const std::string document = "<serviceInformation creationTime='2026-03-02T23:30:00+01:00' xmlns='" +
                                 kNamespace + "'><ensemble id='e1.ce15'/></serviceInformation>";
    EXPECT_EQ(name_of(document), "w20260302dCE15.EHS");
    EXPECT_EQ(header_of_document(document).content_subtype, 0);
    EXPECT_EQ(parameters_of(document), "12 ContentName=w20260302dCE15.EHS\n39 ScopeID=e1.ce15\n");
    EXPECT_EQ(name_of(si_document("<ensemble id='e1.ce15'/>")), "dCE15.EHS");
}

TEST(MotHeader, GroupInformationHasItsCreation) {
    const std::string document = pi_document("<programmeGroups creationTime='2026-03-02T10:00:00Z'/>");
    EXPECT_EQ(name_of(document), "w20260302.EHG");
    EXPECT_EQ(header_of_document(document).content_subtype, 2);
    EXPECT_EQ(name_of(pi_document("<programmeGroups/>")), "groups.EHG");
}

}  // namespace
