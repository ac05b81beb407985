// Things of a few kinds that were noticed in a document: every one is counted, the first thousand keep their
// places.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/encode/source_note.h"

namespace dabspi {

struct counted_note {
    std::string what;  // "bearers of other domains"
    source_note note;
};

class counted_notes {
 public:
    // `make` gives the note; it is asked only while places are kept.
    template <class Make>
    void add(const std::string& what, Make make) {
        ++counts_[what];
        ++size_;
        if (notes_.size() < kMostPlaces) notes_.push_back({what, make()});
    }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const std::vector<counted_note>& notes() const { return notes_; }
    // "bearers of other domains" -> 3
    const std::map<std::string, std::size_t>& counts() const { return counts_; }

 private:
    static constexpr std::size_t kMostPlaces = 1000;

    std::vector<counted_note> notes_;
    std::map<std::string, std::size_t> counts_;
    std::size_t size_ = 0;
};

}  // namespace dabspi
