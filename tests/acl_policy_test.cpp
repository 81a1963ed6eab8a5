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

TEST(AclInit, EndsAtAnyPolicyThatCannotBeInstalled)
{
    for (uint32_t nth = 1; nth <= 5; ++nth) {
        zrtest::Device dev;
        dev.bringUp();
        dev.fail("l2sw_filter_igrAcl_cfg_add", 22, nth);
        EXPECT_EQ(dev.ops().acl.init(kUnit), LSW_CHIP_FAILED);
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->ruleRecordNum, nth - 1);
        EXPECT_EQ(dev.takeFailures(), (Texts{fmt::format("6/4 Chip 8 Add Entry unit:1 ifcid {}", nth - 1),
                                             "6/4 ZR ACL lan wan policy init unitId = 1"}));
        EXPECT_THAT(callsOf(kSelect), IsEmpty());
    }
}

// Before the records exist no range fits: four times 1.
TEST_F(AclPolicy, PartitionsNeedTheRecords)
{
    EXPECT_EQ(ZR_OP(ZR_ACL_InitPartInfo)(2), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/4 ZR ACL RulePartinfo init unitId = 2"));
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
    // Ports that no rule can name change nothing, but the policies are walked.
    dev.forget();
    for (uint32_t port : {5U, 14U, 18U, 31U, 32U, 35U, 127U})
        EXPECT_EQ(acl().updateLanWanPolicy(kUnit, port, kWan), 0U);
    EXPECT_EQ(callsOf(kAddPorts).size(), 35U);
    EXPECT_THAT(policyPorts(), testing::Each(0x20008U));
    EXPECT_EQ(acl().updateLanWanPolicy(0, 3, kWan), 0U) << "a unit without policies";
}

TEST_F(AclPolicies, AnUpdateStopsAtTheFirstPolicyThatFails)
{
    dev.fail(kAddPorts, 22, 3);
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), LSW_CHIP_FAILED);
    dev.takeFailures();
    EXPECT_THAT(policyPorts(), ElementsAre(0x10U, 0x10U, 0U, 0U, 0U));
    dev.clearInjections();
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), 0U) << "the manager may repeat it";
    EXPECT_THAT(policyPorts(), testing::Each(0x10U));
    ASSERT_EQ(acl().releaseRuleRecord(kUnit, 1), 0U); // a policy without record cannot be found
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, 0), LSW_CHIP_FAILED);
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

TEST_F(AclPolicies, PortsReachEveryEntryOfTheRuleCutToThePortsOfTheChip)
{
    for (LswmAclRule rule : {zrtest::twoEntryRule(1), zrtest::oneEntryRule(1)}) { // 16 and 17, 18
        uint32_t logicRuleId = 0;
        ASSERT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
    }
    const uint32_t ports[4] = {0xFFFFFFFF, 1, 2, 3};
    const std::pair<uint32_t (*)(uint32_t, uint32_t, const uint32_t *), std::string> changes[] = {
        {acl().modifyEntryPortmap, "l2sw_filter_igrAcl_entry_modifybitmap"},
        {acl().addEntryPortmap, "l2sw_filter_igrAcl_entry_addbitmap"},
        {acl().removeEntryPortmap, "l2sw_filter_igrAcl_entry_removebitmap"}};
    for (const auto &[change, call] : changes) {
        dev.forget();
        EXPECT_EQ(change(kUnit, 17, ports), 0U) << "inside its run";
        EXPECT_THAT(dev.calls(), ElementsAre(call + "(1, 16, 0x3801f) = 0", call + "(1, 17, 0x3801f) = 0"));
    }
}

} // namespace
