// Meter and statistics records beside a model of what both are: a list of identifier pairs in which the entry
// of lowest index counts.
#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <set>

#include "records/meter_records.h"
#include "records/stat_records.h"
#include "tests/kit/device.h"
#include "tests/kit/random.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
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

struct Model {
    struct Entry {
        uint32_t logic, chip;
    };

    Model(size_t count, bool bitmaps, bool unique) : entries(count), hasBitmaps(bitmaps), isUnique(unique) {}

    std::optional<Entry> *find(uint32_t Entry::*side, uint32_t id)
    {
        for (auto &entry : entries)
            if (entry && (*entry).*side == id)
                return &entry;
        return nullptr;
    }
    Pair otherSide(uint32_t Entry::*from, uint32_t id, uint32_t Entry::*to)
    {
        const auto *entry = find(from, id);
        return entry == nullptr ? Pair{LSW_CHIP_FAILED, kUntouched} : Pair{LSW_OK, (**entry).*to};
    }
    bool inUse(uint32_t logic)
    {
        if (hasBitmaps)
            return logic >= 128 || logics.contains(logic);
        return find(&Entry::logic, logic) != nullptr;
    }
    uint32_t set(uint32_t logic, uint32_t chip)
    {
        if (hasBitmaps && (logic >= 128 || chip >= 128))
            return LSW_INVALID_ARGUMENT;
        if (isUnique && inUse(logic))
            return LSW_IN_USE;
        for (auto &entry : entries) {
            if (entry)
                continue;
            entry = Entry{logic, chip};
            logics.insert(logic);
            chips.insert(chip);
            return LSW_OK;
        }
        return LSW_NO_RESOURCE;
    }
    uint32_t release(uint32_t logic)
    {
        if (hasBitmaps && logic >= 128)
            return LSW_INVALID_ARGUMENT;
        if (auto *entry = find(&Entry::logic, logic); entry != nullptr) {
            chips.erase((*entry)->chip);
            entry->reset();
        }
        logics.erase(logic);
        return LSW_OK;
    }
    Pair lowestFree(const std::set<uint32_t> &taken) const
    {
        uint32_t id = 0;
        while (taken.contains(id))
            ++id;
        return hasBitmaps && id < entries.size() ? Pair{LSW_OK, id} : Pair{LSW_NO_RESOURCE, kUntouched};
    }
    size_t used() const
    {
        return static_cast<size_t>(std::count_if(entries.begin(), entries.end(), [](auto &e) { return !!e; }));
    }

    std::vector<std::optional<Entry>> entries;
    bool hasBitmaps, isUnique;
    std::set<uint32_t> logics, chips; // marked in the bitmaps
};

using IdRecords = DeviceTest;

TEST_F(IdRecords, MetersFollowTheModel)
{
    ZR_RANDOM(random);
    const struct {
        uint32_t type, count;
        uint8_t bitmapMode;
    } records[] = {{0, 12, 0}, {3, 12, 1}, {5, 128, 0x80}};
    for (const auto &[type, count, mode] : records) {
        ASSERT_EQ(ZR_OP(COM_HSEC_MeterInfoInit)(kUnit, type, 0xFFFFFFFF, count, mode), LSW_OK);
        Model model(count, mode != 0, true);
        for (int step = 0; step < 3000 && !HasFailure(); ++step) {
            SCOPED_TRACE(testing::Message() << "type " << type << " step " << step);
            // At first more identifiers than entries, then just as many and few releases: either runs out.
            const bool late = step >= 1500;
            for (uint32_t id = count; step == 1500 && id < count + 4; ++id)
                ASSERT_EQ(ZR_OP(COM_HSEC_ReleseHsecRecord)(kUnit, type, id), model.release(id));
            const uint32_t range = late ? count : count + 4;
            const uint32_t logic = random() % 50 == 0 ? 0xFFFFFFFF : random() % range;
            const uint32_t chip = random() % 50 == 0 ? 128 : random() % range;
            if (random() % (late ? 20 : 3) != 0)
                ASSERT_EQ(ZR_OP(COM_HSEC_SetMeterEntry)(kUnit, type, logic, chip), model.set(logic, chip));
            else
                ASSERT_EQ(ZR_OP(COM_HSEC_ReleseHsecRecord)(kUnit, type, logic), model.release(logic));
            EXPECT_EQ(ZR_OP(COM_HSEC_IsLogicMeterInUse)(kUnit, type, logic), model.inUse(logic));
            using Entry = Model::Entry;
            EXPECT_EQ(ask(ZR_OP(COM_HSEC_LogicMeterToChipMeter), kUnit, type, logic),
                      model.otherSide(&Entry::logic, logic, &Entry::chip));
            EXPECT_EQ(ask(ZR_OP(COM_HSEC_ChipMeterToLogicMeter), kUnit, type, chip),
                      model.otherSide(&Entry::chip, chip, &Entry::logic));
            const Pair freeLogic = model.lowestFree(model.logics);
            const Pair freeChip = model.lowestFree(model.chips);
            EXPECT_EQ(ask(ZR_OP(COM_HSEC_AllocLogicMeterId), kUnit, type), freeLogic);
            EXPECT_EQ(ask(ZR_OP(COM_HSEC_AllocChipMeter), kUnit, type), freeChip);
            uint32_t both[2] = {kUntouched, kUntouched};
            EXPECT_EQ(ZR_OP(COM_HSEC_AllocMeterId)(kUnit, type, &both[0], &both[1]),
                      std::max(freeLogic.first, freeChip.first));
            EXPECT_EQ(both[0], freeLogic.second);
            EXPECT_EQ(both[1], freeLogic.first == LSW_OK ? freeChip.second : kUntouched);
            EXPECT_EQ(ZR_OP(COM_HSEC_GetMeterInfo)(kUnit, type)->usedCount, model.used());
        }
        EXPECT_EQ(ask(ZR_OP(COM_HSEC_EntryIdToLogicMeter), kUnit, type, count - 1), Pair(LSW_OK, count - 2))
            << "the base is added in 32 bits";
        EXPECT_EQ(ask(ZR_OP(COM_HSEC_EntryIdToLogicMeter), kUnit, type, count),
                  Pair(LSW_NO_RESOURCE, kUntouched));
    }
}

TEST_F(IdRecords, StatisticsFollowTheModel)
{
    ZR_RANDOM(random);
    constexpr uint32_t kType = 7;
    ASSERT_EQ(ZR_OP(COM_QOS_StatInfoInit)(kUnit, kType, 10), LSW_OK);
    Model model(10, false, false);
    for (int step = 0; step < 3000 && !HasFailure(); ++step) {
        SCOPED_TRACE(step);
        const uint32_t logic = random() % 14;
        const uint32_t chip = random() % 14;
        if (random() % 3 != 0)
            ASSERT_EQ(ZR_OP(COM_QOS_SetStatEntry)(kUnit, kType, logic, chip), model.set(logic, chip));
        else
            ASSERT_EQ(ZR_OP(COM_QOS_ReleseStatRecord)(kUnit, kType, logic), model.release(logic));
        using Entry = Model::Entry;
        EXPECT_EQ(ZR_OP(COM_QOS_IsLogicStatIdInUse)(kUnit, kType, logic), model.inUse(logic));
        EXPECT_EQ(ask(ZR_OP(COM_QOS_StatLogicIdToChipId), kUnit, kType, logic),
                  model.otherSide(&Entry::logic, logic, &Entry::chip));
        EXPECT_EQ(ask(ZR_OP(COM_QOS_StatChipIdToLogicId), kUnit, kType, chip),
                  model.otherSide(&Entry::chip, chip, &Entry::logic));
        EXPECT_EQ(ZR_OP(COM_QOS_GetStatPartInfo)(kUnit, kType)->usedCount, model.used());
    }
    for (auto [unit, type] : {Pair{kUnit, 6}, {0, kType}})
        EXPECT_EQ(ask(ZR_OP(COM_QOS_StatLogicIdToChipId), unit, type, 14U), Pair(LSW_OK, 14))
            << "not this type";
}

TEST_F(IdRecords, TheTableInitialises64MetersOnce)
{
    const ZrHsecOps &hsec = dev.ops().hsec;
    ASSERT_EQ(hsec.init(kUnit), LSW_OK);
    EXPECT_EQ(hsec.init(kUnit), LSW_CHIP_FAILED);
    const HsecMeterInfo &info = *ZR_OP(COM_HSEC_GetMeterInfo)(kUnit, 0);
    EXPECT_EQ(&info, static_cast<HsecMeterInfo *>(dev.symbol("g_HsecMeterInfo")) + 6);
    EXPECT_THAT((std::vector<uint32_t>{info.logicCount, info.entryCount, info.base}), ElementsAre(64, 64, 0));
    EXPECT_NE(info.bitmapMode, 0);
    EXPECT_EQ(ZR_OP(COM_HSEC_GetMeterInfo)(0, 0)->entries, nullptr) << "another unit";
}

// Without entries meters record nothing and find nothing, statistics identifiers pass through.
TEST_F(IdRecords, ATypeWithoutEntriesRecordsNothing)
{
    for (bool initialisedWithNone : {false, true}) {
        EXPECT_EQ(ask(ZR_OP(COM_QOS_StatLogicIdToChipId), kUnit, 2U, 17U), Pair(LSW_OK, 17));
        EXPECT_EQ(ask(ZR_OP(COM_QOS_StatChipIdToLogicId), kUnit, 2U, 0xFFFFFFFF), Pair(LSW_OK, 0xFFFFFFFF));
        EXPECT_EQ(ZR_OP(COM_QOS_SetStatEntry)(kUnit, 2, 17, 3), LSW_NO_RESOURCE);
        EXPECT_EQ(ZR_OP(COM_QOS_IsLogicStatIdInUse)(kUnit, 2, 17), 0U);
        EXPECT_EQ(ZR_OP(COM_QOS_ReleseStatRecord)(kUnit, 2, 17), LSW_OK);
        if (!initialisedWithNone) {
            EXPECT_EQ(ZR_OP(COM_QOS_StatInfoInit)(kUnit, 2, 0), LSW_OK);
        }
    }
    EXPECT_EQ(ZR_OP(COM_QOS_StatInfoInit)(kUnit, 2, 4), LSW_OK) << "it may still get some";
    EXPECT_EQ(ask(ZR_OP(COM_QOS_StatLogicIdToChipId), kUnit, 2U, 17U), Pair(LSW_CHIP_FAILED, kUntouched));

    EXPECT_EQ(ask(ZR_OP(COM_HSEC_AllocChipMeter), 2U, 5U), Pair(LSW_NO_RESOURCE, kUntouched));
    EXPECT_EQ(ZR_OP(COM_HSEC_SetMeterEntry)(2, 5, 0, 0), LSW_NO_RESOURCE);
    EXPECT_EQ(ask(ZR_OP(COM_HSEC_LogicMeterToChipMeter), 2U, 5U, 0U), Pair(LSW_CHIP_FAILED, kUntouched));
    EXPECT_EQ(ZR_OP(COM_HSEC_ReleseHsecRecord)(2, 5, 0xFFFFFFFF), LSW_OK);
    EXPECT_EQ(ask(ZR_OP(COM_HSEC_EntryIdToLogicMeter), 2U, 5U, 0xFFFFFFFF), Pair(LSW_OK, 0xFFFFFFFF));
}

// Whatever the order of initialisers and failures, the count never promises entries that are not there.
TEST_F(IdRecords, CountsBeyond16BitsAndMissingMemoryNeverReachPastTheEntries)
{
    const auto initMeter = [](uint32_t count, uint8_t mode) {
        return ZR_OP(COM_HSEC_MeterInfoInit)(kUnit, 0, 0, count, mode);
    };
    const auto initStat = [](uint32_t type, uint32_t count) {
        return ZR_OP(COM_QOS_StatInfoInit)(kUnit, type, count);
    };
    const HsecMeterInfo &meters = *ZR_OP(COM_HSEC_GetMeterInfo)(kUnit, 0);
    const QosStatInfo &stats = *ZR_OP(COM_QOS_GetStatInfo)(kUnit);
    const unsigned before = zrsim::memory().liveBlocks();
    dev.fail("LSWM_MemAlloc", 0);
    EXPECT_EQ(initMeter(64, 1), LSW_NULL_POINTER);
    EXPECT_EQ(initStat(2, 1000), LSW_NULL_POINTER);
    EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(kUnit, 2, 1000), LSW_NULL_POINTER);
    dev.clearInjections();
    for (uint32_t count : {0xFFFFFFFFU, 0x15555556U}) { // 12 times the second is 8 in 32 bits
        EXPECT_EQ(initMeter(count, 0), LSW_NULL_POINTER);
        EXPECT_EQ(initStat(2, count), LSW_NULL_POINTER);
    }
    EXPECT_EQ(initMeter(129, 1), LSW_INVALID_ARGUMENT);
    EXPECT_EQ(zrsim::memory().liveBlocks(), before);
    EXPECT_EQ(meters.entryCount + meters.bitmapMode + stats.part[2].entryCount, 0);

    ASSERT_EQ(initMeter(0x10003, 0), LSW_OK);
    EXPECT_EQ(meters.logicCount, 0x10003U);
    ASSERT_EQ(initStat(3, 0x10003), LSW_OK);
    for (uint32_t id = 0; id < 4; ++id) {
        EXPECT_EQ(ZR_OP(COM_HSEC_SetMeterEntry)(kUnit, 0, id, id), id < 3 ? LSW_OK : LSW_NO_RESOURCE);
        EXPECT_EQ(ZR_OP(COM_QOS_SetStatEntry)(kUnit, 3, id, id), id < 3 ? LSW_OK : LSW_NO_RESOURCE);
    }
    for (uint32_t count : {0U, 8U, 129U}) {
        EXPECT_EQ(initMeter(count, 1), LSW_IN_USE);
        EXPECT_EQ(initStat(3, count), LSW_IN_USE);
    }
    EXPECT_EQ(meters.logicCount, 0x10003U);
    EXPECT_EQ(stats.part[3].usedCount, 3U);

    EXPECT_EQ(ZR_OP(COM_QOS_StatMapInfoInit)(kUnit, 2, 1), LSW_OK);
    EXPECT_EQ(stats.part[2].entryCount, 0U);
    EXPECT_EQ(ask(ZR_OP(COM_QOS_StatLogicIdToChipId), kUnit, 2U, 17U), Pair(LSW_OK, 17))
        << "still passes through";
    EXPECT_EQ(initStat(2, 1000), LSW_IN_USE);
}

TEST_F(IdRecords, ChangesAndHitsOfStatisticsAreTracedInDetail)
{
    ASSERT_EQ(ZR_OP(COM_QOS_StatInfoInit)(kUnit, 7, 2), LSW_OK);
    for (uint32_t level : {2U, 3U}) {
        zrsim::console().traceLevel(level);
        for (uint32_t id : {8U, 9U})
            ZR_OP(COM_QOS_SetStatEntry)(kUnit, 7, id, 10 * id);
        for (uint32_t id : {9U, 10U})
            ZR_OP(COM_QOS_IsLogicStatIdInUse)(kUnit, 7, id);
        ask(ZR_OP(COM_QOS_StatLogicIdToChipId), kUnit, 7U, 9U);
        ask(ZR_OP(COM_QOS_StatChipIdToLogicId), kUnit, 7U, 90U);
        for (uint32_t id : {9U, 9U, 8U})
            ZR_OP(COM_QOS_ReleseStatRecord)(kUnit, 7, id);
        if (level == 2) {
            EXPECT_THAT(dev.takeTraces(), IsEmpty());
        }
    }
    EXPECT_THAT(dev.takeTraces(),
                ElementsAre("5 ADD TYPE 7 logicid 8 chipid 80 idx 0", "5 ADD TYPE 7 logicid 9 chipid 90 idx 1",
                            "5 TYPE 7 logicid 9  idx 1", "5 TYPE 7 logicid 9 chipid 90",
                            "5 Delete TYPE 7 logicid 9 i 1", "5 Delete TYPE 7 logicid 8 i 0"));
}

} // namespace
} // namespace zrtest
