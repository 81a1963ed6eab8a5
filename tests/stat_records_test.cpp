// Statistics records: pass-through until a type has entries, then a map of them.
#include <gmock/gmock.h>

#include "platform/manager.h"
#include "records/stat_records.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

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
    static constexpr uint64_t failed(uint64_t status) { return status << 32; }
};

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

} // namespace
} // namespace zrtest
