// Identifier records of the ACL module: which logic rule, which run of chip entries, which hit counter and
// which meter belong together. Nothing here touches the chip or prints; the only service used is the
// manager's memory, once per unit.
//
// A rule's identifiers are first chosen (COM_ACL_Alloc*: nothing is marked, so the same call returns the
// same again) and later recorded (COM_ACL_SetRuleRecord, COM_ACL_SetRuleCounterMapEntry). Calls for a unit
// must come one at a time.
//
// Where nothing else is said, a unit above 2, a partition above 3 and a chip rule id beyond the maps return
// LSW_INVALID_ARGUMENT; then a null output returns LSW_NULL_POINTER. Outputs are written only with LSW_OK, and
// nothing changes with any other status.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

enum {
    ZR_ACL_PARTITIONS = 4,         // 0 to 3, of logic rule ids and of chip rule ids alike
    ZR_ACL_MAX_RULES = 256,        // capacity of the rule id bitmaps
    ZR_ACL_MAX_COUNTERS = 256,     // capacity of the counter bitmap
    ZR_ACL_MAX_RULE_ENTRIES = 255, // chip entries of one rule: a record counts them in 8 bits
    ZR_ACL_NO_COUNTER = 0xFF       // counter id of a chip rule id without counter
};

// A partition covers firstId up to, not including, firstId + count.
typedef struct {
    uint32_t firstId;
    uint16_t count;
} AclRulePartInfo;

typedef struct {
    uint32_t logicRuleId;
    uint32_t firstChipId;
    uint8_t count; // consecutive chip rule ids
    uint8_t valid; // 1: in use
} AclRuleRecord;

typedef struct {
    uint8_t counterId; // ZR_ACL_NO_COUNTER: none
    uint8_t valid;     // 1: the counter counts for this rule
} AclRuleCounterMapEntry;

typedef struct {
    uint8_t carId; // meter named by the rule's action
    uint8_t valid; // 1: the meter polices this rule
} AclRuleCarMapEntry;

// One unit. In the bitmaps id i is bit (i mod 32) of word (i div 32). Both maps are indexed by chip rule
// id and used at the first chip rule id of a rule.
typedef struct {
    uint32_t logicRuleNum;
    uint32_t chipRuleNum;
    uint32_t ruleRecordNum; // valid records
    AclRulePartInfo logicParts[ZR_ACL_PARTITIONS];
    AclRulePartInfo chipParts[ZR_ACL_PARTITIONS];
    uint32_t logicInUse[ZR_ACL_MAX_RULES / 32];
    uint32_t chipInUse[ZR_ACL_MAX_RULES / 32];
    AclRuleRecord *ruleRecords;         // logicRuleNum
    AclRuleCounterMapEntry *counterMap; // chipRuleNum
    AclRuleCarMapEntry *carMap;         // chipRuleNum
} AclRuleInfo;

typedef struct {
    uint32_t counterNum;
    uint32_t usedNum; // up by one with each counter taken, down by one with each release
    uint32_t inUse[ZR_ACL_MAX_COUNTERS / 32];
} AclCounterInfo;

// A rule found by one of its chip rule ids.
typedef struct {
    uint32_t logicRuleId;
    uint32_t firstChipId;
    uint8_t count;
} AclRuleInfoView;

// ---- records of a unit ------------------------------------------------------------------------

// The unit's records, all zero before the initialisation. Null for a unit above 2 and a partition above 3.
ZR_EXPORT AclRuleInfo *COM_ACL_GetRuleInfo(uint32_t unit);
ZR_EXPORT AclRulePartInfo *COM_ACL_GetLogicRulePartInfo(uint32_t unit, uint32_t partition);
ZR_EXPORT AclRulePartInfo *COM_ACL_GetChipRulePartInfo(uint32_t unit, uint32_t partition);
ZR_EXPORT AclCounterInfo *COM_ACL_GetCounterInfo(uint32_t unit);

// Allocates the tables of `count` rules (0 to 256) and lets every partition cover all of them, once for the
// life of the process. LSW_IN_USE when that was done before, then LSW_INVALID_ARGUMENT for a count above 256,
// LSW_NULL_POINTER without memory: the unit then has none, and the call may be repeated.
ZR_EXPORT uint32_t COM_ACL_RuleInfoInit(uint32_t unit, uint32_t count);

// Sets the number of counters (0 to 256, else LSW_INVALID_ARGUMENT), and the number taken to 0; the bitmap
// stays as it was.
ZR_EXPORT uint32_t COM_ACL_CounterInfoInit(uint32_t unit, uint32_t count);

// ---- partitions ---------------------------------------------------------------------------------

// First id and number of ids of a partition.
ZR_EXPORT uint32_t COM_ACL_GetLogicRulePartRange(uint32_t unit, uint32_t partition, uint32_t *firstId,
                                                 uint32_t *count);
ZR_EXPORT uint32_t COM_ACL_GetChipRulePartRange(uint32_t unit, uint32_t partition, uint32_t *firstId,
                                                uint32_t *count);

// Sets a partition's first id and number of ids. LSW_INVALID_ARGUMENT also for a range that ends beyond the
// unit's ids.
ZR_EXPORT uint32_t COM_ACL_LogicRulePartInit(uint32_t unit, uint32_t partition, uint32_t firstId,
                                             uint32_t count);
ZR_EXPORT uint32_t COM_ACL_ChipRulePartInit(uint32_t unit, uint32_t partition, uint32_t firstId,
                                            uint32_t count);

// ---- rules --------------------------------------------------------------------------------------

// Not a status: 1 when the id is taken, else 0. 1 also for a unit above 2 and, on an initialised unit, for an
// id that no rule can have.
ZR_EXPORT uint32_t COM_ACL_IsLogicRuleInUse(uint32_t unit, uint32_t logicRuleId);

// The lowest free id of the partition. LSW_NO_RESOURCE when none is free.
ZR_EXPORT uint32_t COM_ACL_AllocLogicRuleId(uint32_t unit, uint32_t partition, uint32_t *logicRuleId);

// The first id of the lowest run of `count` free ids inside the partition; the lowest free id for a count of 0.
// LSW_NO_RESOURCE when there is none.
ZR_EXPORT uint32_t COM_ACL_AllocChipRuleId(uint32_t unit, uint32_t partition, uint32_t count,
                                           uint32_t *firstChipId);

// Records a rule of `count` chip rule ids and marks its ids. In this order: LSW_NO_RESOURCE when the unit is
// not initialised; LSW_INVALID_ARGUMENT for a logic rule id that no rule can have; LSW_IN_USE when it is taken;
// LSW_NO_RESOURCE when the run does not lie inside the unit's chip rule ids, is longer than 255, or no record
// is free. A count of 0 is recorded without chip rule ids; with first chip rule id 0 it is LSW_NO_RESOURCE.
// Whether the chip rule ids are marked is not checked: over ids that another record holds, lookups by chip rule
// id find the record of lower index, and releasing either record frees the ids that they share.
ZR_EXPORT uint32_t COM_ACL_SetRuleRecord(uint32_t unit, uint32_t logicRuleId, uint32_t firstChipId,
                                         uint32_t count);

// Frees the rule's record and its ids; an unknown logic rule id is only unmarked. LSW_OK for every id. The
// rule's counter and meter stay as they are: ZR_ACL_DelEntry releases them.
ZR_EXPORT uint32_t COM_ACL_ReleseRuleRecord(uint32_t unit, uint32_t logicRuleId);

// The first chip rule id of a rule. LSW_CHIP_FAILED when no record holds the logic rule id.
ZR_EXPORT uint32_t COM_ACL_LogicRuleToChipRule(uint32_t unit, uint32_t logicRuleId, uint32_t *firstChipId);

// The rule whose run contains the chip rule id, at its start or inside. LSW_NOT_FOUND for an id that is not
// marked or that no rule can have, LSW_CHIP_FAILED for one that is marked but in no record.
ZR_EXPORT uint32_t COM_ACL_GetRuleInfoFromChipId(uint32_t unit, uint32_t chipRuleId, AclRuleInfoView *rule);

// The length of that rule's run. Every failure but a null output is LSW_CHIP_FAILED, a unit above 2 included.
ZR_EXPORT uint32_t COM_ACL_GetRuleCountFromChipRule(uint32_t unit, uint32_t chipRuleId, uint32_t *count);

// ---- counters and meters --------------------------------------------------------------------------

// The lowest counter that is marked free. LSW_NO_RESOURCE when there is none, and when the number taken has
// reached the unit's counters. Counter 255 is never chosen: its number stands for none in the map.
ZR_EXPORT uint32_t COM_ACL_AllocChipCounter(uint32_t unit, uint32_t *counterId);

// Flag 1 marks the counter taken and adds 1 to the number taken, any other flag marks it free and subtracts
// 1, whatever the mark was before; the number never falls below 0. LSW_NO_RESOURCE for a counter that the
// unit does not have.
ZR_EXPORT uint32_t COM_ACL_SetCounterInfoEntry(uint32_t unit, uint32_t counterId, uint32_t flag);

// Binds a counter to the rule at `chipRuleId`, keeping the low 8 bits of `counterId` and `valid`; then marks
// the counter as COM_ACL_SetCounterInfoEntry does, whose status it returns, with both arguments whole. The
// binding stays written when the marking fails.
ZR_EXPORT uint32_t COM_ACL_SetRuleCounterMapEntry(uint32_t unit, uint32_t chipRuleId, uint32_t counterId,
                                                  uint32_t valid);

// Takes (valid 1) or releases (any other value) the counter bound at `chipRuleId`; LSW_OK when there is none.
// A release removes the binding, and leaves the counter alone when the binding was not valid: no counter is
// released twice through it. LSW_NO_RESOURCE for a counter to take or release that the unit does not have; the
// binding has changed all the same.
ZR_EXPORT uint32_t COM_ACL_SetRuleCounterMapEntryValid(uint32_t unit, uint32_t chipRuleId, uint32_t valid);

// The counter of the rule at `chipRuleId`. LSW_NOT_FOUND when no valid one is bound.
ZR_EXPORT uint32_t COM_ACL_GetCounterIdFromChipRuleId(uint32_t unit, uint32_t chipRuleId, uint32_t *counterId);

// The meter of the rule at `chipRuleId`, and whether it is valid. Meters are not allocated here
// (records/meter_records.h). The last operation keeps the low 8 bits of `valid` and leaves the meter.
ZR_EXPORT uint32_t COM_ACL_SetRuleCarMapEntry(uint32_t unit, uint32_t chipRuleId, uint8_t carId, uint8_t valid);
ZR_EXPORT uint32_t COM_ACL_GetRuleCarMapEntry(uint32_t unit, uint32_t chipRuleId, uint32_t *carId,
                                              uint32_t *valid);
ZR_EXPORT uint32_t COM_ACL_SetRuleCarMapEntryValid(uint32_t unit, uint32_t chipRuleId, uint32_t valid);

ZR_EXTERN_C_END
