// Clock-to-data delays of a chip's two RGMII links to the host.
//
// A parameter word holds two delays, in bits 0 to 4 and 6 to 10; its other bits belong to the unit's base
// value. The base delays fit normal silicon; they are scaled to the chip's FS level and corrected by a small
// table. The environment variable lsw<unit>_vq9_rgmii2_para, when it holds a number, replaces the RGMII2
// word. No failure is printed here.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// Programs a unit's RGMII links: four fixed registers, then L2sw_RGMIIParamInit. The statuses of the register
// writes are ignored. Does nothing for a unit above 2.
ZR_EXPORT void L2sw_RGMIIInit(uint32_t unit);

// Computes both parameter words, lets the environment replace RGMII2, reports which was used (a line under
// LSW_MODULE_CHIP, printed whatever the trace level), writes both and the unit's value of register 0x3EE0.
// LSW_OK whatever the register writes return; LSW_INVALID_ARGUMENT, nothing touched, for a unit above 2.
ZR_EXPORT uint32_t L2sw_RGMIIParamInit(uint32_t unit);

// The parameter words of a unit at its chip's FS level, by computation alone; both are 0 for a unit above 2.
// When either output is null, nothing is read and nothing written.
ZR_EXPORT void L2sw_CalRGMIIParam(uint32_t unit, uint32_t *rgmii1, uint32_t *rgmii2);

// The chip's FS level, 0 (fastest) to 4 (slowest), and the delays' multiplier in tenths. `unit` is passed to
// the SDK unchecked. An unknown level and a failed read count as normal: 2 and 10. When either output is null,
// nothing is read and nothing written.
ZR_EXPORT void L2sw_GetRGMIISpeedLevel(uint32_t unit, uint32_t *level, uint32_t *multiplier);

// The correction table's class of a base delay: 0 up to 9, 1 for 10, 2 from 11 on.
ZR_EXPORT uint32_t Trans2ParamPath(int32_t value);

ZR_EXTERN_C_END
