// A server that gets logos, one after the other, in a root that is treated badly; through either interface.
// The root's whole tree, and that of a neighbouring directory, are looked at afterwards.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "src/event/quiet.h"
#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"
#include "tests/support/captured_debug.h"

// Every entry below a directory: "directory", "-> target", "pipe", "device", or a file's content.
inline std::map<std::string, std::string> tree(const std::filesystem::path& root) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> entries;
    if (!fs::is_directory(root)) return entries;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        std::string& what = entries[fs::relative(entry.path(), root).string()];
        switch (entry.symlink_status().type()) {
            case fs::file_type::symlink: what = "-> " + fs::read_symlink(entry.path()).string(); break;
            case fs::file_type::directory: what = "directory"; break;
            case fs::file_type::fifo: what = "pipe"; break;
            case fs::file_type::character: what = "device"; break;
            default: {
                std::ifstream in(entry.path(), std::ios::binary);
                what.assign(std::istreambuf_iterator<char>(in), {});
            }
        }
    }
    return entries;
}

using entries_t = std::map<std::string, std::string>;

class logo_reception {
 protected:
    explicit logo_reception(surface interface)
        : interface_(interface), root(here.at("/HdStationLogo")), outside(here.at("/outside")) {
        here.notes_calls = false;
        std::filesystem::create_directories(root);
        std::filesystem::create_directories(outside);
        subject = make_host(interface, notes, root);
        subject->construct();
        subject->set_time(2, 10, 30);
        subject->tune(on_air::kStation, on_air::kEnsemble);
    }
    ~logo_reception() {
        subject->destroy();
        EXPECT_TRUE(spi::wait_until_quiet(std::chrono::milliseconds(0)));
    }

    // Announces the station's logo under a name of its own, so that no announcement meets an older one.
    std::string announce(bool large = true) {
        const std::string name = "logo" + std::to_string(++announced_) + ".png";
        const auto logo = large ? on_air::large_logo(name) : on_air::small_logo(name);
        subject->feed(7, 0, name.c_str(),
                      spi_builder::si_object(on_air::kEcc, on_air::kEnsemble,
                                             {on_air::station(on_air::kStation, "Radio 4", {logo})}));
        settle();
        return name;
    }
    void receive(const std::string& name) {
        subject->feed(2, 3, name.c_str(), on_air::png());
        settle();
    }
    void announce_and_receive(bool large = true) { receive(announce(large)); }
    static void settle() { EXPECT_TRUE(spi::wait_until_quiet(std::chrono::minutes(1))); }

    // Logos reported since this was last asked.
    std::vector<std::string> reported() {
        const std::vector<std::string> all = notes.all();
        const std::vector<std::string> fresh(all.begin() + static_cast<std::ptrdiff_t>(seen_), all.end());
        seen_ = all.size();
        return fresh;
    }
    std::vector<std::string> messages() {
        std::vector<std::string> all;
        for (const ZebDebugMessage& message : debug.take())
            all.push_back(std::to_string(message.line) + " " + message.text);
        return all;
    }
    // The root as the store names it: the wrapper's brings a slash of its own.
    std::string missing_root(int line) const {
        const std::string directory = interface_ == surface::kCore ? root + "/" : "/HdStationLogo//";
        return std::to_string(line) + " Failed: Station Logo path:[" + directory + "]\n";
    }

    const surface interface_;
    captured_debug debug;
    sandbox here;
    const std::string root;
    const std::string outside;
    listener_notes notes;
    std::unique_ptr<host> subject;

    static constexpr const char* kFile = "E1C2210_4.PNG";
    static constexpr const char* kReported = "logo E1C2210_4.PNG size 4";

 private:
    std::size_t seen_ = 0;
    int announced_ = 0;
};

class LogoReception : public testing::TestWithParam<surface>, protected logo_reception {
 protected:
    LogoReception() : logo_reception(GetParam()) {}

 private:
    const watchdog guard_;
};

inline std::string surface_name(const testing::TestParamInfo<surface>& about) {
    return about.param == surface::kCore ? "TheCore" : "TheWrapper";
}
