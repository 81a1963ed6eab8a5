// Link aggregation: two chip trunk groups per unit, members as a mask of chip ports.
//
// Members are kept in the chip alone: every change is a read-modify-write of one group's mask. Creating and
// deleting a trunk change the identifier records (records/trunk_records.h) and make no chip call.
//
// Group 0 takes chip ports 0 to 3; group 1 takes chip ports 4 to 35, the last that has a bit in its mask. The
// SDK translates a port into its chip port.
//
// Failures of the SDK are logged under LSW_MODULE_TRUNK with the SDK's status and return LSW_CHIP_FAILED; lines
// show the manager's port, not the chip port. ZR_TRUNK_AddMember, ZR_TRUNK_DelMember, ZR_TRUNK_GetMember and
// ZR_TRUNK_InitMode print a line of their own for any failure below them. Where nothing else is said, units and
// ports are passed to the SDK unchecked.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// ---- members: `trunk` is the chip trunk group -------------------------------------------------

// Adds a port to a group. LSW_INVALID_ARGUMENT, after the translation of the port but without a further chip
// call and unprinted by HAL_TRUNK_AddMemberZr, for a trunk above 1 or a chip port that the group does not take.
ZR_EXPORT uint32_t ZR_TRUNK_AddMember(uint32_t unit, uint32_t port, uint32_t trunk);
ZR_EXPORT uint32_t HAL_TRUNK_AddMemberZr(uint32_t unit, uint32_t trunk, uint32_t port);

// Takes a port out of group 0. LSW_INVALID_ARGUMENT, printed with status 0, for any other trunk and for a chip
// port above 3.
ZR_EXPORT uint32_t ZR_TRUNK_DelMember(uint32_t unit, uint32_t port, uint32_t trunk);
ZR_EXPORT uint32_t HAL_TRUNK_DelMemberZr(uint32_t unit, uint32_t trunk, uint32_t port);

// Reads the mask of a group as the SDK gives it, unshifted for either group, into `memberMask`, which stays
// unwritten on failure. LSW_NULL_POINTER for a null output, unprinted by HAL_TRUNK_GetMemberZr.
// ZR_TRUNK_GetMember takes a logic trunk id: a unit above 2 and an id without a group return LSW_CHIP_FAILED,
// printed with the status of the lookup, before the output is looked at.
ZR_EXPORT uint32_t ZR_TRUNK_GetMember(uint32_t unit, uint32_t logicTrunkId, uint32_t *memberMask);
ZR_EXPORT uint32_t HAL_TRUNK_GetMemberZr(uint32_t unit, uint32_t trunk, uint32_t *memberMask);

// ---- trunks -----------------------------------------------------------------------------------

// Records a trunk, always against group 0: it replaces a trunk created before, which is counted on. An id that
// exists changes nothing. LSW_INVALID_ARGUMENT, printed, for a unit above 2.
ZR_EXPORT uint32_t ZR_TRUNK_Create(uint32_t unit, uint32_t logicTrunkId);

// Frees a trunk's group and counts one trunk less; the group's members stay in the chip. LSW_INVALID_ARGUMENT,
// unprinted, for a unit above 2; LSW_NOT_FOUND, printed, for an id that does not exist. While a group is free,
// id 0 exists: deleting it frees nothing but counts one less.
ZR_EXPORT uint32_t ZR_TRUNK_Delete(uint32_t unit, uint32_t logicTrunkId);

// The count of trunks plus one: 1 on a fresh unit. Two creations give 3 although one trunk is recorded;
// deleting id 0 on a fresh unit gives 0. LSW_INVALID_ARGUMENT for a unit above 2, then LSW_NULL_POINTER for a
// null output; neither is printed, `number` stays unwritten.
ZR_EXPORT uint32_t ZR_TRUNK_GetTrunkNum(uint32_t unit, uint32_t *number);

// ---- hashing, set up by port initialisation ---------------------------------------------------

// Sets the trunk mode, then the hash inputs. Stops at the first failure, which it prints under LSW_MODULE_PORT
// on top of the chip operation's line, and returns its status unchanged.
ZR_EXPORT uint32_t ZR_TRUNK_InitMode(uint32_t unit);
ZR_EXPORT uint32_t HAL_TRUNK_InitHashModeZr(uint32_t unit);
ZR_EXPORT uint32_t HAL_TRUNK_InitHashSelectZr(uint32_t unit);

ZR_EXTERN_C_END
