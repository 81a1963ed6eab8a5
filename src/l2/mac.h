// MAC address table: entries, flushes, ageing, learning and the fill report.
//
// The chip keeps the table. The library keeps one number per unit of its own: the static entries that
// it has added, which the chip's learned counts leave out. Ports go to the chip SDK unchanged.
// Messages show only the first four bytes of an address.
//
// Every operation that can fail returns a status: LSW_OK, LSW_NULL_POINTER for a null entry, query or
// output, LSW_CHIP_FAILED when the chip SDK failed; others are named where they occur. On any of them
// outputs stay unwritten. Failures print a line unless a comment says that they are traced.
#pragma once

#include "platform/abi.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_MAC_CAPACITY = 2112,   // entries of a unit's table, and the learning limit of a port that learns
    ZR_MAC_COUNTED_UNITS = 4, // units with a static count; others are refused by what needs the count
    ZR_MAC_AGE_TIME = 295,    // default ageing time, in the chip's unit
    ZR_MAC_NO_PORT = 128,     // port reported for an entry without a port that may be reported
    ZR_MAC_QUERY_INDEX = 3,   // query type: read by table index
    ZR_MAC_CALLBACK_TYPE = 3  // callback type that is kept
};

// Shared with the manager, zero at load.
typedef struct {
    void (*macCallBack)(void); // kept for the manager: the library never calls it
    uint32_t reserved8[4];
    uint32_t staticMacNum[ZR_MAC_COUNTED_UNITS]; // static entries added and not yet deleted, by unit
} LswmL2Control;
ZR_ASSERT_SIZE(LswmL2Control, 40);
ZR_ASSERT_OFFSET(LswmL2Control, macCallBack, 0);
ZR_ASSERT_OFFSET(LswmL2Control, reserved8, 8);
ZR_ASSERT_OFFSET(LswmL2Control, staticMacNum, 24);

// The record itself.
ZR_EXPORT extern LswmL2Control g_LswmL2Control;

// ---- set-up ---------------------------------------------------------------------------------

// Brings the unit's table up: chip table, illegal-address processing, default ageing time. Stops at
// the first failure and returns its status; prints the failing step on top of that step's own line.
ZR_EXPORT uint32_t ZR_MAC_Init(uint32_t unit);

// Chip table initialisation followed by HAL_MAC_IllegalMacProc.
ZR_EXPORT uint32_t HAL_MAC_InitZr(uint32_t unit);

// Switches on the chip's handling of illegal addresses: bit 0 of register 0x355E, other bits kept.
ZR_EXPORT uint32_t HAL_MAC_IllegalMacProc(uint32_t unit);

// Ageing time in the chip's unit, unconverted. A failed read is traced (detail), not printed; both
// speak as the VLAN module.
ZR_EXPORT uint32_t ZR_MAC_SetAgeTime(uint32_t unit, uint32_t ageTime);
ZR_EXPORT uint32_t HAL_MAC_SetAgeTimeZr(uint32_t unit, uint32_t ageTime);
ZR_EXPORT uint32_t ZR_MAC_GetAgeTime(uint32_t unit, uint32_t *ageTime);
ZR_EXPORT uint32_t HAL_MAC_GetAgeTimeZr(uint32_t unit, uint32_t *ageTime);

// Learning on a port: any nonzero `enable` allows a whole table of addresses, 0 none. The read answers
// 1 for any nonzero limit, else 0. A spanning-tree state change sets the same limit (l2/stp.h).
ZR_EXPORT uint32_t ZR_MAC_SetPortLearnMode(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t HAL_MAC_SetPortLearnModeZr(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t ZR_MAC_GetPortLearnMode(uint32_t unit, uint32_t port, uint32_t *enable);
ZR_EXPORT uint32_t HAL_MAC_GetPortLearnModeZr(uint32_t unit, uint32_t port, uint32_t *enable);

// Keeps a callback of type 3 in place of any earlier one; other types are traced (detail) and dropped.
// The ZR_ operation ignores a null callback.
ZR_EXPORT void ZR_MAC_RegisterCallBack(uint32_t type, void (*callBack)(void));
ZR_EXPORT void HAL_MAC_RegisterCallBackZr(uint32_t type, void (*callBack)(void));

// ---- single entries -------------------------------------------------------------------------

// Adds entry->mac in entry->entryVlan at entry->port. Type LSWM_MAC_STATIC and LSWM_MAC_BLOCKING make a
// static entry; blocking also drops frames from and to the address, in every VLAN when
// entry->vlanSpecific is 0. Any other type makes an ordinary entry.
// LSW_NO_RESOURCE when the table is full or the address's hash bucket is taken (printed);
// LSW_CHIP_FAILED for any other refusal (traced, event); LSW_INVALID_ARGUMENT for unit > 3.
// A refused static add lowers the static count even when the address was already in the table.
ZR_EXPORT uint32_t ZR_MAC_AddMac(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_AddMacZr(uint32_t unit, const LswmMacEntry *entry);

// Adds a synchronised entry at the unit's lowest cascade port, which is written to entry->port. LSW_OK
// and nothing added when the unit has none; LSW_INVALID_ARGUMENT for unit > 2; else as AddMac.
ZR_EXPORT uint32_t ZR_MAC_SyncMacInsert(uint32_t unit, LswmMacEntry *entry);

// 1 when the chip finds entry->mac, asked for with `vlan` but without VLAN key; else 0 (traced, detail,
// as the VLAN module). 0 for a null entry. Not a status.
ZR_EXPORT uint32_t HAL_MAC_HasExistedMacTabZr(uint32_t unit, const LswmMacEntry *entry, uint32_t vlan);

// Deletes entry->mac in entry->vlan. An address that is not there counts as deleted. Failures are
// traced (detail). LSW_INVALID_ARGUMENT for unit > 3.
ZR_EXPORT uint32_t ZR_MAC_DelByVlanMac(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_DelByVlanMacZr(uint32_t unit, const LswmMacEntry *entry);

// Deletes an address (6 bytes) whatever its VLAN; the static count stays. An address that is not there
// is a failure here. Failures are traced (detail). A failed copy of the address (null) is printed and
// the all-zero address is asked for.
ZR_EXPORT uint32_t ZR_MAC_DelByMac(uint32_t unit, const uint8_t *mac);
ZR_EXPORT uint32_t HAL_MAC_DelByMacZr(uint32_t unit, const uint8_t *mac);

// Clears the table and the static count. Returns the chip SDK's own status, unprinted;
// LSW_INVALID_ARGUMENT for unit > 3.
ZR_EXPORT uint32_t ZR_MAC_DelAllMac(uint32_t unit);
ZR_EXPORT uint32_t HAL_MAC_DelAllMacZr(uint32_t unit);

// ---- flushes: remove learned addresses, never static ones -----------------------------------

// All ports of one VLAN. Failures are traced (detail).
ZR_EXPORT uint32_t ZR_MAC_DelByVlan(uint32_t unit, uint32_t vlan);
ZR_EXPORT uint32_t HAL_MAC_DelByVlanZr(uint32_t unit, uint32_t vlan);

// entry->port in every VLAN, and in entry->vlan alone. LSW_OK and nothing flushed when entry->unit is
// another unit. Failures are traced (detail).
ZR_EXPORT uint32_t ZR_MAC_DelByPort(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_DelByPortZr(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t ZR_MAC_DelByPortVlan(uint32_t unit, const LswmMacEntry *entry);
ZR_EXPORT uint32_t HAL_MAC_DelByPortVlanZr(uint32_t unit, const LswmMacEntry *entry);

// Every valid port of the unit in turn. Always LSW_OK: a port that fails is printed and passed over, a
// unit > 2 has no ports.
ZR_EXPORT uint32_t ZR_MAC_DelDynMac(uint32_t unit);

// One port in every VLAN.
ZR_EXPORT uint32_t HAL_MAC_DelDynMacZr(uint32_t unit, uint32_t port);

// ---- queries --------------------------------------------------------------------------------

// Reads the entry at query->index. LSW_INVALID_ARGUMENT for any query type but 3.
ZR_EXPORT uint32_t ZR_MAC_GetMacEntry(uint32_t unit, uint32_t queryType, const LswmMacQuery *query,
                                      LswmMacEntry *entry);

// Reads one table entry: unit, valid, entryVlan, mac, and type when it is static. `port` is the lowest
// of the entry's ports that may be reported (LSWM_PORT_MAC_REPORTED); without one it is 128 and noPort
// is set. Other bytes stay. LSW_INVALID_ARGUMENT for unit > 2; failures are traced (detail).
ZR_EXPORT uint32_t HAL_MAC_GetMacByIdxZr(uint32_t unit, uint32_t index, LswmMacEntry *entry);

// Capacity of the table, and its fill: learned addresses of the valid ports plus the static count, at
// most the capacity. A port that cannot be read is traced (detail) and left out; the outcome is
// traced (event). LSW_INVALID_ARGUMENT for unit > 2.
ZR_EXPORT uint32_t ZR_MAC_GetCapacity(uint32_t unit, uint32_t *capacity, uint32_t *used);
ZR_EXPORT uint32_t HAL_MAC_GetCapacityZr(uint32_t unit, uint32_t *capacity, uint32_t *used);

ZR_EXTERN_C_END
