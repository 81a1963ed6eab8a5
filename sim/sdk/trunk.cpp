// The SDK's trunk functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

// Numbering belongs to the chip's type, which the SDK knows once it has initialised the unit.
uint32_t l2sw_switch_port_L2P_get(uint32_t unit, uint32_t port)
{
    return pass({__func__, {unit, port}},
                [&] { return unit < kUnits && sdk().initialised(unit) ? chipPortOf(port) : kNoChipPort; });
}

uint32_t l2sw_trunk_port_get(uint32_t unit, uint32_t group, uint32_t *mask)
{
    return onChip({__func__, {unit, group, mask}}, [&](Chip &chip) { return chip.trunk.read(group, *mask); });
}

uint32_t l2sw_trunk_port_set(uint32_t unit, uint32_t group, uint32_t mask)
{
    return onChip({__func__, {unit, group, mask}}, [&](Chip &chip) { return chip.trunk.write(group, mask); });
}

uint32_t l2sw_trunk_mode_set(uint32_t unit, uint32_t mode)
{
    return onChip({__func__, {unit, mode}}, [&](Chip &chip) { chip.trunk.setMode(mode); });
}

uint32_t l2sw_trunk_distributionAlgorithm_set(uint32_t unit, uint32_t group, uint32_t mask)
{
    return onChip({__func__, {unit, group, mask}},
                  [&](Chip &chip) { return chip.trunk.setDistribution(group, mask); });
}
