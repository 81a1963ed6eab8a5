// The address table's set-up and its queries.
#include "l2/mac.h"

#include <gmock/gmock.h>

#include <cstring>

#include "sim/chip/chip.h"
#include "tests/kit/device.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace zrtest
{
namespace
{

constexpr uint32_t kMinusOne = 0xFFFFFFFF;
constexpr uint32_t kUntouched = 0xEEEEEEEE;

template <class Record> Record scribbled()
{
    Record record;
    std::memset(&record, 0xEE, sizeof record);
    return record;
}

// Every byte of two records.
template <class Record> bool same(const Record &a, const Record &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

class MacQuery : public RunningDeviceTest
{
protected:
    const ZrMacOps &ops() { return dev.ops().mac; }
    LswmL2Control &control() { return ZR_OP(g_LswmL2Control); }

    // The chip reads this entry at every index, and `index` tells which was asked for.
    void tableHolds(const L2TableEntry &found)
    {
        dev.script("l2sw_l2_entry_get", [this, found](const zrsim::Call &call) {
            auto *entry = call.pointer<L2TableEntry>(1);
            L2TableEntry cleared{};
            cleared.index = index = entry->index;
            EXPECT_TRUE(same(*entry, cleared));
            *entry = found;
            return 0U;
        });
    }
    LswmMacEntry read(uint32_t at)
    {
        LswmMacEntry entry = scribbled<LswmMacEntry>();
        LswmMacQuery query = scribbled<LswmMacQuery>();
        query.index = at;
        EXPECT_EQ(ops().getMacEntry(2, 3, &query, &entry), 0U);
        EXPECT_EQ(index, at);
        return entry;
    }
    uint32_t index = 0;
};

TEST_F(MacQuery, StartSetsTableIllegalAddressesAndAgeing)
{
    const Texts calls = {"l2sw_l2_init(0) = 0", "l2sw_getAsicReg(0, 0x355e, &0xa0f0) = 0",
                         "l2sw_setAsicReg(0, 0x355e, 0xa0f1) = 0", "l2sw_l2_aging_set(0, 295) = 0"};
    dev.chip(0).registers().preset(0x355E, 0xA0F0);
    EXPECT_EQ(ops().init(0), 0U);
    EXPECT_EQ(dev.calls(), calls);
}

TEST_F(MacQuery, LearningIsAPortsLimit)
{
    uint32_t learns = kUntouched;
    for (uint32_t enable : {0U, 1U, 2U, 0x80000000U}) {
        uint32_t limit = kUntouched;
        EXPECT_EQ(ops().setPortLearnMode(1, 3, enable), 0U);
        EXPECT_EQ(dev.chip(1).mac.limit(3, limit), 0U);
        EXPECT_EQ(limit, enable == 0 ? 0U : 2112U);
        EXPECT_EQ(ops().getPortLearnMode(1, 3, &learns), 0U);
        EXPECT_EQ(learns, enable == 0 ? 0U : 1U);
    }
    dev.chip(1).mac.setLimit(3, 17);
    EXPECT_EQ(ops().getPortLearnMode(1, 3, &learns), 0U);
    EXPECT_EQ(learns, 1U);
}

TEST_F(MacQuery, ReadingWritesTheEntrysFieldsAndNoOthers)
{
    L2TableEntry chipEntry{};
    const uint8_t mac[] = {1, 2, 3, 4, 5, 6};
    std::memcpy(chipEntry.mac, mac, sizeof mac);
    chipEntry.vlan = 0x54321;
    chipEntry.portMask = 1U << 4;
    for (uint32_t isStatic : {0U, 1U, 2U}) {
        chipEntry.isStatic = isStatic;
        tableHolds(chipEntry);
        const LswmMacEntry entry = read(1999);
        LswmMacEntry expected = scribbled<LswmMacEntry>();
        std::memcpy(expected.mac, mac, sizeof mac);
        expected.unit = 2;
        expected.valid = 1;
        expected.entryVlan = 0x54321;
        expected.port = 4;
        if (isStatic == 1)
            expected.type = 1;
        EXPECT_TRUE(same(entry, expected)) << isStatic;
    }
}

TEST_F(MacQuery, TheLowestPortThatMayBeReportedIsTheEntrysPort)
{
    for (LswmPortInfo &port : g_lswmInfo[2].port)
        port.flags = 0xFD; // everything but the bit
    for (uint32_t port : {5U, 9U, 31U})
        g_lswmInfo[2].port[port].flags = 2;
    g_lswmInfo[2].port[32].flags = 2; // beyond the chip's mask
    const struct {
        uint32_t mask, port;
    } cases[] = {{0xFFFFFFFF, 5}, {0xFFFFFFC0, 9}, {0x80000000, 31}, {0x80000010, 31},
                 {0, 128},        {0x10, 128},     {0x1F, 128}};
    for (auto [mask, port] : cases) {
        L2TableEntry chipEntry{};
        chipEntry.portMask = mask;
        tableHolds(chipEntry);
        const LswmMacEntry entry = read(0);
        EXPECT_EQ(entry.port, port) << mask;
        EXPECT_EQ(entry.noPort, port == 128 ? 1 : 0xEE) << mask;
    }
}

TEST_F(MacQuery, OnlyReadsByIndexAreServed)
{
    LswmMacEntry entry = scribbled<LswmMacEntry>();
    LswmMacQuery query{};
    query.index = 2111;
    for (uint32_t type : {0U, 1U, 2U, 4U, 0x103U, kMinusOne})
        EXPECT_EQ(ops().getMacEntry(1, type, &query, &entry), 1U);
    EXPECT_EQ(ops().getMacEntry(1, 2, nullptr, nullptr), 1U);
    EXPECT_THAT(dev.calls(), IsEmpty());
}

TEST_F(MacQuery, FillIsLearnedPlusStaticWithinTheTable)
{
    dev.setPorts(2, LSWM_SET_VALID, {0, 31, 64, 127});
    uint32_t learned = 0;
    dev.script("l2sw_l2_learningCnt_get", [&learned](const zrsim::Call &call) {
        if (call.number(1) == 64)
            return 3U;
        *call.pointer<uint32_t>(2) = learned;
        return 0U;
    });
    const struct {
        uint32_t learned, fixed, used;
    } cases[] = {{0, 0, 0},      {0, 7, 7},      {100, 5, 305},     {703, 3, 2112},
                 {703, 2, 2111}, {703, 4, 2112}, {2112, 2112, 2112}};
    uint32_t capacity = kUntouched;
    uint32_t used = kUntouched;
    for (const auto &c : cases) {
        learned = c.learned;
        control().staticMacNum[2] = c.fixed;
        EXPECT_EQ(ops().getCapacity(2, &capacity, &used), 0U);
        EXPECT_EQ(capacity, 2112U);
        EXPECT_EQ(used, c.used);
    }
    EXPECT_THAT(dev.takeTraces(), IsEmpty());

    zrsim::console().traceLevel(3);
    learned = 100;
    EXPECT_EQ(ops().getCapacity(2, &capacity, &used), 0U);
    EXPECT_THAT(dev.takeTraces(),
                ElementsAre("3 Zr get unit 2 port 64 learned mac failed.",
                            "3 Zr get mac capacity (unit:2, usedNum:2112, static:2112, capacity:2112)"));
    zrsim::console().traceLevel(2);
    EXPECT_EQ(ops().getCapacity(2, &capacity, &used), 0U);
    EXPECT_EQ(dev.takeTraces().size(), 1U);
}

void callBackA()
{
}
void callBackB()
{
}

TEST_F(MacQuery, OnlyACallbackOfTypeThreeIsKept)
{
    ops().registerCallBack(3, callBackA);
    ops().registerCallBack(1, callBackB);
    zrsim::console().traceLevel(3);
    for (uint32_t type : {0U, 2U, 4U, 0x103U})
        ops().registerCallBack(type, callBackB);
    ops().registerCallBack(3, nullptr);
    ops().registerCallBack(4, nullptr);
    EXPECT_EQ(control().macCallBack, callBackA);
    const Texts traces = dev.takeTraces();
    ASSERT_EQ(traces.size(), 4U);
    EXPECT_EQ(traces[3], "3 Register mac callback type failed (type:259).");
    ops().registerCallBack(3, callBackB);
    EXPECT_EQ(control().macCallBack, callBackB);
}

} // namespace
} // namespace zrtest
