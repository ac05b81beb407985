#include "tools/check/dump_tree.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "tools/receiver/receiver_view.h"
#include "tools/text/dab_identifier.h"

namespace dabspi::check {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostLevels = 6;  // of folders that may be of ensembles

// Identifiers that objects name.
struct spoken_of {
    std::set<std::uint16_t> ensembles;
    std::set<std::uint32_t> services;

    void add(const spi_object::object& tree) {
        spi_object::visit(
            tree, [this](const spi_object::node& each, const std::vector<const spi_object::node*>&) {
                if (const auto* id = std::get_if<spi_object::content_id>(&each.decoded)) {
                    if (id->ensemble_coded) ensembles.insert(id->eid);
                    services.insert(id->sid);
                } else if (const auto* ensemble = std::get_if<spi_object::ensemble_id>(&each.decoded)) {
                    ensembles.insert(ensemble->eid);
                }
            });
    }
};

// "BBC National DAB (C185)" has four.
std::vector<std::string> words_of(const std::string& name) {
    std::vector<std::string> words = {name};
    std::string word;
    for (const char c : name + " ") {
        if (std::string_view(" _-()[],;").find(c) == std::string_view::npos) {
            word += c;
            continue;
        }
        if (!word.empty() && word != name) words.push_back(word);
        word.clear();
    }
    return words;
}

// A name like "face" or "2019" counts only where objects name that ensemble, too; or where `likely` and they
// do not say: the folder itself is looked at, not one above it. `certain`: its neighbours are ensembles.
struct name_trust {
    bool likely = false;
    bool certain = false;
};
std::optional<std::uint16_t> ensemble_in(const std::string& name, const spoken_of& objects,
                                         name_trust trust) {
    for (const std::string& word : words_of(name)) {
        const auto id = dab_identifier::of_ensemble(word);
        if (!id) continue;
        if (objects.ensembles.count(*id->ensemble) != 0) return id->ensemble;
        const bool plain = word.size() == 4;
        if (objects.services.count(*id->ensemble) != 0) continue;
        const bool meant = trust.certain || (trust.likely && objects.ensembles.empty());
        if (!plain || (meant && word == name)) return id->ensemble;
    }
    return std::nullopt;
}

std::optional<std::uint32_t> service_in(const std::string& name, const spoken_of& objects) {
    for (const std::string& word : words_of(name)) {
        const auto id = dab_identifier::of_service(word);
        if (!id) continue;
        if (objects.services.count(*id->sid) != 0 || word.size() != 4) return id->sid;
    }
    return std::nullopt;
}

using file_list = std::vector<dumped_file>;

class splitter {
 public:
    explicit splitter(std::string root) : root_(std::move(root)) {}

    // `files` share their first `depth` folders.
    void split(file_list files, std::size_t depth, bool neighbours_named = false) {
        std::map<std::string, file_list> below;
        bool objects_here = false;
        spoken_of objects;
        for (const dumped_file& each : files) {
            if (!each.is_image()) objects.add(each.tree);
            if (each.folders.size() > depth) continue;
            objects_here = objects_here || !each.is_image();
        }
        const fs::path folder = folder_of(files, depth);
        const std::string name = folder.lexically_normal().filename().string();
        if (const auto own = ensemble_in(name, objects, {true, neighbours_named}))
            return whole(std::move(files), depth, objects, own, name);
        if (objects_here) return whole(std::move(files), depth, objects, {}, {});
        file_list here;
        for (dumped_file& each : files) {
            if (each.folders.size() > depth) {
                below[each.folders[depth]].push_back(std::move(each));
            } else {
                here.push_back(std::move(each));
            }
        }
        if (!here.empty() || depth >= kMostLevels || !are_ensembles(below)) {
            for (auto& [child, of] : below)
                std::move(of.begin(), of.end(), std::back_inserter(here));
            return whole(std::move(here), depth, objects, {}, {});
        }
        const bool named = std::any_of(below.begin(), below.end(),
                                       [](const auto& each) { return is_named(each.first, each.second); });
        for (auto& [child, of] : below)
            split(std::move(of), depth + 1, named);
    }

    std::vector<dumped_ensemble> found;

 private:
    fs::path folder_of(const file_list& files, std::size_t depth) const {
        fs::path folder = root_;
        for (std::size_t i = 0; i < depth; ++i)
            folder /= files.front().folders[i];
        return folder;
    }

    static bool is_named(const std::string& name, const file_list& files) {
        spoken_of objects;
        for (const dumped_file& each : files)
            if (!each.is_image()) objects.add(each.tree);
        return ensemble_in(name, objects, {true, false}).has_value();
    }

    // Of the folders in a folder: does each hold what another ensemble sends?
    static bool are_ensembles(const std::map<std::string, file_list>& below) {
        std::set<std::uint16_t> different;
        std::size_t with_objects = 0;
        for (const auto& [name, files] : below) {
            if (is_named(name, files)) return true;
            std::map<std::uint16_t, std::size_t> homes;
            for (const dumped_file& each : files) {
                if (each.is_image()) continue;
                if (const auto home = spi_object::home_ensemble(each.tree)) ++homes[*home];
            }
            const bool any =
                std::any_of(files.begin(), files.end(), [](const dumped_file& f) { return !f.is_image(); });
            with_objects += any ? 1 : 0;
            const auto most = std::max_element(
                homes.begin(), homes.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
            if (most != homes.end()) different.insert(most->first);
        }
        return different.size() > 1 || (below.size() == 1 && with_objects == 1);
    }

    void whole(file_list files, std::size_t depth, const spoken_of& objects,
               std::optional<std::uint16_t> named, const std::string& by) {
        dumped_ensemble one;
        one.depth = depth;
        one.folder = depth == 0 ? root_ : folder_of(files, depth).string();
        one.named = named;
        one.named_by = by;
        if (!named) look_above(one, objects);
        set_carousels(one, files, objects);
        one.files = std::move(files);
        found.push_back(std::move(one));
    }

    // The folder of a service stands in its ensemble's.
    static void look_above(dumped_ensemble& one, const spoken_of& objects) {
        std::error_code failed;
        fs::path above = fs::absolute(one.folder, failed).lexically_normal();
        if (above.filename().empty()) above = above.parent_path();
        for (int i = 0; i < 2 && !failed && !one.named; ++i) {
            above = above.parent_path();
            one.named = ensemble_in(above.filename().string(), objects, {});
            one.named_by = above.filename().string();
        }
    }

    static void set_carousels(dumped_ensemble& one, file_list& files, const spoken_of& objects) {
        const bool here = std::any_of(files.begin(), files.end(), [&](const dumped_file& each) {
            return !each.is_image() && each.folders.size() <= one.depth;
        });
        std::map<std::string, std::size_t> by_folder;
        if (!here) {
            for (const dumped_file& each : files) {
                if (each.is_image() || each.folders.size() <= one.depth) continue;
                const std::string& name = each.folders[one.depth];
                if (by_folder.emplace(name, one.carousels.size()).second)
                    one.carousels.push_back({name, service_in(name, objects)});
            }
        }
        if (one.carousels.empty()) {
            std::error_code failed;
            fs::path own = fs::absolute(one.folder, failed).lexically_normal();
            if (own.filename().empty()) own = own.parent_path();
            one.carousels.push_back({"", one.named_by == own.filename().string()
                                             ? std::nullopt
                                             : service_in(own.filename().string(), objects)});
        }
        for (dumped_file& each : files) {
            const auto at =
                each.folders.size() > one.depth ? by_folder.find(each.folders[one.depth]) : by_folder.end();
            if (at != by_folder.end()) each.carousel = at->second;
        }
    }

    const std::string root_;
};

}  // namespace

std::vector<dumped_ensemble> ensembles_of(const std::string& path, std::vector<dumped_file> files) {
    if (files.empty()) return {};
    splitter work(path);
    work.split(std::move(files), 0);
    return std::move(work.found);
}

}  // namespace dabspi::check
