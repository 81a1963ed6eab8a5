#include "l2/vlan.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "platform/chip_sdk.h"
#include "sim/chip/chip.h"
#include "tests/kit/device.h"

using testing::Contains;
using testing::ElementsAre;

namespace zrtest
{
namespace
{

constexpr uint32_t kFreshIndex = 0xDEADBEEF; // an output that nobody wrote

class Vlan : public RunningDeviceTest
{
protected:
    const ZrVlanOps &vlan() const { return dev.ops().vlan; }
    VlanCfg entry(uint32_t unit, uint32_t id)
    {
        VlanCfg cfg{};
        EXPECT_EQ(dev.chip(unit).vlan.read(id, cfg), 0U);
        return cfg;
    }
    // The member mask of the VLAN's member configuration; 0xFFFFFFFF when it has none.
    uint32_t memberConfig(uint32_t unit, uint32_t id)
    {
        uint32_t index = 0;
        VlanMbrCfg cfg{};
        if (dev.chip(unit).vlan.findIndex(id, index) != 0)
            return 0xFFFFFFFF;
        EXPECT_EQ(dev.chip(unit).vlan.readMembers(index, cfg), 0U);
        return cfg.memberMask;
    }
    uint32_t filterOf(uint32_t unit, uint32_t port) { return dev.chip(unit).vlan.port(port)->ingressFilter; }
    Texts names() const
    {
        Texts texts;
        for (const std::string &call : dev.calls())
            texts.push_back(call.substr(0, call.find('(')));
        return texts;
    }
};

// ---- start-up -----------------------------------------------------------------------------------

TEST_F(Vlan, InitFiltersEveryPortButTheReservedOneWhichLeavesVlan1)
{
    g_lswmInfo[2].reservedPort = 33; // the bit of port 1, and no port of the chip
    dev.setPorts(2, LSWM_SET_VALID, {127, 33, 1});
    ASSERT_EQ(vlan().init(2), 0U);
    EXPECT_THAT(dev.calls(), Contains("l2sw_vlan_UntagDscpPriorityEnable_set(2, 1) = 0"));
    EXPECT_THAT(names(),
                ElementsAre("l2sw_vlan_init", "l2sw_vlan_UntagDscpPriorityEnable_set",
                            "l2sw_vlan_portIgrFilterEnable_set", "l2sw_vlan_GetMbrIdx", "l2sw_vlan_mbrCfg_get",
                            "l2sw_vlan_mbrCfg_set", "l2sw_vlan_get", "l2sw_vlan_set",
                            "l2sw_vlan_portIgrFilterEnable_set", "l2sw_vlan_portIgrFilterEnable_set"));
    EXPECT_EQ(dev.calls()[2], "l2sw_vlan_portIgrFilterEnable_set(2, 1, 1) = 0");
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("4/65538 ingress port filter set failed (unit:2, port:33, igrEn:0).",
                            "4/65538 ingress port filter set failed (unit:2, port:127, igrEn:1)."));
    EXPECT_EQ(entry(2, 1).memberMask, 0x3801DU);
    EXPECT_EQ(entry(2, 1).untagMask, 0x3801DU);
    EXPECT_EQ(memberConfig(2, 1), 0x3801DU);
}

// ---- life of a VLAN -----------------------------------------------------------------------------

TEST_F(Vlan, LivesWithTheCascadePortsTagged)
{
    // What the VLAN id held before is gone.
    ASSERT_EQ(dev.chip(1).vlan.write(100, VlanCfg{0xF, 0xF, 7, {1, 2, 3}}), 0U);
    ASSERT_EQ(vlan().create(1, 100), 0U);
    EXPECT_EQ(entry(1, 100).memberMask, 0x18000U);
    EXPECT_EQ(entry(1, 100).untagMask, 0U);
    EXPECT_EQ(entry(1, 100).independentLearning, 1U);
    EXPECT_THAT(entry(1, 100).reserved10, testing::Each(0));
    EXPECT_EQ(memberConfig(1, 100), 0x18000U);

    ASSERT_EQ(vlan().addMember(1, 2, 100, 1), 0U);
    ASSERT_EQ(vlan().destroy(1, 100), 0U);
    EXPECT_EQ(entry(1, 100).memberMask, 0U);
    EXPECT_EQ(entry(1, 100).untagMask, 0U);
    EXPECT_EQ(entry(1, 100).independentLearning, 0U);
    EXPECT_EQ(memberConfig(1, 100), 0x4U) << "other members stay in the member configuration";
}

TEST_F(Vlan, WithoutCascadePortsIsOneWrite)
{
    dev.setPorts(1, LSWM_SET_CASCADE, {});
    EXPECT_EQ(vlan().create(1, 4094), 0U);
    EXPECT_EQ(vlan().destroy(1, 4094), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_vlan_set(1, 4094, 20:{000000000000000001}) = 0",
                                         "l2sw_vlan_set(1, 4094, 20:{}) = 0"));
    g_lswmInfo[0].portMap = nullptr;
    EXPECT_EQ(vlan().create(0, 100), 0U);
    EXPECT_EQ(dev.calls().size(), 3U) << "nor has a unit without a port map";
}

// ---- members ------------------------------------------------------------------------------------

TEST_F(Vlan, MembersMoveBetweenTaggedAndUntagged)
{
    enum Change { Tagged, Untagged, Removed };
    const struct {
        uint32_t port;
        Change change;
        uint32_t members, untagged;
    } steps[] = {
        {2, Tagged, 0x4, 0x0},
        {2, Untagged, 0x4, 0x4},
        {2, Tagged, 0x4, 0x4}, // stays untagged
        {31, Tagged, 0x80000004, 0x4},
        {34, Removed, 0x80000000, 0x0},          // the bit of port 2
        {127, Untagged, 0x80000000, 0x80000000}, // the bit of port 31
        {31, Removed, 0x0, 0x0},
    };
    for (const auto &step : steps) {
        SCOPED_TRACE(testing::Message() << "port " << step.port << ", change " << step.change);
        EXPECT_EQ(step.change == Removed ? vlan().delMember(1, step.port, 300)
                                         : vlan().addMember(1, step.port, 300, step.change == Untagged ? 8 : 0),
                  0U);
        uint32_t members = 0;
        uint32_t untagged = 0;
        EXPECT_EQ(vlan().getPortMap(1, 300, &members, &untagged), 0U);
        EXPECT_EQ(members, step.members);
        EXPECT_EQ(untagged, step.untagged);
        EXPECT_EQ(memberConfig(1, 300), step.members);
    }
    EXPECT_EQ(entry(0, 300).memberMask | entry(2, 300).memberMask, 0U) << "another unit was changed";
}

TEST_F(Vlan, MemberChangesKeepTheFieldsThatAreNotTheirs)
{
    const VlanCfg before{0x1, 0x1, 5, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}};
    ASSERT_EQ(dev.chip(1).vlan.write(300, before), 0U);
    ASSERT_EQ(dev.chip(1).vlan.writeMembers(9, VlanMbrCfg{300, {0xA, 0xB}, 0x1, {1, 2, 3}}), 0U);
    ASSERT_EQ(vlan().addMember(1, 4, 300, 1), 0U);
    ASSERT_EQ(vlan().delMember(1, 0, 300), 0U);

    EXPECT_EQ(entry(1, 300).memberMask, 0x10U);
    EXPECT_EQ(entry(1, 300).independentLearning, 5U);
    EXPECT_EQ(std::memcmp(entry(1, 300).reserved10, before.reserved10, sizeof before.reserved10), 0);
    VlanMbrCfg members{};
    ASSERT_EQ(dev.chip(1).vlan.readMembers(9, members), 0U);
    EXPECT_EQ(members.vlan, 300U);
    EXPECT_EQ(members.memberMask, 0x10U);
    EXPECT_THAT(members.reserved2, ElementsAre(0xA, 0xB));
    EXPECT_EQ(members.reserved8[2], 3U);
}

TEST_F(Vlan, AFullMemberTableHasTheIndexOfKnownVlansOnly)
{
    for (uint32_t id = 2; id < 34; ++id)
        ASSERT_EQ(vlan().addMember(1, 0, id, 0), 0U);
    uint32_t index = kFreshIndex;
    EXPECT_EQ(ZR_OP(HAL_VLAN_CreateMbrIdxZr)(1, 500, &index), LSW_NO_RESOURCE);
    EXPECT_EQ(index, kFreshIndex);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("4/22 Zr mbr table is full (unit:1, vlan:500)."));
    EXPECT_EQ(ZR_OP(HAL_VLAN_CreateMbrIdxZr)(1, 20, &index), 0U);
    EXPECT_EQ(index, 18U);
}

TEST_F(Vlan, UnreadableMemberConfigurationStartsEmpty)
{
    dev.script("l2sw_vlan_checkAndCreateMbr", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(2) = 6;
        return 0;
    });
    dev.fail("l2sw_vlan_mbrCfg_get", 3);
    EXPECT_EQ(ZR_OP(HAL_VLAN_AddMbrTabZr)(1, 4, 0x123), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_vlan_mbrCfg_set(1, 6, 20:{2301000010}) = 0");
}

TEST_F(Vlan, ListAddsUpTo32PortsOrToTheEndMark)
{
    // On the heap, so that reading beyond 32 entries is seen.
    auto ports = std::make_unique<uint32_t[]>(32);
    auto untags = std::make_unique<uint32_t[]>(32);
    for (uint32_t i = 0; i < 32; ++i) {
        ports[i] = 31 - i;
        untags[i] = i % 2;
    }
    EXPECT_EQ(vlan().addMultiMember(1, 300, ports.get(), untags.get()), 0U);
    EXPECT_EQ(entry(1, 300).memberMask, 0xFFFFFFFFU);
    EXPECT_EQ(entry(1, 300).untagMask, 0x55555555U);

    ports[2] = 255;
    EXPECT_EQ(vlan().addMultiMember(1, 301, ports.get(), untags.get()), 0U);
    EXPECT_EQ(entry(1, 301).memberMask, 0xC0000000U);
}

// ---- per port -----------------------------------------------------------------------------------

TEST_F(Vlan, PortSettingsReachTheirPort)
{
    EXPECT_EQ(vlan().setPortPvid(2, 16, 4094), 0U);
    uint32_t pvid = 0;
    EXPECT_EQ(vlan().getPortPvid(2, 16, &pvid), 0U);
    EXPECT_EQ(pvid, 4094U);
    EXPECT_EQ(dev.chip(2).vlan.port(16)->priority, 0U);
    for (uint32_t enable : {1U, 0U}) {
        EXPECT_EQ(vlan().setIgrPortFilter(2, 4, enable), 0U);
        EXPECT_EQ(filterOf(2, 4), enable);
    }
    for (uint32_t mode = 0; mode <= 3; ++mode) {
        EXPECT_EQ(vlan().setTagMode(1, 15, mode), 0U);
        EXPECT_EQ(dev.chip(1).vlan.port(15)->tagMode, mode);
    }
}

// Two chip operations end with the print and return whatever it returns.
TEST_F(Vlan, ResultOfThePrintServiceIsTheStatus)
{
    dev.script("LSWM_ConfigFailPrint", [](const zrsim::Call &) { return 77; });
    dev.fail("l2sw_vlan_tagMode_set", 5);
    dev.fail("l2sw_vlan_portIgrFilterEnable_set", 5);
    EXPECT_EQ(vlan().setTagMode(1, 2, 9), 77U);
    EXPECT_EQ(vlan().setTagMode(1, 2, 1), 77U);
    EXPECT_EQ(ZR_OP(HAL_VLAN_SetPortFilterZr)(1, 2, 1), 77U);
    EXPECT_EQ(vlan().setIgrPortFilter(1, 2, 1), 0U);
}

} // namespace
} // namespace zrtest
