// Clock-to-data delays of a chip's two RGMII links to the host.
//
// A parameter word holds two delays, in bits 0 to 4 and 6 to 10; its other bits belong to the unit's base
// value. The base delays fit normal silicon; they are scaled to the chip's FS level and corrected by a
// small table. The environment variable lsw<unit>_vq9_rgmii2_para replaces the RGMII2 word.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// Programs a unit's RGMII links: four fixed registers, then L2sw_RGMIIParamInit. Register statuses are
// not looked at. Does nothing for a unit that is not 0 to 2.
ZR_EXPORT void L2sw_RGMIIInit(uint32_t unit);

// Computes both parameter words, lets the environment replace RGMII2, reports which was used (a line
// printed whatever the trace level) and writes them. LSW_OK, whatever the register writes answer;
// LSW_INVALID_ARGUMENT when the unit is not 0 to 2.
ZR_EXPORT uint32_t L2sw_RGMIIParamInit(uint32_t unit);

// The parameter words of a unit at its chip's FS level; both are 0 when the unit is not 0 to 2.
ZR_EXPORT void L2sw_CalRGMIIParam(uint32_t unit, uint32_t *rgmii1, uint32_t *rgmii2);

// The chip's FS level, 0 (fastest) to 4 (slowest), and the delays' multiplier in tenths. An unknown level
// and a failed read count as normal: 2 and 10.
ZR_EXPORT void L2sw_GetRGMIISpeedLevel(uint32_t unit, uint32_t *level, uint32_t *multiplier);

// The correction table's class of a base delay: 0 up to 9, 1 for 10, 2 from 11 on.
ZR_EXPORT uint32_t Trans2ParamPath(int32_t value);

ZR_EXTERN_C_END
