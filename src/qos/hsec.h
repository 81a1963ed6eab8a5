// Committed access rate: the chip's 64 shared meters and the hit counters of ACL rules. Every failure of
// the chip or of a record answers LSW_CHIP_FAILED, a null record LSW_NULL_POINTER before anything else.
// Only HAL_HSEC_GetCarZr prints.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_HSEC_CAR_METER_TYPE = 0, // meter type (records/meter_records.h) of the rate-limit table
    ZR_HSEC_CAR_METERS = 64,    // logic and chip meters per unit
    ZR_HSEC_RATE_MODE_RAW = 1   // rates pass unconverted; in mode 0 the chip counts 8 manager units as one
};

// ---- rate-limit table -----------------------------------------------------------------------

// Initialises the meter records of the unit. A second initialisation: LSW_CHIP_FAILED.
ZR_EXPORT uint32_t ZR_HSEC_Init(uint32_t unit);
ZR_EXPORT uint32_t ZR_HSEC_ConfigCar(uint8_t unit, uint32_t chipMeter, const LswmCar *car);
ZR_EXPORT uint32_t ZR_HSEC_GetCar(uint32_t unit, uint32_t chipMeter, LswmCar *car);
ZR_EXPORT uint32_t ZR_HSEC_DelCar(uint32_t unit, uint32_t chipMeter);
// Count of the hit counter bound to an ACL chip rule (records/acl_records.h). Without a counter, or when the
// chip fails, `counter` stays unwritten.
ZR_EXPORT uint32_t ZR_HSEC_GetStat(uint32_t unit, uint32_t chipRuleId, LswmCounter *counter);

// ---- chip operations ------------------------------------------------------------------------

// Programs rate and bucket of a meter. Mode 1 passes the rate, any other mode is the chip's mode 0 and
// rounds the rate up to the chip's unit. The chip's bucket is 2.4 times the manager's, rounded down, at most
// SDK_BUCKET_MAX. A failing rate leaves the bucket unprogrammed.
ZR_EXPORT uint32_t HAL_HSEC_ConfigCarZr(uint8_t unit, uint32_t chipMeter, const LswmCar *car);

// Rate of a meter in the manager's unit (32 bits) and its mode, 0 or 1. On failure both stay unwritten.
ZR_EXPORT uint32_t HAL_HSEC_GetSharedMeterZr(uint32_t unit, uint32_t chipMeter, uint32_t *rate, uint32_t *mode);

// Reads a meter back. The bucket is the chip's value, not the one given to HAL_HSEC_ConfigCarZr. A failing
// rate is printed (module 6) and leaves the record unwritten; a failing bucket is silent and leaves the
// bucket unwritten.
ZR_EXPORT uint32_t HAL_HSEC_GetCarZr(uint32_t unit, uint32_t chipMeter, LswmCar *car);

// Reads a hit counter; on failure the record stays unwritten.
ZR_EXPORT uint32_t HAL_HSEC_GetCntZr(uint32_t unit, uint32_t counterId, LswmCounter *counter);

// The chip needs no clean-up of a meter: touches nothing, returns 0.
ZR_EXPORT uint32_t HAL_HSEC_DelCarZr(uint32_t unit, uint32_t chipMeter);

ZR_EXTERN_C_END
