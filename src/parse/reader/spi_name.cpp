#include "src/parse/reader/spi_name.h"

#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_tags.h"
#include "src/parse/reader/spi_token_table.h"

namespace spi {

void read_name(spi_parseable& name_element, const SpiTokenTable& tokens, std::string& name) {
    while (name_element.has_more()) {
        spi_parseable child(name_element);
        if (child.tag != tag::text) continue;  // attributes: xml:lang
        name.clear();
        child.buf.read_string(name, child.content_left(), tokens);
    }
}

}  // namespace spi
