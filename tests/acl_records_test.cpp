// The ACL's identifier records where the life of rules (acl_random_test.cpp) does not lead: what is allocated,
// limits of the tables, arguments that wrap around, marks without records.
#include <gmock/gmock.h>

#include <cstring>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/device.h"

using ::testing::ElementsAre;

namespace
{

constexpr uint32_t kUnit = 2;
constexpr uint32_t kUntouched = 0xEEEEEEEE;

using Answer = std::pair<uint32_t, uint32_t>; // status and value
constexpr Answer failed(uint32_t status)
{
    return {status, kUntouched};
}
// What an operation returns whose last argument is its one output.
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
    static AclRuleInfo *info() { return ZR_OP(COM_ACL_GetRuleInfo)(kUnit); }
    static AclCounterInfo *counters() { return ZR_OP(COM_ACL_GetCounterInfo)(kUnit); }

    static Answer allocLogic(uint32_t partition) { return ask(ZR_OP(COM_ACL_AllocLogicRuleId), partition); }
    static Answer allocRun(uint32_t partition, uint32_t count)
    {
        return ask(ZR_OP(COM_ACL_AllocChipRuleId), partition, count);
    }
    static uint32_t record(uint32_t logicRuleId, uint32_t firstChipId, uint32_t count)
    {
        return ZR_OP(COM_ACL_SetRuleRecord)(kUnit, logicRuleId, firstChipId, count);
    }
    static uint32_t release(uint32_t logicRuleId)
    {
        return ZR_OP(COM_ACL_ReleseRuleRecord)(kUnit, logicRuleId);
    }
    static bool taken(uint32_t logicRuleId) { return ZR_OP(COM_ACL_IsLogicRuleInUse)(kUnit, logicRuleId) == 1; }

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
    for (uint32_t status : {ZR_OP(COM_ACL_GetLogicRulePartRange)(kBad, 0, nullptr, &value),
                            ZR_OP(COM_ACL_GetChipRulePartRange)(kBad, 0, &value, nullptr),
                            ZR_OP(COM_ACL_AllocLogicRuleId)(kBad, 0, nullptr),
                            ZR_OP(COM_ACL_AllocChipRuleId)(kBad, 0, 1, nullptr),
                            ZR_OP(COM_ACL_LogicRuleToChipRule)(kBad, 0, nullptr),
                            ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kBad, 0, nullptr),
                            ZR_OP(COM_ACL_AllocChipCounter)(kBad, nullptr),
                            ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kBad, 0, nullptr),
                            ZR_OP(COM_ACL_GetRuleCarMapEntry)(kBad, 0, nullptr, &value)})
        EXPECT_EQ(status, LSW_INVALID_ARGUMENT);
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCountFromChipRule)(kBad, 0, nullptr), LSW_CHIP_FAILED);
    EXPECT_EQ(value, kUntouched);
}

TEST_F(AclRecords, AreTakenFromTheManagerOnceAndStartEmpty)
{
    ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), LSW_OK);
    zrtest::Texts allocations;
    for (const zrsim::Call &call : dev.recorded())
        if (std::string(call.name) == "LSWM_MemAlloc")
            allocations.push_back(call.text);
    EXPECT_THAT(allocations, ElementsAre("LSWM_MemAlloc(1152) = ptr", "LSWM_MemAlloc(192) = ptr",
                                         "LSWM_MemAlloc(192) = ptr"));
    for (uint32_t id = 0; id < 96; ++id) {
        EXPECT_EQ(info()->ruleRecords[id].valid, 0);
        EXPECT_EQ(info()->counterMap[id].counterId, 0xFF);
        EXPECT_EQ(info()->counterMap[id].valid + info()->carMap[id].carId + info()->carMap[id].valid, 0);
    }
    for (uint32_t partition = 0; partition < 4; ++partition) {
        EXPECT_EQ(info()->logicParts[partition].count, 96U);
        EXPECT_EQ(info()->chipParts[partition].count, 96U);
    }
    ASSERT_EQ(record(7, 3, 2), LSW_OK);
    EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 96), LSW_IN_USE);
    EXPECT_TRUE(taken(7));
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(0)->logicRuleNum, 0U) << "of another unit";
}

TEST_F(AclRecords, HoldUpTo256IdsAnd255Counters)
{
    ASSERT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(kUnit, 256), LSW_OK);
    EXPECT_EQ(record(255, 1, 255), LSW_OK);
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

TEST_F(AclRecordsReady, PartitionsStayWithinTheTables)
{
    const struct {
        uint32_t first, count, status;
    } cases[] = {{0, 96, LSW_OK},
                 {90, 7, LSW_INVALID_ARGUMENT},
                 {97, 0, LSW_INVALID_ARGUMENT},
                 {1, 0xFFFFFFFF, LSW_INVALID_ARGUMENT},
                 {96, 0, LSW_OK}};
    for (const auto &[first, count, status] : cases) {
        EXPECT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, 3, first, count), status);
        EXPECT_EQ(ZR_OP(COM_ACL_ChipRulePartInit)(kUnit, 3, first, count), status);
    }
    EXPECT_EQ(allocLogic(3), failed(LSW_NO_RESOURCE)) << "an empty partition has no id";
    EXPECT_EQ(allocRun(3, 0), failed(LSW_NO_RESOURCE));

    // A run of no entries starts at the lowest free id, and no length wraps around.
    EXPECT_EQ(allocRun(1, 0), Answer(LSW_OK, 16));
    EXPECT_EQ(allocRun(1, 0xFFFFFFF0), failed(LSW_NO_RESOURCE));
    ASSERT_EQ(record(2, 74, 6), LSW_OK);
    EXPECT_EQ(allocRun(2, 0), failed(LSW_NO_RESOURCE));

    // Logic ids are one space: one that another partition has taken is not free here.
    ASSERT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(kUnit, 2, 1, 3), LSW_OK);
    ASSERT_EQ(record(1, 80, 1), LSW_OK);
    EXPECT_EQ(allocLogic(2), Answer(LSW_OK, 3));
    ASSERT_EQ(record(3, 81, 1), LSW_OK);
    EXPECT_EQ(allocLogic(2), failed(LSW_NO_RESOURCE));
}

TEST_F(AclRecordsReady, RefuseRecordsThatDoNotFitAndChangeNothing)
{
    ASSERT_EQ(record(5, 30, 2), LSW_OK);
    const AclRuleInfo before = *info();
    const struct {
        uint32_t logic, first, count, status;
    } cases[] = {
        {5, 400, 1, LSW_IN_USE},     // checked before the run
        {6, 95, 2, LSW_NO_RESOURCE}, // ends beyond the last id
        {6, 0, 97, LSW_NO_RESOURCE},
        {6, 0, 0, LSW_NO_RESOURCE},           // its last id would be 2^32 - 1
        {6, 10, 0xFFFFFFF8, LSW_NO_RESOURCE}, // its last id would be 1
        {6, 0xFFFFFFFF, 2, LSW_NO_RESOURCE},  // likewise 0
        {96, 0, 1, LSW_INVALID_ARGUMENT},
    };
    for (const auto &[logic, first, count, status] : cases)
        EXPECT_EQ(record(logic, first, count), status) << logic << " " << first << " " << count;
    EXPECT_EQ(std::memcmp(&before, info(), sizeof before), 0);

    EXPECT_EQ(record(6, 96, 0), LSW_OK) << "a run of no entries marks none";
    EXPECT_EQ(ask(ZR_OP(COM_ACL_LogicRuleToChipRule), 6U), Answer(LSW_OK, 96));
    EXPECT_EQ(std::memcmp(before.chipInUse, info()->chipInUse, sizeof before.chipInUse), 0);
    // A free id does not help while all records are valid.
    for (uint32_t id = 0; id < 96; ++id)
        info()->ruleRecords[id].valid = 1;
    EXPECT_EQ(record(7, 10, 1), LSW_NO_RESOURCE);
}

TEST_F(AclRecordsReady, AMarkWithoutRecordIsNoRuleAndCanBeReleased)
{
    info()->chipInUse[1] |= 1;
    AclRuleInfoView view{};
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, 32, &view), LSW_CHIP_FAILED);
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
    EXPECT_EQ(counters()->usedNum, 1U);
    EXPECT_EQ(counterOf(21), Answer(LSW_OK, 3));
    EXPECT_EQ(counterOf(20), failed(LSW_NOT_FOUND));

    // Nor through an entry that has released it by being written again.
    ASSERT_EQ(bind(21, 3, 0), LSW_OK);
    EXPECT_EQ(counters()->usedNum, 0U);
    ASSERT_EQ(bind(22, 3, 1), LSW_OK);
    EXPECT_EQ(validate(21, 0), LSW_OK);
    EXPECT_EQ(counters()->usedNum, 1U);
    EXPECT_EQ(counters()->inUse[0], 1U << 3);
}

TEST_F(AclRecordsReady, CountersAreMarkedWhateverTheyWereBefore)
{
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(mark(31, 1), LSW_OK);
    EXPECT_EQ(counters()->inUse[0], 0x80000000U);
    EXPECT_EQ(allocCounter(), failed(LSW_NO_RESOURCE)) << "32 are taken, whatever the marks say";
    for (int i = 0; i < 33; ++i)
        EXPECT_EQ(mark(31, 2), LSW_OK);
    EXPECT_EQ(counters()->inUse[0], 0U);
    EXPECT_EQ(counters()->usedNum, 0U) << "never below none";

    ASSERT_EQ(mark(1, 1), LSW_OK);
    EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(kUnit, 0), LSW_OK);
    EXPECT_EQ(allocCounter(), failed(LSW_NO_RESOURCE));
    EXPECT_EQ(counters()->inUse[0], 2U) << "marks survive";
    EXPECT_EQ(counters()->usedNum, 0U);
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
    EXPECT_EQ(counters()->usedNum, 0U);
    // Bound but not taken, then taken.
    EXPECT_EQ(bind(20, 6, 0), LSW_OK);
    EXPECT_EQ(counterOf(20), failed(LSW_NOT_FOUND));
    EXPECT_EQ(validate(20, 1), LSW_OK);
    EXPECT_EQ(counterOf(20), Answer(LSW_OK, 6));
    EXPECT_EQ(counters()->usedNum, 1U);
}

} // namespace
