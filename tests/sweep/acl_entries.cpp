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

// A rule of two entries at chip ids 0 and 1, logic id 0, with a counter and a meter.
void recordedRule()
{
    records();
    LswmAclRule rule = zrtest::twoEntryRule(0);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    uint32_t logicRuleId = 0;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
}

void policies()
{
    EXPECT_EQ(zrtest::device().ops().acl.init(kUnit), 0U);
}

LswmAclRule countedRule()
{
    LswmAclRule rule = zrtest::twoEntryRule(1);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    return rule;
}

uint32_t there(const void *record)
{
    return record != nullptr ? 0 : 1;
}

constexpr uint32_t kPorts[4] = {0x1F, 0, 0, 0};

const bool recordsAdded = zrtest::addSweep({
    {"COM_ACL_GetRuleInfo", [](Outputs &) { return there(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)); }},
    {"COM_ACL_GetLogicRulePartInfo",
     [](Outputs &) { return there(ZR_OP(COM_ACL_GetLogicRulePartInfo)(kUnit, 3)); }},
    {"COM_ACL_GetChipRulePartInfo",
     [](Outputs &) { return there(ZR_OP(COM_ACL_GetChipRulePartInfo)(kUnit, 3)); }},
    {"COM_ACL_GetCounterInfo", [](Outputs &) { return there(ZR_OP(COM_ACL_GetCounterInfo)(kUnit)); }},
    {"COM_ACL_RuleInfoInit", [](Outputs &) { return ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96); }},
    {"COM_ACL_CounterInfoInit", [](Outputs &) { return ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 32); }},
    {"COM_ACL_GetLogicRulePartRange",
     [](Outputs &out) {
         return ZR_OP(COM_ACL_GetLogicRulePartRange)(kUnit, 1, out.make<uint32_t>(), out.make<uint32_t>());
     },
     records},
    {"COM_ACL_GetChipRulePartRange",
     [](Outputs &out) {
         return ZR_OP(COM_ACL_GetChipRulePartRange)(kUnit, 1, out.make<uint32_t>(), out.make<uint32_t>());
     },
     records},
    {"COM_ACL_LogicRulePartInit", [](Outputs &) { return ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, 1, 16, 58); },
     records},
    {"COM_ACL_ChipRulePartInit", [](Outputs &) { return ZR_OP(COM_ACL_ChipRulePartInit)(kUnit, 1, 16, 58); },
     records},
    {"COM_ACL_IsLogicRuleInUse", [](Outputs &) { return ZR_OP(COM_ACL_IsLogicRuleInUse)(kUnit, 5); }, records},
    {"COM_ACL_AllocLogicRuleId",
     [](Outputs &out) { return ZR_OP(COM_ACL_AllocLogicRuleId)(kUnit, 0, out.make<uint32_t>()); }, records},
    {"COM_ACL_AllocChipRuleId",
     [](Outputs &out) { return ZR_OP(COM_ACL_AllocChipRuleId)(kUnit, 1, 3, out.make<uint32_t>()); }, records},
    {"COM_ACL_SetRuleRecord", [](Outputs &) { return ZR_OP(COM_ACL_SetRuleRecord)(kUnit, 9, 20, 2); }, records},
    {"COM_ACL_ReleseRuleRecord", [](Outputs &) { return ZR_OP(COM_ACL_ReleseRuleRecord)(kUnit, 0); },
     recordedRule},
    {"COM_ACL_LogicRuleToChipRule",
     [](Outputs &out) { return ZR_OP(COM_ACL_LogicRuleToChipRule)(kUnit, 0, out.make<uint32_t>()); },
     recordedRule},
    {"COM_ACL_GetRuleInfoFromChipId",
     [](Outputs &out) { return ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, 1, out.make<AclRuleInfoView>()); },
     recordedRule},
    {"COM_ACL_GetRuleCountFromChipRule",
     [](Outputs &out) { return ZR_OP(COM_ACL_GetRuleCountFromChipRule)(kUnit, 1, out.make<uint32_t>()); },
     recordedRule},
    {"COM_ACL_AllocChipCounter",
     [](Outputs &out) { return ZR_OP(COM_ACL_AllocChipCounter)(kUnit, out.make<uint32_t>()); }, records},
    {"COM_ACL_SetCounterInfoEntry", [](Outputs &) { return ZR_OP(COM_ACL_SetCounterInfoEntry)(kUnit, 4, 1); },
     records},
    {"COM_ACL_SetRuleCounterMapEntry",
     [](Outputs &) { return ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 30, 4, 1); }, records},
    {"COM_ACL_SetRuleCounterMapEntryValid",
     [](Outputs &) { return ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 0, 0); }, recordedRule},
    {"COM_ACL_GetCounterIdFromChipRuleId",
     [](Outputs &out) { return ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, 0, out.make<uint32_t>()); },
     recordedRule},
    {"COM_ACL_SetRuleCarMapEntry", [](Outputs &) { return ZR_OP(COM_ACL_SetRuleCarMapEntry)(kUnit, 30, 8, 1); },
     records},
    {"COM_ACL_GetRuleCarMapEntry",
     [](Outputs &out) {
         return ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 0, out.make<uint32_t>(), out.make<uint32_t>());
     },
     recordedRule},
    {"COM_ACL_SetRuleCarMapEntryValid",
     [](Outputs &) { return ZR_OP(COM_ACL_SetRuleCarMapEntryValid)(kUnit, 0, 0); }, recordedRule},
});

const bool entriesAdded = zrtest::addSweep({
    {"ZR_ACL_AddEntry",
     [](Outputs &out) {
         LswmAclRule rule = countedRule();
         return ZR_OP(ZR_ACL_AddEntry)(kUnit, &rule, out.make<AclEntryPlace>());
     },
     records},
    {"ZR_ACL_AddLogicEntry",
     [](Outputs &out) {
         LswmAclRule rule = countedRule();
         return ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, out.make<uint32_t>());
     },
     records},
    {"ZR_ACL_SetRuleMapEntry", [](Outputs &) { return ZR_OP(ZR_ACL_SetRuleMapEntry)(kUnit, 9, 20, 2); },
     records},
    {"ZR_ACL_AllocEntryId",
     [](Outputs &out) { return ZR_OP(ZR_ACL_AllocEntryId)(kUnit, 1, 3, out.make<uint32_t>()); }, records},
    {"ZR_ACL_AssignCounterId",
     [](Outputs &) {
         LswmAclRule rule = countedRule();
         return ZR_OP(ZR_ACL_AssignCounterId)(kUnit, &rule.action);
     },
     records},
    {"ZR_ACL_SetRuleCounterMapEntry",
     [](Outputs &) {
         const LswmAclRule rule = countedRule();
         return ZR_OP(ZR_ACL_SetRuleCounterMapEntry)(kUnit, 30, &rule.action);
     },
     records},
    {"ZR_ACL_SetRuleCarMapEntry",
     [](Outputs &) {
         const LswmAclRule rule = countedRule();
         return ZR_OP(ZR_ACL_SetRuleCarMapEntry)(kUnit, 30, &rule.action);
     },
     records},
    {.operation = "HAL_ACL_GetEntryCntZr",
     .run =
         [](Outputs &out) {
             const LswmAclRule rule = countedRule();
             return ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, &rule.action, out.make<uint32_t>());
         },
     .writesOnFailure = true}, // the count that the chip announced
    {"HAL_ACL_AddEntryZr",
     [](Outputs &out) {
         const LswmAclRule rule = countedRule();
         return ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 40, &rule.match, &rule.action, out.make<uint32_t>());
     }},
    {"ZR_ACL_GetEntry", [](Outputs &out) { return ZR_OP(ZR_ACL_GetEntry)(kUnit, 0, out.make<LswmAclRule>()); },
     recordedRule},
    {"HAL_ACL_GetEntryZr",
     [](Outputs &out) {
         return ZR_OP(HAL_ACL_GetEntryZr)(kUnit, 0, out.make<LswmAclMatch>(), out.make<LswmAclAction>());
     },
     recordedRule},
    // An entry that the chip does not clear is printed and no failure.
    {"ZR_ACL_DelEntry",
     [](Outputs &) { return ZR_OP(ZR_ACL_DelEntry)(kUnit, 0); },
     recordedRule,
     {"l2sw_filter_igrAcl_cfg_del"}},
    {"HAL_ACL_DelEntryZr", [](Outputs &) { return ZR_OP(HAL_ACL_DelEntryZr)(kUnit, 0); }, recordedRule},
    {"ZR_ACL_ModifyEntryPortmap", [](Outputs &) { return ZR_OP(ZR_ACL_ModifyEntryPortmap)(kUnit, 0, kPorts); },
     recordedRule},
    {"ZR_ACL_AddEntryPortmap", [](Outputs &) { return ZR_OP(ZR_ACL_AddEntryPortmap)(kUnit, 0, kPorts); },
     recordedRule},
    {"ZR_ACL_RemoveEntryPortmap", [](Outputs &) { return ZR_OP(ZR_ACL_RemoveEntryPortmap)(kUnit, 0, kPorts); },
     recordedRule},
    {"HAL_ACL_ModifyEntryBitmapZr",
     [](Outputs &) { return ZR_OP(HAL_ACL_ModifyEntryBitmapZr)(kUnit, 0, kPorts); }, recordedRule},
    {"HAL_ACL_AddEntryBitmapZr", [](Outputs &) { return ZR_OP(HAL_ACL_AddEntryBitmapZr)(kUnit, 0, kPorts); },
     recordedRule},
    {"HAL_ACL_RemoveEntryBitmapZr",
     [](Outputs &) { return ZR_OP(HAL_ACL_RemoveEntryBitmapZr)(kUnit, 0, kPorts); }, recordedRule},
});

const bool policiesAdded = zrtest::addSweep({
    // What was initialised before the failure stays, the records' three blocks among it.
    {.operation = "ZR_ACL_Init",
     .run = [](Outputs &) { return ZR_OP(ZR_ACL_Init)(kUnit); },
     .keeps = 3,
     .notAgain = true},
    {"ZR_ACL_InitPartInfo", [](Outputs &) { return ZR_OP(ZR_ACL_InitPartInfo)(kUnit); }, records},
    {"ZR_ACL_InitLanWanDefualtPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_InitLanWanDefualtPolicy)(kUnit); },
     records},
    {"ZR_ACL_InitLanWanARPPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_InitLanWanARPPolicy)(kUnit); }, records},
    {"ZR_ACL_InitLanWanNtpPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_InitLanWanNtpPolicy)(kUnit); }, records},
    {"ZR_ACL_InitLanWanDhcpReqPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_InitLanWanDhcpReqPolicy)(kUnit); },
     records},
    {"ZR_ACL_InitLanWanDhcpRepPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_InitLanWanDhcpRepPolicy)(kUnit); },
     records},
    {"ZR_ACL_InitLanWanCoapPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_InitLanWanCoapPolicy)(kUnit); },
     records},
    {"HAL_ACL_InitFieldSelectorZr", [](Outputs &) { return ZR_OP(HAL_ACL_InitFieldSelectorZr)(kUnit); }},
    {"HAL_ACL_InitCapwapKeepaliveFiled",
     [](Outputs &) { return ZR_OP(HAL_ACL_InitCapwapKeepaliveFiled)(kUnit); }},
    {"ZR_ACL_UpdateLANWanPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_UpdateLANWanPolicy)(kUnit, 3, 1); },
     policies},
    {"ZR_ACL_UpdateWanDefaultPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_UpdateWanDefaultPolicy)(kUnit, 3); },
     policies},
    {"ZR_ACL_UpdateLANDefaultPolicy", [](Outputs &) { return ZR_OP(ZR_ACL_UpdateLANDefaultPolicy)(kUnit, 3); },
     policies},
});

} // namespace
