#include "records/stat_records.h"

#include "base/id_map.h"
#include "base/print.h"
#include "platform/manager.h"

namespace
{

QosStatInfo g_QosStatInfo[LSWM_UNITS];

using StatMap = zr::IdMap<QosStatEntry>;

// One type of one unit; `part` is null when there is no such record.
struct StatType {
    QosStatPartInfo *part;
    QosStatEntry **entries;

    StatMap map() const { return {*entries, part->entryCount}; }
};

StatType statType(uint32_t unit, uint32_t type)
{
    if (unit >= LSWM_UNITS || type >= ZR_QOS_STAT_TYPES)
        return {};
    return {&g_QosStatInfo[unit].part[type], &g_QosStatInfo[unit].entries[type]};
}

} // namespace

QosStatInfo *COM_QOS_GetStatInfo(uint32_t unit)
{
    return unit < LSWM_UNITS ? &g_QosStatInfo[unit] : nullptr;
}

QosStatPartInfo *COM_QOS_GetStatPartInfo(uint32_t unit, uint32_t type)
{
    return statType(unit, type).part;
}

uint32_t COM_QOS_StatInfoInit(uint32_t unit, uint32_t type, uint32_t count)
{
    const StatType stat = statType(unit, type);
    if (stat.part == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (*stat.entries != nullptr)
        return LSW_IN_USE;
    *stat.part = {};
    if (count == 0)
        return LSW_OK;
    // The count follows the map, so that it never promises entries that are not there.
    if (uint32_t ret = COM_QOS_StatMapInfoInit(unit, type, count); ret != LSW_OK)
        return ret;
    stat.part->entryCount = static_cast<uint16_t>(count);
    return LSW_OK;
}

uint32_t COM_QOS_StatMapInfoInit(uint32_t unit, uint32_t type, uint32_t count)
{
    const StatType stat = statType(unit, type);
    if (stat.part == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (*stat.entries != nullptr)
        return LSW_IN_USE;
    *stat.entries = zr::allocIdMap<QosStatEntry>(count);
    return *stat.entries != nullptr ? LSW_OK : LSW_NULL_POINTER;
}

uint32_t COM_QOS_IsLogicStatIdInUse(uint32_t unit, uint32_t type, uint32_t logicId)
{
    const StatType stat = statType(unit, type);
    if (stat.part == nullptr)
        return 0;
    const StatMap map = stat.map();
    const QosStatEntry *entry = map.findLogic(logicId);
    if (entry == nullptr)
        return 0;
    ZR_TRACE(DETAIL, QOS, "TYPE %u logicid %u  idx %u", type, logicId, map.indexOf(entry));
    return 1;
}

uint32_t COM_QOS_SetStatEntry(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t chipId)
{
    const StatType stat = statType(unit, type);
    if (stat.part == nullptr)
        return LSW_INVALID_ARGUMENT;
    const StatMap map = stat.map();
    const QosStatEntry *entry = map.take(logicId, chipId);
    if (entry == nullptr)
        return LSW_NO_RESOURCE;
    ++stat.part->usedCount;
    ZR_TRACE(DETAIL, QOS, "ADD TYPE %u logicid %u chipid %u idx %u", type, logicId, chipId, map.indexOf(entry));
    return LSW_OK;
}

uint32_t COM_QOS_StatLogicIdToChipId(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t *chipId)
{
    const StatType stat = statType(unit, type);
    if (stat.part == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (chipId == nullptr)
        return LSW_NULL_POINTER;
    if (stat.part->entryCount == 0) {
        *chipId = logicId;
        return LSW_OK;
    }
    const QosStatEntry *entry = stat.map().findLogic(logicId);
    if (entry == nullptr)
        return LSW_CHIP_FAILED;
    *chipId = entry->chipId;
    ZR_TRACE(DETAIL, QOS, "TYPE %u logicid %u chipid %u", type, logicId, entry->chipId);
    return LSW_OK;
}

uint32_t COM_QOS_StatChipIdToLogicId(uint32_t unit, uint32_t type, uint32_t chipId, uint32_t *logicId)
{
    const StatType stat = statType(unit, type);
    if (stat.part == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (logicId == nullptr)
        return LSW_NULL_POINTER;
    if (stat.part->entryCount == 0) {
        *logicId = chipId;
        return LSW_OK;
    }
    const QosStatEntry *entry = stat.map().findChip(chipId);
    if (entry == nullptr)
        return LSW_CHIP_FAILED;
    *logicId = entry->logicId;
    return LSW_OK;
}

uint32_t COM_QOS_ReleseStatRecord(uint32_t unit, uint32_t type, uint32_t logicId)
{
    const StatType stat = statType(unit, type);
    if (stat.part == nullptr)
        return LSW_INVALID_ARGUMENT;
    const StatMap map = stat.map();
    QosStatEntry *entry = map.findLogic(logicId);
    if (entry == nullptr)
        return LSW_OK;
    entry->valid = 0;
    --stat.part->usedCount;
    ZR_TRACE(DETAIL, QOS, "Delete TYPE %u logicid %u i %u", type, logicId, map.indexOf(entry));
    return LSW_OK;
}
