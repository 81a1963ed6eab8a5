#include "port/port.h"

#include <gmock/gmock.h>

#include "sim/chip/chip.h"
#include "tests/kit/device.h"

using testing::ElementsAre;

namespace zrtest
{
namespace
{

// Unit 1 with ports 0 to 4, port 4 the reserved one.
class Isolation : public RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        dev.setPorts(1, LSWM_SET_VALID, {0, 1, 2, 3, 4});
        g_lswmInfo[1].reservedPort = 4;
        chipPorts(0x1F);
    }
    void chipPorts(uint32_t mask)
    {
        dev.script("l2sw_switch_logPortMask_get", [mask](const zrsim::Call &call) {
            *call.pointer<uint32_t>(1) = mask;
            return 0U;
        });
    }
    void permit(uint32_t port, uint32_t map) { dev.chip(1).isolation.write(port, map); }
    uint32_t permitted(uint32_t port)
    {
        uint32_t map = 0;
        dev.chip(1).isolation.read(port, map);
        return map;
    }
    std::vector<uint32_t> permitMaps()
    {
        return {permitted(0), permitted(1), permitted(2), permitted(3), permitted(4)};
    }
    const ZrPortOps &port() { return dev.ops().port; }
};

TEST_F(Isolation, IsolateMapIsTheValidPortsThatAreNotPermitted)
{
    const struct {
        uint32_t valid;
        uint32_t permit;
        uint32_t isolate;
    } cases[] = {
        {0x1F, 0x07, 0x18}, {0x1F, 0xFFFFFFFF, 0}, {0x8000001F, 0x1, 0x8000001E}, {0x1F, 0, 0x1F}, {0, 0, 0},
    };
    for (const auto &maps : cases) {
        chipPorts(maps.valid);
        permit(2, maps.permit);
        uint32_t isolate = 0xEEEE;
        EXPECT_EQ(port().getIsolateMap(1, 2, &isolate), 0U);
        EXPECT_EQ(isolate, maps.isolate) << maps.permit;
    }
}

TEST_F(Isolation, IsolatingTakesPortsFromThePermitMapAndReleasingAddsThem)
{
    const struct {
        uint32_t permit;
        uint32_t map;
        uint32_t isolate;
        uint32_t written;
    } cases[] = {
        {0xFF, 0x10, 1, 0x0F},    {0x03, 0x10, 0, 0x13},
        {0x03, 0x10, 2, 0x13},    {0x1F, 0, 1, 0x1F},
        {0xFF, 0, 1, 0x1F}, // ports that are not valid go, even when nothing is isolated
        {0x01, 0xFFFFFFFF, 1, 0}, {0x01, 0xFFFF0000, 0xFFFFFFFF, 0xFFFF0001},
    };
    for (const auto &change : cases) {
        permit(2, change.permit);
        EXPECT_EQ(port().setIsolate(1, 2, &change.map, change.isolate), 0U);
        EXPECT_EQ(permitted(2), change.written) << change.permit << " " << change.map << " " << change.isolate;
    }
}

TEST_F(Isolation, SettingReadsWhatItNeedsAndNoMore)
{
    const uint32_t map = 0x2;
    permit(3, 0x1F);
    ASSERT_EQ(port().setIsolate(1, 3, &map, 1), 0U);
    ASSERT_EQ(port().setIsolate(1, 3, &map, 0), 0U);
    EXPECT_THAT(dev.calls(),
                ElementsAre("l2sw_port_isolation_get(1, 3, &31) = 0", "l2sw_switch_logPortMask_get(1, &31) = 0",
                            "l2sw_port_isolation_set(1, 3, 29) = 0", "l2sw_port_isolation_get(1, 3, &29) = 0",
                            "l2sw_port_isolation_set(1, 3, 31) = 0"));
}

TEST_F(Isolation, AllPortsKeepTheWayToThemselvesAndToTheReservedPort)
{
    for (uint32_t member = 0; member < 5; ++member)
        permit(member, 0x1F);
    ASSERT_EQ(port().setAllIsolate(1, 1), 0U);
    EXPECT_THAT(permitMaps(), ElementsAre(0x11, 0x12, 0x14, 0x18, 0x1F));
    ASSERT_EQ(port().setAllIsolate(1, 0), 0U);
    EXPECT_THAT(permitMaps(), ElementsAre(0x1F, 0x1F, 0x1F, 0x1F, 0x1F));

    // Releasing gives no port itself or the reserved port.
    for (uint32_t member = 0; member < 5; ++member)
        permit(member, 0);
    ASSERT_EQ(port().setAllIsolate(1, 7), 0U);
    EXPECT_THAT(permitMaps(), ElementsAre(0x0E, 0x0D, 0x0B, 0x07, 0));

    dev.fail("l2sw_port_isolation_set", 22, 3);
    EXPECT_EQ(port().setAllIsolate(1, 1), LSW_CHIP_FAILED);
    EXPECT_THAT(permitMaps(), ElementsAre(0, 0, 0x0B, 0x07, 0)) << "the first failure ends it";
    dev.takeFailures();
}

TEST_F(Isolation, TheManagersSetSaysWhichPortsChangeAndTheChipWhichBits)
{
    dev.setPorts(1, LSWM_SET_VALID, {1, 15}); // 15 is not among the chip's ports here
    permit(0, 0x1F);
    permit(1, 0x1F);
    permit(15, 0x801F);
    ASSERT_EQ(port().setAllIsolate(1, 1), 0U);
    EXPECT_EQ(permitted(0), 0x1FU);
    EXPECT_EQ(permitted(1), 0x12U);
    EXPECT_EQ(permitted(15), 0x10U);

    dev.forget();
    dev.setPorts(1, LSWM_SET_VALID, {4}); // the reserved port alone
    ASSERT_EQ(port().setAllIsolate(1, 1), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_switch_logPortMask_get(1, &31) = 0"));
}

// The chip has no such ports; their bits are those of ports 0 to 31.
TEST_F(Isolation, PortsBeyondAMapShareItsBits)
{
    dev.setPorts(1, LSWM_SET_VALID, {33, 127});
    g_lswmInfo[1].reservedPort = 36;
    dev.script("l2sw_port_isolation_get", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(2) = 0x1F;
        return 0U;
    });
    dev.script("l2sw_port_isolation_set", [](const zrsim::Call &) { return 0U; });
    ASSERT_EQ(port().setAllIsolate(1, 1), 0U);
    EXPECT_THAT(dev.calls(), testing::IsSupersetOf({"l2sw_port_isolation_set(1, 33, 18) = 0",
                                                    "l2sw_port_isolation_set(1, 127, 16) = 0"}));
}

} // namespace
} // namespace zrtest
