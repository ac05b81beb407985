// The layout of what the host sees: records, their order and types, and the slots of the interfaces. A host
// is compiled against it, so that a change here breaks hosts.
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "spi_wrap/spi_cb.h"
#include "spi_wrap/spi_server.h"
#include "spi_wrap/sys_data_information.h"
#include "spi_wrap/to_spi_server.h"
#include "src/server/spi_server.h"
#include "tests/event/virtual_slot.h"

namespace {

template <class Field, class Expected>
constexpr bool is = std::is_same_v<Field, Expected>;

// The records with a string are no standard-layout types for every library; g++ and clang give their offsets
// all the same.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

template <class Id>
constexpr bool serv_elem_id_is_laid_out() {
    return is<decltype(Id::sid), std::uint32_t> && is<decltype(Id::ecc), std::uint8_t> &&
           is<decltype(Id::scids), std::uint8_t> && offsetof(Id, sid) == 0 && offsetof(Id, ecc) == 4 &&
           offsetof(Id, scids) == 5 && sizeof(Id) == 8;
}
static_assert(serv_elem_id_is_laid_out<spi_wrap::ServElemId>());
static_assert(serv_elem_id_is_laid_out<spi::ServElemId>());

template <class Time>
constexpr bool mot_date_time_is_laid_out() {
    return is<decltype(Time::year), std::uint16_t> && is<decltype(Time::month), std::uint8_t> &&
           is<decltype(Time::day), std::uint8_t> && is<decltype(Time::hour), std::uint8_t> &&
           is<decltype(Time::minute), std::uint8_t> && offsetof(Time, year) == 0 &&
           offsetof(Time, month) == 2 && offsetof(Time, day) == 3 && offsetof(Time, hour) == 4 &&
           offsetof(Time, minute) == 5 && sizeof(Time) == 6;
}
static_assert(mot_date_time_is_laid_out<spi_wrap::MotDateTime>());
static_assert(mot_date_time_is_laid_out<spi::MotDateTime>());

static_assert(is<decltype(spi_wrap::MotBody::size), std::uint32_t>);
static_assert(std::is_pointer_v<decltype(spi_wrap::MotBody::data)>);
static_assert(sizeof(*spi_wrap::MotBody::data) == 1);
static_assert(offsetof(spi_wrap::MotBody, size) < offsetof(spi_wrap::MotBody, data));
static_assert(sizeof(spi_wrap::MotBody) == 2 * sizeof(void*));

static_assert(is<decltype(spi::MotBody::size), std::uint32_t>);
static_assert(offsetof(spi::MotBody, size) < offsetof(spi::MotBody, data));
static_assert(sizeof(spi::MotBody) == 2 * sizeof(void*));
static_assert(!std::is_copy_constructible_v<spi::MotBody> && !std::is_copy_assignable_v<spi::MotBody>);
static_assert(std::is_nothrow_move_constructible_v<spi::MotBody>);

static_assert(is<decltype(spi_wrap::MotBodyMetadata::reserved), std::uint16_t>);
static_assert(is<decltype(spi_wrap::MotBodyMetadata::content_type), std::uint8_t>);
static_assert(is<decltype(spi_wrap::MotBodyMetadata::content_subtype), std::uint16_t>);
static_assert(is<decltype(spi_wrap::MotBodyMetadata::content_name), std::string>);
static_assert(offsetof(spi_wrap::MotBodyMetadata, reserved) == 0);
static_assert(offsetof(spi_wrap::MotBodyMetadata, content_type) == 2);
static_assert(offsetof(spi_wrap::MotBodyMetadata, content_subtype) == 4);
static_assert(offsetof(spi_wrap::MotBodyMetadata, content_name) == 8);
static_assert(sizeof(spi_wrap::MotBodyMetadata) == 8 + sizeof(std::string));

static_assert(is<decltype(spi::MotBodyMetadata::user_application_type), std::uint16_t>);
static_assert(is<decltype(spi::MotBodyMetadata::content_type), std::uint8_t>);
static_assert(is<decltype(spi::MotBodyMetadata::content_subtype), std::uint16_t>);
static_assert(is<decltype(spi::MotBodyMetadata::content_name), std::string>);
static_assert(offsetof(spi::MotBodyMetadata, user_application_type) == 0);
static_assert(offsetof(spi::MotBodyMetadata, content_type) == 2);
static_assert(offsetof(spi::MotBodyMetadata, content_subtype) == 4);
static_assert(offsetof(spi::MotBodyMetadata, content_name) == 8);
static_assert(sizeof(spi::MotBodyMetadata) == 8 + sizeof(std::string));

template <class Info, class Time>
constexpr bool programme_info_is_laid_out() {
    return is<decltype(Info::start), Time> && is<decltype(Info::duration), std::uint16_t> &&
           is<decltype(Info::name), std::string> && offsetof(Info, start) == 0 &&
           offsetof(Info, duration) == 6 && offsetof(Info, name) == 8 &&
           sizeof(Info) == 8 + sizeof(std::string);
}
static_assert(programme_info_is_laid_out<spi_wrap::SpiProgramInfo, spi_wrap::MotDateTime>());
static_assert(programme_info_is_laid_out<spi::SpiProgramInfo, spi::MotDateTime>());

static_assert(is<decltype(spi_wrap::SpiLogoInfo::service_id), std::uint32_t>);
static_assert(is<decltype(spi_wrap::SpiLogoInfo::ecc), std::uint8_t>);
static_assert(is<decltype(spi_wrap::SpiLogoInfo::scids), std::uint8_t>);
static_assert(std::is_enum_v<decltype(spi_wrap::SpiLogoInfo::image_format)>);
static_assert(sizeof(spi_wrap::SpiLogoInfo::image_format) == 4);
static_assert(is<decltype(spi_wrap::SpiLogoInfo::size_code), std::int32_t>);
static_assert(is<decltype(spi_wrap::SpiLogoInfo::file_name), std::string>);
static_assert(offsetof(spi_wrap::SpiLogoInfo, service_id) == 0);
static_assert(offsetof(spi_wrap::SpiLogoInfo, ecc) == 4);
static_assert(offsetof(spi_wrap::SpiLogoInfo, scids) == 5);
static_assert(offsetof(spi_wrap::SpiLogoInfo, image_format) == 8);
static_assert(offsetof(spi_wrap::SpiLogoInfo, size_code) == 12);
static_assert(offsetof(spi_wrap::SpiLogoInfo, file_name) == 16);
static_assert(sizeof(spi_wrap::SpiLogoInfo) == 16 + sizeof(std::string));
static_assert(spi_wrap::IMAGE_UNKNOWN == 0 && spi_wrap::IMAGE_JPEG == 1 && spi_wrap::IMAGE_PNG == 2);

static_assert(is<decltype(spi::SpiLogoInfo::service), spi::ServElemId>);
static_assert(is<decltype(spi::SpiLogoInfo::image_format), std::uint8_t>);
static_assert(is<decltype(spi::SpiLogoInfo::size_code), std::uint8_t>);
static_assert(offsetof(spi::SpiLogoInfo, image_format) == 8 && offsetof(spi::SpiLogoInfo, size_code) == 9);
static_assert(offsetof(spi::SpiLogoInfo, name) == (sizeof(void*) == 8 ? 16 : 12));
static_assert(sizeof(spi::SpiLogoInfo) == offsetof(spi::SpiLogoInfo, name) + sizeof(std::string));

static_assert(std::is_polymorphic_v<spi_wrap::toSpiServer>);
static_assert(std::has_virtual_destructor_v<spi_wrap::toSpiServer>);
static_assert(sizeof(spi_wrap::toSpiServer) == 2 * sizeof(void*));  // the table and one pointer
static_assert(!std::is_copy_constructible_v<spi_wrap::toSpiServer>);
static_assert(std::has_virtual_destructor_v<spi_wrap::spi_server>);
static_assert(sizeof(spi_wrap::spi_server) == 2 * sizeof(void*) + sizeof(std::shared_ptr<spi_wrap::spi_cb>));
static_assert(std::has_virtual_destructor_v<spi_wrap::ISpiListener>);
static_assert(std::is_polymorphic_v<spi::ISpiListener>);
static_assert(!std::has_virtual_destructor_v<spi::ISpiListener>);
static_assert(std::is_convertible_v<spi_wrap::spi_cb*, spi::ISpiListener*>);

static_assert(
    std::is_base_of_v<ZebSharedMemory<spi_wrap::SysDataInfoStruct, 1>, spi_wrap::SysDataInformation>);
static_assert(!std::is_convertible_v<spi_wrap::SysDataInformation*,
                                     ZebSharedMemory<spi_wrap::SysDataInfoStruct, 1>*>);  // privately
static_assert(std::is_convertible_v<ZebSharedMemory<spi_wrap::SysDataInfoStruct, 1>*, ZebSharedSyncObject*>);
static_assert(std::has_virtual_destructor_v<ZebSharedSyncObject>);
static_assert(sizeof(spi_wrap::SysDataInfoStruct) == 5136);
static_assert(offsetof(spi_wrap::SysDataInfoStruct, storage_path) == 0);

using server = spi_wrap::toSpiServer;
static_assert(
    is<decltype(&server::SetCurrentService), int (server::*)(spi_wrap::ServElemId&, unsigned short)>);
static_assert(is<decltype(&server::SetDateTime), int (server::*)(spi_wrap::MotDateTime&)>);
static_assert(is<decltype(&server::FeedMotBody),
                 int (server::*)(spi_wrap::MotBodyMetadata&, spi_wrap::MotBody&, spi_wrap::ServElemId&)>);
using listener = spi_wrap::ISpiListener;
static_assert(is<decltype(&listener::ProgramNowNextUpdated),
                 void (listener::*)(spi_wrap::SpiProgramInfo&, spi_wrap::SpiProgramInfo&)>);
static_assert(is<decltype(&listener::StationLogoReceived), void (listener::*)(spi_wrap::SpiLogoInfo&)>);

// A destructor takes the first two slots.
TEST(WrapperInterface, OperationsOfTheServerKeepTheirSlots) {
    EXPECT_EQ(virtual_slot(&server::SetCurrentService), 2);
    EXPECT_EQ(virtual_slot(&server::SetDateTime), 3);
    EXPECT_EQ(virtual_slot(&server::FeedMotBody), 4);
}

TEST(WrapperInterface, OperationsOfTheHostsListenerKeepTheirSlots) {
    EXPECT_EQ(virtual_slot(&listener::ProgramInfoReceived), 2);
    EXPECT_EQ(virtual_slot(&listener::ProgramNowNextUpdated), 3);
    EXPECT_EQ(virtual_slot(&listener::StationLogoReceived), 4);
}

TEST(CoreBody, AMovedFromBodyIsEmpty) {
    spi::MotBody from(3, std::make_unique<unsigned char[]>(3));
    const spi::MotBody to(std::move(from));
    EXPECT_EQ(to.size, 3U);
    EXPECT_EQ(from.size, 0U);
    EXPECT_EQ(from.data, nullptr);
}

TEST(CoreBody, ABodyWithoutAnArrayIsEmptyWhateverItsSize) {
    EXPECT_EQ(spi::MotBody(17, nullptr).size, 0U);
}

}  // namespace
