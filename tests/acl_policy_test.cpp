// The default policies, and the ports that put a policy to work.
#include <gmock/gmock.h>

#include <array>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/device.h"

using ::testing::Each;
using ::testing::ElementsAre;

namespace
{

constexpr uint32_t kUnit = 1;
constexpr uint32_t kWan = 1;
const char *const kAddPorts = "l2sw_filter_igrAcl_entry_addbitmap";

// With the unit's policies installed.
class AclPolicies : public zrtest::RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        ASSERT_EQ(acl().init(kUnit), 0U);
        dev.forget();
    }
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
        uint32_t first = 0xEE;
        ASSERT_EQ(acl().logicRuleToChipRule(kUnit, id, &first), 0U);
        EXPECT_EQ(first, id);
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
    EXPECT_THAT(policyPorts(), Each(0U));
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(0)->ruleRecordNum, 0U) << "other units are left alone";
}

TEST_F(AclPolicies, AWanPortIsUnderEveryPolicyAndALanPortUnderNone)
{
    const struct {
        uint32_t port, type, ports;
    } steps[] = {{3, kWan, 0x8},      {17, kWan, 0x20008}, {3, 0, 0x20000},     {3, kWan, 0x20008},
                 {3, 2, 0x20000},     {5, kWan, 0x20000},  {35, kWan, 0x20000}, // no rule can name these
                 {127, kWan, 0x20000}};
    for (const auto &[port, type, ports] : steps) {
        EXPECT_EQ(acl().updateLanWanPolicy(kUnit, port, type), 0U);
        EXPECT_THAT(policyPorts(), Each(ports)) << "port " << port << " of type " << type;
    }
    EXPECT_EQ(dev.calls().size(), 5 * std::size(steps));
    EXPECT_EQ(acl().updateLanWanPolicy(0, 3, kWan), 0U) << "a unit without policies";
}

TEST_F(AclPolicies, AnUpdateStopsAtTheFirstPolicyThatFails)
{
    dev.fail(kAddPorts, 22, 3);
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), LSW_CHIP_FAILED);
    dev.takeFailures();
    EXPECT_THAT(policyPorts(), ElementsAre(0x10U, 0x10U, 0U, 0U, 0U));
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, kWan), 0U) << "the manager may repeat it";
    ASSERT_EQ(acl().releaseRuleRecord(kUnit, 1), 0U); // a policy without record cannot be found
    EXPECT_EQ(acl().updateLanWanPolicy(kUnit, 4, 0), LSW_CHIP_FAILED);
    EXPECT_THAT(policyPorts(), ElementsAre(0U, 0x10U, 0x10U, 0x10U, 0x10U));
}

TEST_F(AclPolicies, MorePoliciesThanTheListHoldsStayInstalledUnlisted)
{
    // 91 more fill the list; the rule is removed each time to make room for the next.
    for (int i = 0; i < 91; ++i) {
        ASSERT_EQ(ZR_OP(ZR_ACL_InitLanWanCoapPolicy)(kUnit), 0U);
        ASSERT_EQ(acl().delEntry(kUnit, 5), 0U);
        ASSERT_EQ(acl().releaseRuleRecord(kUnit, 5), 0U);
    }
    EXPECT_EQ(acl().setRuleMapEntry(kUnit, 5, 5, 1), 0U); // the rule of all 91
    ASSERT_EQ(ZR_OP(ZR_ACL_InitLanWanCoapPolicy)(kUnit), 0U);
    dev.forget();
    dev.script(kAddPorts, [](const zrsim::Call &) { return 0; });
    ASSERT_EQ(acl().updateLanWanPolicy(kUnit, 1, kWan), 0U);
    EXPECT_EQ(dev.calls().size(), 96U);
    EXPECT_THAT(dev.calls(), Each(testing::Not(testing::HasSubstr("(1, 6,")))) << "the last one";
}

} // namespace
