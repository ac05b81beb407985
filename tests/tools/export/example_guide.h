// A small guide with everything in it that the formats tell apart.
#pragma once

#include "testkit/spi_builder_objects.h"
#include "tools/guide/guide_reader.h"

namespace example_guide {

constexpr std::uint32_t kDay = 61109;  // 2026-03-10
constexpr spi_builder::service_id kOne = {0xE1, 0xC185, 0xC221, 0};

inline std::shared_ptr<const dabspi::bytes> shared(const spi_builder::bytes& content) {
    return std::make_shared<const dabspi::bytes>(content);
}

// A programme's element with what the builder's records do not have.
inline spi_builder::bytes full_programme(const std::string& name, unsigned hour) {
    namespace sb = spi_builder;
    namespace tag = spi_builder::tag;
    const sb::programme_data data = {{"", "", name}, sb::local_time(kDay, hour, 0, 2), 3600, 77, {}};
    const sb::bytes whole = sb::programme(data);
    const sb::bytes inside(whole.begin() + 2, whole.end());
    const sb::bytes media = sb::elem(tag::media_description,
                                     {sb::elem(tag::long_description, {sb::text("All about it & <more>")})});
    const sb::bytes genre = sb::elem(tag::genre, {sb::attr(0x80, {0x03, 0x06, 0x02})});
    return sb::elem(tag::programme,
                    sb::join({sb::attr(0x80, sb::str("crid://example.org/p1")), inside, media, genre}));
}

inline spi_builder::bytes schedule() {
    namespace sb = spi_builder;
    namespace tag = spi_builder::tag;
    const sb::bytes scope =
        sb::elem(tag::scope, {sb::elem(tag::service_scope, {sb::attr(0x80, sb::content_id(kOne))})});
    // The second one has no duration, and no name.
    const sb::programme_data open = {{}, sb::local_time(kDay, 9, 0, 2), 0, {}, {}};
    const sb::programme_data next = {{"", "Last", ""}, sb::local_time(kDay, 23, 30, 2), 7200, {}, {}};
    const sb::programme_data tomorrow = {
        {"", "Tomorrow", ""}, sb::local_time(kDay + 1, 1, 30, 2), 60, {}, {}};
    return sb::elem(tag::epg,
                    {sb::elem(tag::default_language, sb::str("en")),
                     sb::elem(tag::schedule, {scope, full_programme("Jazz \"now\"", 7), sb::programme(open),
                                              sb::programme(next), sb::programme(tomorrow)})});
}

inline spi_builder::bytes information(const spi_builder::service_id& bearer) {
    namespace sb = spi_builder;
    return sb::si_object(0xE1, bearer.eid,
                         {{{"One", "Radio One", ""},
                           {bearer},
                           {{"image/png", "../logos/a.png", sb::logo_unrestricted, 128, 128},
                            {"image/png", "https://example.org/b.png", sb::logo_colour_square, {}, {}}}}});
}

inline dabspi::guide::programme_guide made() {
    dabspi::guide::guide_reader reader;
    reader.add_object(shared(information(kOne)), "", {});
    reader.add_object(shared(information({0xE1, 0xC186, 0xC221, 0})), "", {});
    reader.add_object(shared(schedule()), "", {});
    reader.add_image(shared({0x89, 'P', 'N', 'G'}), "../logos/a.png");
    return reader.finish();
}

}  // namespace example_guide
