// What one object costs, counted: the work of reading it and the heap that it takes, with everything that was
// sent still lying in a queue. Limits are linear: so many bytes of heap for each byte of the body, and a
// constant.
#pragma once

#include <cstdio>

#include "testkit/counted_heap.h"
#include "tests/parse/hostile_bodies.h"

struct limit {
    double bytes_per_body_byte;
    std::uint64_t constant;

    std::uint64_t of(std::size_t body) const {
        return static_cast<std::uint64_t>(bytes_per_body_byte * static_cast<double>(body)) + constant;
    }
};

constexpr std::size_t kSizes[] = {1024, 65536, 1048576};

class Costed : public hostile::HostileBodies {
 protected:
    enum kind { kServiceInformation = 0, kProgrammeInformation = 1 };

    struct cost {
        hostile::work done;
        std::uint64_t peak;   // bytes of heap, the body's own among them
        std::uint64_t total;  // bytes of heap taken, given back or not
    };

    // Prints a row of the table as well.
    cost cost_of(const char* construction, kind what, const hostile::bytes& body) {
        const hostile::work done = what == kServiceInformation ? of_si(body) : of_pi(body);
        router.keep = true;
        const counted_heap heap;
        events_of(static_cast<std::uint16_t>(what), body);
        const cost all{done, heap.peak(), heap.total()};
        EXPECT_EQ(router.events, done.events);
        router.keep = false;
        router.kept.clear();
        std::printf(
            "%-34s %9zu bytes %9llu scopes %10llu string bytes %8llu events %11llu peak %8.1f a byte %12llu "
            "total\n",
            construction, body.size(), number(done.scopes), number(done.string_bytes), number(done.events),
            number(all.peak), static_cast<double>(all.peak) / static_cast<double>(body.size()),
            number(all.total));
        return all;
    }

    // What a body of this size may cost at all, each in its own way: it was all used up.
    enum resource { kScopes, kStringBytes };
    static void expect_used_up(resource what, const hostile::work& done, std::size_t size) {
        EXPECT_TRUE(done.exhausted);
        if (what == kScopes) {
            EXPECT_EQ(done.scopes, 2 * size + 4096);
        } else {
            EXPECT_EQ(done.string_bytes, 4 * size + 65536);
        }
    }

    static void expect_below(const cost& all, std::size_t size, limit peak, limit total) {
        EXPECT_LE(all.peak, peak.of(size));
        EXPECT_LE(all.total, total.of(size));
    }

 private:
    static unsigned long long number(std::uint64_t n) { return n; }
};
