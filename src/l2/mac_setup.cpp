// Table bring-up, ageing time, per-port learning, callback.
#include "l2/mac.h"

#include "base/print.h"
#include "base/unit.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

LswmL2Control g_LswmL2Control;

namespace
{

constexpr uint32_t kIllegalMacReg = 0x355E;
constexpr uint32_t kIllegalMacEnable = 1U << 0;

} // namespace

uint32_t ZR_MAC_Init(uint32_t unit)
{
    if (uint32_t ret = HAL_MAC_InitZr(unit); ret != LSW_OK)
        return ZR_FAILED(MAC, ret, "HAL MAC InitZr unitId = %u", unit);
    if (uint32_t ret = HAL_MAC_SetAgeTimeZr(unit, ZR_MAC_AGE_TIME); ret != LSW_OK)
        return ZR_FAILED(MAC, ret, "HAL MAC SetAgeTimeZr unitId = %u", unit);
    return LSW_OK;
}

uint32_t HAL_MAC_InitZr(uint32_t unit)
{
    if (uint32_t ret = l2sw_l2_init(unit); ret != 0)
        return ZR_CHIP_FAILED(MAC, ret, "Zr mac init failed(unit:%u, retVal:0x%x).", unit, ret);
    return HAL_MAC_IllegalMacProc(unit);
}

uint32_t HAL_MAC_IllegalMacProc(uint32_t unit)
{
    uint32_t value = 0;
    if (uint32_t ret = l2sw_getAsicReg(zr::unit8(unit), kIllegalMacReg, &value); ret != 0)
        return ZR_CHIP_FAILED(MAC, ret, "Illegal mac proc reg read failed (unit:%u, retVal:0x%x).", unit, ret);
    if (uint32_t ret = l2sw_setAsicReg(zr::unit8(unit), kIllegalMacReg, value | kIllegalMacEnable); ret != 0)
        return ZR_CHIP_FAILED(MAC, ret, "Illegal mac proc reg write failed (unit:%u, retVal:0x%x).", unit, ret);
    return LSW_OK;
}

uint32_t ZR_MAC_SetAgeTime(uint32_t unit, uint32_t ageTime)
{
    return HAL_MAC_SetAgeTimeZr(unit, ageTime);
}

uint32_t HAL_MAC_SetAgeTimeZr(uint32_t unit, uint32_t ageTime)
{
    if (uint32_t ret = l2sw_l2_aging_set(unit, ageTime); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr set mac aging time failed(unit:%u, age time:%u, retVal:0x%x).",
                              unit, ageTime, ret);
    return LSW_OK;
}

uint32_t ZR_MAC_GetAgeTime(uint32_t unit, uint32_t *ageTime)
{
    return HAL_MAC_GetAgeTimeZr(unit, ageTime);
}

uint32_t HAL_MAC_GetAgeTimeZr(uint32_t unit, uint32_t *ageTime)
{
    if (ageTime == nullptr)
        return LSW_NULL_POINTER;
    uint32_t value = 0;
    if (uint32_t ret = l2sw_l2_aging_get(unit, &value); ret != 0) {
        ZR_TRACE(DETAIL, VLAN, "Zr get mac aging time failed(unit:%u, age time:%u, retVal:0x%x).", unit, value,
                 ret);
        return LSW_CHIP_FAILED;
    }
    *ageTime = value;
    return LSW_OK;
}

uint32_t ZR_MAC_SetPortLearnMode(uint32_t unit, uint32_t port, uint32_t enable)
{
    return HAL_MAC_SetPortLearnModeZr(unit, port, enable);
}

uint32_t HAL_MAC_SetPortLearnModeZr(uint32_t unit, uint32_t port, uint32_t enable)
{
    const uint32_t limit = enable != 0 ? ZR_MAC_CAPACITY : 0;
    if (uint32_t ret = l2sw_l2_limitLearningCnt_set(unit, port, limit); ret != 0)
        return ZR_CHIP_FAILED(MAC, ret,
                              "Set port learn mode failed (unit:%u, port:%u, enable:%u, retVal:0x%x).", unit,
                              port, enable, ret);
    return LSW_OK;
}

uint32_t ZR_MAC_GetPortLearnMode(uint32_t unit, uint32_t port, uint32_t *enable)
{
    return HAL_MAC_GetPortLearnModeZr(unit, port, enable);
}

uint32_t HAL_MAC_GetPortLearnModeZr(uint32_t unit, uint32_t port, uint32_t *enable)
{
    if (enable == nullptr)
        return LSW_NULL_POINTER;
    uint32_t limit = 0;
    if (uint32_t ret = l2sw_l2_limitLearningCnt_get(unit, port, &limit); ret != 0)
        return ZR_CHIP_FAILED(MAC, ret, "Get port learn mode failed (unit:%u, port:%u, count:%u, retVal:0x%x).",
                              unit, port, limit, ret);
    *enable = limit != 0 ? 1 : 0;
    return LSW_OK;
}

void ZR_MAC_RegisterCallBack(uint32_t type, void (*callBack)(void))
{
    if (callBack != nullptr)
        HAL_MAC_RegisterCallBackZr(type, callBack);
}

void HAL_MAC_RegisterCallBackZr(uint32_t type, void (*callBack)(void))
{
    if (type == ZR_MAC_CALLBACK_TYPE) {
        g_LswmL2Control.macCallBack = callBack;
        return;
    }
    ZR_TRACE(DETAIL, MAC, "Register mac callback type failed (type:%u).", type);
}
