// Failure sweep of the ACL's records, entries and policies.
#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/sweep/sweep.h"

using zrtest::Outputs;

namespace
{

constexpr uint32_t kUnit = 1;

// Records and partitions without a rule.
void records()
{
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), 0U);
    EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 32), 0U);
    EXPECT_EQ(ZR_OP(ZR_ACL_InitPartInfo)(kUnit), 0U);
}

// A rule of two entries with a counter and a meter.
LswmAclRule countedRule(uint32_t partition)
{
    LswmAclRule rule = zrtest::twoEntryRule(partition);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    return rule;
}

// One at chip ids 0 and 1, logic id 0.
void recordedRule()
{
    records();
    LswmAclRule rule = countedRule(0);
    uint32_t logicRuleId = 0;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
}

void policies()
{
    EXPECT_EQ(zrtest::device().ops().acl.init(kUnit), 0U);
}

uint32_t status(uint32_t answered)
{
    return answered;
}
uint32_t status(const void *record)
{
    return record != nullptr ? 0 : 1;
}

// An exported operation of the unit with its further arguments, outputs and a rule of two entries among them.
#define RUN(name, ...)                                                                                         \
    .operation = #name, .run = []([[maybe_unused]] Outputs &out) {                                             \
        [[maybe_unused]] LswmAclRule rule = countedRule(1);                                                    \
        return status(ZR_OP(name)(kUnit __VA_OPT__(, ) __VA_ARGS__));                                          \
    }

constexpr uint32_t kPorts[4] = {0x1F, 0, 0, 0};

const bool recordsAdded = zrtest::addSweep({
    {RUN(COM_ACL_GetRuleInfo)},
    {RUN(COM_ACL_GetLogicRulePartInfo, 3)},
    {RUN(COM_ACL_GetChipRulePartInfo, 3)},
    {RUN(COM_ACL_GetCounterInfo)},
    {RUN(COM_ACL_RuleInfoInit, 96)},
    {RUN(COM_ACL_CounterInfoInit, 32)},
    {RUN(COM_ACL_GetLogicRulePartRange, 1, out.make<uint32_t>(), out.make<uint32_t>()), .prepare = records},
    {RUN(COM_ACL_GetChipRulePartRange, 1, out.make<uint32_t>(), out.make<uint32_t>()), .prepare = records},
    {RUN(COM_ACL_LogicRulePartInit, 1, 16, 58), .prepare = records},
    {RUN(COM_ACL_ChipRulePartInit, 1, 16, 58), .prepare = records},
    {RUN(COM_ACL_IsLogicRuleInUse, 5), .prepare = records},
    {RUN(COM_ACL_AllocLogicRuleId, 0, out.make<uint32_t>()), .prepare = records},
    {RUN(COM_ACL_AllocChipRuleId, 1, 3, out.make<uint32_t>()), .prepare = records},
    {RUN(COM_ACL_SetRuleRecord, 9, 20, 2), .prepare = records},
    {RUN(COM_ACL_ReleseRuleRecord, 0), .prepare = recordedRule},
    {RUN(COM_ACL_LogicRuleToChipRule, 0, out.make<uint32_t>()), .prepare = recordedRule},
    {RUN(COM_ACL_GetRuleInfoFromChipId, 1, out.make<AclRuleInfoView>()), .prepare = recordedRule},
    {RUN(COM_ACL_GetRuleCountFromChipRule, 1, out.make<uint32_t>()), .prepare = recordedRule},
    {RUN(COM_ACL_AllocChipCounter, out.make<uint32_t>()), .prepare = records},
    {RUN(COM_ACL_SetCounterInfoEntry, 4, 1), .prepare = records},
    {RUN(COM_ACL_SetRuleCounterMapEntry, 30, 4, 1), .prepare = records},
    {RUN(COM_ACL_SetRuleCounterMapEntryValid, 0, 0), .prepare = recordedRule},
    {RUN(COM_ACL_GetCounterIdFromChipRuleId, 0, out.make<uint32_t>()), .prepare = recordedRule},
    {RUN(COM_ACL_SetRuleCarMapEntry, 30, 8, 1), .prepare = records},
    {RUN(COM_ACL_GetRuleCarMapEntry, 0, out.make<uint32_t>(), out.make<uint32_t>()), .prepare = recordedRule},
    {RUN(COM_ACL_SetRuleCarMapEntryValid, 0, 0), .prepare = recordedRule},
});

const bool entriesAdded = zrtest::addSweep({
    {RUN(ZR_ACL_AddEntry, &rule, out.make<AclEntryPlace>()), .prepare = records},
    {RUN(ZR_ACL_AddLogicEntry, &rule, out.make<uint32_t>()), .prepare = records},
    {RUN(ZR_ACL_SetRuleMapEntry, 9, 20, 2), .prepare = records},
    {RUN(ZR_ACL_AllocEntryId, 1, 3, out.make<uint32_t>()), .prepare = records},
    {RUN(ZR_ACL_AssignCounterId, &rule.action), .prepare = records},
    {RUN(ZR_ACL_SetRuleCounterMapEntry, 30, &rule.action), .prepare = records},
    {RUN(ZR_ACL_SetRuleCarMapEntry, 30, &rule.action), .prepare = records},
    {RUN(HAL_ACL_GetEntryCntZr, &rule.match, &rule.action, out.make<uint32_t>()),
     .writesOnFailure = true}, // the count that the chip announced
    {RUN(HAL_ACL_AddEntryZr, 40, &rule.match, &rule.action, out.make<uint32_t>())},
    {RUN(ZR_ACL_GetEntry, 0, out.make<LswmAclRule>()), .prepare = recordedRule},
    {RUN(HAL_ACL_GetEntryZr, 0, out.make<LswmAclMatch>(), out.make<LswmAclAction>()), .prepare = recordedRule},
    // An entry that the chip does not clear is printed and no failure.
    {RUN(ZR_ACL_DelEntry, 0), .prepare = recordedRule, .tolerated = {"l2sw_filter_igrAcl_cfg_del"}},
    {RUN(HAL_ACL_DelEntryZr, 0), .prepare = recordedRule},
    {RUN(ZR_ACL_ModifyEntryPortmap, 0, kPorts), .prepare = recordedRule},
    {RUN(ZR_ACL_AddEntryPortmap, 0, kPorts), .prepare = recordedRule},
    {RUN(ZR_ACL_RemoveEntryPortmap, 0, kPorts), .prepare = recordedRule},
    {RUN(HAL_ACL_ModifyEntryBitmapZr, 0, kPorts), .prepare = recordedRule},
    {RUN(HAL_ACL_AddEntryBitmapZr, 0, kPorts), .prepare = recordedRule},
    {RUN(HAL_ACL_RemoveEntryBitmapZr, 0, kPorts), .prepare = recordedRule},
});

const bool policiesAdded = zrtest::addSweep({
    // What was initialised before the failure stays, the records' three blocks among it.
    {RUN(ZR_ACL_Init), .keeps = 3, .notAgain = true},
    {RUN(ZR_ACL_InitPartInfo), .prepare = records},
    {RUN(ZR_ACL_InitLanWanDefualtPolicy), .prepare = records},
    {RUN(ZR_ACL_InitLanWanARPPolicy), .prepare = records},
    {RUN(ZR_ACL_InitLanWanNtpPolicy), .prepare = records},
    {RUN(ZR_ACL_InitLanWanDhcpReqPolicy), .prepare = records},
    {RUN(ZR_ACL_InitLanWanDhcpRepPolicy), .prepare = records},
    {RUN(ZR_ACL_InitLanWanCoapPolicy), .prepare = records},
    {RUN(HAL_ACL_InitFieldSelectorZr)},
    {RUN(HAL_ACL_InitCapwapKeepaliveFiled)},
    {RUN(ZR_ACL_UpdateLANWanPolicy, 3, 1), .prepare = policies},
    {RUN(ZR_ACL_UpdateWanDefaultPolicy, 3), .prepare = policies},
    {RUN(ZR_ACL_UpdateLANDefaultPolicy, 3), .prepare = policies},
});

} // namespace
