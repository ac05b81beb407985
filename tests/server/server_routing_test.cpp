// Which event each call of the server becomes, and what it carries.
#include "tests/event/log_lines.h"
#include "tests/server/recorded_server.h"

namespace {

using namespace spi;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_F(RecordedServer, OnlyImagesAndSpiObjectsGoAnywhere) {
    const captured_stderr log;
    for (unsigned type = 0; type < 256; ++type) {
        feed(static_cast<std::uint8_t>(type));
        if (type == 2) {
            EXPECT_THAT(events(), ElementsAre("LOGODB<-EC_BODYIMG"));
        } else if (type == 7) {
            EXPECT_THAT(events(), ElementsAre("PARSE<-EC_BODYSPI"));
        } else {
            EXPECT_THAT(events(), IsEmpty()) << "content type " << type;
        }
    }
    EXPECT_EQ(log.text(), "");
}

TEST_F(RecordedServer, AnObjectKeepsItsParametersItsBytesAndItsService) {
    for (const std::uint8_t type : {std::uint8_t{2}, std::uint8_t{7}}) {
        MotBodyMetadata metadata{0x1234, type, 0xFFFE, "name"};
        MotBody body = body_of({'b', 'o', 'd', 'y'});
        server->FeedMotBody(metadata, std::move(body), service);
        EXPECT_EQ(body.size, 0U);
        EXPECT_EQ(body.data, nullptr);
        EXPECT_EQ(metadata.content_name, "name");  // copied
        const auto all = deliveries();
        ASSERT_EQ(all.size(), 1U);
        EXPECT_EQ(all[0].metadata.user_application_type, 0x1234);
        EXPECT_EQ(all[0].metadata.content_type, type);
        EXPECT_EQ(all[0].metadata.content_subtype, 0xFFFE);
        EXPECT_EQ(all[0].metadata.content_name, "name");
        EXPECT_EQ(all[0].text, "body");
        EXPECT_EQ(all[0].service, service);
    }
}

TEST_F(RecordedServer, TakesTheBodyOfWhatItDropsToo) {
    MotBody body = body_of({'b', 'o', 'd', 'y'});
    server->FeedMotBody({7, 1, 0, "name"}, std::move(body), service);
    EXPECT_EQ(body.size, 0U);
    EXPECT_EQ(body.data, nullptr);
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(RecordedServer, AnEmptyBodyIsHandedOnEmpty) {
    feed(7, {});
    const auto all = deliveries();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].text, "");
}

TEST_F(RecordedServer, TheFirstEnsembleClearsNothing) {
    server->SetCurrentService(service, 0x1001);
    const auto all = deliveries();
    EXPECT_THAT(briefs(all), ElementsAre("PARSE<-EC_ENS", "EVTDB<-EC_SERV"));
    EXPECT_EQ(all[0].ensemble, 0x1001);
    EXPECT_EQ(all[1].service, service);
}

TEST_F(RecordedServer, TheSameEnsembleSendsTheServiceOnly) {
    server->SetCurrentService(service, 0x1001);
    deliveries();
    server->SetCurrentService(service, 0x1001);
    EXPECT_THAT(events(), ElementsAre("EVTDB<-EC_SERV"));
}

TEST_F(RecordedServer, AnotherEnsembleClearsBeforeTheParserLearnsOfIt) {
    server->SetCurrentService(service, 0x1001);
    deliveries();
    server->SetCurrentService(service, 0xFFFF);
    const auto all = deliveries();
    ASSERT_EQ(all.size(), 6U);
    EXPECT_THAT(briefs({all.begin(), all.begin() + 4}),
                UnorderedElementsAre("CBHDL<-EC_DBCLEAR", "PARSE<-EC_DBCLEAR", "LOGODB<-EC_DBCLEAR",
                                     "EVTDB<-EC_DBCLEAR"));
    EXPECT_EQ(brief(all[4]), "PARSE<-EC_ENS");
    EXPECT_EQ(all[4].ensemble, 0xFFFF);
    EXPECT_EQ(brief(all[5]), "EVTDB<-EC_SERV");
}

TEST_F(RecordedServer, NoEnsembleAfterAKnownOneClearsOnce) {
    server->SetCurrentService(service, 0x1001);
    deliveries();
    server->SetCurrentService(service, 0);
    EXPECT_THAT(sent(), ElementsAre("ALL<-EC_DBCLEAR", "EVTDB<-EC_SERV"));
    server->SetCurrentService(service, 0);
    EXPECT_THAT(sent(), ElementsAre("EVTDB<-EC_SERV"));
}

TEST_F(RecordedServer, TheFirstEnsembleAfterNoneClearsNothing) {
    server->SetCurrentService(service, 0);
    EXPECT_THAT(sent(), ElementsAre("EVTDB<-EC_SERV"));
    server->SetCurrentService(service, 0x1001);
    server->SetCurrentService(service, 0);
    deliveries();
    server->SetCurrentService(service, 0x1001);
    EXPECT_THAT(sent(), ElementsAre("PARSE<-EC_ENS", "EVTDB<-EC_SERV"));
}

TEST_F(RecordedServer, CheckEnsembleTellsWhetherItChanged) {
    EXPECT_TRUE(server->check_ensemble(0x1001));
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_FALSE(server->check_ensemble(0x1001));
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_TRUE(server->check_ensemble(0x1002));
    EXPECT_THAT(sent(), ElementsAre("ALL<-EC_DBCLEAR"));
    server->SetCurrentService(service, 0x1002);  // known already
    EXPECT_THAT(sent(), ElementsAre("EVTDB<-EC_SERV"));
}

TEST_F(RecordedServer, NothingElseTouchesTheEnsemble) {
    server->SetCurrentService(service, 0x1001);
    MotDateTime now{2026, 3, 2, 10, 30};
    server->SetDateTime(now);
    server->ResendNowNext();
    feed(2);
    feed(7);
    deliveries();
    EXPECT_FALSE(server->check_ensemble(0x1001));
}

TEST_F(RecordedServer, TheTimeGoesToEveryWorkerInOnePayload) {
    MotDateTime now{2026, 3, 2, 10, 30};
    server->SetDateTime(now);
    const auto all = deliveries();
    EXPECT_THAT(briefs(all), UnorderedElementsAre("CBHDL<-EC_DATETIME", "PARSE<-EC_DATETIME",
                                                  "LOGODB<-EC_DATETIME", "EVTDB<-EC_DATETIME"));
    for (const delivery& d : all) {
        EXPECT_EQ(d.now, now);
        EXPECT_EQ(d.payload, all[0].payload);
        EXPECT_EQ(d.destination, QID_ALL);
    }
}

TEST_F(RecordedServer, ResendingIsAskedOfTheDatabase) {
    server->ResendNowNext();
    EXPECT_THAT(events(), ElementsAre("EVTDB<-EC_RESEND"));
}

TEST_F(RecordedServer, EventsKeepTheOrderOfTheCalls) {
    for (int i = 0; i < 50; ++i) {
        feed(7, {static_cast<std::uint8_t>(i)});
        server->ResendNowNext();
        feed(2, {static_cast<std::uint8_t>(i)});
    }
    const auto all = deliveries();
    ASSERT_EQ(all.size(), 150U);
    for (std::size_t i = 0; i < 50; ++i) {
        EXPECT_EQ(brief(all[3 * i]), "PARSE<-EC_BODYSPI");
        EXPECT_EQ(all[3 * i].text, std::string(1, static_cast<char>(i)));
        EXPECT_EQ(brief(all[3 * i + 1]), "EVTDB<-EC_RESEND");
        EXPECT_EQ(brief(all[3 * i + 2]), "LOGODB<-EC_BODYIMG");
    }
}

}  // namespace
