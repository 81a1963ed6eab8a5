#include "qos/stormctl.h"

#include "frame/trace.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

constexpr uint32_t kGlobalPort = 0xFFFFFFFF;

// Chip storm type of each packet type; the chip's type 2 is not used.
constexpr uint32_t kChipStormTypes[] = {0, 1, 3};
constexpr uint32_t kPacketTypes = sizeof(kChipStormTypes) / sizeof(kChipStormTypes[0]);

} // namespace

uint32_t ZR_STORMCTL_Init(uint32_t)
{
    return LSW_OK;
}

uint32_t ZR_STORMCTL_Set(uint32_t unit, uint32_t port, const LswmStormControl *control)
{
    if (port == kGlobalPort) {
        if (zr::traceOn(LSW_TRACE_EVENT))
            LSWM_DebugInfoPrint(LSW_MODULE_STORMCTL, 0, "Global port is invalid for zr.");
        return LSW_OK;
    }
    if (uint32_t ret = HAL_STORMCTL_SetZr(unit, port, control); ret != LSW_OK) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, ret, "HAL STORMCTL SetZr unit = %u, port = %u", unit,
                             port);
        return ret;
    }
    return LSW_OK;
}

uint32_t HAL_STORMCTL_SetZr(uint32_t unit, uint32_t port, const LswmStormControl *control)
{
    if (control == nullptr)
        return LSW_NULL_POINTER;
    if (control->packetType >= kPacketTypes) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, LSW_INVALID_ARGUMENT,
                             "HAL set stormctl failed. Invalid packet type: %u", control->packetType);
        return LSW_CHIP_FAILED;
    }
    const uint32_t chipType = kChipStormTypes[control->packetType];
    const auto sdkUnit = static_cast<uint8_t>(unit);

    if (uint32_t ret = HAL_STORMCTL_AdaptBucketSizeZr(unit, control->meter); ret != LSW_OK) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, ret, "Zr stormctl adapt bucket size failed");
        return LSW_CHIP_FAILED;
    }
    if (uint32_t ret = l2sw_rate_stormControlEnable_set(sdkUnit, 1); ret != 0) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, ret,
                             "Zr set stormControl enable failed, error type is 0x%x", ret);
        return LSW_CHIP_FAILED;
    }
    if (uint32_t ret = l2sw_rate_stormControlMeterIdx_set(sdkUnit, port, chipType, control->meter); ret != 0) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, ret,
                             "Zr set stormControl meter index failed, error type is 0x%x", ret);
        return LSW_CHIP_FAILED;
    }
    if (uint32_t ret = l2sw_rate_stormControlPortEnable_set(sdkUnit, port, chipType, control->enable);
        ret != 0) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, ret,
                             "Zr set storm control port enable failed, error type is 0x%x", ret);
        return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

uint32_t HAL_STORMCTL_AdaptBucketSizeZr(uint32_t unit, uint32_t meter)
{
    const auto sdkUnit = static_cast<uint8_t>(unit);
    uint32_t chipMode = 0;
    uint32_t chipRate = 0;
    uint32_t unused = 0;
    if (uint32_t ret = l2sw_rate_shareMeter_get(sdkUnit, meter, &chipMode, &chipRate, &unused); ret != 0) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, ret, "Zr get share meter failed, error type is 0x%x", ret);
        return LSW_CHIP_FAILED;
    }
    uint32_t chipBucket = chipRate;
    if (chipBucket < ZR_STORMCTL_BUCKET_MIN)
        chipBucket = ZR_STORMCTL_BUCKET_MIN;
    if (chipBucket > SDK_BUCKET_MAX)
        chipBucket = SDK_BUCKET_MAX;
    if (uint32_t ret = l2sw_rate_shareMeterBucket_set(sdkUnit, meter, chipBucket); ret != 0) {
        LSWM_ConfigFailPrint(LSW_MODULE_STORMCTL, 0, ret,
                             "Zr set share meter bucket failed, error type is 0x%x", ret);
        return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}
