// Adding, deleting and flushing addresses: what reaches the chip SDK, and the static count.
#include "l2/mac.h"

#include <gmock/gmock.h>

#include <cstring>

#include "tests/kit/device.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace zrtest
{
namespace
{

constexpr uint32_t kMinusOne = 0xFFFFFFFF;
constexpr uint32_t kTableFull = 22;
constexpr uint32_t kNoSuchEntry = 0x6000A;

LswmMacEntry entryOf(uint8_t type, uint32_t vlan = 100, uint16_t port = 3)
{
    LswmMacEntry entry;
    std::memset(&entry, 0x5A, sizeof entry); // what the library must not take for its own fields
    const uint8_t mac[] = {0x00, 0x1e, 0x0a, 0xf0, 0x12, 0x34};
    std::memcpy(entry.mac, mac, sizeof mac);
    entry.vlan = 77;
    entry.entryVlan = vlan;
    entry.port = port;
    entry.type = type;
    entry.unit = 1;
    return entry;
}

class Mac : public RunningDeviceTest
{
protected:
    uint32_t &staticNum(uint32_t unit) { return ZR_OP(g_LswmL2Control).staticMacNum[unit]; }
    const ZrMacOps &ops() { return dev.ops().mac; }

    // The chip answers `status`, and what it was given is kept.
    void answer(const char *name, uint32_t status, uint32_t deletedIsStatic = 0)
    {
        dev.script(name, [this, status, deletedIsStatic](const zrsim::Call &call) {
            const auto *bytes = call.pointer<const uint8_t>(1);
            given.mac.assign(bytes, bytes + 6);
            given.addr = *call.pointer<L2UcastAddr>(2);
            call.pointer<L2UcastAddr>(2)->isStatic |= deletedIsStatic;
            return status;
        });
    }
    void present(bool found)
    {
        dev.script("l2sw_l2_addr_get", [found](const zrsim::Call &) { return found ? 0U : kNoSuchEntry; });
    }
    void answerFlush(uint32_t status)
    {
        dev.script("l2sw_l2_ucastAddr_flush", [this, status](const zrsim::Call &call) {
            flushes.push_back({call.number(0), *call.pointer<L2FlushCfg>(1)});
            return status;
        });
    }

    struct {
        std::vector<uint8_t> mac;
        L2UcastAddr addr;
    } given{};
    struct Flush {
        uint32_t unit;
        L2FlushCfg cfg;
    };
    std::vector<Flush> flushes;
};

TEST_F(Mac, TypeAndVlanFlagDecideWhatIsAdded)
{
    const struct {
        uint8_t type;
        uint32_t vlanSpecific;
        uint32_t isStatic, keyed, block;
    } cases[] = {
        {0, 0, 0, 1, 0}, {0, 1, 0, 1, 0}, {1, 0, 1, 1, 0}, {1, 1, 1, 1, 0},          {2, 0, 1, 0, 1},
        {2, 1, 1, 1, 1}, {3, 0, 0, 1, 0}, {3, 9, 0, 1, 0}, {2, 0x80000000, 1, 1, 1}, {255, 0, 0, 1, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "type " << +c.type << " flag " << c.vlanSpecific);
        answer("l2sw_l2_addr_add", 0);
        LswmMacEntry entry = entryOf(c.type, 0x12345, 0xFFFE);
        entry.vlanSpecific = c.vlanSpecific;
        const LswmMacEntry before = entry;
        EXPECT_EQ(ops().addMac(2, &entry), 0U);
        EXPECT_EQ(std::memcmp(&entry, &before, sizeof entry), 0);

        L2UcastAddr expected{};
        expected.vlanKeyed = c.keyed;
        expected.vlan = 0x12345;
        expected.port = 0xFFFE;
        expected.srcBlock = c.block;
        expected.dstBlock = c.block;
        expected.isStatic = c.isStatic;
        EXPECT_EQ(std::memcmp(&given.addr, &expected, sizeof expected), 0);
        EXPECT_THAT(given.mac, ElementsAre(0x00, 0x1e, 0x0a, 0xf0, 0x12, 0x34));
    }
}

TEST_F(Mac, OnlyStaticAddsAskWhetherTheAddressIsThere)
{
    answer("l2sw_l2_addr_add", 0);
    const LswmMacEntry dynamic = entryOf(0);
    EXPECT_EQ(ops().addMac(1, &dynamic), 0U);
    EXPECT_EQ(dev.calls().size(), 1U);

    answer("l2sw_l2_addr_get", kNoSuchEntry);
    dev.forget();
    zrsim::console().traceLevel(3);
    const LswmMacEntry fixed = entryOf(1);
    EXPECT_EQ(ops().addMac(1, &fixed), 0U);
    EXPECT_EQ(dev.calls().size(), 2U);
    EXPECT_EQ(ZR_OP(HAL_MAC_HasExistedMacTabZr)(1, &fixed, 4000), 0U);
    L2UcastAddr asked{};
    asked.vlan = 4000;
    EXPECT_EQ(std::memcmp(&given.addr, &asked, sizeof asked), 0);
    EXPECT_THAT(dev.takeTraces(),
                ElementsAre("4 Zr get mac by vlan mac failed(unit:1, vlan:100, retVal:0x6000a).",
                            "4 Zr get mac by vlan mac failed(unit:1, vlan:4000, retVal:0x6000a)."));
    present(true);
    EXPECT_EQ(ZR_OP(HAL_MAC_HasExistedMacTabZr)(1, &fixed, 4000), 1U);
    EXPECT_THAT(dev.takeTraces(), IsEmpty());
}

TEST_F(Mac, StaticCountFollowsAddsAndTheirRefusals)
{
    const struct {
        uint8_t type;
        bool wasThere;
        uint32_t chipStatus;
        uint32_t before, after;
    } cases[] = {
        {1, false, 0, 5, 6},          {2, false, 0, 5, 6},         {0, false, 0, 5, 5},  {1, true, 0, 5, 5},
        {1, false, kTableFull, 5, 5}, {1, true, kTableFull, 5, 4}, {2, true, 99, 5, 4},  {1, true, 99, 0, 0},
        {0, true, kTableFull, 5, 5},  {0, false, 99, 5, 5},        {2, false, 99, 0, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "type " << +c.type << ", chip status " << c.chipStatus);
        present(c.wasThere);
        answer("l2sw_l2_addr_add", c.chipStatus);
        for (uint32_t unit : {0U, 3U}) {
            staticNum(unit) = c.before;
            const LswmMacEntry entry = entryOf(c.type);
            EXPECT_EQ(ops().addMac(unit, &entry), c.chipStatus == 0 ? 0U : c.chipStatus == 22 ? 7U : 4U);
            EXPECT_EQ(staticNum(unit), c.after);
        }
    }
    dev.takeFailures();
}

TEST_F(Mac, SynchronisedAddressesGoToTheLowestCascadePort)
{
    answer("l2sw_l2_addr_add", 0);
    for (uint32_t port : {0U, 63U, 127U}) {
        dev.setPorts(2, LSWM_SET_CASCADE, {port, 127});
        LswmMacEntry entry = entryOf(0);
        EXPECT_EQ(ops().syncMacInsert(2, &entry), 0U);
        EXPECT_EQ(entry.port, port);
        EXPECT_EQ(given.addr.port, port);
    }
    dev.setPorts(2, LSWM_SET_CASCADE, {});
    dev.forget();
    LswmMacEntry entry = entryOf(1);
    EXPECT_EQ(ops().syncMacInsert(2, &entry), 0U);
    EXPECT_EQ(entry.port, 3U);
    EXPECT_THAT(dev.calls(), IsEmpty());
    EXPECT_EQ(staticNum(2), 0U);

    answer("l2sw_l2_addr_add", kTableFull);
    EXPECT_EQ(ops().syncMacInsert(1, &entry), LSW_NO_RESOURCE);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("3/22 Zr Mac add failed, l2table full or hash conflict "
                                                "(unit:1, MAC:0x001e-0af0-****)."));
}

TEST_F(Mac, DeleteByVlanAndMacTakesAnAbsentAddressForDeleted)
{
    const struct {
        uint32_t chipStatus, wasStatic, before, after, status;
    } cases[] = {
        {0, 0, 2, 2, 0},
        {0, 1, 2, 1, 0},
        {0, 1, 0, 0, 0},
        {kNoSuchEntry, 0, 2, 2, 0},
        {kNoSuchEntry, 1, 2, 1, 0},
        {kTableFull, 1, 2, 2, 4},
        {1, 1, 2, 2, 4},
    };
    zrsim::console().traceLevel(3);
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << "chip status " << c.chipStatus << " static " << c.wasStatic);
        answer("l2sw_l2_addr_del", c.chipStatus, c.wasStatic);
        staticNum(1) = c.before;
        const LswmMacEntry entry = entryOf(1);
        EXPECT_EQ(ops().delByVlanMac(1, &entry), c.status);
        EXPECT_EQ(staticNum(1), c.after);
        L2UcastAddr expected{};
        expected.vlanKeyed = 1;
        expected.vlan = 77; // the record's 16-bit VLAN, not the one of added entries
        EXPECT_EQ(std::memcmp(&given.addr, &expected, sizeof expected), 0);
    }
    EXPECT_THAT(dev.takeTraces(), ElementsAre("3 Zr del by vlan mac failed(unit:1, retVal:0x16).",
                                              "3 Zr del by vlan mac failed(unit:1, retVal:0x1)."));
}

TEST_F(Mac, DeleteByMacLeavesTheCountAndReportsAnAbsentAddress)
{
    const uint8_t mac[] = {2, 4, 6, 8, 10, 12};
    staticNum(1) = 3;
    answer("l2sw_l2_addr_del", 0, 1);
    EXPECT_EQ(ops().delByMac(1, mac), 0U);
    const L2UcastAddr noKey{};
    EXPECT_EQ(std::memcmp(&given.addr, &noKey, sizeof noKey), 0);
    EXPECT_THAT(given.mac, ElementsAre(2, 4, 6, 8, 10, 12));

    zrsim::console().traceLevel(3);
    answer("l2sw_l2_addr_del", kNoSuchEntry, 1);
    EXPECT_EQ(ops().delByMac(1, mac), 4U);
    EXPECT_EQ(staticNum(1), 3U);
    EXPECT_THAT(dev.takeTraces(), ElementsAre("3 Zr del mac by mac failed(unit:1, retVal:0x6000a)."));

    // A copy that fails is told, and the address asked for is then the zero address.
    answer("l2sw_l2_addr_del", 0);
    dev.fail("memcpy_s", kMinusOne);
    EXPECT_EQ(ops().delByMac(1, mac), 0U);
    dev.clearInjections();
    EXPECT_THAT(dev.takeFailures(), ElementsAre("3/4294967295 Zr del mac by mac memcpy failed, err :-1"));
    EXPECT_THAT(given.mac, ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST_F(Mac, ClearingForgetsTheCountWhateverTheChipAnswers)
{
    for (uint32_t status : {0U, kMinusOne, 22U}) {
        for (uint32_t unit = 0; unit < 4; ++unit)
            staticNum(unit) = 10 + unit;
        dev.clearInjections();
        dev.fail("l2sw_l2_table_clear", status);
        EXPECT_EQ(ops().delAllMac(1), status);
        EXPECT_THAT((std::vector{staticNum(0), staticNum(1), staticNum(2), staticNum(3)}),
                    ElementsAre(10, 0, 12, 13));
    }
}

TEST_F(Mac, FlushesNameWhatTheyRemove)
{
    LswmMacEntry entry = entryOf(1, 100, 0xFFFF);
    entry.vlan = 0xABCD;
    const struct {
        const char *name;
        std::function<uint32_t()> run;
        uint32_t byVlan, vlan, byPort, port, allPorts;
    } cases[] = {
        {"by VLAN", [&] { return ops().delByVlan(1, 0x10004); }, 1, 0x10004, 0, 0, 1},
        {"by port", [&] { return ops().delByPort(1, &entry); }, 0, 0, 1, 0xFFFF, 0},
        {"by port and VLAN", [&] { return ops().delByPortVlan(1, &entry); }, 1, 0xABCD, 1, 0xFFFF, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        answerFlush(0);
        staticNum(1) = 9;
        EXPECT_EQ(c.run(), 0U);
        L2FlushCfg expected{};
        expected.byVlan = c.byVlan;
        expected.vlan = c.vlan;
        expected.byPort = c.byPort;
        expected.port = c.port;
        expected.allPorts = c.allPorts;
        EXPECT_EQ(flushes.back().unit, 1U);
        EXPECT_EQ(std::memcmp(&flushes.back().cfg, &expected, sizeof expected), 0);
        EXPECT_EQ(staticNum(1), 9U);
    }
}

TEST_F(Mac, EntriesOfAnotherUnitAreFlushedNowhere)
{
    LswmMacEntry entry = entryOf(0);
    for (uint32_t unit : {0U, 2U, 257U, kMinusOne}) { // 257: the same low byte as the entry's unit
        EXPECT_EQ(ops().delByPort(unit, &entry), 0U);
        EXPECT_EQ(ops().delByPortVlan(unit, &entry), 0U);
    }
    EXPECT_THAT(dev.calls(), IsEmpty());
}

TEST_F(Mac, DynamicFlushVisitsEveryValidPortWhateverFails)
{
    dev.setPorts(1, LSWM_SET_VALID, {0, 31, 32, 127});
    answerFlush(kMinusOne);
    EXPECT_EQ(ops().delDynMac(1), 0U);
    std::vector<uint32_t> ports;
    for (const Flush &flush : flushes) {
        ports.push_back(flush.cfg.port);
        EXPECT_EQ(flush.cfg.byPort, 1U);
        EXPECT_EQ(flush.cfg.byVlan + flush.cfg.allPorts, 0U);
    }
    EXPECT_THAT(ports, ElementsAre(0, 31, 32, 127));
    EXPECT_EQ(dev.takeFailures().size(), 4U);
}

} // namespace
} // namespace zrtest
