#include "sim/chip/trunk_groups.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <bit>

#include "sim/chip/port_list.h"
#include "sim/chip/ports.h"
#include "sim/chip/status.h"

namespace zrsim
{
namespace
{

constexpr uint32_t kPortsPerGroup = 4;
constexpr uint32_t kHashInputs = 0x7F;

} // namespace

uint32_t chipPortOf(uint32_t port)
{
    if (!Ports::exists(port))
        return kNoChipPort;
    return static_cast<uint32_t>(std::popcount(Ports::kLogicalPorts & ((1U << port) - 1)));
}

uint32_t TrunkGroups::write(uint32_t group, uint32_t mask)
{
    if (group >= kGroups || mask >> kPortsPerGroup != 0)
        return kSdkBadArgument;
    Group &written = groups_[group];
    written.chipPorts = mask << (group * kPortsPerGroup);
    written.ports = 0;
    for (uint32_t port = 0; port < 32; ++port)
        if (const uint32_t chipPort = chipPortOf(port);
            chipPort != kNoChipPort && (written.chipPorts >> chipPort & 1U) != 0)
            written.ports |= 1U << port;
    return kSdkOk;
}

uint32_t TrunkGroups::read(uint32_t group, uint32_t &mask) const
{
    if (group >= kGroups)
        return kSdkBadArgument;
    mask = groups_[group].chipPorts;
    return kSdkOk;
}

uint32_t TrunkGroups::portsWith(uint32_t port) const
{
    for (const Group &group : groups_)
        if ((group.ports >> port & 1U) != 0)
            return group.ports;
    return 1U << port;
}

uint32_t TrunkGroups::logicalPort(uint32_t port) const
{
    return static_cast<uint32_t>(std::countr_zero(portsWith(port)));
}

uint32_t TrunkGroups::setDistribution(uint32_t group, uint32_t inputs)
{
    if ((group >= kGroups && group != kAllGroups) || inputs > kHashInputs)
        return kSdkBadArgument;
    for (uint32_t i = 0; i < kGroups; ++i)
        if (group == i || group == kAllGroups)
            groups_[i].hashInputs = inputs;
    return kSdkOk;
}

void TrunkGroups::dump(nlohmann::json &to) const
{
    for (uint32_t i = 0; i < kGroups; ++i)
        if (groups_[i].chipPorts != 0 || groups_[i].hashInputs != 0)
            to["groups"].push_back({{"group", i},
                                    {"chipPorts", portList(groups_[i].chipPorts)},
                                    {"ports", portList(groups_[i].ports)},
                                    {"hashInputs", fmt::format("{:#x}", groups_[i].hashInputs)}});
    if (mode_ != 0)
        to["mode"] = mode_;
}

} // namespace zrsim
