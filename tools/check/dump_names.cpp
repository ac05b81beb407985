#include "tools/check/dump_names.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

namespace dabspi::check {

namespace {

constexpr std::size_t kMostSeparators = 12;  // of a prefix
constexpr std::size_t kMostFolders = 16;     // that a name's slashes may have become

enum class saving { as_it_is, replaced, folders, last_component };

struct naming_rule {
    saving how;
    bool prefix;
};

// Of two that match as many, the first counts.
constexpr std::array<naming_rule, 7> kRules = {{{saving::as_it_is, false},
                                                {saving::replaced, false},
                                                {saving::folders, false},
                                                {saving::last_component, false},
                                                {saving::replaced, true},
                                                {saving::folders, true},
                                                {saving::last_component, true}}};

bool is_unsafe(char c) {
    return std::string_view("/:*?\"<>|\\").find(c) != std::string_view::npos;
}

// Several in a row give one _ or several: both are the same here.
std::string safe(std::string_view text) {
    std::string result;
    for (const char c : text) {
        const char put = is_unsafe(c) || static_cast<unsigned char>(c) < 0x20 ? '_' : c;
        if (put != '_' || result.empty() || result.back() != '_') result += put;
    }
    return result;
}

std::string_view last_component(std::string_view path) {
    // A slash at the end is no component.
    while (!path.empty() && path.back() == '/')
        path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// "http_/host/x.png" of "http://host/x.png".
std::string as_folders(std::string_view name) {
    std::string result;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find('/'), name.size());
        if (end != 0) result += (result.empty() ? "" : "/") + safe(name.substr(0, end));
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return result;
}

std::vector<std::string> keys_of_name(const std::string& name, saving how) {
    switch (how) {
        case saving::as_it_is: return {name};
        case saving::replaced: return {safe(name)};
        case saving::last_component: return {safe(last_component(name))};
        case saving::folders: break;
    }
    const std::size_t scheme = name.find("://");
    if (scheme == std::string::npos) return {as_folders(name)};
    return {as_folders(name), as_folders(std::string_view(name).substr(scheme + 3))};
}

bool is_prefix_word(std::string_view word) {
    static constexpr std::array<std::string_view, 5> marks = {"tid", "id", "mot", "obj", "TID"};
    for (const std::string_view mark : marks) {
        if (word == mark) return true;
        if (word.substr(0, mark.size()) == mark) word.remove_prefix(mark.size());
    }
    return !word.empty() &&
           std::any_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; }) &&
           std::all_of(word.begin(), word.end(), [](char c) {
               return std::string_view("0123456789ABCDEFabcdefxXTZ:hms").find(c) != std::string_view::npos;
           });
}

// Where the name may begin behind a prefix.
std::vector<std::size_t> beginnings(std::string_view file) {
    std::vector<std::size_t> all;
    std::size_t word = 0;
    for (std::size_t at = 0; at < file.size() && all.size() < kMostSeparators; ++at) {
        if (std::string_view("_-. ").find(file[at]) == std::string_view::npos) continue;
        if (at != word && !is_prefix_word(file.substr(word, at - word))) break;
        word = at + 1;
        if (word < file.size()) all.push_back(word);
    }
    return all;
}

struct path_key {
    std::string key;
    std::size_t prefix_words;  // that were left away
};

// What a file might stand for, the longest first.
std::vector<path_key> keys_of_path(const std::string& path, const naming_rule& rule) {
    std::vector<std::string> tails;
    std::string_view rest = path;
    for (std::size_t i = 0; i < kMostFolders; ++i) {
        tails.emplace_back(rest);
        const std::size_t slash = rest.find('/');
        if (slash == std::string_view::npos) break;
        rest.remove_prefix(slash + 1);
    }
    const std::string file(last_component(path));
    if (rule.how == saving::replaced || rule.how == saving::last_component) tails = {file};
    std::vector<path_key> keys;
    for (const std::string& tail : tails) {
        const std::string folder = tail.substr(0, tail.size() - file.size());
        std::size_t words = 0;
        const auto add = [&](std::size_t from) {
            const std::string whole = folder + file.substr(from);
            keys.push_back({rule.how == saving::as_it_is  ? whole
                            : rule.how == saving::folders ? as_folders(whole)
                                                          : safe(whole),
                            words++});
        };
        add(0);
        if (!rule.prefix) continue;
        for (const std::size_t each : beginnings(file))
            add(each);
    }
    return keys;
}

class matcher {
 public:
    matcher(const std::vector<announced_name>& announced, const naming_rule& rule)
        : announced_(announced), rule_(rule) {
        for (std::size_t i = 0; i < announced.size(); ++i)
            for (const std::string& key : keys_of_name(announced[i].name, rule.how))
                by_key_[key].push_back(i);
    }

    void match(const std::vector<saved_image>& images) {
        for (const saved_image& each : images) {
            const std::optional<std::size_t> found = of(each);
            names.push_back(found ? std::optional(announced_[*found].name) : std::nullopt);
            if (found) ++count;
            if (found) distinct.insert(announced_[*found].name);
        }
        for (const std::size_t each : shared_)
            if (distinct.count(announced_[each].name) == 0) cannot_tell.insert(announced_[each].name);
    }

    std::vector<std::optional<std::string>> names;
    std::size_t count = 0;
    std::set<std::string> distinct;
    std::set<std::string> cannot_tell;
    std::map<std::size_t, std::size_t> by_prefix_words;  // how many files

 private:
    std::optional<std::size_t> of(const saved_image& image) {
        for (const auto& [key, prefix_words] : keys_of_path(image.path, rule_)) {
            const auto found = by_key_.find(key);
            if (found == by_key_.end()) continue;
            ++by_prefix_words[prefix_words];
            const std::vector<std::size_t>& all = found->second;
            if (asked_.insert(key).second && all.size() > 1) shared_.insert(all.begin(), all.end());
            // What an image shows of itself decides between several.
            const auto same_size = std::find_if(all.begin(), all.end(), [&](std::size_t i) {
                return !image.size.empty() && announced_[i].size == image.size;
            });
            return same_size != all.end() ? *same_size : all.front();
        }
        return std::nullopt;
    }

    const std::vector<announced_name>& announced_;
    const naming_rule rule_;
    std::map<std::string, std::vector<std::size_t>> by_key_;
    std::set<std::string> asked_;
    std::set<std::size_t> shared_;
};

std::string rule_text(const naming_rule& rule, std::size_t matched, std::size_t of) {
    std::string text =
        std::to_string(matched) + " of " + std::to_string(of) + " images bear announced names when ";
    switch (rule.how) {
        case saving::as_it_is: break;
        case saving::replaced: text += "/ : * ? \" < > | \\ are saved as _"; break;
        case saving::folders: text += "slashes are saved as folders and : * ? \" < > | \\ as _"; break;
        case saving::last_component: text += "only what follows the last slash is saved"; break;
    }
    if (rule.prefix) text += ", behind a prefix of time or transport identifier";
    return text +
           (rule.how == saving::last_component ? ""
                                               : "; these names differ from the announced ones only in "
                                                 "characters that file names cannot have") +
           (rule.how != saving::last_component && rule.prefix ? ", and in the prefix" : "");
}

}  // namespace

matched_names match_names(const std::vector<saved_image>& images,
                          const std::vector<announced_name>& announced) {
    // An image that is announced several times is one name.
    std::vector<announced_name> names;
    std::set<std::string> known;
    for (const announced_name& each : announced)
        if (known.insert(each.name).second) names.push_back(each);
    std::optional<matcher> best;
    const naming_rule* rule = nullptr;
    for (const naming_rule& each : kRules) {
        matcher one(names, each);
        one.match(images);
        if (rule != nullptr && std::make_pair(one.count, one.distinct.size()) <=
                                   std::make_pair(best->count, best->distinct.size()))
            continue;
        best.emplace(std::move(one));
        rule = &each;
    }
    matched_names result;
    result.names = best->names;
    if (rule->prefix)
        result.prefix_words =
            std::max_element(best->by_prefix_words.begin(), best->by_prefix_words.end(),
                             [](const auto& a, const auto& b) { return a.second < b.second; })
                ->first;
    if (rule->how == saving::as_it_is) return result;
    result.said = rule_text(*rule, best->count, images.size());
    result.cannot_tell = best->cannot_tell;
    if (!result.cannot_tell.empty())
        result.said +=
            "; " + std::to_string(result.cannot_tell.size()) +
            " announced names give the same file name as another one: whether their images were sent, such a "
            "dump cannot tell";
    return result;
}

std::string without_prefix(const std::string& path, std::size_t words) {
    const std::string file(last_component(path));
    const std::vector<std::size_t> all = beginnings(file);
    if (words == 0 || all.size() < words) return path;
    return path.substr(0, path.size() - file.size()) + file.substr(all[words - 1]);
}

}  // namespace dabspi::check
