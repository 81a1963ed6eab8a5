// Link aggregation: two groups of chip ports, and the translation of port numbers. Given: group 0 takes chip
// ports 0 to 3, group 1 chip ports from 4 on; a group is written as a mask counted from its first chip port
// and read in chip port numbers. The model's own choice:
//   - the chip numbers the ports that it has in their order: 0 to 4 are chip ports 0 to 4, 15 to 17 are 5 to
//     7; no other port has a number (0xFFFFFFFF, also on a unit that has not been initialised);
//   - a mask with a bit beyond the group's ports is refused, and so is a distribution for groups other than
//     0, 1 and 0xFF (both) or with inputs above 0x7F; the trunk mode is kept as written;
//     what mode and inputs do to a frame: sim/pipeline/egress.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

constexpr uint32_t kNoChipPort = 0xFFFFFFFF;

// The chip port of one of the manager's ports.
uint32_t chipPortOf(uint32_t port);

class TrunkGroups
{
public:
    static constexpr uint32_t kGroups = 2;
    static constexpr uint32_t kAllGroups = 0xFF;

    uint32_t write(uint32_t group, uint32_t mask);
    uint32_t read(uint32_t group, uint32_t &mask) const;
    void setMode(uint32_t mode) { mode_ = mode; }
    uint32_t mode() const { return mode_; }
    uint32_t setDistribution(uint32_t group, uint32_t inputs);
    uint32_t distribution(uint32_t group) const { return groups_.at(group).hashInputs; }

    // The manager's ports of a group, and of the trunk that a port is in, or the port alone.
    uint32_t ports(uint32_t group) const { return groups_[group].ports; }
    uint32_t portsWith(uint32_t port) const;
    // The port that stands for a trunk: its lowest.
    uint32_t logicalPort(uint32_t port) const;

    void attach(Chip &) {}
    void reset() { *this = TrunkGroups{}; }
    void dump(nlohmann::json &to) const;

private:
    struct Group {
        uint32_t chipPorts = 0; // bit n = chip port n
        uint32_t ports = 0;     // the same, bit n = the manager's port n
        uint32_t hashInputs = 0;
    };
    std::array<Group, kGroups> groups_{};
    uint32_t mode_ = 0;
};

} // namespace zrsim
