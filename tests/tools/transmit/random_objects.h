// Objects and settings of carousels, the same for the same seed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "testkit/ensemble/dice.h"
#include "tools/transmit/packets/packet_writer.h"
#include "tools/transmit/schedule/order.h"

namespace transmit_test {

using dabspi::spi_object::bytes;
using dabspi::transmit::importance;
using dabspi::transmit::sent_object;

inline bytes random_body(soak::dice& dice, int most) {
    bytes body(static_cast<std::size_t>(dice.one_in(12) ? 0 : dice.between(1, most)));
    const bool is_text = dice.one_in(2);
    for (std::uint8_t& each : body)
        each = static_cast<std::uint8_t>(is_text ? 'a' + dice.below(3) : dice.below(256));
    return body;
}

struct random_carousel {
    std::vector<sent_object> objects;
    std::vector<importance> importances;
    dabspi::transmit::carousel_settings settings;
    dabspi::transmit::packet_settings packets;

    explicit random_carousel(std::uint64_t seed) {
        using namespace dabspi::transmit;
        soak::dice dice(seed, 17);
        const int count = dice.between(1, 12);
        for (int i = 0; i < count; ++i) {
            sent_object each;
            each.name = (dice.one_in(3) ? "größe " : "object ") + std::to_string(i);
            const bool image = dice.one_in(3);
            each.content_type = image ? 2 : 7;
            each.content_subtype = static_cast<std::uint16_t>(dice.below(image ? 4 : 3));
            each.body = std::make_shared<const bytes>(random_body(dice, image ? 6000 : 1500));
            if (dice.one_in(3)) compress_where_it_helps(each);
            if (dice.one_in(2)) {
                dabspi::spi_object::time_value time;
                time.mjd = 61109;
                time.hour = static_cast<unsigned>(dice.below(24));
                time.minute = static_cast<unsigned>(dice.below(60));
                if (dice.one_in(4)) time.second = static_cast<unsigned>(dice.between(1, 59));
                each.scope_start = time;
                each.scope_end = time;
                each.scope_id = {0x40, 0xE1, 0xC1, 0x85, 0xC2, 0x21};
            }
            objects.push_back(each);
            importances.push_back(static_cast<importance>(dice.below(static_cast<int>(kImportances))));
        }
        settings.mode = dice.one_in(4) ? carousel_mode::header : carousel_mode::directory;
        settings.directory = static_cast<directory_form>(dice.below(3));
        constexpr name_charset kCharsets[] = {name_charset::utf_8, name_charset::ebu_latin,
                                              name_charset::iso_8859_1};
        settings.charset = kCharsets[dice.below(3)];
        settings.segment_size = static_cast<std::size_t>(dice.between(16, 2000));
        packets.address = static_cast<std::uint16_t>(dice.between(1, 1021));
        packets.frame_size = 24 * static_cast<std::size_t>(dice.between(1, 9));
        packets.packet_size = 24 * static_cast<std::size_t>(dice.between(1, 4));
        packets.fec = dice.one_in(2);
    }
};

}  // namespace transmit_test
