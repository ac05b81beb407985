// The fixed names as they are: "/SysDataInfo", "/temp/dab", "/HdStationLogo". In a file-system tree of the
// test's own where the machine permits one, and through the sandbox where it does not: the same things are
// looked at in either case.
#include <sys/stat.h>

#include "tests/wrap/host.h"
#include "tests/wrap/private_root.h"
#include "tests/wrap/wrap_fixture.h"

namespace {

// What went wrong, a line each.
class findings {
 public:
    void expect(bool good, const std::string& what) {
        if (!good) text_ += what + "\n";
    }
    const std::string& text() const { return text_; }

 private:
    std::string text_;
};

struct paths {
    std::string block;
    std::string lock;
    std::string temp_root;
    std::string logo_root;  // of an empty storage path
    std::string data;       // of the storage path "/mnt/data"
};

std::string block_file_with(const std::string& path, const std::string& storage_path) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << block_with(storage_path, 'z');
    return block_with(storage_path, 'z');
}

// One life of a server: a logo and now/next come to the host, the logo into `directory`.
void run_server(findings& found, const std::string& directory, const std::string& image) {
    keeping_listener listener;
    broadcasting_host host(&listener);
    host.set_time(10, 30);
    host.tune();
    host.feed_schedule();
    host.feed_description();
    found.expect(quiet(), "not quiet");
    host.feed_image(image);
    found.expect(quiet(), "not quiet");
    const std::vector<std::string> received = listener.take();
    found.expect(received.size() == 3, "received " + std::to_string(received.size()) + " notifications");
    const auto was_received = [&](const std::string& what) {
        return std::find(received.begin(), received.end(), what) != received.end();
    };
    found.expect(was_received("now News, next Talk"), "no now and next");
    found.expect(was_received("logo E1C2210_4.PNG of size 4"), "no logo");
    found.expect(file_content(directory + "/E1C2210_4.PNG") == image, "no image in " + directory);
    found.expect(mappings_of("SysDataInfo") == 0, "the block is still mapped");
}

std::string story(const paths& at) {
    findings found;
    found.expect(!std::filesystem::exists(at.block), "a block was there before");
    found.expect(!std::filesystem::exists(at.temp_root), "a temp root was there before");
    const int threads = running_threads();
    const int descriptors = open_descriptors();

    // Nothing there yet.
    const mode_t mask = umask(0);
    run_server(found, at.logo_root, "first image");
    umask(mask);
    found.expect(file_content(at.block) == block_with(""), "the fresh block is not as it must be");
    struct stat status {};
    found.expect(stat(at.block.c_str(), &status) == 0 && (status.st_mode & 07777) == 0664,
                 "the block's mode");
    found.expect(std::filesystem::is_directory(at.temp_root), "no temp root");
    found.expect(!std::filesystem::exists(at.lock), "the lock file stayed");

    // The second time, with a block that another program has filled in.
    const std::string before = block_file_with(at.block, "/mnt/data");
    run_server(found, at.data + "/HdStationLogo", "second image");
    found.expect(file_content(at.block) == before, "the block was changed");
    found.expect(file_content(at.logo_root + "/E1C2210_4.PNG") == "first image",
                 "the first image was changed");

    // A storage path behind a file: the temp root serves.
    std::ofstream(at.data + "/file") << "x";
    block_file_with(at.block, "/mnt/data/file");
    run_server(found, at.temp_root, "third image");

    found.expect(wait_for_threads(threads), "threads stayed");
    found.expect(open_descriptors() == descriptors, "descriptors stayed");
    return found.text();
}

const paths kRealNames{"/dev/shm/SysDataInfo", "/dev/shm/dabspi-SysDataInfo.lock", "/temp/dab",
                       "/HdStationLogo", "/mnt/data"};

std::string sandboxed_story() {
    const sandbox here;
    return story({here.block(), here.at(kRealNames.lock), here.at(kRealNames.temp_root),
                  here.at(kRealNames.logo_root), here.at(kRealNames.data)});
}

TEST(RealNames, AServerLivesWithTheSystemsOwnNames) {
    const temporary_directory mount_point;
    const auto exists = [](const std::string& name) { return std::filesystem::exists(name); };
    const bool block_before = exists(kRealNames.block);
    const bool temp_before = exists(kRealNames.temp_root);
    const bool logos_before = exists(kRealNames.logo_root);
    std::string failure;
    const private_root_result result = in_private_root(
        mount_point.path().string(), [] { return story(kRealNames); }, failure);
    if (result == private_root_result::kNotPermitted) GTEST_SKIP() << "this machine permits no namespaces";
    EXPECT_EQ(result, private_root_result::kPassed);
    EXPECT_EQ(failure, "");
    // Nothing of it is in the system's own tree.
    EXPECT_EQ(exists(kRealNames.block), block_before);
    EXPECT_EQ(exists(kRealNames.temp_root), temp_before);
    EXPECT_EQ(exists(kRealNames.logo_root), logos_before);
    EXPECT_TRUE(std::filesystem::is_empty(mount_point.path()));
}

TEST(RealNames, TheSandboxTellsTheSameStory) {
    EXPECT_EQ(sandboxed_story(), "");
}

}  // namespace
