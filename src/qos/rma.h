// Reserved multicast addresses: frames of control protocols, such as LLDP (IEEE 802.1AB), must reach the host
// instead of being switched. Nothing here prints. Units are passed to the SDK unchecked.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_RMA_TYPES = 51,        // the manager's reserved-address types 0 to 50
    ZR_RMA_TYPE_INVALID = 51, // what a type beyond them converts to
    ZR_RMA_ACTIONS = 3,       // the chip's actions 0 to 2, by the chip's own definition
    ZR_RMA_ACTION_INIT = 2    // action of every type after initialisation
};

// Chip type of each manager type, by type. The last entry is never used.
ZR_EXPORT extern const uint32_t g_rmaAddrTypeMap[ZR_RMA_TYPES + 1];

// Switches LLDP trapping on, then gives every type ZR_RMA_ACTION_INIT in ascending order. Stops at the first
// failure with LSW_CHIP_FAILED; what was set stays set. ZR_MC_Init is the multicast table's only operation.
ZR_EXPORT uint32_t ZR_MC_Init(uint32_t unit);
ZR_EXPORT uint32_t HAL_RMA_InitZr(uint32_t unit);

// Writes the chip type of a manager type; ZR_RMA_TYPE_INVALID for a type above 50. A null output is ignored.
ZR_EXPORT void HAL_RMA_RmaTypeToZrType(uint32_t type, uint32_t *chipType);

// Sets what the chip does with frames to the addresses of a manager type. LSW_INVALID_ARGUMENT, without a chip
// call, for a type above 50 or an action above 2; LSW_CHIP_FAILED when the chip refuses.
ZR_EXPORT uint32_t HAL_RMA_ActionSet(uint32_t unit, uint32_t type, uint32_t action);

// Switches LLDP trapping on for `enable` 1, off for any other value. Returns the SDK's status unchanged.
ZR_EXPORT uint32_t HAL_RMA_LldpEnableSet(uint32_t unit, int32_t enable);

ZR_EXTERN_C_END
