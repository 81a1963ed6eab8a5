// Counters, and the maps of rule to counter and meter.
#include "records/acl_records.h"

#include "base/bitmap.h"
#include "platform/manager.h"

namespace
{

AclCounterInfo g_AclCounterInfo[LSWM_UNITS];

// The unit's record when it has maps that reach to `chipRuleId`, else null.
AclRuleInfo *infoWithMaps(uint32_t unit, uint32_t chipRuleId)
{
    AclRuleInfo *info = COM_ACL_GetRuleInfo(unit);
    return info != nullptr && chipRuleId < info->chipRuleNum ? info : nullptr;
}

} // namespace

AclCounterInfo *COM_ACL_GetCounterInfo(uint32_t unit)
{
    return unit < LSWM_UNITS ? &g_AclCounterInfo[unit] : nullptr;
}

uint32_t COM_ACL_CounterInfoInit(uint32_t unit, uint32_t count)
{
    AclCounterInfo *info = COM_ACL_GetCounterInfo(unit);
    if (info == nullptr || count > ZR_ACL_MAX_COUNTERS)
        return LSW_INVALID_ARGUMENT;
    info->counterNum = count;
    info->usedNum = 0;
    return LSW_OK;
}

uint32_t COM_ACL_AllocChipCounter(uint32_t unit, uint32_t *counterId)
{
    AclCounterInfo *info = COM_ACL_GetCounterInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (counterId == nullptr)
        return LSW_NULL_POINTER;
    if (info->usedNum >= info->counterNum)
        return LSW_NO_RESOURCE;

    const uint32_t end = info->counterNum < ZR_ACL_NO_COUNTER ? info->counterNum : uint32_t{ZR_ACL_NO_COUNTER};
    const uint32_t id = zr::Bitmap(info->inUse).firstClear(end);
    if (id == end)
        return LSW_NO_RESOURCE;
    *counterId = id;
    return LSW_OK;
}

uint32_t COM_ACL_SetCounterInfoEntry(uint32_t unit, uint32_t counterId, uint32_t flag)
{
    AclCounterInfo *info = COM_ACL_GetCounterInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (counterId >= info->counterNum)
        return LSW_NO_RESOURCE;

    zr::Bitmap inUse(info->inUse);
    if (flag == 1) {
        inUse.set(counterId);
        ++info->usedNum;
    } else {
        inUse.clear(counterId);
        if (info->usedNum != 0)
            --info->usedNum;
    }
    return LSW_OK;
}

// ---- maps by chip rule id -----------------------------------------------------------------------

uint32_t COM_ACL_SetRuleCounterMapEntry(uint32_t unit, uint32_t chipRuleId, uint32_t counterId, uint32_t valid)
{
    AclRuleInfo *info = infoWithMaps(unit, chipRuleId);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    info->counterMap[chipRuleId] = {static_cast<uint8_t>(counterId), static_cast<uint8_t>(valid)};
    return COM_ACL_SetCounterInfoEntry(unit, counterId, valid);
}

uint32_t COM_ACL_SetRuleCounterMapEntryValid(uint32_t unit, uint32_t chipRuleId, uint32_t valid)
{
    AclRuleInfo *info = infoWithMaps(unit, chipRuleId);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    AclRuleCounterMapEntry &entry = info->counterMap[chipRuleId];
    const AclRuleCounterMapEntry bound = entry;
    if (bound.counterId == ZR_ACL_NO_COUNTER)
        return LSW_OK;
    if (valid == 1) {
        entry.valid = 1;
        return COM_ACL_SetCounterInfoEntry(unit, bound.counterId, 1);
    }
    // A later rule without counter at the same chip rule id must not release this one again, and a counter
    // that does not count here may be another rule's by now.
    entry = {ZR_ACL_NO_COUNTER, 0};
    if (bound.valid != 1)
        return LSW_OK;
    return COM_ACL_SetCounterInfoEntry(unit, bound.counterId, valid);
}

uint32_t COM_ACL_GetCounterIdFromChipRuleId(uint32_t unit, uint32_t chipRuleId, uint32_t *counterId)
{
    const AclRuleInfo *info = infoWithMaps(unit, chipRuleId);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (counterId == nullptr)
        return LSW_NULL_POINTER;
    const AclRuleCounterMapEntry &entry = info->counterMap[chipRuleId];
    if (entry.valid != 1)
        return LSW_NOT_FOUND;
    *counterId = entry.counterId;
    return LSW_OK;
}

uint32_t COM_ACL_SetRuleCarMapEntry(uint32_t unit, uint32_t chipRuleId, uint8_t carId, uint8_t valid)
{
    AclRuleInfo *info = infoWithMaps(unit, chipRuleId);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    info->carMap[chipRuleId] = {carId, valid};
    return LSW_OK;
}

uint32_t COM_ACL_GetRuleCarMapEntry(uint32_t unit, uint32_t chipRuleId, uint32_t *carId, uint32_t *valid)
{
    const AclRuleInfo *info = infoWithMaps(unit, chipRuleId);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (carId == nullptr || valid == nullptr)
        return LSW_NULL_POINTER;
    *carId = info->carMap[chipRuleId].carId;
    *valid = info->carMap[chipRuleId].valid;
    return LSW_OK;
}

uint32_t COM_ACL_SetRuleCarMapEntryValid(uint32_t unit, uint32_t chipRuleId, uint32_t valid)
{
    uint32_t carId = 0;
    uint32_t ignored = 0;
    if (uint32_t ret = COM_ACL_GetRuleCarMapEntry(unit, chipRuleId, &carId, &ignored); ret != LSW_OK)
        return ret;
    return COM_ACL_SetRuleCarMapEntry(unit, chipRuleId, static_cast<uint8_t>(carId),
                                      static_cast<uint8_t>(valid));
}
