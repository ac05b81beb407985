// The keys of one JSON object of a plan, taken one by one; what is wrong is noted with its place, as a JSON
// pointer (RFC 6901).
#pragma once

#include <cstdint>
#include <limits>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace dabspi {

struct plan_error {
    std::string where;  // "/steps/3/at"; empty: the plan as a whole
    std::string text;
};

class plan_keys {
 public:
    // `what` names the object in messages: "a step". Anything but an object is an error, and has no keys.
    plan_keys(const nlohmann::json& object, std::string where, std::string what,
              std::vector<plan_error>& errors);

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

    void error(const std::string& text) { errors_.push_back({where_, text}); }
    void error_at(const char* key, const std::string& text) { errors_.push_back({at(key), text}); }
    std::string at(const std::string& key) const;
    const std::string& where() const { return where_; }
    std::vector<plan_error>& errors() { return errors_; }

    // Every key that nobody asked for is unknown here.
    void refuse_others();

 private:
    bool number_up_to(const char* key, std::uint64_t most, std::uint64_t& to, bool needed);

    const nlohmann::json* object_;
    std::string where_;
    std::string what_;
    std::vector<plan_error>& errors_;
    std::vector<std::string> asked_;
};

}  // namespace dabspi
