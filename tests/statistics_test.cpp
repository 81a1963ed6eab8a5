#include "port/port.h"

#include <gmock/gmock.h>

#include "sim/chip/chip.h"
#include "tests/kit/device.h"

using testing::ElementsAre;

namespace zrtest
{
namespace
{

constexpr uint64_t kSentinel = 0xEEEEEEEEEEEEEEEE;

LswmPortStatistics filled(uint64_t value)
{
    LswmPortStatistics record;
    for (uint64_t &counter : record.counter)
        counter = value;
    return record;
}

class Statistics : public RunningDeviceTest
{
protected:
    uint32_t get(uint32_t unit, uint32_t port) { return dev.ops().port.getStatistics(unit, port, &record); }
    uint32_t clear(uint32_t unit, uint32_t port) { return dev.ops().port.clearStatistics(unit, port); }
    uint64_t odropTotal(uint32_t unit, uint32_t port)
    {
        EXPECT_EQ(get(unit, port), 0U);
        return record.counter[8];
    }
    // Register 0x3213 reads `value`, with the status of the read.
    void odropReads(uint32_t value, uint32_t status = 0)
    {
        dev.script("l2sw_getAsicReg", [value, status](const zrsim::Call &call) {
            EXPECT_EQ(call.number(1), 0x3213U);
            *call.pointer<uint32_t>(2) = value;
            return status;
        });
    }
    LswmPortStatistics record = filled(kSentinel);
};

// Chip word w holds 1000 + w: every manager counter tells which words it came from.
TEST_F(Statistics, EveryCounterComesFromItsWords)
{
    for (uint32_t word = 0; word < 66; ++word)
        dev.chip(1).counters.set(3, word, 1000 + word);
    dev.chip(1).counters.drop(3, 9);
    ASSERT_EQ(get(1, 3), 0U);
    std::string counters;
    for (uint32_t counter = 0; counter < 80; ++counter)
        if (record.counter[counter] != 0)
            counters += std::to_string(counter) + ":" + std::to_string(record.counter[counter]) + " ";
    EXPECT_EQ(counters,
              "0:4299262264296 1:1008 3:1032 5:4393751544830 6:1033 8:9 11:3133 12:3102 14:1009 17:1012 "
              "18:1006 19:1014 22:1015 25:1016 28:1017 31:1018 40:1013 41:1007 49:1002 51:1025 "
              "53:1026 54:1027 55:1029 58:1003 60:1004 61:1030 63:1008 64:1062 65:1063 67:1033 "
              "68:1034 69:1035 ");

    // The translation alone carries word 64 and leaves the counters without a source alone.
    SdkPortCounters chip{};
    chip.word[64] = 1064;
    record = filled(kSentinel);
    ZR_OP(HAL_PORT_TranslateHwStatZr)(&chip, &record);
    EXPECT_EQ(record.counter[8], 1064U);
    EXPECT_EQ(record.counter[2], kSentinel);
}

TEST_F(Statistics, TotalsWrapAt32BitsAndWideCountersDoNot)
{
    const struct {
        uint32_t word;
        uint32_t value;
    } words[] = {{62, 0xFFFFFFFF}, {63, 1}, {8, 1},           {34, 0x80000000}, {35, 0x80000000},
                 {33, 3},          {1, 1},  {22, 0xFFFFFFFE}, {23, 0x80000000}};
    for (const auto &set : words)
        dev.chip(1).counters.set(2, set.word, set.value);
    ASSERT_EQ(get(1, 2), 0U);
    const uint64_t *counter = record.counter;
    EXPECT_THAT((std::vector{counter[11], counter[63], counter[64], counter[65], counter[12]}),
                ElementsAre(1, 1, 4294967295, 1, 3));
    EXPECT_EQ(counter[0], 4294967296U);
    EXPECT_EQ(counter[5], 9223372041149743102U);
}

TEST_F(Statistics, OdropAccumulatesOverTheChipsWrap)
{
    const struct {
        uint32_t dropped; // since the reading before
        uint64_t total;
    } steps[] = {
        {100, 100},   {200, 300},      {0, 300},    {64700, 65000}, // the chip shows 65000
        {636, 65635},                                               // the chip shows 100: 535 to 65535, and 100
        {0, 65635},   {65435, 131070}, {1, 131070},                 // 65535, then 0
        {7, 131077},
    };
    for (const auto &step : steps) {
        dev.chip(1).counters.drop(4, step.dropped);
        EXPECT_EQ(odropTotal(1, 4), step.total) << "after " << step.dropped;
    }
    ASSERT_EQ(clear(1, 4), 0U);
    dev.chip(1).counters.drop(4, 7);
    EXPECT_EQ(odropTotal(1, 4), 7U);
}

TEST_F(Statistics, OdropTotalIs64BitsWide)
{
    odropReads(0xFFFFFFFF);
    EXPECT_EQ(odropTotal(1, 0), 4294967295U);
    odropReads(5);
    EXPECT_EQ(odropTotal(1, 0), 65540U);
    odropReads(0xFFFFFFFF);
    EXPECT_EQ(odropTotal(1, 0), 4295032830U);
}

TEST_F(Statistics, APortNumberHasOneOdropCountOnAllUnits)
{
    dev.chip(0).counters.drop(3, 500);
    EXPECT_EQ(odropTotal(0, 3), 500U);
    dev.chip(1).counters.drop(3, 600);
    EXPECT_EQ(odropTotal(1, 3), 600U);
    EXPECT_EQ(odropTotal(1, 2), 0U);
    ASSERT_EQ(clear(2, 3), 0U);
    EXPECT_EQ(odropTotal(1, 3), 600U); // unit 1's chip was not cleared
}

TEST_F(Statistics, CommandsNameThePortAndTheUnit)
{
    ASSERT_EQ(get(1, 0), 0U);
    ASSERT_EQ(get(2, 17), 0U);
    ASSERT_EQ(clear(1, 4), 0U);
    std::vector<std::string> shortened;
    for (const std::string &call : dev.calls())
        shortened.push_back(call.substr(0, call.find(", 264:")));
    EXPECT_THAT(shortened,
                ElementsAre("l2sw_stat_port_getAll(1, 0", "l2sw_setAsicReg(1, 0x3208, 0x4181) = 0",
                            "l2sw_getAsicReg(1, 0x3213, &0) = 0", "l2sw_stat_port_getAll(2, 17",
                            "l2sw_setAsicReg(2, 0x3208, 0x4291) = 0", "l2sw_getAsicReg(2, 0x3213, &0) = 0",
                            "l2sw_stat_port_reset(1, 4) = 0", "l2sw_setAsicReg(1, 0x3208, 0x41c2) = 0"));
    dev.script("l2sw_stat_port_getAll", [](const zrsim::Call &) { return 0U; });
    dev.forget();
    ASSERT_EQ(get(1, 31), 0U); // the last one that the tables hold
    EXPECT_EQ(dev.calls()[1], "l2sw_setAsicReg(1, 0x3208, 0x4371) = 0");
}

TEST_F(Statistics, UnreadableOdropCountAddsNothingAndFailsNothing)
{
    dev.chip(1).counters.drop(1, 40);
    dev.chip(1).counters.set(1, 2, 6);
    ASSERT_EQ(odropTotal(1, 1), 40U);
    odropReads(0x1234, 0xFFFFFFFF); // writes its output and fails all the same
    record = filled(kSentinel);
    EXPECT_EQ(odropTotal(1, 1), 40U);
    EXPECT_EQ(record.counter[49], 6U);
    dev.clearInjections();
    dev.chip(1).counters.drop(1, 5);
    EXPECT_EQ(odropTotal(1, 1), 45U);
}

TEST_F(Statistics, ClearZeroesTheLibrarysCountEvenWhenTheChipFails)
{
    for (const char *call : {"l2sw_stat_port_reset", "l2sw_setAsicReg"}) {
        dev.chip(1).counters.drop(2, 100);
        ASSERT_EQ(get(1, 2), 0U);
        dev.fail(call, 22);
        EXPECT_EQ(clear(1, 2), LSW_CHIP_FAILED) << call;
        dev.clearInjections();
        dev.takeFailures();
        odropReads(3);
        EXPECT_EQ(odropTotal(1, 2), 3U) << "a last reading was left";
        dev.clearInjections();
    }
}

} // namespace
} // namespace zrtest
