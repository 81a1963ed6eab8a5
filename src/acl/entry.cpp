// Rules on the chip: adding, reading back, removing.
#include "acl/acl.h"

#include "base/field_chain.h"
#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "records/acl_records.h"

namespace
{

// A rule in the SDK's terms for the length of one call.
struct ChipRule {
    FilterCfg cfg{};
    FilterAct act{};
    zr::FieldChain fields{cfg};

    uint32_t convert(uint32_t unit, const LswmAclMatch *match, const LswmAclAction *action)
    {
        if (uint32_t ret = HAL_ACL_ConvertRuleInfoZr(unit, match, &cfg); ret != LSW_OK)
            return ret;
        HAL_ACL_ConvertFwdActionZr(action, &act);
        return LSW_OK;
    }
};

} // namespace

// ---- adding -------------------------------------------------------------------------------------

uint32_t ZR_ACL_AddEntry(uint32_t unit, LswmAclRule *rule, AclEntryPlace *place)
{
    if (rule == nullptr || place == nullptr)
        return LSW_NULL_POINTER;

    LswmAclAction *action = &rule->action;
    if (uint32_t ret = ZR_ACL_AssignCounterId(unit, action); ret != LSW_OK) {
        ZR_PRINT_FAILED(ACL, ret, "Chip 8 Add Assign unit:%u", unit);
        action->flags &= ~uint32_t{LSWM_ACTION_COUNT};
    }
    uint32_t count = 0;
    if (uint32_t ret = HAL_ACL_GetEntryCntZr(unit, &rule->match, action, &count); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "Chip 8 Get Entry Cnt unit:%u", unit);
    uint32_t firstChipId = 0;
    if (uint32_t ret = ZR_ACL_AllocEntryId(unit, rule->partition, count, &firstChipId); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "Chip 8 Alloc Entry unit:%u cnt:%u", unit, count);
    if (uint32_t ret = HAL_ACL_AddEntryZr(unit, firstChipId, &rule->match, action, &count); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "Chip 8 Add Entry unit:%u ifcid %u", unit, firstChipId);
    place->firstChipId = firstChipId;
    place->count = static_cast<uint8_t>(count);

    if (uint32_t ret = ZR_ACL_SetRuleCarMapEntry(unit, firstChipId, action); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "Chip Set Car failed unit:%u ifcid %u", unit, firstChipId);
    return ZR_ACL_SetRuleCounterMapEntry(unit, firstChipId, action);
}

uint32_t HAL_ACL_AddEntryZr(uint32_t unit, uint32_t firstChipId, const LswmAclMatch *match,
                            const LswmAclAction *action, uint32_t *count)
{
    if (match == nullptr || action == nullptr || count == nullptr)
        return LSW_NULL_POINTER;
    ChipRule rule;
    if (uint32_t ret = rule.convert(unit, match, action); ret != LSW_OK)
        return ret;
    uint32_t written = 0;
    if (l2sw_filter_igrAcl_cfg_add(unit, firstChipId, &rule.cfg, &rule.act, &written) != 0)
        return LSW_CHIP_FAILED;
    *count = written;
    return LSW_OK;
}

uint32_t ZR_ACL_AddLogicEntry(uint32_t unit, LswmAclRule *rule, uint32_t *logicRuleId)
{
    if (rule == nullptr || logicRuleId == nullptr)
        return LSW_NULL_POINTER;
    if (rule->partition >= ZR_ACL_PARTITIONS)
        return LSW_CHIP_FAILED;
    uint32_t freeLogicId = 0;
    if (uint32_t ret = COM_ACL_AllocLogicRuleId(unit, rule->partition, &freeLogicId); ret != LSW_OK)
        return ret;
    AclEntryPlace place;
    if (uint32_t ret = ZR_ACL_AddEntry(unit, rule, &place); ret != LSW_OK)
        return ret;
    if (uint32_t ret = ZR_ACL_SetRuleMapEntry(unit, freeLogicId, place.firstChipId, place.count); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "AddEntry Set Soft Entry");
    *logicRuleId = freeLogicId;
    return LSW_OK;
}

uint32_t ZR_ACL_AssignCounterId(uint32_t unit, LswmAclAction *action)
{
    if (action == nullptr)
        return LSW_NULL_POINTER;
    if ((action->flags & LSWM_ACTION_COUNT) == 0)
        return LSW_OK;
    return COM_ACL_AllocChipCounter(unit, &action->counterId) != LSW_OK ? LSW_CHIP_FAILED : LSW_OK;
}

uint32_t HAL_ACL_GetEntryCntZr(uint32_t unit, const LswmAclMatch *match, const LswmAclAction *action,
                               uint32_t *count)
{
    if (match == nullptr || action == nullptr || count == nullptr)
        return LSW_NULL_POINTER;
    ChipRule rule;
    if (uint32_t ret = rule.convert(unit, match, action); ret != LSW_OK)
        return ret;
    uint32_t needed = 0;
    const uint32_t ret = l2swFilterIgrAclRuleNumGet(unit, &rule.cfg, &rule.act, &needed);
    *count = needed;
    return ret != 0 ? LSW_CHIP_FAILED : LSW_OK;
}

uint32_t ZR_ACL_AllocEntryId(uint32_t unit, uint32_t partition, uint32_t count, uint32_t *firstChipId)
{
    return COM_ACL_AllocChipRuleId(unit, partition, count, firstChipId);
}

uint32_t ZR_ACL_SetRuleCarMapEntry(uint32_t unit, uint32_t firstChipId, const LswmAclAction *action)
{
    if (action == nullptr)
        return LSW_NULL_POINTER;
    if ((action->flags & LSWM_ACTION_CAR) == 0)
        return LSW_OK;
    return COM_ACL_SetRuleCarMapEntry(unit, firstChipId, static_cast<uint8_t>(action->carId), 1);
}

uint32_t ZR_ACL_SetRuleCounterMapEntry(uint32_t unit, uint32_t firstChipId, const LswmAclAction *action)
{
    if (action == nullptr)
        return LSW_NULL_POINTER;
    if ((action->flags & LSWM_ACTION_COUNT) == 0)
        return LSW_OK;
    return COM_ACL_SetRuleCounterMapEntry(unit, firstChipId, action->counterId, 1);
}

uint32_t ZR_ACL_SetRuleMapEntry(uint32_t unit, uint32_t logicRuleId, uint32_t firstChipId, uint32_t count)
{
    return COM_ACL_SetRuleRecord(unit, logicRuleId, firstChipId, count);
}

// ---- reading back, removing ---------------------------------------------------------------------

uint32_t ZR_ACL_GetEntry(uint32_t unit, uint32_t firstChipId, LswmAclRule *rule)
{
    if (rule == nullptr)
        return LSW_NULL_POINTER;
    AclRuleInfoView run;
    if (COM_ACL_GetRuleInfoFromChipId(unit, firstChipId, &run) != LSW_OK)
        return LSW_CHIP_FAILED;
    if (uint32_t ret = HAL_ACL_GetEntryZr(unit, run.firstChipId, &rule->match, &rule->action); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "Chip 8 Get Entry unit:%u ifcid %u", unit, run.firstChipId);
    return LSW_OK;
}

uint32_t HAL_ACL_GetEntryZr(uint32_t unit, uint32_t chipRuleId, LswmAclMatch *match, LswmAclAction *action)
{
    if (match == nullptr || action == nullptr)
        return LSW_NULL_POINTER;
    FilterCfgRaw raw{};
    FilterAct act{};
    if (l2sw_filter_igrAcl_cfg_get(unit, chipRuleId, &raw, &act) != 0)
        return LSW_CHIP_FAILED;
    if (raw.valid != 0) {
        HAL_ACL_FilterCfgToRuleZr(match, &raw);
        HAL_ACL_FilterActToLswmActionZr(action, &act);
    }
    return LSW_OK;
}

uint32_t ZR_ACL_DelEntry(uint32_t unit, uint32_t firstChipId)
{
    AclRuleInfoView run;
    if (COM_ACL_GetRuleInfoFromChipId(unit, firstChipId, &run) != LSW_OK)
        return LSW_CHIP_FAILED;

    uint32_t total = 0;
    for (uint32_t chipRuleId = run.firstChipId; chipRuleId < run.firstChipId + run.count; ++chipRuleId) {
        total += HAL_ACL_DelEntryZr(unit, chipRuleId);
        if (total != 0)
            ZR_PRINT_FAILED(ACL, total, "Chip 8 Del Entry unit:%u ifcid %u", unit, chipRuleId);
    }
    // Both maps are keyed by the first chip rule id, whichever id of the run was given.
    if (uint32_t ret = COM_ACL_SetRuleCarMapEntryValid(unit, run.firstChipId, 0); ret != LSW_OK)
        return ZR_FAILED(ACL, ret, "COM_ACL_SetRuleCarMapEntryValid failed 1 unit %u ifcid %u", unit,
                         run.firstChipId);
    return COM_ACL_SetRuleCounterMapEntryValid(unit, run.firstChipId, 0);
}

uint32_t HAL_ACL_DelEntryZr(uint32_t unit, uint32_t chipRuleId)
{
    return l2sw_filter_igrAcl_cfg_del(unit, chipRuleId) != 0 ? LSW_CHIP_FAILED : LSW_OK;
}
