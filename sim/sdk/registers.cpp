// The SDK's register functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_getAsicReg(uint8_t unit, uint32_t reg, uint32_t *value)
{
    return pass({__func__, {unit, reg, value}}, [&] { return sdk().readRegister(unit, reg, value); });
}

uint32_t l2sw_setAsicReg(uint8_t unit, uint32_t reg, uint32_t value)
{
    return pass({__func__, {unit, reg, value}}, [&] { return sdk().writeRegister(unit, reg, value); });
}

// The one AHB word that is known is the silicon's FS data; every other address reads 0.
uint32_t l2sw_switch_ahb_read(uint32_t unit, uint32_t address, uint32_t *value)
{
    return onChip({__func__, {unit, address, value}}, [&](Chip &chip) {
        constexpr uint32_t kFsData = 0x9000084C;
        *value = address == kFsData ? chip.fsData : 0;
    });
}
