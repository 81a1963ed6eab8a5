// Trunk identifiers: which of the manager's logic trunk ids stands for which chip trunk group.
//
// A free group holds 0, so that the logic trunk id 0 exists while a group is free and stands for the lowest
// free group. A unit above 2 returns LSW_INVALID_ARGUMENT. Nothing here touches the chip or prints.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

enum { ZR_TRUNK_GROUPS = 2 }; // chip trunk groups of a unit

typedef struct {
    uint32_t logicTrunkId[ZR_TRUNK_GROUPS]; // by group; 0: free
    // Up by one with each new record, also one that replaces another id of its group; down by one with each
    // deletion, also that of id 0. Wraps in 32 bits. So it need not be the number of ids recorded.
    uint32_t trunkNum;
    uint32_t unitId; // written with each new record
} TrunkMeterInfo;
ZR_ASSERT_SIZE(TrunkMeterInfo, 16);
ZR_ASSERT_OFFSET(TrunkMeterInfo, logicTrunkId, 0);
ZR_ASSERT_OFFSET(TrunkMeterInfo, trunkNum, 8);
ZR_ASSERT_OFFSET(TrunkMeterInfo, unitId, 12);

// One record per unit; zero at load and never cleared.
ZR_EXPORT extern TrunkMeterInfo g_TrunkMeterInfo[LSWM_UNITS];

// The unit's record in g_TrunkMeterInfo, or null for a unit above 2.
ZR_EXPORT TrunkMeterInfo *COM_TRUNK_GetMeterInfo(uint32_t unit);

// The lowest group of an id. LSW_NULL_POINTER for a null output, LSW_NOT_FOUND when the id does not exist, in
// that order; `chipTrunkId` stays unwritten on failure.
ZR_EXPORT uint32_t COM_TRUNK_LogicidToChipid(uint32_t unit, uint32_t logicTrunkId, uint32_t *chipTrunkId);

// LSW_OK when the id exists on the unit: when it stands for a group. LSW_NOT_FOUND when not.
ZR_EXPORT uint32_t COM_TRUNK_IsLogicTrunkExist(uint32_t unit, uint32_t logicTrunkId);

// Records an id for a group, in place of the id that the group had. An id that exists changes nothing, whatever
// its group. LSW_INVALID_ARGUMENT also for a group other than 0 and 1.
ZR_EXPORT uint32_t COM_TRUNK_SetMeterInfo(uint32_t unit, uint32_t logicTrunkId, uint32_t chipTrunkId);

ZR_EXTERN_C_END
