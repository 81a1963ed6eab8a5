// The SDK's VLAN functions over the table model.
#include "sim/chip/vlan_table.h"
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_vlan_init(uint32_t unit)
{
    return onChip({__func__, {unit}}, [](Chip &chip) { chip.vlan.start(); });
}

uint32_t l2sw_vlan_get(uint32_t unit, uint32_t vlan, VlanCfg *cfg)
{
    return onChip({__func__, {unit, vlan, cfg}}, [&](Chip &chip) { return chip.vlan.read(vlan, *cfg); });
}

uint32_t l2sw_vlan_set(uint32_t unit, uint32_t vlan, VlanCfg *cfg)
{
    return onChip({__func__, {unit, vlan, cfg}}, [&](Chip &chip) { return chip.vlan.write(vlan, *cfg); });
}

uint32_t l2sw_vlan_checkAndCreateMbr(uint32_t unit, uint32_t vlan, uint32_t *index)
{
    return onChip({__func__, {unit, vlan, index}},
                  [&](Chip &chip) { return chip.vlan.takeIndex(vlan, *index); });
}

uint32_t l2sw_vlan_GetMbrIdx(uint32_t unit, uint32_t vlan, uint32_t *index)
{
    return onChip({__func__, {unit, vlan, index}},
                  [&](Chip &chip) { return chip.vlan.findIndex(vlan, *index); });
}

uint32_t l2sw_vlan_mbrCfg_get(uint32_t unit, uint32_t index, VlanMbrCfg *cfg)
{
    return onChip({__func__, {unit, index, cfg}},
                  [&](Chip &chip) { return chip.vlan.readMembers(index, *cfg); });
}

uint32_t l2sw_vlan_mbrCfg_set(uint32_t unit, uint32_t index, VlanMbrCfg *cfg)
{
    return onChip({__func__, {unit, index, cfg}},
                  [&](Chip &chip) { return chip.vlan.writeMembers(index, *cfg); });
}

uint32_t l2sw_vlan_portPvid_set(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t priority)
{
    return onChip({__func__, {unit, port, vlan, priority}},
                  [&](Chip &chip) { return chip.vlan.setPvid(port, vlan, priority); });
}

uint32_t l2sw_vlan_portPvid_get(uint32_t unit, uint32_t port, uint32_t *vlan, uint32_t *priority)
{
    return onChip({__func__, {unit, port, vlan, priority}}, [&](Chip &chip) -> uint32_t {
        const VlanPort *settings = chip.vlan.port(port);
        if (settings == nullptr)
            return kSdkBadPort;
        *vlan = settings->pvid;
        *priority = settings->priority;
        return kSdkOk;
    });
}

uint32_t l2sw_vlan_portIgrFilterEnable_set(uint32_t unit, uint32_t port, uint32_t enable)
{
    return onChip({__func__, {unit, port, enable}},
                  [&](Chip &chip) { return chip.vlan.setIngressFilter(port, enable); });
}

uint32_t l2sw_vlan_tagMode_set(uint32_t unit, uint32_t port, uint32_t mode)
{
    return onChip({__func__, {unit, port, mode}}, [&](Chip &chip) { return chip.vlan.setTagMode(port, mode); });
}

uint32_t l2sw_vlan_UntagDscpPriorityEnable_set(uint32_t unit, uint32_t enable)
{
    return onChip({__func__, {unit, enable}},
                  [&](Chip &chip) { return chip.vlan.setUntagDscpPriority(enable); });
}
