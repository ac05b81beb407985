// Content identifiers and times of any bytes: bounded by their attribute, defined for every value, with
// consistent forms.
#include "fuzz/fuzz_support.h"
#include "src/parse/mot_date_time.h"
#include "src/parse/pi_schedule_programme.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_time_point.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const auto offset = static_cast<std::uint16_t>(data[0] << 8 | data[1]);
    spi::ReadBuffer buffer(body_of(data + 2, size - 2));
    {
        spi::spi_parseable attr(buffer);
        const std::uint32_t begin = buffer.pos;
        spi::ServElemId any;
        expect(any.parse(attr) == 0, "the first form always succeeds");
        expect(any.scids <= 15, "four bits of SCIdS");
        expect(buffer.pos <= std::max(begin, attr.end), "reads stay in the attribute");
        buffer.pos = begin;
        spi::ServElemId filtered;
        if (filtered.parse(attr, offset) == 0) {
            expect(filtered == any, "both forms read the same");
        } else {
            expect(filtered == spi::ServElemId(), "another ensemble changes nothing");
        }
        buffer.pos = begin;
        spi::PiScheduleProgramme programme;
        programme.duration = offset;
        expect(programme.time.parse(attr) == 0, "a time always parses");
        expect(programme.time.mjd <= 0x1FFFF && programme.time.hour <= 31 && programme.time.minute <= 63 &&
                   programme.time.second < 63 && programme.time.lto >= -30 && programme.time.lto <= 30,
               "fields have the widths of their coding");
        const spi::MotDateTime start = programme.time.local_time(0);
        const spi::MotDateTime end = programme.time.local_time(offset);
        expect(start.time().size() >= 5 && end.date().size() >= 8, "texts of every value");
        expect(programme.sig().size() > 10, "a signature of every value");
        if (offset < 60) expect(programme.match_tp(start), "the start minute belongs to the programme");
    }
    return 0;
}
