// Bringing a unit into service.
#include "chip/chip.h"

#include "base/print.h"
#include "base/unit.h"
#include "chip/rgmii.h"
#include "chip/smi.h"
#include "platform/board.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

const uint32_t g_vesperUnitMap[LSWM_UNITS] = {0x00000000, 0x00B00000, 0x00B00001};

namespace
{

constexpr uint32_t kResetOneChip = 0xFFFFFFFF;
constexpr uint32_t kDelayAfterReset = 20;

constexpr uint32_t kLedGroups = 3;
constexpr uint32_t kLedMode = 2;
constexpr uint32_t kLedBlinkRate = 5;

} // namespace

uint32_t ZR_COMMON_InitChip(uint32_t unit)
{
    return HAL_CHIP_InitQ9(unit);
}

uint32_t HAL_CHIP_InitQ9(uint32_t unit)
{
    if (unit >= LSWM_UNITS)
        return LSW_INVALID_ARGUMENT;

    uint32_t ret = VESPER_ADPAPI_ResetChip(kResetOneChip, g_vesperUnitMap[unit], 0);
    ret += VESPER_ADPAPI_ResetChip(kResetOneChip, g_vesperUnitMap[unit], 1);
    if (ret != 0)
        return ZR_CHIP_FAILED(CHIP, ret, "Chip Q9 Vesper Reset");
    PAL_TaskDelay(kDelayAfterReset);

    // The record lives for this call only: the SDK has to copy it.
    const SdkServices services = {
        .regRead = L2sw_SmiRead,
        .regWrite = L2sw_SmiWrite,
        .semCreate = LSWM_SemMCreate,
        .semTake = LSWM_SemTake,
        .semGive = LSWM_SemGive,
        .print = LSWM_CmdCliPrint,
    };
    l2sw_fun_regist(&services);
    if (ret = l2sw_switch_init(unit); ret != 0)
        return ZR_CHIP_FAILED(CHIP, ret, "Chip Q9 Init");
    L2sw_RGMIIInit(unit);
    HAL_CHIP_LEDInitZr(zr::unit8(unit));
    LSWM_DebugInfoPrint(LSW_MODULE_CHIP, 0, "The chip %u ver is %u", unit, l2sw_eco[unit]);
    return LSW_OK;
}

uint32_t HAL_CHIP_LEDInitZr(uint8_t unit)
{
    for (uint32_t group = 0; group < kLedGroups; ++group)
        l2sw_led_groupConfig_set(unit, group, kLedMode);
    return l2sw_led_blinkRate_set(unit, kLedBlinkRate);
}
