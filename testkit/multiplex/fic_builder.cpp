#include "testkit/multiplex/fic_builder.h"

#include <algorithm>
#include <stdexcept>

#include "testkit/multiplex/appending.h"

namespace multiplex_builder {

namespace {

constexpr std::size_t kFigs = 30;

bool is_long(std::uint32_t sid) {
    return sid > 0xFFFF;
}

fig_flags with_id(fig_flags flags, std::uint32_t sid) {
    flags.long_id = is_long(sid);
    return flags;
}

void put_id(bytes& to, std::uint32_t sid) {
    put(to, sid, is_long(sid) ? 4 : 2);
}

bytes label(unsigned extension, unsigned charset, const bytes& id, const std::string& characters,
            char filling) {
    bytes data;
    put(data, charset << 4 | extension, 1);
    append(data, id);
    std::string text = characters;
    text.resize(16, filling);
    data.insert(data.end(), text.begin(), text.end());
    put(data, 0xFF00, 2);
    return fig(1, data);
}

}  // namespace

bytes fig(unsigned type, const bytes& data) {
    if (data.size() > 29) throw std::length_error("a FIG has at most 29 bytes");
    bytes result(1 + data.size());
    result[0] = static_cast<std::uint8_t>(type << 5 | data.size());
    std::copy(data.begin(), data.end(), result.begin() + 1);
    return result;
}

bytes fig_0(unsigned extension, const bytes& fields, const fig_flags& flags) {
    bytes data;
    put(data,
        (flags.next ? 0x80U : 0U) | (flags.others ? 0x40U : 0U) | (flags.long_id ? 0x20U : 0U) | extension,
        1);
    append(data, fields);
    return fig(0, data);
}

bytes fig_0_0(std::uint16_t eid, unsigned count, unsigned change, unsigned occurrence) {
    bytes fields;
    put(fields, eid, 2);
    put(fields, change << 6 | count / 250 % 20, 1);
    put(fields, count % 250, 1);
    if (change != 0) put(fields, occurrence % 250, 1);
    return fig_0(0, fields);
}

bytes fig_0_1_short(unsigned sub_channel, unsigned start, unsigned index, const fig_flags& flags) {
    bytes fields;
    put(fields, sub_channel << 10 | start, 2);
    put(fields, index, 1);
    return fig_0(1, fields, flags);
}

bytes fig_0_1_long(unsigned sub_channel, unsigned start, unsigned option, unsigned level, unsigned size,
                   const fig_flags& flags) {
    bytes fields;
    put(fields, sub_channel << 10 | start, 2);
    put(fields, 0x8000 | option << 12 | level << 10 | size, 2);
    return fig_0(1, fields, flags);
}

bytes fig_0_2(std::uint32_t sid, const std::vector<component_field>& components, const fig_flags& flags) {
    bytes fields;
    put_id(fields, sid);
    put(fields, components.size(), 1);
    for (const component_field& each : components) {
        const unsigned place = each.mode == 3 ? each.where << 2 : each.type << 8 | each.where << 2;
        put(fields, each.mode << 14 | place | (each.primary ? 2U : 0U) | (each.access_control ? 1U : 0U), 2);
    }
    return fig_0(2, fields, with_id(flags, sid));
}

bytes fig_0_3(unsigned scid, unsigned sub_channel, unsigned address, unsigned type, bool data_groups,
              std::optional<std::uint16_t> ca_organisation, const fig_flags& flags) {
    bytes fields;
    put(fields, scid << 4 | (ca_organisation ? 1U : 0U), 2);
    put(fields, (data_groups ? 0U : 0x80U) | type, 1);
    put(fields, sub_channel << 10 | address, 2);
    if (ca_organisation) put(fields, *ca_organisation, 2);
    return fig_0(3, fields, flags);
}

bytes fig_0_8(std::uint32_t sid, unsigned scids, bool packet, unsigned where, bool extended) {
    bytes fields;
    put_id(fields, sid);
    put(fields, (extended ? 0x80U : 0U) | scids, 1);
    if (packet) {
        put(fields, 0x8000 | where, 2);
    } else {
        put(fields, where, 1);
    }
    if (extended) put(fields, 0, 1);
    return fig_0(8, fields, with_id({}, sid));
}

bytes fig_0_9(int half_hours, unsigned ecc) {
    bytes fields;
    put(fields,
        (half_hours < 0 ? 0x20U : 0U) | static_cast<unsigned>(half_hours < 0 ? -half_hours : half_hours), 1);
    put(fields, ecc, 1);
    put(fields, 1, 1);
    return fig_0(9, fields);
}

bytes fig_0_10(unsigned day, unsigned hour, unsigned minute, std::optional<unsigned> milliseconds) {
    bytes fields;
    put(fields, std::uint64_t{day} << 14 | (milliseconds ? 0x800U : 0U) | hour << 6 | minute, 4);
    if (milliseconds) put(fields, *milliseconds / 1000 << 10 | *milliseconds % 1000, 2);
    return fig_0(10, fields);
}

bytes fig_0_13(std::uint32_t sid, unsigned scids, const std::vector<std::pair<unsigned, bytes>>& applications,
               const fig_flags& flags) {
    bytes fields;
    put_id(fields, sid);
    put(fields, scids << 4 | applications.size(), 1);
    for (const auto& [type, data] : applications) {
        put(fields, std::uint64_t{type} << 5 | data.size(), 2);
        append(fields, data);
    }
    return fig_0(13, fields, with_id(flags, sid));
}

bytes fig_0_14(unsigned sub_channel, unsigned scheme, const fig_flags& flags) {
    return fig_0(14, {static_cast<std::uint8_t>(sub_channel << 2 | scheme)}, flags);
}

bytes ensemble_label(std::uint16_t eid, const std::string& characters, unsigned charset, char filling) {
    bytes id;
    put(id, eid, 2);
    return label(0, charset, id, characters, filling);
}

bytes service_label(std::uint32_t sid, const std::string& characters, unsigned charset, char filling) {
    bytes id;
    put_id(id, sid);
    return label(is_long(sid) ? 5 : 1, charset, id, characters, filling);
}

bytes component_label(std::uint32_t sid, unsigned scids, const std::string& characters, unsigned charset) {
    bytes id;
    put(id, (is_long(sid) ? 0x80U : 0U) | scids, 1);
    put_id(id, sid);
    return label(4, charset, id, characters, '\0');
}

// Counted on by days, from 1858-11-17.
unsigned day_number(int year, unsigned month, unsigned day) {
    constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const auto is_leap = [](int of) { return (of % 4 == 0 && of % 100 != 0) || of % 400 == 0; };
    unsigned number = 365 - 321 + 1;  // of 1859-01-01
    for (int each = 1859; each < year; ++each)
        number += is_leap(each) ? 366U : 365U;
    for (unsigned each = 1; each < month; ++each)
        number += kDays[each - 1] + (each == 2 && is_leap(year) ? 1U : 0U);
    return number + day - 1;
}

bytes fibs(const std::vector<bytes>& figs) {
    bytes all;
    bytes block;
    const auto close = [&] {
        if (block.size() < kFigs) block.push_back(0xFF);
        block.resize(kFigs);
        append(all, with_crc16(block));
        block.clear();
    };
    for (const bytes& each : figs) {
        if (block.size() + each.size() > kFigs) close();
        append(block, each);
    }
    if (!block.empty() || all.empty()) close();
    return all;
}

bytes fic(const std::vector<bytes>& figs) {
    bytes all = fibs(figs);
    if (all.size() > 96) throw std::length_error("more FIGs than three FIBs hold");
    while (all.size() < 96)
        append(all, fibs({}));
    return all;
}

}  // namespace multiplex_builder
