#include "tools/recording/json_reader.h"

#include <set>
#include <utility>

#include "tools/recording/json_values.h"

namespace dabspi {

namespace {

using nlohmann::json;

constexpr std::size_t kMostTwice = 100;

// Takes the events of the JSON library's parser, and builds the value.
class builder : public nlohmann::json_sax<json> {
 public:
    builder(const json_limits& limits, bool with_line, read_json_text& result)
        : limits_(limits), with_line_(with_line), result_(result) {}

    bool null() override { return add(json()); }
    bool boolean(bool value) override { return add(json(value)); }
    bool number_integer(number_integer_t value) override { return add(json(value)); }
    bool number_unsigned(number_unsigned_t value) override { return add(json(value)); }
    bool number_float(number_float_t value, const string_t&) override { return add(json(value)); }
    bool string(string_t& value) override { return add(json(std::move(value))); }
    bool binary(binary_t&) override { return true; }  // not in texts

    bool start_object(std::size_t) override { return open(json::object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(json::array()); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override {
        if (!is_kept()) return true;
        container& here = open_.back();
        if (!here.keys.insert(name).second && result_.twice.size() < kMostTwice)
            result_.twice.push_back(place() + "/" + pointer_part(name));
        here.key = std::move(name);
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const json::exception& error) override {
        result_.error = json_error_text(error, with_line_);
        return false;
    }

 private:
    struct container {
        json* value;  // null: not kept
        std::string key;
        std::set<std::string> keys;
    };

    bool is_kept() const { return open_.empty() || open_.back().value; }

    // False when that is too much; what is not kept is dropped.
    bool add(json value) {
        if (!is_kept()) return true;
        if (++values_ > limits_.most_values) {
            result_.error = "it holds more than " + std::to_string(limits_.most_values) + " values";
            return false;
        }
        if (open_.empty()) {
            result_.value = std::move(value);
            added_ = &result_.value;
            return true;
        }
        json& around = *open_.back().value;
        if (around.is_object()) {
            added_ = &(around[open_.back().key] = std::move(value));
        } else {
            around.push_back(std::move(value));
            added_ = &around.back();
        }
        return true;
    }

    bool open(json empty) {
        if (++depth_ > limits_.most_depth) {
            result_.error = "arrays and objects stand in one another, more than " +
                            std::to_string(limits_.most_depth) + " deep";
            return false;
        }
        const bool kept = is_kept() && depth_ <= limits_.kept_depth;
        if (!add(std::move(empty))) return false;
        if (depth_ <= limits_.kept_depth + 1) open_.push_back({kept ? added_ : nullptr, {}, {}});
        return true;
    }

    bool close() {
        if (depth_-- <= limits_.kept_depth + 1) open_.pop_back();
        return true;
    }

    std::string place() const {
        std::string pointer;
        for (std::size_t i = 0; i + 1 < open_.size(); ++i) {
            const json& around = *open_[i].value;
            pointer +=
                "/" + (around.is_array() ? std::to_string(around.size() - 1) : pointer_part(open_[i].key));
        }
        return pointer;
    }

    const json_limits& limits_;
    bool with_line_;
    read_json_text& result_;
    std::vector<container> open_;
    json* added_ = nullptr;  // last
    std::size_t depth_ = 0;
    std::size_t values_ = 0;
};

}  // namespace

read_json_text read_json(std::string_view text, const json_limits& limits, bool with_line) {
    read_json_text result;
    builder to(limits, with_line, result);
    try {
        json::sax_parse(text.begin(), text.end(), &to);
    } catch (const json::exception& error) {  // a number beyond all bounds
        result.error = json_error_text(error, with_line);
    }
    if (!result.error.empty()) result.value = {};
    return result;
}

std::string pointer_part(const std::string& key) {
    std::string escaped;
    for (const char c : key) {
        if (c == '~') {
            escaped += "~0";
        } else if (c == '/') {
            escaped += "~1";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

}  // namespace dabspi
