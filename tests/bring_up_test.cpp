// Bring-up: the exact sequence and the services.
#include "chip/chip.h"
#include "platform/board.h"
#include "platform/chip_sdk.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using BringUpTest = DeviceTest;

TEST_F(BringUpTest, RunsTheWholeSequenceInOrder)
{
    EXPECT_EQ(dev.ops().common.initChip(1), 0U);
    EXPECT_EQ(
        dev.calls(),
        (Texts{"VESPER_ADPAPI_ResetChip(0xffffffff, 0xb00000, 0) = 0",
               "VESPER_ADPAPI_ResetChip(0xffffffff, 0xb00000, 1) = 0", "PAL_TaskDelay(20)",
               "l2sw_fun_regist(ptr) = 0", "l2sw_switch_init(1) = 0", "l2sw_setAsicReg(1, 0x3b0c, 7) = 0",
               "l2sw_setAsicReg(1, 4881, 4118) = 0", "l2sw_setAsicReg(1, 0x3b0d, 7) = 0",
               "l2sw_setAsicReg(1, 5060, 4118) = 0", "l2sw_switch_ahb_read(1, 0x9000084c, &36) = 0",
               "drv_env_num_get(\"lsw1_vq9_rgmii2_para\", &0, 16) = 1", "l2sw_setAsicReg(1, 4871, 2440) = 0",
               "l2sw_setAsicReg(1, 5061, 640) = 0", "l2sw_setAsicReg(1, 0x3ee0, 306) = 0",
               "l2sw_led_groupConfig_set(1, 0, 2) = 0", "l2sw_led_groupConfig_set(1, 1, 2) = 0",
               "l2sw_led_groupConfig_set(1, 2, 2) = 0", "l2sw_led_blinkRate_set(1, 5) = 0"}));
    EXPECT_EQ(dev.takeTraces(),
              (Texts{"1 Can not Find RGMII2 env, The chip 1 use calc rgmii2 param 0x280, rgmii1 param 0x988",
                     "1 The chip 1 ver is 2"}));
}

TEST_F(BringUpTest, EachUnitIsResetUnderItsOwnIdentifier)
{
    const char *const identifiers[] = {"0", "0xb00000", "0xb00001"};
    const char *const revisions[] = {"1 The chip 0 ver is 1", "1 The chip 1 ver is 2", "1 The chip 2 ver is 3"};
    for (uint32_t unit = 0; unit < 3; ++unit) {
        dev.forget();
        EXPECT_EQ(dev.ops().common.initChip(unit), 0U);
        EXPECT_EQ(dev.calls()[0],
                  std::string("VESPER_ADPAPI_ResetChip(0xffffffff, ") + identifiers[unit] + ", 0) = 0");
        EXPECT_EQ(dev.takeTraces().back(), revisions[unit]);
        EXPECT_EQ(dev.chip(unit).leds.blinkRate(), 5U);
    }
}

TEST_F(BringUpTest, TheStatusesOfBothResetsAreSummed)
{
    dev.fail("VESPER_ADPAPI_ResetChip", 5);
    EXPECT_EQ(dev.ops().common.initChip(1), LSW_CHIP_FAILED);
    EXPECT_EQ(dev.calls().size(), 2U);
    EXPECT_EQ(dev.takeFailures(), Texts{"1/10 Chip Q9 Vesper Reset"});
}

TEST_F(BringUpTest, RegistersTheTransportTheMutexesAndThePrint)
{
    SdkServices services{};
    dev.script("l2sw_fun_regist", [&](const zrsim::Call &call) {
        services = *call.pointer<SdkServices>(0);
        return 99U; // not looked at
    });
    EXPECT_EQ(dev.ops().common.initChip(0), 0U);
    dev.takeTraces();
    EXPECT_EQ(reinterpret_cast<void *>(services.regRead), dev.symbol("L2sw_SmiRead"));
    EXPECT_EQ(reinterpret_cast<void *>(services.regWrite), dev.symbol("L2sw_SmiWrite"));
    EXPECT_EQ(services.semCreate, &LSWM_SemMCreate);
    EXPECT_EQ(services.semTake, &LSWM_SemTake);
    EXPECT_EQ(services.semGive, &LSWM_SemGive);
    EXPECT_EQ(services.print, &LSWM_CmdCliPrint);
}

// What the stand-in owes the library: a chip that has not been brought up answers as one in reset.
TEST_F(BringUpTest, AChipInResetDoesNotAnswer)
{
    uint16_t onTheBus = 0;
    EXPECT_EQ(HAL_PORT_SmiRead(1, 29, 25, &onTheBus), 0U);
    EXPECT_EQ(onTheBus, 0xFFFF);
    uint32_t value = 0;
    EXPECT_NE(dev.ops().common.chipRegRead(0, 0x1300, &value), 0U);
    EXPECT_NE(dev.ops().common.chipRegRead(1, 0x1300, &value), 0U);
    EXPECT_EQ(dev.ops().common.initChip(2), 0U);
    EXPECT_EQ(dev.ops().common.chipRegRead(2, 0x1300, &value), 0U);
    EXPECT_EQ(value, zrsim::kChipId);
    EXPECT_EQ(dev.ops().common.chipRegRead(1, 0x1300, &value), 0U);
    EXPECT_EQ(value, 0xFFFFU) << "unit 1 is still in reset: the bus floats";
    EXPECT_NE(dev.ops().vlan.create(1, 100), 0U);
    dev.takeFailures();
    dev.takeTraces();
}

} // namespace
} // namespace zrtest
