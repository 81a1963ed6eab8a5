// The SDK's LED functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_led_groupConfig_set(uint8_t unit, uint32_t group, uint32_t mode)
{
    return onChip({__func__, {unit, group, mode}}, [&](Chip &chip) { return chip.leds.setMode(group, mode); });
}

uint32_t l2sw_led_blinkRate_set(uint8_t unit, uint32_t rate)
{
    return onChip({__func__, {unit, rate}}, [&](Chip &chip) { chip.leds.setBlinkRate(rate); });
}
