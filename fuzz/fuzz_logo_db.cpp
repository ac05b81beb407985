// The logo store under a sequence of announcements, images, clearings and changes of the root that the input
// decides, some of the writes failing half-way, against a model of it: what is told, and which files with
// which contents stand in the root in the end.
#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <tuple>

#include "fuzz/fuzz_support.h"
#include "fuzz/without_threads.h"
#include "src/event/payloads.h"
#include "src/logo_db/spi_logo_db.h"

namespace {

// The next write takes this many bytes at most; the disk is full behind them.
std::size_t space_left = SIZE_MAX;

}  // namespace

extern "C" ssize_t __real_write(int, const void*, std::size_t);
extern "C" ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
    if (space_left == 0 && size > 0) {
        errno = ENOSPC;
        return -1;
    }
    return __real_write(descriptor, bytes, std::min(size, space_left));
}

namespace {

constexpr int kLongestStory = 24;  // calls

using file_tree = std::map<std::string, std::string>;

std::string hex(unsigned long value) {
    char text[20];
    std::snprintf(text, sizeof text, "%lX", value);
    return text;
}

bool starts_with(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

// What a receiver's logo store does, told in files and names alone.
struct store_model {
    std::map<std::tuple<unsigned, unsigned, unsigned>, std::vector<spi::SpiLogoInfo>> announced;
    file_tree files;
    bool root_is_there = true;
    bool root_is_set = true;

    static std::tuple<unsigned, unsigned, unsigned> key(const spi::ServElemId& id) {
        return {id.ecc, id.sid, id.scids};
    }
    static std::string file_name(const spi::SpiLogoInfo& logo) {
        const spi::ServElemId& id = logo.service;
        const std::string station = id.sid > 0xFFFF ? hex(id.sid) : hex(id.ecc) + hex(id.sid) + hex(id.scids);
        const std::string ending = logo.image_format == 1 ? "JPG" : logo.image_format == 2 ? "PNG" : "";
        return station + '_' + hex(logo.size_code) + '.' + ending;
    }
    static std::string searched_station(const spi::ServElemId& id) {
        return hex(id.ecc * 0x100000UL + id.sid % 0x10000 * 0x10UL + id.scids % 16U);
    }

    // The names that are told.
    std::vector<std::string> image(const spi::MotBodyMetadata& metadata, const std::string& body,
                                   const spi::ServElemId& with, std::size_t first_space) {
        std::vector<std::string> reported;
        const bool logo_image = metadata.user_application_type == 7 && metadata.content_type == 2 &&
                                (metadata.content_subtype == 1 || metadata.content_subtype == 3);
        if (!logo_image) return reported;
        std::vector<spi::SpiLogoInfo> others;
        std::vector<spi::SpiLogoInfo> matching;
        for (const spi::SpiLogoInfo& logo : announced[key(with)])
            (logo.name == metadata.content_name ? matching : others).push_back(logo);
        announced[key(with)] = others;
        for (const spi::SpiLogoInfo& logo : matching) {
            const std::string station = searched_station(logo.service);
            const bool root_works = root_is_set && root_is_there;
            if (logo.size_code == 3 && root_works && has(station + "_4.")) continue;
            const bool writable = logo.service.sid > 0 && logo.service.sid < 0x10000 &&
                                  logo.service.ecc > 0 && logo.image_format == 2 &&
                                  (logo.size_code == 3 || logo.size_code == 4) && body.size() <= 22528;
            if (!writable || !root_works) continue;
            const std::string name = file_name(logo);
            files[name] = body.substr(0, std::min(first_space, body.size()));
            if (body.size() <= first_space) {
                reported.push_back(name);
            } else {
                remove(station + '_' + hex(logo.size_code));
            }
        }
        return reported;
    }
    bool has(const std::string& start) const {
        const auto found = files.lower_bound(start);
        return found != files.end() && starts_with(found->first, start);
    }
    void remove(const std::string& start) {
        for (auto file = files.lower_bound(start); file != files.end() && starts_with(file->first, start);)
            file = files.erase(file);
    }
};

void put(file_tree& files, const std::string& name, const std::string& content) {
    files[name] = content;
    std::ofstream(root() + '/' + name, std::ios::binary) << content;
}

file_tree files_in_root() {
    file_tree files;
    for (const auto& entry : std::filesystem::directory_iterator(root())) {
        std::ifstream in(entry.path(), std::ios::binary);
        files[entry.path().filename().string()] = {std::istreambuf_iterator<char>(in), {}};
    }
    return files;
}

spi::ServElemId any_station(FuzzedDataProvider& input) {
    static const std::uint32_t kSids[] = {0xC221, 0xC222, 0x21, 0, 0x1C221, 0xE1C00098};
    static const std::uint8_t kEccs[] = {0xE1, 0xE2, 0x01, 0};
    spi::ServElemId id;
    id.sid = input.PickValueInArray(kSids);
    id.ecc = input.PickValueInArray(kEccs);
    id.scids = input.ConsumeBool() ? input.ConsumeIntegral<std::uint8_t>() : std::uint8_t{0};
    return id;
}

spi::ServElemId any_data_service(FuzzedDataProvider& input) {
    return {0xE1C00098, 0xE1, input.ConsumeIntegralInRange<std::uint8_t>(0, 1)};
}

std::string any_content_name(FuzzedDataProvider& input) {
    static const char* const kNames[] = {"a.png", "b.png", "", "../c.png"};
    return input.PickValueInArray(kNames);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const without_threads none;
    keeping_router router;
    spi::SpiLogoDb store;
    router.register_queue(&store);
    store_model model;
    spi::SpiLogoData::set_root(root());
    const auto handle = [&](std::shared_ptr<spi::i_evt_base> payload) {
        spi::event e(spi::QID_LOGODB, std::move(payload));
        store.process_event(e);
    };
    for (int left = input.ConsumeIntegralInRange(0, 3); left > 0; --left) {  // from an earlier life
        static const char* const kStanding[] = {"E1C2210_4.PNG",  "E1C2210_3.PNG", "E1C2210_4.JPG",
                                                "E1C2210_33.txt", "1C2210_4.",     "E1C2220_4",
                                                "1C2210_3.PNG",   "other"};
        put(model.files, input.PickValueInArray(kStanding), "old");
    }
    for (int calls = 0; calls < kLongestStory && input.remaining_bytes() > 0; ++calls) {
        switch (input.ConsumeIntegralInRange(0, 8)) {
            case 0:
                handle(std::make_shared<spi::db_clear_event>());
                model.announced.clear();
                break;
            case 1: {
                const int where = input.ConsumeIntegralInRange(0, 2);
                model.root_is_set = where != 0;
                model.root_is_there = where != 1;
                handle(std::make_shared<spi::logo_root_event>(where == 0   ? ""
                                                              : where == 1 ? root() + "/missing"
                                                                           : root()));
                break;
            }
            case 2:
            case 3:
            case 4: {
                const spi::ServElemId with = any_data_service(input);
                spi::SiServiceInfo description;
                for (int logos = input.ConsumeIntegralInRange(0, 4); logos > 0; --logos) {
                    spi::SpiLogoInfo logo;
                    logo.service = any_station(input);
                    logo.image_format = input.ConsumeIntegralInRange<std::uint8_t>(0, 2);
                    logo.size_code = input.ConsumeIntegralInRange<std::uint8_t>(0, 6);
                    logo.name = any_content_name(input);
                    description.logos.push_back(logo);
                    model.announced[store_model::key(with)].push_back(logo);
                }
                handle(std::make_shared<spi::si_service_event>(with, std::move(description)));
                break;
            }
            default: {
                const spi::ServElemId with = any_data_service(input);
                spi::MotBodyMetadata metadata{7, 2, 3, any_content_name(input)};
                if (input.ConsumeIntegralInRange(0, 7) == 0) {
                    metadata.user_application_type = input.ConsumeIntegralInRange<std::uint16_t>(6, 8);
                    metadata.content_type = input.ConsumeIntegralInRange<std::uint8_t>(1, 3);
                    metadata.content_subtype = input.ConsumeIntegralInRange<std::uint16_t>(0, 4);
                }
                // Seldom one at the largest size that is written, or one byte above.
                const int kind = input.ConsumeIntegralInRange(0, 15);
                const std::string body = kind == 15
                                             ? std::string(22528 + input.ConsumeBool(), 'x')
                                             : input.ConsumeBytesAsString(static_cast<std::size_t>(kind));
                space_left = input.ConsumeIntegralInRange(0, 5) == 0
                                 ? input.ConsumeIntegralInRange<std::size_t>(0, body.size())
                                 : SIZE_MAX;
                handle(std::make_shared<spi::image_body_event>(
                    metadata, body_of(reinterpret_cast<const std::uint8_t*>(body.data()), body.size()),
                    with));
                const std::vector<std::string> expected = model.image(metadata, body, with, space_left);
                space_left = SIZE_MAX;
                std::vector<std::string> reported;
                for (const spi::event& e : router.events) {
                    expect(e.destination == spi::QID_CBHDL, "logos are told to the listener");
                    reported.push_back(dynamic_cast<const spi::si_logo_event&>(*e.payload).logo.name);
                }
                router.events.clear();
                expect(reported == expected, "store and model tell the same logos");
            }
        }
        expect(router.events.empty(), "images alone are told");
    }
    expect(files_in_root() == model.files, "store and model leave the same files");
    for (const auto& [name, content] : model.files)
        ::unlink((root() + '/' + name).c_str());
    return 0;
}
