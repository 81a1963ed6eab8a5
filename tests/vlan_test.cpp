#include "l2/vlan.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "platform/chip_sdk.h"
#include "sim/chip/chip.h"
#include "sim/zrsim.h"
#include "tests/kit/device.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace zrtest
{
namespace
{

constexpr uint32_t kFreshIndex = 0xDEADBEEF; // an output that nobody wrote

std::string joined(const Texts &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += line + "\n";
    return text;
}

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

TEST_F(Vlan, InitStopsWhereItFails)
{
    const struct {
        const char *call;
        uint32_t sdkStatus;
        int filters; // settings made before the end
        const char *lines;
    } cases[] = {
        {"l2sw_vlan_init", 9, 0,
         "4/9 Zr vlan init failed (unit:1, retVal:0x9).\n4/4 HAL VLAN InitZr unitId = 1\n"},
        {"l2sw_vlan_UntagDscpPriorityEnable_set", 0xFFFFFFFF, 0,
         "4/4294967295 Zr vlan Untag Dscp Priority Enable failed. (retVal = -1, unit = 1, enable = 1).\n"},
        {"l2sw_vlan_get", 7, 5,
         "4/7 Zr del vlan member failed (unit:1, port:15, vlan:1, retVal:0x7).\n"
         "4/4 Zr vlan init del mrt failed.=(unit:1, port:15).\n"},
    };
    g_lswmInfo[1].reservedPort = 15;
    for (const auto &failing : cases) {
        SCOPED_TRACE(failing.call);
        dev.forget();
        dev.fail(failing.call, failing.sdkStatus);
        EXPECT_EQ(vlan().init(1), 4U);
        EXPECT_EQ(joined(dev.takeFailures()), failing.lines);
        EXPECT_EQ(std::ranges::count(names(), "l2sw_vlan_portIgrFilterEnable_set"), failing.filters);
        dev.clearInjections();
    }
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
}

TEST_F(Vlan, HalfCreatedOrDeletedStaysAsFarAsItCame)
{
    const auto failAt = [&](unsigned write) {
        dev.clearInjections();
        dev.fail("l2sw_vlan_set", 0x31, write);
    };
    failAt(3); // the VLAN, port 15, port 16
    EXPECT_EQ(vlan().create(1, 100), 4U);
    EXPECT_EQ(entry(1, 100).memberMask, 0x8000U);
    EXPECT_EQ(entry(1, 100).independentLearning, 1U);
    failAt(1);
    EXPECT_EQ(vlan().create(1, 101), 4U);
    EXPECT_EQ(joined(dev.takeFailures()),
              "4/49 Zr mbr create failed (unit:1, port:16, vlan:100, retVal:0x31).\n"
              "4/4 Zr vlan add cascade port failed. (unit:1, port:16, vlanId:100)\n"
              "4/49 Zr vlan create failed (unit:1, vlan:101, retVal:0x31).\n"
              "4/4 Zr vlan create failed.(unit:1, vlan:101).\n");

    dev.clearInjections();
    ASSERT_EQ(vlan().create(1, 100), 0U);
    failAt(2); // port 15, port 16
    EXPECT_EQ(vlan().destroy(1, 100), 4U);
    EXPECT_EQ(entry(1, 100).memberMask, 0x10000U);
    EXPECT_EQ(entry(1, 100).independentLearning, 1U) << "destroyed all the same";
    dev.setPorts(1, LSWM_SET_CASCADE, {});
    failAt(1);
    EXPECT_EQ(vlan().destroy(1, 100), 4U);
    EXPECT_EQ(joined(dev.takeFailures()),
              "4/49 Zr del vlan member failed (unit:1, vlan:100, bitmap:0x0, untag bitmap:0x0, retVal:0x31).\n"
              "4/4 Zr vlan del cascade port failed. (unit:1, port:16, vlanId:100)\n"
              "4/49 Zr vlan destroy failed (unit:1, vlan:100, retVal:0x31).\n"
              "4/4 Zr vlan destroy failed.(unit:1, vlan:100).\n");
}

TEST_F(Vlan, UnitsWithoutRecordAreRefusedBeforeTheChip)
{
    for (uint32_t unit : {3U, 0xFFFFFFFFU}) {
        EXPECT_EQ(vlan().init(unit), 1U);
        EXPECT_EQ(vlan().create(unit, 100), 1U);
        EXPECT_EQ(vlan().destroy(unit, 100), 1U);
    }
    EXPECT_THAT(dev.calls(), IsEmpty());
    // A record without a port map has no cascade ports.
    g_lswmInfo[0].portMap = nullptr;
    EXPECT_EQ(vlan().create(0, 100), 0U);
    EXPECT_EQ(dev.calls().size(), 1U);
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

TEST_F(Vlan, FullMemberTableLeavesThePortInTheVlanTable)
{
    for (uint32_t id = 2; id < 34; ++id)
        ASSERT_EQ(vlan().addMember(1, 0, id, 0), 0U);
    EXPECT_EQ(vlan().addMember(1, 3, 500, 1), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("4/22 Zr mbr table is full (unit:1, vlan:500)."));
    EXPECT_EQ(entry(1, 500).memberMask, 0x8U);
    EXPECT_EQ(entry(1, 500).untagMask, 0x8U);

    uint32_t index = kFreshIndex;
    EXPECT_EQ(ZR_OP(HAL_VLAN_CreateMbrIdxZr)(1, 500, &index), 7U);
    EXPECT_EQ(index, kFreshIndex);
    EXPECT_EQ(dev.takeFailures().size(), 1U);
    EXPECT_EQ(ZR_OP(HAL_VLAN_CreateMbrIdxZr)(1, 20, &index), 0U);
    EXPECT_EQ(index, 18U) << "the index that serves the VLAN already";
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

// Members leave the member configuration first, and only the VLAN table decides the status.
TEST_F(Vlan, RemovalSucceedsWithoutTheMemberConfiguration)
{
    const struct {
        const char *call;
        uint32_t leaving; // the status of the member configuration alone
        const char *line;
    } cases[] = {
        {"l2sw_vlan_GetMbrIdx", 10, "4/10 Zr get vlan mbr idx failed (unit:1, vlan:300, retVal:10)"},
        {"l2sw_vlan_mbrCfg_get", 4, "4/10 Zr get vlan mbr cfg failed (unit:1, idx:0, retVal:10)"},
        {"l2sw_vlan_mbrCfg_set", 4, "4/10 Zr del mbr member failed (unit:1, vlan:300, retVal:0xa)."},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.call);
        ASSERT_EQ(vlan().addMember(1, 2, 300, 0), 0U);
        dev.fail(c.call, 10);
        EXPECT_EQ(vlan().delMember(1, 2, 300), 0U);
        EXPECT_EQ(ZR_OP(HAL_VLAN_DelMbrTabZr)(1, 2, 300), c.leaving);
        EXPECT_THAT(dev.takeFailures(), ElementsAre(c.line, c.line));
        EXPECT_EQ(entry(1, 300).memberMask, 0U);
        EXPECT_EQ(memberConfig(1, 300), 0x4U);
        dev.clearInjections();
    }
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

    ports[2] = 29;
    dev.forget();
    dev.fail("l2sw_vlan_set", 2, 3);
    EXPECT_EQ(vlan().addMultiMember(1, 302, ports.get(), untags.get()), 4U);
    EXPECT_EQ(entry(1, 302).memberMask, 0xC0000000U) << "members before the failure stay";
    EXPECT_EQ(std::ranges::count(names(), "l2sw_vlan_get"), 3);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("4/2 Zr mbr create failed (unit:1, port:29, vlan:302, retVal:0x2)."));
}

// ---- what a failing chip leads to ---------------------------------------------------------------

TEST_F(Vlan, EveryFailureIsPrintedAndTraced)
{
    ASSERT_EQ(vlan().addMember(1, 0, 300, 0), 0U);
    const uint32_t ports[] = {2, 255};
    const uint32_t untags[] = {1};
    uint32_t index = kFreshIndex;
    const struct {
        const char *call;
        std::function<uint32_t()> run;
        uint32_t status;
        const char *line;
        const char *traces = "";
    } cases[] = {
        {"l2sw_vlan_get", [&] { return vlan().addMember(1, 2, 300, 6); }, 4,
         "Zr add vlan member failed (unit:1, port:2, vlan:300, retVal:0xfffffffe).",
         "4 Zr add vlan member failed(unit:1, port:2, vlan:300, untag:6)\n"},
        {"l2sw_vlan_checkAndCreateMbr", [&] { return vlan().addMember(1, 2, 300, 0); }, 4,
         "Zr mbr create failed (unit:1, vlan:300, retVal:0xfffffffe).",
         "4 Zr add vlan mbr failed(unit:1, port:2, vlan:300)\n"},
        {"l2sw_vlan_checkAndCreateMbr", [&] { return ZR_OP(HAL_VLAN_CreateMbrIdxZr)(1, 300, &index); }, 4,
         "Zr mbr create failed (unit:1, vlan:300, retVal:0xfffffffe)."},
        {"l2sw_vlan_mbrCfg_set", [&] { return vlan().addMember(1, 2, 300, 0); }, 4,
         "Zr mbr create failed (unit:1, port:2, vlan:300, retVal:0xfffffffe).",
         "4 Zr add vlan mbr failed(unit:1, port:2, vlan:300)\n"},
        {"l2sw_vlan_get", [&] { return vlan().delMember(1, 2, 300); }, 4,
         "Zr del vlan member failed (unit:1, port:2, vlan:300, retVal:0xfffffffe).",
         "4 Zr vlan del member failed (unit:1, port:2, vlan:300).\n"},
        {"l2sw_vlan_GetMbrIdx", [&] { return vlan().delMember(1, 2, 300); }, 0,
         "Zr get vlan mbr idx failed (unit:1, vlan:300, retVal:4294967294)",
         "4 Zr vlan del mrt table failed(unit:1, port:2, vlan:300).\n"},
        {"l2sw_vlan_get", [&] { return vlan().addMultiMember(1, 300, ports, untags); }, 4,
         "Zr add vlan member failed (unit:1, port:2, vlan:300, retVal:0xfffffffe).",
         "4 Zr add vlan member failed(unit:1, port:2, vlan:300, untag:1)\n"
         "4 Zr add multi member failed.(unit:1, vlan:300, port:2)\n"},
        {"l2sw_vlan_tagMode_set", [&] { return vlan().setTagMode(1, 2, 3); }, 0xFFFFFFFE,
         "Zr set tag mode failed (unit:1, port:2, tagMode:3, retVal:-2)."},
    };
    for (const auto &failing : cases) {
        SCOPED_TRACE(failing.line);
        dev.fail(failing.call, 0xFFFFFFFE);
        // At level 2 the failure line stays, the trace goes.
        for (uint32_t level : {3U, 2U}) {
            zrsim_trace_level(level);
            EXPECT_EQ(failing.run(), failing.status);
            EXPECT_THAT(dev.takeFailures(), ElementsAre(std::string("4/4294967294 ") + failing.line));
            EXPECT_EQ(joined(dev.takeTraces()), level == 3 ? failing.traces : "");
        }
        dev.clearInjections();
    }
}

TEST_F(Vlan, ReadsTellFailureAndNull)
{
    uint32_t members = 1;
    uint32_t untagged = 2;
    uint32_t pvid = 3;
    const uint32_t statuses[] = {vlan().getPortMap(1, 300, nullptr, &untagged),
                                 vlan().getPortMap(1, 300, &members, nullptr),
                                 vlan().getPortPvid(1, 0, nullptr),
                                 ZR_OP(HAL_VLAN_CreateMbrIdxZr)(1, 300, nullptr),
                                 vlan().addMultiMember(1, 300, nullptr, &untagged),
                                 vlan().addMultiMember(1, 300, &members, nullptr)};
    EXPECT_THAT(statuses, testing::Each(2U));
    EXPECT_THAT(dev.calls(), IsEmpty());

    dev.fail("l2sw_vlan_get", 6);
    dev.fail("l2sw_vlan_portPvid_get", 6);
    EXPECT_EQ(vlan().getPortMap(1, 300, &members, &untagged), 4U);
    EXPECT_EQ(vlan().getPortPvid(1, 2, &pvid), 4U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("4/6 Zr get vlan portmap failed (unit:1, vlan:300, retVal:0x6).",
                            "4/6 Zr get port pvid failed (unit:1, port:2, retVal:0x6)."));
    EXPECT_THAT((std::array{members, untagged, pvid}), ElementsAre(1, 2, 0)) << "no PVID is 0";
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
    dev.forget();
    EXPECT_EQ(vlan().setTagMode(1, 15, 4), 1U);
    EXPECT_EQ(vlan().setTagMode(1, 15, 0xFFFFFFFF), 1U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("4/1 Zr tag mode illegal (unit:1, port:15, tagmode:4)",
                            "4/1 Zr tag mode illegal (unit:1, port:15, tagmode:4294967295)"));
}

// Two chip operations end with the print and hand up whatever it answers.
TEST_F(Vlan, AnswerOfThePrintServiceIsTheStatus)
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
