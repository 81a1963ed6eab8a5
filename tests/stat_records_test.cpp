// Statistics records: pass-through until a type has entries, then a map of them.
#include <gmock/gmock.h>

#include "platform/manager.h"
#include "records/stat_records.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kUntouched = 0xEEEEEEEE;

class StatRecordsTest : public DeviceTest
{
protected:
    static uint32_t init(uint32_t unit, uint32_t type, uint32_t count)
    {
        return ZR_OP(COM_QOS_StatInfoInit)(unit, type, count);
    }
    static uint32_t record(uint32_t logic, uint32_t chip, uint32_t unit = 1, uint32_t type = 2)
    {
        return ZR_OP(COM_QOS_SetStatEntry)(unit, type, logic, chip);
    }
    static uint32_t release(uint32_t logic) { return ZR_OP(COM_QOS_ReleseStatRecord)(1, 2, logic); }
    static uint32_t inUse(uint32_t logic) { return ZR_OP(COM_QOS_IsLogicStatIdInUse)(1, 2, logic); }
    // The looked-up identifier, or the status in the upper word.
    static uint64_t chipOf(uint32_t logic, uint32_t unit = 1, uint32_t type = 2)
    {
        uint32_t chip = kUntouched;
        const uint64_t status = ZR_OP(COM_QOS_StatLogicIdToChipId)(unit, type, logic, &chip);
        EXPECT_TRUE(status == 0 || chip == kUntouched);
        return status == 0 ? chip : status << 32;
    }
    static uint64_t logicOf(uint32_t chip, uint32_t unit = 1, uint32_t type = 2)
    {
        uint32_t logic = kUntouched;
        const uint64_t status = ZR_OP(COM_QOS_StatChipIdToLogicId)(unit, type, chip, &logic);
        EXPECT_TRUE(status == 0 || logic == kUntouched);
        return status == 0 ? logic : status << 32;
    }
    static std::pair<uint32_t, uint32_t> counts()
    {
        const QosStatPartInfo *part = ZR_OP(COM_QOS_GetStatPartInfo)(1, 2);
        return {part->entryCount, part->usedCount};
    }
    static constexpr uint64_t failed(uint64_t status) { return status << 32; }
};

TEST_F(StatRecordsTest, IdentifiersPassThroughUntilATypeHasEntries)
{
    for (bool initialisedWithNone : {false, true}) {
        EXPECT_EQ(chipOf(17), 17U);
        EXPECT_EQ(logicOf(0xFFFFFFFF), 0xFFFFFFFFU);
        EXPECT_EQ(record(17, 3), 7U);
        EXPECT_EQ(inUse(17), 0U);
        EXPECT_EQ(release(17), 0U);
        if (!initialisedWithNone) {
            EXPECT_EQ(init(1, 2, 0), 0U);
        }
    }
    EXPECT_EQ(init(1, 2, 4), 0U) << "a type without entries may still get some";
    EXPECT_EQ(chipOf(17), failed(4));
}

TEST_F(StatRecordsTest, EntriesFillUpAndAreReusedFromTheLowest)
{
    ASSERT_EQ(init(1, 2, 4), 0U);
    for (uint32_t logic : {10, 11, 12, 13})
        EXPECT_EQ(record(logic, logic + 100), 0U);
    EXPECT_EQ(record(14, 114), 7U);
    EXPECT_EQ(counts(), std::pair(4U, 4U));

    EXPECT_EQ(release(99), 0U);
    EXPECT_EQ(counts(), std::pair(4U, 4U));
    EXPECT_EQ(release(11), 0U);
    EXPECT_EQ(counts(), std::pair(4U, 3U));
    EXPECT_EQ(chipOf(11), failed(4));
    EXPECT_EQ(logicOf(111), failed(4));
    EXPECT_EQ(inUse(11), 0U);

    EXPECT_EQ(record(14, 114), 0U);
    EXPECT_EQ(ZR_OP(COM_QOS_GetStatInfo)(1)->entries[2][1].logicId, 14U);
    EXPECT_EQ(chipOf(14), 114U);
    EXPECT_EQ(logicOf(113), 13U);
    EXPECT_EQ(inUse(14), 1U);

    EXPECT_EQ(chipOf(14, 1, 3), 14U) << "another type";
    EXPECT_EQ(chipOf(14, 0, 2), 14U) << "another unit";
}

TEST_F(StatRecordsTest, OfARepeatedIdentifierTheLowestEntryCounts)
{
    ASSERT_EQ(init(1, 2, 3), 0U);
    EXPECT_EQ(record(5, 50), 0U);
    EXPECT_EQ(record(6, 50), 0U);
    EXPECT_EQ(record(5, 51), 0U);
    EXPECT_EQ(chipOf(5), 50U);
    EXPECT_EQ(logicOf(50), 5U);
    EXPECT_EQ(release(5), 0U);
    EXPECT_EQ(chipOf(5), 51U);
    EXPECT_EQ(logicOf(50), 6U);
}

TEST_F(StatRecordsTest, ASecondInitialisationChangesNothing)
{
    ASSERT_EQ(init(1, 2, 2), 0U);
    ASSERT_EQ(record(1, 2), 0U);
    EXPECT_EQ(init(1, 2, 8), 6U);
    EXPECT_EQ(init(1, 2, 0), 6U);
    EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(1, 2, 8), 6U);
    EXPECT_EQ(counts(), std::pair(2U, 1U));
}

// Whatever the order of initialisers and failures, the count never promises entries that are not there.
TEST_F(StatRecordsTest, TheCountNeverExceedsTheMap)
{
    dev.fail("LSWM_MemAlloc", 0);
    EXPECT_EQ(init(1, 2, 1000), 2U);
    EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(1, 2, 1000), 2U);
    dev.failNone();
    EXPECT_EQ(counts(), std::pair(0U, 0U));
    EXPECT_EQ(chipOf(17), 17U);
    EXPECT_EQ(record(17, 3), 7U);

    EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(1, 2, 1), 0U);
    EXPECT_EQ(counts(), std::pair(0U, 0U));
    EXPECT_EQ(init(1, 2, 1000), 6U);
    EXPECT_EQ(chipOf(17), 17U) << "a map without a count passes through";

    EXPECT_EQ(init(1, 3, 0x10002), 0U);
    EXPECT_EQ(ZR_OP(COM_QOS_GetStatPartInfo)(1, 3)->entryCount, 2U);
    EXPECT_EQ(record(1, 1, 1, 3) | record(2, 2, 1, 3), 0U);
    EXPECT_EQ(record(3, 3, 1, 3), 7U);

    const unsigned before = zrsim::memory().liveBlocks();
    for (uint32_t count : {0xFFFFFFFFU, 0x15555556U}) // 12 times the second is 8 in 32 bits
        EXPECT_EQ(init(1, 4, count), 2U);
    EXPECT_EQ(zrsim::memory().liveBlocks(), before);
}

TEST_F(StatRecordsTest, UnitTypeAndNullAreRefused)
{
    const std::pair<uint32_t, uint32_t> places[] = {{3, 0}, {0, 8}, {0xFFFFFFFF, 0}, {0, 0xFFFFFFFF}};
    for (auto [unit, type] : places) {
        EXPECT_EQ(init(unit, type, 4), 1U);
        EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(unit, type, 4), 1U);
        EXPECT_EQ(record(1, 1, unit, type), 1U);
        EXPECT_EQ(chipOf(1, unit, type), failed(1));
        EXPECT_EQ(logicOf(1, unit, type), failed(1));
        EXPECT_EQ(ZR_OP(COM_QOS_ReleseStatRecord)(unit, type, 1), 1U);
        EXPECT_EQ(ZR_OP(COM_QOS_IsLogicStatIdInUse)(unit, type, 1), 0U);
        EXPECT_EQ(ZR_OP(COM_QOS_GetStatPartInfo)(unit, type), nullptr);
        EXPECT_EQ(ZR_OP(COM_QOS_GetStatInfo)(unit) == nullptr, unit > 2);
    }
    EXPECT_EQ(ZR_OP(COM_QOS_StatLogicIdToChipId)(1, 2, 1, nullptr), 2U);
    EXPECT_EQ(ZR_OP(COM_QOS_StatChipIdToLogicId)(1, 2, 1, nullptr), 2U);
}

TEST_F(StatRecordsTest, ChangesAndHitsAreTracedInDetail)
{
    ASSERT_EQ(init(1, 7, 2), 0U);
    auto everything = [&] {
        uint32_t other = 0;
        record(8, 80, 1, 7);
        record(9, 90, 1, 7);
        ZR_OP(COM_QOS_IsLogicStatIdInUse)(1, 7, 9);
        ZR_OP(COM_QOS_IsLogicStatIdInUse)(1, 7, 10);
        ZR_OP(COM_QOS_StatLogicIdToChipId)(1, 7, 9, &other);
        ZR_OP(COM_QOS_StatChipIdToLogicId)(1, 7, 90, &other);
        ZR_OP(COM_QOS_ReleseStatRecord)(1, 7, 9);
        ZR_OP(COM_QOS_ReleseStatRecord)(1, 7, 9);
        ZR_OP(COM_QOS_ReleseStatRecord)(1, 7, 8);
    };
    zrsim::console().traceLevel(2);
    everything();
    EXPECT_THAT(dev.takeTraces(), IsEmpty());
    zrsim::console().traceLevel(3);
    everything();
    EXPECT_THAT(dev.takeTraces(),
                ElementsAre("5 ADD TYPE 7 logicid 8 chipid 80 idx 0", "5 ADD TYPE 7 logicid 9 chipid 90 idx 1",
                            "5 TYPE 7 logicid 9  idx 1", "5 TYPE 7 logicid 9 chipid 90",
                            "5 Delete TYPE 7 logicid 9 i 1", "5 Delete TYPE 7 logicid 8 i 0"));
}

} // namespace
} // namespace zrtest
