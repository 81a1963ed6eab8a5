#include "qos/hsec.h"

#include "base/print.h"
#include "base/unit.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "records/acl_records.h"
#include "records/meter_records.h"

namespace
{

// 2.4 times, in integers: 12/5 in 64 bits loses nothing of a 32-bit bucket.
uint32_t chipBucketOf(uint32_t managerBucket)
{
    const uint64_t chipBucket = static_cast<uint64_t>(managerBucket) * 12 / 5;
    return chipBucket < SDK_BUCKET_MAX ? static_cast<uint32_t>(chipBucket) : uint32_t{SDK_BUCKET_MAX};
}

} // namespace

uint32_t ZR_HSEC_Init(uint32_t unit)
{
    return COM_HSEC_MeterInfoInit(unit, ZR_HSEC_CAR_METER_TYPE, 0, ZR_HSEC_CAR_METERS, 1) == LSW_OK
               ? LSW_OK
               : LSW_CHIP_FAILED;
}

uint32_t ZR_HSEC_ConfigCar(uint8_t unit, uint32_t chipMeter, const LswmCar *car)
{
    return HAL_HSEC_ConfigCarZr(unit, chipMeter, car);
}

uint32_t HAL_HSEC_ConfigCarZr(uint8_t unit, uint32_t chipMeter, const LswmCar *car)
{
    if (car == nullptr)
        return LSW_NULL_POINTER;
    const bool raw = car->mode == ZR_HSEC_RATE_MODE_RAW;
    const uint32_t chipRate = raw ? car->rate : (car->rate + 7) >> 3;
    if (l2sw_rate_shareMeter_set(unit, chipMeter, raw, chipRate, 1) != 0)
        return LSW_CHIP_FAILED;
    if (l2sw_rate_shareMeterBucket_set(unit, chipMeter, chipBucketOf(car->bucket)) != 0)
        return LSW_CHIP_FAILED;
    return LSW_OK;
}

uint32_t ZR_HSEC_GetCar(uint32_t unit, uint32_t chipMeter, LswmCar *car)
{
    return HAL_HSEC_GetCarZr(unit, chipMeter, car);
}

uint32_t HAL_HSEC_GetCarZr(uint32_t unit, uint32_t chipMeter, LswmCar *car)
{
    if (car == nullptr)
        return LSW_NULL_POINTER;
    if (uint32_t ret = HAL_HSEC_GetSharedMeterZr(unit, chipMeter, &car->rate, &car->mode); ret != LSW_OK)
        return ZR_CHIP_FAILED(ACL, ret, "Zr get car failed (unit:%u, meter:%u, ret:%u).", unit, chipMeter, ret);
    uint32_t chipBucket = 0;
    if (l2sw_rate_shareMeterBucket_get(zr::unit8(unit), chipMeter, &chipBucket) != 0)
        return LSW_CHIP_FAILED;
    car->bucket = chipBucket;
    return LSW_OK;
}

uint32_t HAL_HSEC_GetSharedMeterZr(uint32_t unit, uint32_t chipMeter, uint32_t *rate, uint32_t *mode)
{
    if (rate == nullptr || mode == nullptr)
        return LSW_NULL_POINTER;
    uint32_t chipMode = 0;
    uint32_t chipRate = 0;
    uint32_t unused = 0;
    if (l2sw_rate_shareMeter_get(zr::unit8(unit), chipMeter, &chipMode, &chipRate, &unused) != 0)
        return LSW_CHIP_FAILED;
    const bool raw = chipMode == ZR_HSEC_RATE_MODE_RAW;
    *mode = raw;
    *rate = raw ? chipRate : chipRate * 8;
    return LSW_OK;
}

uint32_t ZR_HSEC_DelCar(uint32_t unit, uint32_t chipMeter)
{
    return HAL_HSEC_DelCarZr(unit, chipMeter);
}

uint32_t HAL_HSEC_DelCarZr(uint32_t, uint32_t)
{
    return LSW_OK;
}

uint32_t ZR_HSEC_GetStat(uint32_t unit, uint32_t chipRuleId, LswmCounter *counter)
{
    if (counter == nullptr)
        return LSW_NULL_POINTER;
    uint32_t counterId = 0;
    if (COM_ACL_GetCounterIdFromChipRuleId(unit, chipRuleId, &counterId) != LSW_OK)
        return LSW_CHIP_FAILED;
    return HAL_HSEC_GetCntZr(unit, counterId, counter);
}

uint32_t HAL_HSEC_GetCntZr(uint32_t unit, uint32_t counterId, LswmCounter *counter)
{
    if (counter == nullptr)
        return LSW_NULL_POINTER;
    uint32_t count = 0;
    if (l2sw_stat_logging_counter_get(unit, counterId, &count) != 0)
        return LSW_CHIP_FAILED;
    counter->count = count;
    counter->second = 0;
    return LSW_OK;
}
