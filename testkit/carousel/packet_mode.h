// Builds what a multiplexer sends in packet mode: data groups to packets to cells, with and without forward
// error correction (EN 300 401, 5.3.2, 5.3.3, 5.3.5). For tests; independent of tools/: it has a CRC and a
// Reed-Solomon encoder of its own, which divide polynomials bit by bit and symbol by symbol.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace carousel_kit {

using bytes = std::vector<std::uint8_t>;

std::uint16_t crc(const bytes& of);
void append_u16(bytes& to, unsigned value);
void append_crc(bytes& to);
void append(bytes& to, const bytes& more);

// The 16 parity bytes of RS(204,188): `data` is 188 bytes.
bytes rs_parity(const bytes& data);

struct group_fields {
    unsigned type = 4;
    unsigned continuity = 0;
    unsigned repetition = 0;
    bool crc = true;
    bool segment_field = true;
    bool last = false;
    unsigned number = 0;
    std::optional<unsigned> transport_id;
    std::optional<unsigned> extension;
    bytes end_address;
};
bytes data_group(const group_fields& fields, const bytes& data);

struct packet_fields {
    unsigned cells = 1;
    unsigned continuity = 0;
    bool first = true;
    bool last = true;
    unsigned address = 1;
    bool command = false;
    std::optional<unsigned> useful;  // a false length; without it that of the data
};
bytes packet(const packet_fields& fields, const bytes& data);
bytes padding_packet(unsigned cells = 1);
bytes fec_packet(unsigned counter, const bytes& parity22);

// Splits groups into packets; keeps each address's continuity.
class packetizer {
 public:
    // Packets of up to `cells` cells (1 to 4); the last of a group is as short as it can be.
    explicit packetizer(unsigned cells = 4) : cells_(cells) {}
    std::vector<bytes> packets(unsigned address, const bytes& group);
    bytes joined(unsigned address, const bytes& group);

 private:
    unsigned cells_;
    std::map<unsigned, unsigned> continuity_;
};

// Fills packets up to whole FEC frames with padding, and adds the FEC packets. Packets do not cross FEC
// frames.
bytes with_fec(const std::vector<bytes>& packets);

// Cut into logical frames of `size` bytes; the last is filled with padding packets.
std::vector<bytes> logical_frames(const bytes& stream, std::size_t size);

}  // namespace carousel_kit
