// dabspi_make_manual SHARE TEXT...: writes the manual pages of dabspi to SHARE/man/man1 and its bash
// completion to SHARE/bash-completion/completions. Run by the build. Pages of commands that are gone are
// removed.

#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "tools/command_line/command_line.h"
#include "tools/manual/completion.h"
#include "tools/manual/manual_page.h"

namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary);
    out << text << std::flush;
    if (!out) throw std::runtime_error(file.string() + " cannot be written");
}

void write_all(const fs::path& share, const std::vector<std::string>& text_files) {
    CLI::App app;
    dabspi::add_command_line(app);
    const auto commands = dabspi::model_of(app);
    const auto manual_texts = dabspi::read_manual_texts(text_files, commands);

    const fs::path pages = share / "man" / "man1";
    fs::remove_all(pages);
    fs::create_directories(pages);
    for (std::size_t each = 0; each < commands.size(); ++each) {
        const auto& words = manual_texts.at(dabspi::short_name(commands[each]));
        write(pages / (dabspi::page_name(commands[each]) + ".1"),
              dabspi::manual_page(commands, each, words, DABSPI_VERSION));
    }
    const fs::path completions = share / "bash-completion" / "completions";
    fs::create_directories(completions);
    write(completions / "dabspi", dabspi::completion(commands));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: dabspi_make_manual SHARE TEXT...\n";
        return 2;
    }
    try {
        write_all(argv[1], {argv + 2, argv + argc});
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "dabspi_make_manual: " << error.what() << "\n";
        return 1;
    }
}
