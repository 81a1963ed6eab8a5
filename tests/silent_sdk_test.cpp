// An SDK that reports success and writes nothing: every variable that the library hands it has a start value,
// and that is what the manager sees.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstring>
#include <functional>

#include "acl/acl.h"
#include "chip/chip.h"
#include "l2/mac.h"
#include "l2/trunk.h"
#include "l2/vlan.h"
#include "port/phy.h"
#include "port/port.h"
#include "qos/stormctl.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

constexpr uint32_t kUnit = 1;
constexpr uint32_t kPhyPort = 3;
constexpr uint32_t kMacPort = 16;

// The words that a successful operation stored over 0xEE bytes.
template <class Record, class Operation, class... Arguments>
std::string stored(Operation &operation, Arguments... arguments)
{
    Record record;
    std::memset(&record, 0xEE, sizeof record);
    EXPECT_EQ(operation(kUnit, arguments..., &record), 0U);
    if constexpr (sizeof record < 4) {
        return std::to_string(record);
    } else {
        std::vector<uint32_t> words(sizeof record / 4);
        std::memcpy(words.data(), &record, sizeof record);
        return fmt::format("{:x}", fmt::join(words, " "));
    }
}
template <class Operation, class... Arguments> std::string word(Operation &operation, Arguments... arguments)
{
    return stored<uint32_t>(operation, arguments...);
}

class SilentSdk : public RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
        zrsim::gate().intercept([](const zrsim::Call &call, uint64_t &result) {
            result = std::string(call.name) == "l2sw_switch_isExtPort" && call.number(1) == kPhyPort ? 1 : 0;
            return std::strncmp(call.name, "l2sw", 4) == 0;
        });
    }
    void TearDown() override
    {
        zrsim::gate().intercept({});
        RunningDeviceTest::TearDown();
    }
};

TEST_F(SilentSdk, LeavesTheStartValues)
{
    const ZrPortOps &port = dev.ops().port;
    const struct {
        const char *what;
        std::string seen;
        const char *expected;
    } rows[] = {
        {"frame size", word(*port.getMaxFrame), "5f2"},
        {"PHY speed", word(*port.getSpeed, kPhyPort), "a"},
        {"MAC speed", word(*port.getSpeed, kMacPort), "a"},
        {"PHY duplex", word(*port.getDuplex, kPhyPort), "0"},
        {"MAC duplex", word(*port.getDuplex, kMacPort), "0"},
        {"PHY link", word(*port.getLinkStatus, kPhyPort), "0"},
        {"forced link", word(*port.getLinkStatus, kMacPort), "0"},
        {"MAC link", word(ZR_OP(HAL_PHY_GetMacLinkStatusZr), kPhyPort), "0"},
        {"negotiation", word(*port.getAutonegEnable, kPhyPort), "0"},
        {"abilities", stored<LswmPortAbility>(*port.getAutonegAbility, kPhyPort), "0 0 0"},
        {"partner", stored<LswmPortAbility>(*port.getRemoteAutonegAbility, kPhyPort), "0 0 0"},
        {"MAC loopback", word(ZR_OP(HAL_PORT_GetMacLoopbackZr), kPhyPort), "0"},
        {"PCS loopback", word(ZR_OP(HAL_PORT_GetPCSLoopbackZr), kPhyPort), "0"},
        {"remote loopback", word(ZR_OP(HAL_PORT_GetRemoteLoopbackZr), kPhyPort), "0"},
        {"PHY register", stored<uint16_t>(ZR_OP(HAL_PORT_RegReadZr), kPhyPort, 1U), "0"},
        {"MDI mode", word(ZR_OP(HAL_PORT_GetMdixModeZr), kPhyPort), "2"},
        {"SNR", stored<LswmPortSnr>(*port.getSnr, kPhyPort), "0 0 0 0 0 0 0 0"},
        {"KH marker", word(*port.getKhCheck, kPhyPort), "0"},
        {"valid ports", word(ZR_OP(HAL_PORT_GetValidPortMapZr)), "0"},
        {"permit map", word(ZR_OP(HAL_PORT_GetIsolateMapZr), kPhyPort), "0"},
        {"isolate map", word(*port.getIsolateMap, kPhyPort), "0"},
        {"PVID", word(*dev.ops().vlan.getPortPvid, kPhyPort), "0"},
        {"members' index", word(ZR_OP(HAL_VLAN_CreateMbrIdxZr), 100U), "0"},
        {"ageing time", word(*dev.ops().mac.getAgeTime), "0"},
        {"learning", word(*dev.ops().mac.getPortLearnMode, kPhyPort), "0"},
        {"trunk members", word(ZR_OP(HAL_TRUNK_GetMemberZr), 0U), "0"},
        {"rate limit", stored<LswmCar>(*dev.ops().hsec.getCar, 5U), "0 0 0"},
        {"hit counter", stored<LswmCounter>(*dev.ops().hsec.getStat, 0U), "0 0 0 0"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(row.seen, row.expected) << row.what;

    uint32_t members = 7;
    uint32_t untagged = 7;
    EXPECT_EQ(dev.ops().vlan.getPortMap(kUnit, 100, &members, &untagged), 0U);
    EXPECT_EQ(members + untagged, 0U);
    LswmPortStatistics statistics;
    EXPECT_EQ(port.getStatistics(kUnit, kPhyPort, &statistics), 0U);
    for (uint64_t counter : statistics.counter)
        EXPECT_EQ(counter, 0U);
}

TEST_F(SilentSdk, MakesARuleOfNoEntries)
{
    LswmAclRule rule = oneEntryRule(1);
    uint32_t count = 7;
    EXPECT_EQ(ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &rule.match, &rule.action, &count), 0U);
    EXPECT_EQ(count, 0U);
    count = 7;
    EXPECT_EQ(ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &rule.match, &rule.action, &count), 0U);
    EXPECT_EQ(count, 0U);
    const LswmAclRule before = rule;
    EXPECT_EQ(dev.ops().acl.getEntry(kUnit, 0, &rule), 0U);
    EXPECT_EQ(std::memcmp(&rule, &before, sizeof rule), 0) << "no rule, so nothing is read back";
}

TEST_F(SilentSdk, ShowsZeroesInTexts)
{
    dev.fail("drv_env_num_get", 0);
    ZR_OP(HAL_CHIP_CompareRgmiiParamQ9)(kUnit);
    EXPECT_EQ(dev.takeCli(), "Success! RGMII2 ENV lsw1_vq9_rgmii2_para(0x0)== RGMII2 REG Value(0x0)\n"
                             "  RGMII1 REG Value(0x0)\n");
    char *reason = dev.ops().common.chipGetDropReason(kUnit, 3);
    EXPECT_STREQ(reason, "unit 1 port 3 drop result: 0x0.");
    zrsim::memory().free(reason);

    char text[2048];
    EXPECT_EQ(dev.ops().port.getDebugInfo(kUnit, kPhyPort, text, sizeof text), 0U);
    std::string zeroes = text;
    zeroes.erase(0, zeroes.find("0x1c:0x"));
    EXPECT_EQ(zeroes, "0x1c:0x0000 0x1d:0x0000 0x1e:0x0000 0x1f:0x0000 \r\n"
                      "\r\n-----------debug info unit 1 port 3--------------\r\n"
                      "enable:0 \r\nphyLink:0 \r\nmacLink:0 \r\nloop:0 \r\nspeed:10 \r\nduplex:0 \r\n"
                      "mdixStatus:0 \r\nmdixCfg:2 \r\nautoneg:0 \r\nautonegStatus:0 \r\nsnr info: \r\n"
                      "snrA: 0 snrB: 0 snrC: 0 snrD: 0 trap: 0 status: 0\r\n"
                      "chip FS data 0x0 level: unknow\r\n"
                      "local ability \r\n  10MH:0 10MF:0 100MH:0 100MF:0 1000M:0 pause:0 pauseAsyn:0\r\n"
                      "remote ability \r\n  10MH:0 10MF:0 100MH:0 100MF:0 1000M:0 pause:0 pauseAsyn:0\r\n");
    EXPECT_EQ(dev.ops().port.getLinkDownPhyReg(kUnit, kPhyPort, text, sizeof text, 0), 0U);
    EXPECT_EQ(std::string(text).rfind("PhyReg 1-10: 0x00:0x0000 0x01:0x0000 ", 0), 0U);
}

TEST_F(SilentSdk, IsWrittenToFromZero)
{
    const uint32_t map = 0x6;
    EXPECT_EQ(dev.ops().port.setIsolate(kUnit, kPhyPort, &map, 0), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_port_isolation_set(1, 3, 6) = 0");
    EXPECT_EQ(dev.ops().port.setIsolate(kUnit, kPhyPort, &map, 1), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_port_isolation_set(1, 3, 0) = 0");
    EXPECT_EQ(dev.ops().vlan.addMember(kUnit, kPhyPort, 100, 1), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_vlan_mbrCfg_set(1, 0, 20:{6400000008}) = 0");
    EXPECT_EQ(ZR_OP(HAL_MAC_IllegalMacProc)(kUnit), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_setAsicReg(1, 0x355e, 1) = 0");
    EXPECT_EQ(ZR_OP(HAL_TRUNK_AddMemberZr)(kUnit, 0, 3), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_trunk_port_set(1, 0, 1) = 0");
    EXPECT_EQ(dev.ops().trunk.delMember(kUnit, 3, 0), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_trunk_port_set(1, 0, 0) = 0");
    EXPECT_EQ(ZR_OP(HAL_STORMCTL_AdaptBucketSizeZr)(kUnit, 5), 0U);
    EXPECT_EQ(dev.calls().back(), "l2sw_rate_shareMeterBucket_set(1, 5, 1000) = 0");
}

} // namespace
} // namespace zrtest
