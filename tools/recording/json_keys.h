// The keys of one JSON object that people write, taken one by one: the calls of recordings, the parts of
// plans. What is wrong is reported in words; nothing is thrown.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace dabspi {

class json_keys {
 public:
    // Gets the key, empty for the object as a whole, and what is wrong with it: "is 7; a text is needed".
    using reporter = std::function<void(const std::string& key, const std::string& text)>;

    // `what` names the object in messages: "a step". Anything but an object has no keys; that is not
    // reported.
    json_keys(const nlohmann::json& object, std::string what, reporter report);

    bool has(const char* key) const;
    // Null when the key is missing; an error if it is needed.
    const nlohmann::json* find(const char* key, bool needed = false);
    // The same for values of one type; null, with an error, for others.
    const std::string* text(const char* key, bool needed = false);
    const nlohmann::json* array(const char* key, bool needed = false);
    const nlohmann::json* object(const char* key, bool needed = false);
    bool flag(const char* key);
    // A text, or an array of lines.
    std::string lines(const char* key);

    template <typename Unsigned>
    bool number(const char* key, Unsigned& to, bool needed = false) {
        std::uint64_t value = 0;
        if (!number_up_to(key, std::numeric_limits<Unsigned>::max(), value, needed)) return false;
        to = static_cast<Unsigned>(value);
        return true;
    }

    void error(const std::string& text) { report_({}, text); }
    void error_at(const char* key, const std::string& text) { report_(key, text); }

    // Every key that nobody asked for is unknown here, but for `other`.
    void refuse_others(const char* other = "");

 private:
    bool number_up_to(const char* key, std::uint64_t most, std::uint64_t& to, bool needed);

    const nlohmann::json* object_;
    std::string what_;
    reporter report_;
    std::vector<std::string> asked_;
};

}  // namespace dabspi
