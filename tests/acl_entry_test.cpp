// ACL entries: programming, reading back, removing.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/kit/device.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using zrtest::oneEntryRule;
using zrtest::Texts;
using zrtest::threeEntryRule;
using zrtest::twoEntryRule;

namespace
{

constexpr uint32_t kUnit = 1;
constexpr uint32_t kPolicies = 5; // default policies take ids 0 to 4 of everything

// Platform calls of adding.
const char *const kAlloc = "LSWM_MemAlloc";
const char *const kAddField = "l2sw_filter_igrAcl_field_add";
const char *const kGetLength = "l2swFilterIgrAclRuleNumGet";
const char *const kAddRule = "l2sw_filter_igrAcl_cfg_add";

class AclEntry : public zrtest::RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        ASSERT_EQ(acl().init(kUnit), 0U);
        dev.forget();
        std::memset(&place, 0xEE, sizeof place);
    }
    const ZrAclOps &acl() const { return dev.ops().acl; }

    // Adds and records; answers the logic rule id.
    uint32_t install(LswmAclRule rule)
    {
        uint32_t logicRuleId = 0xEEEEEEEE;
        EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
        dev.forget();
        return logicRuleId;
    }
    // Adds only.
    uint32_t program(LswmAclRule &rule) { return acl().addEntry(kUnit, &rule, &place); }
    auto made(std::string_view name) const
    {
        return std::ranges::count_if(dev.recorded(), [&](const auto &call) { return call.name == name; });
    }
    uint32_t countersTaken() { return ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->usedNum; }
    // Status and counter.
    static std::pair<uint32_t, uint32_t> counterOf(uint32_t id)
    {
        uint32_t counter = 0xEE;
        const uint32_t status = ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, id, &counter);
        return {status, counter};
    }
    // Status, meter and whether it counts.
    static std::array<uint32_t, 3> meterOf(uint32_t id)
    {
        std::array<uint32_t, 3> found{};
        found[0] = ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, id, &found[1], &found[2]);
        return found;
    }
    const zrsim::AclEntry &entry(uint32_t id) { return dev.chip(kUnit).acl.entry(id); }
    // Makes the chip's answers to sizing and writing: what a rule needs, what was written.
    void answerLengths(uint32_t needed, uint32_t written)
    {
        dev.script(kGetLength, [needed](const zrsim::Call &call) {
            *call.pointer<uint32_t>(3) = needed;
            return 0;
        });
        dev.script(kAddRule, [written](const zrsim::Call &call) {
            *call.pointer<uint32_t>(4) = written;
            return 0;
        });
    }

    AclEntryPlace place; // where program() put its rule
};

LswmAclRule countedRule(uint32_t partition)
{
    LswmAclRule rule = oneEntryRule(partition);
    rule.action.flags |= LSWM_ACTION_COUNT;
    return rule;
}

TEST_F(AclEntry, AddConvertsTwiceSizesAndWritesTheRuleAtTheLowestRunOfItsPartition)
{
    LswmAclRule rule = twoEntryRule(2);
    rule.match.portBitmap = 0xFFFFFFFF;
    rule.action.flags = LSWM_ACTION_FORWARD_B | LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    rule.action.counterId = 31;
    rule.action.carId = 9;
    FilterAct seen{};
    uint32_t ports = 0;
    uint32_t id = 0;
    dev.script(kAddRule, [&](const zrsim::Call &call) {
        id = call.number(1);
        ports = call.pointer<FilterCfg>(2)->portBitmap;
        seen = *call.pointer<FilterAct>(3);
        *call.pointer<uint32_t>(4) = 2;
        return 0;
    });
    ASSERT_EQ(program(rule), 0U);
    for (const char *name : {kAlloc, "LSWM_MemFree", kAddField})
        EXPECT_EQ(made(name), 8) << "four fields, two conversions: " << name;
    EXPECT_EQ(made(kGetLength) + made(kAddRule), 2);
    EXPECT_EQ(dev.calls().size(), 10U);
    EXPECT_EQ(zrsim::memory().liveBlocks(), 3U) << "the unit's records";
    EXPECT_EQ(id, 74U);
    EXPECT_EQ(place.firstChipId, 74U);
    EXPECT_EQ(place.count, 2);
    EXPECT_EQ(ports, 0x3801FU);
    EXPECT_EQ(seen.carId, 9U);
    EXPECT_EQ(seen.counterId, kPolicies) << "the lowest free counter, whatever the rule named";
    EXPECT_EQ(rule.action.counterId, kPolicies);
    EXPECT_EQ(countersTaken(), kPolicies + 1);
    EXPECT_THAT(meterOf(74), ElementsAre(0U, 9U, 1U));

    // Nothing is recorded yet: the same run is chosen again, and no rule is found there.
    EXPECT_EQ(program(rule), 0U);
    EXPECT_EQ(id, 74U);
    EXPECT_EQ(acl().getEntry(kUnit, 74, &rule), LSW_CHIP_FAILED);
    EXPECT_EQ(acl().delEntry(kUnit, 74), LSW_CHIP_FAILED);
    rule.partition = 4;
    EXPECT_EQ(program(rule), LSW_INVALID_ARGUMENT);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/1 Chip 8 Alloc Entry unit:1 cnt:2"));
    EXPECT_EQ(made(kAddRule), 2);
}

TEST_F(AclEntry, ARuleIsProgrammedWithoutCounterWhenNoneIsFree)
{
    for (uint32_t counter = kPolicies; counter < 32; ++counter)
        install(countedRule(1));
    LswmAclRule rule = countedRule(1);
    EXPECT_EQ(program(rule), 0U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/4 Chip 8 Add Assign unit:1"));
    EXPECT_EQ(rule.action.flags, static_cast<uint32_t>(LSWM_ACTION_FORWARD_A));
    EXPECT_EQ(entry(place.firstChipId).action.counterEnable, 0U);
    EXPECT_EQ(counterOf(place.firstChipId).first, 5U);
    EXPECT_EQ(countersTaken(), 32U);
}

TEST_F(AclEntry, ThePlaceTellsWhatTheChipWroteAndOnlySizingHandsACountBackWhenTheChipFails)
{
    LswmAclRule rule = oneEntryRule(0);
    answerLengths(2, 3);
    EXPECT_EQ(program(rule), 0U);
    EXPECT_EQ(place.firstChipId, kPolicies);
    EXPECT_EQ(place.count, 3) << "not what was announced";

    auto claimThreeAndFail = [](size_t output) {
        return [output](const zrsim::Call &call) {
            *call.pointer<uint32_t>(output) = 3;
            return 22;
        };
    };
    dev.script(kGetLength, claimThreeAndFail(3));
    dev.script(kAddRule, claimThreeAndFail(4));
    uint32_t count = 77;
    EXPECT_EQ(ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, &rule.action, &count), 4U);
    EXPECT_EQ(count, 77U);
    EXPECT_EQ(ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, &rule.action, &count), 4U);
    EXPECT_EQ(count, 3U);
}

TEST_F(AclEntry, AddingAndRecordingInOneCallStopsWhereItFails)
{
    LswmAclRule rule = oneEntryRule(4);
    uint32_t logicRuleId = 77;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 4U);
    rule.partition = 0;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(3, &rule, &logicRuleId), 1U);
    ASSERT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, 2, 0, kPolicies), 0U);
    rule.partition = 2;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 7U) << "no logic id is free";
    EXPECT_THAT(dev.calls(), IsEmpty());

    // A chip that claims to have written 91 entries from id 16 on reaches beyond the table.
    answerLengths(1, 91);
    rule.partition = 1;
    rule.action.flags |= LSWM_ACTION_COUNT;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 7U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/7 AddEntry Set Soft Entry"));
    EXPECT_EQ(logicRuleId, 77U);
    EXPECT_EQ(acl().isLogicRuleInUse(kUnit, kPolicies), 0U);
    EXPECT_EQ(countersTaken(), kPolicies + 1) << "nothing is rolled back";
}

TEST_F(AclEntry, BookingFollowsTheActionsFlags)
{
    LswmAclAction action{};
    action.counterId = 40;
    action.carId = 7;
    EXPECT_EQ(ZR_OP(ZR_ACL_AssignCounterId)(kUnit, &action), 0U);
    EXPECT_EQ(ZR_OP(ZR_ACL_SetRuleCounterMapEntry)(kUnit, 30, &action), 0U);
    EXPECT_EQ(ZR_OP(ZR_ACL_SetRuleCarMapEntry)(kUnit, 30, &action), 0U);
    EXPECT_EQ(action.counterId, 40U);
    EXPECT_EQ(counterOf(30).first, 5U);
    action.flags = LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    EXPECT_EQ(ZR_OP(ZR_ACL_SetRuleCounterMapEntry)(kUnit, 30, &action), 7U) << "the unit has no counter 40";
    EXPECT_EQ(ZR_OP(ZR_ACL_SetRuleCarMapEntry)(kUnit, 96, &action), 1U);
    EXPECT_EQ(ZR_OP(ZR_ACL_AssignCounterId)(kUnit, &action), 0U);
    EXPECT_EQ(action.counterId, kPolicies);
}

TEST_F(AclEntry, ARecordedRuleIsReadBackFromItsFirstEntry)
{
    LswmAclRule rule = twoEntryRule(1);
    rule.match.dstMac[5] = 0xCC;
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_VALUE_B;
    rule.action.value = 6;
    install(rule);
    for (uint32_t chipRuleId : {16U, 17U}) { // both name the rule
        LswmAclRule read{};
        ASSERT_EQ(acl().getEntry(kUnit, chipRuleId, &read), 0U);
        EXPECT_EQ(read.match.dstMac[5], 0xCC);
        EXPECT_EQ(read.match.portBitmap, 0x3U);
        EXPECT_EQ(read.action.flags, rule.action.flags);
        EXPECT_EQ(read.action.value, 6);
        EXPECT_EQ(read.action.counterId, kPolicies);
        EXPECT_THAT(dev.calls(), ElementsAre(::testing::StartsWith("l2sw_filter_igrAcl_cfg_get(1, 16,")));
        dev.forget();
    }
    ASSERT_EQ(acl().setRuleMapEntry(kUnit, 50, 50, 1), 0U); // recorded, but empty on the chip
    const LswmAclRule before = rule;
    EXPECT_EQ(acl().getEntry(kUnit, 50, &rule), 0U);
    EXPECT_EQ(std::memcmp(&rule, &before, sizeof rule), 0);
}

TEST_F(AclEntry, DeleteClearsTheRuleOfAnyOfItsEntriesEvenAfterOneFailed)
{
    LswmAclRule rule = threeEntryRule(1);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    rule.action.carId = 3;
    const uint32_t logicRuleId = install(rule);
    dev.fail("l2sw_filter_igrAcl_cfg_del", 22, 2);
    EXPECT_EQ(acl().delEntry(kUnit, 17), 0U) << "inside its run";
    EXPECT_THAT(dev.calls(),
                ElementsAre("l2sw_filter_igrAcl_cfg_del(1, 16) = 0", "l2sw_filter_igrAcl_cfg_del(1, 17) = 22",
                            "l2sw_filter_igrAcl_cfg_del(1, 18) = 0"));
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/4 Chip 8 Del Entry unit:1 ifcid 17", "6/4 Chip 8 Del Entry unit:1 ifcid 18"));
    EXPECT_EQ(countersTaken(), kPolicies);
    EXPECT_THAT(meterOf(16), ElementsAre(0U, 3U, 0U));
    EXPECT_EQ(acl().isLogicRuleInUse(kUnit, logicRuleId), 1U) << "the record stays until it is released";

    dev.fail("l2sw_filter_igrAcl_cfg_del", 22);
    EXPECT_EQ(acl().delEntry(kUnit, 16), 0U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/4 Chip 8 Del Entry unit:1 ifcid 16", "6/8 Chip 8 Del Entry unit:1 ifcid 17",
                            "6/12 Chip 8 Del Entry unit:1 ifcid 18"));
    EXPECT_EQ(countersTaken(), kPolicies) << "released once";
}

// Records whose maps end before the partition does: what cannot be booked is told, entries stay.
TEST_F(AclEntry, BookingsThatFailAreReportedAfterTheChipWasChanged)
{
    LswmAclRule rule = countedRule(1);
    rule.action.flags |= LSWM_ACTION_CAR;
    install(rule);
    AclRuleInfo *info = ZR_OP(COM_ACL_GetRuleInfo)(kUnit);
    info->chipRuleNum = 16;
    EXPECT_EQ(program(rule), 1U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/1 Chip Set Car failed unit:1 ifcid 17"));
    EXPECT_EQ(place.firstChipId, 17U);
    rule.action.flags &= ~uint32_t{LSWM_ACTION_CAR};
    EXPECT_EQ(program(rule), 1U) << "the counter's booking fails silently";
    EXPECT_EQ(entry(17).parts, 1U);

    EXPECT_EQ(acl().delEntry(kUnit, 16), 1U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/1 COM_ACL_SetRuleCarMapEntryValid failed 1 unit 1 ifcid 16"));
    EXPECT_EQ(entry(16).parts, 0U);
    EXPECT_EQ(countersTaken(), kPolicies + 1) << "not reached";
    info->chipRuleNum = 96;
}

} // namespace
