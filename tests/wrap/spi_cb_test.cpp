// The listener adaptor: the core's records become the host's.
#include "spi_wrap/spi_cb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::_;
using ::testing::Invoke;
using ::testing::StrictMock;

struct host_listener : spi_wrap::ISpiListener {
    MOCK_METHOD(void, ProgramInfoReceived, (const spi_wrap::ServElemId&, spi_wrap::SpiProgramInfo&),
                (override));
    MOCK_METHOD(void, ProgramNowNextUpdated, (spi_wrap::SpiProgramInfo&, spi_wrap::SpiProgramInfo&),
                (override));
    MOCK_METHOD(void, StationLogoReceived, (spi_wrap::SpiLogoInfo&), (override));
};

class SpiCb : public ::testing::Test {
 protected:
    // What the host hears of a logo with this format and size code.
    spi_wrap::SpiLogoInfo reported(int format, int size_code) {
        spi::SpiLogoInfo logo;
        logo.service = {0xE1ABCDEF, 0xE2, 9};
        logo.image_format = static_cast<std::uint8_t>(format);
        logo.size_code = static_cast<std::uint8_t>(size_code);
        logo.name = "E1C2210_4.PNG";
        spi_wrap::SpiLogoInfo received;
        EXPECT_CALL(host, StationLogoReceived(_)).WillOnce(Invoke([&](auto& info) { received = info; }));
        adaptor.StationLogoReceived(logo);
        return received;
    }

    StrictMock<host_listener> host;
    spi_wrap::spi_cb adaptor{&host};
};

TEST_F(SpiCb, NowAndNextAreCopiedFieldByFieldInOneCall) {
    spi::SpiProgramInfo now{{2026, 3, 2, 10, 30}, 60, "News"};
    spi::SpiProgramInfo next{{65535, 255, 254, 253, 252}, 65535, std::string("T\0lk", 4)};
    EXPECT_CALL(host, ProgramNowNextUpdated(_, _)).WillOnce(Invoke([](auto& n, auto& following) {
        EXPECT_EQ(n.start.year, 2026);
        EXPECT_EQ(n.start.month, 3);
        EXPECT_EQ(n.start.day, 2);
        EXPECT_EQ(n.start.hour, 10);
        EXPECT_EQ(n.start.minute, 30);
        EXPECT_EQ(n.duration, 60);
        EXPECT_EQ(n.name, "News");
        EXPECT_EQ(following.start.year, 65535);
        EXPECT_EQ(following.start.month, 255);
        EXPECT_EQ(following.start.day, 254);
        EXPECT_EQ(following.start.hour, 253);
        EXPECT_EQ(following.start.minute, 252);
        EXPECT_EQ(following.duration, 65535);
        EXPECT_EQ(following.name, std::string("T\0lk", 4));
    }));
    adaptor.ProgramNowNextUpdated(now, next);
}

TEST_F(SpiCb, AnEmptyProgrammeStaysEmpty) {
    spi::SpiProgramInfo now;
    spi::SpiProgramInfo next;
    EXPECT_CALL(host, ProgramNowNextUpdated(_, _)).WillOnce(Invoke([](auto& n, auto& following) {
        EXPECT_EQ(n.name, "");
        EXPECT_EQ(n.start.year, 0);
        EXPECT_EQ(following.name, "");
        EXPECT_EQ(following.duration, 0);
    }));
    adaptor.ProgramNowNextUpdated(now, next);
}

TEST_F(SpiCb, ALogosFieldsAreCopied) {
    const spi_wrap::SpiLogoInfo received = reported(2, 4);
    EXPECT_EQ(received.service_id, 0xE1ABCDEFU);
    EXPECT_EQ(received.ecc, 0xE2);
    EXPECT_EQ(received.scids, 9);
    EXPECT_EQ(received.image_format, spi_wrap::IMAGE_PNG);
    EXPECT_EQ(received.size_code, 4);
    EXPECT_EQ(received.file_name, "E1C2210_4.PNG");
}

TEST_F(SpiCb, FormatsOneAndTwoStayAndOthersAreUnknown) {
    for (int format = 0; format < 256; ++format) {
        const int expected = format == 1 || format == 2 ? format : 0;
        EXPECT_EQ(reported(format, 3).image_format, expected) << format;
    }
}

TEST_F(SpiCb, TheSizeCodeIsWidenedWithoutASign) {
    EXPECT_EQ(reported(2, 0x7F).size_code, 127);
    EXPECT_EQ(reported(2, 0x80).size_code, 128);
    EXPECT_EQ(reported(2, 0xFF).size_code, 255);
}

TEST_F(SpiCb, ProgrammeInformationNeverReachesTheHost) {
    spi::SpiProgramInfo info{{2026, 3, 2, 10, 0}, 60, "News"};
    adaptor.ProgramInfoReceived({0xC221, 0xE1, 0}, info);  // the strict mock fails at any call
    EXPECT_EQ(info.name, "News");
}

TEST_F(SpiCb, TheCoresRecordsAreNotChangedByTheHost) {
    spi::SpiProgramInfo now{{2026, 3, 2, 10, 0}, 60, "News"};
    spi::SpiProgramInfo next;
    EXPECT_CALL(host, ProgramNowNextUpdated(_, _)).WillOnce(Invoke([](auto& n, auto&) { n.name = "mine"; }));
    adaptor.ProgramNowNextUpdated(now, next);
    EXPECT_EQ(now.name, "News");
}

TEST(SpiCbWithoutAHost, DropsEverything) {
    spi_wrap::spi_cb adaptor(nullptr);
    spi::SpiProgramInfo now;
    spi::SpiProgramInfo next;
    spi::SpiLogoInfo logo;
    adaptor.ProgramInfoReceived({}, now);
    adaptor.ProgramNowNextUpdated(now, next);
    adaptor.StationLogoReceived(logo);
    SUCCEED();  // nothing to call, and nothing was
}

TEST(SpiCbSharedWithTheCore, IsReachedThroughTheCoresInterface) {
    StrictMock<host_listener> host;
    const std::shared_ptr<spi::ISpiListener> core_side = std::make_shared<spi_wrap::spi_cb>(&host);
    spi::SpiLogoInfo logo;
    EXPECT_CALL(host, StationLogoReceived(_));
    core_side->StationLogoReceived(logo);
}

}  // namespace
