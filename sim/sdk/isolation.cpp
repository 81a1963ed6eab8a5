// The SDK's isolation functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_port_isolation_get(uint32_t unit, uint32_t port, uint32_t *mask)
{
    return onChip({__func__, {unit, port, mask}}, [&](Chip &chip) { return chip.isolation.read(port, *mask); });
}

uint32_t l2sw_port_isolation_set(uint32_t unit, uint32_t port, uint32_t mask)
{
    return onChip({__func__, {unit, port, mask}}, [&](Chip &chip) { return chip.isolation.write(port, mask); });
}
