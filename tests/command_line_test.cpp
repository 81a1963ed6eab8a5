// The chip's command line and the drop-reason capture.
#include "chip/chip.h"

#include <cstdlib>
#include <stdexcept>

#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

class CommandLineTest : public RunningDeviceTest
{
protected:
    void TearDown() override
    {
        unsetenv("lsw1_vq9_rgmii2_para");
        RunningDeviceTest::TearDown();
    }
    // The text; its block of 256 bytes goes back.
    std::string take(char *text)
    {
        std::string taken = text;
        EXPECT_EQ(dev.recorded()[0].text, "LSWM_MemAlloc(256) = ptr");
        zrsim::memory().free(text);
        return taken;
    }
};

TEST_F(CommandLineTest, TheKeywordComparesAndAnythingElseGoesToTheBoard)
{
    const struct {
        const char *line;
        bool compares;
    } rows[] = {{"compare rgmii param", true},
                {"compare rgmii param now", true},
                {"compare rgmii parameter", true},
                {"compare rgmii", false},
                {"Compare rgmii param", false},
                {" compare rgmii param", false},
                {"", false}};
    for (const auto &row : rows) {
        dev.forget();
        EXPECT_EQ(dev.ops().common.cliCmdPrase(1, row.line), 0U);
        const bool toTheBoard =
            dev.calls()[0].rfind(std::string("excute_command(1, \"") + row.line + "\")", 0) == 0;
        EXPECT_EQ(toTheBoard, !row.compares) << row.line;
        EXPECT_EQ(dev.takeCli() == "Failed! Can not find ENV lsw1_vq9_rgmii2_para\n", row.compares) << row.line;
    }
}

// The library has no unwind tables: an exception that reached it would end the process.
TEST_F(CommandLineTest, AnExceptionOfThePlatformIsAFailedCallWithALine)
{
    const auto fails = [](const zrsim::Call &) -> uint64_t { throw std::runtime_error("broken"); };
    dev.script("l2sw_setAsicReg", fails);
    EXPECT_EQ(dev.ops().common.chipRegWrite(1, 5061, 1), zrsim::kCallFailed);
    EXPECT_EQ(dev.takeFailures()[0], "0/4294967295 l2sw_setAsicReg: the stand-in failed: broken");
    dev.script("LSWM_MemAlloc", fails);
    EXPECT_EQ(dev.ops().common.chipCaptureDropReasonEnable(1, 3), nullptr);
    EXPECT_EQ(dev.takeFailures().size(), 1U);
    dev.script("LSWM_SemTake", fails);
    dev.script("LSWM_SemGive", fails);
    uint32_t value = 0;
    EXPECT_EQ(dev.ops().common.chipRegRead(1, 0x1300, &value), 0U);
    EXPECT_EQ(dev.takeFailures()[0], "0/4294967295 LSWM_SemTake: the stand-in failed: broken");
}

TEST_F(CommandLineTest, ComparesTheEnvironmentWithTheRegisters)
{
    ASSERT_EQ(dev.ops().common.chipRegWrite(1, 5061, 0x2A0), 0U);
    ASSERT_EQ(dev.ops().common.chipRegWrite(1, 4871, 0x947), 0U);
    setenv("lsw1_vq9_rgmii2_para", "672", 1);
    ZR_OP(HAL_CHIP_CompareRgmiiParamQ9)(1);
    EXPECT_EQ(dev.takeCli(), "Success! RGMII2 ENV lsw1_vq9_rgmii2_para(0x2a0)== RGMII2 REG Value(0x2a0)\n"
                             "  RGMII1 REG Value(0x947)\n");
    setenv("lsw1_vq9_rgmii2_para", "0x2a1", 1);
    ZR_OP(HAL_CHIP_CompareRgmiiParamQ9)(1);
    EXPECT_EQ(dev.takeCli(), "Failed! RGMII2 ENV lsw1_vq9_rgmii2_para(0x2a1)!= RGMII2 REG Value(0x2a0)\n"
                             "  RGMII1 REG Value(0x947)\n");
}

TEST_F(CommandLineTest, CaptureSelectsThePortAndAnswersInTheCallersBlock)
{
    EXPECT_EQ(take(dev.ops().common.chipCaptureDropReasonEnable(1, 3)),
              "capture drop reason start on unit 1 port 3.");
    EXPECT_EQ(dev.calls(), (Texts{"l2sw_setAsicReg(1, 0x3825, 793) = 0", "l2sw_setAsicReg(1, 0x3826, 4) = 0",
                                  "l2sw_setAsicReg(1, 0x3827, 4091) = 0"}));
    dev.script("l2sw_getAsicReg", [](const zrsim::Call &call) {
        EXPECT_EQ(call.number(1), 14376U);
        *call.pointer<uint32_t>(2) = 0xBEEF;
        return 0U;
    });
    dev.forget();
    EXPECT_EQ(take(dev.ops().common.chipGetDropReason(2, 7)), "unit 2 port 7 drop result: 0xbeef.");
    dev.fail("sprintf_s", 1);
    EXPECT_EQ(dev.ops().common.chipCaptureDropReasonEnable(1, 3), nullptr);
    EXPECT_EQ(dev.ops().common.chipGetDropReason(1, 4), nullptr);
    EXPECT_EQ(dev.takeFailures(), (Texts{"2/4 capture drop reason start on failed. (unit = 1, port = 3)",
                                         "2/4 capture drop result start on failed. (unit = 1, port = 4)"}));
    EXPECT_EQ(zrsim::memory().liveBlocks(), 0U);
}

} // namespace
} // namespace zrtest
