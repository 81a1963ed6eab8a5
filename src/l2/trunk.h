// Link aggregation: two chip trunk groups per unit, members as a mask of chip ports.
//
// Members stand in the chip only: every change is a read-modify-write of one group's mask. Creating and
// deleting a trunk touch the identifier records (records/trunk_records.h) and make no chip call.
//
// Group 0 takes chip ports 0 to 3, group 1 chip ports from 4 on (to 35, the last with a bit in the word); a
// port's bit counts from the group's first chip port. Failures of the SDK are printed with the SDK's status
// (module 12) and answered with LSW_CHIP_FAILED; the messages carry the manager's port number. The module
// operations on members print a line of their own on any nonzero status.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// ---- members: `trunk` is the chip trunk group -------------------------------------------------

// Adds a port to a group. LSW_INVALID_ARGUMENT without a message or a further chip call when the group does
// not take the chip port.
ZR_EXPORT uint32_t ZR_TRUNK_AddMember(uint32_t unit, uint32_t port, uint32_t trunk);
ZR_EXPORT uint32_t HAL_TRUNK_AddMemberZr(uint32_t unit, uint32_t trunk, uint32_t port);

// Takes a port out of group 0. Group 1 and chip ports above 3 are refused with LSW_INVALID_ARGUMENT,
// printed with status 0.
ZR_EXPORT uint32_t ZR_TRUNK_DelMember(uint32_t unit, uint32_t port, uint32_t trunk);
ZR_EXPORT uint32_t HAL_TRUNK_DelMemberZr(uint32_t unit, uint32_t trunk, uint32_t port);

// The mask of a trunk's group as the chip SDK gives it. LSW_CHIP_FAILED, printed, for a logic trunk id
// without a group; LSW_NULL_POINTER for a null output. `memberMask` stays unwritten on failure.
ZR_EXPORT uint32_t ZR_TRUNK_GetMember(uint32_t unit, uint32_t logicTrunkId, uint32_t *memberMask);
ZR_EXPORT uint32_t HAL_TRUNK_GetMemberZr(uint32_t unit, uint32_t trunk, uint32_t *memberMask);

// ---- trunks -----------------------------------------------------------------------------------

// Records a trunk, always against group 0. A known id changes nothing. LSW_INVALID_ARGUMENT, printed, for a
// unit without record.
ZR_EXPORT uint32_t ZR_TRUNK_Create(uint32_t unit, uint32_t logicTrunkId);

// Forgets a trunk; the group's members stay in the chip. LSW_INVALID_ARGUMENT for a unit without record;
// LSW_NOT_FOUND, printed, for an unknown id.
ZR_EXPORT uint32_t ZR_TRUNK_Delete(uint32_t unit, uint32_t logicTrunkId);

// The number of recorded trunks plus one. LSW_INVALID_ARGUMENT for a unit without record, LSW_NULL_POINTER
// for a null output.
ZR_EXPORT uint32_t ZR_TRUNK_GetTrunkNum(uint32_t unit, uint32_t *number);

// ---- hashing, set up by port initialisation ---------------------------------------------------

// Sets trunk mode and hash selection. Stops at the first failure; the module operation prints its own
// line as the port module (2).
ZR_EXPORT uint32_t ZR_TRUNK_InitMode(uint32_t unit);
ZR_EXPORT uint32_t HAL_TRUNK_InitHashModeZr(uint32_t unit);
ZR_EXPORT uint32_t HAL_TRUNK_InitHashSelectZr(uint32_t unit);

ZR_EXTERN_C_END
