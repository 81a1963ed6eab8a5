#include "port/port_stat.h"

#include <gmock/gmock.h>

#include <cstring>
#include <map>

#include "sim/chip/chip.h"
#include "tests/kit/device.h"

using testing::ElementsAre;
using testing::IsEmpty;

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
    SdkPortCounters chip{};
    for (uint32_t word = 0; word < 66; ++word)
        chip.word[word] = 1000 + word;
    const std::map<uint32_t, uint64_t> expected = {
        {0, 4299262264296 /* 1001 * 2^32 + 1000 */},
        {1, 1008},
        {3, 1032},
        {5, 4393751544830 /* 1023 * 2^32 + 1022 */},
        {6, 1033},
        {8, 1064},
        {11, 3133 /* 1062 + 1063 + 1008 */},
        {12, 3102 /* 1034 + 1035 + 1033 */},
        {14, 1009},
        {17, 1012},
        {18, 1006},
        {19, 1014},
        {22, 1015},
        {25, 1016},
        {28, 1017},
        {31, 1018},
        {40, 1013},
        {41, 1007},
        {49, 1002},
        {51, 1025},
        {53, 1026},
        {54, 1027},
        {55, 1029},
        {58, 1003},
        {60, 1004},
        {61, 1030},
        {63, 1008},
        {64, 1062},
        {65, 1063},
        {67, 1033},
        {68, 1034},
        {69, 1035},
    };
    ZR_OP(HAL_PORT_TranslateHwStatZr)(&chip, &record);
    for (uint32_t counter = 0; counter < 80; ++counter) {
        const auto named = expected.find(counter);
        EXPECT_EQ(record.counter[counter], named == expected.end() ? kSentinel : named->second) << counter;
    }
}

TEST_F(Statistics, ReadingFillsTheWholeRecordAndPutsTheOdropCountInPlace)
{
    zrsim::PortCounters &counters = dev.chip(1).counters;
    counters.set(3, 64, 77); // replaced by the odrop count
    counters.set(3, 30, 5);
    counters.drop(3, 9);
    ASSERT_EQ(get(1, 3), 0U);
    for (uint32_t counter = 0; counter < 80; ++counter)
        EXPECT_EQ(record.counter[counter], counter == 8 ? 9U : counter == 61 ? 5U : 0U) << counter;
}

TEST_F(Statistics, TotalsWrapAt32BitsAndWideCountersDoNot)
{
    zrsim::PortCounters &counters = dev.chip(1).counters;
    counters.set(2, 62, 0xFFFFFFFF);
    counters.set(2, 63, 1);
    counters.set(2, 8, 1);
    counters.set(2, 34, 0x80000000);
    counters.set(2, 35, 0x80000000);
    counters.set(2, 33, 3);
    counters.set(2, 1, 1);           // 2^32
    counters.set(2, 22, 0xFFFFFFFE); // the low half
    counters.set(2, 23, 0x80000000);
    ASSERT_EQ(get(1, 2), 0U);
    EXPECT_EQ(record.counter[11], 1U);
    EXPECT_EQ(record.counter[63], 1U);
    EXPECT_EQ(record.counter[64], 4294967295U);
    EXPECT_EQ(record.counter[65], 1U);
    EXPECT_EQ(record.counter[12], 3U);
    EXPECT_EQ(record.counter[0], 4294967296U);
    EXPECT_EQ(record.counter[5], 9223372041149743102U);
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

TEST_F(Statistics, FailedReadingTouchesNothing)
{
    dev.chip(1).counters.drop(1, 40);
    ASSERT_EQ(odropTotal(1, 1), 40U);
    dev.chip(1).counters.drop(1, 2);
    const struct {
        const char *call;
        const char *line;
        size_t calls;
    } cases[] = {
        {"l2sw_stat_port_getAll", "2/22 HAL PORT GetStatisticZr failed (unit = 1, port = 1, ret = 22).", 1},
        {"l2sw_setAsicReg", "2/22 HAL PORT GetStatisticZr odrop write failed (unit = 1, port = 1, ret = 22).",
         2},
    };
    for (const auto &failing : cases) {
        record = filled(kSentinel);
        dev.forget();
        dev.fail(failing.call, 22);
        EXPECT_EQ(get(1, 1), 4U) << failing.call;
        dev.failNone();
        EXPECT_THAT(dev.takeFailures(), ElementsAre(failing.line));
        EXPECT_EQ(dev.calls().size(), failing.calls);
        const LswmPortStatistics untouched = filled(kSentinel);
        EXPECT_EQ(std::memcmp(&record, &untouched, sizeof record), 0) << failing.call;
    }
    EXPECT_EQ(odropTotal(1, 1), 42U);
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
    dev.failNone();
    dev.chip(1).counters.drop(1, 5);
    EXPECT_EQ(odropTotal(1, 1), 45U);
}

TEST_F(Statistics, ClearZeroesTheLibrarysCountEvenWhenTheChipFails)
{
    const struct {
        const char *call;
        const char *line;
        size_t calls;
        uint64_t wordAfter;
    } cases[] = {
        {"l2sw_stat_port_reset",
         "2/4294967295 Port clear stat failed(ret = 4294967295, unit = 1, portId, enable = 2).", 1, 6},
        {"l2sw_setAsicReg",
         "2/4294967295 Port clear odrop failed(ret = 4294967295, unit = 1, portId, enable = 2).", 2, 0},
    };
    for (const auto &failing : cases) {
        dev.chip(1).counters.set(2, 2, 6);
        dev.chip(1).counters.drop(2, 100);
        get(1, 2);
        dev.forget();
        dev.fail(failing.call, 0xFFFFFFFF);
        EXPECT_EQ(clear(1, 2), 4U) << failing.call;
        dev.failNone();
        EXPECT_THAT(dev.takeFailures(), ElementsAre(failing.line));
        EXPECT_EQ(dev.calls().size(), failing.calls);
        odropReads(3);
        EXPECT_EQ(odropTotal(1, 2), 3U) << "a last reading was left";
        EXPECT_EQ(record.counter[49], failing.wordAfter);
        dev.failNone();
    }
}

TEST_F(Statistics, PortsBeyondTheTablesAreRefusedBeforeTheChip)
{
    for (uint32_t port : {32U, 33U, 127U, 128U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(get(1, port), 1U) << port;
        EXPECT_EQ(clear(1, port), 1U) << port;
    }
    EXPECT_EQ(dev.ops().port.getStatistics(1, 3, nullptr), 2U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_EQ(record.counter[0], kSentinel);
}

// ---- the board's traffic -----------------------------------------------------------------------

TEST_F(Statistics, TrafficMovesTheCountersOfItsPort)
{
    ASSERT_EQ(dev.ops().port.setEnable(1, 15, 1), 0U); // a port without PHY is up once it is enabled
    for (const char *line : {"traffic 15 in unicast 10 100", "traffic 15 in broadcast 2",
                             "traffic 15 out multicast 3", "traffic 15 out unicast 4294967295 10000"})
        EXPECT_EQ(dev.ops().common.cliCmdPrase(1, line), 0U);
    ASSERT_EQ(get(1, 15), 0U);
    EXPECT_EQ(record.counter[0], 1128U);
    EXPECT_EQ(record.counter[11], 12U);
    EXPECT_EQ(record.counter[63], 10U);
    EXPECT_EQ(record.counter[65], 2U);
    EXPECT_EQ(record.counter[68], 3U);
    EXPECT_EQ(record.counter[5], 42949672950192U);
    ASSERT_EQ(get(1, 16), 0U);
    EXPECT_EQ(record.counter[0], 0U);

    dev.takeCli();
    EXPECT_EQ(dev.ops().common.cliCmdPrase(1, "traffic 16 in unicast 1"), 0U);
    EXPECT_THAT(dev.takeCli(), testing::StartsWith("port 16 has no link"));
}

TEST_F(Statistics, AResetOfTheChipLosesItsCountersAndTheLibraryCountsOn)
{
    dev.chip(1).counters.drop(0, 50);
    dev.chip(1).counters.set(0, 0, 99);
    ASSERT_EQ(odropTotal(1, 0), 50U);
    ASSERT_EQ(dev.ops().common.initChip(1), 0U);
    EXPECT_EQ(odropTotal(1, 0), 65535U); // taken for a wrap: 50 to 65535, and 0
    EXPECT_EQ(record.counter[0], 0U);
}

} // namespace
} // namespace zrtest
