// Meter records: per unit and meter type, which logic meter of the manager is backed by which chip meter, and
// which identifiers of either kind are free. Eight of the operations are slots of the rate-limit table. Nothing
// here prints or reaches the chip.
//
// All operations take the unit (0 to 2) and the meter type (0 to 5) first. The status operations return
// LSW_INVALID_ARGUMENT when either is out of range, then LSW_NULL_POINTER for a null output. Outputs are
// written only with LSW_OK, except as said for COM_HSEC_AllocMeterId.
//
// A type that was not initialised has no entries: it allocates and records nothing (LSW_NO_RESOURCE), finds
// nothing (LSW_CHIP_FAILED), and its entry identifiers are the logic identifiers.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_HSEC_METER_TYPES = 6, // meter types of a unit
    ZR_HSEC_BITMAP_IDS = 128 // identifiers that an in-use bitmap covers
};

typedef struct {
    uint32_t logicId;
    uint32_t chipId;
    uint8_t valid; // 1: in use, 0: free
    uint8_t reserved9[3];
} HsecMeterEntry;
ZR_ASSERT_SIZE(HsecMeterEntry, 12);
ZR_ASSERT_OFFSET(HsecMeterEntry, valid, 8);

// Identifier i is bit (i mod 32) of word (i div 32) of a bitmap.
typedef struct {
    uint32_t base;       // first entry identifier: entry i is logic meter base + i
    uint32_t logicCount; // logic meters 0 to logicCount - 1
    uint16_t entryCount; // map entries, and chip meters 0 to entryCount - 1
    uint16_t usedCount;  // map entries in use
    uint8_t bitmapMode;  // nonzero: the bitmaps decide what is in use; zero: the map entries do
    uint8_t reserved13[3];
    uint32_t logicInUse[ZR_HSEC_BITMAP_IDS / 32];
    uint32_t chipInUse[ZR_HSEC_BITMAP_IDS / 32];
    HsecMeterEntry *entries; // entryCount entries, never released
} HsecMeterInfo;
ZR_ASSERT_OFFSET(HsecMeterInfo, logicCount, 4);
ZR_ASSERT_OFFSET(HsecMeterInfo, entryCount, 8);
ZR_ASSERT_OFFSET(HsecMeterInfo, usedCount, 10);
ZR_ASSERT_OFFSET(HsecMeterInfo, bitmapMode, 12);
ZR_ASSERT_OFFSET(HsecMeterInfo, logicInUse, 16);
ZR_ASSERT_OFFSET(HsecMeterInfo, chipInUse, 32);
ZR_ASSERT_OFFSET(HsecMeterInfo, entries, 48);

// Indexed by unit and meter type; all zero until initialised.
ZR_EXPORT extern HsecMeterInfo g_HsecMeterInfo[LSWM_UNITS][ZR_HSEC_METER_TYPES];

// The record in g_HsecMeterInfo, or null when unit or type is out of range.
ZR_EXPORT HsecMeterInfo *COM_HSEC_GetMeterInfo(uint32_t unit, uint32_t type);

// Initialises a type once for the life of the process: `count` logic meters, map entries and chip meters, of
// which entryCount keeps the low 16 bits. LSW_IN_USE when it was initialised before, then LSW_INVALID_ARGUMENT
// for a count above 128 with bitmaps, LSW_NULL_POINTER without memory. On any of them nothing changes.
ZR_EXPORT uint32_t COM_HSEC_MeterInfoInit(uint32_t unit, uint32_t type, uint32_t base, uint32_t count,
                                          uint8_t bitmapMode);

// Not a status: 1 in use, 0 free. A unit or type out of range counts as in use, and with bitmaps an identifier
// of 128 or more: neither can ever be taken.
ZR_EXPORT uint32_t COM_HSEC_IsLogicMeterInUse(uint32_t unit, uint32_t type, uint32_t logicId);

// The lowest free identifier. It is not reserved: the same one is returned until COM_HSEC_SetMeterEntry takes
// it. LSW_NO_RESOURCE when none is free, and always without bitmaps.
ZR_EXPORT uint32_t COM_HSEC_AllocLogicMeterId(uint32_t unit, uint32_t type, uint32_t *logicId);
ZR_EXPORT uint32_t COM_HSEC_AllocChipMeter(uint32_t unit, uint32_t type, uint32_t *chipId);

// Both of the above; stops at the first failure and returns its status. When there is a free logic meter but no
// free chip meter, `logicId` is written all the same.
ZR_EXPORT uint32_t COM_HSEC_AllocMeterId(uint32_t unit, uint32_t type, uint32_t *logicId, uint32_t *chipId);

// Records that chipId backs logicId. A chip meter that another logic meter has is accepted too; releasing
// either of them frees it for allocation. With bitmaps LSW_INVALID_ARGUMENT for an identifier
// of 128 or more; then LSW_IN_USE when logicId is recorded already, LSW_NO_RESOURCE when no entry is free.
ZR_EXPORT uint32_t COM_HSEC_SetMeterEntry(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t chipId);

// The other side of the recorded pair of lowest index; LSW_CHIP_FAILED when there is none.
ZR_EXPORT uint32_t COM_HSEC_LogicMeterToChipMeter(uint32_t unit, uint32_t type, uint32_t logicId,
                                                  uint32_t *chipId);
ZR_EXPORT uint32_t COM_HSEC_ChipMeterToLogicMeter(uint32_t unit, uint32_t type, uint32_t chipId,
                                                  uint32_t *logicId);

// Frees the logic meter and its chip meter. LSW_OK also when the logic meter is not recorded: no chip meter
// changes then. With bitmaps LSW_INVALID_ARGUMENT for an identifier of 128 or more.
ZR_EXPORT uint32_t COM_HSEC_ReleseHsecRecord(uint32_t unit, uint32_t type, uint32_t logicId);

// base + entryId, in 32 bits; entryId itself for a type without entries. LSW_NO_RESOURCE for an entry that a
// type with entries does not have.
ZR_EXPORT uint32_t COM_HSEC_EntryIdToLogicMeter(uint32_t unit, uint32_t type, uint32_t entryId,
                                                uint32_t *logicId);

ZR_EXTERN_C_END
