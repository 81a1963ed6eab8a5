// The ACL's identifier records: choosing, recording, finding and releasing ids, counters and meters.
#include <cstring>
#include <gmock/gmock.h>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/device.h"

using ::testing::ElementsAre;
using zrtest::Texts;

namespace
{

constexpr uint32_t kUnit = 2;
constexpr uint32_t kUntouched = 0xEEEEEEEE;

using Answer = std::pair<uint32_t, uint32_t>; // status and value
constexpr Answer failed(uint32_t status)
{
    return {status, kUntouched};
}
// What an operation answers whose last argument is its one output.
template <class Operation, class... Arguments> Answer ask(Operation &operation, Arguments... arguments)
{
    uint32_t value = kUntouched;
    const uint32_t status = operation(kUnit, arguments..., &value);
    return {status, value};
}

// Nothing is initialised.
class AclRecords : public zrtest::DeviceTest
{
protected:
    const ZrAclOps &acl() const { return dev.ops().acl; }
    static AclRuleInfo *info() { return ZR_OP(COM_ACL_GetRuleInfo)(kUnit); }

    Answer allocLogic(uint32_t partition) { return ask(*acl().allocLogicRuleId, partition); }
    Answer allocRun(uint32_t partition, uint32_t count)
    {
        return ask(ZR_OP(COM_ACL_AllocChipRuleId), partition, count);
    }
    Answer findRule(uint32_t logicRuleId) { return ask(*acl().logicRuleToChipRule, logicRuleId); }
    Answer runLength(uint32_t id) { return ask(ZR_OP(COM_ACL_GetRuleCountFromChipRule), id); }
    // Status, logic rule, first chip id and length.
    static std::vector<uint32_t> ruleAt(uint32_t id)
    {
        AclRuleInfoView view{kUntouched, kUntouched, 0xEE};
        const uint32_t status = ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, id, &view);
        return {status, view.logicRuleId, view.firstChipId, view.count};
    }
    uint32_t record(uint32_t logicRuleId, uint32_t firstChipId, uint32_t count)
    {
        return acl().setRuleMapEntry(kUnit, logicRuleId, firstChipId, count);
    }
    uint32_t release(uint32_t logicRuleId) { return acl().releaseRuleRecord(kUnit, logicRuleId); }
    bool taken(uint32_t logicRuleId) { return acl().isLogicRuleInUse(kUnit, logicRuleId) == 1; }

    static Answer allocCounter() { return ask(ZR_OP(COM_ACL_AllocChipCounter)); }
    static Answer counterOf(uint32_t id) { return ask(ZR_OP(COM_ACL_GetCounterIdFromChipRuleId), id); }
    static uint32_t mark(uint32_t counter, uint32_t flag)
    {
        return ZR_OP(COM_ACL_SetCounterInfoEntry)(kUnit, counter, flag);
    }
    static uint32_t bind(uint32_t id, uint32_t counter, uint32_t valid)
    {
        return ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, id, counter, valid);
    }
    static uint32_t validate(uint32_t id, uint32_t valid)
    {
        return ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, id, valid);
    }
    static uint32_t used() { return ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->usedNum; }
    // Status, meter and whether it counts.
    static std::vector<uint32_t> meterAt(uint32_t id)
    {
        uint32_t meter = kUntouched;
        uint32_t valid = kUntouched;
        const uint32_t status = ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, id, &meter, &valid);
        return {status, meter, valid};
    }
};

// A unit with 96 ids of each kind, 32 counters and the partitions of the product.
class AclRecordsReady : public AclRecords
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), LSW_OK);
        ASSERT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 32), LSW_OK);
        ASSERT_EQ(ZR_OP(ZR_ACL_InitPartInfo)(kUnit), LSW_OK);
    }
};

TEST_F(AclRecords, ABadUnitIsReportedBeforeANullOutput)
{
    constexpr uint32_t kBad = 3;
    uint32_t value = kUntouched;
    for (uint32_t status :
         {ZR_OP(COM_ACL_GetLogicRulePartRange)(kBad, 0, nullptr, &value),
          ZR_OP(COM_ACL_GetChipRulePartRange)(kBad, 0, &value, nullptr),
          acl().allocLogicRuleId(kBad, 0, nullptr), ZR_OP(COM_ACL_AllocChipRuleId)(kBad, 0, 1, nullptr),
          acl().logicRuleToChipRule(kBad, 0, nullptr), ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kBad, 0, nullptr),
          ZR_OP(COM_ACL_AllocChipCounter)(kBad, nullptr),
          ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kBad, 0, nullptr),
          ZR_OP(COM_ACL_GetRuleCarMapEntry)(kBad, 0, nullptr, &value)})
        EXPECT_EQ(status, LSW_INVALID_ARGUMENT);
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCountFromChipRule)(kBad, 0, nullptr), LSW_CHIP_FAILED);
    EXPECT_EQ(value, kUntouched);
}

TEST_F(AclRecords, AreTakenFromTheManagerWholeAndOnce)
{
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 257), LSW_INVALID_ARGUMENT);
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 0xFFFFFFFF), LSW_INVALID_ARGUMENT);
    for (unsigned nth : {1U, 2U, 3U}) {
        dev.fail("LSWM_MemAlloc", 1, nth);
        EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), LSW_NULL_POINTER);
        dev.clearInjections();
        EXPECT_EQ(zrsim::memory().liveBlocks(), 0U);
        EXPECT_EQ(record(0, 0, 1), LSW_NO_RESOURCE);
    }
    dev.forget();
    ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), LSW_OK);
    Texts allocations;
    for (const zrsim::Call &call : dev.recorded())
        if (std::string(call.name) == "LSWM_MemAlloc")
            allocations.push_back(call.text);
    EXPECT_THAT(allocations, ElementsAre("LSWM_MemAlloc(1152) = ptr", "LSWM_MemAlloc(192) = ptr",
                                         "LSWM_MemAlloc(192) = ptr"));

    EXPECT_EQ(info()->logicRuleNum, 96U);
    EXPECT_EQ(info()->chipRuleNum, 96U);
    for (uint32_t id = 0; id < 96; ++id) {
        EXPECT_EQ(info()->ruleRecords[id].valid, 0);
        EXPECT_EQ(info()->counterMap[id].counterId, 0xFF);
        EXPECT_EQ(info()->counterMap[id].valid, 0);
        EXPECT_THAT(meterAt(id), ElementsAre(LSW_OK, 0U, 0U));
    }
    using Range = std::pair<uint32_t, uint32_t>;
    for (uint32_t partition = 0; partition < 4; ++partition)
        for (auto *rangeOf : {&ZR_OP(COM_ACL_GetLogicRulePartRange), &ZR_OP(COM_ACL_GetChipRulePartRange)}) {
            Range range{kUntouched, kUntouched};
            EXPECT_EQ(rangeOf(kUnit, partition, &range.first, &range.second), LSW_OK);
            EXPECT_EQ(range, Range(0, 96));
        }
    ASSERT_EQ(record(7, 3, 2), LSW_OK);
    for (uint32_t count : {96U, 257U})
        EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, count), LSW_IN_USE);
    EXPECT_TRUE(taken(7));
    EXPECT_EQ(zrsim::memory().liveBlocks(), 3U);
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(0)->logicRuleNum, 0U);
}

TEST_F(AclRecordsReady, RefusePartitionsThatDoNotFit)
{
    const struct {
        uint32_t partition, first, count, status;
    } cases[] = {{0, 0, 96, LSW_OK},
                 {3, 96, 0, LSW_OK},
                 {0, 90, 7, LSW_INVALID_ARGUMENT},
                 {4, 0, 1, LSW_INVALID_ARGUMENT},
                 {0, 97, 0, LSW_INVALID_ARGUMENT},
                 {0, 0xFFFFFFFF, 1, LSW_INVALID_ARGUMENT},
                 {0, 1, 0xFFFFFFFF, LSW_INVALID_ARGUMENT}};
    for (const auto &[partition, first, count, status] : cases) {
        EXPECT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, partition, first, count), status);
        EXPECT_EQ(ZR_OP(COM_ACL_ChipRulePartInit)(kUnit, partition, first, count), status);
    }
    EXPECT_EQ(allocLogic(4), failed(LSW_INVALID_ARGUMENT));
    EXPECT_EQ(allocRun(4, 1), failed(LSW_INVALID_ARGUMENT));
    EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartInfo)(kUnit, 4), nullptr);
    EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartInfo)(kUnit, 4), nullptr);
    EXPECT_EQ(allocLogic(3), failed(LSW_NO_RESOURCE)) << "an empty partition has no id";
    EXPECT_EQ(allocRun(3, 0), failed(LSW_NO_RESOURCE));
}

TEST_F(AclRecordsReady, LogicIdsAreOneSpaceForAllPartitionsAndStayFreeUntilRecorded)
{
    EXPECT_EQ(allocLogic(0), Answer(LSW_OK, 0));
    EXPECT_EQ(allocLogic(3), Answer(LSW_OK, 0));
    EXPECT_EQ(record(0, 80, 1), LSW_OK);
    EXPECT_EQ(record(2, 81, 1), LSW_OK);
    EXPECT_EQ(allocLogic(1), Answer(LSW_OK, 1));
    ASSERT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, 2, 2, 1), LSW_OK);
    EXPECT_EQ(allocLogic(2), failed(LSW_NO_RESOURCE));
}

TEST_F(AclRecordsReady, RunsAreTakenFirstFitInsideTheirPartition)
{
    const struct {
        std::vector<uint32_t> marked;
        uint32_t partition, count;
        Answer answer;
    } cases[] = {
        {{}, 1, 3, {LSW_OK, 16}},
        {{}, 0, 16, {LSW_OK, 0}},
        {{}, 0, 17, failed(LSW_NO_RESOURCE)},
        {{}, 1, 0xFFFFFFF0, failed(LSW_NO_RESOURCE)},
        {{16, 18}, 1, 2, {LSW_OK, 19}},
        {{16, 18}, 1, 1, {LSW_OK, 17}},
        {{16, 18}, 1, 0, {LSW_OK, 17}},
        {{74, 75, 76, 77}, 2, 2, {LSW_OK, 78}},
        {{74, 75, 76, 77}, 2, 3, failed(LSW_NO_RESOURCE)},
        {{75, 77, 79}, 2, 2, failed(LSW_NO_RESOURCE)},
        {{74, 75, 76, 77, 78, 79}, 2, 0, failed(LSW_NO_RESOURCE)},
        {{82, 85, 89}, 3, 4, {LSW_OK, 90}},
        {{95}, 3, 16, failed(LSW_NO_RESOURCE)},
    };
    for (const auto &[marked, partition, count, answer] : cases) {
        uint32_t logicRuleId = 0;
        for (uint32_t chipRuleId : marked)
            ASSERT_EQ(record(logicRuleId++, chipRuleId, 1), LSW_OK);
        EXPECT_EQ(allocRun(partition, count), answer) << "partition " << partition << " count " << count;
        while (logicRuleId > 0)
            ASSERT_EQ(release(--logicRuleId), LSW_OK);
    }
}

TEST_F(AclRecords, HoldUpTo256IdsAnd255Counters)
{
    ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 256), LSW_OK);
    EXPECT_EQ(record(255, 1, 255), LSW_OK);
    EXPECT_EQ(runLength(255), Answer(LSW_OK, 255));
    EXPECT_EQ(allocRun(0, 1), Answer(LSW_OK, 0));
    EXPECT_EQ(allocRun(0, 2), failed(LSW_NO_RESOURCE));
    EXPECT_EQ(release(255), LSW_OK);
    EXPECT_EQ(record(0, 0, 256), LSW_NO_RESOURCE) << "a record cannot count 256 entries";
    EXPECT_EQ(allocRun(0, 256), Answer(LSW_OK, 0));

    ASSERT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 256), LSW_OK);
    for (uint32_t counter = 0; counter < 255; ++counter) {
        ASSERT_EQ(allocCounter(), Answer(LSW_OK, counter));
        ASSERT_EQ(mark(counter, 1), LSW_OK);
    }
    EXPECT_EQ(allocCounter(), failed(LSW_NO_RESOURCE)) << "255 stands for no counter";
}

TEST_F(AclRecordsReady, AnyEntryOfARunFindsItsRule)
{
    ASSERT_EQ(record(40, 20, 3), LSW_OK);
    ASSERT_EQ(record(41, 23, 1), LSW_OK);
    for (uint32_t chipRuleId : {20U, 21U, 22U}) {
        EXPECT_THAT(ruleAt(chipRuleId), ElementsAre(LSW_OK, 40U, 20U, 3U));
        EXPECT_EQ(runLength(chipRuleId), Answer(LSW_OK, 3));
    }
    EXPECT_EQ(findRule(41), Answer(LSW_OK, 23));
    EXPECT_EQ(findRule(42), failed(LSW_CHIP_FAILED));
    EXPECT_EQ(findRule(0xFFFFFFFF), failed(LSW_CHIP_FAILED));
    for (uint32_t chipRuleId : {19U, 24U, 95U, 96U, 256U, 0xFFFFFFFFU})
        EXPECT_THAT(ruleAt(chipRuleId), ElementsAre(LSW_NOT_FOUND, kUntouched, kUntouched, 0xEEU));
    // Marked, but no valid record covers it.
    info()->chipInUse[1] |= 1;
    EXPECT_THAT(ruleAt(32), ElementsAre(LSW_CHIP_FAILED, kUntouched, kUntouched, 0xEEU));
}

TEST_F(AclRecordsReady, RefuseRecordsThatDoNotFitAndChangeNothing)
{
    ASSERT_EQ(record(5, 30, 2), LSW_OK);
    const AclRuleInfo before = *info();
    const struct {
        uint32_t logic, first, count, status;
    } cases[] = {
        {5, 40, 1, LSW_IN_USE},
        {5, 400, 1, LSW_IN_USE},     // judged before the run
        {6, 95, 2, LSW_NO_RESOURCE}, // ends beyond the last id
        {6, 96, 1, LSW_NO_RESOURCE},
        {6, 0, 97, LSW_NO_RESOURCE},
        {6, 0, 0, LSW_NO_RESOURCE},           // its last id would be 2^32 - 1
        {6, 10, 0xFFFFFFF8, LSW_NO_RESOURCE}, // its last id would be 1
        {6, 0xFFFFFFFF, 2, LSW_NO_RESOURCE},  // likewise 0
        {6, 0xFFFFFFFF, 0, LSW_NO_RESOURCE},
        {96, 0, 1, LSW_INVALID_ARGUMENT},
        {256, 0, 1, LSW_INVALID_ARGUMENT},
        {0xFFFFFFFF, 0, 1, LSW_INVALID_ARGUMENT},
    };
    for (const auto &[logic, first, count, status] : cases)
        EXPECT_EQ(record(logic, first, count), status) << logic << " " << first << " " << count;
    EXPECT_EQ(std::memcmp(&before, info(), sizeof before), 0);
    for (uint32_t logic : {96U, 256U, 0xFFFFFFFFU})
        EXPECT_TRUE(taken(logic)) << "no rule can have id " << logic;
    // A free id does not help while all records are valid.
    info()->logicInUse[0] &= ~(1U << 5);
    for (uint32_t id = 0; id < 96; ++id)
        info()->ruleRecords[id].valid = 1;
    EXPECT_EQ(record(5, 10, 1), LSW_NO_RESOURCE);
    info()->ruleRecords[95].valid = 0;
    // A run of no entries marks none.
    EXPECT_EQ(record(6, 50, 0), LSW_OK);
    EXPECT_EQ(allocRun(1, 14), Answer(LSW_OK, 16));
    EXPECT_EQ(findRule(6), Answer(LSW_OK, 50));
}

TEST_F(AclRecordsReady, ReleaseGivesTheIdsBack)
{
    ASSERT_EQ(record(9, 16, 3), LSW_OK);
    ASSERT_EQ(record(10, 19, 1), LSW_OK);
    EXPECT_EQ(release(9), LSW_OK);
    EXPECT_FALSE(taken(9));
    EXPECT_TRUE(taken(10));
    EXPECT_EQ(info()->ruleRecordNum, 1U);
    EXPECT_EQ(allocRun(1, 3), Answer(LSW_OK, 16));
    EXPECT_EQ(allocRun(1, 4), Answer(LSW_OK, 20));
    for (uint32_t unknown : {9U, 77U, 96U, 256U, 0xFFFFFFFFU})
        EXPECT_EQ(release(unknown), LSW_OK);
    EXPECT_EQ(info()->ruleRecordNum, 1U);
    // The mark of an id that no record holds goes as well.
    info()->logicInUse[0] |= 1;
    EXPECT_EQ(release(0), LSW_OK);
    EXPECT_FALSE(taken(0));
}

TEST_F(AclRecordsReady, AReleasedCounterIsNotReleasedAgainThroughItsOldEntry)
{
    ASSERT_EQ(bind(20, 3, 1), LSW_OK);
    ASSERT_EQ(validate(20, 0), LSW_OK);
    ASSERT_EQ(bind(21, 3, 1), LSW_OK);
    EXPECT_EQ(validate(20, 0), LSW_OK);
    EXPECT_EQ(validate(20, 1), LSW_OK) << "nothing is bound there";
    EXPECT_EQ(used(), 1U);
    EXPECT_EQ(counterOf(21), Answer(LSW_OK, 3));
    EXPECT_EQ(counterOf(20), failed(LSW_NOT_FOUND));

    // Nor through an entry that has released it by being written again.
    ASSERT_EQ(bind(21, 3, 0), LSW_OK);
    EXPECT_EQ(used(), 0U);
    ASSERT_EQ(bind(22, 3, 1), LSW_OK);
    EXPECT_EQ(validate(21, 0), LSW_OK);
    EXPECT_EQ(used(), 1U);
    EXPECT_EQ(allocCounter(), Answer(LSW_OK, 0));
    EXPECT_EQ(ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->inUse[0], 1U << 3);
}

TEST_F(AclRecordsReady, CountersAreMarkedWhateverTheyWereBefore)
{
    const AclCounterInfo *counters = ZR_OP(COM_ACL_GetCounterInfo)(kUnit);
    EXPECT_EQ(mark(32, 1), LSW_NO_RESOURCE);
    EXPECT_EQ(mark(0xFFFFFFFF, 0), LSW_NO_RESOURCE);
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(mark(31, 1), LSW_OK);
    EXPECT_EQ(counters->inUse[0], 0x80000000U);
    EXPECT_EQ(allocCounter(), failed(LSW_NO_RESOURCE)) << "32 are taken, whatever the marks say";
    for (int i = 0; i < 33; ++i)
        EXPECT_EQ(mark(31, 2), LSW_OK);
    EXPECT_EQ(counters->inUse[0], 0U);
    EXPECT_EQ(counters->usedNum, 0U) << "never below none";
    EXPECT_EQ(allocCounter(), Answer(LSW_OK, 0));

    EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 257), LSW_INVALID_ARGUMENT);
    ASSERT_EQ(mark(1, 1), LSW_OK);
    EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 0), LSW_OK);
    EXPECT_EQ(allocCounter(), failed(LSW_NO_RESOURCE));
    EXPECT_EQ(counters->inUse[0], 2U) << "marks survive";
    EXPECT_EQ(counters->usedNum, 0U);
}

TEST_F(AclRecordsReady, ABindingStaysWhenItsCounterCannotBeMarked)
{
    EXPECT_EQ(bind(20, 40, 1), LSW_NO_RESOURCE);
    EXPECT_EQ(counterOf(20), Answer(LSW_OK, 40));
    EXPECT_EQ(validate(20, 0), LSW_NO_RESOURCE);
    EXPECT_EQ(counterOf(20), failed(LSW_NOT_FOUND));
    // The binding keeps the low 8 bits, 3 and 1; marking takes the numbers whole: 259 is no counter, 257 frees.
    EXPECT_EQ(bind(20, 259, 1), LSW_NO_RESOURCE);
    EXPECT_EQ(counterOf(20), Answer(LSW_OK, 3));
    EXPECT_EQ(bind(21, 5, 257), LSW_OK);
    EXPECT_EQ(counterOf(21), Answer(LSW_OK, 5));
    EXPECT_EQ(used(), 0U);
    // Bound but not taken, then taken.
    EXPECT_EQ(bind(20, 6, 0), LSW_OK);
    EXPECT_EQ(counterOf(20), failed(LSW_NOT_FOUND));
    EXPECT_EQ(validate(20, 1), LSW_OK);
    EXPECT_EQ(counterOf(20), Answer(LSW_OK, 6));
    EXPECT_EQ(used(), 1U);
}

} // namespace
