#include "tools/transmit/fic/fic_writer.h"

#include <algorithm>

#include "tools/air/crc16.h"
#include "tools/transmit/fic/label.h"

namespace dabspi::transmit {

namespace {

constexpr std::size_t kFibBytes = 32;
constexpr std::size_t kFigBytes = 30;  // of a FIB
constexpr std::size_t kFigData = 29;
constexpr std::uint8_t kEndMarker = 0xFF;
constexpr unsigned kFramesOfSecond = 40;  // a little less than one
constexpr std::int64_t kMillisecondsOfDay = 86'400'000;

constexpr unsigned kPacketMode = 3;
constexpr unsigned kDabPlus = 63;  // ASCTy
constexpr unsigned kMotType = 60;  // DSCTy
constexpr unsigned kSpiApplicationType = 7;
constexpr unsigned kSpiComponent = 1;  // SCId
constexpr unsigned kFecScheme = 1;
constexpr unsigned kLevel3 = 2;
constexpr unsigned kInternationalTable = 1;
constexpr std::uint8_t kBasicProfile = 0x01;

bytes fig(unsigned type, const bytes& data) {
    bytes made;
    append_number(made, type << 5 | data.size(), 1);
    append_bytes(made, data);
    return made;
}

// Type 0 of the current configuration of this ensemble.
bytes fig_0(unsigned extension, const bytes& fields, bool long_sid = false) {
    bytes data;
    append_number(data, (long_sid ? 0x20U : 0U) | extension, 1);
    append_bytes(data, fields);
    return fig(0, data);
}

// Type 1: a label.
bytes fig_1(unsigned extension, std::uint32_t id, unsigned id_bytes, const std::string& text) {
    const label_field label = label_of(text);
    bytes data;
    append_number(data, unsigned{label.charset} << 4 | extension, 1);
    append_number(data, id, id_bytes);
    append_bytes(data, label.characters);
    append_number(data, label.flags, 2);
    return fig(1, data);
}

bytes fig_0_0(std::uint16_t eid, std::uint64_t count) {
    bytes fields;
    append_number(fields, eid, 2);
    append_number(fields, count / 250 % 20, 1);
    append_number(fields, count % 250, 1);
    return fig_0(0, fields);
}

bytes fig_0_10(std::int64_t milliseconds) {
    const std::int64_t day = milliseconds / kMillisecondsOfDay;
    const std::int64_t of_day = milliseconds % kMillisecondsOfDay;
    const std::int64_t second = of_day / 1000;
    bytes fields;
    append_number(
        fields,
        static_cast<std::uint64_t>((day & 0x1FFFF) << 14 | 0x800 | second / 3600 << 6 | second / 60 % 60), 4);
    append_number(fields, static_cast<std::uint64_t>(second % 60 << 10 | of_day % 1000), 2);
    return fig_0(10, fields);
}

void append_sub_channel(bytes& to, const announced_sub_channel& of) {
    append_number(to, unsigned{of.id} << 10 | of.start, 2);
    append_number(to, 0x8000 | kLevel3 << 10 | of.units(), 2);
}

class fib {
 public:
    explicit fib(std::uint8_t* to) : to_(to) {}
    bool put(const bytes& fig) {
        if (fig.size() > kFigBytes - size_) return false;
        std::copy(fig.begin(), fig.end(), to_ + size_);
        size_ += fig.size();
        return true;
    }
    void finish() {
        std::fill(to_ + size_, to_ + kFigBytes, std::uint8_t{0});
        if (size_ < kFigBytes) to_[size_] = kEndMarker;
        const std::uint16_t crc = air::crc16({to_, kFigBytes});
        to_[kFigBytes] = static_cast<std::uint8_t>(crc >> 8);
        to_[kFigBytes + 1] = static_cast<std::uint8_t>(crc);
    }

 private:
    std::uint8_t* to_;
    std::size_t size_ = 0;
};

}  // namespace

fic_writer::fic_writer(const announced_ensemble& of) : eid_(of.eid) {
    const int half_hours = of.offset_half_hours;
    bytes fields;
    append_number(fields, (half_hours < 0 ? 0x20U : 0U) | static_cast<unsigned>(std::abs(half_hours)), 1);
    append_number(fields, of.ecc, 1);
    append_number(fields, kInternationalTable, 1);
    offset_ = fig_0(9, fields);
    add_organisation(of);
    add_labels(of);
}

void fic_writer::add_organisation(const announced_ensemble& of) {
    bytes fields;
    append_sub_channel(fields, of.spi);
    if (!of.services.empty()) append_sub_channel(fields, of.sound);
    figs_.push_back(fig_0(1, fields));

    fields.clear();
    append_number(fields, of.spi_sid, 4);
    append_number(fields, 1, 1);
    append_number(fields, kPacketMode << 14 | kSpiComponent << 2 | 2U, 2);
    figs_.push_back(fig_0(2, fields, true));

    fields.clear();
    append_number(fields, kSpiComponent << 4, 2);
    append_number(fields, kMotType, 1);
    append_number(fields, unsigned{of.spi.id} << 10 | of.spi_address, 2);
    figs_.push_back(fig_0(3, fields));

    fields.clear();
    append_number(fields, of.spi_sid, 4);
    append_number(fields, 0, 1);
    append_number(fields, 0x8000 | kSpiComponent, 2);
    figs_.push_back(fig_0(8, fields, true));

    fields.clear();
    append_number(fields, of.spi_sid, 4);
    append_number(fields, 1, 1);  // SCIdS 0, one application
    append_number(fields, kSpiApplicationType << 5 | 1, 2);
    append_number(fields, kBasicProfile, 1);
    figs_.push_back(fig_0(13, fields, true));

    if (of.spi_fec) {
        fields.clear();
        append_number(fields, unsigned{of.spi.id} << 2 | kFecScheme, 1);
        figs_.push_back(fig_0(14, fields));
    }

    constexpr std::size_t kServiceBytes = 5;
    fields.clear();
    for (const announced_service& each : of.services) {
        append_number(fields, each.sid, 2);
        append_number(fields, 1, 1);
        append_number(fields, kDabPlus << 8 | unsigned{of.sound.id} << 2 | 2U, 2);
        if (fields.size() + kServiceBytes < kFigData && &each != &of.services.back()) continue;
        figs_.push_back(fig_0(2, fields));
        fields.clear();
    }
}

void fic_writer::add_labels(const announced_ensemble& of) {
    figs_.push_back(fig_1(0, of.eid, 2, of.label));
    figs_.push_back(fig_1(5, of.spi_sid, 4, of.spi_label));
    for (const announced_service& each : of.services)
        figs_.push_back(fig_1(1, each.sid, 2, each.label));
}

void fic_writer::write(std::uint64_t count, std::int64_t milliseconds, std::uint8_t* to) {
    std::size_t sent = 0;
    for (std::size_t i = 0; i < kFicBytes / kFibBytes; ++i) {
        fib block(to + i * kFibBytes);
        if (i == 0) {
            block.put(fig_0_0(eid_, count));
            if (count % kFramesOfSecond == 0) {
                block.put(fig_0_10(milliseconds));
                block.put(offset_);
            }
        }
        for (; sent < figs_.size() && block.put(figs_[next_]); ++sent)
            next_ = (next_ + 1) % figs_.size();
        block.finish();
    }
}

}  // namespace dabspi::transmit
