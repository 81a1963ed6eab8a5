#include "chip/chip.h"

#include "base/unit.h"
#include "platform/chip_sdk.h"

uint32_t ZR_COMMON_ChipRegRead(uint32_t unit, uint32_t reg, uint32_t *value)
{
    return HAL_CHIP_RegReadQ9(unit, reg, value);
}

uint32_t HAL_CHIP_RegReadQ9(uint32_t unit, uint32_t reg, uint32_t *value)
{
    return l2sw_getAsicReg(zr::unit8(unit), reg, value);
}

uint32_t ZR_COMMON_ChipRegWrite(uint32_t unit, uint32_t reg, uint32_t value)
{
    return HAL_CHIP_RegWriteQ9(unit, reg, value);
}

uint32_t HAL_CHIP_RegWriteQ9(uint32_t unit, uint32_t reg, uint32_t value)
{
    return l2sw_setAsicReg(zr::unit8(unit), reg, value);
}
