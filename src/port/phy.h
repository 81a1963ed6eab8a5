// PHYs: speed, duplex, auto-negotiation, link state.
//
// Where a value is read depends on the port (l2sw_switch_isExtPort): from its PHY, or, for a port without one,
// from the forced-link settings of its MAC. Setters do not distinguish the two.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// 10, 100 or 1000 Mbit/s; a speed code that the chip does not define reads as 10. LSW_CHIP_FAILED after a
// printed line, output unwritten; a null output prints and is LSW_NULL_POINTER.
ZR_EXPORT uint32_t HAL_PHY_GetSpeedZr(uint32_t unit, uint32_t port, uint32_t *speed);
// 10 and 100 Mbit/s set the forced-mode abilities; 1000 is never forced but advertised, all lower speeds with
// it. Any other speed is LSW_UNSUPPORTED after a printed line. The SDK's status of the setting comes back
// unchanged, unprinted; a failed read of the abilities before it is passed over.
ZR_EXPORT uint32_t HAL_PHY_SetSpeedZr(uint32_t unit, uint32_t port, uint32_t speed);

// 0 half, 1 full. LSW_CHIP_FAILED after a printed line, output unwritten; a null output is refused silently.
ZR_EXPORT uint32_t HAL_PHY_GetDuplexZr(uint32_t unit, uint32_t port, uint32_t *duplex);
// 0 allows half duplex only, 1 half and full: at 10 Mbit/s, and at 100 Mbit/s when a forced-mode ability of 100
// is set. 2 writes the abilities back as they are. Any other value is LSW_UNSUPPORTED after a printed line.
// Statuses as HAL_PHY_SetSpeedZr.
ZR_EXPORT uint32_t HAL_PHY_SetDuplexZr(uint32_t unit, uint32_t port, uint32_t duplex);

// 1 on; 0 always for a port without PHY. LSW_CHIP_FAILED after a printed line; a null output prints.
ZR_EXPORT uint32_t HAL_PHY_GetAutonegEnableZr(uint32_t unit, uint32_t port, uint32_t *enable);
// 1 on, anything else forced mode: the abilities of that mode are written back, which selects it.
// LSW_CHIP_FAILED after a printed line.
ZR_EXPORT uint32_t HAL_PHY_SetAutonegEnableZr(uint32_t unit, uint32_t port, uint32_t enable);

// 1 = up. A failure prints, returns LSW_CHIP_FAILED and has still written what was read (0 when nothing was).
// A null output is refused silently.
ZR_EXPORT uint32_t HAL_PHY_GetLinkstatusZr(uint32_t unit, uint32_t port, uint32_t *link);
// The link state of the MAC, 1 = up. LSW_CHIP_FAILED after a printed line, output unwritten; a null output is
// refused silently.
ZR_EXPORT uint32_t HAL_PHY_GetMacLinkStatusZr(uint32_t unit, uint32_t port, uint32_t *link);

ZR_EXTERN_C_END
