// The SDK's VLAN functions over the table model.
#include "sim/chip/vlan_table.h"
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_vlan_init(uint32_t unit)
{
    return onChip("l2sw_vlan_init", unit, [](Chip &chip) {
        chip.vlan.start();
        return kSdkOk;
    });
}

uint32_t l2sw_vlan_get(uint32_t unit, uint32_t vlan, VlanCfg *cfg)
{
    return onChip(
        "l2sw_vlan_get", unit, [&](Chip &chip) { return cfg ? chip.vlan.read(vlan, *cfg) : kSdkNull; }, vlan,
        cfg);
}

uint32_t l2sw_vlan_set(uint32_t unit, uint32_t vlan, VlanCfg *cfg)
{
    return onChip(
        "l2sw_vlan_set", unit, [&](Chip &chip) { return cfg ? chip.vlan.write(vlan, *cfg) : kSdkNull; }, vlan,
        cfg);
}

uint32_t l2sw_vlan_checkAndCreateMbr(uint32_t unit, uint32_t vlan, uint32_t *index)
{
    return onChip(
        "l2sw_vlan_checkAndCreateMbr", unit,
        [&](Chip &chip) { return index ? chip.vlan.takeIndex(vlan, *index) : kSdkNull; }, vlan, index);
}

uint32_t l2sw_vlan_GetMbrIdx(uint32_t unit, uint32_t vlan, uint32_t *index)
{
    return onChip(
        "l2sw_vlan_GetMbrIdx", unit,
        [&](Chip &chip) { return index ? chip.vlan.findIndex(vlan, *index) : kSdkNull; }, vlan, index);
}

uint32_t l2sw_vlan_mbrCfg_get(uint32_t unit, uint32_t index, VlanMbrCfg *cfg)
{
    return onChip(
        "l2sw_vlan_mbrCfg_get", unit,
        [&](Chip &chip) { return cfg ? chip.vlan.readMembers(index, *cfg) : kSdkNull; }, index, cfg);
}

uint32_t l2sw_vlan_mbrCfg_set(uint32_t unit, uint32_t index, VlanMbrCfg *cfg)
{
    return onChip(
        "l2sw_vlan_mbrCfg_set", unit,
        [&](Chip &chip) { return cfg ? chip.vlan.writeMembers(index, *cfg) : kSdkNull; }, index, cfg);
}

uint32_t l2sw_vlan_portPvid_set(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t priority)
{
    return onChip(
        "l2sw_vlan_portPvid_set", unit, [&](Chip &chip) { return chip.vlan.setPvid(port, vlan, priority); },
        port, vlan, priority);
}

uint32_t l2sw_vlan_portPvid_get(uint32_t unit, uint32_t port, uint32_t *vlan, uint32_t *priority)
{
    return onChip(
        "l2sw_vlan_portPvid_get", unit,
        [&](Chip &chip) -> uint32_t {
            const VlanPort *settings = chip.vlan.port(port);
            if (settings == nullptr)
                return kSdkBadPort;
            if (vlan == nullptr || priority == nullptr)
                return kSdkNull;
            *vlan = settings->pvid;
            *priority = settings->priority;
            return kSdkOk;
        },
        port, vlan, priority);
}

uint32_t l2sw_vlan_portIgrFilterEnable_set(uint32_t unit, uint32_t port, uint32_t enable)
{
    return onChip(
        "l2sw_vlan_portIgrFilterEnable_set", unit,
        [&](Chip &chip) { return chip.vlan.setIngressFilter(port, enable); }, port, enable);
}

uint32_t l2sw_vlan_tagMode_set(uint32_t unit, uint32_t port, uint32_t mode)
{
    return onChip(
        "l2sw_vlan_tagMode_set", unit, [&](Chip &chip) { return chip.vlan.setTagMode(port, mode); }, port,
        mode);
}

uint32_t l2sw_vlan_UntagDscpPriorityEnable_set(uint32_t unit, uint32_t enable)
{
    return onChip(
        "l2sw_vlan_UntagDscpPriorityEnable_set", unit,
        [&](Chip &chip) { return chip.vlan.setUntagDscpPriority(enable); }, enable);
}
