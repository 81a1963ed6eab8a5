// Storm control: floods of one packet class on one port are bound to one of the chip's shared meters.
// The meter's rate is whatever was programmed into it before (qos/hsec.h).
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

enum { ZR_STORMCTL_BUCKET_MIN = 1000 }; // chip's bucket unit

// Storm control stays off until the first ZR_STORMCTL_Set of a port: touches nothing, returns 0.
ZR_EXPORT uint32_t ZR_STORMCTL_Init(uint32_t unit);

// HAL_STORMCTL_SetZr for one port; a failure is printed (module 7) and its status returned. The chip has
// no global port: port 0xFFFFFFFF succeeds without a chip call, traced at LSW_TRACE_EVENT.
ZR_EXPORT uint32_t ZR_STORMCTL_Set(uint32_t unit, uint32_t port, const LswmStormControl *control);

// Adapts the meter's bucket, switches storm control on for the whole unit (also when the port's is switched
// off), binds the meter to the port's packet class and sets the port's enable. Each failure prints its line,
// stops, and answers LSW_CHIP_FAILED, as does an unknown packet type, which is printed with status 1 before
// any chip call; what was done stays done. A null record: LSW_NULL_POINTER, not printed.
ZR_EXPORT uint32_t HAL_STORMCTL_SetZr(uint32_t unit, uint32_t port, const LswmStormControl *control);

// Sets the meter's bucket to its rate in chip units, within ZR_STORMCTL_BUCKET_MIN and SDK_BUCKET_MAX. A
// failure is printed and answers LSW_CHIP_FAILED.
ZR_EXPORT uint32_t HAL_STORMCTL_AdaptBucketSizeZr(uint32_t unit, uint32_t meter);

ZR_EXTERN_C_END
