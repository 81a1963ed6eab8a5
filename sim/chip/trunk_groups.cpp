#include "sim/chip/trunk_groups.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <bit>

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
