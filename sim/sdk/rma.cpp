// The SDK's reserved-address functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_trap_rmaAction_set(uint32_t unit, uint32_t type, uint32_t action)
{
    return onChip({__func__, {unit, type, action}},
                  [&](Chip &chip) { return chip.rma.setAction(type, action); });
}

uint32_t l2sw_trap_lldpEnable_set(uint32_t unit, uint32_t flag)
{
    return onChip({__func__, {unit, flag}}, [&](Chip &chip) { return chip.rma.trapLldp(flag); });
}
