// ACL start-up: partitions, default policies, field selectors, and the ports that face the WAN.
#include <gmock/gmock.h>

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

// Calls of one name, in their order.
Texts callsOf(const zrtest::Device &dev, const std::string &name)
{
    Texts found;
    for (const std::string &text : dev.calls())
        if (text.rfind(name + "(", 0) == 0)
            found.push_back(text);
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

TEST_F(AclPolicy, AFreshUnitHasFivePoliciesOnNoPort)
{
    ASSERT_EQ(acl().init(kUnit), 0U);
    const struct {
        uint32_t flags;
        uint32_t proto, srcPort, dstPort, etherType, value;
    } expected[] = {{0x4, 0, 0, 0, 0x0806, 3},
                    {0x208000, 17, 123, 0, 0, 5},
                    {0x408000, 17, 0, 67, 0, 4},
                    {0x408000, 17, 0, 68, 0, 4},
                    {0x408000, 17, 0, 5683, 0, 3}};
    for (uint32_t id = 0; id < 5; ++id) {
        SCOPED_TRACE(id);
        uint32_t found = 0xEE;
        ASSERT_EQ(acl().logicRuleToChipRule(kUnit, id, &found), 0U);
        EXPECT_EQ(found, id);
        ASSERT_EQ(ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, id, &found), 0U);
        EXPECT_EQ(found, id);
        LswmAclRule rule{};
        ASSERT_EQ(acl().getEntry(kUnit, id, &rule), 0U);
        EXPECT_EQ(rule.match.flags, expected[id].flags);
        EXPECT_EQ(rule.match.etherType, expected[id].etherType);
        EXPECT_EQ(rule.match.ipProtocol, expected[id].proto);
        EXPECT_EQ(rule.match.l4SrcPort, expected[id].srcPort);
        EXPECT_EQ(rule.match.l4DstPort, expected[id].dstPort);
        EXPECT_EQ(rule.match.etherTypeMask, id == 0 ? 0xFFFF : 0);
        EXPECT_EQ(rule.match.ipProtocolMask, id == 0 ? 0 : 0xFF);
        EXPECT_EQ(rule.match.l4SrcPortMask, id == 1 ? 0xFFFF : 0);
        EXPECT_EQ(rule.match.l4DstPortMask, id > 1 ? 0xFFFF : 0);
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
        uint32_t first = 0xEE;
        uint32_t count = 0xEE;
        EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartRange)(kUnit, partition, &first, &count), 0U);
        EXPECT_EQ(first, expected[partition][0]);
        EXPECT_EQ(count, expected[partition][1]);
        EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartRange)(kUnit, partition, &first, &count), 0U);
        EXPECT_EQ(first, 0U);
        EXPECT_EQ(count, 96U);
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
    const struct {
        const char *call;
        unsigned nth;
        uint32_t status;
        Texts lines;
        unsigned rules; // installed nevertheless
        unsigned selectors;
    } cases[] = {
        {"LSWM_MemAlloc", 1, 2, {"6/2 ZR ACL Ruleinfo init unitId = 1"}, 0, 0},
        {"l2sw_filter_igrAcl_cfg_add",
         2,
         4,
         {"6/4 Chip 8 Add Entry unit:1 ifcid 1", "6/4 ZR ACL lan wan policy init unitId = 1"},
         1,
         0},
        {"l2sw_filter_igrAcl_field_sel_set", 1, 4, {"6/4 ZR ACL field selector init unitId = 1"}, 5, 1},
        {"l2sw_filter_igrAcl_field_sel_set", 3, 4, {"6/4 ZR ACL field selector init unitId = 1"}, 5, 3},
    };
    for (const auto &[call, nth, status, lines, rules, selectors] : cases) {
        SCOPED_TRACE(std::string(call) + " " + std::to_string(nth));
        zrtest::Device dev;
        dev.bringUp();
        dev.fail(call, 22, nth);
        EXPECT_EQ(dev.ops().acl.init(kUnit), status);
        dev.failNone();
        EXPECT_EQ(dev.takeFailures(), lines);
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->ruleRecordNum, rules);
        EXPECT_EQ(callsOf(dev, "l2sw_filter_igrAcl_field_sel_set").size(), selectors);
    }
}

TEST_F(AclPolicy, AUnitIsInitialisedOnce)
{
    ASSERT_EQ(acl().init(kUnit), 0U);
    dev.forget();
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

TEST_F(AclPolicy, AWanPortIsUnderEveryPolicyAndALanPortUnderNone)
{
    ASSERT_EQ(acl().init(kUnit), 0U);
    dev.forget();
    ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 3, kWan), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_filter_igrAcl_entry_addbitmap(1, 0, 8) = 0",
                                         "l2sw_filter_igrAcl_entry_addbitmap(1, 1, 8) = 0",
                                         "l2sw_filter_igrAcl_entry_addbitmap(1, 2, 8) = 0",
                                         "l2sw_filter_igrAcl_entry_addbitmap(1, 3, 8) = 0",
                                         "l2sw_filter_igrAcl_entry_addbitmap(1, 4, 8) = 0"));
    ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 17, kWan), 0U);
    EXPECT_THAT(policyPorts(), testing::Each(0x20008U));
    for (uint32_t lanType : {0U, 2U}) {
        ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 3, lanType), 0U);
        EXPECT_THAT(policyPorts(), testing::Each(0x20000U));
        ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 3, kWan), 0U);
    }
}

TEST_F(AclPolicy, PortsThatNoRuleCanNameChangeNothingButAreWalked)
{
    ASSERT_EQ(acl().init(kUnit), 0U);
    for (uint32_t port : {5U, 14U, 18U, 31U, 32U, 35U, 127U}) {
        dev.forget();
        EXPECT_EQ(acl().updateLanWanPolicy(kUnit, port, kWan), 0U);
        EXPECT_EQ(callsOf(dev, "l2sw_filter_igrAcl_entry_addbitmap").size(), 5U);
        EXPECT_THAT(policyPorts(), testing::Each(0U)) << port;
    }
}

TEST_F(AclPolicy, AnUpdateBeyondTheTablesIsRefusedAndOneThatFailsStops)
{
    ASSERT_EQ(acl().init(kUnit), 0U);
    dev.forget();
    const struct {
        uint32_t unit, port;
    } beyond[] = {{3, 0}, {0xFFFFFFFF, 0}, {kUnit, 128}, {kUnit, 0xFFFFFFFF}};
    for (const auto &[unit, port] : beyond)
        for (uint32_t type : {0U, kWan})
            EXPECT_EQ(acl().updateLanWanPolicy(unit, port, type), 1U);
    EXPECT_EQ(acl().updateLanWanPolicy(0, 3, kWan), 0U) << "a unit without policies";
    EXPECT_THAT(dev.calls(), IsEmpty());

    dev.fail("l2sw_filter_igrAcl_entry_addbitmap", 22, 3);
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/22 ZR add entry portmap failed"));
    EXPECT_THAT(policyPorts(), ElementsAre(0x10U, 0x10U, 0U, 0U, 0U));
    dev.failNone();
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), 0U) << "the manager may repeat it";
    EXPECT_THAT(policyPorts(), testing::Each(0x10U));

    // A policy whose record was released cannot be found.
    ASSERT_EQ(acl().releaseRuleRecord(kUnit, 1), 0U);
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, 0), 4U);
    EXPECT_THAT(policyPorts(), ElementsAre(0U, 0x10U, 0x10U, 0x10U, 0x10U));
}

TEST_F(AclPolicy, MorePoliciesThanTheListHoldsStayInstalledUnlisted)
{
    ASSERT_EQ(acl().init(kUnit), 0U);
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
    dev.script("l2sw_filter_igrAcl_entry_addbitmap", [](const zrsim::Call &) { return 0; });
    ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 1, kWan), 0U);
    EXPECT_EQ(callsOf(dev, "l2sw_filter_igrAcl_entry_addbitmap").size(), 96U);
    EXPECT_EQ(dev.chip(kUnit).acl.entry(unlisted).ports, 0U);
}

TEST_F(AclPolicy, TheUnitReachesTheSelectorsByItsLow8Bits)
{
    EXPECT_EQ(ZR_OP(HAL_ACL_InitCapwapKeepaliveFiled)(0x101), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_filter_igrAcl_field_sel_set(1, 3, 6, 8) = 0",
                                         "l2sw_filter_igrAcl_field_sel_set(1, 4, 6, 10) = 0"));
}

} // namespace
