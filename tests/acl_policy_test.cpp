// ACL start-up: partitions, default policies, field selectors. Ports of rules, and those that face the WAN.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <array>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/kit/device.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using zrtest::Texts;

namespace
{

constexpr uint32_t kUnit = 1;
constexpr uint32_t kWan = 1;
const char *const kSelect = "l2sw_filter_igrAcl_field_sel_set";
const char *const kAddPorts = "l2sw_filter_igrAcl_entry_addbitmap";

// SDK calls of one name, in their order.
Texts callsOf(const std::string &name)
{
    Texts found = zrtest::device().calls();
    std::erase_if(found, [&](const std::string &text) { return !text.starts_with(name + "("); });
    return found;
}

class AclPolicy : public zrtest::RunningDeviceTest
{
protected:
    const ZrAclOps &acl() const { return dev.ops().acl; }
    // Ports of the entries 0 to 4.
    std::vector<uint32_t> policyPorts()
    {
        std::vector<uint32_t> ports;
        for (uint32_t id = 0; id < 5; ++id)
            ports.push_back(dev.chip(kUnit).acl.entry(id).ports);
        return ports;
    }
};

// With the unit's policies installed.
class AclPolicies : public AclPolicy
{
protected:
    void SetUp() override
    {
        AclPolicy::SetUp();
        ASSERT_EQ(acl().init(kUnit), 0U);
        dev.forget();
    }
};

TEST_F(AclPolicies, AFreshUnitHasFivePoliciesOnNoPort)
{
    // Value and mask of each: EtherType, protocol, source and destination port.
    const struct {
        uint32_t flags;
        std::array<uint32_t, 8> fields;
        uint32_t value;
    } expected[] = {{0x4, {0x0806, 0xFFFF, 0, 0, 0, 0, 0, 0}, 3},
                    {0x208000, {0, 0, 17, 0xFF, 123, 0xFFFF, 0, 0}, 5},
                    {0x408000, {0, 0, 17, 0xFF, 0, 0, 67, 0xFFFF}, 4},
                    {0x408000, {0, 0, 17, 0xFF, 0, 0, 68, 0xFFFF}, 4},
                    {0x408000, {0, 0, 17, 0xFF, 0, 0, 5683, 0xFFFF}, 3}};
    for (uint32_t id = 0; id < 5; ++id) {
        SCOPED_TRACE(id);
        uint32_t found = 0xEE;
        ASSERT_EQ(acl().logicRuleToChipRule(kUnit, id, &found), 0U);
        EXPECT_EQ(found, id);
        ASSERT_EQ(ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, id, &found), 0U);
        EXPECT_EQ(found, id);
        LswmAclRule rule{};
        ASSERT_EQ(acl().getEntry(kUnit, id, &rule), 0U);
        const LswmAclMatch &match = rule.match;
        EXPECT_EQ(match.flags, expected[id].flags);
        EXPECT_THAT(expected[id].fields,
                    ElementsAre(match.etherType, match.etherTypeMask, match.ipProtocol, match.ipProtocolMask,
                                match.l4SrcPort, match.l4SrcPortMask, match.l4DstPort, match.l4DstPortMask));
        EXPECT_EQ(rule.action.flags, 0x230U);
        EXPECT_EQ(rule.action.value, expected[id].value);
        EXPECT_EQ(rule.action.counterId, id);
    }
    EXPECT_THAT(policyPorts(), ElementsAre(0U, 0U, 0U, 0U, 0U));
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(0)->ruleRecordNum, 0U) << "other units are left alone";
}

TEST_F(AclPolicy, InitCutsThePartitionsAndSetsTheSelectorsLast)
{
    ASSERT_EQ(acl().init(kUnit), 0U);
    const uint32_t expected[4][2] = {{0, 16}, {16, 58}, {74, 6}, {80, 16}};
    for (uint32_t partition = 0; partition < 4; ++partition) {
        EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartInfo)(kUnit, partition)->firstId, expected[partition][0]);
        EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartInfo)(kUnit, partition)->count, expected[partition][1]);
        EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartInfo)(kUnit, partition)->count, 96U);
    }
    EXPECT_EQ(ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->counterNum, 32U);
    const Texts calls = dev.calls();
    ASSERT_GE(calls.size(), 3U);
    EXPECT_THAT(Texts(calls.end() - 3, calls.end()),
                ElementsAre("l2sw_filter_igrAcl_field_sel_set(1, 15, 1, 20) = 0",
                            "l2sw_filter_igrAcl_field_sel_set(1, 3, 6, 8) = 0",
                            "l2sw_filter_igrAcl_field_sel_set(1, 4, 6, 10) = 0"));
}

TEST(AclInit, PrintsTheStepThatFailedAndEndsThere)
{
    const std::string selector = "6/4 ZR ACL field selector init unitId = 1";
    const struct {
        const char *call;
        uint32_t nth, status;
        Texts lines;
        uint32_t rules, selectors; // installed and set nevertheless
    } cases[] = {
        {"LSWM_MemAlloc", 1, 2, {"6/2 ZR ACL Ruleinfo init unitId = 1"}, 0, 0},
        {"l2sw_filter_igrAcl_cfg_add",
         2,
         4,
         {"6/4 Chip 8 Add Entry unit:1 ifcid 1", "6/4 ZR ACL lan wan policy init unitId = 1"},
         1,
         0},
        {kSelect, 1, 4, {selector}, 5, 1},
        {kSelect, 3, 4, {selector}, 5, 3},
    };
    for (const auto &[call, nth, status, lines, rules, selectors] : cases) {
        SCOPED_TRACE(fmt::format("{} {}", call, nth));
        zrtest::Device dev;
        dev.bringUp();
        dev.fail(call, 22, nth);
        EXPECT_EQ(dev.ops().acl.init(kUnit), status);
        EXPECT_EQ(dev.takeFailures(), lines);
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->ruleRecordNum, rules);
        EXPECT_EQ(callsOf(kSelect).size(), selectors);
    }
}

TEST_F(AclPolicies, AUnitIsInitialisedOnce)
{
    EXPECT_EQ(acl().init(kUnit), 6U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/6 ZR ACL Ruleinfo init unitId = 1"));
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_EQ(acl().init(3), 1U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/1 ZR ACL Ruleinfo init unitId = 3"));
    // Before the records exist no range fits: four times 1.
    EXPECT_EQ(ZR_OP(ZR_ACL_InitPartInfo)(2), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/4 ZR ACL RulePartinfo init unitId = 2"));
    EXPECT_EQ(ZR_OP(ZR_ACL_InitLanWanDefualtPolicy)(2), 4U);
    EXPECT_THAT(dev.takeFailures(), IsEmpty()) << "no logic rule id";
}

TEST_F(AclPolicies, AWanPortIsUnderEveryPolicyAndALanPortUnderNone)
{
    ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 3, kWan), 0U);
    EXPECT_EQ(dev.calls(), callsOf(kAddPorts)) << "and nothing else";
    EXPECT_EQ(dev.calls().size(), 5U);
    EXPECT_THAT(policyPorts(), testing::Each(8U));
    ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 17, kWan), 0U);
    EXPECT_THAT(policyPorts(), testing::Each(0x20008U));
    for (uint32_t lanType : {0U, 2U}) {
        ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 3, lanType), 0U);
        EXPECT_THAT(policyPorts(), testing::Each(0x20000U));
        ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 3, kWan), 0U);
    }
}

TEST_F(AclPolicies, PortsThatNoRuleCanNameChangeNothingButAreWalked)
{
    for (uint32_t port : {5U, 14U, 18U, 31U, 32U, 35U, 127U})
        EXPECT_EQ(acl().updateLanWanPolicy(kUnit, port, kWan), 0U);
    EXPECT_EQ(callsOf(kAddPorts).size(), 35U);
    EXPECT_THAT(policyPorts(), testing::Each(0U));
}

TEST_F(AclPolicies, AnUpdateBeyondTheTablesIsRefusedAndOneThatFailsStops)
{
    const struct {
        uint32_t unit, port;
    } beyond[] = {{3, 0}, {0xFFFFFFFF, 0}, {kUnit, 128}, {kUnit, 0xFFFFFFFF}};
    for (const auto &[unit, port] : beyond)
        for (uint32_t type : {0U, kWan})
            EXPECT_EQ(acl().updateLanWanPolicy(unit, port, type), 1U);
    EXPECT_EQ(acl().updateLanWanPolicy(0, 3, kWan), 0U) << "a unit without policies";
    EXPECT_THAT(dev.calls(), IsEmpty());

    dev.fail(kAddPorts, 22, 3);
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/22 ZR add entry portmap failed"));
    EXPECT_THAT(policyPorts(), ElementsAre(0x10U, 0x10U, 0U, 0U, 0U));
    dev.clearInjections();
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), 0U) << "the manager may repeat it";
    EXPECT_THAT(policyPorts(), testing::Each(0x10U));

    // A policy whose record was released cannot be found.
    ASSERT_EQ(acl().releaseRuleRecord(kUnit, 1), 0U);
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, 0), 4U);
    EXPECT_THAT(policyPorts(), ElementsAre(0U, 0x10U, 0x10U, 0x10U, 0x10U));
}

TEST_F(AclPolicies, MorePoliciesThanTheListHoldsStayInstalledUnlisted)
{
    // 91 more installations fill the list; each rule is removed again to make room for the next.
    auto installAndRemove = [&] {
        ASSERT_EQ(ZR_OP(ZR_ACL_InitLanWanCoapPolicy)(kUnit), 0U);
        ASSERT_EQ(acl().delEntry(kUnit, 5), 0U);
        ASSERT_EQ(acl().releaseRuleRecord(kUnit, 5), 0U);
    };
    for (int i = 0; i < 91; ++i)
        installAndRemove();
    EXPECT_EQ(acl().setRuleMapEntry(kUnit, 5, 5, 1), 0U); // holds the id of the 91
    ASSERT_EQ(ZR_OP(ZR_ACL_InitLanWanCoapPolicy)(kUnit), 0U);
    uint32_t unlisted = 0;
    ASSERT_EQ(acl().logicRuleToChipRule(kUnit, 6, &unlisted), 0U);
    dev.forget();
    dev.script(kAddPorts, [](const zrsim::Call &) { return 0; });
    ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 1, kWan), 0U);
    EXPECT_EQ(callsOf(kAddPorts).size(), 96U);
    EXPECT_EQ(dev.chip(kUnit).acl.entry(unlisted).ports, 0U);
}

TEST_F(AclPolicy, TheUnitReachesTheSelectorsByItsLow8Bits)
{
    EXPECT_EQ(ZR_OP(HAL_ACL_InitCapwapKeepaliveFiled)(0x101), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_filter_igrAcl_field_sel_set(1, 3, 6, 8) = 0",
                                         "l2sw_filter_igrAcl_field_sel_set(1, 4, 6, 10) = 0"));
}

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

TEST_F(AclPolicies, PortsReachEveryEntryOfTheRuleCutToThePortsOfTheChip)
{
    for (LswmAclRule rule : {zrtest::twoEntryRule(1), zrtest::oneEntryRule(1)}) { // 16 and 17, 18
        uint32_t logicRuleId = 0;
        ASSERT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
    }
    dev.forget();
    const uint32_t ports[4] = {0xFFFFFFFF, 1, 2, 3};
    for (const PortChange &change : kChanges) {
        SCOPED_TRACE(change.call);
        EXPECT_EQ((acl().*change.slot)(kUnit, 17, ports), 0U) << "inside its run";
        EXPECT_THAT(dev.calls(),
                    ElementsAre(change.call + "(1, 16, 0x3801f) = 0", change.call + "(1, 17, 0x3801f) = 0"));
        dev.forget();

        dev.fail(change.call, 0xFFFFFFFF, 2);
        EXPECT_EQ((acl().*change.slot)(kUnit, 16, ports), 0xFFFFFFFFU) << "the chip's own status";
        EXPECT_THAT(dev.takeFailures(), ElementsAre(std::string("6/4294967295 ") + change.failLine));
        dev.fail(change.call, 9, 1);
        EXPECT_EQ((acl().*change.slot)(kUnit, 16, ports), 9U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre(std::string("6/9 ") + change.failLine));
        dev.clearInjections();
        EXPECT_EQ(callsOf(change.call).size(), 3U) << "the first refusal ends it";
        dev.forget();
    }
}

TEST_F(AclPolicies, PortsOfWhatIsNoRuleAreRefused)
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

} // namespace
