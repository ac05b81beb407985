// Identifies a DAB service component: the key of every per-service table of the library.
#pragma once

#include <cstddef>
#include <cstdint>

namespace spi {

struct EnsemblesNamed;
class spi_parseable;

struct ServElemId {
    std::uint32_t sid = 0;   // service identifier, 16 or 32 bits as coded
    std::uint8_t ecc = 0;    // extended country code
    std::uint8_t scids = 0;  // service component identifier within the service, 0..15

    // Reads a content ID (TS 102 371): flags, ECC, ensemble identifier, service identifier. Bounded by the
    // attribute; what is missing counts as all ones. An ECC and an ensemble identifier are always expected
    // after the flags: the ensemble flag is deliberately not tested, so an object of the 2008 edition that
    // leaves them out is misread. Always 0.
    int parse(spi_parseable& attr);
    // The same, stored only when the coded ensemble identifier is `eid`: then 0. Otherwise 1, and nothing
    // changes. `named` notes which ensemble was named.
    int parse(spi_parseable& attr, unsigned short eid, EnsemblesNamed* named = nullptr);

    // All three fields in one number: ecc in bits 40..47, sid in 8..39, scids in 0..7.
    std::uint64_t val() const { return std::uint64_t{ecc} << 40 | std::uint64_t{sid} << 8 | scids; }
};

// Every field counts.
inline bool operator==(const ServElemId& a, const ServElemId& b) {
    return a.val() == b.val();
}
// The opposite.
inline bool operator!=(const ServElemId& a, const ServElemId& b) {
    return !(a == b);
}
// By val(): the order of the tables.
inline bool operator<(const ServElemId& a, const ServElemId& b) {
    return a.val() < b.val();
}

// The low 32 bits of val(): the ECC and the top byte of a 32-bit sid take part in equality only. For
// unordered containers of hosts and tools; the library's own tables are ordered, since 65,536 identifiers
// share each value.
struct SeidHash {
    // The hash.
    std::size_t operator()(const ServElemId& id) const { return static_cast<std::uint32_t>(id.val()); }
};

}  // namespace spi
