// The listener notifier: one event, one call.
#include "src/server/spi_callback.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>

#include "src/event/payloads.h"
#include "src/event/quiet.h"
#include "testkit/journal.h"
#include "tests/event/virtual_slot.h"
#include "tests/event/watchdog.h"
#include "tests/support/captured_debug.h"
#include "tests/support/recording_router.h"

namespace {

using namespace spi;
using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsEmpty;
using testing::Pair;
using testing::StrictMock;

struct mock_listener final : ISpiListener {
    MOCK_METHOD(void, ProgramInfoReceived, (const ServElemId&, SpiProgramInfo&), (override));
    MOCK_METHOD(void, ProgramNowNextUpdated, (SpiProgramInfo&, SpiProgramInfo&), (override));
    MOCK_METHOD(void, StationLogoReceived, (SpiLogoInfo&), (override));
};

PiScheduleProgramme programme(const std::string& name, unsigned seconds = 1800) {
    PiScheduleProgramme p;
    p.name = name;
    p.time.mjd = 61101;  // 2 March 2026
    p.time.hour = 9;
    p.time.minute = 30;
    p.time.lto = 2;
    p.duration = static_cast<std::uint16_t>(seconds);
    return p;
}

MATCHER_P3(info, name, minutes, start, "") {
    return arg.name == name && arg.duration == minutes && arg.start == start;
}

const MotDateTime kLocalStart{2026, 3, 2, 10, 30};
const ServElemId kService{0xC221, 0xE1, 3};

// Handlers are called on the test's own thread.
struct Callback : testing::Test {
    const watchdog guard;
    recording_router router;
    SpiCallback callback;
    std::shared_ptr<mock_listener> listener = std::make_shared<mock_listener>();

    void SetUp() override { router.register_queue(&callback); }

    template <class Payload, class... Arguments>
    void handle(Arguments&&... arguments) {
        event e(QID_CBHDL, std::make_shared<Payload>(std::forward<Arguments>(arguments)...));
        callback.process_event(e);
    }
    void register_listener() { handle<cb_register_event>(listener); }
    // Any call from here on is a failure.
    void expect_no_call() {
        EXPECT_CALL(*listener, ProgramInfoReceived).Times(0);
        EXPECT_CALL(*listener, ProgramNowNextUpdated).Times(0);
        EXPECT_CALL(*listener, StationLogoReceived).Times(0);
    }
};

TEST_F(Callback, HasTheNotifiersQueue) {
    EXPECT_EQ(callback.queue_id(), QID_CBHDL);
}

TEST_F(Callback, AStoredProgrammeIsOneCall) {
    register_listener();
    EXPECT_CALL(*listener, ProgramInfoReceived(kService, info("News", 30, kLocalStart))).Times(1);
    handle<pi_programme_event>(kService, programme("News"));
}

TEST_F(Callback, NowAndNextAreOneCall) {
    register_listener();
    EXPECT_CALL(*listener, ProgramNowNextUpdated(info("now", 30, kLocalStart), info("next", 1, kLocalStart)))
        .Times(1);
    handle<nownext_update_event>(programme("now"), programme("next", 60));
}

TEST_F(Callback, ALogoIsOneCallWithTheRecordUnchanged) {
    register_listener();
    SpiLogoInfo received;
    EXPECT_CALL(*listener, StationLogoReceived(_)).WillOnce(testing::SaveArg<0>(&received));
    handle<si_logo_event>(SpiLogoInfo{kService, 200, 255, "E1C2213_4.png"});
    EXPECT_EQ(received.service, kService);
    EXPECT_EQ(received.image_format, 200);
    EXPECT_EQ(received.size_code, 255);
    EXPECT_EQ(received.name, "E1C2213_4.png");
}

TEST_F(Callback, DurationsAreWholeMinutesRoundedDown) {
    register_listener();
    const std::pair<unsigned, unsigned> durations[] = {{0, 0},   {59, 0},    {60, 1},    {119, 1},
                                                       {120, 2}, {3599, 59}, {3600, 60}, {65535, 1092}};
    for (const auto& [seconds, minutes] : durations) {
        EXPECT_CALL(*listener, ProgramInfoReceived(_, info("p", minutes, kLocalStart)));
        handle<pi_programme_event>(kService, programme("p", seconds));
    }
}

TEST_F(Callback, AnUnsetProgrammeReadsAsDayZeroAndKeepsItsDuration) {
    register_listener();
    PiScheduleProgramme cleared;
    cleared.duration = 1800;
    EXPECT_CALL(*listener, ProgramNowNextUpdated(_, info("", 30, MotDateTime{1859, 255, 19, 0, 0})));
    handle<nownext_update_event>(programme("now"), cleared);
}

TEST_F(Callback, NamesAreCopiedByteForByte) {
    register_listener();
    const std::string name("a\0b\xFF\xC3\xA9", 6);
    EXPECT_CALL(*listener, ProgramInfoReceived(_, info(name, 30, kLocalStart)));
    handle<pi_programme_event>(kService, programme(name));
}

TEST_F(Callback, TheListenersChangesStayInItsOwnRecords) {
    register_listener();
    EXPECT_CALL(*listener, ProgramNowNextUpdated(_, _))
        .WillRepeatedly([](SpiProgramInfo& now, SpiProgramInfo& next) {
            EXPECT_EQ(now.name, "now");
            EXPECT_EQ(next.name, "next");
            now.name.clear();
            next = SpiProgramInfo{};
        });
    event e(QID_CBHDL, std::make_shared<nownext_update_event>(programme("now"), programme("next")));
    callback.process_event(e);
    callback.process_event(e);
}

TEST_F(Callback, OtherEventsCauseNoCall) {
    register_listener();
    expect_no_call();
    for (unsigned code = 0; code < 256; ++code) {
        if (code == EC_EVTINFO || code == EC_EVTCB || code == EC_NOWNEXT || code == EC_LOGOCB) continue;
        event e(QID_CBHDL, std::make_shared<i_evt_base>(static_cast<event_code>(code)));
        callback.process_event(e);
    }
    handle<resend_nownext_event>();
    handle<db_clear_event>();
    handle<si_service_event>(kService, SiServiceInfo{});
    event empty(QID_CBHDL, nullptr);
    callback.process_event(empty);
    EXPECT_THAT(router.take_codes(), ElementsAre(Pair(QID_SERV, EC_TERM)));  // for the one EC_TERM above
}

TEST_F(Callback, TermIsAnsweredWithExactlyOneAndNoCall) {
    register_listener();
    expect_no_call();
    event request(QID_CBHDL, std::make_shared<term_event>());
    callback.process_event(request);
    const auto sent = router.take();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].destination, QID_SERV);
    EXPECT_EQ(sent[0].code(), EC_TERM);
    EXPECT_NE(sent[0].payload, request.payload);
}

TEST_F(Callback, ANewListenerReplacesTheOldOneWhichIsReleasedOnce) {
    register_listener();
    EXPECT_EQ(listener.use_count(), 2);
    const auto second = std::make_shared<mock_listener>();
    handle<cb_register_event>(second);
    EXPECT_EQ(listener.use_count(), 1);
    EXPECT_EQ(second.use_count(), 2);
    expect_no_call();
    EXPECT_CALL(*second, ProgramNowNextUpdated).Times(1);
    handle<nownext_update_event>(programme("now"), programme("next"));
}

TEST_F(Callback, ReleasesTheListenerAtItsEnd) {
    {
        SpiCallback other;
        event e(QID_CBHDL, std::make_shared<cb_register_event>(listener));
        other.process_event(e);
        e.payload.reset();
        EXPECT_EQ(listener.use_count(), 2);
    }
    EXPECT_EQ(listener.use_count(), 1);
}

TEST_F(Callback, WithoutAListenerNotificationsAreDropped) {
    handle<pi_programme_event>(kService, programme("News"));
    handle<nownext_update_event>(programme("now"), programme("next"));
    handle<si_logo_event>(SpiLogoInfo{});
    handle<cb_register_event>(nullptr);
    handle<nownext_update_event>(programme("now"), programme("next"));
    EXPECT_THAT(router.take(), IsEmpty());
}

TEST_F(Callback, ItsOperationsReturnZero) {
    SpiLogoInfo logo;
    EXPECT_EQ(callback.send_evtinfo(kService, programme("p")), 0);
    EXPECT_EQ(callback.send_nownext(programme("p"), programme("q")), 0);
    EXPECT_EQ(callback.send_logoinfo(logo), 0);
    register_listener();
    EXPECT_CALL(*listener, ProgramInfoReceived);
    EXPECT_CALL(*listener, ProgramNowNextUpdated);
    EXPECT_CALL(*listener, StationLogoReceived);
    EXPECT_EQ(callback.send_evtinfo(kService, programme("p")), 0);
    EXPECT_EQ(callback.send_nownext(programme("p"), programme("q")), 0);
    EXPECT_EQ(callback.send_logoinfo(logo), 0);
}

TEST_F(Callback, KeepsThePayloadDuringTheCall) {
    register_listener();
    std::weak_ptr<i_evt_base> payload;
    event e(QID_CBHDL, std::make_shared<si_logo_event>(SpiLogoInfo{kService, 2, 3, "name"}));
    payload = e.payload;
    EXPECT_CALL(*listener, StationLogoReceived(_)).WillOnce([&](SpiLogoInfo& logo) {
        e.payload.reset();  // as if the queue had let go of it
        EXPECT_FALSE(payload.expired());
        EXPECT_EQ(logo.name, "name");
    });
    callback.process_event(e);
    EXPECT_TRUE(payload.expired());
}

TEST_F(Callback, CallsComeOneAtATimeInTheirOrderOnItsOwnThread) {
    journal<std::pair<std::string, std::thread::id>> calls;
    EXPECT_CALL(*listener, ProgramInfoReceived).WillRepeatedly([&](const ServElemId&, SpiProgramInfo& p) {
        calls.add({p.name, std::this_thread::get_id()});
    });
    EXPECT_CALL(*listener, StationLogoReceived).WillRepeatedly([&](SpiLogoInfo& logo) {
        calls.add({logo.name, std::this_thread::get_id()});
    });
    callback.post(std::make_shared<cb_register_event>(listener), QID_CBHDL);
    for (int i = 0; i < 50; ++i) {
        callback.post(std::make_shared<pi_programme_event>(kService, programme(std::to_string(2 * i))),
                      QID_CBHDL);
        callback.post(std::make_shared<si_logo_event>(SpiLogoInfo{kService, 2, 3, std::to_string(2 * i + 1)}),
                      QID_CBHDL);
    }
    const auto all = calls.wait_for(100);
    ASSERT_TRUE(wait_until_quiet(std::chrono::minutes(1)));
    ASSERT_EQ(all.size(), 100U);
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].first, std::to_string(i));
        EXPECT_EQ(all[i].second, all[0].second);
        EXPECT_NE(all[i].second, std::this_thread::get_id());
    }
}

TEST_F(Callback, DoesNotCatchTheListenersExceptions) {
    register_listener();
    EXPECT_CALL(*listener, StationLogoReceived).WillOnce([](SpiLogoInfo&) {
        throw std::runtime_error("no");
    });
    EXPECT_THROW(handle<si_logo_event>(SpiLogoInfo{}), std::runtime_error);
}

TEST(ListenerInterface, HasThreeOperationsInThisOrderAndNoVirtualDestructor) {
    EXPECT_FALSE(std::has_virtual_destructor_v<ISpiListener>);
    EXPECT_FALSE(std::is_destructible_v<ISpiListener>);  // never destroyed through it
    EXPECT_EQ(virtual_slot(&ISpiListener::ProgramInfoReceived), 0);
    EXPECT_EQ(virtual_slot(&ISpiListener::ProgramNowNextUpdated), 1);
    EXPECT_EQ(virtual_slot(&ISpiListener::StationLogoReceived), 2);
}

TEST(ListenerInterface, ItsRecordsHaveTheirFieldsInOrder) {
    const auto before = [](const auto& a, const auto& b) {
        return static_cast<const void*>(&a) < static_cast<const void*>(&b);
    };
    const SpiProgramInfo programme_info;
    EXPECT_TRUE(before(programme_info.start, programme_info.duration));
    EXPECT_TRUE(before(programme_info.duration, programme_info.name));
    const SpiLogoInfo logo;
    EXPECT_TRUE(before(logo.service, logo.image_format));
    EXPECT_TRUE(before(logo.image_format, logo.size_code));
    EXPECT_TRUE(before(logo.size_code, logo.name));
    EXPECT_EQ(sizeof programme_info.duration, 2U);
    EXPECT_EQ(sizeof logo.image_format, 1U);
    EXPECT_EQ(sizeof logo.size_code, 1U);
}

}  // namespace
