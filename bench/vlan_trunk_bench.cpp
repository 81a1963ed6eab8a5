// VLAN members and trunk members through the tables beside the SDK calls themselves.
#include "bench/pair.h"
#include "platform/chip_sdk.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;

// The manager keeps its tables at hand.
const ZrVlanOps &vlanOps = zrbench_pair::tables().vlan;
const ZrTrunkOps &trunkOps = zrbench_pair::tables().trunk;

uint32_t addMember(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag)
{
    const uint32_t bit = 1U << (port % 32);
    VlanCfg cfg{};
    if (uint32_t status = l2sw_vlan_get(unit, vlan, &cfg); status != 0)
        return status;
    cfg.memberMask |= bit;
    if (untag != 0)
        cfg.untagMask |= bit;
    if (uint32_t status = l2sw_vlan_set(unit, vlan, &cfg); status != 0)
        return status;
    uint32_t index = 0;
    if (uint32_t status = l2sw_vlan_checkAndCreateMbr(unit, vlan, &index); status != 0)
        return status;
    VlanMbrCfg members{};
    l2sw_vlan_mbrCfg_get(unit, index, &members);
    members.vlan = static_cast<uint16_t>(vlan);
    members.memberMask |= bit;
    return l2sw_vlan_mbrCfg_set(unit, index, &members);
}

uint32_t delMember(uint32_t unit, uint32_t port, uint32_t vlan)
{
    const uint32_t bit = 1U << (port % 32);
    uint32_t index = 0;
    VlanMbrCfg members{};
    if (l2sw_vlan_GetMbrIdx(unit, vlan, &index) == 0 && l2sw_vlan_mbrCfg_get(unit, index, &members) == 0) {
        members.memberMask &= ~bit;
        l2sw_vlan_mbrCfg_set(unit, index, &members);
    }
    VlanCfg cfg{};
    if (uint32_t status = l2sw_vlan_get(unit, vlan, &cfg); status != 0)
        return status;
    cfg.memberMask &= ~bit;
    cfg.untagMask &= ~bit;
    return l2sw_vlan_set(unit, vlan, &cfg);
}

uint32_t readPortMap(uint32_t unit, uint32_t vlan, uint32_t *memberMask, uint32_t *untagMask)
{
    VlanCfg cfg{};
    if (uint32_t status = l2sw_vlan_get(unit, vlan, &cfg); status != 0)
        return status;
    *memberMask = cfg.memberMask;
    *untagMask = cfg.untagMask;
    return 0;
}

uint32_t joinGroup(uint32_t unit, uint32_t port, uint32_t group)
{
    const uint32_t chipPort = l2sw_switch_port_L2P_get(unit, port);
    if (group != 0 || chipPort > 3)
        return 1;
    uint32_t mask = 0;
    if (uint32_t status = l2sw_trunk_port_get(unit, group, &mask); status != 0)
        return status;
    return l2sw_trunk_port_set(unit, group, mask | 1U << chipPort);
}

const bool registered =
    pair(
        "vlan add member",
        [] { benchmark::DoNotOptimize(vlanOps.addMember(opaque(1U), opaque(3U), opaque(100U), opaque(1U))); },
        [] { benchmark::DoNotOptimize(addMember(opaque(1U), opaque(3U), opaque(100U), opaque(1U))); }) &&
    pair(
        "vlan remove member",
        [] { benchmark::DoNotOptimize(vlanOps.delMember(opaque(1U), opaque(3U), opaque(100U))); },
        [] { benchmark::DoNotOptimize(delMember(opaque(1U), opaque(3U), opaque(100U))); }) &&
    pair(
        "vlan read port map",
        [] {
            uint32_t masks[2];
            benchmark::DoNotOptimize(vlanOps.getPortMap(opaque(1U), opaque(100U), &masks[0], &masks[1]));
        },
        [] {
            uint32_t masks[2];
            benchmark::DoNotOptimize(readPortMap(opaque(1U), opaque(100U), &masks[0], &masks[1]));
        }) &&
    pair(
        "vlan set PVID",
        [] { benchmark::DoNotOptimize(vlanOps.setPortPvid(opaque(1U), opaque(3U), opaque(100U))); },
        [] { benchmark::DoNotOptimize(l2sw_vlan_portPvid_set(opaque(1U), opaque(3U), opaque(100U), 0)); }) &&
    pair(
        "trunk add member",
        [] { benchmark::DoNotOptimize(trunkOps.addMember(opaque(1U), opaque(2U), opaque(0U))); },
        [] { benchmark::DoNotOptimize(joinGroup(opaque(1U), opaque(2U), opaque(0U))); });

} // namespace
