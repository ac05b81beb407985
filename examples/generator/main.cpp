// make_recordings: writes the example recordings and their objects, or checks that a directory holds exactly
// them. It depends on nothing but its own code: no clock, no chance, so that the same sources always give the
// same bytes.
#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "examples/generator/day_on_air.h"
#include "examples/generator/scene.h"

namespace {

generator::file_set make_all() {
    generator::file_set files;
    generator::add_day_on_air(files);
    generator::add_now_next_scenes(files);
    generator::add_midnight_scenes(files);
    generator::add_filing_scenes(files);
    generator::add_ensemble_scenes(files);
    generator::add_text_scenes(files);
    generator::add_logo_scenes(files);
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
        "Writes the example recordings and their objects into OUTDIR. Files that people write by hand there "
        "(README.md, *.expected) are left alone.");
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
