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
    uint32_t used()
    {
        uint32_t capacity = 0;
        uint32_t used = 0;
        EXPECT_EQ(ops().getCapacity(1, &capacity, &used), 0U);
        return used;
    }
    uint32_t staticNum() { return ZR_OP(g_LswmL2Control).staticMacNum[1]; }
};

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
