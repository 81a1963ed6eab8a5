// The SDK's spanning-tree functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_vlan_stg_set(uint32_t unit, uint32_t vlan, uint32_t instance)
{
    return onChip({__func__, {unit, vlan, instance}},
                  [&](Chip &chip) { return chip.stp.bind(vlan, instance); });
}

uint32_t l2sw_vlan_stg_get(uint32_t unit, uint32_t vlan, uint32_t *instance)
{
    return onChip({__func__, {unit, vlan, instance}},
                  [&](Chip &chip) { return chip.stp.instance(vlan, *instance); });
}

uint32_t l2sw_stp_mstpState_set(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state)
{
    return onChip({__func__, {unit, instance, port, state}},
                  [&](Chip &chip) { return chip.stp.setState(instance, port, state); });
}
