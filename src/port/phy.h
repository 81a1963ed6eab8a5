// PHYs: speed, duplex, auto-negotiation, link state.
//
// Where a value is read depends on the port: from its PHY when l2sw_switch_isExtPort returns nonzero (the PHY
// path), otherwise from the forced-link settings of its MAC (the MAC path). Setters do not distinguish them.
//
// `unit` and `port` are passed to the chip SDK unchecked. Unless said otherwise: a null output is
// LSW_NULL_POINTER before any chip call, printed with that status; a failed SDK call is LSW_CHIP_FAILED,
// printed with the SDK's status, and leaves the output unwritten. Lines are logged under LSW_MODULE_PORT.
// ZR_PORT_GetSpeed and its neighbours (port/port.h) are these operations in the manager's table.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// 10, 100 or 1000 Mbit/s; a speed code that the chip does not define reads as 10.
ZR_EXPORT uint32_t HAL_PHY_GetSpeedZr(uint32_t unit, uint32_t port, uint32_t *speed);

// 10 and 100 Mbit/s set the forced-mode abilities: half and full duplex of every speed up to the one asked
// for. 1000 is never forced but advertised, all lower speeds with it. Pause is kept as it was read. Any other
// speed is LSW_UNSUPPORTED, printed, and sets nothing. The status of the set call is returned unchanged,
// unprinted; a failed read of the abilities before it is ignored.
ZR_EXPORT uint32_t HAL_PHY_SetSpeedZr(uint32_t unit, uint32_t port, uint32_t speed);

// 0 half, 1 full. A null output is refused silently.
ZR_EXPORT uint32_t HAL_PHY_GetDuplexZr(uint32_t unit, uint32_t port, uint32_t *duplex);

// Sets the forced-mode abilities: 0 allows half duplex only, 1 half and full, at 10 Mbit/s, and at 100 Mbit/s
// when one of the two abilities of 100 is set. 2 writes the abilities back as they were read. Any other value
// is LSW_UNSUPPORTED, printed. Statuses otherwise as HAL_PHY_SetSpeedZr.
ZR_EXPORT uint32_t HAL_PHY_SetDuplexZr(uint32_t unit, uint32_t port, uint32_t duplex);

// The SDK's word "auto-negotiation on", 1 on; on the MAC path always 0.
ZR_EXPORT uint32_t HAL_PHY_GetAutonegEnableZr(uint32_t unit, uint32_t port, uint32_t *enable);

// 1 selects auto-negotiation, anything else forced mode: the abilities of that mode are read and written back
// unchanged.
ZR_EXPORT uint32_t HAL_PHY_SetAutonegEnableZr(uint32_t unit, uint32_t port, uint32_t enable);

// 1 = up: bit 2 of PHY register 1 (IEEE 802.3 clause 22), or the MAC's forced link state. The output is
// written even on a failure: what was read, 0 when nothing was. The PHY register is read twice and the sum of
// the two statuses decides and is printed: one that wraps to 0 counts as success. A null output is refused
// silently.
ZR_EXPORT uint32_t HAL_PHY_GetLinkstatusZr(uint32_t unit, uint32_t port, uint32_t *link);

// The link state of the MAC, 1 = up. A null output is refused silently.
ZR_EXPORT uint32_t HAL_PHY_GetMacLinkStatusZr(uint32_t unit, uint32_t port, uint32_t *link);

ZR_EXTERN_C_END
