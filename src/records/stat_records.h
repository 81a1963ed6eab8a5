// Statistics records: per unit and statistics type, which logic statistics identifier of the manager is
// backed by which chip identifier. No operation table holds these operations: the manager calls them by
// name. Nothing here prints a failure or reaches the chip.
//
// The status operations take the unit (0 to 2) and the statistics type (0 to 7) first. They return
// LSW_INVALID_ARGUMENT when either is out of range, then LSW_NULL_POINTER for a null output. Outputs are
// written only with LSW_OK. Changes, and hits by logic identifier, are traced (detail) under LSW_MODULE_QOS.
//
// A type without entries (not initialised, or initialised with none) passes identifiers through unchanged.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

enum { ZR_QOS_STAT_TYPES = 8 }; // statistics types of a unit

typedef struct {
    uint16_t entryCount; // map entries of the type
    uint16_t usedCount;  // map entries in use
} QosStatPartInfo;
ZR_ASSERT_SIZE(QosStatPartInfo, 4);

typedef struct {
    uint32_t logicId;
    uint32_t chipId;
    uint8_t valid; // 1: in use, 0: free
    uint8_t reserved9[3];
} QosStatEntry;
ZR_ASSERT_SIZE(QosStatEntry, 12);
ZR_ASSERT_OFFSET(QosStatEntry, valid, 8);

// One unit, by statistics type.
typedef struct {
    QosStatPartInfo part[ZR_QOS_STAT_TYPES];
    QosStatEntry *entries[ZR_QOS_STAT_TYPES]; // null until initialised, never released
} QosStatInfo;
ZR_ASSERT_OFFSET(QosStatInfo, entries, 32);

// The unit's record and a type's part of it, or null when unit or type is out of range.
ZR_EXPORT QosStatInfo *COM_QOS_GetStatInfo(uint32_t unit);
ZR_EXPORT QosStatPartInfo *COM_QOS_GetStatPartInfo(uint32_t unit, uint32_t type);

// Gives the type `count` map entries, of which entryCount keeps the low 16 bits, once for the life of the
// process. A count of 0 changes nothing: the type stays in pass-through. LSW_IN_USE when it has a map already,
// LSW_NULL_POINTER without memory; nothing changes then either.
ZR_EXPORT uint32_t COM_QOS_StatInfoInit(uint32_t unit, uint32_t type, uint32_t count);

// Allocates the map of the above but leaves entryCount: identifiers pass through for good, since the type
// cannot be given another map. Same statuses.
ZR_EXPORT uint32_t COM_QOS_StatMapInfoInit(uint32_t unit, uint32_t type, uint32_t count);

// Not a status: 1 recorded, 0 not. 0 also when unit or type is out of range.
ZR_EXPORT uint32_t COM_QOS_IsLogicStatIdInUse(uint32_t unit, uint32_t type, uint32_t logicId);

// Records that chipId backs logicId, also when logicId is recorded already: lookups then find the entry of
// lower index. LSW_NO_RESOURCE when no entry is free or the type has none.
ZR_EXPORT uint32_t COM_QOS_SetStatEntry(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t chipId);

// The other side of the recorded pair of lowest index; LSW_CHIP_FAILED when there is none.
ZR_EXPORT uint32_t COM_QOS_StatLogicIdToChipId(uint32_t unit, uint32_t type, uint32_t logicId,
                                               uint32_t *chipId);
ZR_EXPORT uint32_t COM_QOS_StatChipIdToLogicId(uint32_t unit, uint32_t type, uint32_t chipId,
                                               uint32_t *logicId);

// Frees the entry of lowest index of logicId; LSW_OK also when there is none.
ZR_EXPORT uint32_t COM_QOS_ReleseStatRecord(uint32_t unit, uint32_t type, uint32_t logicId);

ZR_EXTERN_C_END
