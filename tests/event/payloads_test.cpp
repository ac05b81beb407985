// Every payload class: its code, its base, what it carries and in which order.
#include "src/event/payloads.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "src/server/spi_listener.h"
#include "testkit/bodies.h"
#include "tests/event/virtual_slot.h"

namespace {

using namespace spi;

const ServElemId kService{0xE1C00123, 0xE1, 5};

template <class Payload, class... Arguments>
std::shared_ptr<i_evt_base> travelling(Arguments&&... arguments) {
    return std::make_shared<Payload>(std::forward<Arguments>(arguments)...);
}

template <class Payload>
Payload& arrived(const std::shared_ptr<i_evt_base>& payload) {
    return dynamic_cast<Payload&>(*payload);
}

template <class A, class B>
bool before(const A& a, const B& b) {
    return static_cast<const void*>(&a) < static_cast<const void*>(&b);
}

TEST(Payload, ExecDoesNothingAndReturnsZero) {
    const auto payload = travelling<db_clear_event>();
    EXPECT_EQ(payload->exec(), 0);
    EXPECT_EQ(i_evt_base(EC_IMAGE).exec(), 0);
}

TEST(Payload, ExecComesBeforeTheDestructorInTheTableOfVirtualOperations) {
    EXPECT_EQ(virtual_slot(&i_evt_base::exec), 0);
    EXPECT_TRUE(std::has_virtual_destructor_v<i_evt_base>);
}

TEST(Payload, TheCodeNeverChanges) {
    EXPECT_TRUE((std::is_same_v<decltype(i_evt_base::code), const event_code>));
}

TEST(Payload, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<i_evt_base>);
    EXPECT_FALSE(std::is_copy_constructible_v<MotBody>);
    EXPECT_FALSE(std::is_copy_assignable_v<MotBody>);
}

TEST(Payload, TempRootCarriesTheDirectory) {
    const auto payload = travelling<temp_root_event>("/temp/dab");
    EXPECT_EQ(payload->code, EC_TEMPROOT);
    EXPECT_EQ(arrived<string_info_event>(payload).text, "/temp/dab");
}

TEST(Payload, LogoRootCarriesTheDirectory) {
    const auto payload = travelling<logo_root_event>("/mnt/logos/");
    EXPECT_EQ(payload->code, EC_LOGOROOT);
    EXPECT_EQ(arrived<string_info_event>(payload).text, "/mnt/logos/");
}

TEST(Payload, TheBasesOfSeveralPayloadsCannotBeMadeAlone) {
    EXPECT_FALSE((std::is_constructible_v<string_info_event, event_code, std::string>));
    EXPECT_FALSE((std::is_constructible_v<mot_body_event, event_code, MotBodyMetadata, MotBody, ServElemId>));
}

TEST(Payload, DateTimeCarriesTheTime) {
    const MotDateTime now{2026, 3, 2, 10, 30};
    const auto payload = travelling<date_time_event>(now);
    EXPECT_EQ(payload->code, EC_DATETIME);
    EXPECT_EQ(arrived<date_time_event>(payload).now, now);
}

TEST(Payload, SetServiceCarriesTheService) {
    const auto payload = travelling<set_service_event>(kService);
    EXPECT_EQ(payload->code, EC_SERV);
    EXPECT_EQ(arrived<set_service_event>(payload).service, kService);
}

TEST(Payload, SetEnsembleCarriesSixteenBits) {
    const auto payload = travelling<set_ensemble_event>(std::uint16_t{0xFFFE});
    EXPECT_EQ(payload->code, EC_ENS);
    EXPECT_EQ(arrived<set_ensemble_event>(payload).ensemble, 0xFFFE);
    EXPECT_EQ(sizeof(set_ensemble_event::ensemble), 2U);
}

template <class Body>
void expect_mot_object(event_code code) {
    const MotBodyMetadata metadata{0x1234, 0xFE, 0x1FF, "logo.png"};
    MotBody body = body_of({0x01, 0x02, 0x03});
    const auto payload = travelling<Body>(metadata, std::move(body), kService);
    EXPECT_EQ(payload->code, code);
    auto& object = arrived<mot_body_event>(payload);
    EXPECT_EQ(object.metadata.user_application_type, 0x1234);
    EXPECT_EQ(object.metadata.content_type, 0xFE);
    EXPECT_EQ(object.metadata.content_subtype, 0x1FF);
    EXPECT_EQ(object.metadata.content_name, "logo.png");
    ASSERT_EQ(object.body.size, 3U);
    EXPECT_EQ(object.body.data[0], 1);
    EXPECT_EQ(object.body.data[2], 3);
    EXPECT_EQ(object.service, kService);
    EXPECT_TRUE(before(object.metadata, object.body));
    EXPECT_TRUE(before(object.body, object.service));
    EXPECT_TRUE(before(object.metadata.user_application_type, object.metadata.content_type));
    EXPECT_TRUE(before(object.metadata.content_type, object.metadata.content_subtype));
    EXPECT_TRUE(before(object.metadata.content_subtype, object.metadata.content_name));
    // Moved in: nothing stays with whoever made the event.
    EXPECT_EQ(body.size, 0U);
    EXPECT_EQ(body.data, nullptr);
}

TEST(Payload, ImageBodyCarriesAMotObject) {
    expect_mot_object<image_body_event>(EC_BODYIMG);
}
TEST(Payload, SpiBodyCarriesAMotObject) {
    expect_mot_object<spi_body_event>(EC_BODYSPI);
}

TEST(Payload, ProgrammeCarriesItsServiceFirst) {
    PiScheduleProgramme programme;
    programme.name = "News";
    const auto payload = travelling<pi_programme_event>(kService, programme);
    EXPECT_EQ(payload->code, EC_EVTINFO);
    const auto& carried = arrived<pi_programme_event>(payload);
    EXPECT_EQ(carried.service, kService);
    EXPECT_EQ(carried.programme.name, "News");
    EXPECT_TRUE(before(carried.service, carried.programme));
}

TEST(Payload, ServiceDescriptionCarriesTheDeliveringServiceFirst) {
    SiServiceInfo described;
    described.id = ServElemId{0x2222, 0, 0};
    described.name = "Radio 4";
    described.logos.push_back(SpiLogoInfo{described.id, 2, 3, "r4.png"});
    const auto payload = travelling<si_service_event>(kService, std::move(described));
    EXPECT_EQ(payload->code, EC_SERVINFO);
    const auto& carried = arrived<si_service_event>(payload);
    EXPECT_EQ(carried.service, kService);
    EXPECT_EQ(carried.info.name, "Radio 4");
    ASSERT_EQ(carried.info.logos.size(), 1U);
    EXPECT_EQ(carried.info.logos.front().name, "r4.png");
    EXPECT_TRUE(before(carried.service, carried.info));
}

struct silent_listener final : ISpiListener {
    void ProgramInfoReceived(const ServElemId&, SpiProgramInfo&) override {}
    void ProgramNowNextUpdated(SpiProgramInfo&, SpiProgramInfo&) override {}
    void StationLogoReceived(SpiLogoInfo&) override {}
};

TEST(Payload, RegistrationSharesTheListener) {
    const auto listener = std::make_shared<silent_listener>();
    const auto payload = travelling<cb_register_event>(listener);
    EXPECT_EQ(payload->code, EC_EVTCB);
    EXPECT_EQ(arrived<cb_register_event>(payload).listener, listener);
    EXPECT_EQ(listener.use_count(), 2);
}

TEST(Payload, NowNextCarriesNowFirst) {
    PiScheduleProgramme now;
    PiScheduleProgramme next;
    now.name = "now";
    next.name = "next";
    const auto payload = travelling<nownext_update_event>(now, next);
    EXPECT_EQ(payload->code, EC_NOWNEXT);
    const auto& carried = arrived<nownext_update_event>(payload);
    EXPECT_EQ(carried.now.name, "now");
    EXPECT_EQ(carried.next.name, "next");
    EXPECT_TRUE(before(carried.now, carried.next));
}

TEST(Payload, LogoCarriesTheNotice) {
    const auto payload = travelling<si_logo_event>(SpiLogoInfo{kService, 2, 3, "E1C0012_3.png"});
    EXPECT_EQ(payload->code, EC_LOGOCB);
    const auto& carried = arrived<si_logo_event>(payload);
    EXPECT_EQ(carried.logo.service, kService);
    EXPECT_EQ(carried.logo.image_format, 2);
    EXPECT_EQ(carried.logo.size_code, 3);
    EXPECT_EQ(carried.logo.name, "E1C0012_3.png");
}

TEST(Payload, RequestsCarryNothingButTheirCode) {
    EXPECT_EQ(travelling<resend_nownext_event>()->code, EC_RESEND);
    EXPECT_EQ(travelling<db_clear_event>()->code, EC_DBCLEAR);
    EXPECT_EQ(travelling<term_event>()->code, EC_TERM);
    EXPECT_EQ(sizeof(resend_nownext_event), sizeof(i_evt_base));
    EXPECT_EQ(sizeof(db_clear_event), sizeof(i_evt_base));
    EXPECT_EQ(sizeof(term_event), sizeof(i_evt_base));
}

TEST(Payload, EveryClassDerivesFromTheOneBaseDirectlyOrThroughItsGroup) {
    EXPECT_TRUE((std::is_base_of_v<string_info_event, temp_root_event>));
    EXPECT_TRUE((std::is_base_of_v<string_info_event, logo_root_event>));
    EXPECT_TRUE((std::is_base_of_v<mot_body_event, image_body_event>));
    EXPECT_TRUE((std::is_base_of_v<mot_body_event, spi_body_event>));
    EXPECT_TRUE((std::is_convertible_v<temp_root_event*, i_evt_base*>));
    EXPECT_TRUE((std::is_convertible_v<spi_body_event*, i_evt_base*>));
    EXPECT_TRUE((std::is_convertible_v<term_event*, i_evt_base*>));
}

}  // namespace
