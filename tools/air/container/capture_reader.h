// Reads EDI out of packet captures (pcap and pcapng, by libpcap): AF packets and PF fragments in UDP. A
// capture may hold several such flows: the one that is chosen is read, or else the first that is seen, and
// all are listed.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "tools/air/container/byte_source.h"
#include "tools/air/container/datagram.h"
#include "tools/air/container/edi_frame.h"
#include "tools/air/container/frame_source.h"
#include "tools/air/container/pf_collector.h"

struct pcap;

namespace dabspi::air {

// One flow with EDI in it.
struct edi_flow {
    udp_flow flow;
    std::uint64_t datagrams = 0;
    bool fragments = false;  // PF fragments rather than AF packets
};

class capture_reader final : public frame_source {
 public:
    // `wanted` is a port or ADDRESS:PORT of the destination; empty: the first flow with EDI. Throws
    // std::runtime_error with a text for the user if libpcap cannot read the capture's header, or its link
    // type is none that is known here.
    capture_reader(byte_source& from, std::string wanted);
    ~capture_reader() override;

    bool next(frame& to) override;
    const container_statistics& statistics() const override { return statistics_; }
    std::uint64_t position() const override { return read_; }

    // Those seen so far, in the order in which they began; at most kMostFlows.
    static constexpr std::size_t kMostFlows = 64;
    const std::vector<edi_flow>& flows() const { return flows_; }
    // Of these, the one that is read; null: none so far.
    const edi_flow* chosen() const { return chosen_ < flows_.size() ? &flows_[chosen_] : nullptr; }
    // What ended the reading before the capture's end, in words; else empty.
    const std::string& error() const { return error_; }

 private:
    bool next_datagram();
    std::size_t flow_of(const udp_datagram& datagram);
    bool is_wanted(const udp_flow& flow) const;
    bool take_datagram(frame& to);
    static ssize_t read_some(void* self, char* to, std::size_t space);

    byte_source& from_;
    const std::string wanted_;
    std::uint64_t read_ = 0;
    std::FILE* file_ = nullptr;
    pcap* capture_ = nullptr;
    int link_type_ = 0;
    std::vector<edi_flow> flows_;
    std::size_t chosen_ = static_cast<std::size_t>(-1);
    byte_view left_;  // of the datagram at hand
    bool ended_ = false;
    std::string error_;
    container_statistics statistics_;
    datagram_reader datagrams_{statistics_};
    pf_collector fragments_{statistics_};
    edi_frames frames_{statistics_};
};

}  // namespace dabspi::air
