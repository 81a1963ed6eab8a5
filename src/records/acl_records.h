// Identifier records of the ACL module: which logic rule, which run of chip entries, which hit counter and
// which meter belong together. Nothing here touches the chip or prints; the only service used is the
// manager's memory, once per unit.
//
// A rule's identifiers are first chosen (COM_ACL_Alloc*: nothing is marked, so the same call answers the
// same again) and later recorded (COM_ACL_SetRuleRecord, COM_ACL_SetRuleCounterMapEntry). Calls for a unit
// come one at a time.
//
// Common to all: `unit` is 0 to 2, a higher one gives LSW_INVALID_ARGUMENT; then a null output gives
// LSW_NULL_POINTER. An output is written only with LSW_OK. Identifiers beyond the
// unit's tables never reach memory: they give LSW_INVALID_ARGUMENT where no other status is named.
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
    uint32_t usedNum; // counters taken and not released
    uint32_t inUse[ZR_ACL_MAX_COUNTERS / 32];
} AclCounterInfo;

// A rule found by one of its chip rule ids.
typedef struct {
    uint32_t logicRuleId;
    uint32_t firstChipId;
    uint8_t count;
} AclRuleInfoView;

// ---- records of a unit ------------------------------------------------------------------------

// Null for a bad unit, the part getters also for a partition above 3. All zero before the initialisation.
ZR_EXPORT AclRuleInfo *COM_ACL_GetRuleInfo(uint32_t unit);
ZR_EXPORT AclRulePartInfo *COM_ACL_GetLogicRulePartInfo(uint32_t unit, uint32_t partition);
ZR_EXPORT AclRulePartInfo *COM_ACL_GetChipRulePartInfo(uint32_t unit, uint32_t partition);
ZR_EXPORT AclCounterInfo *COM_ACL_GetCounterInfo(uint32_t unit);

// Takes the memory of `count` rules (0 to 256) and lets every partition cover all of them.
// LSW_INVALID_ARGUMENT also for a count above 256, LSW_IN_USE when the unit is initialised already,
// LSW_NULL_POINTER when there is no memory: the unit then has none, and the call may be repeated. There is
// no way back once it has succeeded.
ZR_EXPORT uint32_t COM_ACL_RuleInfoInit(uint32_t unit, uint32_t count);

// Sets the number of counters (0 to 256, else LSW_INVALID_ARGUMENT) and how many are taken to 0; the bitmap
// stays.
ZR_EXPORT uint32_t COM_ACL_CounterInfoInit(uint32_t unit, uint32_t count);

// ---- partitions ---------------------------------------------------------------------------------

// LSW_INVALID_ARGUMENT also for a partition above 3.
ZR_EXPORT uint32_t COM_ACL_GetLogicRulePartRange(uint32_t unit, uint32_t partition, uint32_t *firstId,
                                                 uint32_t *count);
ZR_EXPORT uint32_t COM_ACL_GetChipRulePartRange(uint32_t unit, uint32_t partition, uint32_t *firstId,
                                                uint32_t *count);

// Cut a partition. LSW_INVALID_ARGUMENT also for a partition above 3 and for a range that ends beyond the
// unit's ids.
ZR_EXPORT uint32_t COM_ACL_LogicRulePartInit(uint32_t unit, uint32_t partition, uint32_t firstId,
                                             uint32_t count);
ZR_EXPORT uint32_t COM_ACL_ChipRulePartInit(uint32_t unit, uint32_t partition, uint32_t firstId,
                                            uint32_t count);

// ---- rules --------------------------------------------------------------------------------------

// Answers 1 or 0, not a status: whether the id is taken. 1 as well for a bad unit and, on an initialised
// unit, for an id that no rule can have.
ZR_EXPORT uint32_t COM_ACL_IsLogicRuleInUse(uint32_t unit, uint32_t logicRuleId);

// The lowest free id of the partition. LSW_INVALID_ARGUMENT also for a partition above 3, LSW_NO_RESOURCE
// when none is free.
ZR_EXPORT uint32_t COM_ACL_AllocLogicRuleId(uint32_t unit, uint32_t partition, uint32_t *logicRuleId);

// The lowest run of `count` free ids that lies inside the partition; a count of 0 asks for the lowest free
// id. LSW_INVALID_ARGUMENT also for a partition above 3, LSW_NO_RESOURCE when there is no such run.
ZR_EXPORT uint32_t COM_ACL_AllocChipRuleId(uint32_t unit, uint32_t partition, uint32_t count,
                                           uint32_t *firstChipId);

// Records a rule and marks its ids. LSW_IN_USE when the logic rule id is taken; LSW_NO_RESOURCE when the
// unit is not initialised, when the run does not lie inside the chip rule ids or is longer than 255, when
// no record is free; LSW_INVALID_ARGUMENT also for a logic rule id that no record can hold. On failure
// nothing changes. A count of 0 is recorded without chip rule ids, unless it is given with first chip rule
// id 0 (LSW_NO_RESOURCE).
ZR_EXPORT uint32_t COM_ACL_SetRuleRecord(uint32_t unit, uint32_t logicRuleId, uint32_t firstChipId,
                                         uint32_t count);

// Frees the rule's record and its ids; an unknown logic rule id is only unmarked. Always LSW_OK for a good
// unit. The rule's counter and meter are not released here: ZR_ACL_DelEntry did that.
ZR_EXPORT uint32_t COM_ACL_ReleseRuleRecord(uint32_t unit, uint32_t logicRuleId);

// LSW_CHIP_FAILED when no record holds the id.
ZR_EXPORT uint32_t COM_ACL_LogicRuleToChipRule(uint32_t unit, uint32_t logicRuleId, uint32_t *firstChipId);

// The rule whose run contains the chip rule id, at its start or inside. LSW_NOT_FOUND when the id is not
// marked, LSW_CHIP_FAILED when it is but no record covers it.
ZR_EXPORT uint32_t COM_ACL_GetRuleInfoFromChipId(uint32_t unit, uint32_t chipRuleId, AclRuleInfoView *rule);

// The length of that rule's run; every failure but a null pointer is LSW_CHIP_FAILED, a bad unit included.
ZR_EXPORT uint32_t COM_ACL_GetRuleCountFromChipRule(uint32_t unit, uint32_t chipRuleId, uint32_t *count);

// ---- counters and meters --------------------------------------------------------------------------

// The lowest free counter. LSW_NO_RESOURCE when as many are taken as the unit has, or none is free. Counter
// 255 is never chosen: its number stands for none in the map.
ZR_EXPORT uint32_t COM_ACL_AllocChipCounter(uint32_t unit, uint32_t *counterId);

// Flag 1 marks the counter taken and adds 1 to the number taken, any other flag marks it free and subtracts
// 1, whatever the mark was before; the number never falls below 0. LSW_NO_RESOURCE for a counter that the
// unit does not have.
ZR_EXPORT uint32_t COM_ACL_SetCounterInfoEntry(uint32_t unit, uint32_t counterId, uint32_t flag);

// Binds a counter to the rule at `chipRuleId` and marks it taken (valid 1) or free (any other);
// the status is that of the marking, which takes the arguments whole. The binding keeps the low 8 bits of both
// and stays written when the marking fails.
ZR_EXPORT uint32_t COM_ACL_SetRuleCounterMapEntry(uint32_t unit, uint32_t chipRuleId, uint32_t counterId,
                                                  uint32_t valid);

// Takes (valid 1) or releases (any other) the counter bound at `chipRuleId`; LSW_OK when there is none. The
// release dissolves the binding, and leaves the counter alone when the binding is not valid: no counter is
// released a second time through it. LSW_NO_RESOURCE for a counter to take or release that the unit does
// not have.
ZR_EXPORT uint32_t COM_ACL_SetRuleCounterMapEntryValid(uint32_t unit, uint32_t chipRuleId, uint32_t valid);

// LSW_NOT_FOUND when no counter counts for the chip rule id.
ZR_EXPORT uint32_t COM_ACL_GetCounterIdFromChipRuleId(uint32_t unit, uint32_t chipRuleId, uint32_t *counterId);

// The meter of the rule at `chipRuleId`; a meter is no resource here.
ZR_EXPORT uint32_t COM_ACL_SetRuleCarMapEntry(uint32_t unit, uint32_t chipRuleId, uint8_t carId, uint8_t valid);
ZR_EXPORT uint32_t COM_ACL_GetRuleCarMapEntry(uint32_t unit, uint32_t chipRuleId, uint32_t *carId,
                                              uint32_t *valid);
ZR_EXPORT uint32_t COM_ACL_SetRuleCarMapEntryValid(uint32_t unit, uint32_t chipRuleId, uint32_t valid);

ZR_EXTERN_C_END
