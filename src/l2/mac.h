// MAC address table: entries, flushes, ageing, learning and the fill report.
//
// The chip keeps the table. The library keeps one number per unit: the static entries that it has added, which
// the chip's learned counts leave out.
//
// A null entry, query or output returns LSW_NULL_POINTER, a failure of the SDK LSW_CHIP_FAILED; outputs stay
// unwritten then. A unit out of range returns LSW_INVALID_ARGUMENT where that is said, before anything else.
// These two are not printed; failures of the SDK are logged under LSW_MODULE_MAC, or traced where that is said.
// Lines show only the first four bytes of an address. Other units, ports and VLANs are passed to the SDK
// unchecked.
#pragma once

#include "platform/abi.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_MAC_CAPACITY = 2112,   // entries of a unit's table, and the learning limit of a port that learns
    ZR_MAC_COUNTED_UNITS = 4, // units with a static count; others are refused by what needs the count
    ZR_MAC_AGE_TIME = 295,    // ageing time from start-up on, in the chip's unit
    ZR_MAC_NO_PORT = 128,     // port of an entry without a port that may be reported
    ZR_MAC_QUERY_INDEX = 3,   // query type: read by table index, the only one that is served
    ZR_MAC_CALLBACK_TYPE = 3  // callback type that is stored
};

typedef struct {
    void (*macCallBack)(void); // stored for the manager: the library never calls it
    uint32_t reserved8[4];
    // By unit. Up by one with each static or blocking add of an address that the chip does not find; down by
    // one, but not below 0, with each such add that fails and with each ZR_MAC_DelByVlanMac of an entry that
    // the SDK reports as static; 0 after ZR_MAC_DelAllMac.
    uint32_t staticMacNum[ZR_MAC_COUNTED_UNITS];
} LswmL2Control;
ZR_ASSERT_SIZE(LswmL2Control, 40);
ZR_ASSERT_OFFSET(LswmL2Control, macCallBack, 0);
ZR_ASSERT_OFFSET(LswmL2Control, reserved8, 8);
ZR_ASSERT_OFFSET(LswmL2Control, staticMacNum, 24);

// Shared with the manager; zero at load.
ZR_EXPORT extern LswmL2Control g_LswmL2Control;

// ---- set-up ---------------------------------------------------------------------------------

// Brings the unit's table up: chip table, illegal-address processing, ageing time ZR_MAC_AGE_TIME. Stops at
// the first failure, prints a line of its own for the failed step, and returns the step's status unchanged.
ZR_EXPORT uint32_t ZR_MAC_Init(uint32_t unit);

// Initialises the chip's table, then as HAL_MAC_IllegalMacProc.
ZR_EXPORT uint32_t HAL_MAC_InitZr(uint32_t unit);

// Switches on the chip's processing of illegal addresses: sets bit 0 of chip register 0x355E, keeps the other
// bits. The SDK takes the unit in 8 bits here: a unit above 255 acts on its low 8 bits.
ZR_EXPORT uint32_t HAL_MAC_IllegalMacProc(uint32_t unit);

// Ageing time in the chip's unit, unconverted. A failure is logged under LSW_MODULE_VLAN: that of the read is
// traced (detail).
ZR_EXPORT uint32_t ZR_MAC_SetAgeTime(uint32_t unit, uint32_t ageTime);
ZR_EXPORT uint32_t HAL_MAC_SetAgeTimeZr(uint32_t unit, uint32_t ageTime);
ZR_EXPORT uint32_t ZR_MAC_GetAgeTime(uint32_t unit, uint32_t *ageTime);
ZR_EXPORT uint32_t HAL_MAC_GetAgeTimeZr(uint32_t unit, uint32_t *ageTime);

// Learning on a port, by its learning limit: ZR_MAC_CAPACITY addresses for any nonzero `enable`, none for 0.
// The read gives 1 for any nonzero limit, else 0. A spanning-tree state change sets the same limit (l2/stp.h).
ZR_EXPORT uint32_t ZR_MAC_SetPortLearnMode(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t HAL_MAC_SetPortLearnModeZr(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t ZR_MAC_GetPortLearnMode(uint32_t unit, uint32_t port, uint32_t *enable);
ZR_EXPORT uint32_t HAL_MAC_GetPortLearnModeZr(uint32_t unit, uint32_t port, uint32_t *enable);

// Stores a callback of type ZR_MAC_CALLBACK_TYPE in place of the previous one; other types are traced (detail)
// and ignored. The ZR_ operation ignores a null callback, the HAL_ operation stores it.
ZR_EXPORT void ZR_MAC_RegisterCallBack(uint32_t type, void (*callBack)(void));
ZR_EXPORT void HAL_MAC_RegisterCallBackZr(uint32_t type, void (*callBack)(void));

// ---- single entries -------------------------------------------------------------------------

// Adds entry->mac in entry->entryVlan at entry->port. LSWM_MAC_STATIC and LSWM_MAC_BLOCKING make a static
// entry, any other type a dynamic one. A blocking entry also drops frames from and to the address; it is added
// without VLAN key when entry->vlanSpecific is 0.
// LSW_NO_RESOURCE, printed, when the table is full or the address's hash bucket is taken; any other failure of
// the SDK is traced (event). LSW_INVALID_ARGUMENT for a unit above 3.
// A static add that fails lowers the static count even when the address was in the table before.
ZR_EXPORT uint32_t ZR_MAC_AddMac(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_AddMacZr(uint32_t unit, const LswmMacEntry *entry);

// Writes the unit's lowest cascade port to entry->port, also when the add then fails, and adds the entry as
// ZR_MAC_AddMac does. LSW_OK with nothing written or added when the unit has no cascade port;
// LSW_INVALID_ARGUMENT for a unit above 2.
ZR_EXPORT uint32_t ZR_MAC_SyncMacInsert(uint32_t unit, LswmMacEntry *entry);

// Not a status: 1 when the SDK finds entry->mac, asked for with `vlan` but without VLAN key; else 0, traced
// (detail) under LSW_MODULE_VLAN. 0 for a null entry, untraced.
ZR_EXPORT uint32_t HAL_MAC_HasExistedMacTabZr(uint32_t unit, const LswmMacEntry *entry, uint32_t vlan);

// Deletes entry->mac in entry->vlan, and lowers the static count when the SDK reports a static entry. SDK
// status 0x6000A counts as success: it is assumed to mean that the address is not in the table. Failures are
// traced (detail). LSW_INVALID_ARGUMENT for a unit above 3.
ZR_EXPORT uint32_t ZR_MAC_DelByVlanMac(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_DelByVlanMacZr(uint32_t unit, const LswmMacEntry *entry);

// Deletes an address of 6 bytes without VLAN key; the static count stays. Failures, 0x6000A included, are
// traced (detail). An address that cannot be copied (null) is printed; address 0 is deleted instead.
ZR_EXPORT uint32_t ZR_MAC_DelByMac(uint32_t unit, const uint8_t *mac);
ZR_EXPORT uint32_t HAL_MAC_DelByMacZr(uint32_t unit, const uint8_t *mac);

// Sets the static count to 0, then clears the table. Returns the SDK's status unchanged, unprinted.
// LSW_INVALID_ARGUMENT for a unit above 3.
ZR_EXPORT uint32_t ZR_MAC_DelAllMac(uint32_t unit);
ZR_EXPORT uint32_t HAL_MAC_DelAllMacZr(uint32_t unit);

// ---- flushes: remove learned addresses, never static ones -----------------------------------

// One VLAN, on all ports. Failures are traced (detail).
ZR_EXPORT uint32_t ZR_MAC_DelByVlan(uint32_t unit, uint32_t vlan);
ZR_EXPORT uint32_t HAL_MAC_DelByVlanZr(uint32_t unit, uint32_t vlan);

// entry->port, in every VLAN or in entry->vlan alone. LSW_OK with nothing flushed when entry->unit is another
// unit. Failures are traced (detail).
ZR_EXPORT uint32_t ZR_MAC_DelByPort(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_DelByPortZr(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t ZR_MAC_DelByPortVlan(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_DelByPortVlanZr(uint32_t unit, const LswmMacEntry *entry);

// HAL_MAC_DelDynMacZr for every port of LSWM_SET_VALID. Always LSW_OK: a port that fails is printed and
// skipped, a unit above 2 has no ports.
ZR_EXPORT uint32_t ZR_MAC_DelDynMac(uint32_t unit);

// One port, in every VLAN.
ZR_EXPORT uint32_t HAL_MAC_DelDynMacZr(uint32_t unit, uint32_t port);

// ---- queries --------------------------------------------------------------------------------

// Reads the entry at query->index. LSW_INVALID_ARGUMENT for a query type other than ZR_MAC_QUERY_INDEX, before
// anything else; otherwise as HAL_MAC_GetMacByIdxZr.
ZR_EXPORT uint32_t ZR_MAC_GetMacEntry(uint32_t unit, uint32_t queryType, const LswmMacQuery *query,
                                      LswmMacEntry *entry);

// Reads the table entry at `index`: writes unit, valid (1), entryVlan and mac, and LSWM_MAC_STATIC to type when
// the entry is static. `port` becomes the lowest of the entry's ports (0 to 31) that has
// LSWM_PORT_MAC_REPORTED; without one it becomes ZR_MAC_NO_PORT and noPort 1. All else stays as it was.
// LSW_INVALID_ARGUMENT for a unit above 2. Failures are traced (detail).
ZR_EXPORT uint32_t HAL_MAC_GetMacByIdxZr(uint32_t unit, uint32_t index, LswmMacEntry *entry);

// Capacity of the table, ZR_MAC_CAPACITY, and its fill: the learned addresses of the ports of LSWM_SET_VALID
// plus the static count, summed in 32 bits, at most the capacity. A port that cannot be read is traced (detail)
// and left out; the result is traced (event). LSW_INVALID_ARGUMENT for a unit above 2; never LSW_CHIP_FAILED.
ZR_EXPORT uint32_t ZR_MAC_GetCapacity(uint32_t unit, uint32_t *capacity, uint32_t *used);
ZR_EXPORT uint32_t HAL_MAC_GetCapacityZr(uint32_t unit, uint32_t *capacity, uint32_t *used);

ZR_EXTERN_C_END
