// What the ACL's operations answer for units that do not exist, without records, and without outputs.
#include <gmock/gmock.h>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/kit/device.h"

namespace
{

enum : uint32_t { kOk, kInvalid, kNull, kNoMapping = 4, kUnknown, kInUse, kNone };

constexpr uint32_t kUnit = 2;
constexpr uint32_t kUntouched = 0xEEEEEEEE;

// Nothing is initialised.
class AclBounds : public zrtest::RunningDeviceTest
{
protected:
    const ZrAclOps &acl() const { return dev.ops().acl; }
};

class AclBoundsReady : public AclBounds
{
protected:
    void SetUp() override
    {
        AclBounds::SetUp();
        ASSERT_EQ(acl().init(kUnit), kOk);
        dev.forget();
    }
};

// Every operation that needs records, once: its status, and what it answers where none exist. None may write.
std::vector<std::pair<uint32_t, uint32_t>> useAll(uint32_t unit)
{
    const ZrAclOps &acl = zrtest::device().ops().acl;
    uint32_t out = kUntouched;
    uint32_t other = kUntouched;
    AclRuleInfoView view{7, 7, 7};
    const std::vector<std::pair<uint32_t, uint32_t>> answers = {
        {acl.allocLogicRuleId(unit, 0, &out), kNone},
        {ZR_OP(COM_ACL_AllocChipRuleId)(unit, 0, 1, &out), kNone},
        {acl.setRuleMapEntry(unit, 0, 0, 1), kNone},
        {acl.releaseRuleRecord(unit, 0), kOk},
        {acl.logicRuleToChipRule(unit, 0, &out), kNoMapping},
        {ZR_OP(COM_ACL_GetRuleInfoFromChipId)(unit, 0, &view), kUnknown},
        {ZR_OP(COM_ACL_AllocChipCounter)(unit, &out), kNone},
        {ZR_OP(COM_ACL_SetCounterInfoEntry)(unit, 0, 1), kNone},
        {ZR_OP(COM_ACL_SetRuleCounterMapEntry)(unit, 0, 0, 1), kInvalid},
        {ZR_OP(COM_ACL_SetRuleCounterMapEntryValid)(unit, 0, 1), kInvalid},
        {ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(unit, 0, &out), kInvalid},
        {ZR_OP(COM_ACL_SetRuleCarMapEntry)(unit, 0, 5, 1), kInvalid},
        {ZR_OP(COM_ACL_GetRuleCarMapEntry)(unit, 0, &out, &other), kInvalid},
        {ZR_OP(COM_ACL_SetRuleCarMapEntryValid)(unit, 0, 1), kInvalid},
    };
    EXPECT_EQ(out, kUntouched);
    EXPECT_EQ(other, kUntouched);
    EXPECT_EQ(view.count, 7);
    return answers;
}

TEST_F(AclBounds, NothingIsFoundBeforeTheRecordsAreInitialised)
{
    for (const auto &[status, fresh] : useAll(kUnit))
        EXPECT_EQ(status, fresh);
    EXPECT_EQ(acl().isLogicRuleInUse(kUnit, 0), 0U);
    uint32_t out = kUntouched;
    EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCountFromChipRule)(kUnit, 0, &out), kNoMapping);
    EXPECT_EQ(out, kUntouched);
    EXPECT_EQ(ZR_OP(COM_ACL_ChipRulePartInit)(kUnit, 0, 0, 1), kInvalid);
}

TEST_F(AclBoundsReady, RefuseUnitsBeyondTheThird)
{
    uint32_t first = kUntouched;
    uint32_t count = kUntouched;
    for (uint32_t unit : {3U, 255U, 0xFFFFFFFFU}) {
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleInfo)(unit), nullptr);
        EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartInfo)(unit, 0), nullptr);
        EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartInfo)(unit, 0), nullptr);
        EXPECT_EQ(ZR_OP(COM_ACL_GetCounterInfo)(unit), nullptr);
        EXPECT_EQ(acl().isLogicRuleInUse(unit, 0), 1U);
        EXPECT_EQ(ZR_OP(COM_ACL_GetRuleCountFromChipRule)(unit, 0, &count), kNoMapping);
        EXPECT_EQ(ZR_OP(COM_ACL_GetLogicRulePartRange)(unit, 0, &first, &count), kInvalid);
        EXPECT_EQ(ZR_OP(COM_ACL_GetChipRulePartRange)(unit, 0, &first, &count), kInvalid);
        EXPECT_EQ(ZR_OP(COM_ACL_LogicRulePartInit)(unit, 0, 0, 0), kInvalid);
        EXPECT_EQ(ZR_OP(COM_ACL_ChipRulePartInit)(unit, 0, 0, 0), kInvalid);
        EXPECT_EQ(ZR_OP(COM_ACL_RuleInfoInit)(unit, 96), kInvalid);
        EXPECT_EQ(ZR_OP(COM_ACL_CounterInfoInit)(unit, 32), kInvalid);
        for (const auto &[status, fresh] : useAll(unit))
            EXPECT_EQ(status, kInvalid);
    }
    EXPECT_EQ(first, kUntouched);
    EXPECT_EQ(count, kUntouched);
    EXPECT_EQ(zrsim::memory().liveBlocks(), 3U);
}

TEST_F(AclBoundsReady, RefuseMissingRecordsAndOutputsBeforeAnythingHappens)
{
    AclEntryPlace place;
    LswmAclRule rule = zrtest::oneEntryRule(1);
    uint32_t out = 0;
    for (uint32_t status : {
             ZR_OP(COM_ACL_GetLogicRulePartRange)(kUnit, 0, nullptr, &out),
             ZR_OP(COM_ACL_GetChipRulePartRange)(kUnit, 0, &out, nullptr),
             acl().allocLogicRuleId(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_AllocChipRuleId)(kUnit, 0, 1, nullptr),
             acl().logicRuleToChipRule(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_GetRuleInfoFromChipId)(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_GetRuleCountFromChipRule)(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_AllocChipCounter)(kUnit, nullptr),
             ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, 0, nullptr),
             ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 0, nullptr, &out),
             ZR_OP(COM_ACL_GetRuleCarMapEntry)(kUnit, 0, &out, nullptr),
             acl().addEntry(kUnit, nullptr, &place),
             acl().addEntry(kUnit, &rule, nullptr),
             acl().getEntry(kUnit, 0, nullptr),
             ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, nullptr, &out),
             ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, nullptr),
             ZR_OP(ZR_ACL_AllocEntryId)(kUnit, 0, 1, nullptr),
             ZR_OP(ZR_ACL_AssignCounterId)(kUnit, nullptr),
             ZR_OP(ZR_ACL_SetRuleCounterMapEntry)(kUnit, 0, nullptr),
             ZR_OP(ZR_ACL_SetRuleCarMapEntry)(kUnit, 0, nullptr),
             ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, nullptr, &rule.action, &out),
             ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, nullptr, &out),
             ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, &rule.action, nullptr),
             ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, nullptr, &rule.action, &out),
             ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, nullptr, &out),
             ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, &rule.action, nullptr),
             ZR_OP(HAL_ACL_GetEntryZr)(kUnit, 0, nullptr, &rule.action),
             ZR_OP(HAL_ACL_GetEntryZr)(kUnit, 0, &rule.match, nullptr),
         })
        EXPECT_EQ(status, kNull);
    EXPECT_THAT(dev.calls(), ::testing::IsEmpty());
}

} // namespace
