// Storm control: binds the flooded frames of one packet type on one port to one of the chip's shared meters.
// The meter's rate is what was programmed into it before (qos/hsec.h).
//
// Every failure is logged under LSW_MODULE_STORMCTL, stops, and returns LSW_CHIP_FAILED where nothing else is
// said; what was done stays done. Ports, meters and enables are passed to the SDK unchecked. The SDK takes the
// unit in 8 bits: a unit above 255 acts on its low 8 bits.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

enum { ZR_STORMCTL_BUCKET_MIN = 1000 }; // in the chip's bucket unit

// Does nothing, returns LSW_OK: storm control stays off until the first ZR_STORMCTL_Set.
ZR_EXPORT uint32_t ZR_STORMCTL_Init(uint32_t unit);

// Adapts the bucket of control->meter, switches storm control on for the whole unit (also when the port's is
// being switched off), binds the meter to the port and packet type, and sets the port's enable. A packet type
// above 2 is printed with status LSW_INVALID_ARGUMENT and returns LSW_CHIP_FAILED before any chip call. A null
// record returns LSW_NULL_POINTER, which HAL_STORMCTL_SetZr does not print.
//
// ZR_STORMCTL_Set prints a line of its own for a failure and returns its status unchanged. The chip has no
// global port: port 0xFFFFFFFF succeeds without a chip call, whatever the record, and is traced (event).
ZR_EXPORT uint32_t ZR_STORMCTL_Set(uint32_t unit, uint32_t port, const LswmStormControl *control);
ZR_EXPORT uint32_t HAL_STORMCTL_SetZr(uint32_t unit, uint32_t port, const LswmStormControl *control);

// Sets a meter's bucket to the number of its rate in the chip's unit, at least ZR_STORMCTL_BUCKET_MIN, at most
// SDK_BUCKET_MAX.
ZR_EXPORT uint32_t HAL_STORMCTL_AdaptBucketSizeZr(uint32_t unit, uint32_t meter);

ZR_EXTERN_C_END
