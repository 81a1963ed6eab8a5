// Spanning tree: VLAN-to-instance binding, port states, and the flushes of a topology change.
//
// The protocol runs in the manager and the state in the chip; the library keeps none. Statuses: LSW_OK,
// LSW_NULL_POINTER for a null entry or output, LSW_CHIP_FAILED when the chip or a flush failed
// (printed). An entry of another unit is flushed nowhere, with LSW_OK (l2/mac.h).
#pragma once

#include "platform/abi.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

// The manager's port states.
enum { ZR_STP_FORWARDING = 0, ZR_STP_BLOCKING = 1 };

// The spanning-tree group handed out by stgCreate. 0 at load; only the manager writes it.
ZR_EXPORT extern uint32_t g_stgInstace;

// Answers g_stgInstace; no chip call, any unit.
ZR_EXPORT uint32_t ZR_STP_stgCreate(uint32_t unit, uint32_t *group);

// Binds a VLAN to an instance (IEEE 802.1Q MSTI).
ZR_EXPORT uint32_t ZR_STP_SetVlanInstanceid(uint32_t unit, uint32_t instance, uint32_t vlan);
ZR_EXPORT uint32_t HAL_STP_SetVlanInstanceIdZr(uint32_t unit, uint32_t instance, uint32_t vlan);

// The instance that a VLAN is bound to, from the chip; on failure as the chip SDK left it.
ZR_EXPORT uint32_t HAL_STP_GetVlanInstanceIdZr(uint32_t unit, uint32_t vlan, uint32_t *instance);

// Sets a port's state in an instance and, with it, the port's learning limit: a whole table when
// forwarding, none when blocking. LSW_INVALID_ARGUMENT (printed) for any other state. When the limit
// fails the chip keeps the new state.
ZR_EXPORT uint32_t ZR_STP_SetStpMode(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state);
ZR_EXPORT uint32_t HAL_STP_SetStpModeZr(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state);

// Flushes a port in every VLAN of an instance: reads the instance of VLANs 1 to 4094 from the chip and
// flushes those that match. Stops at the first failed read or flush. LSW_INVALID_ARGUMENT, with no chip
// call, for a port above 65535, which a flush cannot name.
ZR_EXPORT uint32_t ZR_STP_FlushMacByPortInstance(uint32_t unit, uint32_t port, uint32_t instance);
ZR_EXPORT uint32_t HAL_STP_FlushMacByPortInstance(uint32_t unit, uint32_t port, uint32_t instance);

// Flushes entry->port in entry->vlan, and in every VLAN.
ZR_EXPORT uint32_t ZR_STP_FlushMacByPortVlan(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_STP_FlushMacByPortVlan(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t ZR_STP_FlushMacByPort(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_STP_FlushMacByPort(uint32_t unit, const LswmMacEntry *entry);

ZR_EXTERN_C_END
