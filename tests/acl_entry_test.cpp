// ACL entries: what the chip is handed, what is booked for a rule, and what is left when a step fails. The life
// of many rules is in acl_random_test.cpp.
#include <gmock/gmock.h>

#include <cstring>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/kit/device.h"

using ::testing::ElementsAre;
using zrtest::oneEntryRule;
using zrtest::threeEntryRule;
using zrtest::twoEntryRule;

namespace
{

constexpr uint32_t kUnit = 1;
constexpr uint32_t kPolicies = 5; // default policies take ids 0 to 4 of everything

const char *const kGetLength = "l2swFilterIgrAclRuleNumGet";
const char *const kAddRule = "l2sw_filter_igrAcl_cfg_add";
const char *const kDelete = "l2sw_filter_igrAcl_cfg_del";

class AclEntry : public zrtest::RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        ASSERT_EQ(acl().init(kUnit), 0U);
        dev.forget();
    }
    const ZrAclOps &acl() const { return dev.ops().acl; }

    // Adds and records.
    void install(LswmAclRule rule)
    {
        uint32_t logicRuleId = 0;
        ASSERT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
        dev.forget();
    }
    // Adds only.
    uint32_t program(LswmAclRule &rule) { return acl().addEntry(kUnit, &rule, &place); }
    static uint32_t countersTaken() { return ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->usedNum; }
    // Makes the chip's answers to sizing and writing: the entries that it tells, its status.
    void answerLengths(uint32_t needed, uint32_t written, uint32_t status = 0)
    {
        dev.script(kGetLength, [=](const zrsim::Call &call) {
            *call.pointer<uint32_t>(3) = needed;
            return status;
        });
        dev.script(kAddRule, [=](const zrsim::Call &call) {
            *call.pointer<uint32_t>(4) = written;
            return status;
        });
    }

    AclEntryPlace place{}; // where program() put its rule
};

LswmAclRule meteredRule(uint32_t partition)
{
    LswmAclRule rule = threeEntryRule(partition);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    rule.action.carId = 9;
    return rule;
}

TEST_F(AclEntry, ThePlaceTellsWhatTheChipWroteAndOnlySizingHandsACountBackWhenTheChipFails)
{
    LswmAclRule rule = oneEntryRule(0);
    answerLengths(2, 3);
    EXPECT_EQ(program(rule), 0U);
    EXPECT_EQ(place.firstChipId, kPolicies);
    EXPECT_EQ(place.count, 3) << "not what was announced";

    answerLengths(3, 3, 22);
    uint32_t count = 77;
    EXPECT_EQ(ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, &rule.action, &count), LSW_CHIP_FAILED);
    EXPECT_EQ(count, 77U);
    EXPECT_EQ(ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, &rule.action, &count), LSW_CHIP_FAILED);
    EXPECT_EQ(count, 3U);
}

TEST_F(AclEntry, AddingAndRecordingInOneCallStopsWhereItFails)
{
    LswmAclRule rule = meteredRule(4);
    uint32_t logicRuleId = 77;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), LSW_CHIP_FAILED);
    ASSERT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, 2, 0, kPolicies), 0U);
    rule.partition = 2;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), LSW_NO_RESOURCE) << "of logic ids";
    EXPECT_THAT(dev.calls(), ElementsAre());

    // A chip that claims to have written 91 entries from id 16 on reaches beyond the table.
    answerLengths(1, 91);
    rule.partition = 1;
    EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), LSW_NO_RESOURCE);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/7 AddEntry Set Soft Entry"));
    EXPECT_EQ(logicRuleId, 77U);
    EXPECT_EQ(acl().isLogicRuleInUse(kUnit, kPolicies), 0U);
    EXPECT_EQ(countersTaken(), kPolicies + 1) << "nothing is rolled back";
}

TEST_F(AclEntry, ARuleIsReadBackFromItsFirstEntryUnlessTheChipHoldsNone)
{
    LswmAclRule rule = twoEntryRule(1);
    rule.match.dstMac[5] = 0xCC;
    install(rule);
    LswmAclRule read{};
    ASSERT_EQ(acl().getEntry(kUnit, 17, &read), 0U); // 16 holds the address
    EXPECT_EQ(read.match.dstMac[5], 0xCC);
    ASSERT_EQ(acl().setRuleMapEntry(kUnit, 50, 50, 1), 0U);
    const LswmAclRule before = read;
    EXPECT_EQ(acl().getEntry(kUnit, 50, &read), 0U);
    EXPECT_EQ(std::memcmp(&read, &before, sizeof read), 0);
}

TEST_F(AclEntry, DeleteClearsTheRuleOfAnyOfItsEntriesEvenAfterOneFailed)
{
    install(meteredRule(1));
    dev.fail(kDelete, 22, 2);
    EXPECT_EQ(acl().delEntry(kUnit, 17), 0U) << "inside its run";
    EXPECT_THAT(dev.calls(),
                ElementsAre("l2sw_filter_igrAcl_cfg_del(1, 16) = 0", "l2sw_filter_igrAcl_cfg_del(1, 17) = 22",
                            "l2sw_filter_igrAcl_cfg_del(1, 18) = 0"));
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/4 Chip 8 Del Entry unit:1 ifcid 17", "6/4 Chip 8 Del Entry unit:1 ifcid 18"));
    EXPECT_EQ(acl().isLogicRuleInUse(kUnit, kPolicies), 1U) << "the record stays until it is released";

    dev.fail(kDelete, 22);
    EXPECT_EQ(acl().delEntry(kUnit, 16), 0U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/4 Chip 8 Del Entry unit:1 ifcid 16", "6/8 Chip 8 Del Entry unit:1 ifcid 17",
                            "6/12 Chip 8 Del Entry unit:1 ifcid 18"));
    EXPECT_EQ(countersTaken(), kPolicies) << "released once";
}

// Records whose maps end before the partition does: what cannot be booked is told, entries stay.
TEST_F(AclEntry, BookingsThatFailAreReportedAfterTheChipWasChanged)
{
    LswmAclRule rule = meteredRule(1);
    install(rule);
    AclRuleInfo *info = ZR_OP(COM_ACL_GetRuleInfo)(kUnit);
    info->chipRuleNum = 16;
    EXPECT_EQ(program(rule), LSW_INVALID_ARGUMENT);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/1 Chip Set Car failed unit:1 ifcid 19"));
    EXPECT_EQ(place.firstChipId, 19U);
    rule.action.flags &= ~uint32_t{LSWM_ACTION_CAR};
    EXPECT_EQ(program(rule), LSW_INVALID_ARGUMENT) << "the counter's booking fails silently";
    EXPECT_EQ(dev.chip(kUnit).acl.entry(19).parts, 3U);

    EXPECT_EQ(acl().delEntry(kUnit, 16), LSW_INVALID_ARGUMENT);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/1 COM_ACL_SetRuleCarMapEntryValid failed 1 unit 1 ifcid 16"));
    EXPECT_EQ(dev.chip(kUnit).acl.entry(16).parts, 0U);
    EXPECT_EQ(countersTaken(), kPolicies + 1) << "not reached";
    info->chipRuleNum = 96;
}

} // namespace
