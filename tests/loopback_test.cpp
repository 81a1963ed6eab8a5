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

TEST_F(Loopback, PcsLoopbackIsSetEvenWhenTheRegisterCannotBeRead)
{
    dev.fail("l2sw_port_phyReg_get", 22);
    EXPECT_EQ(ZR_OP(HAL_PORT_SetPCSLoopbackZr)(1, 3), LSW_CHIP_FAILED);
    EXPECT_EQ(dev.calls()[1], "l2sw_port_phyReg_set(1, 3, 0, 0x4000) = 0");
    dev.takeFailures();
}

} // namespace
