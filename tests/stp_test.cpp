// Spanning tree: bindings, port states and the flushes of a topology change.
#include "l2/stp.h"

#include <gmock/gmock.h>

#include <cstring>

#include "sim/chip/chip.h"
#include "tests/kit/device.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace zrtest
{
namespace
{

constexpr uint32_t kMinusOne = 0xFFFFFFFF;
constexpr uint32_t kUntouched = 0xEEEEEEEE;

class Stp : public RunningDeviceTest
{
protected:
    const ZrStpOps &ops() { return dev.ops().stp; }

    void answerFlush(uint32_t status, uint32_t forVlan = 0)
    {
        dev.script("l2sw_l2_ucastAddr_flush", [this, status, forVlan](const zrsim::Call &call) {
            const auto *cfg = call.pointer<L2FlushCfg>(1);
            L2FlushCfg expected{};
            expected.byVlan = expected.byPort = 1;
            expected.vlan = cfg->vlan;
            expected.port = cfg->port;
            EXPECT_EQ(std::memcmp(cfg, &expected, sizeof expected), 0);
            flushed.push_back({call.number(0), cfg->port, cfg->vlan});
            return forVlan == 0 || cfg->vlan == forVlan ? status : 0U;
        });
    }
    using UnitPortVlan = std::vector<uint32_t>;
    std::vector<UnitPortVlan> flushed;
};

TEST_F(Stp, AStateSetsTheChipStateAndTheLearningLimit)
{
    EXPECT_EQ(ops().setStpMode(1, 5, 3, 0), 0U);
    EXPECT_EQ(ops().setStpMode(2, 6, 4, 1), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_stp_mstpState_set(1, 5, 3, 3) = 0",
                                         "l2sw_l2_limitLearningCnt_set(1, 3, 2112) = 0",
                                         "l2sw_stp_mstpState_set(2, 6, 4, 1) = 0",
                                         "l2sw_l2_limitLearningCnt_set(2, 4, 0) = 0"));
    for (uint32_t state : {2U, 256U, kMinusOne})
        EXPECT_EQ(ops().setStpMode(1, 5, 3, state), LSW_INVALID_ARGUMENT);
    EXPECT_EQ(dev.takeFailures().back(), "11/1 Zr set unit: 1 port:3 pvstate : 4294967295 param error");
    dev.fail("l2sw_l2_limitLearningCnt_set", 22);
    EXPECT_EQ(ops().setStpMode(1, 0, 3, 1), LSW_CHIP_FAILED);
    EXPECT_EQ(dev.chip(1).stp.state(1, 3), zrsim::StpStates::kBlocking) << "half-way";
    dev.takeFailures();
}

TEST_F(Stp, BindingHandsTheVlanFirst)
{
    EXPECT_EQ(ops().setVlanInstanceid(1, 7, 100), 0U);
    uint32_t instance = kUntouched;
    EXPECT_EQ(ZR_OP(HAL_STP_GetVlanInstanceIdZr)(1, 100, &instance), 0U);
    EXPECT_EQ(instance, 7U);
    EXPECT_THAT(dev.calls(),
                ElementsAre("l2sw_vlan_stg_set(1, 100, 7) = 0", "l2sw_vlan_stg_get(1, 100, &7) = 0"));
}

TEST_F(Stp, TheGroupIsWhatTheManagerWrote)
{
    uint32_t group = kUntouched;
    EXPECT_EQ(ops().stgCreate(0, &group), 0U);
    EXPECT_EQ(group, 0U);
    ZR_OP(g_stgInstace) = 0xFEDCBA98;
    EXPECT_EQ(ops().stgCreate(kMinusOne, &group), 0U);
    EXPECT_EQ(group, 0xFEDCBA98U);
    EXPECT_THAT(dev.recorded(), IsEmpty());
}

TEST_F(Stp, FlushByInstanceReadsEveryVlanAndFlushesTheBoundOnes)
{
    zrsim::console().traceLevel(3);
    for (uint32_t vlan : {0U, 1U, 2000U, 4094U, 4095U})
        ASSERT_EQ(ops().setVlanInstanceid(2, 3, vlan), 0U);
    answerFlush(0);
    dev.forget();
    EXPECT_EQ(ops().flushMacByPortInstance(2, 65535, 3), 0U);
    EXPECT_THAT(flushed, ElementsAre(UnitPortVlan{2, 65535, 1}, UnitPortVlan{2, 65535, 2000},
                                     UnitPortVlan{2, 65535, 4094}));
    // Nothing else: no allocation, no formatting, not even a question about traces.
    uint32_t vlan = 0;
    for (const zrsim::Call &call : dev.recorded()) {
        if (call.name == std::string("l2sw_l2_ucastAddr_flush"))
            continue;
        ASSERT_STREQ(call.name, "l2sw_vlan_stg_get");
        ASSERT_EQ(call.number(1), ++vlan);
    }
    EXPECT_EQ(vlan, 4094U);
    EXPECT_EQ(dev.recorded().size(), 4094U + 3U);

    dev.forget();
    EXPECT_EQ(ops().flushMacByPortInstance(2, 0, 9), 0U);
    EXPECT_EQ(dev.recorded().size(), 4094U);
}

TEST_F(Stp, FlushByInstanceStopsAtTheFirstFailure)
{
    for (uint32_t vlan : {10U, 20U, 30U})
        ASSERT_EQ(ops().setVlanInstanceid(0, 3, vlan), 0U);
    answerFlush(kMinusOne, 20);
    dev.forget();
    EXPECT_EQ(ops().flushMacByPortInstance(0, 7, 3), 4U);
    EXPECT_THAT(flushed, ElementsAre(UnitPortVlan{0, 7, 10}, UnitPortVlan{0, 7, 20}));
    EXPECT_EQ(dev.calls().size(), 22U);

    flushed.clear();
    dev.fail("l2sw_vlan_stg_get", 5, 15);
    EXPECT_EQ(ops().flushMacByPortInstance(0, 7, 3), 4U);
    EXPECT_THAT(flushed, ElementsAre(UnitPortVlan{0, 7, 10}));
    dev.takeFailures();
}

// The record that a flush takes has 16 bits for the port and 8 for the unit.
TEST_F(Stp, FlushByInstanceNeverFlushesAnotherPortOrUnit)
{
    answerFlush(0);
    for (uint32_t port : {0x10000U, 0x10003U, kMinusOne})
        EXPECT_EQ(ops().flushMacByPortInstance(1, port, 0), 1U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    dev.script("l2sw_vlan_stg_get", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(2) = 0;
        return 0U;
    });
    EXPECT_EQ(ops().flushMacByPortInstance(0x101, 3, 0), 0U);
    EXPECT_THAT(flushed, IsEmpty());
}

} // namespace
} // namespace zrtest
