#include "tools/carousel/followed_carousel.h"

#include <sys/stat.h>

#include <set>

#include "tools/air/frame.h"

namespace dabspi::carousel {

namespace {

using namespace transmit;

constexpr std::uint64_t kFramesOfMinute = 60'000 / air::kMillisecondsOfFrame;

struct object_changes {
    std::size_t changed = 0;
    std::size_t added = 0;
    std::size_t removed = 0;
    bool any() const { return changed + added + removed != 0; }
};

// By their names.
object_changes changes_of(const std::vector<carousel_object>& before,
                          const std::vector<carousel_object>& after) {
    std::map<std::string, const carousel_object*> known;
    for (const carousel_object& each : before)
        known[each.sent.name] = &each;
    object_changes all;
    for (const carousel_object& each : after) {
        const auto found = known.find(each.sent.name);
        if (found == known.end()) {
            ++all.added;
            continue;
        }
        if (*found->second->sent.body != *each.sent.body) ++all.changed;
        known.erase(found);
    }
    all.removed = known.size();
    return all;
}

}  // namespace

followed_carousel::stamps followed_carousel::stamps_of(const std::vector<std::string>& files) {
    stamps all;
    for (const std::string& each : files) {
        struct stat there {};
        std::string& stamp = all[each];
        if (::stat(each.c_str(), &there) != 0) continue;
        stamp = std::to_string(there.st_ino) + "/" + std::to_string(there.st_size) + "/" +
                std::to_string(there.st_mtim.tv_sec) + "." + std::to_string(there.st_mtim.tv_nsec);
    }
    return all;
}

broadcast_minute followed_carousel::now() const {
    return {begin_.number + static_cast<std::int64_t>(frames_ / kFramesOfMinute)};
}

bool followed_carousel::start() {
    current_ = prepare(options_, maker_);
    for (const std::string& each : current_.messages)
        say_(each);
    for (const std::string& each : current_.errors)
        say_(each);
    if (!current_.errors.empty()) return false;
    files_ = current_.files;
    seen_ = stamps_of(files_);
    begin_ = current_.begin;
    day_ = begin_.day();
    sender_ = std::make_unique<carousel_sender>(current_.made.carousel, current_.made.order);
    packets_ = std::make_unique<packet_writer>(current_.settings.packets, *sender_);
    form_writer_ = std::make_unique<form_writer>(current_, form_);
    frame_.resize(current_.settings.packets.frame_size);
    return true;
}

void followed_carousel::append_frame(bytes& to) {
    packets_->write_frame(frame_.data());
    form_writer_->append_frame(to, frame_);
    ++frames_;
}

void followed_carousel::look() {
    stamps found = stamps_of(files_);
    const bool another_day = now().day() != day_;
    if (found == seen_ && !another_day) return;
    seen_ = std::move(found);
    day_ = now().day();
    renew(another_day);
}

void followed_carousel::renew(bool another_day) {
    carousel_options options = options_;
    options.clock = plan_minute{now().number}.text();
    auto maker = std::make_unique<carousel_maker>(*maker_);
    prepared_carousel next = prepare(options, maker);
    for (const std::string& each : next.messages)
        say_(each);
    for (const std::string& each : next.errors)
        say_(each);
    // What is missing now may come again: it is looked for as well.
    std::set<std::string> files(current_.files.begin(), current_.files.end());
    files.insert(next.files.begin(), next.files.end());
    files_.assign(files.begin(), files.end());
    seen_ = stamps_of(files_);
    if (!next.errors.empty()) {
        say_("the last good carousel goes on");
        is_good_ = false;
        return;
    }
    const object_changes changes = changes_of(current_.objects, next.objects);
    if (!changes.any() && !is_good_) say_("the inputs are good again, and as they were");
    is_good_ = true;
    if (!changes.any() && !another_day) return;
    say_("a new version: " + std::to_string(changes.changed) + " objects changed, " +
         std::to_string(changes.added) + " added, " + std::to_string(changes.removed) + " removed");
    maker_ = std::move(maker);
    sender_->replace(next.made.carousel, next.made.order);
    current_.objects = std::move(next.objects);
    current_.made = std::move(next.made);
    current_.files = std::move(next.files);
    current_.tuned = std::move(next.tuned);
}

}  // namespace dabspi::carousel
