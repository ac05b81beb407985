#include "testkit/multiplex/eti_writer.h"

#include "testkit/multiplex/appending.h"

namespace multiplex_builder {

bytes eti_frame(const logical_frame& of, bool odd, const eti_options& options) {
    std::size_t words = of.sub_channels.size() + 1 + of.fic.size() / 4;
    for (const sub_channel& each : of.sub_channels)
        words += each.content.size() / 4;
    bytes header;
    put(header, of.count % 250, 1);
    put(header, (of.fic.empty() ? 0U : 0x80U) | of.sub_channels.size(), 1);
    put(header, std::size_t{of.mode} << 11 | (options.length ? words : 0), 2);
    for (const sub_channel& each : of.sub_channels)
        put(header,
            std::size_t{each.id} << 26 | std::size_t{each.start} << 16 | std::size_t{each.tpl} << 10 |
                each.content.size() / 8,
            4);
    put(header, 0, 2);  // MNSC
    bytes body = of.fic;
    for (const sub_channel& each : of.sub_channels)
        append(body, each.content);

    bytes frame;
    put(frame, of.error_level, 1);
    put(frame, odd ? 0xF8C549 : 0x073AB6, 3);
    append(frame, header);
    put(frame, options.header_crc ? crc16(header) : 0, 2);
    append(frame, body);
    put(frame, options.body_crc ? crc16(body) : 0, 2);
    put(frame, 0xFFFF, 2);
    put(frame, 0xFFFFFFFF, 4);
    return frame;
}

bytes raw_eti(const std::vector<logical_frame>& frames, const eti_options& options) {
    bytes file;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        append(file, eti_frame(frames[i], i % 2 != 0, options));
        file.resize(6144 * (i + 1), 0x55);
    }
    return file;
}

bytes streamed_eti(const std::vector<logical_frame>& frames, const eti_options& options) {
    bytes file;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const bytes frame = eti_frame(frames[i], i % 2 != 0, options);
        put_little(file, frame.size(), 2);
        append(file, frame);
    }
    return file;
}

bytes framed_eti(const std::vector<logical_frame>& frames, const eti_options& options) {
    bytes file;
    put_little(file, frames.size(), 4);
    append(file, streamed_eti(frames, options));
    return file;
}

}  // namespace multiplex_builder
