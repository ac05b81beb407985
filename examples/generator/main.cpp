// make_recordings: writes the pictures of the example recordings, and those recordings that no plan can say,
// or checks that a directory holds them. It depends on nothing but its own code: no clock, no chance, so that
// the same sources always give the same bytes.
#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "examples/generator/malformed_scenes.h"
#include "examples/generator/pictures.h"

namespace {

generator::file_set make_all() {
    generator::file_set files;
    generator::add_pictures(files);
    generator::add_malformed_scenes(files);
    return files;
}

int check(const generator::file_set& files, const std::filesystem::path& directory) {
    const auto differences = files.differences(directory);
    for (const std::string& line : differences)
        std::cout << line << '\n';
    if (differences.empty()) {
        std::cout << files.count() << " files, " << files.total_bytes()
                  << " bytes: as made by the generator\n";
        return 0;
    }
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Writes pictures, and recordings of malformed objects, into OUTDIR. The other files there are left "
        "alone.");
    std::string out_directory;
    std::string check_directory;
    auto* const out_option = app.add_option("OUTDIR", out_directory, "where to write");
    app.add_option("--check", check_directory,
                   "write nothing: compare with this directory, list what differs, exit 1 if anything does")
        ->excludes(out_option);
    CLI11_PARSE(app, argc, argv);
    try {
        const generator::file_set files = make_all();
        if (!check_directory.empty()) return check(files, check_directory);
        if (out_directory.empty()) {
            std::cerr << "make_recordings: OUTDIR or --check DIR is required\n";
            return 2;
        }
        files.write(out_directory);
        std::cout << files.count() << " files, " << files.total_bytes() << " bytes\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "make_recordings: " << error.what() << '\n';
        return 2;
    }
}
