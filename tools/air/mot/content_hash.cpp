#include "tools/air/mot/content_hash.h"

namespace dabspi::air {

namespace {

// FNV-1a, of eight bytes at a time where there are as many.
class hasher {
 public:
    void add(std::uint64_t number) {
        value_ = (value_ ^ number) * 0x100000001B3;
        value_ ^= value_ >> 32;
    }
    void add(byte_view bytes) {
        add(std::uint64_t{bytes.size()});
        std::size_t at = 0;
        for (; at + 8 <= bytes.size(); at += 8)
            add(std::uint64_t{bytes.number(at, 4)} << 32 | bytes.number(at + 4, 4));
        for (; at < bytes.size(); ++at)
            add(std::uint64_t{bytes[at]});
    }
    std::uint64_t value() const { return value_; }

 private:
    std::uint64_t value_ = 0xCBF29CE484222325;
};

void add_name(hasher& to, const object_header& header) {
    to.add(std::uint64_t{header.content_type} << 16 | header.content_subtype);
    const std::string& name = header.name.value_or(std::string());
    to.add(byte_view(reinterpret_cast<const std::uint8_t*>(name.data()), name.size()));
}

}  // namespace

std::uint64_t name_hash(const object_header& header) {
    hasher hash;
    add_name(hash, header);
    return hash.value();
}

std::uint64_t version_hash(const object_header& header, byte_view body) {
    hasher hash;
    add_name(hash, header);
    for (const mot_parameter& parameter : parameters_of(header.parameters)) {
        const auto id = static_cast<header_parameter>(parameter.id);
        if (id == header_parameter::scope_start || id == header_parameter::scope_end ||
            id == header_parameter::scope_id) {
            hash.add(std::uint64_t{parameter.id});
            hash.add(parameter.value);
        }
    }
    hash.add(body);
    return hash.value();
}

}  // namespace dabspi::air
