#include "tools/air/container/container_statistics.h"

namespace dabspi::air {

const std::vector<named_counter>& loss_counters() {
    using s = container_statistics;
    static const std::vector<named_counter> all = {
        {"frames_damaged", "frames handed on although damaged", &s::frames_damaged},
        {"frames_missing", "frames missing by their count", &s::frames_missing},
        {"gaps", "gaps in the frame count", &s::gaps},
        {"bytes_skipped", "bytes that belong to no frame", &s::bytes_skipped},
        {"wrong_sync", "frames without their synchronisation word", &s::wrong_sync},
        {"cut_short", "frames that the input ends in", &s::cut_short},
        {"layout_wrong", "frames whose parts do not fit", &s::layout_wrong},
        {"header_dropped", "frames dropped for their header", &s::header_dropped},
        {"header_crc_wrong", "frames with a wrong header CRC", &s::header_crc_wrong},
        {"body_crc_wrong", "frames with a wrong body CRC", &s::body_crc_wrong},
        {"marked_as_errored", "frames marked as errored", &s::marked_as_errored},
        {"count_repeated", "frames with the count of the one before", &s::count_repeated},
        {"af_crc_wrong", "AF packets with a wrong CRC", &s::af_crc_wrong},
        {"af_malformed", "AF packets with malformed TAG items", &s::af_malformed},
        {"af_without_frame", "AF packets that hold no frame", &s::af_without_frame},
        {"af_repeated", "AF packets sent again", &s::af_repeated},
        {"pf_header_crc_wrong", "PF fragments with a wrong header CRC", &s::pf_header_crc_wrong},
        {"pf_unusable", "PF fragments that fit no packet", &s::pf_unusable},
        {"pf_repeated", "PF fragments sent again or too late", &s::pf_repeated},
        {"pf_missing", "PF fragments missing", &s::pf_missing},
        {"pf_sets_repaired", "AF packets repaired by Reed-Solomon", &s::pf_sets_repaired},
        {"pf_sets_lost", "AF packets not recoverable from their fragments", &s::pf_sets_lost},
        {"pf_sets_missing", "AF packets without any fragment", &s::pf_sets_missing},
        {"captured_other", "captured packets of something else, or of another flow", &s::captured_other},
        {"captured_cut", "captured packets cut short", &s::captured_cut},
        {"captured_fragments", "IP fragments that make no datagram", &s::captured_fragments},
    };
    return all;
}

}  // namespace dabspi::air
