#include "tools/files/content_kind.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "testkit/multiplex/eti_writer.h"
#include "testkit/spi_builder_objects.h"
#include "testkit/temporary_directory.h"
#include "tools/air/container/open_frames.h"

namespace {

using dabspi::content;
using dabspi::content_kind;
using bytes = std::vector<std::uint8_t>;

content of(const bytes& all, const std::string& path = "file") {
    return dabspi::content_of(all, true, path);
}

content of(const std::string& text) {
    return of(bytes(text.begin(), text.end()));
}

TEST(ContentKind, NamesWhatIsNoMultiplex) {
    bytes stream(188 * 20, 0xA5);
    for (std::size_t i = 0; i < stream.size(); i += 188)
        stream[i] = 0x47;
    EXPECT_EQ(of(stream).words, "an MPEG transport stream");
    stream.erase(stream.begin(), stream.begin() + 60);
    EXPECT_EQ(of(stream).words, "an MPEG transport stream");
    EXPECT_EQ(of("<?xml version=\"1.0\"?><epg/>").kind, content_kind::document);
    EXPECT_EQ(of("{\"call\":\"ResendNowNext\"}\n").kind, content_kind::recording);
    EXPECT_EQ(of("# a recording\n").kind, content_kind::recording);
    EXPECT_EQ(of("# A page about something\n\nwith text below it\n").words, "text");
    EXPECT_EQ(of("{\n  \"ensemble\": {}\n}\n").kind, content_kind::plan);
    EXPECT_EQ(of("ID3\x03 and so on").words, "an audio file (MP3)");
    EXPECT_EQ(of("RIFF\x24\x08\x01\x01WAVEfmt and so on").words, "an audio file (WAV)");
    EXPECT_EQ(of("\x89PNG\r\n\x1a\n").kind, content_kind::image);
    EXPECT_EQ(of("\x1F\x8B\x08").words, "a gzip file");
    EXPECT_EQ(of("Some words that a person has written.\n").words, "text");
    EXPECT_EQ(of("").kind, content_kind::empty);
}

TEST(ContentKind, KnowsObjectsByTheirLength) {
    const bytes object = spi_builder::si_object(0xE1, 0xC185, {}, {});
    EXPECT_EQ(of(object).kind, content_kind::spi_object);
    bytes longer = object;
    longer.push_back(0);
    EXPECT_NE(of(longer).kind, content_kind::spi_object);
}

TEST(ContentKind, KnowsTheSamplesOfATuner) {
    std::mt19937 random(1);
    std::normal_distribution<double> sample(0, 0.2);
    bytes eight;
    bytes sixteen;
    for (int i = 0; i < 20000; ++i) {
        eight.push_back(static_cast<std::uint8_t>(std::lround(127.5 + 100 * sample(random))));
        const auto value = static_cast<unsigned>(std::lround(4000 * sample(random)));
        sixteen.push_back(static_cast<std::uint8_t>(value));
        sixteen.push_back(static_cast<std::uint8_t>(value >> 8));
    }
    EXPECT_EQ(of(eight).words, "IQ samples (8 bits)");
    EXPECT_EQ(of(sixteen).words, "IQ samples (16 bits)");
    EXPECT_EQ(of(bytes(5000, 0x80), "band.IQ").words, "IQ samples (by its name)");
}

TEST(ContentKind, TheRefusalSaysWhatWouldBeTaken) {
    const temporary_directory directory;
    const auto opened = dabspi::air::open_frames(directory.path().string());
    EXPECT_EQ(opened.frames, nullptr);
    EXPECT_NE(opened.error.find("it looks like a folder; taken are ETI(NI)"), std::string::npos)
        << opened.error;
    const auto missing = dabspi::air::open_frames(directory / "none");
    EXPECT_NE(missing.error.find("cannot be opened: No such file"), std::string::npos) << missing.error;
}

}  // namespace
