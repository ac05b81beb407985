// What is known of a carousel: of its objects, its directories and its cycle. Times are logical frames of 24
// ms, as the caller counts them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/air/mot/carousel_counts.h"

namespace dabspi::air {

enum class carousel_mode : std::uint8_t {
    unknown,    // no header and no directory yet
    headers,    // each object has a header of its own (EN 301 234, 7.1)
    directory,  // one directory has all headers (7.2)
};

// When something that is repeated was received.
struct receptions {
    std::uint64_t count = 0;
    std::uint64_t first = 0;  // says nothing without a reception
    std::uint64_t last = 0;
    std::uint64_t longest_interval = 0;

    void add(std::uint64_t frame);
    // Frames from one to the next; nothing for fewer than two.
    std::optional<double> mean_interval() const;
};

// What became of an object's last reception.
enum class object_state : std::uint8_t {
    incomplete,  // not received whole yet
    received,
    scrambled,
    unusable  // received, but dropped: `cause`
};

struct object_statistics {
    std::uint16_t transport_id = 0;
    std::string name;
    std::uint8_t content_type = 0;
    std::uint16_t content_subtype = 0;
    std::string mime_type;
    bool compressed = false;
    object_state state = object_state::incomplete;
    carousel_drop cause = carousel_drop::count;
    std::uint32_t body_size = 0;        // as the header says
    std::size_t unpacked_size = 0;      // when it was received
    std::size_t segments_held = 0;      // now
    std::size_t segments = 0;           // 0: not known
    std::uint64_t listed = 0;           // since this frame
    std::optional<std::uint64_t> gone;  // in this frame
    receptions times;                   // received whole
    std::uint64_t versions = 0;         // of these, how many differ from the one before
    std::uint64_t bytes_on_air = 0;     // of its data groups, since it is listed or kept
    bool before_listing = false;        // its body was there before it was listed
};

struct directory_version {
    static constexpr std::size_t kNamesKept = 64;  // of each kind
    struct names {
        std::size_t count = 0;
        std::vector<std::string> first;  // up to kNamesKept
        void add(const std::string& name);
    };
    std::uint64_t frame = 0;
    std::uint16_t transport_id = 0;
    bool compressed = false;
    std::uint16_t objects = 0;
    std::uint32_t period_tenths = 0;
    std::uint16_t segment_size = 0;
    std::vector<std::pair<std::uint8_t, std::vector<std::uint8_t>>> parameters;
    // Against the version before. Changed: the header, or the transport identifier under the same name.
    names added;
    names removed;
    names changed;
};

struct carousel_statistics {
    carousel_mode mode = carousel_mode::unknown;
    carousel_counts counts;
    std::vector<object_statistics> objects;      // those there are now, by transport identifier
    std::vector<object_statistics> gone;         // the last of those there were, oldest first
    std::uint64_t gone_count = 0;                // all of them
    std::vector<directory_version> directories;  // the last ones, oldest first
    std::uint64_t directory_versions = 0;        // all of them
    receptions directory_times;                  // of any version
    std::uint64_t directory_bytes = 0;           // on air; and of headers
    std::uint64_t other_bytes = 0;               // of bodies that nothing lists
    std::size_t unlisted_bodies = 0;             // held now
    std::size_t memory = 0;                      // bytes held now

    // Frames in which every object comes round: the longest mean interval of all. Nothing as long as no
    // object was received twice.
    std::optional<double> cycle() const;
};

}  // namespace dabspi::air
