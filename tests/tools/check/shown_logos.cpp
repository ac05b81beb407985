#include "tests/tools/check/shown.h"

namespace check_test {

using namespace spi_builder;
using dabspi::check::finding_code;

namespace {

broadcast announcing(const std::vector<logo_data>& logos) {
    return tuned().si("si.eib", information_object(station_with(logos)));
}

broadcast one_logo() {
    return announcing({logo("logo.png", 320, 240)});
}

bytes bearers_last() {
    const service_data service = station_with({logo("logo.png", 320, 240)});
    return elem(tag::service_information,
                {elem(tag::ensemble,
                      {attr(attribute::ensemble::id, join({u8(0xE1), u16(kEnsemble)})),
                       elem(tag::service, {name_elements(service.name),
                                           elem(tag::media_description, {multimedia(service.logos.front())}),
                                           elem(tag::service_bearer, {attr(attribute::service_bearer::id,
                                                                           content_id(kStation))})})})});
}

}  // namespace

std::vector<shown> shown_by_logos() {
    return {
        {finding_code::logo_no_station,
         [] { return tuned().si("si.eib", bearers_last()).image("logo.png", png(320, 240)); }, 3, "si.eib",
         "\"Station\": its bearers stand behind its media"},
        {finding_code::logo_32_bit,
         [] {
             service_data service = station_with({logo("logo.png", 320, 240)});
             service.bearers = {{0xE1, kEnsemble, 0xE1C00001, 0}};
             return tuned().si("si.eib", information_object(service)).image("logo.png", png(320, 240));
         },
         3, "si.eib", "E1.E1C00001.0"},
        {finding_code::logo_jpeg,
         [] {
             logo_data jpeg = logo("logo.jpg", 320, 240);
             jpeg.mime = "image/jpeg";
             return announcing({jpeg}).image("logo.jpg", png(320, 240));
         },
         3, "si.eib", "\"logo.jpg\", JPEG 320x240"},
        {finding_code::logo_format,
         [] {
             logo_data odd = logo("logo.Png", 320, 240);
             odd.mime = "";
             return announcing({odd}).image("logo.Png", png(320, 240));
         },
         3, "si.eib", "unknown format"},
        {finding_code::logo_size,
         [] { return announcing({logo("logo.png", 32, 32)}).image("logo.png", png(32, 32)); }, 3, "si.eib",
         "PNG 32x32"},
        {finding_code::logo_not_sent, one_logo, 3, "si.eib", "\"logo.png\", PNG 320x240 of E1.C221.0"},
        {finding_code::logo_not_announced, [] { return clean().image("other.png", png(320, 240)); }, 9,
         "other.png", "on data service E1.E1C00098.0", false},
        {finding_code::logo_early,
         [] {
             return tuned()
                 .image("logo.png", png(320, 240))
                 .si("si.eib", information_object(station_with({logo("logo.png", 320, 240)})));
         },
         3, "logo.png", "announced on line 4", false},
        {finding_code::logo_subtype, [] { return one_logo().image("logo.png", png(320, 240), 2); }, 4,
         "logo.png", "ContentSubType 2, BMP", false},
        {finding_code::logo_too_large, [] { return one_logo().image("logo.png", bytes(22529, 0)); }, 4,
         "logo.png", "22529 bytes, 1 too many", false},
        {finding_code::logo_larger_there,
         [] {
             return announcing({logo("128.png", 128, 128), logo("320.png", 320, 240)})
                 .image("320.png", png(320, 240))
                 .image("128.png", png(128, 128));
         },
         5, "128.png", "not written", false},
        {finding_code::logo_twice,
         [] {
             return one_logo()
                 .si("again.eib", information_object(station_with({logo("logo.png", 320, 240)})))
                 .image("logo.png", png(320, 240));
         },
         5, "logo.png", "E1C2210_4.PNG written 2 times", false},
        {finding_code::logo_not_png,
         [] { return one_logo().image("logo.png", str("<html>not found</html>")); }, 4, "logo.png",
         "it is no image", false},
        {finding_code::logo_other_size, [] { return one_logo().image("logo.png", png(240, 320)); }, 4,
         "logo.png", "the image has 240x320 pixels", false},
        {finding_code::logo_change_lost,
         [] {
             bytes other = png(320, 240);
             other.push_back(0);
             return one_logo().image("logo.png", png(320, 240)).image("logo.png", other);
         },
         5, "logo.png", "differs from the image of line 4", false},
    };
}

}  // namespace check_test
