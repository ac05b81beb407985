#include "testkit/carousel/mot_carousel.h"

#include <zlib.h>

#include <algorithm>
#include <stdexcept>

namespace carousel_kit {

namespace {

void append_u32(bytes& to, unsigned value) {
    append_u16(to, value >> 16);
    append_u16(to, value & 0xFFFF);
}

bytes deflated(const bytes& of, int window) {
    z_stream stream{};
    if (deflateInit2(&stream, 9, Z_DEFLATED, window, 4, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("zlib");
    bytes input = of;
    bytes output(deflateBound(&stream, static_cast<uLong>(of.size())) + 32);
    stream.next_in = input.data();
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = output.data();
    stream.avail_out = static_cast<uInt>(output.size());
    const int result = deflate(&stream, Z_FINISH);
    output.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) throw std::runtime_error("zlib");
    return output;
}

}  // namespace

bytes text(const std::string& of) {
    return {of.begin(), of.end()};
}
bytes gzip(const bytes& of) {
    return deflated(of, 15 + 16);
}
bytes zlib_packed(const bytes& of) {
    return deflated(of, 15);
}

bytes parameter(unsigned id, const bytes& value, bool long_form) {
    bytes all;
    const auto first = [&all, id](unsigned pli) { all.push_back(static_cast<std::uint8_t>(pli << 6 | id)); };
    if (!long_form && value.empty()) {
        first(0);
    } else if (!long_form && value.size() == 1) {
        first(1);
    } else if (!long_form && value.size() == 4) {
        first(2);
    } else if (value.size() < 0x80) {
        first(3);
        all.push_back(static_cast<std::uint8_t>(value.size()));
    } else {
        first(3);
        append_u16(all, 0x8000U | static_cast<unsigned>(value.size()));
    }
    append(all, value);
    return all;
}

bytes name_parameter(const std::string& name, unsigned charset) {
    bytes value = {static_cast<std::uint8_t>(charset << 4)};
    append(value, text(name));
    return parameter(0x0C, value);
}

bytes header(const object& of) {
    bytes parameters;
    if (of.name) append(parameters, name_parameter(*of.name, of.name_charset));
    append(parameters, of.more_parameters);
    const unsigned size = static_cast<unsigned>(parameters.size()) + 7;
    const unsigned body = of.body_size.value_or(static_cast<unsigned>(of.body.size()));
    bytes all;
    append_u32(all, body << 4 | size >> 9);
    all.push_back(static_cast<std::uint8_t>(size >> 1));
    append_u16(all, (size & 1) << 15 | of.content_type << 9 | of.content_subtype);
    append(all, parameters);
    return all;
}

bytes directory(const std::vector<object>& objects, const directory_fields& fields) {
    bytes rest;
    append_u16(rest, static_cast<unsigned>(objects.size()));
    rest.push_back(static_cast<std::uint8_t>(fields.period_tenths >> 16));
    append_u16(rest, fields.period_tenths & 0xFFFF);
    append_u16(rest, fields.segment_size);
    append_u16(rest, static_cast<unsigned>(fields.parameters.size()));
    append(rest, fields.parameters);
    for (const object& each : objects) {
        append_u16(rest, each.transport_id);
        append(rest, header(each));
    }
    bytes all;
    append_u32(all, static_cast<unsigned>(rest.size()) + 4);
    append(all, rest);
    return all;
}

bytes compressed_directory(const bytes& plain, unsigned compression) {
    const bytes coded = gzip(plain);
    bytes all;
    append_u32(all, 0x80000000U | static_cast<unsigned>(coded.size() + 9));
    all.push_back(static_cast<std::uint8_t>(compression));
    append_u32(all, static_cast<unsigned>(plain.size()));
    append(all, coded);
    return all;
}

bytes segment_group(unsigned type, unsigned transport_id, unsigned number, bool last, const bytes& data) {
    group_fields fields;
    fields.type = type;
    fields.continuity = number & 0xF;
    fields.transport_id = transport_id;
    fields.number = number;
    fields.last = last;
    bytes segment;
    append_u16(segment, static_cast<unsigned>(data.size()));
    append(segment, data);
    return data_group(fields, segment);
}

std::vector<bytes> segment_groups(unsigned type, unsigned transport_id, const bytes& entity,
                                  std::size_t segment_size) {
    std::vector<bytes> all;
    for (std::size_t at = 0; at < entity.size() || at == 0; at += segment_size) {
        const std::size_t end = std::min(at + segment_size, entity.size());
        const bytes data(entity.begin() + static_cast<std::ptrdiff_t>(at),
                         entity.begin() + static_cast<std::ptrdiff_t>(end));
        all.push_back(segment_group(type, transport_id, static_cast<unsigned>(at / segment_size),
                                    end == entity.size(), data));
    }
    return all;
}

void append(std::vector<bytes>& to, const std::vector<bytes>& more) {
    to.insert(to.end(), more.begin(), more.end());
}

std::vector<bytes> directory_round(unsigned directory_id, const std::vector<object>& objects,
                                   std::size_t segment_size, bool compressed) {
    const bytes plain = directory(objects);
    std::vector<bytes> all =
        compressed ? segment_groups(kCompressedGroup, directory_id, compressed_directory(plain), segment_size)
                   : segment_groups(kDirectoryGroup, directory_id, plain, segment_size);
    for (const object& each : objects)
        append(all, segment_groups(kBodyGroup, each.transport_id, each.body, segment_size));
    return all;
}

std::vector<bytes> header_round(const std::vector<object>& objects, std::size_t segment_size) {
    std::vector<bytes> all;
    for (const object& each : objects) {
        append(all, segment_groups(kHeaderGroup, each.transport_id, header(each), segment_size));
        append(all, segment_groups(kBodyGroup, each.transport_id, each.body, segment_size));
    }
    return all;
}

}  // namespace carousel_kit
