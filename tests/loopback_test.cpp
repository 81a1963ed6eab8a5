// Loopback of ports.
#include <gmock/gmock.h>

#include "port/port.h"
#include "sim/chip/chip.h"
#include "tests/kit/device.h"

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using zrsim::Call;
using zrtest::Texts;

constexpr uint32_t kUntouched = 0xEEEEEEEE;

class Loopback : public zrtest::RunningDeviceTest
{
protected:
    uint32_t mode(uint32_t status = 0)
    {
        uint32_t value = kUntouched;
        EXPECT_EQ(dev.ops().port.getLoopback(1, 3, &value), status);
        return value;
    }
    uint32_t set(uint32_t value) { return dev.ops().port.setLoopback(1, 3, value); }
};

TEST_F(Loopback, FirstFoundDecidesAndLaterOnesAreNotAsked)
{
    const struct {
        uint32_t mac, control, remote;
        uint32_t mode;
        size_t asked;
    } cases[] = {
        {1, 0x4000, 1, 1, 1}, {0, 0x4000, 1, 2, 3}, {0, 0xBFFF, 0x0729, 3, 4},
        {0, 0, 0xFFFE, 0, 4}, {2, 0, 0, 0, 4},      {0, 0xFFFFFFFF, 0, 2, 3},
    };
    for (const auto &state : cases) {
        dev.script("l2sw_port_macLocalLoopbackEnable_get", [state](const Call &call) {
            *call.pointer<uint32_t>(2) = state.mac;
            return 0;
        });
        dev.script("l2sw_port_phyReg_get", [state](const Call &call) {
            const uint32_t reg = call.number(2);
            *call.pointer<uint32_t>(3) = reg == 0 ? state.control : reg == 18 ? state.remote : 0xFFFF;
            return 0;
        });
        dev.forget();
        EXPECT_EQ(mode(), state.mode);
        EXPECT_EQ(dev.calls().size(), state.asked);
    }
}

TEST_F(Loopback, ReadsEachKindInItsOrder)
{
    EXPECT_EQ(mode(), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_port_macLocalLoopbackEnable_get(1, 3, &0) = 0",
                                         "l2sw_port_phyReg_get(1, 3, 16, &0) = 0",
                                         "l2sw_port_phyReg_get(1, 3, 0, &6464) = 0",
                                         "l2sw_port_phyReg_get(1, 3, 18, &0) = 0"));
}

TEST_F(Loopback, AFailedReadEndsTheQuestion)
{
    const struct {
        const char *call;
        unsigned nth;
        bool andAfter;
        const char *line;
        size_t made;
    } cases[] = {
        {"l2sw_port_macLocalLoopbackEnable_get", 1, false, "2/22 get macloopback failed (unit = 1, port = 3).",
         1},
        {"l2sw_port_phyReg_get", 1, false, "2/22 get phyloopback failed (unit = 1, port = 3).", 3},
        {"l2sw_port_phyReg_get", 2, false, "2/22 get phyloopback failed (unit = 1, port = 3).", 3},
        {"l2sw_port_phyReg_get", 1, true, "2/44 get phyloopback failed (unit = 1, port = 3).", 3},
        {"l2sw_port_phyReg_get", 3, false, "2/22 get remote loopback failed (unit = 1, port = 3)", 4},
    };
    for (const auto &failing : cases) {
        dev.forget();
        zrsim::gate().fail(failing.call, zrsim::gate().calls(failing.call) + failing.nth, failing.andAfter, 22);
        EXPECT_EQ(mode(4), kUntouched);
        EXPECT_THAT(dev.takeFailures(), ElementsAre(failing.line));
        EXPECT_EQ(dev.calls().size(), failing.made);
        dev.clearInjections();
    }
}

// 6464 is the control register 0x1940 of a disabled port, 9798 is 0x2646 and 1833 is 0x0729.
TEST_F(Loopback, SettingMakesTheseCalls)
{
    const struct {
        uint32_t mode;
        Texts calls;
    } cases[] = {
        {1, {"l2sw_port_macLocalLoopbackEnable_set(1, 3, 1) = 0"}},
        {2,
         {"l2sw_port_phyReg_get(1, 3, 0, &6464) = 0", "l2sw_port_phyReg_set(1, 3, 0, 0x5940) = 0",
          "l2sw_port_phyReg_set(1, 3, 16, 9798) = 0"}},
        {3, {"l2sw_port_phyReg_set(1, 3, 18, 1833) = 0"}},
        {4, {"l2sw_port_phyReg_set(1, 3, 18, 1833) = 0"}},
        {0,
         {"l2sw_port_macLocalLoopbackEnable_set(1, 3, 0) = 0",
          "l2sw_port_phyLocalLoopbackEnable_set(1, 3, 0) = 0"}},
    };
    for (const auto &loop : cases) {
        dev.forget();
        EXPECT_EQ(set(loop.mode), 0U);
        EXPECT_EQ(dev.calls(), loop.calls) << "mode " << loop.mode;
    }
}

TEST_F(Loopback, SettingNeverReturnsAChipFailure)
{
    const std::string failed = "2/4 set loopback failed (unit = 1, port = 3).";
    const std::string local = "2/22 set local phy loopback failed (unit = 1, port = 3).";
    const struct {
        uint32_t mode;
        const char *call;
        Texts lines;
        size_t made;
    } cases[] = {
        {1, "l2sw_port_macLocalLoopbackEnable_set", {local, failed}, 1},
        {2, "l2sw_port_phyReg_get", {local, failed}, 3},
        {2, "l2sw_port_phyReg_set", {"2/44 set local phy loopback failed (unit = 1, port = 3).", failed}, 3},
        {3, "l2sw_port_phyReg_set", {"2/22 set remote loopback failed (unit = 1, port = 3).", failed}, 1},
        {0,
         "l2sw_port_macLocalLoopbackEnable_set",
         {"2/22 set loopback disable failed (unit = 1, port = 3)."},
         2},
        {0,
         "l2sw_port_phyLocalLoopbackEnable_set",
         {"2/22 set loopback disable failed (unit = 1, port = 3)."},
         2},
    };
    for (const auto &failing : cases) {
        SCOPED_TRACE(failing.call);
        dev.forget();
        dev.fail(failing.call, 22);
        EXPECT_EQ(set(failing.mode), 0U);
        EXPECT_EQ(dev.takeFailures(), failing.lines);
        EXPECT_EQ(dev.calls().size(), failing.made) << "the calls after the failed one are still made";
        dev.clearInjections();
    }
}

TEST_F(Loopback, PcsLoopbackIsSetEvenWhenTheRegisterCannotBeRead)
{
    dev.fail("l2sw_port_phyReg_get", 22);
    EXPECT_EQ(ZR_OP(HAL_PORT_SetPCSLoopbackZr)(1, 3), 4U);
    EXPECT_THAT(dev.calls()[1], "l2sw_port_phyReg_set(1, 3, 0, 0x4000) = 0");
    EXPECT_THAT(dev.takeFailures(), ElementsAre("2/22 set local phy loopback failed (unit = 1, port = 3)."));
}

TEST_F(Loopback, UnknownModesAndNullOutputsReachNothing)
{
    for (uint32_t value : {5U, 0xFFFFFFFFU}) {
        EXPECT_EQ(set(value), 8U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre("2/8 unsupport loop mode (unit = 1, port = 3, mode = " +
                                                    std::to_string(value) + ")."));
    }
    EXPECT_EQ(dev.ops().port.getLoopback(1, 3, nullptr), 2U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("2/2 get loop mode failed reason null pointer (unit = 1, port = 3)."));
    EXPECT_EQ(ZR_OP(HAL_PORT_GetMacLoopbackZr)(1, 3, nullptr), 2U);
    EXPECT_EQ(ZR_OP(HAL_PORT_GetPCSLoopbackZr)(1, 3, nullptr), 2U);
    EXPECT_EQ(ZR_OP(HAL_PORT_GetRemoteLoopbackZr)(1, 3, nullptr), 2U);
    EXPECT_EQ(dev.ops().port.linkEvt(77, 0xFFFFFFFF), 0U) << "link events are nobody's business here";
    EXPECT_THAT(dev.calls(), IsEmpty());
}

TEST_F(Loopback, GoesThroughEveryModeAndBack)
{
    dev.chip(1).ports.plug(3, true);
    EXPECT_EQ(dev.ops().port.setEnable(1, 3, 1), 0U);
    uint32_t link = 0;
    for (auto [value, seen] : {std::pair{1U, 1U}, {0U, 0U}, {2U, 2U}, {1U, 1U}, {0U, 0U}, {3U, 3U}}) {
        EXPECT_EQ(set(value), 0U);
        EXPECT_EQ(mode(), seen);
        EXPECT_EQ(dev.ops().port.getLinkStatus(1, 3, &link), 0U);
        EXPECT_EQ(link, 1U);
    }
    EXPECT_EQ(set(0), 0U);
    EXPECT_EQ(mode(), 3U) << "nothing ends a remote loopback";
    EXPECT_EQ(dev.ops().port.regWrite(1, 3, 0, 18, 0), 0U);
    EXPECT_EQ(mode(), 0U);
    dev.chip(1).ports.plug(3, false);
}

TEST_F(Loopback, PcsLoopbackLinksToItselfWithoutCable)
{
    EXPECT_EQ(dev.ops().port.setEnable(1, 3, 1), 0U);
    uint32_t link = kUntouched;
    EXPECT_EQ(dev.ops().port.getLinkStatus(1, 3, &link), 0U);
    EXPECT_EQ(link, 0U);
    EXPECT_EQ(set(2), 0U);
    EXPECT_EQ(dev.ops().port.getLinkStatus(1, 3, &link), 0U);
    EXPECT_EQ(link, 1U);
    EXPECT_EQ(ZR_OP(HAL_PORT_SetLoopbackDisableZr)(1, 3), 0U);
    EXPECT_EQ(dev.ops().port.getLinkStatus(1, 3, &link), 0U);
    EXPECT_EQ(link, 0U);
}

} // namespace
