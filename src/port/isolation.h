// Port isolation on the chip. Per port the chip keeps a permit map: bit n set lets the port forward to
// port n. The manager speaks of isolate maps instead, the valid ports that a port may not reach;
// ZR_PORT_GetIsolateMap, ZR_PORT_SetIsolate and ZR_PORT_SetAllIsolate (port/port.h) convert.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// Reads the permit map of `port`. Statuses: LSW_NULL_POINTER, silent; LSW_CHIP_FAILED, printed, with
// `permitMap` unwritten.
ZR_EXPORT uint32_t HAL_PORT_GetIsolateMapZr(uint32_t unit, uint32_t port, uint32_t *permitMap);

// Writes the permit map of `port` from the first word of `permitMap`. Statuses: LSW_NULL_POINTER, silent;
// LSW_CHIP_FAILED, printed.
ZR_EXPORT uint32_t HAL_PORT_SetIsolateZr(uint32_t unit, uint32_t port, const uint32_t *permitMap);

ZR_EXTERN_C_END
