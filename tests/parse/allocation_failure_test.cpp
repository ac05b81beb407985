// Memory that runs out while an object is parsed: the exception passes out of the handler, and the body's
// bytes, the parser and everything it had read are released on its way.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>

#include "src/event/payloads.h"
#include "src/parse/spi_parser.h"
#include "testkit/spi_builder_objects.h"
#include "tests/parse/reading.h"
#include "tests/support/recording_router.h"

namespace {

// Of the calling thread only: the workers' threads go on undisturbed.
thread_local long live_allocations = 0;
thread_local long allocations_until_failure = -1;  // negative: none fails

}  // namespace

void* operator new(std::size_t size) {
    if (allocations_until_failure >= 0 && allocations_until_failure-- == 0) throw std::bad_alloc();
    void* memory = std::malloc(size > 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc();
    ++live_allocations;
    return memory;
}
void operator delete(void* memory) noexcept {
    if (memory == nullptr) return;
    --live_allocations;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

using namespace spi_builder;

constexpr std::uint16_t kServiceInformation = 0;
constexpr std::uint16_t kProgrammeInformation = 1;

// Lets every event go; from the given one on it finds no memory to queue it.
class router_without_memory final : public spi::event_backend {
 public:
    router_without_memory() : event_backend(deferred{}) { begin(); }
    ~router_without_memory() override { destroy_proc(); }

    int post_event(spi::event) override {
        if (sent == capacity) throw std::bad_alloc();
        ++sent;
        return 0;
    }

    int capacity = -1;  // negative: no end
    int sent = 0;
};

bytes schedules() {
    programme_data data;
    data.name.medium_name = "\x01 now, with more than fits into a string of its own";
    data.name.long_name = "\x01 at Ten, with more than fits into a string of its own";
    data.start = {spi_builder::mjd(2017, 1, 1), 22, 0, 2};
    data.bearers = {service_id{0xE1, 0, 0xC221}};
    schedule_data all;
    all.programmes = {data, data, data};
    return pi_object({all}, {{0x01, "News of the day and of the night"}, {0x02, "unused"}});
}

bytes services() {
    service_data data;
    data.name.medium_name = "\x01, with more than fits into a string of its own";
    data.bearers = {{0xE1, 0, 0xC221}};
    data.logos = {{"image/png", "logos/a-rather-long-content-name.png", {}, 320, 240},
                  {"", "logos/another-rather-long-content-name.jpg", logo_colour_square, {}, {}}};
    return si_object(0xE1, 0, {data, data, data}, {{0x01, "Radio of the day and of the night"}});
}

class AllocationFailure : public ::testing::Test {
 protected:
    AllocationFailure() {
        router.register_queue(&parser);
        forget_objects();  // the first payload of a process makes what counts them, which stays
    }

    static std::shared_ptr<spi::spi_body_event> body_event(std::uint16_t subtype, const bytes& object) {
        spi::MotBodyMetadata metadata;
        metadata.content_subtype = subtype;
        metadata.content_name = "an object with a name of some length";
        return std::make_shared<spi::spi_body_event>(metadata, body_of(object), service_of(0xE1, 0xD001));
    }
    void forget_objects() {
        spi::event e(spi::QID_PARSE, std::make_shared<spi::db_clear_event>());
        parser.process_event(e);
    }

    // Handles the object with the n-th allocation failing, for n = 1, 2, ... until there is none left to
    // fail. Returns how many did.
    long fail_each_allocation(std::uint16_t subtype, const bytes& object) {
        for (long n = 0;; ++n) {
            const long before = live_allocations;
            bool failed = false;
            {
                spi::event e(spi::QID_PARSE, body_event(subtype, object));
                allocations_until_failure = n;
                try {
                    parser.process_event(e);
                } catch (const std::bad_alloc&) {
                    failed = true;
                }
                allocations_until_failure = -1;
            }
            forget_objects();
            EXPECT_EQ(live_allocations, before) << "after the failure of allocation " << n;
            if (!failed) return n;
        }
    }

    router_without_memory router;
    spi::SpiParser parser;
};

TEST_F(AllocationFailure, WhileSendingPassesOutAndReleasesTheBody) {
    for (const std::uint16_t subtype : {kServiceInformation, kProgrammeInformation}) {
        const bytes object = subtype == kServiceInformation ? services() : schedules();
        for (const int capacity : {0, 1, 2}) {
            const long before = live_allocations;
            {
                router.sent = 0;
                router.capacity = capacity;
                const auto body = body_event(subtype, object);
                spi::event e(spi::QID_PARSE, body);
                EXPECT_THROW(parser.process_event(e), std::bad_alloc);
                EXPECT_EQ(router.sent, capacity);
                EXPECT_EQ(body->body.data, nullptr);
                EXPECT_EQ(body->body.size, 0U);
            }
            forget_objects();
            EXPECT_EQ(live_allocations, before) << "sub-type " << subtype << ", capacity " << capacity;
        }
    }
}

TEST_F(AllocationFailure, WhileParsingServiceInformationLeavesNothingBehind) {
    EXPECT_GT(fail_each_allocation(kServiceInformation, services()), 20);
    EXPECT_EQ(router.sent % 3, 0);
}

TEST_F(AllocationFailure, WhileParsingProgrammeInformationLeavesNothingBehind) {
    EXPECT_GT(fail_each_allocation(kProgrammeInformation, schedules()), 12);
}

TEST_F(AllocationFailure, DoesNotHarmTheNextObject) {
    router.capacity = 1;
    spi::event failing(spi::QID_PARSE, body_event(kProgrammeInformation, schedules()));
    EXPECT_THROW(parser.process_event(failing), std::bad_alloc);
    router.capacity = -1;
    router.sent = 0;
    spi::event next(spi::QID_PARSE, body_event(kServiceInformation, services()));
    parser.process_event(next);
    EXPECT_EQ(router.sent, 3);
}

TEST_F(AllocationFailure, LeavesTheObjectRecorded) {
    router.capacity = 0;
    spi::event failing(spi::QID_PARSE, body_event(kProgrammeInformation, schedules()));
    EXPECT_THROW(parser.process_event(failing), std::bad_alloc);
    router.capacity = -1;
    router.sent = 0;
    spi::event again(spi::QID_PARSE, body_event(kProgrammeInformation, schedules()));
    parser.process_event(again);
    EXPECT_EQ(router.sent, 0);
}

TEST_F(AllocationFailure, ParsedOrRepeatedObjectsAreReleasedToo) {
    const long before = live_allocations;
    for (int i = 0; i < 3; ++i) {
        spi::event e(spi::QID_PARSE, body_event(kProgrammeInformation, schedules()));
        parser.process_event(e);
    }
    EXPECT_EQ(router.sent, 3);
    forget_objects();
    EXPECT_EQ(live_allocations, before);
}

}  // namespace
