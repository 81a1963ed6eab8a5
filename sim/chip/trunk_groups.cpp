#include "sim/chip/trunk_groups.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <bit>

#include "sim/sdk/sdk.h"

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
    groups_[group].chipPorts = mask << (group * kPortsPerGroup);
    return kSdkOk;
}

uint32_t TrunkGroups::read(uint32_t group, uint32_t &mask) const
{
    if (group >= kGroups)
        return kSdkBadArgument;
    mask = groups_[group].chipPorts;
    return kSdkOk;
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
                                    {"chipPorts", fmt::format("{:#x}", groups_[i].chipPorts)},
                                    {"hashInputs", fmt::format("{:#x}", groups_[i].hashInputs)}});
    if (mode_ != 0)
        to["mode"] = mode_;
}

} // namespace zrsim

using namespace zrsim;

// Numbering belongs to the chip's type, which the SDK knows once it has initialised the unit.
uint32_t l2sw_switch_port_L2P_get(uint32_t unit, uint32_t port)
{
    return pass(
        "l2sw_switch_port_L2P_get",
        [&] { return unit < kUnits && sdk().initialised(unit) ? chipPortOf(port) : kNoChipPort; }, unit, port);
}

uint32_t l2sw_trunk_port_get(uint32_t unit, uint32_t group, uint32_t *mask)
{
    return onChip(
        "l2sw_trunk_port_get", unit,
        [&](Chip &chip) { return mask ? chip.trunk.read(group, *mask) : kSdkNull; }, group, mask);
}

uint32_t l2sw_trunk_port_set(uint32_t unit, uint32_t group, uint32_t mask)
{
    return onChip(
        "l2sw_trunk_port_set", unit, [&](Chip &chip) { return chip.trunk.write(group, mask); }, group, mask);
}

uint32_t l2sw_trunk_mode_set(uint32_t unit, uint32_t mode)
{
    return onChip(
        "l2sw_trunk_mode_set", unit,
        [&](Chip &chip) {
            chip.trunk.setMode(mode);
            return kSdkOk;
        },
        mode);
}

uint32_t l2sw_trunk_distributionAlgorithm_set(uint32_t unit, uint32_t group, uint32_t mask)
{
    return onChip(
        "l2sw_trunk_distributionAlgorithm_set", unit,
        [&](Chip &chip) { return chip.trunk.setDistribution(group, mask); }, group, mask);
}
