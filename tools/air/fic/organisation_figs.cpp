#include "tools/air/fic/organisation_figs.h"

#include <array>

#include "tools/air/fic/protection.h"

namespace dabspi::air {

namespace {

// The fields of one FIG, read front to back. What is not there reads as 0, and is remembered.
class field_reader {
 public:
    explicit field_reader(byte_view fields) : left_(fields) {}

    std::uint32_t take(std::size_t count) {
        if (left_.size() < count) cut_ = true;
        const std::uint32_t value = left_.number(0, count);
        left_ = left_.part(count);
        return value;
    }
    byte_view take_bytes(std::size_t count) {
        if (left_.size() < count) cut_ = true;
        const byte_view bytes = left_.part(0, count);
        left_ = left_.part(count);
        return bytes;
    }
    std::uint8_t next() const { return left_[0]; }
    bool more() const { return !left_.empty() && !cut_; }
    bool cut() const { return cut_; }

 private:
    byte_view left_;
    bool cut_ = false;
};

class organisation {
 public:
    organisation(bool long_id, byte_view fields, configuration& to)
        : long_id_(long_id), in_(fields), to_(to) {}

    fig_reading read(std::uint8_t extension) {
        while (in_.more()) {
            switch (extension) {
                case 1: sub_channel_organisation(); break;
                case 2: service(); break;
                case 3: packet_mode(); break;
                case 8: global_definition(); break;
                case 13: applications(); break;
                case 14: fec_scheme(); break;
                default: return {false, fig_problem::not_needed};
            }
        }
        return {changed_, in_.cut() ? fig_problem::malformed
                          : full_   ? fig_problem::over_limit
                                    : fig_problem::none};
    }

 private:
    template <class Map, class Key, class Value>
    void put(Map& into, const Key& key, const Value& value, std::size_t most = kMostComponents) {
        if (in_.cut()) return;
        const auto place = into.find(key);
        if (place != into.end()) {
            if (place->second == value) return;
            place->second = value;
        } else if (into.size() >= most) {
            full_ = true;
            return;
        } else {
            into.emplace(key, value);
        }
        changed_ = true;
    }

    std::uint32_t service_id() { return in_.take(long_id_ ? 4 : 2); }

    // 6.2.1
    void sub_channel_organisation() {
        const std::uint32_t head = in_.take(2);
        const auto id = static_cast<std::uint8_t>(head >> 10);
        sub_channel value;
        value.start = static_cast<std::uint16_t>(head & 0x3FF);
        if ((in_.next() & 0x80) == 0) {
            set_unequal_protection(value, static_cast<std::uint8_t>(in_.take(1) & 0x7F));
        } else {
            const std::uint32_t form = in_.take(2);
            set_equal_protection(value, static_cast<std::uint8_t>(form >> 12 & 7),
                                 static_cast<std::uint8_t>(form >> 10 & 3),
                                 static_cast<std::uint16_t>(form & 0x3FF));
        }
        put(to_.sub_channels, id, value);
    }

    // 6.3.1
    void service() {
        const std::uint32_t sid = service_id();
        const std::uint32_t head = in_.take(1);
        service_organisation value;
        value.long_id = long_id_;
        value.ca_system = static_cast<std::uint8_t>(head >> 4 & 7);
        for (std::uint32_t left = head & 0xF; left != 0 && !in_.cut(); --left) {
            const std::uint32_t field = in_.take(2);
            service_component each;
            each.mode = static_cast<transport>(field >> 14);
            each.primary = (field & 2) != 0;
            each.access_control = (field & 1) != 0;
            if (each.mode == transport::packet) {
                each.where = static_cast<std::uint16_t>(field >> 2 & 0xFFF);
            } else {
                each.type = static_cast<std::uint8_t>(field >> 8 & 0x3F);
                each.where = static_cast<std::uint16_t>(field >> 2 & 0x3F);
            }
            value.components.push_back(each);
        }
        put(to_.services, sid, value, kMostServices);
    }

    // 6.3.2
    void packet_mode() {
        const std::uint32_t head = in_.take(2);
        const std::uint32_t kind = in_.take(1);
        const std::uint32_t place = in_.take(2);
        if ((head & 1) != 0) in_.take(2);  // CAOrg
        packet_component value;
        value.data_groups = (kind & 0x80) == 0;
        value.type = static_cast<std::uint8_t>(kind & 0x3F);
        value.sub_channel = static_cast<std::uint8_t>(place >> 10);
        value.address = static_cast<std::uint16_t>(place & 0x3FF);
        put(to_.packet_components, static_cast<std::uint16_t>(head >> 4), value, 4096);
    }

    // 6.3.5
    void global_definition() {
        const std::uint32_t sid = service_id();
        const std::uint32_t head = in_.take(1);
        component_location value;
        value.packet = (in_.next() & 0x80) != 0;
        value.where = static_cast<std::uint16_t>(value.packet ? in_.take(2) & 0xFFF : in_.take(1) & 0x3F);
        if ((head & 0x80) != 0) in_.take(1);
        put(to_.definitions, component_id(sid, head & 0xF), value);
    }

    // 6.3.6
    void applications() {
        const std::uint32_t sid = service_id();
        const std::uint32_t head = in_.take(1);
        std::vector<user_application> value;
        for (std::uint32_t left = head & 0xF; left != 0 && !in_.cut(); --left) {
            const std::uint32_t field = in_.take(2);
            const byte_view data = in_.take_bytes(field & 0x1F);
            value.push_back({static_cast<std::uint16_t>(field >> 5), {data.begin(), data.end()}});
        }
        put(to_.user_applications, component_id(sid, head >> 4), value);
    }

    // 6.2.2
    void fec_scheme() {
        const std::uint32_t field = in_.take(1);
        put(to_.fec_schemes, static_cast<std::uint8_t>(field >> 2), static_cast<std::uint8_t>(field & 3));
    }

    const bool long_id_;
    field_reader in_;
    configuration& to_;
    bool changed_ = false;
    bool full_ = false;
};

}  // namespace

fig_reading read_organisation(std::uint8_t extension, bool long_id, byte_view fields, configuration& to) {
    return organisation(long_id, fields, to).read(extension);
}

}  // namespace dabspi::air
