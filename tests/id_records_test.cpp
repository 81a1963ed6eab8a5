// Meter records beside a model of what they are: a list of identifier pairs in which the entry of lowest index
// counts. Statistics records, which are such a list as well.
#include <gmock/gmock.h>

#include "records/meter_records.h"
#include "records/stat_records.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;
using Pair = std::pair<uint32_t, uint32_t>;

constexpr uint32_t kUnit = 1;
constexpr uint32_t kUntouched = 0xEEEEEEEE;

// {status, output} of an operation that ends with its output.
template <class Operation, class... Arguments> Pair ask(Operation &operation, Arguments... arguments)
{
    uint32_t value = kUntouched;
    const uint32_t status = operation(arguments..., &value);
    return {status, value};
}

using IdRecords = DeviceTest;

// With bitmaps ids are below 128 and can be chosen; without, any id will do and the entries alone tell.
TEST_F(IdRecords, MetersAreFoundByBothIdsAndTakeTheLowestEntry)
{
    for (const auto &given : {std::pair<uint32_t, uint8_t>{0, 0}, {5, 0x80}}) {
        const uint32_t type = given.first;
        const uint8_t mode = given.second;
        SCOPED_TRACE(type);
        const auto set = [&](uint32_t logic, uint32_t chip) {
            return ZR_OP(COM_HSEC_SetMeterEntry)(kUnit, type, logic, chip);
        };
        const auto release = [&](uint32_t logic) {
            return ZR_OP(COM_HSEC_ReleseHsecRecord)(kUnit, type, logic);
        };
        const auto chipOf = [&](uint32_t logic) {
            return ask(ZR_OP(COM_HSEC_LogicMeterToChipMeter), kUnit, type, logic);
        };
        const auto logicOf = [&](uint32_t chip) {
            return ask(ZR_OP(COM_HSEC_ChipMeterToLogicMeter), kUnit, type, chip);
        };
        const auto inUse = [&](uint32_t logic) {
            return ZR_OP(COM_HSEC_IsLogicMeterInUse)(kUnit, type, logic);
        };
        // The lowest free ids, logic and chip.
        const auto expectFree = [&](Pair logic, Pair chip) {
            if (mode == 0)
                logic = chip = {LSW_NO_RESOURCE, kUntouched};
            EXPECT_EQ(ask(ZR_OP(COM_HSEC_AllocLogicMeterId), kUnit, type), logic);
            EXPECT_EQ(ask(ZR_OP(COM_HSEC_AllocChipMeter), kUnit, type), chip);
            Pair both{kUntouched, kUntouched};
            EXPECT_EQ(ZR_OP(COM_HSEC_AllocMeterId)(kUnit, type, &both.first, &both.second),
                      std::max(logic.first, chip.first));
            EXPECT_EQ(both, Pair(logic.second, logic.first == LSW_OK ? chip.second : kUntouched));
        };
        const Pair none{LSW_NO_RESOURCE, kUntouched};
        const Pair unknown{LSW_CHIP_FAILED, kUntouched};
        const HsecMeterInfo &info = *ZR_OP(COM_HSEC_GetMeterInfo)(kUnit, type);
        ASSERT_EQ(ZR_OP(COM_HSEC_MeterInfoInit)(kUnit, type, 0xFFFFFFFF, 4, mode), LSW_OK);

        expectFree({LSW_OK, 0}, {LSW_OK, 0});
        EXPECT_EQ(set(0, 1), LSW_OK);
        EXPECT_EQ(set(0, 3), LSW_IN_USE);
        EXPECT_EQ(set(2, 0), LSW_OK);
        EXPECT_EQ(set(127, 1), LSW_OK);
        expectFree({LSW_OK, 1}, {LSW_OK, 2});
        EXPECT_EQ(set(1, 2), LSW_OK);
        EXPECT_EQ(set(9, 3), LSW_NO_RESOURCE);
        expectFree({LSW_OK, 3}, {LSW_OK, 3});
        EXPECT_EQ(chipOf(127), Pair(LSW_OK, 1));
        EXPECT_EQ(logicOf(1), Pair(LSW_OK, 0)) << "the lower entry";
        EXPECT_EQ(info.usedCount, 4);

        EXPECT_EQ(release(0), LSW_OK);
        EXPECT_EQ(release(0), LSW_OK) << "no such record any more";
        EXPECT_EQ(info.usedCount, 3);
        EXPECT_EQ(inUse(0), 0U);
        EXPECT_EQ(inUse(127), 1U);
        EXPECT_EQ(chipOf(0), unknown);
        EXPECT_EQ(logicOf(1), Pair(LSW_OK, 127));
        expectFree({LSW_OK, 0}, {LSW_OK, 1}); // though 127 has chip id 1 as well
        EXPECT_EQ(set(3, 3), LSW_OK);
        EXPECT_EQ(release(127), LSW_OK);
        EXPECT_EQ(set(0, 1), LSW_OK);
        expectFree(none, none); // four entries, four ids of each kind

        // Ids beyond the bitmaps.
        EXPECT_EQ(release(0), LSW_OK);
        EXPECT_EQ(set(128, 1), mode != 0 ? LSW_INVALID_ARGUMENT : LSW_OK);
        EXPECT_EQ(inUse(128), 1U);
        EXPECT_EQ(release(128), mode != 0 ? LSW_INVALID_ARGUMENT : LSW_OK);
        EXPECT_EQ(set(0, 128), mode != 0 ? LSW_INVALID_ARGUMENT : LSW_OK);
        EXPECT_EQ(ask(ZR_OP(COM_HSEC_EntryIdToLogicMeter), kUnit, type, 3U), Pair(LSW_OK, 2))
            << "the base is added in 32 bits";
        EXPECT_EQ(ask(ZR_OP(COM_HSEC_EntryIdToLogicMeter), kUnit, type, 4U), none);
    }
}

// The same map as the meters', with fewer rules: a pair may be recorded twice, and the lowest entry counts.
TEST_F(IdRecords, StatisticsTakeTheLowestEntry)
{
    constexpr uint32_t kType = 7;
    const auto chipOf = [](uint32_t logic) {
        return ask(ZR_OP(COM_QOS_StatLogicIdToChipId), kUnit, kType, logic);
    };
    const auto logicOf = [](uint32_t chip) {
        return ask(ZR_OP(COM_QOS_StatChipIdToLogicId), kUnit, kType, chip);
    };
    const auto set = [](uint32_t logic, uint32_t chip) {
        return ZR_OP(COM_QOS_SetStatEntry)(kUnit, kType, logic, chip);
    };
    EXPECT_EQ(ZR_OP(COM_QOS_StatInfoInit)(kUnit, kType, 0), LSW_OK);
    EXPECT_EQ(logicOf(0xFFFFFFFF), Pair(LSW_OK, 0xFFFFFFFF)) << "without entries it passes through";
    ASSERT_EQ(ZR_OP(COM_QOS_StatInfoInit)(kUnit, kType, 3), LSW_OK) << "it may still get some";
    for (auto [logic, chip] : {Pair{8, 80}, {8, 90}, {9, 80}})
        EXPECT_EQ(set(logic, chip), LSW_OK);
    EXPECT_EQ(set(10, 100), LSW_NO_RESOURCE);
    EXPECT_EQ(chipOf(8), Pair(LSW_OK, 80));
    EXPECT_EQ(logicOf(80), Pair(LSW_OK, 8));
    EXPECT_EQ(ZR_OP(COM_QOS_ReleseStatRecord)(kUnit, kType, 8), LSW_OK);
    EXPECT_EQ(chipOf(8), Pair(LSW_OK, 90));
    EXPECT_EQ(logicOf(80), Pair(LSW_OK, 9));
    EXPECT_EQ(ZR_OP(COM_QOS_GetStatPartInfo)(kUnit, kType)->usedCount, 2U);
    EXPECT_EQ(set(10, 100), LSW_OK);
    EXPECT_EQ(ZR_OP(COM_QOS_ReleseStatRecord)(kUnit, kType, 7), LSW_OK);
    EXPECT_EQ(ZR_OP(COM_QOS_GetStatPartInfo)(kUnit, kType)->usedCount, 3U);
    for (auto [unit, type] : {Pair{kUnit, 6}, {0, kType}})
        EXPECT_EQ(ask(ZR_OP(COM_QOS_StatLogicIdToChipId), unit, type, 14U), Pair(LSW_OK, 14))
            << "not this type";

    // Changes and hits are traced in detail only.
    for (uint32_t level : {2U, 3U}) {
        zrsim::console().traceLevel(level);
        ZR_OP(COM_QOS_ReleseStatRecord)(kUnit, kType, 9);
        set(9, 90);
        chipOf(9);
        ZR_OP(COM_QOS_IsLogicStatIdInUse)(kUnit, kType, 9);
        EXPECT_EQ(dev.takeTraces().size(), level == 2 ? 0U : 4U);
    }
}

TEST_F(IdRecords, TheTableInitialises64MetersOnce)
{
    ASSERT_EQ(dev.ops().hsec.init(kUnit), LSW_OK);
    EXPECT_EQ(dev.ops().hsec.init(kUnit), LSW_CHIP_FAILED);
    const HsecMeterInfo &info = *ZR_OP(COM_HSEC_GetMeterInfo)(kUnit, 0);
    EXPECT_EQ(&info, static_cast<HsecMeterInfo *>(dev.symbol("g_HsecMeterInfo")) + 6);
    EXPECT_THAT((std::vector<uint32_t>{info.logicCount, info.entryCount, info.base}), ElementsAre(64, 64, 0));
    EXPECT_NE(info.bitmapMode, 0);
    EXPECT_EQ(ZR_OP(COM_HSEC_GetMeterInfo)(0, 0)->entries, nullptr) << "another unit";
}

// Whatever the order of initialisers and failures, the count never promises entries that are not there.
TEST_F(IdRecords, CountsBeyond16BitsNeverReachPastTheEntries)
{
    const auto initMeter = [](uint32_t count, uint8_t mode) {
        return ZR_OP(COM_HSEC_MeterInfoInit)(kUnit, 0, 0, count, mode);
    };
    const auto initStat = [](uint32_t type, uint32_t count) {
        return ZR_OP(COM_QOS_StatInfoInit)(kUnit, type, count);
    };
    const HsecMeterInfo &meters = *ZR_OP(COM_HSEC_GetMeterInfo)(kUnit, 0);
    const QosStatInfo &stats = *ZR_OP(COM_QOS_GetStatInfo)(kUnit);
    for (uint32_t count : {0xFFFFFFFFU, 0x15555556U}) { // 12 times the second is 8 in 32 bits
        EXPECT_EQ(initMeter(count, 0), LSW_NULL_POINTER);
        EXPECT_EQ(initStat(2, count), LSW_NULL_POINTER);
    }
    EXPECT_EQ(initMeter(129, 1), LSW_INVALID_ARGUMENT);
    EXPECT_EQ(meters.entryCount + meters.bitmapMode + stats.part[2].entryCount, 0);

    ASSERT_EQ(initMeter(0x10003, 0), LSW_OK);
    EXPECT_EQ(meters.logicCount, 0x10003U);
    ASSERT_EQ(initStat(3, 0x10003), LSW_OK);
    for (uint32_t id = 0; id < 4; ++id) {
        EXPECT_EQ(ZR_OP(COM_HSEC_SetMeterEntry)(kUnit, 0, id, id), id < 3 ? LSW_OK : LSW_NO_RESOURCE);
        EXPECT_EQ(ZR_OP(COM_QOS_SetStatEntry)(kUnit, 3, id, id), id < 3 ? LSW_OK : LSW_NO_RESOURCE);
    }
    EXPECT_EQ(initMeter(129, 1), LSW_IN_USE);
    EXPECT_EQ(initStat(3, 0), LSW_IN_USE);
    EXPECT_EQ(meters.logicCount, 0x10003U);
    EXPECT_EQ(stats.part[3].usedCount, 3U);

    EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(kUnit, 2, 1), LSW_OK);
    EXPECT_EQ(stats.part[2].entryCount, 0U);
    EXPECT_EQ(ask(ZR_OP(COM_QOS_StatLogicIdToChipId), kUnit, 2U, 17U), Pair(LSW_OK, 17))
        << "still passes through";
    EXPECT_EQ(initStat(2, 1000), LSW_IN_USE);
    EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(kUnit, 2, 1), LSW_IN_USE);
}

} // namespace
} // namespace zrtest
