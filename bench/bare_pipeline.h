// What hand-offs between threads cost with nothing around them: the reference of everything that passes the
// library's queues.
//
// A stage is a thread with a std::list, a mutex and a condition variable; an item is a destination and a
// shared payload. Each payload is made once, and its list node at each stage; the mutex is held while one
// item is linked or unlinked, and the receiver is notified after every one: the design in its plainest form,
// one event a lock. What the library gains by handing on several at once shows as a ratio below 1. There is
// no table of names, no hook, no parsing, no storing, and nothing is counted.
#pragma once

#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace bench {

struct bare_payload {
    virtual ~bare_payload() = default;
    unsigned char payload[96] = {};  // a programme's size
};

struct bare_item {
    int destination = 0;
    std::shared_ptr<bare_payload> payload;
};

class bare_stage {
 public:
    using handler = std::function<void(bare_item&)>;
    explicit bare_stage(handler on_item) : on_item_(std::move(on_item)), thread_([this] { run(); }) {}
    ~bare_stage() { stop(); }
    bare_stage(const bare_stage&) = delete;
    bare_stage& operator=(const bare_stage&) = delete;

    void post(bare_item item) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            items_.push_back(std::move(item));
        }
        wake_.notify_one();
    }

    void stop() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            stopped_ = true;
        }
        wake_.notify_one();
        if (thread_.joinable()) thread_.join();
    }

 private:
    void run() {
        for (;;) {
            bare_item item;
            {
                std::unique_lock<std::mutex> lock(mutex_);
                wake_.wait(lock, [this] { return stopped_ || !items_.empty(); });
                if (stopped_) return;
                item = std::move(items_.front());
                items_.pop_front();
            }
            on_item_(item);
        }
    }

    const handler on_item_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::list<bare_item> items_;  // guarded by mutex_
    bool stopped_ = false;        // guarded by mutex_
    std::thread thread_;
};

// The library's ways, bare: host -> router -> parser -> router -> database -> router -> notifier.
class bare_pipeline {
 public:
    // kEverybody: to five stages, of which the database has something for the notifier. kTick: to five
    // stages, and that is all.
    enum : int { kParser, kDatabase, kNotifier, kEverybody, kTick };

    // `programmes`: made of each item that reaches the parser. `received` is called on the notifier's thread,
    // for each item but a broadcast; of a tick, by each of the five stages, on its own thread.
    bare_pipeline(unsigned programmes, std::function<void()> received)
        : programmes_(programmes), received_(std::move(received)) {}
    ~bare_pipeline() {
        for (bare_stage* stage : {&router_, &parser_, &database_, &notifier_, &logo_store_, &server_})
            stage->stop();
    }

    void post(int destination) { router_.post({destination, std::make_shared<bare_payload>()}); }

 private:
    void deliver(bare_item& item) {
        if (item.destination == kEverybody || item.destination == kTick) {
            for (bare_stage* stage : {&database_, &logo_store_, &parser_, &notifier_, &server_})
                stage->post(item);
            return;
        }
        const std::lock_guard<std::mutex> lock(table_mutex_);
        bare_stage* const table[] = {&parser_, &database_, &notifier_};
        table[item.destination]->post(item);
    }

    void tick(const bare_item& item) {
        if (item.destination == kTick) received_();
    }
    // A programme is passed on, of the rest something new is made.
    void find_now_next(bare_item& item) {
        if (item.destination == kDatabase) {
            router_.post({kNotifier, std::move(item.payload)});
        } else if (item.destination == kEverybody) {
            post(kNotifier);
        }
    }

    const unsigned programmes_;
    const std::function<void()> received_;
    std::mutex table_mutex_;
    bare_stage notifier_{[this](bare_item& item) {
        tick(item);
        if (item.destination == kNotifier) received_();
    }};
    bare_stage server_{[this](bare_item& item) { tick(item); }};
    bare_stage logo_store_{[this](bare_item& item) { tick(item); }};
    bare_stage database_{[this](bare_item& item) {
        tick(item);
        find_now_next(item);
    }};
    bare_stage parser_{[this](bare_item& item) {
        tick(item);
        if (item.destination != kParser) return;
        for (unsigned i = 0; i < programmes_; ++i)
            post(kDatabase);
    }};
    bare_stage router_{[this](bare_item& item) { deliver(item); }};
};

}  // namespace bench
