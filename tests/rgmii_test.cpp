// RGMII parameters against values worked out apart from the library, and who wins: computation or environment.
#include "chip/chip.h"
#include "chip/rgmii.h"

#include <cstdlib>

#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

class RgmiiTest : public RunningDeviceTest
{
protected:
    void TearDown() override
    {
        unsetenv("lsw1_vq9_rgmii2_para");
        RunningDeviceTest::TearDown();
    }
};

TEST_F(RgmiiTest, ParametersOfEveryUnitAtEveryLevel)
{
    const struct {
        uint32_t fsData;
        uint32_t level;
        uint32_t multiplier;
        uint32_t parameters[3][2];
    } rows[] = {
        {0x38, 0, 12, {{0x0, 0x0}, {0x9C9, 0x2C0}, {0x9C0, 0x2C0}}},
        {0x3B, 0, 12, {{0x0, 0x0}, {0x9C9, 0x2C0}, {0x9C0, 0x2C0}}}, // the two lowest bits do not count
        {0x34, 1, 11, {{0x0, 0x0}, {0x988, 0x280}, {0x980, 0x280}}},
        {0x20, 2, 10, {{0x0, 0x0}, {0x988, 0x280}, {0x980, 0x280}}},
        {0x24, 3, 9, {{0x0, 0x0}, {0x988, 0x280}, {0x980, 0x280}}},
        {0x28, 4, 8, {{0x0, 0x0}, {0x947, 0x280}, {0x940, 0x280}}},
        {0xFFFF0038, 0, 12, {{0x0, 0x0}, {0x9C9, 0x2C0}, {0x9C0, 0x2C0}}}, // nor do the bits above 15
        {0x10, 2, 10, {{0x0, 0x0}, {0x988, 0x280}, {0x980, 0x280}}},       // unknown: as normal
        {0, 2, 10, {{0x0, 0x0}, {0x988, 0x280}, {0x980, 0x280}}},
    };
    for (const auto &row : rows) {
        for (uint32_t unit = 0; unit < 3; ++unit) {
            SCOPED_TRACE(testing::Message() << std::hex << "FS data " << row.fsData << " unit " << unit);
            dev.chip(unit).fsData = row.fsData;
            uint32_t level = 99;
            uint32_t multiplier = 99;
            ZR_OP(L2sw_GetRGMIISpeedLevel)(unit, &level, &multiplier);
            EXPECT_EQ(level, row.level);
            EXPECT_EQ(multiplier, row.multiplier);
            uint32_t rgmii[2] = {99, 99};
            ZR_OP(L2sw_CalRGMIIParam)(unit, &rgmii[0], &rgmii[1]);
            EXPECT_EQ(rgmii[0], row.parameters[unit][0]);
            EXPECT_EQ(rgmii[1], row.parameters[unit][1]);
        }
    }
}

TEST_F(RgmiiTest, DelayClasses)
{
    const std::pair<int32_t, uint32_t> rows[] = {{-5, 0}, {0, 0},  {9, 0},        {10, 1},
                                                 {11, 2}, {31, 2}, {INT32_MAX, 2}};
    for (auto [delay, expected] : rows)
        EXPECT_EQ(ZR_OP(Trans2ParamPath)(delay), expected) << delay;
}

TEST_F(RgmiiTest, AFailedReadOfTheLevelCountsAsNormal)
{
    dev.script("l2sw_switch_ahb_read", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(2) = 0x38;
        return 22U;
    });
    uint32_t level = 99;
    uint32_t multiplier = 99;
    ZR_OP(L2sw_GetRGMIISpeedLevel)(1, &level, &multiplier);
    EXPECT_EQ(level, 2U);
    EXPECT_EQ(multiplier, 10U);
}

TEST_F(RgmiiTest, TheEnvironmentReplacesRgmii2Alone)
{
    dev.chip(1).fsData = 0x28;
    setenv("lsw1_vq9_rgmii2_para", "0x2a0", 1);
    EXPECT_EQ(ZR_OP(L2sw_RGMIIParamInit)(1), 0U);
    EXPECT_EQ(dev.takeTraces(),
              Texts{"1 Find RGMII2 env, The chip 1 use env rgmii2 param 0x2a0, rgmii1 param 0x947"});
    EXPECT_EQ(dev.chip(1).registers().read(0x1307), 0x947);
    EXPECT_EQ(dev.chip(1).registers().read(0x13C5), 0x2A0);
    EXPECT_EQ(dev.chip(1).registers().read(0x3EE0), 0x132);

    // Without a text there is no place behind it.
    dev.fail("sprintf_s", 0xFFFFFFFF);
    ZR_OP(HAL_CHIP_CompareRgmiiParamQ9)(1);
    EXPECT_EQ(dev.takeCli(), "");
    dev.clearInjections();

    // Another unit's variable is another name, and a text that is no number is no variable.
    EXPECT_EQ(ZR_OP(L2sw_RGMIIParamInit)(2), 0U);
    setenv("lsw1_vq9_rgmii2_para", "fast", 1);
    EXPECT_EQ(ZR_OP(L2sw_RGMIIParamInit)(1), 0U);
    EXPECT_EQ(dev.takeTraces(),
              (Texts{"1 Can not Find RGMII2 env, The chip 2 use calc rgmii2 param 0x280, rgmii1 param 0x940",
                     "1 Can not Find RGMII2 env, The chip 1 use calc rgmii2 param 0x280, rgmii1 param 0x947"}));
    EXPECT_EQ(dev.chip(2).registers().read(0x3EE0), 0x133);
    dev.forget();
    EXPECT_EQ(ZR_OP(L2sw_RGMIIParamInit)(0), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_setAsicReg(0, 0x3ee0, 0) = 0");
    dev.takeTraces();
}

} // namespace
} // namespace zrtest
