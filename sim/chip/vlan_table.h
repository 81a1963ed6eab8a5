// VLANs: the VLAN table, the member-configuration table and the VLAN settings of ports. Given: an entry of
// either table reads back as it was written; a VLAN takes a member index on its first use and keeps it;
// status 22 when no member configuration is free. The model's own choice:
//   - 4096 VLAN entries, 32 member configurations; a number beyond these, a port that the chip does not
//     have, and a switch that is neither 0 nor 1, is refused; masks are kept as written;
//   - the configuration's VLAN id says which VLAN an index serves (of two, the lower index), a free index
//     reads as zeros, and only a new start of the VLAN function gives indexes back;
//   - out of reset everything is 0. The start of the VLAN function puts every port untagged into VLAN 1 at
//     member index 0, makes VLAN 1 every port's PVID, and sets everything else to 0.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>

#include "platform/chip_records.h"
#include "sim/chip/ports.h"

namespace zrsim
{

class Chip;

// GetMbrIdx: the VLAN has no member index.
constexpr uint32_t kSdkVlanWithoutIndex = 0x20001;

struct VlanPort {
    uint16_t pvid = 0;
    uint8_t priority = 0;
    uint8_t ingressFilter = 0;
    uint8_t tagMode = 0;
};

class VlanTable
{
public:
    static constexpr uint32_t kVlans = 4096;
    static constexpr uint32_t kMemberConfigs = 32;
    static constexpr uint32_t kPriorities = 8;
    static constexpr uint32_t kTagModes = 4;

    void start();

    uint32_t read(uint32_t vlan, VlanCfg &cfg) const;
    uint32_t write(uint32_t vlan, const VlanCfg &cfg);

    // For VLAN ids of 12 bits.
    const VlanCfg &entry(uint32_t vlan) const { return vlans_[vlan]; }
    bool exists(uint32_t vlan) const
    {
        const VlanCfg &cfg = vlans_[vlan];
        return cfg.memberMask != 0 || cfg.untagMask != 0 || cfg.independentLearning != 0;
    }

    uint32_t findIndex(uint32_t vlan, uint32_t &index) const;
    uint32_t takeIndex(uint32_t vlan, uint32_t &index);
    uint32_t readMembers(uint32_t index, VlanMbrCfg &cfg) const;
    uint32_t writeMembers(uint32_t index, const VlanMbrCfg &cfg);

    uint32_t setPvid(uint32_t port, uint32_t vlan, uint32_t priority);
    uint32_t setIngressFilter(uint32_t port, uint32_t enable);
    uint32_t setTagMode(uint32_t port, uint32_t mode);
    // Null for a port that the chip does not have.
    const VlanPort *port(uint32_t port) const { return Ports::exists(port) ? &ports_[port] : nullptr; }
    uint32_t setUntagDscpPriority(uint32_t enable);
    bool untagDscpPriority() const { return untagDscpPriority_ != 0; }

    void attach(Chip &) {}
    void reset() { *this = VlanTable{}; }
    void dump(nlohmann::json &to) const;

private:
    std::optional<uint32_t> indexOf(uint32_t vlan) const;

    std::array<VlanCfg, kVlans> vlans_{};
    std::array<std::optional<VlanMbrCfg>, kMemberConfigs> memberConfigs_{};
    std::array<VlanPort, 32> ports_{};
    uint32_t untagDscpPriority_ = 0;
};

} // namespace zrsim
