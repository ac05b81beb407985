#include "tools/encode/broadcast_object.h"

#include <utility>

#include "tools/encode/token_builder.h"
#include "tools/spi/decode.h"

namespace dabspi {

namespace {

void check(const spi_object::object& tree) {
    for (const spi_object::problem_at& each : problems_of(tree)) {
        const spi_object::problem& what = *each.what;
        if (what.code == spi_object::problem_code::too_many_elements ||
            what.code == spi_object::problem_code::text_too_long)
            throw std::length_error("the object is larger than its readers take: " + what.text);
        if (severity_of(what.code) != spi_object::severity::malformed) continue;
        throw std::logic_error("the encoder made a malformed object, at byte " + std::to_string(what.offset) +
                               ": " + what.text);
    }
}

}  // namespace

broadcast_object make_object(const encoded_object& from, const token_choice& tokens) {
    broadcast_object made;
    made.body = write_object(from.top);
    made.size_without_tokens = made.body.size();
    spi_object::object tree = spi_object::decode(made.body);

    made.tokens = tokens.build ? choose_tokens(texts_of(from.top)) : tokens.given;
    if (!made.tokens.empty()) {
        spi_object::bytes smaller = write_object(from.top, made.tokens);
        spi_object::object its_tree = spi_object::decode(smaller);
        // Tokens can be worth less than their table, or make so much text of so few bytes that readers
        // give up. Tokens that were asked for by name are taken as they are.
        if (tokens.build && (smaller.size() >= made.body.size() || !its_tree.well_formed())) {
            made.tokens.clear();
        } else {
            made.body = std::move(smaller);
            tree = std::move(its_tree);
        }
    }
    check(tree);
    made.header = header_of(tree);
    return made;
}

}  // namespace dabspi
