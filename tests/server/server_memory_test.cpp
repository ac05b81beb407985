// Out of memory in a call of the host: the failure reaches the host, and the server stays usable.
#include <algorithm>
#include <new>

#include "tests/event/allocation_faults.h"
#include "tests/server/recorded_server.h"

namespace {

using namespace spi;
using testing::ElementsAre;

constexpr int kHostThread = 0;

struct ServerWithoutMemory : RecordedServer {
    // Calls with the first allocation failing, then the second, ... until no failure is left to come. After
    // each, the same call again must bring the rest of its effect, or all of it.
    void each_allocation(const std::function<void()>& prepare, const std::function<void()>& call,
                         const std::vector<std::string>& effect) {
        int failures = 0;
        for (long n = 1;; ++n) {
            start();
            prepare();
            deliveries();
            bool struck = false;
            bool thrown = false;
            {
                const allocation_faults fault(kHostThread, n, allocation_faults::kOnce);
                try {
                    call();
                } catch (const std::bad_alloc&) {
                    thrown = true;
                }
                struck = fault.struck();
            }
            EXPECT_EQ(thrown, struck) << "allocation " << n;
            if (!struck) break;
            ++failures;
            std::vector<std::string> both = sent();
            call();
            const std::vector<std::string> again = sent();
            both.insert(both.end(), again.begin(), again.end());
            EXPECT_TRUE(again == effect || both == effect)
                << "after allocation " << n << " had failed: " << testing::PrintToString(both);
        }
        EXPECT_GE(failures, 2);  // at least the payload and its place in the queue
    }
};

TEST_F(ServerWithoutMemory, AnImage) {
    each_allocation([] {}, [&] { feed(2); }, {"LOGODB<-EC_BODYIMG"});
}
TEST_F(ServerWithoutMemory, AnSpiObject) {
    each_allocation([] {}, [&] { feed(7); }, {"PARSE<-EC_BODYSPI"});
}
TEST_F(ServerWithoutMemory, TheFirstEnsemble) {
    each_allocation([] {}, [&] { server->SetCurrentService(service, 0x1001); },
                    {"PARSE<-EC_ENS", "EVTDB<-EC_SERV"});
}
TEST_F(ServerWithoutMemory, AnotherEnsemble) {
    each_allocation([&] { server->SetCurrentService(service, 0x1001); },
                    [&] { server->SetCurrentService(service, 0x1002); },
                    {"ALL<-EC_DBCLEAR", "PARSE<-EC_ENS", "EVTDB<-EC_SERV"});
}
TEST_F(ServerWithoutMemory, NoEnsemble) {
    each_allocation([&] { server->SetCurrentService(service, 0x1001); },
                    [&] { server->SetCurrentService(service, 0); }, {"ALL<-EC_DBCLEAR", "EVTDB<-EC_SERV"});
}
// What the parser was told must be taken back when the host goes back.
TEST_F(ServerWithoutMemory, TheWayBackFromAnotherEnsemble) {
    bool threw = false;
    for (long n = 1;; ++n) {
        start();
        server->SetCurrentService(service, 0x1001);
        deliveries();
        bool struck = false;
        {
            const allocation_faults fault(kHostThread, n, allocation_faults::kOnce);
            try {
                server->SetCurrentService(service, 0x1002);
            } catch (const std::bad_alloc&) {
            }
            struck = fault.struck();
        }
        if (!struck) break;
        const std::vector<std::string> before = sent();
        if (std::count(before.begin(), before.end(), "PARSE<-EC_ENS") == 0) continue;
        threw = true;
        server->SetCurrentService(service, 0x1001);
        EXPECT_THAT(sent(), ElementsAre("ALL<-EC_DBCLEAR", "PARSE<-EC_ENS", "EVTDB<-EC_SERV"))
            << "after allocation " << n << " had failed";
    }
    EXPECT_TRUE(threw);
}
TEST_F(ServerWithoutMemory, TheTime) {
    MotDateTime now{2026, 3, 2, 10, 30};
    each_allocation([] {}, [&] { server->SetDateTime(now); }, {"ALL<-EC_DATETIME"});
}
TEST_F(ServerWithoutMemory, Resending) {
    each_allocation([] {}, [&] { server->ResendNowNext(); }, {"EVTDB<-EC_RESEND"});
}

}  // namespace
