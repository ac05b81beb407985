#include "examples/generator/file_set.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace generator {

namespace fs = std::filesystem;

namespace {

std::string read_file(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in) throw std::runtime_error("cannot read " + path.string());
    return content;
}

}  // namespace

void file_set::add(const std::string& path, std::string_view text) {
    const auto [entry, fresh] = files_.emplace(path, text);
    if (!fresh && entry->second != text) throw std::logic_error("two different files named " + path);
}

void file_set::add(const std::string& path, const spi_builder::bytes& content) {
    add(path, std::string(content.begin(), content.end()));
}

std::size_t file_set::total_bytes() const {
    std::size_t sum = 0;
    for (const auto& entry : files_)
        sum += entry.second.size();
    return sum;
}

void file_set::write(const fs::path& directory) const {
    for (const auto& [name, content] : files_) {
        const fs::path path = directory / name;
        fs::create_directories(path.parent_path());
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        out.close();
        if (!out) throw std::runtime_error("cannot write " + path.string());
    }
}

std::vector<std::string> file_set::differences(const fs::path& directory) const {
    std::vector<std::string> found;
    for (const auto& [name, content] : files_) {
        const fs::path path = directory / name;
        if (!fs::is_regular_file(path)) {
            found.push_back("missing: " + name);
        } else if (read_file(path) != content) {
            found.push_back("differs: " + name);
        }
    }
    return found;
}

}  // namespace generator
