// Meters: what is programmed into the chip and read back, hit counters.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/manager.h"
#include "qos/hsec.h"
#include "records/acl_records.h"
#include "sim/board/clock.h"
#include "tests/kit/device.h"
#include "tests/kit/random.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kUntouched = 0xEEEEEEEE;

class CarTest : public RunningDeviceTest
{
protected:
    const ZrHsecOps &hsec = dev.ops().hsec;
    uint32_t program(const LswmCar &car, uint32_t meter = 7) { return hsec.configCar(1, meter, &car); }
};

TEST_F(CarTest, RatesAndModesAreConvertedBothWays)
{
    const struct {
        uint32_t mode, rate, chipMode, chipRate, modeBack, rateBack;
    } cases[] = {
        {0, 0, 0, 0, 0, 0},
        {0, 1, 0, 1, 0, 8},
        {0, 8, 0, 1, 0, 8},
        {0, 9, 0, 2, 0, 16},
        {7, 1000, 0, 125, 0, 1000},
        {1, 1000, 1, 1000, 1, 1000},
        {1, 0xFFFFFFFF, 1, 0xFFFFFFFF, 1, 0xFFFFFFFF},
        {0, 0xFFFFFFF8, 0, 0x1FFFFFFF, 0, 0xFFFFFFF8},
        {0, 0xFFFFFFF9, 0, 0, 0, 0}, // rounding up wraps in 32 bits
        {0xFFFFFFFF, 0xFFFFFFFF, 0, 0, 0, 0},
    };
    for (const auto &c : cases) {
        dev.forget();
        EXPECT_EQ(program({c.mode, c.rate, 1000}), 0U);
        EXPECT_THAT(dev.calls(), ElementsAre(fmt::format("l2sw_rate_shareMeter_set(1, 7, {}, {}, 1) = 0",
                                                         c.chipMode, zrsim::show(c.chipRate)),
                                             "l2sw_rate_shareMeterBucket_set(1, 7, 2400) = 0"));
        LswmCar car{kUntouched, kUntouched, kUntouched};
        EXPECT_EQ(hsec.getCar(1, 7, &car), 0U);
        EXPECT_EQ(car.mode, c.modeBack);
        EXPECT_EQ(car.rate, c.rateBack);
        EXPECT_EQ(car.bucket, 2400U) << "the chip's value";
    }
    uint32_t rate = 0;
    uint32_t mode = 0;
    dev.script("l2sw_rate_shareMeter_get", [](const zrsim::Call &call) {
        *call.pointer<uint32_t>(2) = 2;
        *call.pointer<uint32_t>(3) = 0x20000001;
        return 0;
    });
    EXPECT_EQ(ZR_OP(HAL_HSEC_GetSharedMeterZr)(1, 7, &rate, &mode), 0U);
    EXPECT_EQ(mode, 0U) << "a chip mode other than 1";
    EXPECT_EQ(rate, 8U) << "32 bits";
}

// floor(2.4 b) = 2b + floor(2b / 5), without the product that the library forms.
TEST_F(CarTest, BucketsAreConvertedExactlyOverAll32Bits)
{
    uint32_t programmed = 0;
    dev.script("l2sw_rate_shareMeterBucket_set", [&](const zrsim::Call &call) {
        programmed = call.number(2);
        return 0;
    });
    dev.record(false);
    auto check = [&](uint32_t bucket) {
        const uint64_t exact = 2 * uint64_t{bucket} + 2 * uint64_t{bucket} / 5;
        programmed = kUntouched;
        ASSERT_EQ(program({1, 1, bucket}), 0U);
        ASSERT_EQ(programmed, exact > 2097151 ? 2097151 : exact) << bucket;
    };
    for (uint32_t bucket : {0U, 1U, 2U, 3U, 4U, 5U, 1000U, 873812U, 873813U, 873814U, 1000000U, 0x15555555U,
                            0x15555556U, 0x6AAAAAAAU, 0x6AAAAAABU, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        check(bucket);
    for (uint32_t bucket = 873000; bucket < 874500; ++bucket)
        check(bucket);
    ZR_RANDOM(random);
    for (unsigned i = 0; i < 20000; ++i)
        check(random() >> random() % 32);
}

// What was programmed or read before a failure stays.
TEST_F(CarTest, RateAndBucketAreTwoSteps)
{
    ASSERT_EQ(program({0, 80, 10}), 0U);
    dev.fail("l2sw_rate_shareMeter_set", 22);
    EXPECT_EQ(program({0, 800, 100}), LSW_CHIP_FAILED);
    EXPECT_EQ(dev.chip(1).meters.find(7)->bucket, 24U);
    dev.clearInjections();
    dev.fail("l2sw_rate_shareMeterBucket_set", 22);
    EXPECT_EQ(program({0, 800, 100}), LSW_CHIP_FAILED);
    EXPECT_EQ(dev.chip(1).meters.find(7)->rate, 100U);
    LswmCar car{kUntouched, kUntouched, kUntouched};
    dev.fail("l2sw_rate_shareMeterBucket_get", 22);
    EXPECT_EQ(hsec.getCar(1, 7, &car), LSW_CHIP_FAILED);
    EXPECT_EQ(car.mode, 0U);
    EXPECT_EQ(car.rate, 800U);
    EXPECT_EQ(car.bucket, kUntouched);
    dev.clearInjections();
    EXPECT_EQ(hsec.delCar(1, 7), 0U);
    EXPECT_EQ(dev.chip(1).meters.find(7)->rate, 100U) << "deleting leaves the chip alone";
}

TEST_F(CarTest, AMeterLetsThroughItsRateAndItsBurst)
{
    auto passed = [&](uint32_t meter, uint32_t bytes) {
        uint32_t frames = 0;
        while (dev.chip(1).meters.admit(meter, bytes))
            ++frames;
        return frames;
    };
    auto second = [&](uint32_t meter, uint32_t bytes) {
        uint32_t frames = 0;
        for (int i = 0; i < 100; ++i) {
            zrsim::boardClock().ns += zrsim::Clock::kSecond / 100;
            frames += passed(meter, bytes);
        }
        return frames;
    };
    ASSERT_EQ(program({0, 1000, 1000}), 0U); // 1000 kbit/s, 2400 bytes
    EXPECT_EQ(passed(7, 500), 2400U / 500);
    EXPECT_EQ(second(7, 500), (400U + 125'000U) / 500);
    ASSERT_EQ(program({1, 300, 10}, 8), 0U); // 300 frames/s, 24 frames
    EXPECT_EQ(passed(8, 64), 24U);
    EXPECT_EQ(second(8, 64), 300U);
}

TEST_F(CarTest, TheHitCounterOfARuleIsWidened)
{
    ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(1, 96), 0U);
    ASSERT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(1, 32), 0U);
    ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(1, 20, 5, 1), 0U);
    dev.script("l2sw_stat_logging_counter_get", [](const zrsim::Call &call) {
        EXPECT_EQ(call.number(0), 1U);
        EXPECT_EQ(call.number(1), 5U);
        *call.pointer<uint32_t>(2) = 0xFFFFFFFF;
        return 0;
    });
    LswmCounter counter{77, 77};
    EXPECT_EQ(hsec.getStat(1, 20, &counter), 0U);
    EXPECT_EQ(counter.count, 0xFFFFFFFFU);
    EXPECT_EQ(counter.second, 0U);

    EXPECT_EQ(hsec.getStat(1, 21, &counter), LSW_CHIP_FAILED) << "a rule without a counter";
}

} // namespace
} // namespace zrtest
