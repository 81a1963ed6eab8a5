// Port start-up, frame size, CPU port, port map and port enable.
#include <gmock/gmock.h>

#include "port/port.h"
#include "sim/chip/chip.h"
#include "tests/kit/device.h"

namespace
{

using ::testing::Contains;
using ::testing::ElementsAre;
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
        EXPECT_EQ(ZR_OP(HAL_PORT_SetMaxFrameZr)(1, bytes), LSW_INVALID_ARGUMENT) << bytes;
    dev.script("l2sw_port_mtu_get", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(1) = 4;
        return 0;
    });
    uint32_t bytes = kUntouched;
    EXPECT_EQ(dev.ops().port.getMaxFrame(1, &bytes), LSW_CHIP_FAILED) << "an index that is no size";
    EXPECT_EQ(bytes, kUntouched);
    dev.takeFailures();

    g_lswmInfo[1].maxFrameSize = 1518;
    dev.forget();
    EXPECT_EQ(init(), LSW_INVALID_ARGUMENT);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_THAT(dev.takeFailures(),
                ElementsAre("2/1 HAL PORT SetMaxFrame Zr unitId = 1, ret = 1, maxFrameSize = 1518",
                            "2/1 ZR SetMaxFrame unitId = 1, ret = 1"));
}

TEST_F(PortStartUp, ValuesPassUnchanged)
{
    EXPECT_EQ(dev.ops().port.cpuInit(1, 16, 7), 0U);
    EXPECT_EQ(dev.ops().port.setEnable(1, 3, 7), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_cpu_tagPort_set(1, 16, 0) = 0", "l2sw_cpu_enable_set(1, 7) = 0",
                                         "l2sw_cpu_tag_ethertype_set(1, 0x8874) = 0",
                                         "l2sw_port_adminEnable_set(1, 3, 7) = 0"));
    uint32_t enable = kUntouched;
    dev.script("l2sw_port_adminEnable_get", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(2) = 5;
        return 0;
    });
    EXPECT_EQ(dev.ops().port.getEnable(1, 3, &enable), 0U);
    EXPECT_EQ(enable, 5U) << "the chip's own value";
    uint32_t map = kUntouched;
    EXPECT_EQ(ZR_OP(HAL_PORT_GetValidPortMapZr)(2, &map), 0U);
    EXPECT_EQ(map, 0x3801FU);
}

} // namespace
