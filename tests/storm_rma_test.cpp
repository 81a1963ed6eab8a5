// Storm control, and reserved multicast addresses.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/manager.h"
#include "qos/rma.h"
#include "qos/stormctl.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr uint32_t kUnread = 0xDEADBEEF; // the record's first field

class StormTest : public RunningDeviceTest
{
protected:
    uint32_t set(uint32_t port, uint32_t packetType, uint32_t enable, uint32_t meter, uint32_t unit = 1)
    {
        const LswmStormControl control{kUnread, packetType, enable, meter};
        return dev.ops().stormctl.set(unit, port, &control);
    }
    void program(uint32_t unit, uint32_t meter, uint32_t mode, uint32_t rate)
    {
        const LswmCar car{mode, rate, 5};
        ASSERT_EQ(dev.ops().hsec.configCar(static_cast<uint8_t>(unit), meter, &car), 0U);
        dev.forget();
    }
};

TEST_F(StormTest, BindsThePacketTypesToTheChipsStormTypes)
{
    const std::pair<uint32_t, uint32_t> types[] = {{0, 0}, {1, 1}, {2, 3}};
    for (auto [packetType, chipType] : types) {
        program(1, 9, 1, 5000);
        EXPECT_EQ(set(4, packetType, 1, 9), 0U);
        EXPECT_THAT(
            dev.calls(),
            ElementsAre("l2sw_rate_shareMeter_get(1, 9, &1, &5000, &1) = 0",
                        "l2sw_rate_shareMeterBucket_set(1, 9, 5000) = 0",
                        "l2sw_rate_stormControlEnable_set(1, 1) = 0",
                        fmt::format("l2sw_rate_stormControlMeterIdx_set(1, 4, {}, 9) = 0", chipType),
                        fmt::format("l2sw_rate_stormControlPortEnable_set(1, 4, {}, 1) = 0", chipType)));
    }
    // Switching a port off still switches the unit on and binds the meter.
    EXPECT_EQ(set(3, 2, 0, 7, 2), 0U);
    EXPECT_TRUE(dev.chip(2).storm.enabled());
    EXPECT_EQ(dev.chip(2).storm.binding(3, 3).meter, 7U);
    EXPECT_FALSE(dev.chip(2).storm.binding(3, 3).enabled);
}

TEST_F(StormTest, TheBucketFollowsTheMetersRateWithinItsLimits)
{
    const std::pair<uint32_t, uint32_t> buckets[] = {
        {0, 1000},          {10, 1000},         {999, 1000},          {1000, 1000},
        {1001, 1001},       {5000, 5000},       {2097150, 2097150},   {2097151, 2097151},
        {2097152, 2097151}, {3000000, 2097151}, {0xFFFFFFFF, 2097151}};
    for (auto [rate, bucket] : buckets) {
        program(1, 63, 1, rate);
        EXPECT_EQ(ZR_OP(HAL_STORMCTL_AdaptBucketSizeZr)(1, 63), 0U);
        EXPECT_EQ(dev.chip(1).meters.find(63)->bucket, bucket) << rate;
    }
    program(1, 63, 0, 80000);
    EXPECT_EQ(ZR_OP(HAL_STORMCTL_AdaptBucketSizeZr)(1, 63), 0U);
    EXPECT_EQ(dev.chip(1).meters.find(63)->bucket, 10000U) << "the rate in the chip's unit";
}

TEST_F(StormTest, TheGlobalPortTouchesNothingAndIsTracedAsAnEvent)
{
    for (uint32_t level : {0, 1, 2, 3}) {
        zrsim::console().traceLevel(level);
        EXPECT_EQ(set(0xFFFFFFFF, 9, 1, 9), 0U);
        EXPECT_EQ(dev.takeTraces(), level >= 2 ? Texts{"7 Global port is invalid for zr."} : Texts{}) << level;
    }
    EXPECT_EQ(dev.ops().stormctl.set(1, 0xFFFFFFFF, nullptr), 0U);
    EXPECT_EQ(dev.ops().stormctl.set(1, 0xFFFFFFFE, nullptr), LSW_NULL_POINTER);
    dev.takeFailures();
    EXPECT_THAT(dev.calls(), IsEmpty());
}

using RmaTest = RunningDeviceTest;

TEST_F(RmaTest, InitialisationTrapsLldpThenEveryType)
{
    Texts expected = {"l2sw_trap_lldpEnable_set(1, 1) = 0"};
    for (uint32_t type = 0; type <= 50; ++type)
        expected.push_back(fmt::format("l2sw_trap_rmaAction_set(1, {}, 2) = 0", type));
    EXPECT_EQ(dev.ops().mc.init(1), 0U);
    EXPECT_EQ(dev.calls(), expected);

    const zrsim::MacAddress bridge = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
    const zrsim::MacAddress ordinary = {0x01, 0x00, 0x5E, 0x00, 0x00, 0x0E};
    EXPECT_EQ(dev.chip(1).rma.decide(bridge, 0).action, zrsim::Rma::kToHost);
    EXPECT_EQ(dev.chip(1).rma.decide(ordinary, 0).action, zrsim::Rma::kSwitch);
}

TEST_F(RmaTest, TypesBeyondTheLastStandForTheLast)
{
    EXPECT_EQ(ZR_OP(HAL_RMA_ActionSet)(1, 51, 0), 1U);
    for (uint32_t action : {0, 1, 2}) {
        EXPECT_EQ(ZR_OP(HAL_RMA_ActionSet)(1, 50, action), 0U);
        EXPECT_EQ(dev.chip(1).rma.action(50), action);
    }
    for (auto [type, chipType] : {std::pair{0U, 0U}, {50U, 50U}, {51U, 51U}, {52U, 51U}, {0xFFFFFFFFU, 51U}}) {
        uint32_t found = 99;
        ZR_OP(HAL_RMA_RmaTypeToZrType)(type, &found);
        EXPECT_EQ(found, chipType);
    }
}

TEST_F(RmaTest, OnlyOneSwitchesLldpTrappingOn)
{
    const zrsim::MacAddress lldp = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x0E};
    for (auto [enable, on] : {std::pair{1, true}, {2, false}, {1, true}, {-1, false}, {1, true}, {0, false}}) {
        EXPECT_EQ(ZR_OP(HAL_RMA_LldpEnableSet)(0, enable), 0U);
        EXPECT_EQ(dev.chip(0).rma.decide(lldp, 0x88CC).action == zrsim::Rma::kToHost, on) << enable;
    }
}

TEST_F(RmaTest, TheTypeMapIsExportedWholeAndNumbersTypesAsTheManagerDoes)
{
    const auto *map = static_cast<const uint32_t *>(dev.symbol("g_rmaAddrTypeMap"));
    ASSERT_NE(map, nullptr);
    for (uint32_t type = 0; type < 52; ++type)
        EXPECT_EQ(map[type], type);
}

} // namespace
} // namespace zrtest
