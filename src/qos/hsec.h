// Committed access rate: the chip's shared meters, and the hit counters of ACL rules.
//
// A null record or output returns LSW_NULL_POINTER before anything else; every failure of the chip or of the
// identifier records returns LSW_CHIP_FAILED. Only a failed read of a meter's rate is printed. Meters and
// counters are passed to the SDK unchecked. The SDK takes the unit of a meter in 8 bits: a unit above 255 acts
// on its low 8 bits.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_HSEC_CAR_METER_TYPE = 0, // meter type (records/meter_records.h) of the rate-limit table
    ZR_HSEC_CAR_METERS = 64,    // logic meters, and chip meters, of a unit: 0 to 63
    ZR_HSEC_RATE_MODE_RAW = 1   // rates pass unconverted; in mode 0 the chip counts 8 manager units as one
};

// Initialises the unit's meter records, with bitmaps. LSW_CHIP_FAILED for a unit above 2, without memory, and
// when it was done before.
ZR_EXPORT uint32_t ZR_HSEC_Init(uint32_t unit);

// Programs rate, then bucket of a meter. In mode 1 the rate passes unconverted. Any other mode is the chip's
// mode 0: the rate is rounded up to the chip's unit in 32 bits, so that a rate above 0xFFFFFFF8 programs 0.
// The chip's bucket is 2.4 times the manager's, rounded down, at most SDK_BUCKET_MAX. When the rate fails, the
// bucket is not programmed.
ZR_EXPORT uint32_t ZR_HSEC_ConfigCar(uint8_t unit, uint32_t chipMeter, const LswmCar *car);
ZR_EXPORT uint32_t HAL_HSEC_ConfigCarZr(uint8_t unit, uint32_t chipMeter, const LswmCar *car);

// Reads a meter. Mode and rate are those of HAL_HSEC_GetSharedMeterZr, the bucket is the chip's, unconverted.
// When the rate cannot be read, that is printed under LSW_MODULE_ACL and the record stays unwritten; when the
// bucket cannot, only the bucket stays unwritten.
ZR_EXPORT uint32_t ZR_HSEC_GetCar(uint32_t unit, uint32_t chipMeter, LswmCar *car);
ZR_EXPORT uint32_t HAL_HSEC_GetCarZr(uint32_t unit, uint32_t chipMeter, LswmCar *car);

// Rate of a meter in the manager's unit, and its mode: 1, or 0 for any other mode of the chip. In mode 0 the
// rate is 8 times the chip's, in 32 bits. On failure both stay unwritten.
ZR_EXPORT uint32_t HAL_HSEC_GetSharedMeterZr(uint32_t unit, uint32_t chipMeter, uint32_t *rate, uint32_t *mode);

// Does nothing, returns LSW_OK: a meter keeps its rate and bucket.
ZR_EXPORT uint32_t ZR_HSEC_DelCar(uint32_t unit, uint32_t chipMeter);
ZR_EXPORT uint32_t HAL_HSEC_DelCarZr(uint32_t unit, uint32_t chipMeter);

// Reads the hit counter bound to an ACL rule by the rule's first chip rule id (records/acl_records.h).
// LSW_CHIP_FAILED also when no counter is bound. On failure `counter` stays unwritten.
ZR_EXPORT uint32_t ZR_HSEC_GetStat(uint32_t unit, uint32_t chipRuleId, LswmCounter *counter);

// Reads a hit counter of 32 bits into counter->count and 0 into counter->second. On failure `counter` stays
// unwritten.
ZR_EXPORT uint32_t HAL_HSEC_GetCntZr(uint32_t unit, uint32_t counterId, LswmCounter *counter);

ZR_EXTERN_C_END
