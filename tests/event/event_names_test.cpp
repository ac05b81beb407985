#include "src/event/event_names.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

using namespace spi;

struct named {
    unsigned value;
    std::string name;
};

TEST(QueueNames, EachIdentifierHasItsValueAndItsOwnName) {
    EXPECT_EQ(QID_NONE, 0);
    EXPECT_EQ(QID_ALL, 1);
    EXPECT_EQ(QID_SYS, 2);
    EXPECT_EQ(QID_SERV, 3);
    EXPECT_EQ(QID_PARSE, 4);
    EXPECT_EQ(QID_EVTDB, 5);
    EXPECT_EQ(QID_LOGODB, 6);
    EXPECT_EQ(QID_CBHDL, 7);
    EXPECT_EQ(QID_MAX, 8);
    const named all[] = {{0, "QID_NONE"},   {1, "QID_ALL"},   {2, "QID_SYS"},
                         {3, "QID_SERV"},   {4, "QID_PARSE"}, {5, "QID_EVTDB"},
                         {6, "QID_LOGODB"}, {7, "QID_CBHDL"}, {8, "QID_MAX"}};
    for (const named& queue : all)
        EXPECT_EQ(queue_name(static_cast<_qid>(queue.value)), queue.name);
}

TEST(QueueNames, BeyondTheBoundIsAQuestionMark) {
    for (unsigned value = 9; value < 256; ++value)
        EXPECT_STREQ(queue_name(static_cast<_qid>(value)), "?") << value;
}

TEST(EventNames, EachCodeHasItsValueAndItsOwnName) {
    const event_code codes[] = {EC_NONE,     EC_IMAGE,    EC_SPI,   EC_TEMPROOT, EC_LOGOROOT,
                                EC_DATETIME, EC_SERV,     EC_ENS,   EC_BODYIMG,  EC_BODYSPI,
                                EC_EVTINFO,  EC_SERVINFO, EC_EVTCB, EC_NOWNEXT,  EC_RESEND,
                                EC_LOGOCB,   EC_DBCLEAR,  EC_TERM,  EC_MAX};
    const std::string names[] = {"No event",    "EC_IMAGE",    "EC_SPI",   "EC_TEMPROOT", "EC_LOGOROOT",
                                 "EC_DATETIME", "EC_SERV",     "EC_ENS",   "EC_BODYIMG",  "EC_BODYSPI",
                                 "EC_EVTINFO",  "EC_SERVINFO", "EC_EVTCB", "EC_NOWNEXT",  "EC_RESEND",
                                 "EC_LOGOCB",   "EC_DBCLEAR",  "EC_TERM",  "EC_MAX"};
    for (unsigned value = 0; value <= 18; ++value) {
        EXPECT_EQ(static_cast<unsigned>(codes[value]), value);
        EXPECT_EQ(event_name(static_cast<event_code>(value)), names[value]);
    }
}

TEST(EventNames, BeyondTheBoundIsAQuestionMark) {
    for (unsigned value = 19; value < 256; ++value)
        EXPECT_STREQ(event_name(static_cast<event_code>(value)), "?") << value;
}

TEST(EventNames, IdentifiersAndCodesAreUnsignedBytes) {
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<_qid>, std::uint8_t>));
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<event_code>, std::uint8_t>));
    EXPECT_EQ(sizeof(_qid), 1U);
    EXPECT_EQ(sizeof(event_code), 1U);
}

}  // namespace
