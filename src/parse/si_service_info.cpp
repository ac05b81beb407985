#include "src/parse/si_service_info.h"

#include <utility>

#include "src/parse/reader/spi_name.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_tags.h"
#include "src/parse/reader/spi_token_table.h"

namespace spi {

// service (TS 102 371, element 0x28)
int SiServiceInfo::parse(spi_parseable& service, SpiTokenTable& tokens) {
    while (service.has_more()) {
        spi_parseable child(service);
        switch (child.tag) {
            // The medium name wins over a short name, in either order.
            case tag::medium_name: parse_name(child, tokens); break;
            case tag::short_name:
                if (name.empty()) parse_name(child, tokens);
                break;
            case tag::media_description: parse_mediadesc(child, tokens); break;
            case tag::service_bearer: parse_bearer(child); break;
            default: break;  // passed over when `child` closes
        }
    }
    return 0;
}

int SiServiceInfo::parse_name(spi_parseable& name_element, SpiTokenTable& tokens) {
    read_name(name_element, tokens, name);
    return 0;
}

// bearer of a service (TS 102 371, element 0x29). Any ensemble is accepted; the last one wins.
int SiServiceInfo::parse_bearer(spi_parseable& bearer) {
    while (bearer.has_more()) {
        spi_parseable attr(bearer);
        if (attr.tag == attribute::service_bearer::id) id.parse(attr);
    }
    return 0;
}

// mediaDescription (TS 102 371, element 0x13)
int SiServiceInfo::parse_mediadesc(spi_parseable& description, SpiTokenTable& tokens) {
    while (description.has_more()) {
        spi_parseable child(description);
        if (child.tag != tag::multimedia) continue;
        SiMediaInfo media;
        // As known by now: logos in front of the bearer keep the identifier of zeros, or that of an earlier
        // bearer.
        media.id = id;
        parse_multimedia(child, tokens, media);
        logos.push_back(std::move(media).logo_info());
    }
    return 0;
}

// multimedia (TS 102 371, element 0x2B)
int SiServiceInfo::parse_multimedia(spi_parseable& multimedia, SpiTokenTable& tokens, SiMediaInfo& media) {
    while (multimedia.has_more()) {
        spi_parseable attr(multimedia);
        switch (attr.tag) {
            case attribute::multimedia::mime: media.parse_mime(attr, tokens); break;
            case attribute::multimedia::url: media.parse_url(attr, tokens); break;
            case attribute::multimedia::type: media.set_type(attr.ru8()); break;
            case attribute::multimedia::width: media.width = attr.ru16(); break;
            case attribute::multimedia::height: media.height = attr.ru16(); break;
            default: break;
        }
    }
    return 0;
}

}  // namespace spi
