// The virtual chip's ingress ACL under the library's chip operations: where a rule's raw fields stand, what the
// table refuses, and that a rule reads back as it was added.
#include <gmock/gmock.h>

#include <cstring>

#include "acl/acl.h"
#include "platform/chip_sdk.h"
#include "sim/sdk/sdk.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;

constexpr uint32_t kEverything = 0x6060E02F;

class AclModelTest : public RunningDeviceTest
{
protected:
    static constexpr uint32_t kUnit = 1;

    uint32_t add(uint32_t id, uint32_t matchFlags, const LswmAclAction &action = {})
    {
        LswmAclMatch match{};
        match.flags = matchFlags;
        return ZR_OP(HAL_ACL_AddEntryZr)(kUnit, id, &match, &action, &written);
    }
    // The ids of an entry's raw fields; empty when it holds no rule.
    std::vector<uint32_t> rawIds(uint32_t id)
    {
        FilterCfgRaw raw{};
        FilterAct act{};
        EXPECT_EQ(l2sw_filter_igrAcl_cfg_get(kUnit, id, &raw, &act), 0U);
        std::vector<uint32_t> ids(raw.id, raw.id + (raw.valid != 0 ? SDK_RAW_FIELDS : 0));
        std::erase(ids, 0U);
        return ids;
    }

    uint32_t written = 0xEE;
};

TEST_F(AclModelTest, ARuleStandsInConsecutiveEntriesUntilTheyAreDeleted)
{
    EXPECT_EQ(add(93, kEverything), 0U);
    EXPECT_EQ(written, 3U);
    EXPECT_THAT(rawIds(92), ElementsAre());
    EXPECT_THAT(rawIds(93), ElementsAre(1, 2, 3, 4, 5, 6, 7, 79));
    EXPECT_THAT(rawIds(94), ElementsAre(8, 67, 68, 18, 19, 16, 17, 70));
    EXPECT_THAT(rawIds(95), ElementsAre(77, 78));
    EXPECT_EQ(ZR_OP(HAL_ACL_DelEntryZr)(kUnit, 94), 0U);
    EXPECT_EQ(rawIds(93).size(), 8U);
    EXPECT_THAT(rawIds(94), ElementsAre());
    EXPECT_EQ(rawIds(95).size(), 2U);
    EXPECT_EQ(dev.chip(0).acl.entry(93).parts, 0U) << "another unit's table was written";
    for (auto [flags, entries] : {std::pair(0x2FU, 1U), {0x2000002FU, 2U}}) { // eight raw fields, nine
        EXPECT_EQ(add(10, flags), 0U);
        EXPECT_EQ(written, entries);
    }
    dev.chip(kUnit).assertReset();
    EXPECT_EQ(dev.chip(kUnit).acl.entry(93).parts, 0U);
}

TEST_F(AclModelTest, WhatDoesNotFitIsRefused)
{
    LswmAclAction counted{};
    counted.flags = LSWM_ACTION_COUNT;
    counted.counterId = 32;
    LswmAclAction policed{};
    policed.flags = LSWM_ACTION_CAR;
    policed.carId = 64;
    FilterField unknown{};
    unknown.type = 4;
    FilterField known{};
    known.type = SDK_FIELD_ETHER_TYPE;
    FilterCfg cfg{};
    FilterAct act{};
    const uint32_t statuses[] = {
        add(94, kEverything), // three entries from 94 on
        add(0xFFFFFFFF, kEverything),
        add(0, 0x4, counted),
        add(0, 0x4, policed),
        l2sw_filter_igrAcl_field_add(kUnit, &cfg, &unknown),
        l2swFilterIgrAclRuleNumGet(kUnit, &cfg, &act, &written), // without fields
        l2sw_filter_igrAcl_entry_addbitmap(kUnit, 96, 1),
        l2sw_filter_igrAcl_entry_addbitmap(kUnit, 5, 1), // an empty entry
        l2sw_filter_igrAcl_field_sel_set(kUnit, 16, 1, 20),
        l2sw_filter_igrAcl_field_sel_set(kUnit, 13, 1, 20), // always the source port
        l2sw_filter_igrAcl_field_sel_set(kUnit, 3, 2, 20),  // a format that is not modelled
        l2sw_stat_logging_counter_get(kUnit, 32, &written),
    };
    EXPECT_THAT(statuses, ::testing::Each(::testing::Ne(0U)));
    EXPECT_EQ(written, 0xEEU);
    for (uint32_t id = 0; id < 96; ++id)
        EXPECT_EQ(dev.chip(kUnit).acl.entry(id).parts, 0U) << "a refused rule left something at " << id;
    EXPECT_EQ(l2sw_filter_igrAcl_field_add(kUnit, nullptr, &known), zrsim::kSdkNull);
    dev.chip(kUnit).assertReset();
    EXPECT_NE(l2sw_filter_igrAcl_field_add(kUnit, &cfg, &known), 0U) << "a unit that is not up";
}

// Everything that the read-back carries, a field at a time: value, mask, ports and action come back.
TEST_F(AclModelTest, ARuleReadsBackAsItWasAdded)
{
    const struct {
        uint32_t flag;
        size_t offset, size; // of value and mask
        uint32_t actionFlags;
    } fields[] = {{LSWM_MATCH_DST_MAC, offsetof(LswmAclMatch, dstMac), 12, 0},
                  {LSWM_MATCH_SRC_MAC, offsetof(LswmAclMatch, srcMac), 12, LSWM_ACTION_FORWARD_A},
                  {LSWM_MATCH_ETHER_TYPE, offsetof(LswmAclMatch, etherType), 4, LSWM_ACTION_FORWARD_B},
                  {LSWM_MATCH_DST_IP, offsetof(LswmAclMatch, dstIp), 8, LSWM_ACTION_FORWARD_C},
                  {LSWM_MATCH_SRC_IP, offsetof(LswmAclMatch, srcIp), 8, LSWM_ACTION_CAR},
                  {LSWM_MATCH_IP_PROTOCOL, offsetof(LswmAclMatch, ipProtocol), 2, LSWM_ACTION_COUNT},
                  {LSWM_MATCH_L4_SRC_PORT, offsetof(LswmAclMatch, l4SrcPort), 4, LSWM_ACTION_VALUE_A},
                  {LSWM_MATCH_L4_DST_PORT, offsetof(LswmAclMatch, l4DstPort), 2, LSWM_ACTION_VALUE_B},
                  {LSWM_MATCH_CAPWAP, offsetof(LswmAclMatch, capwap), 6, LSWM_ACTION_VALUE_C}};
    for (const auto &[flag, offset, size, actionFlags] : fields) {
        SCOPED_TRACE(offset);
        LswmAclMatch match{};
        match.flags = flag;
        for (size_t byte = 0; byte < size; ++byte)
            reinterpret_cast<uint8_t *>(&match)[offset + byte] = static_cast<uint8_t>(0x9F - byte);
        match.l4DstPortMask = flag == LSWM_MATCH_L4_DST_PORT ? 0xFFFF : 0; // matched whole
        match.portBitmap = 0x28012;
        LswmAclAction action{};
        action.flags = actionFlags;
        action.carId = actionFlags == LSWM_ACTION_CAR ? 63 : 0;
        action.counterId = actionFlags == LSWM_ACTION_COUNT ? 31 : 0;
        action.value = actionFlags >= LSWM_ACTION_VALUE_A ? 0xA7 : 0;
        ASSERT_EQ(ZR_OP(HAL_ACL_AddEntryZr)(kUnit, 20, &match, &action, &written), 0U);
        LswmAclMatch matchBack{};
        LswmAclAction actionBack{};
        ASSERT_EQ(ZR_OP(HAL_ACL_GetEntryZr)(kUnit, 20, &matchBack, &actionBack), 0U);
        EXPECT_EQ(std::memcmp(&match, &matchBack, sizeof match), 0);
        EXPECT_EQ(std::memcmp(&action, &actionBack, sizeof action), 0);
    }
}

} // namespace
} // namespace zrtest
