// Rules: partitions, the choice of ids, the records.
#include "records/acl_records.h"

#include "base/bitmap.h"
#include "base/memory.h"
#include "platform/manager.h"

namespace
{

AclRuleInfo g_AclRuleInfo[LSWM_UNITS];

uint32_t readRange(const AclRulePartInfo *part, uint32_t *firstId, uint32_t *count)
{
    if (part == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (firstId == nullptr || count == nullptr)
        return LSW_NULL_POINTER;
    *firstId = part->firstId;
    *count = part->count;
    return LSW_OK;
}

uint32_t cutRange(AclRulePartInfo *part, uint32_t idNum, uint32_t firstId, uint32_t count)
{
    if (firstId > idNum || count > idNum - firstId)
        return LSW_INVALID_ARGUMENT;
    part->firstId = firstId;
    part->count = static_cast<uint16_t>(count);
    return LSW_OK;
}

// A cleared array of `count` elements, or null.
template <typename T> T *allocArray(uint32_t count)
{
    return static_cast<T *>(zr::allocCleared(static_cast<uint32_t>(count * sizeof(T))));
}

AclRuleRecord *findByLogicId(const AclRuleInfo &info, uint32_t logicRuleId)
{
    for (uint32_t i = 0; i < info.logicRuleNum; ++i)
        if (AclRuleRecord &record = info.ruleRecords[i]; record.valid == 1 && record.logicRuleId == logicRuleId)
            return &record;
    return nullptr;
}

AclRuleRecord *findFree(const AclRuleInfo &info)
{
    for (uint32_t i = 0; i < info.logicRuleNum; ++i)
        if (info.ruleRecords[i].valid == 0)
            return &info.ruleRecords[i];
    return nullptr;
}

// The last id of the run decides, in 32-bit arithmetic: a run of 0 ids at id 0 has none. Neither a first
// id nor a length beyond the tables may slip through where that sum wraps around.
bool runFits(const AclRuleInfo &info, uint32_t firstChipId, uint32_t count)
{
    return firstChipId + count - 1 < info.chipRuleNum && firstChipId <= info.chipRuleNum &&
           count <= ZR_ACL_MAX_RULE_ENTRIES;
}

} // namespace

AclRuleInfo *COM_ACL_GetRuleInfo(uint32_t unit)
{
    return unit < LSWM_UNITS ? &g_AclRuleInfo[unit] : nullptr;
}

AclRulePartInfo *COM_ACL_GetLogicRulePartInfo(uint32_t unit, uint32_t partition)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    return info != nullptr && partition < ZR_ACL_PARTITIONS ? &info->logicParts[partition] : nullptr;
}

AclRulePartInfo *COM_ACL_GetChipRulePartInfo(uint32_t unit, uint32_t partition)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    return info != nullptr && partition < ZR_ACL_PARTITIONS ? &info->chipParts[partition] : nullptr;
}

// ---- initialisation -----------------------------------------------------------------------------

uint32_t COM_ACL_RuleInfoInit(uint32_t unit, uint32_t count)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    // GCOVR_EXCL_BR_START: they are set together, so the first tells of all.
    if (info->ruleRecords != nullptr || info->counterMap != nullptr || info->carMap != nullptr)
        return LSW_IN_USE;
    // GCOVR_EXCL_BR_STOP
    if (count > ZR_ACL_MAX_RULES)
        return LSW_INVALID_ARGUMENT;

    auto *records = allocArray<AclRuleRecord>(count);
    if (records == nullptr)
        return LSW_NULL_POINTER;
    auto *counterMap = allocArray<AclRuleCounterMapEntry>(count);
    if (counterMap == nullptr) {
        LSWM_MemFree(records);
        return LSW_NULL_POINTER;
    }
    for (uint32_t chipRuleId = 0; chipRuleId < count; ++chipRuleId)
        counterMap[chipRuleId].counterId = ZR_ACL_NO_COUNTER;
    auto *carMap = allocArray<AclRuleCarMapEntry>(count);
    if (carMap == nullptr) {
        LSWM_MemFree(counterMap);
        LSWM_MemFree(records);
        return LSW_NULL_POINTER;
    }

    info->ruleRecords = records;
    info->counterMap = counterMap;
    info->carMap = carMap;
    info->logicRuleNum = count;
    info->chipRuleNum = count;
    for (uint32_t partition = 0; partition < ZR_ACL_PARTITIONS; ++partition) {
        COM_ACL_ChipRulePartInit(unit, partition, 0, count);
        COM_ACL_LogicRulePartInit(unit, partition, 0, count);
    }
    return LSW_OK;
}

// ---- partitions ---------------------------------------------------------------------------------

uint32_t COM_ACL_GetLogicRulePartRange(uint32_t unit, uint32_t partition, uint32_t *firstId, uint32_t *count)
{
    return readRange(COM_ACL_GetLogicRulePartInfo(unit, partition), firstId, count);
}

uint32_t COM_ACL_GetChipRulePartRange(uint32_t unit, uint32_t partition, uint32_t *firstId, uint32_t *count)
{
    return readRange(COM_ACL_GetChipRulePartInfo(unit, partition), firstId, count);
}

uint32_t COM_ACL_LogicRulePartInit(uint32_t unit, uint32_t partition, uint32_t firstId, uint32_t count)
{
    AclRulePartInfo *part = COM_ACL_GetLogicRulePartInfo(unit, partition);
    if (part == nullptr)
        return LSW_INVALID_ARGUMENT;
    return cutRange(part, g_AclRuleInfo[unit].logicRuleNum, firstId, count);
}

uint32_t COM_ACL_ChipRulePartInit(uint32_t unit, uint32_t partition, uint32_t firstId, uint32_t count)
{
    AclRulePartInfo *part = COM_ACL_GetChipRulePartInfo(unit, partition);
    if (part == nullptr)
        return LSW_INVALID_ARGUMENT;
    return cutRange(part, g_AclRuleInfo[unit].chipRuleNum, firstId, count);
}

// ---- choosing ids -------------------------------------------------------------------------------

uint32_t COM_ACL_IsLogicRuleInUse(uint32_t unit, uint32_t logicRuleId)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    if (info == nullptr)
        return 1;
    if (logicRuleId >= info->logicRuleNum)
        return info->logicRuleNum != 0;
    return zr::Bitmap(info->logicInUse).test(logicRuleId);
}

uint32_t COM_ACL_AllocLogicRuleId(uint32_t unit, uint32_t partition, uint32_t *logicRuleId)
{
    const AclRulePartInfo *part = COM_ACL_GetLogicRulePartInfo(unit, partition);
    if (part == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (logicRuleId == nullptr)
        return LSW_NULL_POINTER;

    const uint32_t end = part->firstId + part->count;
    const uint32_t id = zr::Bitmap(g_AclRuleInfo[unit].logicInUse).firstClear(part->firstId, end);
    if (id == end)
        return LSW_NO_RESOURCE;
    *logicRuleId = id;
    return LSW_OK;
}

uint32_t COM_ACL_AllocChipRuleId(uint32_t unit, uint32_t partition, uint32_t count, uint32_t *firstChipId)
{
    const AclRulePartInfo *part = COM_ACL_GetChipRulePartInfo(unit, partition);
    if (part == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (firstChipId == nullptr)
        return LSW_NULL_POINTER;

    const zr::Bitmap inUse(g_AclRuleInfo[unit].chipInUse);
    const uint32_t end = part->firstId + part->count;
    uint32_t first = inUse.firstClear(part->firstId, end);
    while (first < end && count <= end - first) {
        const uint32_t taken = inUse.firstSet(first, first + count);
        if (taken == first + count) {
            *firstChipId = first;
            return LSW_OK;
        }
        first = inUse.firstClear(taken, end);
    }
    return LSW_NO_RESOURCE;
}

// ---- rule records -------------------------------------------------------------------------------

uint32_t COM_ACL_SetRuleRecord(uint32_t unit, uint32_t logicRuleId, uint32_t firstChipId, uint32_t count)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (info->logicRuleNum == 0)
        return LSW_NO_RESOURCE;
    if (logicRuleId >= info->logicRuleNum)
        return LSW_INVALID_ARGUMENT;
    zr::Bitmap logicInUse(info->logicInUse);
    if (logicInUse.test(logicRuleId))
        return LSW_IN_USE;
    if (!runFits(*info, firstChipId, count))
        return LSW_NO_RESOURCE;
    AclRuleRecord *record = findFree(*info);
    if (record == nullptr)
        return LSW_NO_RESOURCE;

    *record = {logicRuleId, firstChipId, static_cast<uint8_t>(count), 1};
    ++info->ruleRecordNum;
    logicInUse.set(logicRuleId);
    zr::Bitmap chipInUse(info->chipInUse);
    for (uint32_t i = 0; i < count; ++i)
        chipInUse.set(firstChipId + i);
    return LSW_OK;
}

uint32_t COM_ACL_ReleseRuleRecord(uint32_t unit, uint32_t logicRuleId)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (AclRuleRecord *record = findByLogicId(*info, logicRuleId); record != nullptr) {
        record->valid = 0;
        --info->ruleRecordNum;
        zr::Bitmap chipInUse(info->chipInUse);
        for (uint32_t i = 0; i < record->count; ++i)
            chipInUse.clear(record->firstChipId + i);
    }
    zr::Bitmap(info->logicInUse).clear(logicRuleId);
    return LSW_OK;
}

uint32_t COM_ACL_LogicRuleToChipRule(uint32_t unit, uint32_t logicRuleId, uint32_t *firstChipId)
{
    const AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (firstChipId == nullptr)
        return LSW_NULL_POINTER;
    const AclRuleRecord *record = findByLogicId(*info, logicRuleId);
    if (record == nullptr)
        return LSW_CHIP_FAILED;
    *firstChipId = record->firstChipId;
    return LSW_OK;
}

uint32_t COM_ACL_GetRuleInfoFromChipId(uint32_t unit, uint32_t chipRuleId, AclRuleInfoView *rule)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (rule == nullptr)
        return LSW_NULL_POINTER;
    if (!zr::Bitmap(info->chipInUse).test(chipRuleId))
        return LSW_NOT_FOUND;
    for (uint32_t i = 0; i < info->logicRuleNum; ++i) {
        const AclRuleRecord &record = info->ruleRecords[i];
        if (record.valid == 1 && record.firstChipId <= chipRuleId &&
            chipRuleId < record.firstChipId + record.count) {
            *rule = {record.logicRuleId, record.firstChipId, record.count};
            return LSW_OK;
        }
    }
    return LSW_CHIP_FAILED;
}

uint32_t COM_ACL_GetRuleCountFromChipRule(uint32_t unit, uint32_t chipRuleId, uint32_t *count)
{
    if (COM_ACL_GetRuleInfo(unit) == nullptr)
        return LSW_CHIP_FAILED;
    if (count == nullptr)
        return LSW_NULL_POINTER;
    AclRuleInfoView rule;
    if (COM_ACL_GetRuleInfoFromChipId(unit, chipRuleId, &rule) != LSW_OK)
        return LSW_CHIP_FAILED;
    *count = rule.count;
    return LSW_OK;
}
