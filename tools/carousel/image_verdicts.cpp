#include "tools/carousel/image_verdicts.h"

#include <filesystem>
#include <set>

#include "src/logo_db/logo_rules.h"
#include "src/parse/mot_content.h"
#include "tools/check/png_check.h"
#include "tools/text/utf8.h"

namespace dabspi::carousel {

namespace {

struct logo_pixels {
    unsigned width;
    unsigned height;
};

// The nearer one of the two sizes that receivers write.
logo_pixels wanted_size(const spi::SpiLogoInfo& logo, const image_header& image) {
    if (logo.size_code == spi::LOGO_SIZE_128x128) return {128, 128};
    if (logo.size_code == spi::LOGO_SIZE_320x240) return {320, 240};
    return image.width > image.height ? logo_pixels{320, 240} : logo_pixels{128, 128};
}

std::string pixels_text(unsigned width, unsigned height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

image_verdict verdict_of(const carousel_object& object, const spi::SpiLogoInfo& logo) {
    image_verdict verdict;
    const bytes& body = *object.sent.body;
    const logo_pixels size = wanted_size(logo, *object.image);
    const std::string convert = logo_command(object.source, size.width, size.height);
    switch (spi::refusal_of_logo(logo, static_cast<std::uint32_t>(body.size()))) {
        case spi::logo_refusal::none: break;
        case spi::logo_refusal::no_station:
            verdict.why = "its service has no bearer when the logo is read";
            verdict.remedy = "put the bearers of the service in front of its mediaDescription";
            return verdict;
        case spi::logo_refusal::long_service_id:
            verdict.why = "its service has an identifier of 32 bits";
            verdict.remedy = "announce logos for programme services only";
            return verdict;
        case spi::logo_refusal::format:
            verdict.why = "it is not announced as PNG";
            verdict.remedy = convert;
            return verdict;
        case spi::logo_refusal::size_code:
            verdict.why = "only logos of 128 x 128 and 320 x 240 are written";
            verdict.remedy = convert;
            verdict.other_size = true;
            return verdict;
        case spi::logo_refusal::too_large:
            verdict.why = "it has " + std::to_string(body.size()) + " bytes, and " +
                          std::to_string(spi::kLargestLogo) + " are written at most";
            verdict.remedy = convert;
            return verdict;
        case spi::logo_refusal::no_name:
        case spi::logo_refusal::larger_there:
            verdict.why = "it is announced without a name";
            verdict.remedy = "give the multimedia element a url";
            return verdict;
    }
    if (object.sent.content_subtype != spi::kMotPng && object.sent.content_subtype != spi::kMotJfif) {
        verdict.why = std::string("it is a ") + object.image->kind + " image, which receivers drop";
        verdict.remedy = convert;
        return verdict;
    }
    const check::png_verdict png = check::check_png(body);
    if (!png.good) {
        verdict.why = "it is announced as PNG, and is none that can be shown: " + png.fault;
        verdict.remedy = convert;
    } else if (png.width != size.width || png.height != size.height) {
        verdict.why = "it is announced as " + pixels_text(size.width, size.height) + ", and has " +
                      pixels_text(png.width, png.height);
        verdict.remedy = convert;
    } else {
        verdict.written = true;
    }
    return verdict;
}

}  // namespace

std::string logo_command(const std::string& from, unsigned width, unsigned height) {
    const std::filesystem::path path(from);
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    std::string stem = path.stem().string();
    const std::string ending = "-" + size;
    if (stem.size() < ending.size() || stem.compare(stem.size() - ending.size(), ending.size(), ending) != 0)
        stem += ending;
    const std::string to = (path.parent_path() / (stem + ".png")).string();
    const auto quoted = [](const std::string& name) {
        std::string result = "'";
        for (const char c : name)
            result += c == '\'' ? std::string("'\\''") : std::string(1, c);
        return result + "'";
    };
    return "convert " + quoted(from) + " -resize " + size + " -background none -gravity center -extent " +
           size + " -strip +dither -colors 32 " + quoted("PNG8:" + to);
}

std::vector<image_verdict> image_verdicts(const std::vector<carousel_object>& objects,
                                          const described_services& described) {
    std::vector<image_verdict> all;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (!objects[i].image) continue;
        image_verdict verdict;
        verdict.why = "no service information announces it";
        verdict.remedy = "announce it: a multimedia element with the url " + in_quotes(objects[i].sent.name);
        for (const spi::SpiLogoInfo& logo : described.logos) {
            if (logo.name != objects[i].sent.name || verdict.written) continue;
            verdict = verdict_of(objects[i], logo);
            verdict.station = logo.service.val();
        }
        verdict.object = i;
        all.push_back(std::move(verdict));
    }
    // A size for other receivers needs no remedy where the station has one of those that are written.
    std::set<std::uint64_t> shown;
    for (const image_verdict& each : all)
        if (each.written) shown.insert(each.station);
    for (image_verdict& each : all)
        if (each.other_size && shown.count(each.station) != 0) each.remedy.clear();
    return all;
}

}  // namespace dabspi::carousel
