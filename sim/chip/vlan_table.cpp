#include "sim/chip/vlan_table.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstring>
#include <string>

#include "sim/chip/port_list.h"
#include "sim/chip/status.h"

namespace zrsim
{
namespace
{

template <class Record> bool isZero(const Record &record)
{
    static constexpr Record kZero{};
    return std::memcmp(&record, &kZero, sizeof record) == 0;
}

// A chip field of which nothing is known but that it is kept.
template <size_t Bytes> std::string hexBytes(const uint8_t (&bytes)[Bytes])
{
    return fmt::format("{:02x}", fmt::join(bytes, bytes + Bytes, ""));
}

} // namespace

void VlanTable::start()
{
    reset();
    vlans_[1].memberMask = Ports::kLogicalPorts;
    vlans_[1].untagMask = Ports::kLogicalPorts;
    memberConfigs_[0] = VlanMbrCfg{1, {}, Ports::kLogicalPorts, {}};
    for (uint32_t port = 0; port < ports_.size(); ++port)
        if (Ports::exists(port))
            ports_[port].pvid = 1;
}

uint32_t VlanTable::read(uint32_t vlan, VlanCfg &cfg) const
{
    if (vlan >= kVlans)
        return kSdkBadArgument;
    cfg = vlans_[vlan];
    return kSdkOk;
}

uint32_t VlanTable::write(uint32_t vlan, const VlanCfg &cfg)
{
    if (vlan >= kVlans)
        return kSdkBadArgument;
    vlans_[vlan] = cfg;
    return kSdkOk;
}

std::optional<uint32_t> VlanTable::indexOf(uint32_t vlan) const
{
    for (uint32_t index = 0; index < kMemberConfigs; ++index)
        if (memberConfigs_[index] && memberConfigs_[index]->vlan == vlan)
            return index;
    return std::nullopt;
}

uint32_t VlanTable::findIndex(uint32_t vlan, uint32_t &index) const
{
    if (vlan >= kVlans)
        return kSdkBadArgument;
    const auto found = indexOf(vlan);
    if (!found)
        return kSdkVlanWithoutIndex;
    index = *found;
    return kSdkOk;
}

uint32_t VlanTable::takeIndex(uint32_t vlan, uint32_t &index)
{
    if (uint32_t status = findIndex(vlan, index); status != kSdkVlanWithoutIndex)
        return status;
    for (uint32_t free = 0; free < kMemberConfigs; ++free) {
        if (memberConfigs_[free])
            continue;
        memberConfigs_[free] = VlanMbrCfg{static_cast<uint16_t>(vlan), {}, 0, {}};
        index = free;
        return kSdkOk;
    }
    return SDK_MBR_TABLE_FULL;
}

uint32_t VlanTable::readMembers(uint32_t index, VlanMbrCfg &cfg) const
{
    if (index >= kMemberConfigs)
        return kSdkBadArgument;
    cfg = memberConfigs_[index].value_or(VlanMbrCfg{});
    return kSdkOk;
}

uint32_t VlanTable::writeMembers(uint32_t index, const VlanMbrCfg &cfg)
{
    if (index >= kMemberConfigs)
        return kSdkBadArgument;
    memberConfigs_[index] = cfg;
    return kSdkOk;
}

uint32_t VlanTable::setPvid(uint32_t port, uint32_t vlan, uint32_t priority)
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    if (vlan >= kVlans || priority >= kPriorities)
        return kSdkBadArgument;
    ports_[port].pvid = static_cast<uint16_t>(vlan);
    ports_[port].priority = static_cast<uint8_t>(priority);
    return kSdkOk;
}

uint32_t VlanTable::setIngressFilter(uint32_t port, uint32_t enable)
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    if (enable > 1)
        return kSdkBadArgument;
    ports_[port].ingressFilter = static_cast<uint8_t>(enable);
    return kSdkOk;
}

uint32_t VlanTable::setTagMode(uint32_t port, uint32_t mode)
{
    if (!Ports::exists(port))
        return kSdkBadPort;
    if (mode >= kTagModes)
        return kSdkBadArgument;
    ports_[port].tagMode = static_cast<uint8_t>(mode);
    return kSdkOk;
}

uint32_t VlanTable::setUntagDscpPriority(uint32_t enable)
{
    if (enable > 1)
        return kSdkBadArgument;
    untagDscpPriority_ = enable;
    return kSdkOk;
}

void VlanTable::dump(nlohmann::json &to) const
{
    for (uint32_t vlan = 0; vlan < kVlans; ++vlan) {
        const VlanCfg &cfg = vlans_[vlan];
        if (isZero(cfg))
            continue;
        nlohmann::json &shown = to["vlans"][fmt::format("{}", vlan)];
        shown = {{"members", portList(cfg.memberMask)},
                 {"untagged", portList(cfg.untagMask)},
                 {"independentLearning", cfg.independentLearning}};
        if (!isZero(cfg.reserved10))
            shown["reserved10"] = hexBytes(cfg.reserved10);
    }
    for (uint32_t index = 0; index < kMemberConfigs; ++index)
        if (const auto &cfg = memberConfigs_[index])
            to["memberConfigs"].push_back(
                {{"index", index}, {"vlan", cfg->vlan}, {"members", portList(cfg->memberMask)}});
    for (uint32_t number = 0; number < ports_.size(); ++number) {
        const VlanPort &port = ports_[number];
        if (port.pvid != 0 || port.priority != 0 || port.ingressFilter != 0 || port.tagMode != 0)
            to["ports"][fmt::format("{}", number)] = {{"pvid", port.pvid},
                                                      {"priority", port.priority},
                                                      {"ingressFilter", port.ingressFilter},
                                                      {"tagMode", port.tagMode}};
    }
    if (untagDscpPriority_ != 0)
        to["untagDscpPriority"] = true;
}

} // namespace zrsim
