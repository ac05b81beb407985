#include "tools/compare/described_differences.h"

#include <algorithm>

#include "tools/export/genre_names.h"
#include "tools/text/utf8.h"

namespace dabspi::compare {

namespace {

using guide::picture;

constexpr std::size_t kBeforeDifference = 20;  // bytes that are shown of what is the same

bool is_same(const std::vector<guide::text>& a, const std::vector<guide::text>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const guide::text& x, const guide::text& y) { return x.value == y.value; });
}

std::string joined(const std::vector<guide::text>& all) {
    std::string text;
    for (const guide::text& each : all)
        text += (text.empty() ? "" : " / ") + each.value;
    return text;
}

// Long texts from shortly before the first byte that differs.
std::string quoted_from(const std::string& text, std::size_t differs) {
    std::size_t from = differs > kBeforeDifference ? differs - kBeforeDifference : 0;
    while (from < text.size() && from > 0 && (text[from] & 0xC0) == 0x80)
        --from;
    return (from == 0 ? "" : "...") + in_quotes(std::string_view(text).substr(from));
}

// "the long name is \"b\" instead of \"a\""; empty where they are the same.
std::string text_difference(const char* what, const std::vector<guide::text>& a,
                            const std::vector<guide::text>& b) {
    if (is_same(a, b)) return {};
    const std::string in_a = joined(a);
    const std::string in_b = joined(b);
    if (in_a == in_b) return std::string("the ") + what + " is divided otherwise";
    if (b.empty()) return std::string("B has no ") + what + ", A has " + in_quotes(in_a);
    if (a.empty()) return std::string("only B has a ") + what + ": " + in_quotes(in_b);
    const auto differs = static_cast<std::size_t>(
        std::mismatch(in_a.begin(), in_a.end(), in_b.begin(), in_b.end()).first - in_a.begin());
    return std::string("the ") + what + " is " + quoted_from(in_b, differs) + " instead of " +
           quoted_from(in_a, differs);
}

void add(std::string& to, const std::string& more) {
    if (!more.empty()) to += (to.empty() ? "" : "; ") + more;
}

std::vector<std::string> genres_of(const guide::described& of) {
    std::vector<std::string> all;
    for (const spi_object::genre_value& each : of.genres)
        all.push_back(spi_object::genre_text(each));
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

struct size {
    unsigned width = 0, height = 0;  // 0: not known
};

// Pictures of the two fixed types need not say their size (TS 102 818).
size size_of(const picture& of) {
    if (of.width == 0 && of.height == 0) {
        if (of.type == "logo_colour_square") return {32, 32};
        if (of.type == "logo_colour_rectangle") return {112, 32};
    }
    return {of.width, of.height};
}

bool is_known(const size& of) {
    return of.width != 0 && of.height != 0;
}

bool is_same(const size& a, const size& b) {
    return a.width == b.width && a.height == b.height;
}

std::string text_of(const size& of) {
    return is_known(of) ? std::to_string(of.width) + "x" + std::to_string(of.height) : "of unknown size";
}

std::string words_for(const picture& of) {
    return "logo " + in_quotes(of.url) +
           (is_known(size_of(of)) ? ", " + text_of(size_of(of)) : std::string());
}

class picture_comparison {
 public:
    picture_comparison(const guide::described& a, const guide::described& b, picture_rules& rules)
        : a_(a.pictures), b_(b.pictures), taken_(b_.size()), rules_(rules) {}

    std::vector<said_difference> differences() {
        std::vector<const picture*> left;
        for (const picture& each : a_)
            if (const picture* const other = taken([&](const picture& of_b) { return of_b.url == each.url; }))
                compare(each, *other);
            else
                left.push_back(&each);
        for (const picture* const each : left) {
            const picture* const other = taken([&](const picture& of_b) {
                return of_b.mime == each->mime && is_known(size_of(of_b)) &&
                       is_same(size_of(of_b), size_of(*each));
            });
            if (other == nullptr)
                say(difference_kind::logo_missing, words_for(*each) + " is not in B");
            else
                compare(*each, *other);
        }
        for (std::size_t i = 0; i < b_.size(); ++i)
            if (!taken_[i]) say(difference_kind::logo_added, words_for(b_[i]) + " is only in B");
        return std::move(made_);
    }

 private:
    // The first of B's that is free and wanted.
    template <class Wanted>
    const picture* taken(const Wanted& wanted) {
        for (std::size_t i = 0; i < b_.size(); ++i)
            if (!taken_[i] && wanted(b_[i])) {
                taken_[i] = true;
                return &b_[i];
            }
        return nullptr;
    }

    void compare(const picture& a, const picture& b) {
        const std::string name = words_for(a);
        if (a.url != b.url) say(difference_kind::logo_name, name + ": its name in B is " + in_quotes(b.url));
        if (is_known(size_of(a)) && is_known(size_of(b)) && !is_same(size_of(a), size_of(b)))
            say(difference_kind::logo_size,
                name + ": it is " + text_of(size_of(b)) + " instead of " + text_of(size_of(a)));
        const bool in_a = a.content != nullptr;
        const bool in_b = b.content != nullptr;
        if (in_a && in_b) {
            if (*a.content != *b.content)
                say(difference_kind::logo_picture,
                    name + ": the image is another one, " + std::to_string(b.content->size()) +
                        " bytes instead of " + std::to_string(a.content->size()));
        } else if (in_a != in_b) {
            if (!rules_.both_have_images)
                ++rules_.uncompared;
            else if (in_a)
                say(difference_kind::logo_missing, name + " is announced in B, but its image is not there");
            else
                say(difference_kind::logo_added, name + " is announced in A, but its image is only in B");
        }
    }

    void say(difference_kind kind, std::string text) { made_.push_back({kind, std::move(text)}); }

    const std::vector<picture>& a_;
    const std::vector<picture>& b_;
    std::vector<bool> taken_;
    picture_rules& rules_;
    std::vector<said_difference> made_;
};

}  // namespace

std::string name_difference(const guide::texts& a, const guide::texts& b) {
    std::string text;
    add(text, text_difference("short name", a.short_texts, b.short_texts));
    add(text, text_difference("medium name", a.medium_texts, b.medium_texts));
    add(text, text_difference("long name", a.long_texts, b.long_texts));
    return text;
}

std::string description_difference(const guide::texts& a, const guide::texts& b) {
    std::string text;
    add(text, text_difference("short description", a.short_texts, b.short_texts));
    add(text, text_difference("long description", a.long_texts, b.long_texts));
    return text;
}

std::string genre_difference(const guide::described& a, const guide::described& b) {
    if (a.genres == b.genres) return {};
    const std::vector<std::string> in_a = genres_of(a);
    const std::vector<std::string> in_b = genres_of(b);
    const auto only = [](const std::vector<std::string>& of, const std::vector<std::string>& other) {
        std::vector<std::string> found;
        std::set_difference(of.begin(), of.end(), other.begin(), other.end(), std::back_inserter(found));
        std::string text;
        for (const std::string& each : found) {
            const auto value = spi_object::parse_genre(each);
            const std::string name = value ? genre_name(*value) : each;
            text += (text.empty() ? "" : ", ") + each + (name == each ? "" : " (" + name + ")");
        }
        return text;
    };
    const std::string missing = only(in_a, in_b);
    const std::string added = only(in_b, in_a);
    std::string text;
    if (!missing.empty()) add(text, "B does not have " + missing);
    if (!added.empty()) add(text, "only B has " + added);
    return text;
}

std::vector<said_difference> picture_differences(const guide::described& a, const guide::described& b,
                                                 picture_rules& rules) {
    if (a.pictures.empty() && b.pictures.empty()) return {};
    return picture_comparison(a, b, rules).differences();
}

}  // namespace dabspi::compare
