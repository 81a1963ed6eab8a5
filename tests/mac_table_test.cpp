// The address table of the virtual chip, driven through the library: what sequences leave behind.
#include <gmock/gmock.h>

#include <cstring>
#include <set>

#include "l2/mac.h"
#include "sim/chip/chip.h"
#include "sim/command.h"
#include "tests/kit/device.h"
#include "tests/kit/random.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace zrtest
{
namespace
{

class MacTable : public RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        ASSERT_EQ(ops().init(1), 0U);
        ASSERT_EQ(dev.ops().vlan.create(1, 10), 0U);
    }
    const ZrMacOps &ops() { return dev.ops().mac; }

    static LswmMacEntry entryOf(uint32_t number, uint32_t vlan, uint32_t port, uint8_t type)
    {
        LswmMacEntry entry{};
        for (int i = 5; i >= 0; --i, number >>= 8)
            entry.mac[i] = static_cast<uint8_t>(number);
        entry.vlan = static_cast<uint16_t>(vlan);
        entry.entryVlan = vlan;
        entry.port = static_cast<uint16_t>(port);
        entry.type = type;
        entry.unit = 1;
        return entry;
    }
    uint32_t add(uint32_t number, uint32_t vlan = 10, uint32_t port = 0, uint8_t type = 1)
    {
        const LswmMacEntry entry = entryOf(number, vlan, port, type);
        return ops().addMac(1, &entry);
    }
    uint32_t del(uint32_t number, uint32_t vlan = 10)
    {
        const LswmMacEntry entry = entryOf(number, vlan, 0, 0);
        return ops().delByVlanMac(1, &entry);
    }
    std::string board(const std::string &line)
    {
        bool ok = false;
        const std::string answer = zrsim::runBoardLine(1, line, ok);
        return (ok ? "" : "refused: ") + answer;
    }
    std::string learn(const std::string &line) { return board("learn 02:00:00:00:" + line); }
    uint32_t used()
    {
        uint32_t capacity = 0;
        uint32_t used = 0;
        EXPECT_EQ(ops().getCapacity(1, &capacity, &used), 0U);
        return used;
    }
    uint32_t staticNum() { return ZR_OP(g_LswmL2Control).staticMacNum[1]; }
};

TEST_F(MacTable, FillsToTheLastEntryAndListsEveryOne)
{
    for (uint32_t i = 0; i < 2112; ++i)
        ASSERT_EQ(add(0x700000 + i, 10, i % 5), 0U) << i;
    EXPECT_EQ(add(0x700000 + 2112), 7U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("3/22 Zr Mac add failed, l2table full or hash conflict "
                                                "(unit:1, MAC:0x0000-0070-****)."));
    EXPECT_EQ(used(), 2112U);

    std::set<uint32_t> seen;
    for (uint32_t index = 0; index < 2112; ++index) {
        LswmMacEntry entry{};
        LswmMacQuery query{};
        query.index = index;
        ASSERT_EQ(ops().getMacEntry(1, 3, &query, &entry), 0U);
        const uint32_t number = (entry.mac[4] * 256U) + entry.mac[5];
        EXPECT_EQ(entry.port, number % 5);
        EXPECT_EQ(entry.type, 1U);
        seen.insert(number);
    }
    EXPECT_EQ(seen.size(), 2112U);
    EXPECT_THAT(learn("00:01 10 0"), HasSubstr("the address's bucket is taken"));
    EXPECT_EQ(ops().delAllMac(1), 0U);
    EXPECT_EQ(used(), 0U);
    EXPECT_EQ(learn("00:01 10 0"), "learned 1 of 1\n");
}

TEST_F(MacTable, FlushesTakeLearnedAddressesOfTheirPortAndVlan)
{
    ASSERT_EQ(dev.ops().vlan.create(1, 20), 0U);
    const LswmMacEntry port0Vlan20 = entryOf(0, 20, 0, 0);
    const struct {
        const char *name;
        std::function<uint32_t()> flush;
        uint32_t left; // of 1 static, 8 + 4 on port 0 and 2 + 1 on port 1 in VLANs 10 and 20
    } cases[] = {
        {"VLAN", [&] { return ops().delByVlan(1, 10); }, 1 + 4 + 1},
        {"port", [&] { return ops().delByPort(1, &port0Vlan20); }, 1 + 2 + 1},
        {"port and VLAN", [&] { return ops().delByPortVlan(1, &port0Vlan20); }, 1 + 8 + 2 + 1},
        {"all valid ports", [&] { return ops().delDynMac(1); }, 1},
        {"unit 2", [&] { return ops().delDynMac(2); }, 16},
    };
    for (const auto &c : cases) {
        ASSERT_EQ(ops().delAllMac(1), 0U);
        EXPECT_EQ(add(0x123456), 0U);
        EXPECT_EQ(learn("10:00 10 0 8"), "learned 8 of 8\n");
        EXPECT_EQ(learn("10:00 20 0 4"), "learned 4 of 4\n") << "once in each VLAN";
        EXPECT_EQ(learn("20:00 10 1 2") + learn("20:00 20 1 1"), "learned 2 of 2\nlearned 1 of 1\n");
        EXPECT_EQ(used(), 16U);
        EXPECT_EQ(c.flush(), 0U);
        EXPECT_EQ(used(), c.left) << c.name;
    }
    dev.fail("l2sw_l2_ucastAddr_flush", 77);
    EXPECT_EQ(ZR_OP(HAL_MAC_DelDynMacZr)(1, 3), 4U);
    EXPECT_EQ(dev.takeFailures().size(), 1U);
}

TEST_F(MacTable, LearningMovesStationsAndKeepsStaticEntries)
{
    EXPECT_EQ(learn("00:01 10 2"), "learned 1 of 1\n");
    EXPECT_EQ(learn("00:01 10 3"), "learned 1 of 1\n") << "the station moved";
    EXPECT_EQ(used(), 1U);

    EXPECT_EQ(add(0x55, 10, 4), 0U);
    EXPECT_THAT(board("learn 00:00:00:00:00:55 10 0"), HasSubstr("static at another port"));
    EXPECT_EQ(board("learn 00:00:00:00:00:55 10 4"), "learned 1 of 1\n");
    EXPECT_EQ(used(), 2U);

    EXPECT_THAT(board("learn 01:00:5e:00:00:01 10 0"), HasSubstr("no station"));
    EXPECT_EQ(dev.ops().common.chipRegWrite(1, 0x355E, 0), 0U);
    EXPECT_EQ(board("learn 01:00:5e:00:00:01 10 0"), "learned 1 of 1\n");
    EXPECT_THAT(board("learn 1:2:3 10 0"), HasSubstr("usage"));
}

TEST_F(MacTable, UnkeyedEntriesHoldInEveryVlan)
{
    LswmMacEntry everywhere = entryOf(0x77, 10, 0, 2);
    EXPECT_EQ(ops().addMac(1, &everywhere), 0U);
    EXPECT_EQ(del(0x77, 10), 0U); // not this entry: it has no VLAN
    EXPECT_EQ(used(), 1U);
    EXPECT_EQ(ops().delByMac(1, everywhere.mac), 0U);
    EXPECT_EQ(dev.chip(1).mac.used(), 0U);
    EXPECT_EQ(staticNum(), 1U) << "a delete by address alone does not count";
    EXPECT_EQ(ops().delByMac(1, everywhere.mac), 4U);
}

// Over any sequence the library's static count stays what its rules say, as a count kept here does.
TEST_F(MacTable, StaticCountHoldsOverRandomSequences)
{
    ZR_RANDOM(random);
    std::set<uint32_t> fixed; // addresses in VLAN 10
    uint32_t count = 0;
    for (int step = 0; step < 3000; ++step) {
        // 24 addresses over three buckets: half of them do not fit.
        const uint32_t number = 1000 + random() % 3 + 528 * (random() % 8);
        const bool known = fixed.contains(number);
        const uint32_t action = random() % 4;
        if (action == 0) {
            ASSERT_EQ(del(number), 0U);
            count -= static_cast<uint32_t>(fixed.erase(number));
        } else if (action == 1) {
            dev.fail("l2sw_l2_addr_add", 99, 1);
            ASSERT_EQ(add(number), 4U);
            count -= known && count > 0 ? 1 : 0; // a refused add of a known address costs one
            dev.clearInjections();
        } else if (const uint32_t status = add(number); status == 0) {
            count += fixed.insert(number).second ? 1 : 0;
        } else {
            ASSERT_EQ(status, 7U);
            ASSERT_FALSE(known);
        }
        if (random() % 200 == 0) {
            ASSERT_EQ(ops().delAllMac(1), 0U);
            fixed.clear();
            count = 0;
        }
        // The delete of a known address after such a cost stops at 0.
        count = static_cast<int32_t>(count) < 0 ? 0 : count;
        ASSERT_EQ(staticNum(), count) << "step " << step;
        ASSERT_EQ(dev.chip(1).mac.used(), fixed.size()) << "step " << step;
    }
    dev.takeFailures();
}

} // namespace
} // namespace zrtest
