// Trunk identifiers: which of the manager's logic trunk ids stands for which chip trunk group.
//
// A free group holds 0, so the logic trunk id 0 always exists; on a fresh unit it stands for group 0. A
// unit above 2 gives LSW_INVALID_ARGUMENT. Nothing here touches the chip or prints.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

enum { ZR_TRUNK_GROUPS = 2 }; // chip trunk groups of a unit

typedef struct {
    uint32_t logicTrunkId[ZR_TRUNK_GROUPS]; // recorded for each group; 0: free
    uint32_t trunkNum;                      // one up with each new record, one down with each deletion
    uint32_t unitId;                        // written with each new record
} TrunkMeterInfo;
ZR_ASSERT_SIZE(TrunkMeterInfo, 16);
ZR_ASSERT_OFFSET(TrunkMeterInfo, logicTrunkId, 0);
ZR_ASSERT_OFFSET(TrunkMeterInfo, trunkNum, 8);
ZR_ASSERT_OFFSET(TrunkMeterInfo, unitId, 12);

// One record per unit; zero at load and never cleared.
ZR_EXPORT extern TrunkMeterInfo g_TrunkMeterInfo[LSWM_UNITS];

// The unit's record, or null. It stays the table's.
ZR_EXPORT TrunkMeterInfo *COM_TRUNK_GetMeterInfo(uint32_t unit);

// LSW_OK when the id is recorded for a group of the unit, LSW_NOT_FOUND when not.
ZR_EXPORT uint32_t COM_TRUNK_IsLogicTrunkExist(uint32_t unit, uint32_t logicTrunkId);

// Records an id for a group, in place of the id that the group had. An id that exists changes nothing.
// LSW_INVALID_ARGUMENT for a group other than 0 and 1.
ZR_EXPORT uint32_t COM_TRUNK_SetMeterInfo(uint32_t unit, uint32_t logicTrunkId, uint32_t chipTrunkId);

// The group of an id, group 0 first. LSW_NOT_FOUND when the id does not exist, LSW_NULL_POINTER for a null
// output; `chipTrunkId` stays unwritten on failure.
ZR_EXPORT uint32_t COM_TRUNK_LogicidToChipid(uint32_t unit, uint32_t logicTrunkId, uint32_t *chipTrunkId);

ZR_EXTERN_C_END
