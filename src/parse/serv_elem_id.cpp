#include "src/parse/serv_elem_id.h"

#include "src/parse/ensembles_named.h"
#include "src/parse/reader/spi_parseable.h"

namespace spi {
namespace {

constexpr std::uint8_t kScidsMask = 0x0F;
constexpr std::uint8_t kLongSid = 0x10;

struct content_id {
    ServElemId service;
    std::uint16_t eid;
};

content_id read_content_id(spi_parseable& attr) {
    content_id read{};
    const std::uint8_t flags = attr.ru8();
    read.service.scids = flags & kScidsMask;
    read.service.ecc = attr.ru8();
    read.eid = attr.ru16();
    read.service.sid = (flags & kLongSid) != 0 ? attr.ru32() : attr.ru16();
    return read;
}

}  // namespace

int ServElemId::parse(spi_parseable& attr) {
    *this = read_content_id(attr).service;
    return 0;
}

int ServElemId::parse(spi_parseable& attr, unsigned short eid, EnsemblesNamed* named) {
    const content_id read = read_content_id(attr);
    if (named != nullptr) named->note(read.eid, eid);
    if (read.eid != eid) return 1;
    *this = read.service;
    return 0;
}

}  // namespace spi
