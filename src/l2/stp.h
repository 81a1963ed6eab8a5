// Spanning tree: VLAN-to-instance binding, port states, and the flushes of a topology change.
//
// The protocol runs in the manager and the state stays in the chip; the library keeps none. A null entry or
// output returns LSW_NULL_POINTER, unprinted. A failure of the SDK or of a flush is logged under LSW_MODULE_STP
// and returns LSW_CHIP_FAILED; the operation stops there and what was done stays done. Units, ports, VLANs and
// instances are passed to the SDK unchecked where nothing else is said.
#pragma once

#include "platform/abi.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

// The manager's port states.
enum { ZR_STP_FORWARDING = 0, ZR_STP_BLOCKING = 1 };

// The spanning-tree group that ZR_STP_stgCreate gives. 0 at load; only the manager writes it.
ZR_EXPORT extern uint32_t g_stgInstace;

// Gives g_stgInstace. Any unit, no chip call.
ZR_EXPORT uint32_t ZR_STP_stgCreate(uint32_t unit, uint32_t *group);

// Binds a VLAN to an instance (IEEE 802.1Q: MSTI).
ZR_EXPORT uint32_t ZR_STP_SetVlanInstanceid(uint32_t unit, uint32_t instance, uint32_t vlan);
ZR_EXPORT uint32_t HAL_STP_SetVlanInstanceIdZr(uint32_t unit, uint32_t instance, uint32_t vlan);

// The instance that a VLAN is bound to, read from the chip into `instance`; after a failure it holds what the
// SDK left there.
ZR_EXPORT uint32_t HAL_STP_GetVlanInstanceIdZr(uint32_t unit, uint32_t vlan, uint32_t *instance);

// Sets a port's state in an instance, then the port's learning limit: ZR_MAC_CAPACITY (l2/mac.h) when
// forwarding, 0 when blocking. LSW_INVALID_ARGUMENT, printed, for any other state. When the limit fails, the
// chip keeps the new state.
ZR_EXPORT uint32_t ZR_STP_SetStpMode(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state);
ZR_EXPORT uint32_t HAL_STP_SetStpModeZr(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state);

// Flushes a port in every VLAN of an instance: reads the instance of VLANs 1 to 4094 from the chip, one call
// each, and flushes those that match. LSW_INVALID_ARGUMENT, unprinted and without a chip call, for a port above
// 65535, which a flush cannot name. A unit above 255 is read throughout but flushed nowhere.
ZR_EXPORT uint32_t ZR_STP_FlushMacByPortInstance(uint32_t unit, uint32_t port, uint32_t instance);
ZR_EXPORT uint32_t HAL_STP_FlushMacByPortInstance(uint32_t unit, uint32_t port, uint32_t instance);

// Flushes entry->port in entry->vlan. LSW_OK with nothing flushed when entry->unit is another unit.
ZR_EXPORT uint32_t ZR_STP_FlushMacByPortVlan(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_STP_FlushMacByPortVlan(uint32_t unit, const LswmMacEntry *entry);

// The same in every VLAN.
ZR_EXPORT uint32_t ZR_STP_FlushMacByPort(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_STP_FlushMacByPort(uint32_t unit, const LswmMacEntry *entry);

ZR_EXTERN_C_END
