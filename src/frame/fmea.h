// Fault monitoring.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// Nothing is monitored on this chip family: touches and prints nothing, returns 0.
ZR_EXPORT uint32_t ZR_FMEA_MonitorUnitReg(uint32_t unit);

ZR_EXTERN_C_END
