// The SDK's counter functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_stat_port_getAll(uint32_t unit, uint32_t port, SdkPortCounters *counters)
{
    return onChip({__func__, {unit, port, counters}},
                  [&](Chip &chip) { return chip.counters.read(port, *counters); });
}

uint32_t l2sw_stat_port_reset(uint32_t unit, uint32_t port)
{
    return onChip({__func__, {unit, port}}, [&](Chip &chip) { return chip.counters.clear(port); });
}
