// The virtual chip's ingress ACL under the library's chip operations: how many entries a rule takes, what it
// reads back, what the table refuses.
#include <gmock/gmock.h>

#include <cstring>

#include "acl/acl.h"
#include "platform/chip_sdk.h"
#include "sim/sdk/sdk.h"
#include "tests/kit/device.h"
#include "tests/kit/random.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;

constexpr uint32_t kMacs = 0x3;
constexpr uint32_t kIps = 0x6000;
constexpr uint32_t kPorts = 0x600000;
constexpr uint32_t kEverything = 0x6060E02F;

class AclModelTest : public RunningDeviceTest
{
protected:
    static constexpr uint32_t kUnit = 1;

    uint32_t add(uint32_t id, const LswmAclMatch &match, const LswmAclAction &action = {})
    {
        written = 0xEE;
        return ZR_OP(HAL_ACL_AddEntryZr)(kUnit, id, &match, &action, &written);
    }
    // The ids of an entry's raw fields; empty when it holds no rule.
    std::vector<uint32_t> rawIds(uint32_t id)
    {
        FilterCfgRaw raw{};
        FilterAct act{};
        EXPECT_EQ(l2sw_filter_igrAcl_cfg_get(kUnit, id, &raw, &act), 0U);
        std::vector<uint32_t> ids;
        if (raw.valid != 0)
            for (uint32_t field : raw.id)
                if (field != 0)
                    ids.push_back(field);
        return ids;
    }
    static LswmAclMatch matchOf(uint32_t flags)
    {
        LswmAclMatch match{};
        match.flags = flags;
        match.ipProtocol = 17;
        match.portBitmap = 0x9;
        return match;
    }

    uint32_t written = 0;
};

TEST_F(AclModelTest, ARuleTakesOneEntryForEveryEightRawFields)
{
    const struct {
        uint32_t flags;
        uint32_t entries;
    } cases[] = {
        {0, 1},
        {kMacs, 1},                                       // 6
        {kMacs | 0x4 | 0x8, 1},                           // 8
        {kMacs | 0x4 | 0x28, 1},                          // 8: VLAN and priority share one
        {kMacs | 0x4 | 0x8 | 0x20000000, 2},              // 9
        {0x4 | kIps | 0x8000 | kPorts, 1},                // 8
        {0x40000000 | kIps | 0x8000 | kPorts, 2},         // 9: CAPWAP takes two
        {kMacs | kIps | 0x8000 | kPorts | 0x60000000, 2}, // 16
        {kEverything, 3},                                 // 18
    };
    const LswmAclAction action{};
    for (const auto &row : cases) {
        SCOPED_TRACE(::testing::Message() << std::hex << row.flags);
        const LswmAclMatch match = matchOf(row.flags);
        uint32_t count = 0;
        EXPECT_EQ(ZR_OP(HAL_ACL_GetEntryCntZr)(kUnit, &match, &action, &count), 0U);
        EXPECT_EQ(count, row.entries);
        EXPECT_EQ(add(10, match), 0U);
        EXPECT_EQ(written, row.entries);
    }
}

TEST_F(AclModelTest, ARuleStandsInConsecutiveEntriesUntilTheyAreDeleted)
{
    EXPECT_EQ(add(93, matchOf(kEverything)), 0U);
    EXPECT_THAT(rawIds(92), ElementsAre());
    EXPECT_THAT(rawIds(93), ElementsAre(1, 2, 3, 4, 5, 6, 7, 79));
    EXPECT_THAT(rawIds(94), ElementsAre(8, 67, 68, 18, 19, 16, 17, 70));
    EXPECT_THAT(rawIds(95), ElementsAre(77, 78));
    for (uint32_t id = 93; id < 96; ++id)
        EXPECT_EQ(dev.chip(kUnit).acl.entry(id).ports, 0x9U) << id;

    EXPECT_EQ(ZR_OP(HAL_ACL_DelEntryZr)(kUnit, 94), 0U);
    EXPECT_EQ(rawIds(93).size(), 8U);
    EXPECT_THAT(rawIds(94), ElementsAre());
    EXPECT_EQ(rawIds(95).size(), 2U);
    EXPECT_EQ(dev.chip(0).acl.entry(93).parts, 0U) << "another unit's table was written";
}

TEST_F(AclModelTest, WhatDoesNotFitIsRefused)
{
    LswmAclAction counted{};
    counted.flags = 0x10;
    counted.counterId = 32;
    LswmAclAction policed{};
    policed.flags = 0x40;
    policed.carId = 64;

    EXPECT_EQ(add(94, matchOf(kEverything)), 4U) << "three entries from 94 on";
    EXPECT_EQ(add(96, matchOf(0x4)), 4U);
    EXPECT_EQ(add(0xFFFFFFFF, matchOf(kEverything)), 4U);
    EXPECT_EQ(add(0, matchOf(0x4), counted), 4U);
    EXPECT_EQ(add(0, matchOf(0x4), policed), 4U);
    EXPECT_EQ(written, 0xEEU);
    for (uint32_t id = 0; id < 96; ++id)
        EXPECT_EQ(dev.chip(kUnit).acl.entry(id).parts, 0U) << "a refused rule left something at " << id;

    FilterField unknown{};
    unknown.type = 4;
    FilterCfg cfg{};
    FilterAct act{};
    FilterCfgRaw raw{};
    uint32_t value = 0xEE;
    EXPECT_NE(l2sw_filter_igrAcl_field_add(kUnit, &cfg, &unknown), 0U);
    EXPECT_EQ(cfg.head, nullptr);
    EXPECT_NE(l2swFilterIgrAclRuleNumGet(kUnit, &cfg, &act, &value), 0U) << "a rule without fields";
    EXPECT_NE(l2sw_filter_igrAcl_cfg_get(kUnit, 96, &raw, &act), 0U);
    EXPECT_NE(l2sw_filter_igrAcl_cfg_del(kUnit, 96), 0U);
    EXPECT_NE(l2sw_filter_igrAcl_entry_addbitmap(kUnit, 96, 1), 0U);
    EXPECT_NE(l2sw_filter_igrAcl_entry_addbitmap(kUnit, 5, 1), 0U) << "an empty entry";
    EXPECT_NE(l2sw_filter_igrAcl_field_sel_set(kUnit, 16, 1, 20), 0U);
    EXPECT_NE(l2sw_filter_igrAcl_field_sel_set(kUnit, 13, 1, 20), 0U) << "always the source port";
    EXPECT_NE(l2sw_filter_igrAcl_field_sel_set(kUnit, 3, 2, 20), 0U) << "a format that is not modelled";
    EXPECT_NE(l2sw_stat_logging_counter_get(kUnit, 32, &value), 0U);
    EXPECT_EQ(value, 0xEEU);

    FilterField known{};
    known.type = SDK_FIELD_ETHER_TYPE;
    EXPECT_NE(l2sw_filter_igrAcl_field_add(3, &cfg, &known), 0U);
    EXPECT_EQ(l2sw_filter_igrAcl_field_add(kUnit, nullptr, &known), zrsim::kSdkNull);
    dev.chip(kUnit).assertReset();
    EXPECT_NE(l2sw_filter_igrAcl_field_add(kUnit, &cfg, &known), 0U) << "a unit that is not up";
    EXPECT_NE(l2sw_filter_igrAcl_cfg_del(kUnit, 0), 0U);
}

TEST_F(AclModelTest, AResetForgetsEverything)
{
    EXPECT_EQ(add(7, matchOf(0x4)), 0U);
    EXPECT_EQ(ZR_OP(HAL_ACL_InitFieldSelectorZr)(kUnit), 0U);
    dev.chip(kUnit).assertReset();
    EXPECT_EQ(dev.chip(kUnit).acl.entry(7).parts, 0U);
    EXPECT_EQ(dev.chip(kUnit).acl.selector(15).format, 0U);
}

// Everything that the read-back carries, in rules of one entry: value, mask, ports and action come back.
TEST_F(AclModelTest, ARandomRuleReadsBackAsItWasAdded)
{
    ZR_RANDOM(random);
    const auto chance = [&](uint32_t oneIn) { return random() % oneIn == 0; };
    // With the raw fields that each takes.
    const std::pair<uint32_t, unsigned> fields[] = {{0x1, 3},      {0x2, 3},      {0x4, 1},
                                                    {0x2000, 2},   {0x4000, 2},   {0x8000, 1},
                                                    {0x200000, 1}, {0x400000, 1}, {0x40000000, 2}};
    for (unsigned round = 0; round < 2000; ++round) {
        LswmAclMatch match{};
        unsigned taken = 0;
        const uint32_t start = static_cast<uint32_t>(random() % std::size(fields));
        for (size_t i = 0; i < std::size(fields); ++i) {
            const auto [flag, width] = fields[(start + i) % std::size(fields)];
            if (chance(2) && taken + width <= 8) {
                match.flags |= flag;
                taken += width;
            }
        }
        if (match.flags == 0)
            continue;
        const auto fill = [&](uint32_t flag, auto &...parts) {
            const auto one = [&](auto &part) {
                for (size_t i = 0; i < sizeof part; ++i)
                    reinterpret_cast<uint8_t *>(&part)[i] = static_cast<uint8_t>(random());
            };
            if ((match.flags & flag) != 0)
                (one(parts), ...);
        };
        fill(0x1, match.dstMac, match.dstMacMask);
        fill(0x2, match.srcMac, match.srcMacMask);
        fill(0x4, match.etherType, match.etherTypeMask);
        fill(0x2000, match.dstIp, match.dstIpMask);
        fill(0x4000, match.srcIp, match.srcIpMask);
        fill(0x8000, match.ipProtocol, match.ipProtocolMask);
        fill(0x200000, match.l4SrcPort, match.l4SrcPortMask);
        fill(0x400000, match.l4DstPort);
        fill(0x40000000, match.capwap, match.capwapMask);
        match.l4DstPortMask = (match.flags & 0x400000) != 0 ? 0xFFFF : 0;
        match.capwapMask &= 0xFFFF;
        match.portBitmap = random() & 0x3801F;

        LswmAclAction action{};
        const uint32_t forwarding[] = {0, 0x1, 0x2, 0x20};
        action.flags = forwarding[random() % 4];
        if (chance(2)) {
            action.flags |= 0x40;
            action.carId = random() % 64;
        }
        if (chance(2)) {
            action.flags |= 0x10;
            action.counterId = random() % 32;
        }
        const uint32_t valued[] = {0, 0x200, 0x800, 0x1000};
        if (const uint32_t flag = valued[random() % 4]; flag != 0) {
            action.flags |= flag;
            action.value = static_cast<uint8_t>(random());
        }

        const uint32_t id = random() % 96;
        ASSERT_EQ(add(id, match, action), 0U);
        LswmAclMatch matchBack{};
        LswmAclAction actionBack{};
        ASSERT_EQ(ZR_OP(HAL_ACL_GetEntryZr)(kUnit, id, &matchBack, &actionBack), 0U);
        ASSERT_EQ(std::memcmp(&match, &matchBack, sizeof match), 0)
            << "round " << round << " flags " << std::hex << match.flags << " back " << matchBack.flags;
        ASSERT_EQ(std::memcmp(&action, &actionBack, sizeof action), 0)
            << "round " << round << " flags " << std::hex << action.flags << " back " << actionBack.flags;
    }
    EXPECT_EQ(zrsim::memory().liveBlocks(), 0U);
}

} // namespace
} // namespace zrtest
