// The bodies of a plan's objects: XML documents encoded, images and ready objects read.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/files/body_files.h"
#include "tools/record/plan.h"

namespace dabspi {

struct planned_body {
    std::shared_ptr<const bytes> body;
    std::string content_name;  // the usual one for such an object
    std::uint8_t content_type = 0;
    std::uint16_t content_subtype = 0;
    std::size_t saved = 0;  // bytes, by tokens
};

class plan_bodies {
 public:
    // Sources start from `directory`, the plan's own. Files that are sent as they are may hold `most_bytes`.
    plan_bodies(std::string directory, std::size_t most_bytes)
        : directory_(directory), files_(std::move(directory), most_bytes) {}

    // `source`: the object's source for the day in question. Nothing when it cannot be used; then there are
    // errors.
    std::optional<planned_body> make(const planned_object& object, const std::string& source);

    std::vector<std::string> take_errors() { return std::exchange(errors_, {}); }
    const std::set<std::string>& sources() const { return sources_; }
    // What was left out of documents, and what was taken leniently.
    const std::vector<std::string>& messages() const { return messages_; }

 private:
    std::optional<planned_body> encode(const planned_object& object, const std::string& source);
    std::optional<planned_body> read(const planned_object& object, const std::string& source);
    std::string path_of(const std::string& source) const;

    std::string directory_;
    body_files files_;
    std::map<std::string, std::optional<planned_body>> encoded_;  // by source and how it is encoded
    std::set<std::string> sources_;                               // paths
    std::vector<std::string> errors_;
    std::vector<std::string> messages_;
    std::set<std::string> said_;  // the same
};

}  // namespace dabspi
