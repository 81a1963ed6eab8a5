// The ACL's identifier records: choosing, recording, finding and releasing ids, counters and meters.
#include <cstring>
#include <gmock/gmock.h>

#include "records/acl_records.h"
#include "tests/kit/device.h"

using ::testing::ElementsAre;
using zrtest::Texts;

namespace
{

constexpr uint32_t kOk = 0;
constexpr uint32_t kInvalid = 1;
constexpr uint32_t kNull = 2;
constexpr uint32_t kNoMapping = 4;
constexpr uint32_t kUnknown = 5;
constexpr uint32_t kInUse = 6;
constexpr uint32_t kNone = 7;

constexpr uint32_t kUnit = 2;
constexpr uint32_t kUntouched = 0xEEEEEEEE;

struct Answer {
    uint32_t status;
    uint32_t value;
    bool operator==(const Answer &) const = default;
};
std::ostream &operator<<(std::ostream &out, const Answer &answer)
{
    return out << "status " << answer.status << " value " << answer.value;
}
constexpr Answer failed(uint32_t status)
{
    return {status, kUntouched};
}

Answer allocLogic(uint32_t unit, uint32_t partition)
{
    Answer answer{0, kUntouched};
    answer.status = zrtest::device().ops().acl.allocLogicRuleId(unit, partition, &answer.value);
    return answer;
}
Answer allocRun(uint32_t partition, uint32_t count)
{
    Answer answer{0, kUntouched};
    answer.status = ZR_OP(COM_ACL_AllocChipRuleId)(kUnit, partition, count, &answer.value);
    return answer;
}
Answer findRule(uint32_t unit, uint32_t logicRuleId)
{
    Answer answer{0, kUntouched};
    answer.status = zrtest::device().ops().acl.logicRuleToChipRule(unit, logicRuleId, &answer.value);
    return answer;
}
Answer runLength(uint32_t unit, uint32_t chipRuleId)
{
    Answer answer{0, kUntouched};
    answer.status = ZR_OP(COM_ACL_GetRuleCountFromChipRule)(unit, chipRuleId, &answer.value);
    return answer;
}
Answer allocCounter(uint32_t unit)
{
    Answer answer{0, kUntouched};
    answer.status = ZR_OP(COM_ACL_AllocChipCounter)(unit, &answer.value);
    return answer;
}
Answer counterOf(uint32_t unit, uint32_t chipRuleId)
{
    Answer answer{0, kUntouched};
    answer.status = ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(unit, chipRuleId, &answer.value);
    return answer;
}
uint32_t record(uint32_t logicRuleId, uint32_t firstChipId, uint32_t count)
{
    return zrtest::device().ops().acl.setRuleMapEntry(kUnit, logicRuleId, firstChipId, count);
}
uint32_t release(uint32_t logicRuleId)
{
    return zrtest::device().ops().acl.releaseRuleRecord(kUnit, logicRuleId);
}
bool taken(uint32_t logicRuleId)
{
    return zrtest::device().ops().acl.isLogicRuleInUse(kUnit, logicRuleId) == 1;
}

// Nothing is initialised.
class AclRecords : public zrtest::DeviceTest
{
};

// A unit with 96 ids of each kind, 32 counters and the partitions of the product.
class AclRecordsReady : public zrtest::DeviceTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), kOk);
        ASSERT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 32), kOk);
        const uint32_t ranges[][2] = {{0, 16}, {16, 58}, {74, 6}, {80, 16}};
        for (uint32_t partition = 0; partition < 4; ++partition)
            ASSERT_EQ(
                ZR_OP(COM_ACL_ChipRulePartInit)(kUnit, partition, ranges[partition][0], ranges[partition][1]),
                kOk);
    }
    uint32_t used() { return ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->usedNum; }
};

TEST_F(AclRecords, FindNothingBeforeTheyAreInitialised)
{
    EXPECT_FALSE(taken(0));
    EXPECT_EQ(allocLogic(kUnit, 0), failed(kNone));
    EXPECT_EQ(allocRun(0, 1), failed(kNone));
    EXPECT_EQ(record(0, 0, 1), kNone);
    EXPECT_EQ(release(0), kOk);
    EXPECT_EQ(findRule(kUnit, 0), failed(kNoMapping));
    AclRuleInfoView view;
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, 0, &view), kUnknown);
    EXPECT_EQ(runLength(kUnit, 0), failed(kNoMapping));
    EXPECT_EQ(allocCounter(kUnit), failed(kNone));
    EXPECT_EQ(ZR_OP(COM_ACL_SetCounterInfoEntry)(kUnit, 0, 1), kNone);
    // The maps do not exist: none of these may look for them.
    uint32_t id = kUntouched;
    uint32_t valid = kUntouched;
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 0, 0, 1), kInvalid);
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 0, 0), kInvalid);
    EXPECT_EQ(counterOf(kUnit, 0), failed(kInvalid));
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCarMapEntry)(kUnit, 0, 5, 1), kInvalid);
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 0, &id, &valid), kInvalid);
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCarMapEntryValid)(kUnit, 0, 1), kInvalid);
    EXPECT_EQ(ZR_OP(COM_ACL_ChipRulePartInit)(kUnit, 0, 0, 1), kInvalid);
}

TEST_F(AclRecordsReady, RefuseUnitsBeyondTheThird)
{
    uint32_t out = kUntouched;
    uint32_t other = kUntouched;
    AclRuleInfoView view{7, 7, 7};
    for (uint32_t unit : {3U, 255U, 0xFFFFFFFFU}) {
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(unit), nullptr);
        EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartInfo)(unit, 0), nullptr);
        EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartInfo)(unit, 0), nullptr);
        EXPECT_EQ(ZR_OP(COM_ACL_GetCounterInfo)(unit), nullptr);
        EXPECT_EQ(dev.ops().acl.isLogicRuleInUse(unit, 0), 1U);
        EXPECT_EQ(runLength(unit, 0), failed(kNoMapping));
        for (uint32_t status : {
                 ZR_OP(COM_ACL_GetLogicRulePartRange)(unit, 0, &out, &other),
                 ZR_OP(COM_ACL_GetChipRulePartRange)(unit, 0, &out, &other),
                 ZR_OP(COM_ACL_LogicRulePartInit)(unit, 0, 0, 0),
                 ZR_OP(COM_ACL_ChipRulePartInit)(unit, 0, 0, 0),
                 ZR_OP(COM_ACL_RuleInfoInit)(unit, 96),
                 ZR_OP(COM_ACL_CounterInfoInit)(unit, 32),
                 dev.ops().acl.allocLogicRuleId(unit, 0, &out),
                 ZR_OP(COM_ACL_AllocChipRuleId)(unit, 0, 1, &out),
                 dev.ops().acl.setRuleMapEntry(unit, 0, 0, 1),
                 dev.ops().acl.releaseRuleRecord(unit, 0),
                 dev.ops().acl.logicRuleToChipRule(unit, 0, &out),
                 ZR_OP(COM_ACL_GetRuleInfoFromChipId)(unit, 0, &view),
                 ZR_OP(COM_ACL_AllocChipCounter)(unit, &out),
                 ZR_OP(COM_ACL_SetCounterInfoEntry)(unit, 0, 1),
                 ZR_OP(COM_ACL_SetRuleCounterMapEntry)(unit, 0, 0, 1),
                 ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(unit, 0, 1),
                 ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(unit, 0, &out),
                 ZR_OP(COM_ACL_SetRuleCarMapEntry)(unit, 0, 0, 1),
                 ZR_OP(COM_ACL_GetRuleCarMapEntry)(unit, 0, &out, &other),
                 ZR_OP(COM_ACL_SetRuleCarMapEntryValid)(unit, 0, 1),
             })
            EXPECT_EQ(status, kInvalid);
    }
    EXPECT_EQ(out, kUntouched);
    EXPECT_EQ(other, kUntouched);
    EXPECT_EQ(view.count, 7);
    EXPECT_EQ(zrsim::memory().liveBlocks(), 3U);
}

TEST_F(AclRecordsReady, RefuseMissingOutputs)
{
    uint32_t out = 0;
    for (uint32_t status : {
             ZR_OP(COM_ACL_GetLogicRulePartRange)(kUnit, 0, nullptr, &out),
             ZR_OP(COM_ACL_GetChipRulePartRange)(kUnit, 0, &out, nullptr),
             dev.ops().acl.allocLogicRuleId(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_AllocChipRuleId)(kUnit, 0, 1, nullptr),
             dev.ops().acl.logicRuleToChipRule(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_GetRuleCountFromChipRule)(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_AllocChipCounter)(kUnit, nullptr),
             ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 0, nullptr, &out),
             ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 0, &out, nullptr),
         })
        EXPECT_EQ(status, kNull);
}

// ---- initialisation -----------------------------------------------------------------------------

TEST_F(AclRecords, AreTakenFromTheManagerOnceAndInOrder)
{
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 257), kInvalid);
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 0xFFFFFFFF), kInvalid);
    dev.forget();
    ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), kOk);
    Texts allocations;
    for (const zrsim::Call &call : dev.recorded())
        if (std::string(call.name) == "LSWM_MemAlloc")
            allocations.push_back(call.text);
    EXPECT_THAT(allocations, ElementsAre("LSWM_MemAlloc(1152) = ptr", "LSWM_MemAlloc(192) = ptr",
                                         "LSWM_MemAlloc(192) = ptr"));

    const AclRuleInfo *info = ZR_OP(COM_ACL_GetRuleInfo)(kUnit);
    EXPECT_EQ(info->logicRuleNum, 96U);
    EXPECT_EQ(info->chipRuleNum, 96U);
    for (uint32_t id = 0; id < 96; ++id) {
        EXPECT_EQ(info->ruleRecords[id].valid, 0);
        EXPECT_EQ(info->counterMap[id].counterId, 0xFF);
        EXPECT_EQ(info->counterMap[id].valid, 0);
        EXPECT_EQ(info->carMap[id].carId, 0);
        EXPECT_EQ(info->carMap[id].valid, 0);
    }
    for (uint32_t partition = 0; partition < 4; ++partition) {
        uint32_t first = kUntouched;
        uint32_t count = kUntouched;
        EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartRange)(kUnit, partition, &first, &count), kOk);
        EXPECT_EQ(first, 0U);
        EXPECT_EQ(count, 96U);
        EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartRange)(kUnit, partition, &first, &count), kOk);
        EXPECT_EQ(first, 0U);
        EXPECT_EQ(count, 96U);
    }
    ASSERT_EQ(record(7, 3, 2), kOk);
    for (uint32_t count : {96U, 257U})
        EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, count), kInUse);
    EXPECT_TRUE(taken(7));
    EXPECT_EQ(zrsim::memory().liveBlocks(), 3U);
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(0)->logicRuleNum, 0U);
}

TEST_F(AclRecords, KeepNothingWhenMemoryRunsOut)
{
    for (unsigned nth : {1U, 2U, 3U}) {
        dev.fail("LSWM_MemAlloc", 1, nth);
        EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), kNull);
        dev.failNone();
        EXPECT_EQ(zrsim::memory().liveBlocks(), 0U);
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->logicRuleNum, 0U);
        EXPECT_EQ(record(0, 0, 1), kNone);
    }
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), kOk);
}

TEST_F(AclRecordsReady, RefusePartitionsThatDoNotFit)
{
    const struct {
        uint32_t partition, first, count, status;
    } cases[] = {{0, 0, 96, kOk},
                 {3, 96, 0, kOk},
                 {0, 90, 7, kInvalid},
                 {4, 0, 1, kInvalid},
                 {0, 97, 0, kInvalid},
                 {0, 0xFFFFFFFF, 1, kInvalid},
                 {0, 1, 0xFFFFFFFF, kInvalid}};
    for (const auto &[partition, first, count, status] : cases) {
        EXPECT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, partition, first, count), status);
        EXPECT_EQ(ZR_OP(COM_ACL_ChipRulePartInit)(kUnit, partition, first, count), status);
    }
    EXPECT_EQ(allocLogic(kUnit, 4), failed(kInvalid));
    EXPECT_EQ(allocRun(4, 1), failed(kInvalid));
    EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartInfo)(kUnit, 4), nullptr);
    EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartInfo)(kUnit, 4), nullptr);
    EXPECT_EQ(allocLogic(kUnit, 3), failed(kNone)) << "an empty partition has no id";
    EXPECT_EQ(allocRun(3, 0), failed(kNone));
}

// ---- choosing ids -------------------------------------------------------------------------------

TEST_F(AclRecordsReady, LogicIdsAreOneSpaceForAllPartitionsAndStayFreeUntilRecorded)
{
    EXPECT_EQ(allocLogic(kUnit, 0), (Answer{kOk, 0}));
    EXPECT_EQ(allocLogic(kUnit, 3), (Answer{kOk, 0}));
    EXPECT_EQ(record(0, 80, 1), kOk);
    EXPECT_EQ(record(2, 81, 1), kOk);
    EXPECT_EQ(allocLogic(kUnit, 1), (Answer{kOk, 1}));
    EXPECT_EQ(record(1, 82, 1), kOk);
    EXPECT_EQ(allocLogic(kUnit, 1), (Answer{kOk, 3}));
    ASSERT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, 2, 2, 1), kOk);
    EXPECT_EQ(allocLogic(kUnit, 2), failed(kNone));
}

TEST_F(AclRecordsReady, RunsAreTakenFirstFitInsideTheirPartition)
{
    const struct {
        std::vector<uint32_t> marked;
        uint32_t partition, count;
        Answer answer;
    } cases[] = {
        {{}, 1, 3, {kOk, 16}},
        {{}, 0, 16, {kOk, 0}},
        {{}, 0, 17, failed(kNone)},
        {{}, 1, 0xFFFFFFF0, failed(kNone)},
        {{16, 18}, 1, 2, {kOk, 19}},
        {{16, 18}, 1, 1, {kOk, 17}},
        {{16, 18}, 1, 0, {kOk, 17}},
        {{74, 75, 76, 77}, 2, 2, {kOk, 78}},
        {{74, 75, 76, 77}, 2, 3, failed(kNone)},
        {{75, 77, 79}, 2, 2, failed(kNone)},
        {{74, 75, 76, 77, 78, 79}, 2, 0, failed(kNone)},
        {{82, 85, 89}, 3, 4, {kOk, 90}},
        {{95}, 3, 16, failed(kNone)},
    };
    for (const auto &[marked, partition, count, answer] : cases) {
        uint32_t logicRuleId = 0;
        for (uint32_t chipRuleId : marked)
            ASSERT_EQ(record(logicRuleId++, chipRuleId, 1), kOk);
        EXPECT_EQ(allocRun(partition, count), answer) << "partition " << partition << " count " << count;
        while (logicRuleId > 0)
            ASSERT_EQ(release(--logicRuleId), kOk);
    }
}

TEST_F(AclRecords, HoldUpTo256Ids)
{
    ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 256), kOk);
    EXPECT_EQ(record(255, 1, 255), kOk);
    EXPECT_EQ(runLength(kUnit, 255), (Answer{kOk, 255}));
    EXPECT_EQ(allocRun(0, 1), (Answer{kOk, 0}));
    EXPECT_EQ(allocRun(0, 2), failed(kNone));
    EXPECT_EQ(release(255), kOk);
    EXPECT_EQ(record(0, 0, 256), kNone) << "a record cannot count 256 entries";
    EXPECT_EQ(allocRun(0, 256), (Answer{kOk, 0}));
}

// ---- records ------------------------------------------------------------------------------------

TEST_F(AclRecordsReady, AnyEntryOfARunFindsItsRule)
{
    ASSERT_EQ(record(40, 20, 3), kOk);
    ASSERT_EQ(record(41, 23, 1), kOk);
    for (uint32_t chipRuleId : {20U, 21U, 22U}) {
        AclRuleInfoView view{};
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, chipRuleId, &view), kOk);
        EXPECT_EQ(view.logicRuleId, 40U);
        EXPECT_EQ(view.firstChipId, 20U);
        EXPECT_EQ(view.count, 3);
        EXPECT_EQ(runLength(kUnit, chipRuleId), (Answer{kOk, 3}));
    }
    EXPECT_EQ(findRule(kUnit, 41), (Answer{kOk, 23}));
    EXPECT_EQ(findRule(kUnit, 42), failed(kNoMapping));
    EXPECT_EQ(findRule(kUnit, 0xFFFFFFFF), failed(kNoMapping));
    AclRuleInfoView view;
    for (uint32_t chipRuleId : {19U, 24U, 95U, 96U, 256U, 0xFFFFFFFFU})
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, chipRuleId, &view), kUnknown);
    // Marked, but no valid record covers it.
    ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->chipInUse[1] |= 1;
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, 32, &view), kNoMapping);
}

TEST_F(AclRecordsReady, RefuseRecordsThatDoNotFitAndChangeNothing)
{
    ASSERT_EQ(record(5, 30, 2), kOk);
    const AclRuleInfo before = *ZR_OP(COM_ACL_GetRuleInfo)(kUnit);
    const struct {
        uint32_t logic, first, count, status;
    } cases[] = {
        {5, 40, 1, kInUse},         {5, 400, 1, kInUse},                    // judged before the run
        {6, 95, 2, kNone},                                                  // ends beyond the last id
        {6, 96, 1, kNone},          {6, 0, 97, kNone},    {6, 0, 0, kNone}, // its last id would be 2^32 - 1
        {6, 10, 0xFFFFFFF8, kNone},                                         // its last id would be 1
        {6, 0xFFFFFFFF, 2, kNone},                                          // likewise 0
        {6, 0xFFFFFFFF, 0, kNone},  {96, 0, 1, kInvalid}, {256, 0, 1, kInvalid}, {0xFFFFFFFF, 0, 1, kInvalid},
    };
    for (const auto &[logic, first, count, status] : cases)
        EXPECT_EQ(record(logic, first, count), status) << logic << " " << first << " " << count;
    EXPECT_EQ(std::memcmp(&before, ZR_OP(COM_ACL_GetRuleInfo)(kUnit), sizeof before), 0);
    for (uint32_t logic : {96U, 256U, 0xFFFFFFFFU})
        EXPECT_TRUE(taken(logic)) << "no rule can have id " << logic;
    // A run of no entries marks none.
    EXPECT_EQ(record(6, 50, 0), kOk);
    EXPECT_EQ(allocRun(1, 14), (Answer{kOk, 16}));
    EXPECT_EQ(findRule(kUnit, 6), (Answer{kOk, 50}));
}

TEST_F(AclRecordsReady, ReleaseGivesTheIdsBack)
{
    ASSERT_EQ(record(9, 16, 3), kOk);
    ASSERT_EQ(record(10, 19, 1), kOk);
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->ruleRecordNum, 2U);
    EXPECT_EQ(release(9), kOk);
    EXPECT_FALSE(taken(9));
    EXPECT_TRUE(taken(10));
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->ruleRecordNum, 1U);
    EXPECT_EQ(allocRun(1, 3), (Answer{kOk, 16}));
    EXPECT_EQ(allocRun(1, 4), (Answer{kOk, 20}));
    for (uint32_t unknown : {9U, 77U, 96U, 256U, 0xFFFFFFFFU})
        EXPECT_EQ(release(unknown), kOk);
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->ruleRecordNum, 1U);
    // The mark of an id that no record holds goes as well.
    ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->logicInUse[0] |= 1;
    EXPECT_EQ(release(0), kOk);
    EXPECT_FALSE(taken(0));
}

TEST_F(AclRecordsReady, All96IdsCanBeFilledEmptiedAndFilledAgain)
{
    for (int round = 0; round < 2; ++round) {
        for (uint32_t id = 0; id < 96; ++id)
            ASSERT_EQ(record(95 - id, id, 1), kOk);
        EXPECT_EQ(allocLogic(kUnit, 0), failed(kNone));
        for (uint32_t partition = 0; partition < 4; ++partition)
            EXPECT_EQ(allocRun(partition, 1), failed(kNone));
        // A free id does not help while all records are valid.
        ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->logicInUse[0] &= ~1U;
        EXPECT_EQ(record(0, 10, 1), kNone);
        for (uint32_t id = 0; id < 96; ++id)
            ASSERT_EQ(release(id), kOk);
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(kUnit)->ruleRecordNum, 0U);
        EXPECT_EQ(allocRun(1, 58), (Answer{kOk, 16}));
    }
}

// ---- counters and meters ------------------------------------------------------------------------

TEST_F(AclRecordsReady, All32CountersCanBeTakenReleasedAndTakenAgain)
{
    for (int round = 0; round < 2; ++round) {
        for (uint32_t counter = 0; counter < 32; ++counter) {
            EXPECT_EQ(allocCounter(kUnit), (Answer{kOk, counter}));
            ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 95 - counter, counter, 1), kOk);
        }
        EXPECT_EQ(allocCounter(kUnit), failed(kNone));
        EXPECT_EQ(counterOf(kUnit, 90), (Answer{kOk, 5}));
        for (uint32_t counter = 0; counter < 32; ++counter)
            ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 95 - counter, 0), kOk);
        EXPECT_EQ(counterOf(kUnit, 90), failed(kUnknown));
        EXPECT_EQ(used(), 0U);
    }
}

TEST_F(AclRecordsReady, AReleasedCounterIsNotReleasedAgainThroughItsOldEntry)
{
    ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 20, 3, 1), kOk);
    ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 20, 0), kOk);
    ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 21, 3, 1), kOk);
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 20, 0), kOk);
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 20, 1), kOk) << "nothing is bound there";
    EXPECT_EQ(used(), 1U);
    EXPECT_EQ(counterOf(kUnit, 21), (Answer{kOk, 3}));
    EXPECT_EQ(counterOf(kUnit, 20), failed(kUnknown));

    // Nor through an entry that has released it by being written again.
    ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 21, 3, 0), kOk);
    EXPECT_EQ(used(), 0U);
    ASSERT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 22, 3, 1), kOk);
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 21, 0), kOk);
    EXPECT_EQ(used(), 1U);
    EXPECT_EQ(allocCounter(kUnit), (Answer{kOk, 0}));
    EXPECT_EQ(ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->inUse[0], 1U << 3);
}

TEST_F(AclRecordsReady, CountersAreMarkedWhateverTheyWereBefore)
{
    const AclCounterInfo *info = ZR_OP(COM_ACL_GetCounterInfo)(kUnit);
    auto mark = [](uint32_t counter, uint32_t flag) {
        return ZR_OP(COM_ACL_SetCounterInfoEntry)(kUnit, counter, flag);
    };
    EXPECT_EQ(mark(32, 1), kNone);
    EXPECT_EQ(mark(0xFFFFFFFF, 0), kNone);
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(mark(31, 1), kOk);
    EXPECT_EQ(info->inUse[0], 0x80000000U);
    EXPECT_EQ(allocCounter(kUnit), failed(kNone)) << "32 are taken, whatever the marks say";
    for (int i = 0; i < 33; ++i)
        EXPECT_EQ(mark(31, 2), kOk);
    EXPECT_EQ(info->inUse[0], 0U);
    EXPECT_EQ(info->usedNum, 0U) << "never below none";
    EXPECT_EQ(allocCounter(kUnit), (Answer{kOk, 0}));

    EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 257), kInvalid);
    ASSERT_EQ(mark(1, 1), kOk);
    EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 0), kOk);
    EXPECT_EQ(allocCounter(kUnit), failed(kNone));
    EXPECT_EQ(info->inUse[0], 2U) << "marks survive";
}

TEST_F(AclRecordsReady, ABindingStaysWhenItsCounterCannotBeMarked)
{
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 20, 40, 1), kNone);
    EXPECT_EQ(counterOf(kUnit, 20), (Answer{kOk, 40}));
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 20, 0), kNone);
    EXPECT_EQ(counterOf(kUnit, 20), failed(kUnknown));
    // 259 in 8 bits would be counter 3.
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 20, 259, 1), kNone);
    EXPECT_EQ(counterOf(kUnit, 20), failed(kUnknown));
    // Bound but not taken, then taken.
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, 20, 6, 0), kOk);
    EXPECT_EQ(counterOf(kUnit, 20), failed(kUnknown));
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, 20, 1), kOk);
    EXPECT_EQ(counterOf(kUnit, 20), (Answer{kOk, 6}));
    EXPECT_EQ(used(), 1U);
    for (uint32_t beyond : {96U, 256U, 0xFFFFFFFFU}) {
        EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntry)(kUnit, beyond, 1, 1), kInvalid);
        EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(kUnit, beyond, 0), kInvalid);
        EXPECT_EQ(counterOf(kUnit, beyond), failed(kInvalid));
    }
    EXPECT_EQ(used(), 1U);
}

TEST_F(AclRecords, Counter255IsNeverDrawnForItsNumberMeansNone)
{
    ASSERT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 256), kOk);
    for (uint32_t counter = 0; counter < 255; ++counter) {
        ASSERT_EQ(allocCounter(kUnit), (Answer{kOk, counter}));
        ASSERT_EQ(ZR_OP(COM_ACL_SetCounterInfoEntry)(kUnit, counter, 1), kOk);
    }
    EXPECT_EQ(allocCounter(kUnit), failed(kNone));
}

TEST_F(AclRecordsReady, AMeterBindingIsReadBackAsWritten)
{
    auto meterAt = [](uint32_t chipRuleId) {
        uint32_t meter = kUntouched;
        uint32_t valid = kUntouched;
        const uint32_t status = ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, chipRuleId, &meter, &valid);
        return std::vector<uint32_t>{status, meter, valid};
    };
    EXPECT_THAT(meterAt(95), ElementsAre(kOk, 0U, 0U));
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCarMapEntry)(kUnit, 95, 200, 1), kOk);
    EXPECT_THAT(meterAt(95), ElementsAre(kOk, 200U, 1U));
    EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCarMapEntryValid)(kUnit, 95, 0), kOk);
    EXPECT_THAT(meterAt(95), ElementsAre(kOk, 200U, 0U));
    for (uint32_t beyond : {96U, 0xFFFFFFFFU}) {
        EXPECT_THAT(meterAt(beyond), ElementsAre(kInvalid, kUntouched, kUntouched));
        EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCarMapEntry)(kUnit, beyond, 1, 1), kInvalid);
        EXPECT_EQ(ZR_OP(COM_ACL_SetRuleCarMapEntryValid)(kUnit, beyond, 1), kInvalid);
    }
}

} // namespace
