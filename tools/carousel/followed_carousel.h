// A carousel that follows its documents and images: frame after frame, without end; a new version from the
// next data group on when they have changed.
//
// Used on one thread. Unchanged objects keep their transport identifiers. What has become bad is said, and
// the last good version goes on. Memory: two versions, while one replaces the other.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "tools/carousel/written_carousel.h"
#include "tools/transmit/schedule/carousel_sender.h"

namespace dabspi::carousel {

class followed_carousel {
 public:
    // `say` gets lines for the user.
    followed_carousel(const carousel_options& options, output_form form,
                      std::function<void(const std::string&)> say)
        : options_(options), form_(form), say_(std::move(say)) {}

    // Reads everything. False, and the errors are said, when it cannot be sent.
    bool start();
    const prepared_carousel& current() const { return current_; }

    void append_frame(bytes& to);

    // Looks at the files, and at the day; makes a new version where one is needed.
    void look();

 private:
    using stamps = std::map<std::string, std::string>;  // what tells that a file has changed, by path

    static stamps stamps_of(const std::vector<std::string>& files);
    broadcast_minute now() const;
    void renew(bool another_day);

    const carousel_options options_;
    const output_form form_;
    const std::function<void(const std::string&)> say_;
    std::unique_ptr<transmit::carousel_maker> maker_;
    prepared_carousel current_;
    std::vector<std::string> files_;
    stamps seen_;
    long day_ = 0;
    bool is_good_ = true;  // the inputs, when they were looked at last
    std::uint64_t frames_ = 0;
    broadcast_minute begin_;
    std::unique_ptr<transmit::carousel_sender> sender_;
    std::unique_ptr<transmit::packet_writer> packets_;
    std::unique_ptr<form_writer> form_writer_;
    bytes frame_;
};

}  // namespace dabspi::carousel
