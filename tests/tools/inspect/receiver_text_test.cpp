// What is said of a receiver.
#include "tools/inspect/receiver_text.h"

#include "tests/tools/inspect/reports.h"

namespace {

using namespace dabspi;

std::string said_of(const owned_report& of) {
    return receiver_text(of.report, colouring(false));
}

TEST(ReceiverText, NamesProgrammes) {
    EXPECT_EQ(said_of(owned_report(small_programme_information())),
              "  a receiver on ensemble 10C1 (the object's own) takes from it:\n"
              "      24  E0.1A01.0  2026-03-10 10:00    90 min  News at Ten\n");
}

TEST(ReceiverText, NamesProgrammesThatAreDropped) {
    EXPECT_EQ(said_of(owned_report(gathered_body(small_programme_information()), std::uint16_t{0xC185})),
              "  a receiver on ensemble C185 takes from it:\n"
              "      24  dropped    2026-03-10 10:00    90 min  News at Ten  (no scope and no bearer names a "
              "service on "
              "ensemble C185)\n");
}

TEST(ReceiverText, NamesServicesAndLogos) {
    EXPECT_EQ(said_of(owned_report(small_service_information())),
              "  a receiver takes from it:\n"
              "       9  E0.1A01.0  Orbitale\n"
              "      42    logo  PNG 128x128  a.png\n");
}

TEST(ReceiverText, LogosInFrontOfTheBearerAreNotTheServices) {
    const sb::bytes media = sb::elem(0x13, {sb::elem(0x2B, {sb::attr(0x82, sb::str("a.jpg"))})});
    const sb::bytes bearer = sb::elem(0x29, {sb::attr(0x80, sb::content_id(0xE0, 0x10C1, 0x1A01))});
    EXPECT_EQ(said_of(owned_report(
                  sb::elem(0x03, {sb::elem(0x26, {sb::elem(0x28, {media, bearer}), sb::elem(0x28, {})})}))),
              "  a receiver takes from it:\n"
              "       4  E0.1A01.0  \n"
              "       8  for 0.0.0    logo  JPEG of unknown size  a.jpg\n"
              "      27  no bearer  \n");
}

TEST(ReceiverText, SaysWhenThereIsNothing) {
    EXPECT_EQ(said_of(owned_report(sb::elem(0x02, {}))), "  a receiver takes nothing from it\n");
    EXPECT_EQ(
        said_of(owned_report(sb::elem(0x02, {sb::elem(0x21, {sb::elem(0x1C, {})})}))),
        "  a receiver takes from it:\n"
        "       4  dropped    1859-255-19 00:00     0 min    (no scope and no bearer names a service)\n");
    inspected_body body = gathered_body(small_programme_information());
    body.content_type = std::uint8_t{7};
    body.content_subtype = std::uint16_t{2};
    EXPECT_EQ(said_of(owned_report(body)), "  a receiver does not read this object\n");
}

}  // namespace
