// The ACL: conversion in both directions, entries, policies.
#include "acl/acl.h"

#include "base/field_chain.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

constexpr uint32_t kUnit = 1;

// An empty configuration; the fields that it was given are freed.
struct Chain {
    const char *label = "cfg";
    FilterCfg *make(Run &run) const
    {
        auto cfg = std::make_shared<FilterCfg>();
        run.finally([cfg] { const zr::FieldChain chain(*cfg); });
        return cfg.get();
    }
};
constexpr Chain cfg;

// A match of every field.
const LswmAclMatch kMatch = [] {
    LswmAclMatch match{};
    match.flags = 0x6060E02F;
    match.ipProtocol = 6;
    return match;
}();
const LswmAclAction kAllActions = [] {
    LswmAclAction action{};
    action.flags = 0xFFFFFFFF;
    return action;
}();
constexpr uint8_t kMac[6] = {1, 2, 3, 4, 5, 6};
constexpr uint8_t kCapwap[4] = {0x00, 0x10, 0x02, 0x00};

// A rule of two entries with a counter and a meter.
LswmAclRule countedRule(uint32_t partition)
{
    LswmAclRule rule = twoEntryRule(partition);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    return rule;
}
const LswmAclRule kRule = countedRule(1);
constexpr uint32_t kPorts[4] = {0x1F, 0, 0, 0};

// Records and partitions without a rule.
void records()
{
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), 0U);
    EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 32), 0U);
    EXPECT_EQ(ZR_OP(ZR_ACL_InitPartInfo)(kUnit), 0U);
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
    EXPECT_EQ(device().ops().acl.init(kUnit), 0U);
}

Number partition(uint32_t number)
{
    return id("partition", number, ZR_ACL_PARTITIONS);
}
Number logicRule(uint32_t number)
{
    return id("rule", number, 96);
}
Number chipRule(uint32_t number)
{
    return id("entry", number, 96);
}
Number counter(uint32_t number)
{
    return id("counter", number, 32);
}
Number count(uint32_t number)
{
    return id("count", number, 257);
}

const bool recordsAdded = addSweeps("acl_records", {
                                                       SWEEP(COM_ACL_GetRuleInfo, unit),
                                                       SWEEP(COM_ACL_GetLogicRulePartInfo, unit, partition(3)),
                                                       SWEEP(COM_ACL_GetChipRulePartInfo, unit, partition(3)),
                                                       SWEEP(COM_ACL_GetCounterInfo, unit),
                                                       SWEEP(COM_ACL_RuleInfoInit, unit, count(96)),
                                                       SWEEP(COM_ACL_CounterInfoInit, unit, count(32)),
                                                   });

const bool recordsAdded2 =
    addSweeps("acl_records", records,
              {
                  SWEEP(COM_ACL_GetLogicRulePartRange, unit, partition(1), out, out),
                  SWEEP(COM_ACL_GetChipRulePartRange, unit, partition(1), out, out),
                  SWEEP(COM_ACL_LogicRulePartInit, unit, partition(1), logicRule(16), count(58)),
                  SWEEP(COM_ACL_ChipRulePartInit, unit, partition(1), chipRule(16), count(58)),
                  SWEEP(COM_ACL_AllocLogicRuleId, unit, partition(0), out),
                  SWEEP(COM_ACL_AllocChipRuleId, unit, partition(1), count(3), out),
                  SWEEP(COM_ACL_SetRuleRecord, unit, logicRule(9), chipRule(20), count(2)),
                  SWEEP(COM_ACL_AllocChipCounter, unit, out),
                  SWEEP(COM_ACL_SetCounterInfoEntry, unit, counter(4), 1),
                  SWEEP(COM_ACL_SetRuleCounterMapEntry, unit, chipRule(30), counter(4), 1),
                  SWEEP(COM_ACL_SetRuleCarMapEntry, unit, chipRule(30), 8, 1),
              });

const bool recordsAdded3 = addSweeps("acl_records", recordedRule,
                                     {
                                         SWEEP(COM_ACL_IsLogicRuleInUse, unit, logicRule(0)),
                                         SWEEP(COM_ACL_ReleseRuleRecord, unit, logicRule(0)),
                                         SWEEP(COM_ACL_LogicRuleToChipRule, unit, logicRule(0), out),
                                         SWEEP(COM_ACL_GetRuleInfoFromChipId, unit, chipRule(1), out),
                                         SWEEP(COM_ACL_GetRuleCountFromChipRule, unit, chipRule(1), out),
                                         SWEEP(COM_ACL_SetRuleCounterMapEntryValid, unit, chipRule(0), 0),
                                         SWEEP(COM_ACL_GetCounterIdFromChipRuleId, unit, chipRule(0), out),
                                         SWEEP(COM_ACL_GetRuleCarMapEntry, unit, chipRule(0), out, out),
                                         SWEEP(COM_ACL_SetRuleCarMapEntryValid, unit, chipRule(0), 0),
                                     });

const bool convertersAdded = addSweeps(
    "acl_convert",
    {
        SWEEP(HAL_ACL_ConvertRuleInfoZr, unit, in(kMatch), cfg),
        SWEEP(HAL_ACL_ConvertL2InfoZr, unit, in(kMatch), cfg),
        SWEEP(HAL_ACL_ConvertIpv4InfoZr, unit, in(kMatch), cfg),
        SWEEP(HAL_ACL_ConvertOuterVlanAndPriZr, unit, in(kMatch), cfg),
        SWEEP(HAL_ACL_EmptyMatchHandle, unit, cfg),
        SWEEP(HAL_ACL_ConvertDMacZr, unit, in(kMac), in(kMac), cfg),
        SWEEP(HAL_ACL_ConvertSMacZr, unit, in(kMac), in(kMac), cfg),
        SWEEP(HAL_ACL_ConvertEthTypeZr, unit, 17, 0xFF, cfg),
        SWEEP(HAL_ACL_ConvertIpProtocolZr, unit, 17, 0xFF, cfg),
        SWEEP(HAL_ACL_ConvertSrcIpZr, unit, 17, 0xFF, cfg),
        SWEEP(HAL_ACL_ConvertDstIpZr, unit, 17, 0xFF, cfg),
        SWEEP(HAL_ACL_ConvertSrcPortZr, unit, 1, 80, 0xFFFF, cfg),
        SWEEP(HAL_ACL_ConvertDstPortZr, unit, 1, 80, 0xFFFF, cfg),
        SWEEP(HAL_ACL_ConvertUdfDataZr, unit, 41, 2, 0xFFFF, cfg),
        SWEEP(HAL_ACL_ConvertCapWapZr, unit, 30, in(kCapwap), 0xFFFF, cfg),
        SWEEP(HAL_ACL_ConvertFwdActionZr, in(kAllActions), out),
        SWEEP(HAL_ACL_FilterCfgToRuleZr, out, in(FilterCfgRaw{})),
        SWEEP(HAL_ACL_FieldToRuleCfgZr, of("field", 7, {200, 0xFFFFFFFF}), 0x0806, 0xFFFF, in(kMatch)),
        SWEEP(HAL_ACL_MacFieldToRuleMacZr, of("part", 2, {3, 0xFFFF}), 0xA1B2, 0xFFFF, Out{12}),
        SWEEP(HAL_ACL_FilterActToLswmActionZr, out, in(FilterAct{})),
        SWEEP(HAL_ACL_FieldType2Name, of("field", 137, {200, 0xFFFFFFFF}), Out{20}, 20),
    });

const bool entriesAdded =
    addSweeps("acl", records,
              {
                  SWEEP(ZR_ACL_AddEntry, unit, in(kRule), out),
                  SWEEP(ZR_ACL_AddLogicEntry, unit, in(kRule), out),
                  SWEEP(ZR_ACL_SetRuleMapEntry, unit, logicRule(9), chipRule(20), count(2)),
                  SWEEP(ZR_ACL_AllocEntryId, unit, partition(1), count(3), out),
                  SWEEP(ZR_ACL_AssignCounterId, unit, in(kRule.action)),
                  SWEEP(ZR_ACL_SetRuleCounterMapEntry, unit, chipRule(30), in(kRule.action)),
                  SWEEP(ZR_ACL_SetRuleCarMapEntry, unit, chipRule(30), in(kRule.action)),
                  SWEEP(ZR_ACL_InitPartInfo, unit),
                  SWEEP(ZR_ACL_InitLanWanDefualtPolicy, unit),
                  SWEEP(ZR_ACL_InitLanWanARPPolicy, unit),
                  SWEEP(ZR_ACL_InitLanWanNtpPolicy, unit),
                  SWEEP(ZR_ACL_InitLanWanDhcpReqPolicy, unit),
                  SWEEP(ZR_ACL_InitLanWanDhcpRepPolicy, unit),
                  SWEEP(ZR_ACL_InitLanWanCoapPolicy, unit),
              });

const bool entriesAdded2 =
    addSweeps("acl", {
                         SWEEP(HAL_ACL_GetEntryCntZr, unit, in(kRule.match), in(kRule.action), out),
                         SWEEP(HAL_ACL_AddEntryZr, unit, chipRule(40), in(kRule.match), in(kRule.action), out),
                         SWEEP(ZR_ACL_Init, unit).once(3),
                         SWEEP(HAL_ACL_InitFieldSelectorZr, unit),
                         SWEEP(HAL_ACL_InitCapwapKeepaliveFiled, unit),
                     });

const bool entriesAdded3 = addSweeps(
    "acl", recordedRule,
    {
        SWEEP(ZR_ACL_GetEntry, unit, chipRule(0), out),
        SWEEP(HAL_ACL_GetEntryZr, unit, chipRule(0), out, out),
        SWEEP_BOTH(ZR_ACL_DelEntry, HAL_ACL_DelEntryZr, unit, chipRule(0)),
        SWEEP(ZR_ACL_ModifyEntryPortmap, unit, chipRule(0), in(kPorts)),
        SWEEP(ZR_ACL_AddEntryPortmap, unit, chipRule(0), in(kPorts)),
        SWEEP_BOTH(ZR_ACL_RemoveEntryPortmap, HAL_ACL_ModifyEntryBitmapZr, unit, chipRule(0), in(kPorts)),
        SWEEP(HAL_ACL_AddEntryBitmapZr, unit, chipRule(0), in(kPorts)),
        SWEEP(HAL_ACL_RemoveEntryBitmapZr, unit, chipRule(0), in(kPorts)),
    });

const bool entriesAdded4 =
    addSweeps("acl", policies,
              {
                  SWEEP(ZR_ACL_UpdateLANWanPolicy, unit, port(3), of("type", 1, {0, 2, 3, 0xFFFFFFFF})),
                  SWEEP(ZR_ACL_UpdateWanDefaultPolicy, unit, port(3)),
                  SWEEP(ZR_ACL_UpdateLANDefaultPolicy, unit, port(3)),
              });

} // namespace
} // namespace zrtest
