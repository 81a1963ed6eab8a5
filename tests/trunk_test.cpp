#include "l2/trunk.h"

#include <gmock/gmock.h>

#include "records/trunk_records.h"
#include "sim/chip/chip.h"
#include "tests/kit/device.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace zrtest
{
namespace
{

class Trunk : public RunningDeviceTest
{
protected:
    const ZrTrunkOps &trunk() const { return dev.ops().trunk; }
    TrunkMeterInfo &record(uint32_t unit)
    {
        return static_cast<TrunkMeterInfo *>(dev.symbol("g_TrunkMeterInfo"))[unit];
    }
    // Members as the chip keeps them: bit n = chip port n.
    uint32_t chipPorts(uint32_t unit, uint32_t group)
    {
        uint32_t mask = 0;
        EXPECT_EQ(dev.chip(unit).trunk.read(group, mask), 0U);
        return mask;
    }
    uint32_t trunks(uint32_t unit)
    {
        uint32_t number = 0;
        EXPECT_EQ(trunk().getTrunkNum(unit, &number), 0U);
        return number;
    }
};

// ---- members ------------------------------------------------------------------------------------

// Ports 0 to 4 are chip ports 0 to 4, ports 15 and 17 are chip ports 5 and 7; port 9 has none.
TEST_F(Trunk, GroupsTakeTheirOwnChipPortsOnly)
{
    for (uint32_t group : {0U, 1U, 2U, 0xFFFFFFFFU}) {
        for (uint32_t port : {0U, 3U, 4U, 9U, 15U, 17U}) {
            SCOPED_TRACE(testing::Message() << "group " << group << ", port " << port);
            const bool taken = (group == 0 && port <= 3) || (group == 1 && port >= 4 && port != 9);
            dev.forget();
            EXPECT_EQ(ZR_OP(HAL_TRUNK_AddMemberZr)(2, group, port), taken ? 0U : 1U);
            EXPECT_EQ(dev.calls().size(), taken ? 3U : 1U);
            EXPECT_THAT(dev.takeFailures(), IsEmpty()) << "a refusal is silent";
        }
    }
    EXPECT_EQ(chipPorts(2, 0), 0x09U);
    EXPECT_EQ(chipPorts(2, 1), 0xB0U);
    EXPECT_EQ(chipPorts(1, 0) | chipPorts(1, 1), 0U) << "another unit was changed";
}

// The mask written counts from the group's first chip port; the mask read is in chip port numbers. A chip
// port without a bit in the word is refused.
TEST_F(Trunk, MaskArithmeticOfBothGroups)
{
    const struct {
        uint32_t group, chipPort, read;
        uint32_t status;
        uint32_t written;
    } cases[] = {
        {0, 2, 0x1, 0, 0x5},
        {0, 2, 0xF0, 0, 0xF4},
        {1, 4, 0x60, 0, 0x7},
        {1, 7, 0x6F, 0, 0xE},
        {1, 31, 0xFFFFFFFF, 0, 0x0FFFFFFF},
        {1, 32, 0x10, 0, 0x10000001},
        {1, 35, 0x0, 0, 0x80000000},
        {1, 36, 0x10, 1, 0},
        {1, 0xFFFFFFFF, 0x10, 1, 0},
        {0, 32, 0x1, 1, 0},
        {0, 0xFFFFFFFF, 0x1, 1, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "group " << c.group << ", chip port " << c.chipPort);
        uint32_t written = 0;
        dev.script("l2sw_switch_port_L2P_get", [&](const zrsim::Call &) { return c.chipPort; });
        dev.script("l2sw_trunk_port_get", [&](const zrsim::Call &call) {
            EXPECT_EQ(*call.pointer<uint32_t>(2), 0U) << "the mask starts from 0";
            *call.pointer<uint32_t>(2) = c.read;
            return 0;
        });
        dev.script("l2sw_trunk_port_set", [&](const zrsim::Call &call) {
            EXPECT_EQ(call.number(1), c.group);
            written = call.number(2);
            return 0;
        });
        EXPECT_EQ(ZR_OP(HAL_TRUNK_AddMemberZr)(1, c.group, 8), c.status);
        EXPECT_EQ(written, c.written);
    }
}

TEST_F(Trunk, OnlyGroup0GivesMembersBackAndGroup1IsReadUnshifted)
{
    for (uint32_t port : {0U, 1U, 3U})
        ASSERT_EQ(trunk().addMember(1, port, 0), 0U);
    ASSERT_EQ(trunk().addMember(1, 15, 1), 0U);
    EXPECT_EQ(trunk().delMember(1, 1, 0), 0U);
    EXPECT_EQ(trunk().delMember(1, 2, 0), 0U) << "not a member";
    const std::pair<uint32_t, uint32_t> refused[] = {{15, 1}, {3, 1}, {4, 0}, {9, 0}};
    dev.forget();
    for (auto [port, group] : refused) {
        EXPECT_EQ(trunk().delMember(1, port, group), LSW_INVALID_ARGUMENT);
        EXPECT_EQ(dev.takeFailures().size(), 2U);
    }
    EXPECT_EQ(dev.calls().size(), 4U) << "only the chip port is asked for";
    uint32_t mask = 0;
    for (auto [group, members] : {std::pair(0U, 0x9U), {1U, 0x20U}}) {
        EXPECT_EQ(ZR_OP(HAL_TRUNK_GetMemberZr)(1, group, &mask), 0U);
        EXPECT_EQ(mask, members);
    }
}

// ---- identifiers --------------------------------------------------------------------------------

TEST_F(Trunk, CreateReplacesTheRecordOfGroup0AndDeleteLeavesTheChip)
{
    ASSERT_EQ(trunk().addMember(1, 2, 0), 0U);
    dev.forget();
    EXPECT_EQ(trunks(1), 1U) << "a unit without trunks";
    EXPECT_EQ(trunk().create(1, 10), 0U);
    EXPECT_EQ(trunk().create(1, 10), 0U) << "known already";
    EXPECT_EQ(trunks(1), 2U);
    EXPECT_EQ(trunk().create(1, 20), 0U);
    EXPECT_EQ(trunks(1), 3U);
    EXPECT_THAT(record(1).logicTrunkId, ElementsAre(20, 0));
    EXPECT_EQ(record(1).unitId, 1U);
    EXPECT_EQ(trunks(0), 1U);

    EXPECT_EQ(trunk().destroy(1, 10), 5U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("12/5 TRUNK ZR del fail ret = 5, unitId = 1, trunkId = 10"));
    EXPECT_EQ(trunk().destroy(1, 20), 0U);
    EXPECT_THAT(record(1).logicTrunkId, ElementsAre(0, 0));
    EXPECT_EQ(trunks(1), 2U);

    ASSERT_EQ(trunk().create(2, 30), 0U);
    ASSERT_EQ(ZR_OP(COM_TRUNK_SetMeterInfo)(2, 31, 1), 0U);
    EXPECT_EQ(trunk().destroy(2, 31), 0U);
    EXPECT_THAT(record(2).logicTrunkId, ElementsAre(30, 0));

    // A free group is the logic trunk id 0.
    EXPECT_EQ(trunk().destroy(1, 0), 0U);
    EXPECT_EQ(trunk().destroy(1, 0), 0U);
    EXPECT_EQ(trunks(1), 0U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_EQ(chipPorts(1, 0), 0x4U);
}

TEST_F(Trunk, RecordsMapGroup0First)
{
    const auto find = [](uint32_t unit, uint32_t logicTrunkId) {
        uint32_t group = 0xEE;
        const uint32_t status = ZR_OP(COM_TRUNK_LogicidToChipid)(unit, logicTrunkId, &group);
        EXPECT_EQ(ZR_OP(COM_TRUNK_IsLogicTrunkExist)(unit, logicTrunkId), status);
        return std::pair(status, group);
    };
    using Found = std::pair<uint32_t, uint32_t>;
    EXPECT_EQ(find(2, 0), Found(0, 0)) << "a free group";
    EXPECT_EQ(find(2, 7), Found(5, 0xEE));

    EXPECT_EQ(ZR_OP(COM_TRUNK_SetMeterInfo)(2, 7, 1), 0U);
    EXPECT_EQ(find(2, 7), Found(0, 1));
    EXPECT_EQ(ZR_OP(COM_TRUNK_SetMeterInfo)(2, 7, 0), 0U) << "known, so nothing changes";
    EXPECT_EQ(record(2).trunkNum, 1U);
    record(2).logicTrunkId[0] = 7;
    EXPECT_EQ(find(2, 7), Found(0, 0));

    for (uint32_t group : {2U, 0xFFFFFFFFU})
        EXPECT_EQ(ZR_OP(COM_TRUNK_SetMeterInfo)(2, 8, group), 1U);
    EXPECT_THAT(record(2).logicTrunkId, ElementsAre(7, 7));
    EXPECT_EQ(record(2).trunkNum, 1U);
    EXPECT_EQ(ZR_OP(COM_TRUNK_GetMeterInfo)(2), &record(2));
}

TEST_F(Trunk, HashingTakesAllInputsOfAllGroups)
{
    EXPECT_EQ(ZR_OP(ZR_TRUNK_InitMode)(2), 0U);
    EXPECT_THAT(dev.calls(), ElementsAre("l2sw_trunk_mode_set(2, 1) = 0",
                                         "l2sw_trunk_distributionAlgorithm_set(2, 255, 127) = 0"));
}

} // namespace
} // namespace zrtest
