#include "qos/stormctl.h"

#include "base/print.h"
#include "base/unit.h"
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
        ZR_TRACE(EVENT, STORMCTL, "Global port is invalid for zr.");
        return LSW_OK;
    }
    if (uint32_t ret = HAL_STORMCTL_SetZr(unit, port, control); ret != LSW_OK)
        return ZR_FAILED(STORMCTL, ret, "HAL STORMCTL SetZr unit = %u, port = %u", unit, port);
    return LSW_OK;
}

uint32_t HAL_STORMCTL_SetZr(uint32_t unit, uint32_t port, const LswmStormControl *control)
{
    if (control == nullptr)
        return LSW_NULL_POINTER;
    if (control->packetType >= kPacketTypes)
        return ZR_CHIP_FAILED(STORMCTL, LSW_INVALID_ARGUMENT,
                              "HAL set stormctl failed. Invalid packet type: %u", control->packetType);
    const uint32_t chipType = kChipStormTypes[control->packetType];

    if (uint32_t ret = HAL_STORMCTL_AdaptBucketSizeZr(unit, control->meter); ret != LSW_OK)
        return ZR_CHIP_FAILED(STORMCTL, ret, "Zr stormctl adapt bucket size failed");
    if (uint32_t ret = l2sw_rate_stormControlEnable_set(zr::unit8(unit), 1); ret != 0)
        return ZR_CHIP_FAILED(STORMCTL, ret, "Zr set stormControl enable failed, error type is 0x%x", ret);
    if (uint32_t ret = l2sw_rate_stormControlMeterIdx_set(zr::unit8(unit), port, chipType, control->meter);
        ret != 0)
        return ZR_CHIP_FAILED(STORMCTL, ret, "Zr set stormControl meter index failed, error type is 0x%x", ret);
    if (uint32_t ret = l2sw_rate_stormControlPortEnable_set(zr::unit8(unit), port, chipType, control->enable);
        ret != 0)
        return ZR_CHIP_FAILED(STORMCTL, ret, "Zr set storm control port enable failed, error type is 0x%x",
                              ret);
    return LSW_OK;
}

uint32_t HAL_STORMCTL_AdaptBucketSizeZr(uint32_t unit, uint32_t meter)
{
    uint32_t chipMode = 0;
    uint32_t chipRate = 0;
    uint32_t unused = 0;
    if (uint32_t ret = l2sw_rate_shareMeter_get(zr::unit8(unit), meter, &chipMode, &chipRate, &unused);
        ret != 0)
        return ZR_CHIP_FAILED(STORMCTL, ret, "Zr get share meter failed, error type is 0x%x", ret);
    uint32_t chipBucket = chipRate;
    if (chipBucket < ZR_STORMCTL_BUCKET_MIN)
        chipBucket = ZR_STORMCTL_BUCKET_MIN;
    if (chipBucket > SDK_BUCKET_MAX)
        chipBucket = SDK_BUCKET_MAX;
    if (uint32_t ret = l2sw_rate_shareMeterBucket_set(zr::unit8(unit), meter, chipBucket); ret != 0)
        return ZR_CHIP_FAILED(STORMCTL, ret, "Zr set share meter bucket failed, error type is 0x%x", ret);
    return LSW_OK;
}
