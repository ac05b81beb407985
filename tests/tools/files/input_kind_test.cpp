#include "tools/files/input_kind.h"

#include <gtest/gtest.h>

namespace {

using namespace dabspi;
using namespace std::string_literals;

std::string kind_text(const std::string& content) {
    return what_it_is(sniff(content));
}

// Frames of ETI(NI) with nothing in them: ERR and FSYNC, and bytes up to the length.
std::string eti_frame(std::size_t size, bool odd) {
    std::string frame = odd ? "\xFF\xF8\xC5\x49"s : "\xFF\x07\x3A\xB6"s;
    frame.resize(size, '\x55');
    return frame;
}

std::string streamed() {
    std::string all;
    for (const bool odd : {false, true, false})
        all += "\x2C\x01"s + eti_frame(300, odd);
    return all;
}

TEST(ContentKind, SaysWhatAnInputIsAndWhatTakesIt) {
    EXPECT_EQ(kind_text("\x02\x04\x21\x02\x81\x00"s),
              "it is a binary SPI object; \"dabspi inspect\" and check take it");
    EXPECT_EQ(kind_text("<?xml version='1.0'?>\n<epg/>"),
              "it is an XML document of programme information; \"dabspi encode\" takes it");
    EXPECT_EQ(kind_text("\xEF\xBB\xBF <serviceInformation/>"),
              "it is an XML document of service information; \"dabspi encode\" takes it");
    EXPECT_EQ(kind_text("{\"carousels\": {}}"),
              "it is a plan of a broadcast (JSON); \"dabspi record\" takes it");
    EXPECT_EQ(kind_text("# day\n\n{\"call\":\"ResendNowNext\"}\n"),
              "it is a call recording (JSON Lines); \"dabspi replay\", check and inspect take it");
    EXPECT_EQ(kind_text("{\"a\":1}"),
              "it is a JSON document, neither a call recording nor a plan, which no subcommand takes");
    EXPECT_EQ(kind_text("\x89PNG\r\n\x1A\n"), "it is a PNG image; \"dabspi inspect\" and check take it");
    EXPECT_EQ(kind_text("\x1F\x8B\x08"), "it is compressed with gzip; unpack it first");
    EXPECT_EQ(kind_text(""), "it is empty");
    EXPECT_EQ(kind_text("hello\n"), "it is a text, which no subcommand takes");
    EXPECT_EQ(sniff("\x00\xFF\x00"s).kind, input_kind::unknown);
}

TEST(ContentKind, KnowsRecordingsOfMultiplexes) {
    const std::string raw = eti_frame(6144, false) + eti_frame(6144, true) + eti_frame(6144, false);
    EXPECT_EQ(sniff(raw).what, "a recording of a multiplex (ETI, raw frames)");
    EXPECT_EQ(sniff(raw.substr(1000)).kind, input_kind::eti) << "begun within a frame";
    EXPECT_EQ(sniff(streamed()).what, "a recording of a multiplex (ETI, streamed frames)");
    EXPECT_EQ(sniff("\x03\0\0\0"s + streamed()).what, "a recording of a multiplex (ETI, framed frames)");
    EXPECT_EQ(sniff("AF\0\0\x01\0\0\x05\x90T"s).kind, input_kind::edi);
    EXPECT_EQ(sniff("\xD4\xC3\xB2\xA1\x02\0\x04\0"s).kind, input_kind::capture);
    EXPECT_EQ(sniff("\x0A\x0D\x0D\x0A"s).kind, input_kind::capture);
}

TEST(ContentKind, TakesNoSyncWordByChanceForAMultiplex) {
    EXPECT_EQ(sniff("\x02\x05\x21\x07\x3A\xB6\0"s).kind, input_kind::spi_object);
    EXPECT_EQ(sniff("AFTER the news\n").kind, input_kind::text);
}

TEST(ContentKind, NeedsNoMoreThanTheBeginning) {
    const std::string cut = std::string(kSniffedBytes - 1, 'a') + "\xC3";
    EXPECT_EQ(sniff(cut).kind, input_kind::text);
}

}  // namespace
