// ACL entries: programming, reading back, ports, removing.
#include <fmt/format.h>
#include <gmock/gmock.h>

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

    // Adds and records; answers the logic rule id.
    uint32_t install(LswmAclRule rule)
    {
        uint32_t logicRuleId = 0xEEEEEEEE;
        EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
        dev.forget();
        return logicRuleId;
    }
    uint32_t program(LswmAclRule &rule, AclEntryPlace &place) { return acl().addEntry(kUnit, &rule, &place); }

    unsigned made(std::string_view name) const
    {
        unsigned count = 0;
        for (const zrsim::Call &call : dev.recorded())
            count += call.name == name ? 1 : 0;
        return count;
    }
    uint32_t countersTaken() { return ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->usedNum; }
    // Makes the chip's answers to sizing and writing: what a rule needs, what was written.
    void answerLengths(uint32_t needed, uint32_t written)
    {
        dev.script("l2swFilterIgrAclRuleNumGet", [needed](const zrsim::Call &call) {
            *call.pointer<uint32_t>(3) = needed;
            return 0;
        });
        dev.script("l2sw_filter_igrAcl_cfg_add", [written](const zrsim::Call &call) {
            *call.pointer<uint32_t>(4) = written;
            return 0;
        });
    }
};

// ---- adding -------------------------------------------------------------------------------------

TEST_F(AclEntry, AddConvertsTwiceSizesAndWritesAndDoesNothingElse)
{
    LswmAclRule rule = twoEntryRule(1);
    AclEntryPlace place{};
    ASSERT_EQ(program(rule, place), 0U);
    EXPECT_EQ(place.firstChipId, 16U);
    EXPECT_EQ(place.count, 2);
    EXPECT_EQ(made("LSWM_MemAlloc"), 8U) << "four fields, two conversions";
    EXPECT_EQ(made("LSWM_MemFree"), 8U);
    EXPECT_EQ(made("l2sw_filter_igrAcl_field_add"), 8U);
    EXPECT_EQ(made("l2swFilterIgrAclRuleNumGet"), 1U);
    EXPECT_EQ(made("l2sw_filter_igrAcl_cfg_add"), 1U);
    EXPECT_EQ(dev.calls().size(), 10U);
    EXPECT_EQ(zrsim::memory().liveBlocks(), 3U) << "the unit's records";

    // Nothing is recorded yet: the same run is chosen again.
    EXPECT_EQ(program(rule, place), 0U);
    EXPECT_EQ(place.firstChipId, 16U);
    EXPECT_EQ(acl().getEntry(kUnit, 16, &rule), 4U);
    EXPECT_EQ(acl().delEntry(kUnit, 16), 4U);
}

TEST_F(AclEntry, TheSdkSeesTheConvertedRuleAtTheChosenPlace)
{
    LswmAclRule rule = oneEntryRule(2);
    rule.match.portBitmap = 0xFFFFFFFF;
    rule.action.flags = LSWM_ACTION_FORWARD_B | LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    rule.action.counterId = 31;
    rule.action.carId = 9;
    FilterAct seen{};
    uint32_t ports = 0;
    uint32_t id = 0;
    unsigned fields = 0;
    dev.script("l2sw_filter_igrAcl_cfg_add", [&](const zrsim::Call &call) {
        id = call.number(1);
        ports = call.pointer<FilterCfg>(2)->portBitmap;
        for (const FilterField *field = call.pointer<FilterCfg>(2)->head; field != nullptr; field = field->next)
            fields += field->type == SDK_FIELD_ETHER_TYPE ? 1 : 100;
        seen = *call.pointer<FilterAct>(3);
        *call.pointer<uint32_t>(4) = 1;
        return 0;
    });
    AclEntryPlace place{};
    ASSERT_EQ(program(rule, place), 0U);
    EXPECT_EQ(id, 74U);
    EXPECT_EQ(ports, 0x3801FU);
    EXPECT_EQ(fields, 1U);
    EXPECT_EQ(seen.counterId, kPolicies) << "the lowest free counter, whatever the rule named";
    EXPECT_EQ(rule.action.counterId, kPolicies);
    EXPECT_EQ(seen.carId, 9U);
    EXPECT_EQ(countersTaken(), kPolicies + 1);
    uint32_t meter = 0;
    uint32_t valid = 0;
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 74, &meter, &valid), 0U);
    EXPECT_EQ(meter, 9U);
    EXPECT_EQ(valid, 1U);
}

TEST_F(AclEntry, ThePlaceTellsWhatTheChipWroteNotWhatItAnnounced)
{
    answerLengths(2, 3);
    LswmAclRule rule = oneEntryRule(0);
    AclEntryPlace place{};
    EXPECT_EQ(program(rule, place), 0U);
    EXPECT_EQ(place.firstChipId, kPolicies);
    EXPECT_EQ(place.count, 3);
}

TEST_F(AclEntry, ARuleIsProgrammedWithoutCounterWhenNoneIsFree)
{
    for (uint32_t counter = kPolicies; counter < 32; ++counter) {
        LswmAclRule rule = oneEntryRule(1);
        rule.action.flags |= LSWM_ACTION_COUNT;
        install(rule);
    }
    LswmAclRule rule = oneEntryRule(1);
    rule.action.flags |= LSWM_ACTION_COUNT;
    AclEntryPlace place{};
    EXPECT_EQ(program(rule, place), 0U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/4 Chip 8 Add Assign unit:1"));
    EXPECT_EQ(rule.action.flags, static_cast<uint32_t>(LSWM_ACTION_FORWARD_A));
    EXPECT_EQ(dev.chip(kUnit).acl.entry(place.firstChipId).action.counterEnable, 0U);
    uint32_t counter = 0;
    EXPECT_EQ(ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, place.firstChipId, &counter), 5U);
    EXPECT_EQ(countersTaken(), 32U);
}

TEST_F(AclEntry, EveryFailureOfAddingIsPrintedAndLeavesNothingBooked)
{
    const struct {
        const char *call;
        unsigned nth;
        uint32_t answer;
        uint32_t status;
        Texts lines;
    } cases[] = {
        {"l2sw_filter_igrAcl_field_add",
         1,
         22,
         4,
         {"6/22 ConvertEthType acl field add type", "6/4 Chip 8 Get Entry Cnt unit:1"}},
        {"LSWM_MemAlloc", 1, 1, 3, {"6/3 Chip 8 Get Entry Cnt unit:1"}},
        {"l2swFilterIgrAclRuleNumGet", 1, 22, 4, {"6/4 Chip 8 Get Entry Cnt unit:1"}},
        {"l2sw_filter_igrAcl_field_add",
         2,
         0xFFFFFFFF,
         4,
         {"6/4294967295 ConvertEthType acl field add type", "6/4 Chip 8 Add Entry unit:1 ifcid 16"}},
        {"LSWM_MemAlloc", 2, 1, 3, {"6/3 Chip 8 Add Entry unit:1 ifcid 16"}},
        {"l2sw_filter_igrAcl_cfg_add", 1, 22, 4, {"6/4 Chip 8 Add Entry unit:1 ifcid 16"}},
    };
    for (const auto &[call, nth, answer, status, lines] : cases) {
        SCOPED_TRACE(fmt::format("{}@{}", call, nth));
        LswmAclRule rule = oneEntryRule(1);
        rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
        AclEntryPlace place;
        std::memset(&place, 0xEE, sizeof place);
        dev.fail(call, answer, nth);
        EXPECT_EQ(program(rule, place), status);
        dev.failNone();
        EXPECT_EQ(dev.takeFailures(), lines);
        EXPECT_EQ(place.firstChipId, 0xEEEEEEEE);
        EXPECT_EQ(countersTaken(), kPolicies);
        EXPECT_EQ(zrsim::memory().liveBlocks(), 3U);
        EXPECT_EQ(dev.chip(kUnit).acl.entry(16).parts, 0U);
    }
}

TEST_F(AclEntry, SizingHandsItsCountBackEvenWhenTheChipFailsWritingDoesNot)
{
    auto claimThreeAndFail = [](size_t output) {
        return [output](const zrsim::Call &call) {
            *call.pointer<uint32_t>(output) = 3;
            return 22;
        };
    };
    dev.script("l2swFilterIgrAclRuleNumGet", claimThreeAndFail(3));
    dev.script("l2sw_filter_igrAcl_cfg_add", claimThreeAndFail(4));
    const LswmAclRule rule = oneEntryRule(1);
    uint32_t count = 77;
    EXPECT_EQ(ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, &rule.action, &count), 4U);
    EXPECT_EQ(count, 77U);
    EXPECT_EQ(ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, &rule.action, &count), 4U);
    EXPECT_EQ(count, 3U);
}

TEST_F(AclEntry, AFailedConversionReportsTheSumOfItsFields)
{
    LswmAclRule rule = twoEntryRule(1);
    rule.match.flags &= ~uint32_t{LSWM_MATCH_DST_IP};
    AclEntryPlace place{};
    dev.fail("LSWM_MemAlloc", 1);
    EXPECT_EQ(program(rule, place), 9U) << "three fields without memory";
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/9 Chip 8 Get Entry Cnt unit:1"));
    EXPECT_THAT(dev.calls(), IsEmpty());
}

TEST_F(AclEntry, ARuleThatFindsNoRunIsRefused)
{
    // Of partition 2 (74 to 79) only isolated ids stay free.
    for (uint32_t id : {74U, 76U, 78U})
        ASSERT_EQ(acl().setRuleMapEntry(kUnit, id, id, 1), 0U);
    LswmAclRule rule = twoEntryRule(2);
    AclEntryPlace place{};
    EXPECT_EQ(program(rule, place), 7U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/7 Chip 8 Alloc Entry unit:1 cnt:2"));
    rule.partition = 4;
    EXPECT_EQ(program(rule, place), 1U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/1 Chip 8 Alloc Entry unit:1 cnt:2"));
    EXPECT_EQ(made("l2sw_filter_igrAcl_cfg_add"), 0U);
}

TEST_F(AclEntry, AUnitWithoutRecordsIsSizedByTheChipAndFindsNoRun)
{
    LswmAclRule rule = oneEntryRule(1);
    rule.action.flags |= LSWM_ACTION_COUNT;
    AclEntryPlace place{};
    EXPECT_EQ(acl().addEntry(3, &rule, &place), 4U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/4 Chip 8 Add Assign unit:3", "6/65537 ConvertEthType acl field add type",
                            "6/4 Chip 8 Get Entry Cnt unit:3"));
    EXPECT_EQ(rule.action.flags, static_cast<uint32_t>(LSWM_ACTION_FORWARD_A));

    // With a chip that knows the unit.
    answerLengths(2, 2);
    dev.script("l2sw_filter_igrAcl_field_add", [](const zrsim::Call &call) {
        call.pointer<FilterCfg>(1)->head = call.pointer<FilterField>(2);
        return 0;
    });
    EXPECT_EQ(acl().addEntry(3, &rule, &place), 1U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/1 Chip 8 Alloc Entry unit:3 cnt:2"));
    EXPECT_EQ(made("l2sw_filter_igrAcl_cfg_add"), 0U);
    EXPECT_EQ(zrsim::memory().liveBlocks(), 3U);
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
    uint32_t found = 0;
    EXPECT_EQ(ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, 30, &found), 5U);
    action.flags = LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    EXPECT_EQ(ZR_OP(ZR_ACL_SetRuleCounterMapEntry)(kUnit, 30, &action), 7U) << "the unit has no counter 40";
    EXPECT_EQ(ZR_OP(ZR_ACL_SetRuleCarMapEntry)(kUnit, 96, &action), 1U);
    EXPECT_EQ(ZR_OP(ZR_ACL_AssignCounterId)(kUnit, &action), 0U);
    EXPECT_EQ(action.counterId, kPolicies);
}

// ---- reading back -------------------------------------------------------------------------------

TEST_F(AclEntry, ARecordedRuleIsReadBackFromItsFirstEntry)
{
    LswmAclRule rule = twoEntryRule(1);
    const uint8_t mac[6] = {2, 0, 0, 0xAA, 0xBB, 0xCC};
    std::memcpy(rule.match.dstMac, mac, sizeof mac);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_VALUE_B;
    rule.action.value = 6;
    install(rule);
    for (uint32_t chipRuleId : {16U, 17U}) { // both name the rule
        LswmAclRule read{};
        ASSERT_EQ(acl().getEntry(kUnit, chipRuleId, &read), 0U);
        EXPECT_EQ(std::memcmp(read.match.dstMac, mac, sizeof mac), 0);
        EXPECT_EQ(read.match.portBitmap, 0x3U);
        EXPECT_EQ(read.action.flags,
                  static_cast<uint32_t>(LSWM_ACTION_FORWARD_A | LSWM_ACTION_COUNT | LSWM_ACTION_VALUE_B));
        EXPECT_EQ(read.action.value, 6);
        EXPECT_EQ(read.action.counterId, kPolicies);
        EXPECT_THAT(dev.calls(), ElementsAre(::testing::StartsWith("l2sw_filter_igrAcl_cfg_get(1, 16,")));
        dev.forget();
    }
}

TEST_F(AclEntry, ReadingWhatIsNotThereLeavesTheRecordAlone)
{
    LswmAclRule rule;
    std::memset(&rule, 0xEE, sizeof rule);
    const LswmAclRule before = rule;
    for (uint32_t chipRuleId : {16U, 95U, 96U, 0xFFFFFFFFU})
        EXPECT_EQ(acl().getEntry(kUnit, chipRuleId, &rule), 4U);
    EXPECT_EQ(acl().getEntry(3, 0, &rule), 4U);
    EXPECT_THAT(dev.calls(), IsEmpty());

    dev.fail("l2sw_filter_igrAcl_cfg_get", 22);
    EXPECT_EQ(acl().getEntry(kUnit, 0, &rule), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/4 Chip 8 Get Entry unit:1 ifcid 0"));
    dev.failNone();

    ASSERT_EQ(acl().setRuleMapEntry(kUnit, 50, 50, 1), 0U); // recorded, but empty on the chip
    EXPECT_EQ(acl().getEntry(kUnit, 50, &rule), 0U);
    EXPECT_EQ(std::memcmp(&rule, &before, sizeof rule), 0);
}

// ---- removing -----------------------------------------------------------------------------------

TEST_F(AclEntry, DeleteClearsEveryEntryEvenAfterOneFailed)
{
    LswmAclRule rule = threeEntryRule(1);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    rule.action.carId = 3;
    const uint32_t logicRuleId = install(rule);
    dev.fail("l2sw_filter_igrAcl_cfg_del", 22, 2);
    EXPECT_EQ(acl().delEntry(kUnit, 16), 0U);
    EXPECT_THAT(dev.calls(),
                ElementsAre("l2sw_filter_igrAcl_cfg_del(1, 16) = 0", "l2sw_filter_igrAcl_cfg_del(1, 17) = 22",
                            "l2sw_filter_igrAcl_cfg_del(1, 18) = 0"));
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/4 Chip 8 Del Entry unit:1 ifcid 17", "6/4 Chip 8 Del Entry unit:1 ifcid 18"));
    EXPECT_EQ(countersTaken(), kPolicies);
    uint32_t meter = 0;
    uint32_t valid = 1;
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 16, &meter, &valid), 0U);
    EXPECT_EQ(valid, 0U);
    EXPECT_EQ(acl().isLogicRuleInUse(kUnit, logicRuleId), 1U) << "the record stays until it is released";

    dev.fail("l2sw_filter_igrAcl_cfg_del", 22);
    EXPECT_EQ(acl().delEntry(kUnit, 16), 0U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/4 Chip 8 Del Entry unit:1 ifcid 16", "6/8 Chip 8 Del Entry unit:1 ifcid 17",
                            "6/12 Chip 8 Del Entry unit:1 ifcid 18"));
    EXPECT_EQ(countersTaken(), kPolicies) << "released once";
}

TEST_F(AclEntry, ARuleWithoutCounterDoesNotReleaseItsPredecessorsCounter)
{
    LswmAclRule counted = oneEntryRule(1);
    counted.action.flags |= LSWM_ACTION_COUNT;
    const uint32_t first = install(counted);
    ASSERT_EQ(acl().delEntry(kUnit, 16), 0U);
    ASSERT_EQ(acl().releaseRuleRecord(kUnit, first), 0U);
    const uint32_t plain = install(oneEntryRule(1)); // takes id 16
    install(counted);                                // takes id 17 and the counter
    ASSERT_EQ(acl().delEntry(kUnit, 16), 0U);
    ASSERT_EQ(acl().releaseRuleRecord(kUnit, plain), 0U);
    EXPECT_EQ(countersTaken(), kPolicies + 1);
    uint32_t counter = 0;
    EXPECT_EQ(ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, 17, &counter), 0U);
    EXPECT_EQ(counter, kPolicies);
}

TEST_F(AclEntry, AnIdInsideARunStandsForItsRuleAndReachesNoOther)
{
    LswmAclRule rule = threeEntryRule(1);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    install(rule);            // 16 to 18
    install(oneEntryRule(1)); // 19
    const uint32_t ports[4] = {0x10, 0, 0, 0};
    ASSERT_EQ(acl().modifyEntryPortmap(kUnit, 18, ports), 0U);
    auto portsOf = [&](uint32_t id) { return dev.chip(kUnit).acl.entry(id).ports; };
    for (uint32_t id : {16U, 17U, 18U})
        EXPECT_EQ(portsOf(id), 0x10U);
    EXPECT_EQ(portsOf(19), 0x3U);

    ASSERT_EQ(acl().delEntry(kUnit, 17), 0U);
    for (uint32_t id : {16U, 17U, 18U})
        EXPECT_EQ(dev.chip(kUnit).acl.entry(id).parts, 0U);
    EXPECT_EQ(dev.chip(kUnit).acl.entry(19).parts, 1U);
    // Counter and meter are booked at the first id.
    EXPECT_EQ(countersTaken(), kPolicies);
    uint32_t meter = 0;
    uint32_t valid = 1;
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 16, &meter, &valid), 0U);
    EXPECT_EQ(valid, 0U);
}

// Records whose maps end before the partition does: what cannot be booked is told, entries stay.
TEST_F(AclEntry, BookingsThatFailAreReportedAfterTheChipWasChanged)
{
    LswmAclRule rule = oneEntryRule(1);
    rule.action.flags |= LSWM_ACTION_COUNT | LSWM_ACTION_CAR;
    install(rule);
    AclRuleInfo *info = ZR_OP(COM_ACL_GetRuleInfo)(kUnit);
    info->chipRuleNum = 16;
    AclEntryPlace place{};
    EXPECT_EQ(program(rule, place), 1U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/1 Chip Set Car failed unit:1 ifcid 17"));
    EXPECT_EQ(place.firstChipId, 17U);
    rule.action.flags &= ~uint32_t{LSWM_ACTION_CAR};
    EXPECT_EQ(program(rule, place), 1U) << "the counter's booking fails silently";
    EXPECT_EQ(dev.chip(kUnit).acl.entry(17).parts, 1U);

    EXPECT_EQ(acl().delEntry(kUnit, 16), 1U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("6/1 COM_ACL_SetRuleCarMapEntryValid failed 1 unit 1 ifcid 16"));
    EXPECT_EQ(dev.chip(kUnit).acl.entry(16).parts, 0U);
    EXPECT_EQ(countersTaken(), kPolicies + 1) << "not reached";
    info->chipRuleNum = 96;
}

// ---- ports --------------------------------------------------------------------------------------

struct PortChange {
    uint32_t (*ZrAclOps::*slot)(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
    std::string call;
    const char *lookupLine;
    const char *failLine;
};
const PortChange kChanges[] = {
    {&ZrAclOps::modifyEntryPortmap, "l2sw_filter_igrAcl_entry_modifybitmap", "ZR GetRuleInfoFromChipId failed",
     "ZR modify entry portmap failed"},
    {&ZrAclOps::addEntryPortmap, "l2sw_filter_igrAcl_entry_addbitmap", "ZR add entry get entryCount failed",
     "ZR add entry portmap failed"},
    {&ZrAclOps::removeEntryPortmap, "l2sw_filter_igrAcl_entry_removebitmap",
     "ZR remove entry get entryCount failed", "ZR remove entry portmap failed"},
};

TEST_F(AclEntry, PortsReachEveryEntryOfTheRuleCutToThePortsOfTheChip)
{
    install(twoEntryRule(1));
    const uint32_t ports[4] = {0xFFFFFFFF, 1, 2, 3};
    for (const PortChange &change : kChanges) {
        SCOPED_TRACE(change.call);
        EXPECT_EQ((acl().*change.slot)(kUnit, 16, ports), 0U);
        EXPECT_THAT(dev.calls(),
                    ElementsAre(change.call + "(1, 16, 0x3801f) = 0", change.call + "(1, 17, 0x3801f) = 0"));
        dev.forget();

        dev.fail(change.call, 0xFFFFFFFF, 2);
        EXPECT_EQ((acl().*change.slot)(kUnit, 16, ports), 0xFFFFFFFFU) << "the chip's own status";
        EXPECT_THAT(dev.takeFailures(), ElementsAre(std::string("6/4294967295 ") + change.failLine));
        dev.fail(change.call, 9, 1);
        EXPECT_EQ((acl().*change.slot)(kUnit, 16, ports), 9U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre(std::string("6/9 ") + change.failLine));
        dev.failNone();
        EXPECT_EQ(made(change.call), 3U) << "the first refusal ends it";
        dev.forget();
    }
}

TEST_F(AclEntry, PortsOfWhatIsNoRuleAreRefused)
{
    ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->chipInUse[2] |= 0x10; // id 68: marked without a record
    const uint32_t ports[4] = {1, 0, 0, 0};
    const struct {
        uint32_t unit, chipRuleId, status;
    } cases[] = {{kUnit, 16, 5}, {kUnit, 96, 5}, {kUnit, 0xFFFFFFFF, 5},
                 {kUnit, 68, 4}, {3, 0, 1},      {257, 0, 1}};
    for (const PortChange &change : kChanges) {
        for (const auto &[unit, chipRuleId, status] : cases) {
            EXPECT_EQ((acl().*change.slot)(unit, chipRuleId, ports), status);
            EXPECT_THAT(dev.takeFailures(), ElementsAre(fmt::format("6/{} {}", status, change.lookupLine)));
        }
        EXPECT_EQ((acl().*change.slot)(kUnit, 0, nullptr), 2U);
    }
    EXPECT_THAT(dev.calls(), IsEmpty());
}

TEST_F(AclEntry, MissingRecordsAreRefusedBeforeAnythingHappens)
{
    LswmAclRule rule = oneEntryRule(1);
    AclEntryPlace place{};
    uint32_t out = 0;
    for (uint32_t status : {
             acl().addEntry(kUnit, nullptr, &place),
             acl().addEntry(kUnit, &rule, nullptr),
             acl().getEntry(kUnit, 0, nullptr),
             ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, nullptr, &out),
             ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, nullptr),
             ZR_OP(ZR_ACL_AllocEntryId)(kUnit, 0, 1, nullptr),
             ZR_OP(ZR_ACL_AssignCounterId)(kUnit, nullptr),
             ZR_OP(ZR_ACL_SetRuleCounterMapEntry)(kUnit, 0, nullptr),
             ZR_OP(ZR_ACL_SetRuleCarMapEntry)(kUnit, 0, nullptr),
             ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, nullptr, &rule.action, &out),
             ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, nullptr, &out),
             ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, &rule.action, nullptr),
             ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, nullptr, &rule.action, &out),
             ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, nullptr, &out),
             ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, &rule.action, nullptr),
             ZR_OP(HAL_ACL_GetEntryZr)(kUnit, 0, nullptr, &rule.action),
             ZR_OP(HAL_ACL_GetEntryZr)(kUnit, 0, &rule.match, nullptr),
         })
        EXPECT_EQ(status, 2U);
    EXPECT_THAT(dev.calls(), IsEmpty());
}

} // namespace
