// Disks that are really full, or may really only be read: file systems of the test's own, where the machine
// permits namespaces.
#include <sys/mount.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "src/event/quiet.h"
#include "testkit/temporary_directory.h"
#include "tests/faults/host_of.h"
#include "tests/wrap/private_root.h"

#include <gtest/gtest.h>

namespace {

const char* const kRoot = "/mnt/logos";

bool mount_root(unsigned long flags, const char* options) {
    mkdir(kRoot, 0755);
    return mount("tmpfs", kRoot, "tmpfs", flags, options) == 0;
}

std::string content(const std::string& name) {
    std::ifstream in(std::string(kRoot) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// The text of the notes after one logo of `image` was received, and whether its file is there.
std::string receive(const spi_builder::bytes& image) {
    listener_notes notes;
    core_host subject(notes, kRoot);
    subject.construct();
    subject.set_time(2, 10, 30);
    subject.tune(on_air::kStation, on_air::kEnsemble);
    subject.feed(7, 0, "si",
                 spi_builder::si_object(
                     on_air::kEcc, on_air::kEnsemble,
                     {on_air::station(on_air::kStation, "Radio 4", {on_air::large_logo("logo.png")})}));
    if (!spi::wait_until_quiet(std::chrono::minutes(1))) return "not quiet";
    subject.feed(2, 3, "logo.png", image);
    if (!spi::wait_until_quiet(std::chrono::minutes(1))) return "not quiet";
    subject.destroy();
    std::string reported;
    for (const std::string& note : notes.all())
        reported += note + "; ";
    struct stat status {};
    const bool there = lstat((std::string(kRoot) + "/E1C2210_4.PNG").c_str(), &status) == 0;
    return reported + (there ? "a file of " + std::to_string(status.st_size) : "no file");
}

void in_private(const std::function<std::string()>& action) {
    const temporary_directory mount_point;
    std::string failure;
    const private_root_result result = in_private_root(mount_point.path().string(), action, failure);
    if (result == private_root_result::kNotPermitted) GTEST_SKIP() << "this machine permits no namespaces";
    EXPECT_EQ(result, private_root_result::kPassed);
    EXPECT_EQ(failure, "");
}

std::string differs(const std::string& got, const std::string& wanted) {
    return got == wanted ? "" : "got \"" + got + "\", wanted \"" + wanted + "\"";
}

// A page is the file system's unit: of a logo of 5000 bytes one page would fit.
TEST(RealDisk, ThatHasRoomForHalfALogoKeepsNone) {
    in_private([]() -> std::string {
        if (!mount_root(0, "size=8k")) return "no file system";
        std::ofstream(std::string(kRoot) + "/other") << "other";
        const std::string refused = differs(receive(spi_builder::bytes(5000, 'p')), "no file");
        if (!refused.empty()) return refused;
        return differs(receive(spi_builder::bytes(4000, 'p')) + ", " + content("other"),
                       "logo E1C2210_4.PNG size 4; a file of 4000, other");
    });
}

TEST(RealDisk, ThatIsFullTakesNotEvenASmallLogo) {
    in_private([]() -> std::string {
        if (!mount_root(0, "size=4k")) return "no file system";
        std::ofstream(std::string(kRoot) + "/other") << "other";
        return differs(receive(on_air::png()), "no file");
    });
}

TEST(RealDisk, WithoutAnInodeLeftTakesNoLogo) {
    in_private([]() -> std::string {
        if (!mount_root(0, "nr_inodes=1")) return "no file system";  // the root directory's own
        return differs(receive(on_air::png()), "no file");
    });
}

TEST(RealDisk, ThatMayOnlyBeReadKeepsTheOlderLogo) {
    in_private([]() -> std::string {
        if (!mount_root(0, "")) return "no file system";
        std::ofstream(std::string(kRoot) + "/E1C2210_4.PNG") << "older";
        if (mount(nullptr, kRoot, nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
            return "cannot be made read-only";
        return differs(receive(on_air::png()) + ", " + content("E1C2210_4.PNG"), "a file of 5, older");
    });
}

}  // namespace
