#include "testkit/multiplex/edi_writer.h"

#include <algorithm>
#include <string>

#include "testkit/multiplex/appending.h"

namespace multiplex_builder {

namespace {

bytes word(const std::string& text) {
    return {text.begin(), text.end()};
}

bytes item(const bytes& name, const bytes& value) {
    bytes result = name;
    put(result, 8 * value.size(), 4);
    append(result, value);
    return result;
}

bytes deti(const logical_frame& of, bool with_time) {
    bytes value;
    put(value, (with_time ? 0x80U : 0U) | (of.fic.empty() ? 0U : 0x40U) | of.count / 250U, 1);
    put(value, of.count % 250U, 1);
    put(value, of.error_level, 1);
    put(value, std::uint64_t{of.mode} << 6, 1);
    put(value, 0, 2);
    if (with_time) put(value, 0x0520000000ABCDEF, 8);
    append(value, of.fic);
    return item(word("deti"), value);
}

bytes est(const sub_channel& of, std::size_t number) {
    bytes value;
    put(value, std::uint64_t{of.id} << 18 | std::uint64_t{of.start} << 8 | std::uint64_t{of.tpl} << 2, 3);
    append(value, of.content);
    bytes name = word("est");
    put(name, number, 1);
    return item(name, value);
}

struct cut_packet {
    std::vector<bytes> fragments;
    std::size_t chunk_data = 0;
    std::size_t filling = 0;
};

cut_packet cut_plainly(const bytes& packet, std::size_t size) {
    cut_packet result;
    for (std::size_t at = 0; at < packet.size(); at += size)
        result.fragments.emplace_back(
            packet.begin() + static_cast<std::ptrdiff_t>(at),
            packet.begin() + static_cast<std::ptrdiff_t>(std::min(at + size, packet.size())));
    return result;
}

cut_packet cut_with_parity(const bytes& packet, unsigned to_lose) {
    cut_packet result;
    const std::size_t words = (packet.size() + 206) / 207;
    result.chunk_data = (packet.size() + words - 1) / words;
    result.filling = words * result.chunk_data - packet.size();
    bytes data = packet;
    data.resize(words * result.chunk_data);
    bytes block;
    for (std::size_t i = 0; i < words; ++i) {
        bytes chunk(data.begin() + static_cast<std::ptrdiff_t>(i * result.chunk_data),
                    data.begin() + static_cast<std::ptrdiff_t>((i + 1) * result.chunk_data));
        append(block, chunk);
        chunk.resize(207);
        append(block, reed_solomon_parity(chunk, 48, 1));
    }
    const std::size_t most = words * 48 / (to_lose + 1);
    const std::size_t count = (block.size() + most - 1) / most;
    const std::size_t size = (block.size() + count - 1) / count;
    block.resize(size * count);
    result.fragments.assign(count, bytes(size));
    for (std::size_t at = 0; at < block.size(); ++at)
        result.fragments[at % count][at / count] = block[at];
    return result;
}

}  // namespace

bytes af_packet(const logical_frame& of, std::uint16_t sequence, const af_options& options) {
    bytes payload;
    append(payload, item(word("*ptr"), {'D', 'E', 'T', 'I', 0, 0, 0, 0}));
    append(payload, deti(of, options.with_time));
    if (options.unknown_items) append(payload, item(word("avtm"), {1, 2, 3, 4, 5}));
    for (std::size_t i = 0; i < of.sub_channels.size(); ++i)
        append(payload, est(of.sub_channels[i], i + 1));
    if (options.unknown_items) put(payload, 0, 7);  // filling
    bytes packet = word("AF");
    put(packet, payload.size(), 4);
    put(packet, sequence, 2);
    put(packet, options.crc ? 0x90 : 0x10, 1);
    put(packet, 'T', 1);
    append(packet, payload);
    if (options.crc) return with_crc16(packet);
    put(packet, 0, 2);
    return packet;
}

std::vector<bytes> pf_fragments(const bytes& packet, std::uint16_t sequence, const pf_options& options) {
    const cut_packet cut = options.fec ? cut_with_parity(packet, options.fragments_to_lose)
                                       : cut_plainly(packet, options.fragment_size);
    std::vector<bytes> result;
    for (std::size_t i = 0; i < cut.fragments.size(); ++i) {
        bytes header = word("PF");
        put(header, sequence, 2);
        put(header, i, 3);
        put(header, cut.fragments.size(), 3);
        put(header, (options.fec ? 0x8000U : 0U) | (options.source ? 0x4000U : 0U) | cut.fragments[i].size(),
            2);
        if (options.fec) {
            put(header, cut.chunk_data, 1);
            put(header, cut.filling, 1);
        }
        if (options.source) {
            put(header, *options.source, 2);
            put(header, 0xFFFF, 2);
        }
        header = with_crc16(header);
        append(header, cut.fragments[i]);
        result.push_back(header);
    }
    return result;
}

bytes in_file_framing(const bytes& packet) {
    bytes value = item(word("time"), bytes(8, 0x11));
    append(value, item(word("afpf"), packet));
    return item(word("fio_"), value);
}

bytes af_stream(const std::vector<logical_frame>& frames, const af_options& options) {
    bytes result;
    for (std::size_t i = 0; i < frames.size(); ++i)
        append(result, af_packet(frames[i], static_cast<std::uint16_t>(i), options));
    return result;
}

bytes pf_stream(const std::vector<logical_frame>& frames, const pf_options& options) {
    bytes result;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const auto number = static_cast<std::uint16_t>(i);
        for (const bytes& each : pf_fragments(af_packet(frames[i], number), number, options))
            append(result, each);
    }
    return result;
}

bytes framed_stream(const std::vector<logical_frame>& frames) {
    bytes result;
    for (std::size_t i = 0; i < frames.size(); ++i)
        append(result, in_file_framing(af_packet(frames[i], static_cast<std::uint16_t>(i))));
    return result;
}

}  // namespace multiplex_builder
