#include "tools/record/body_folder.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "tools/files/whole_file.h"

namespace dabspi {

namespace {

std::string_view bytes_as_text(const bytes& body) {
    return {reinterpret_cast<const char*>(body.data()), body.size()};
}

bool is_free_or_same(const std::string& path, std::string_view content) {
    std::error_code failed;
    if (!std::filesystem::exists(path, failed)) return true;
    if (std::filesystem::file_size(path, failed) != content.size() || failed) return false;
    std::string error;
    const std::optional<std::string> there = read_whole_file(path, error);
    return there && *there == content;
}

}  // namespace

std::string file_name_of(const std::string& content_name) {
    constexpr std::size_t kLongest = 200;
    std::string name = content_name;
    for (char& each : name)
        if (each == '/' || static_cast<unsigned char>(each) < 0x20 || each == '\x7F') each = '_';
    std::size_t end = std::min(name.size(), kLongest);
    while (end < name.size() && end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80)
        --end;
    name.resize(end);
    return name == "." || name == ".." || name.empty() ? "object" : name;
}

std::string body_folder::keep(const std::string& content_name, const bytes& body) {
    const std::string_view content = bytes_as_text(body);
    const version key{content_name, {body.size(), std::hash<std::string_view>()(content)}};
    const auto found = files_.find(key);
    if (found != files_.end()) return found->second;
    const std::string front = "objects/" + file_name_of(content_name);
    const std::string folder = directory_.empty() ? "" : directory_ + "/";
    std::size_t& number = numbers_[front];
    std::string name;
    do {
        ++number;
        name = number == 1 ? front : front + "." + std::to_string(number);
    } while (!is_free_or_same(folder + name, content));
    write_whole_file_and_folders(folder + name, content);
    size_ += body.size();
    files_.emplace(key, name);
    return name;
}

}  // namespace dabspi
