// Port start-up, frame size, CPU port, port map and port enable.
#include <gmock/gmock.h>

#include "port/port.h"
#include "sim/chip/chip.h"
#include "tests/kit/device.h"

namespace
{

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using zrtest::Texts;

constexpr uint32_t kUntouched = 0xEEEEEEEE;

class PortStartUp : public zrtest::RunningDeviceTest
{
protected:
    uint32_t init(uint32_t unit = 1) { return dev.ops().port.init(unit); }
    size_t callsOf(const std::string &name) const
    {
        size_t count = 0;
        for (const zrsim::Call &call : dev.recorded())
            count += call.name == name ? 1 : 0;
        return count;
    }
    bool marked(uint32_t unit = 1) { return dev.chip(unit).registers().held(0x3DE3) == 0x55AA; }
};

TEST_F(PortStartUp, TakesFrameSizeHashingCascadePortsAndMarkerInOrder)
{
    dev.setPorts(1, LSWM_SET_CASCADE, {15, 17});
    EXPECT_EQ(init(), 0U);
    Texts milestones;
    for (const std::string &call : dev.calls())
        if (call.find("_get(") == std::string::npos && call.find("distribution") == std::string::npos)
            milestones.push_back(call.substr(0, call.find('(') + 3));
    EXPECT_THAT(milestones,
                ElementsAre("l2sw_port_mtu_set(1,", "l2sw_trunk_mode_set(1,", "l2sw_trunk_port_set(1,",
                            "l2sw_trunk_port_set(1,", "l2sw_setAsicReg(1,"));
    EXPECT_THAT(dev.calls(), Contains("l2sw_setAsicReg(1, 0x3de3, 0x55aa) = 0"));
    EXPECT_TRUE(marked());
    for (uint32_t port : {0U, 3U, 15U})
        EXPECT_FALSE(dev.chip(1).ports.enabled(port)) << "start-up enables no port";
}

TEST_F(PortStartUp, RefusesAUnitThatTheManagerDoesNotHave)
{
    for (uint32_t unit : {3U, 256U, 0xFFFFFFFFU})
        EXPECT_EQ(init(unit), 1U);
    EXPECT_THAT(dev.recorded(), IsEmpty());
}

TEST_F(PortStartUp, StopsAtAFrameSizeThatTheChipDoesNotKnow)
{
    g_lswmInfo[1].maxFrameSize = 1518;
    EXPECT_EQ(init(), 1U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("2/1 HAL PORT SetMaxFrame Zr unitId = 1, ret = 1, maxFrameSize = 1518",
                            "2/1 ZR SetMaxFrame unitId = 1, ret = 1"));
}

TEST_F(PortStartUp, StopsAtTheFirstStepThatFails)
{
    struct {
        const char *call;
        unsigned nth;
        uint32_t status;
        uint32_t answer;
        const char *lastLine;
        size_t joined; // cascade ports tried
    } cases[] = {
        {"l2sw_port_mtu_set", 1, 0xFFFFFFFF, 0xFFFFFFFF,
         "2/4294967295 ZR SetMaxFrame unitId = 1, ret = 4294967295", 0},
        {"l2sw_trunk_mode_set", 1, 22, 4, "2/4 ZR TRUNK InitMode unitId = 1, ret = 4", 0},
        {"l2sw_trunk_port_set", 2, 22, 4, "2/4 ZR TRUNK AddMember ret = 4, unitId = 1, portId = 16", 2},
        {"l2sw_setAsicReg", 1, 9, 4, "2/4 ZR kh init unitId = 1, ret = 4", 3},
    };
    dev.setPorts(1, LSWM_SET_CASCADE, {15, 16, 17});
    for (const auto &failing : cases) {
        SCOPED_TRACE(failing.call);
        dev.chip(1).assertReset();
        dev.chip(1).releaseReset();
        ASSERT_EQ(dev.ops().common.initChip(1), 0U);
        dev.forget();
        dev.fail(failing.call, failing.status, failing.nth);
        EXPECT_EQ(init(), failing.answer);
        const Texts lines = dev.takeFailures();
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), failing.lastLine);
        EXPECT_EQ(callsOf("l2sw_trunk_port_set"), failing.joined);
        EXPECT_FALSE(marked());
        dev.clearInjections();
    }
}

TEST_F(PortStartUp, PrintsTheChipLayersLineFirst)
{
    dev.fail("l2sw_setAsicReg", 9);
    EXPECT_EQ(init(), 4U);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("2/9 Port kh init failed (unit:1 ret:9)", "2/4 ZR kh init unitId = 1, ret = 4"));
    EXPECT_THAT(dev.calls(), Contains(HasSubstr("l2sw_trunk_port_set"))) << "what came before stays done";
}

TEST_F(PortStartUp, JoinsEveryCascadePortUpTo127AndNoneOfAnEmptySet)
{
    dev.setPorts(1, LSWM_SET_CASCADE, {});
    EXPECT_EQ(init(), 0U);
    EXPECT_EQ(callsOf("l2sw_trunk_port_set"), 0U);
    EXPECT_TRUE(marked());

    dev.forget();
    dev.script("l2sw_switch_port_L2P_get", [](const zrsim::Call &) { return 7; });
    dev.setPorts(1, LSWM_SET_CASCADE, {0, 31, 32, 63, 64, 96, 127});
    EXPECT_EQ(init(), 0U);
    Texts asked;
    for (const std::string &call : dev.calls())
        if (call.find("L2P") != std::string::npos)
            asked.push_back(call.substr(call.find('(')));
    EXPECT_THAT(asked, ElementsAre("(1, 0) = 7", "(1, 31) = 7", "(1, 32) = 7", "(1, 63) = 7", "(1, 64) = 7",
                                   "(1, 96) = 7", "(1, 127) = 7"));
}

TEST_F(PortStartUp, UsesTheUnitsOwnCascadeTrunk)
{
    g_lswmInfo[1].cascadeTrunkId = 0; // takes the first ports only
    dev.setPorts(1, LSWM_SET_CASCADE, {2, 16});
    EXPECT_EQ(init(), 1U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("2/1 ZR TRUNK AddMember ret = 1, unitId = 1, portId = 16"));
    EXPECT_EQ(callsOf("l2sw_trunk_port_set"), 1U);
}

// ---- frame size -----------------------------------------------------------------------------

using FrameSize = PortStartUp;

TEST_F(FrameSize, IsOneOfFourInBothDirections)
{
    const struct {
        uint32_t bytes;
        const char *set;
    } sizes[] = {{1522, "l2sw_port_mtu_set(1, 0, 0) = 0"},
                 {1536, "l2sw_port_mtu_set(1, 1, 1) = 0"},
                 {1552, "l2sw_port_mtu_set(1, 2, 2) = 0"},
                 {10000, "l2sw_port_mtu_set(1, 3, 3) = 0"}};
    for (const auto &size : sizes) {
        dev.forget();
        EXPECT_EQ(ZR_OP(ZR_PORT_SetMaxFrame)(1, size.bytes), 0U);
        uint32_t bytes = 0;
        EXPECT_EQ(dev.ops().port.getMaxFrame(1, &bytes), 0U);
        EXPECT_EQ(bytes, size.bytes);
        EXPECT_EQ(dev.calls().front(), size.set);
    }
    for (uint32_t bytes : {0U, 1521U, 1523U, 9999U, 0xFFFFFFFFU})
        EXPECT_EQ(ZR_OP(HAL_PORT_SetMaxFrameZr)(1, bytes), 1U) << bytes;
}

TEST_F(FrameSize, ThatCannotBeReadLeavesTheOutput)
{
    const std::string line = "2/4 HAL PORT GetMaxFrame Zr unitId = 1, ret = 4";
    uint32_t bytes = kUntouched;
    dev.script("l2sw_port_mtu_get", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(1) = 4;
        return 0;
    });
    EXPECT_EQ(dev.ops().port.getMaxFrame(1, &bytes), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre(line));
    dev.clearInjections();
    dev.fail("l2sw_port_mtu_get", 22);
    EXPECT_EQ(dev.ops().port.getMaxFrame(1, &bytes), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre(line));
    EXPECT_EQ(bytes, kUntouched);
    dev.forget();
    EXPECT_EQ(dev.ops().port.getMaxFrame(1, nullptr), 2U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_THAT(dev.takeFailures(), ElementsAre("2/2 HAL PORT GetMaxFrame Zr unitId = 1, ret = 2"));
}

// ---- CPU port, port map, enable -------------------------------------------------------------

TEST_F(PortStartUp, CpuPortIsChosenInThreeStepsAndStopsAtAFailedOne)
{
    EXPECT_EQ(dev.ops().port.cpuInit(1, 16, 7), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_cpu_tagPort_set(1, 16, 0) = 0", "l2sw_cpu_enable_set(1, 7) = 0",
                                         "l2sw_cpu_tag_ethertype_set(1, 0x8874) = 0"));
    const struct {
        const char *call;
        const char *line;
        size_t made;
    } cases[] = {
        {"l2sw_cpu_tagPort_set", "2/22 Config Cpu port failed(unit = 1, portId = 16, ret = 22).", 1},
        {"l2sw_cpu_enable_set", "2/22 Config trap to cpu add tag failed(unit = 1, ret = 22).", 2},
        {"l2sw_cpu_tag_ethertype_set", "2/22 Config cpu ethernet type failed(unit = 1, ret = 22).", 3},
    };
    for (const auto &failing : cases) {
        dev.forget();
        dev.fail(failing.call, 22);
        EXPECT_EQ(dev.ops().port.cpuInit(1, 16, 0), 4U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre(failing.line));
        EXPECT_EQ(dev.calls().size(), failing.made);
        dev.clearInjections();
    }
}

TEST_F(PortStartUp, ValidPortMapIsTheChipsLogicalPorts)
{
    uint32_t map = kUntouched;
    dev.fail("l2sw_switch_logPortMask_get", 0xFFFFFFFF);
    EXPECT_EQ(ZR_OP(HAL_PORT_GetValidPortMapZr)(2, &map), 4U);
    EXPECT_EQ(map, kUntouched);
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("2/4294967295 Zr Port Get Valid PortMap failed (ret = -1, unit = 2)"));
    dev.clearInjections();
    EXPECT_EQ(ZR_OP(HAL_PORT_GetValidPortMapZr)(2, &map), 0U);
    EXPECT_EQ(map, 0x3801FU);
    EXPECT_EQ(ZR_OP(HAL_PORT_GetValidPortMapZr)(2, nullptr), 2U);
}

TEST_F(PortStartUp, EnablePassesTheValueAndReportsFailures)
{
    EXPECT_EQ(dev.ops().port.setEnable(1, 3, 7), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_port_adminEnable_set(1, 3, 7) = 0"));
    uint32_t enable = kUntouched;
    dev.script("l2sw_port_adminEnable_get", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(2) = 5;
        return 0;
    });
    EXPECT_EQ(dev.ops().port.getEnable(1, 3, &enable), 0U);
    EXPECT_EQ(enable, 5U) << "the chip's own value";
    dev.clearInjections();

    dev.fail("l2sw_port_adminEnable_set", 22);
    dev.fail("l2sw_port_adminEnable_get", 23);
    EXPECT_EQ(dev.ops().port.setEnable(1, 3, 1), 4U);
    EXPECT_EQ(dev.ops().port.getEnable(2, 4, &enable), 4U);
    dev.forget();
    EXPECT_EQ(dev.ops().port.getEnable(2, 4, nullptr), 2U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("2/22 Port set Enable failed(ret = 22, unit = 1, portId = 3, enable = 1).",
                            "2/23 Port get enable failed(ret = 23, unit = 2, portId = 4).",
                            "2/2 get enable failed reason null pointer (unit = 2, port = 4)."));
}

TEST_F(PortStartUp, EnableDecidesWhetherALinkComesUp)
{
    dev.chip(1).ports.plug(3, true);
    uint32_t link = kUntouched;
    for (uint32_t enable : {1U, 0U, 1U}) {
        EXPECT_EQ(dev.ops().port.setEnable(1, 3, enable), 0U);
        EXPECT_EQ(dev.ops().port.getLinkStatus(1, 3, &link), 0U);
        EXPECT_EQ(link, enable);
        EXPECT_EQ(ZR_OP(ZR_PORT_GetEnable)(1, 3, &link), 0U);
        EXPECT_EQ(link, enable);
    }
    dev.chip(1).ports.plug(3, false);
}

} // namespace
