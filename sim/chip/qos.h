// Queueing and priorities. Given: up to 8 queues; a flow-control pause threshold; priority-selection tables
// of five values that ports are bound to; maps from 802.1p (8) and DSCP (64) to internal priority and from
// internal priority to queue; 8 scheduling weights a port. The model's own choice:
//   - two priority-selection tables; their values weigh the sources of a frame's priority in the order port,
//     802.1p, ACL, DSCP, address; of the sources that a frame has, the one with the highest value decides, and
//     a source with value 0 never does;
//   - a priority-to-queue map for each number of queues, whose queues are below that number;
//   - a weight of 0 is strict priority, weights go to 127, the threshold to 4095;
//   - a reset leaves one queue and all else 0; initialising sets the number of queues and nothing else.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "platform/chip_records.h"

namespace zrsim
{

class Chip;

class Qos
{
public:
    static constexpr uint32_t kQueues = 8;
    static constexpr uint32_t kPorts = 32;
    static constexpr uint32_t kDscps = 64;
    static constexpr uint32_t kPriSelTables = 2;
    static constexpr uint32_t kPriSelSources = 5;
    enum Source : uint32_t { kFromPort, kFrom8021p, kFromAcl, kFromDscp, kFromAddress };

    uint32_t init(uint32_t queues);
    uint32_t setPauseThreshold(uint32_t threshold);
    uint32_t setPriSel(uint32_t index, const SdkQosRecord &values);
    uint32_t bindPort(uint32_t port, uint32_t index);
    uint32_t setQueueMap(uint32_t queues, const SdkQosRecord &map);
    uint32_t setWeights(uint32_t port, const SdkQosRecord &weights);
    uint32_t mapDscp(uint32_t dscp, uint32_t priority);
    uint32_t map8021p(uint32_t p8021, uint32_t priority);

    uint32_t queues() const { return queues_; }
    uint32_t pauseThreshold() const { return pauseThreshold_; }

    // Where a frame goes that comes in at a port.
    struct Verdict {
        uint32_t priority;
        uint32_t queue;
        const char *source;
    };
    // The priorities that a frame brings; those it has not got do not count.
    struct Sources {
        uint32_t port = 0;
        std::optional<uint32_t> dot1p{};
        std::optional<uint32_t> acl{};
        std::optional<uint32_t> dscp{};
    };
    Verdict classify(uint32_t port, const Sources &sources) const;

    // The set-up as tables for people.
    std::string tables() const;

    void attach(Chip &) {}
    void reset() { *this = Qos{}; }
    void dump(nlohmann::json &to) const;

private:
    using Eight = std::array<uint32_t, kQueues>;

    uint32_t queues_ = 1;
    uint32_t pauseThreshold_ = 0;
    std::array<std::array<uint32_t, kPriSelSources>, kPriSelTables> priSel_{};
    std::array<std::optional<uint32_t>, kPorts> boundTo_{};
    std::array<Eight, kQueues + 1> queueMaps_{}; // by number of queues
    Eight by8021p_{};
    std::array<uint32_t, kDscps> byDscp_{};
    std::array<std::optional<Eight>, kPorts> weights_{};
};

} // namespace zrsim
