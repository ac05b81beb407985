#include "tools/air/container/capture_reader.h"

#include <pcap/pcap.h>

#include <array>
#include <stdexcept>

#include "tools/air/container/edi_packet.h"

namespace dabspi::air {

capture_reader::capture_reader(byte_source& from, std::string wanted)
    : from_(from), wanted_(std::move(wanted)) {
    cookie_io_functions_t functions{};
    functions.read = read_some;
    file_ = ::fopencookie(this, "r", functions);
    if (file_ == nullptr) throw std::bad_alloc();
    std::array<char, PCAP_ERRBUF_SIZE> message{};
    capture_ = ::pcap_fopen_offline(file_, message.data());
    if (capture_ == nullptr) {
        std::fclose(file_);
        throw std::runtime_error(std::string("the capture cannot be read: ") + message.data());
    }
    link_type_ = ::pcap_datalink(capture_);
    if (!datagram_reader::knows(link_type_)) {
        const char* const name = ::pcap_datalink_val_to_name(link_type_);
        const std::string text = name != nullptr ? name : std::to_string(link_type_);
        ::pcap_close(capture_);
        throw std::runtime_error("the capture has the link type " + text +
                                 ", which is not read; capture on Ethernet or on the interface \"any\"");
    }
}

capture_reader::~capture_reader() {
    ::pcap_close(capture_);  // closes the file
}

ssize_t capture_reader::read_some(void* self, char* to, std::size_t space) {
    auto& me = *static_cast<capture_reader*>(self);
    const std::size_t got = me.from_.read(reinterpret_cast<std::uint8_t*>(to), space);
    me.read_ += got;
    return static_cast<ssize_t>(got);
}

bool capture_reader::is_wanted(const udp_flow& flow) const {
    return wanted_.empty() || wanted_ == std::to_string(flow.port) || wanted_ == destination_text(flow);
}

// Its place in flows_; kMostFlows if it is none with EDI, or there are too many.
std::size_t capture_reader::flow_of(const udp_datagram& datagram) {
    for (std::size_t i = 0; i < flows_.size(); ++i)
        if (flows_[i].flow == datagram.flow) return i;
    const edi_kind kind = edi_at(datagram.payload).kind;
    const bool edi = kind == edi_kind::af_packet || kind == edi_kind::pf_fragment;
    if (!edi || flows_.size() == kMostFlows) return kMostFlows;
    flows_.push_back({datagram.flow, 0, kind == edi_kind::pf_fragment});
    return flows_.size() - 1;
}

// The next one of the chosen flow, into left_.
bool capture_reader::next_datagram() {
    for (;;) {
        pcap_pkthdr* header = nullptr;
        const u_char* data = nullptr;
        const int result = ::pcap_next_ex(capture_, &header, &data);
        if (result != 1) {
            if (result == PCAP_ERROR) {
                error_ = ::pcap_geterr(capture_);
                ++statistics_.cut_short;
            }
            return false;
        }
        udp_datagram datagram;
        if (!datagrams_.read(link_type_, {data, header->caplen}, datagram)) continue;
        const std::size_t flow = flow_of(datagram);
        if (flow != kMostFlows) {
            ++flows_[flow].datagrams;
            if (chosen() == nullptr && is_wanted(datagram.flow)) chosen_ = flow;
        }
        if (flow != kMostFlows && flow == chosen_) {
            left_ = datagram.payload;
            return true;
        }
        ++statistics_.captured_other;
    }
}

bool capture_reader::next(frame& to) {
    for (;;) {
        const byte_view packet = fragments_.take();
        if (!packet.empty()) {
            if (frames_.take(packet, to)) return true;
            continue;
        }
        if (!left_.empty()) {
            if (take_datagram(to)) return true;
            continue;
        }
        if (ended_) return false;
        if (!next_datagram()) {
            ended_ = true;
            fragments_.finish();
        }
    }
}

// Goes on by one packet or fragment of the datagram. True: there is a frame.
bool capture_reader::take_datagram(frame& to) {
    const edi_unit unit = edi_at(left_);
    const byte_view whole = left_.part(0, unit.size);
    if (unit.kind == edi_kind::nothing || unit.kind == edi_kind::wrong_fragment || whole.size() < unit.size) {
        if (unit.kind == edi_kind::wrong_fragment) ++statistics_.pf_header_crc_wrong;
        if (whole.size() < unit.size) ++statistics_.cut_short;
        statistics_.bytes_skipped += left_.size();
        left_ = {};
        return false;
    }
    left_ = left_.part(unit.size);
    if (unit.kind == edi_kind::af_packet) return frames_.take(whole, to);
    if (unit.kind == edi_kind::pf_fragment) fragments_.add(read_pf_fragment(whole));
    return false;
}

}  // namespace dabspi::air
