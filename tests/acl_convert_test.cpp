// Conversion of ACL rules: what the nodes, the action and the read-back hold, byte for byte.
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cstring>
#include <map>

#include "acl/acl.h"
#include "base/field_chain.h"
#include "platform/manager.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::ElementsAre;

// The 32-bit words of a record by byte offset, in hexadecimal; words that are 0 are left out.
std::string words(const void *record, size_t size)
{
    std::string text;
    for (size_t offset = 0; offset < size; offset += 4) {
        uint32_t word = 0;
        std::memcpy(&word, static_cast<const uint8_t *>(record) + offset, sizeof word);
        if (word != 0)
            text += fmt::format("{}{}={:x}", text.empty() ? "" : " ", offset, word);
    }
    return text;
}

// A configuration that gives its nodes back.
struct Cfg : FilterCfg {
    Cfg() : FilterCfg{} {}

    Texts nodes() const
    {
        Texts all;
        for (const FilterField *field = head; field != nullptr; field = field->next)
            all.push_back(words(field, offsetof(FilterField, next)));
        return all;
    }

    const zr::FieldChain chain{*this};
};

// Every byte holds its offset, so that every field has something of its own.
LswmAclMatch fullMatch(uint32_t flags, uint8_t l3Type = 0, uint8_t protocol = 6)
{
    LswmAclMatch match;
    for (uint8_t i = 0; i < sizeof match; ++i)
        reinterpret_cast<uint8_t *>(&match)[i] = i;
    match.l3Type = l3Type;
    match.flags = flags;
    match.ipProtocol = protocol;
    return match;
}

constexpr uint32_t kIpv4Flags = 0x60E000;
constexpr uint32_t kAllFlags = 0x6000002F | kIpv4Flags;

using AclConvertTest = RunningDeviceTest;

TEST_F(AclConvertTest, EveryFlagMakesItsNodeInTheOrderOfConversion)
{
    const struct {
        uint32_t flags;
        uint8_t l3Type;
        uint8_t protocol;
        Texts nodes;
    } cases[] = {
        {0x1, 0, 6, {"8=17161514 12=1b1a1918 16=1f1e1d1c"}},
        {0x2, 0, 6, {"0=1 8=23222120 12=27262524 16=2b2a2928"}},
        {0x4, 0, 6, {"0=2 8=2d2c 12=2f2e"}},
        {0x20000000, 0, 6, {"0=29 8=4140 12=4342"}},
        {0x40000000, 0, 6, {"0=1d 8=4445 12=4948", "0=1e 8=4647 12=4948"}},
        // VLAN and priority share a node; one that is not asked for matches anything.
        {0x8, 0, 6, {"0=3 36=3130 40=3332"}},
        {0x20, 0, 6, {"0=3 8=38 12=39"}},
        {0x28, 0, 6, {"0=3 8=38 12=39 36=3130 40=3332"}},
        {0x2000, 0, 6, {"0=6 16=77767574 20=7b7a7978"}},
        {0x4000, 0, 6, {"0=5 16=6f6e6d6c 20=73727170"}},
        {0x8000, 0, 6, {"0=8 8=6 12=53"}},
        // Ports: of TCP with protocol 6, of UDP with any other or none; the destination port is matched whole.
        {0x408000, 0, 17, {"0=8 8=11 12=53", "0=13 8=6160 12=ffff"}},
        {0x600000, 0, 6, {"0=12 8=5d5c 12=5f5e", "0=13 8=6160 12=ffff"}},
        {kAllFlags,
         0,
         6,
         {"8=17161514 12=1b1a1918 16=1f1e1d1c", "0=1 8=23222120 12=27262524 16=2b2a2928", "0=2 8=2d2c 12=2f2e",
          "0=29 8=4140 12=4342", "0=3 8=38 12=39 36=3130 40=3332", "0=1d 8=4445 12=4948", "0=1e 8=4647 12=4948",
          "0=6 16=77767574 20=7b7a7978", "0=5 16=6f6e6d6c 20=73727170", "0=8 8=6 12=53", "0=f 8=5d5c 12=5f5e",
          "0=10 8=6160 12=ffff"}},
        // IPv4 flags count for layer-3 type 0 only, those of layer 2 always.
        {kIpv4Flags | 0x4, 1, 6, {"0=2 8=2d2c 12=2f2e"}},
        // Without a field, and with flags that are none: a destination MAC of mask 0.
        {0, 0, 6, {""}},
        {kIpv4Flags, 255, 6, {""}},
        {~kAllFlags, 0, 6, {""}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(fmt::format("{:#x}", row.flags));
        const LswmAclMatch match = fullMatch(row.flags, row.l3Type, row.protocol);
        Cfg cfg;
        EXPECT_EQ(ZR_OP(HAL_ACL_ConvertRuleInfoZr)(1, &match, &cfg), 0U);
        EXPECT_EQ(cfg.nodes(), row.nodes);
        EXPECT_EQ(cfg.portBitmap, 0x28000U) << "cut to those that a rule can name";
        EXPECT_EQ(cfg.portMask, 0x3801FU);
    }
}

TEST_F(AclConvertTest, ARefusedFieldLeavesTheOthersOfItsLayerAndNoPorts)
{
    const LswmAclMatch match = fullMatch(kIpv4Flags | 0x6);
    Cfg cfg;
    dev.fail("l2sw_filter_igrAcl_field_add", 7, 3);
    EXPECT_EQ(ZR_OP(HAL_ACL_ConvertRuleInfoZr)(1, &match, &cfg), 4U);
    EXPECT_THAT(dev.takeFailures(), ElementsAre("6/7 ConvertDstIp acl field add type"));
    EXPECT_EQ(cfg.nodes().size(), 6U);
    EXPECT_EQ(cfg.portBitmap | cfg.portMask, 0U);
}

TEST_F(AclConvertTest, TheActionBecomesSwitchesAndArguments)
{
    const struct {
        uint32_t flags, port;
        const char *act;
    } cases[] = {
        // One forwarding action, in the order A, B, C, D or E.
        {0x20A3, 3, "44=1"},
        {0x20A2, 3, "40=1"},
        {0x20A0, 3, "56=1"},
        {0x80, 3, "36=1"},
        {0x2000, 3, "36=1"},
        // Meter, counter, and the switches that share the value.
        {0x40, 3, "32=1 132=12345"},
        {0x10, 3, "104=1 160=1f"},
        {0x200, 3, "64=1 152=a7"},
        {0x800, 3, "72=1 152=a7"},
        {0x1000, 3, "76=1 152=a7"},
        {0x1A30, 3, "56=1 64=1 72=1 76=1 104=1 152=a7 160=1f"},
        {0x400, 0, "48=1 148=1"},
        {0x400, 31, "48=1 148=80000000"},
        {0x400, 32, "48=1"},
        {0xFFFFC10C, 3, ""},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(fmt::format("{:#x} port {}", row.flags, row.port));
        LswmAclAction action{};
        action.flags = row.flags;
        action.carId = 0x12345;
        action.counterId = 31;
        action.value = 0xA7;
        action.port = row.port;
        FilterAct act{};
        ZR_OP(HAL_ACL_ConvertFwdActionZr)(&action, &act);
        EXPECT_EQ(words(&act, sizeof act), row.act);
    }
}

TEST_F(AclConvertTest, TheActionIsReadBack)
{
    const struct {
        std::map<size_t, uint32_t> act; // by byte offset
        const char *action;             // what the caller has set stays: flag 0x40000000
    } cases[] = {
        {{}, "0=40000000"},
        {{{32, 1}, {132, 63}}, "0=40000040 44=3f"},
        {{{132, 63}, {160, 5}, {152, 7}}, "0=40000000"},
        {{{104, 2}, {160, 5}}, "0=40000010 8=5"},
        {{{64, 1}, {152, 0x1A7}}, "0=40000200 116=a7"},
        {{{72, 1}, {152, 0x1A7}}, "0=40000800 116=a7"},
        {{{76, 1}, {152, 0x1A7}}, "0=40001000 116=a7"},
        {{{56, 1}}, "0=40000020"},
        {{{40, 1}, {44, 1}}, "0=40000003"},
        // D and E: A's switch with bit 16 of the port word.
        {{{44, 1}, {148, 0x10000}}, "0=40002081"},
        {{{44, 1}, {148, 0xFFFEFFFF}}, "0=40000001"},
        {{{40, 1}, {148, 0x10000}}, "0=40000002"},
        {{{36, 1}, {48, 1}, {148, 0x10000}}, "0=40000000"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(::testing::PrintToString(row.act));
        FilterAct act{};
        for (auto [offset, value] : row.act)
            std::memcpy(reinterpret_cast<uint8_t *>(&act) + offset, &value, sizeof value);
        LswmAclAction action{};
        action.flags = 0x40000000;
        ZR_OP(HAL_ACL_FilterActToLswmActionZr)(&action, &act);
        EXPECT_EQ(words(&action, sizeof action), row.action);
    }
}

TEST_F(AclConvertTest, RawFieldsAreReadBack)
{
    // Value 0xA1B2 and mask 0xC3D4 in the match part; a MAC address in three parts, last bytes first.
    const std::map<uint32_t, std::string> known = {
        {1, "4=1 24=b2a1 28=d4c30000"},
        {2, "4=1 20=b2a10000 28=d4c3"},
        {3, "4=1 20=b2a1 24=d4c30000"},
        {4, "4=2 36=b2a1 40=d4c30000"},
        {5, "4=2 32=b2a10000 40=d4c3"},
        {6, "4=2 32=b2a1 36=d4c30000"},
        {7, "4=4 44=c3d4a1b2"},
        {16, "4=4000 108=a1b2 112=c3d4"},
        {17, "4=4000 108=a1b20000 112=c3d40000"},
        {18, "4=2000 116=a1b2 120=c3d4"},
        {19, "4=2000 116=a1b20000 120=c3d40000"},
        {67, "4=40000000 68=b2a1 72=c3d4"},
        {68, "4=40000000 68=b2a10000 72=c3d4"},
        {70, "4=8000 80=d4b2c3a1"}, // type of service and protocol
        {77, "4=200000 92=c3d4a1b2"},
        {78, "4=400000 96=c3d4a1b2"},
    };
    for (uint32_t id = 0; id < 300; ++id) {
        LswmAclMatch match{};
        ZR_OP(HAL_ACL_FieldToRuleCfgZr)(id, 0xA1B2, 0xC3D4, &match);
        EXPECT_EQ(words(&match, sizeof match), known.contains(id) ? known.at(id) : "") << id;
    }
}

TEST_F(AclConvertTest, AnEntryIsReadBackFieldByField)
{
    FilterCfgRaw raw{};
    const uint32_t ids[SDK_RAW_FIELDS] = {16, 17, 67, 68, 9, 70, 0x10001, 7};
    for (uint32_t i = 0; i < SDK_RAW_FIELDS; ++i) {
        raw.id[i] = ids[i];
        raw.value[i] = 0xFFFF0000 | (0x1100 + i);
        raw.mask[i] = 0xFFFF0000 | (0xFF00 + i);
    }
    raw.portBitmap = 0xFFFFFFFF;
    LswmAclMatch match{};
    match.flags = 0x100;
    match.l3Type = 9;
    ZR_OP(HAL_ACL_FilterCfgToRuleZr)(&match, &raw);
    EXPECT_EQ(words(&match, sizeof match), "0=9 4=4000c104 44=ff071107 68=3110211 72=ff03 80=505ff11 "
                                           "108=11011100 112=ff01ff00 160=ffffffff")
        << "the CAPWAP mask is that of the word that came last";
}

TEST_F(AclConvertTest, RawFieldsHaveNames)
{
    Texts names;
    for (uint32_t id = 0; id < 300; ++id) {
        char name[20] = "untouched";
        const uint32_t status = ZR_OP(HAL_ACL_FieldType2Name)(id, name, sizeof name);
        if (status == LSW_OK)
            names.push_back(fmt::format("{} {}", id, name));
        else
            EXPECT_EQ(fmt::format("{} {}", status, name), "5 untouched");
    }
    EXPECT_THAT(names,
                ElementsAre("1 DMAC(15-0)", "2 DMAC(31-16)", "3 DMAC(47-32)", "4 SMAC(15-0)", "5 SMAC(31-16)",
                            "6 SMAC(47-32)", "7 EtherType", "8 Stag", "9 Ctag", "16 SIP(15-0)", "17 SIP(31-16)",
                            "18 DIP(15-0)", "19 DIP(31-16)", "48 Vid Range", "49 IP Range", "50 Port Range",
                            "51 Field Valid", "128 Tcp Src Port", "129 Tcp Dst Port", "130 Tcp Flag",
                            "131 Udp Src Port", "132 Udp Dst Port", "133 Icmp Code Type", "134 Igmp Type",
                            "135 SPort", "136 DPort", "137 IP4 Tos Porto", "138 IP4 Flag Offset",
                            "139 TC Next Header", "140 CPU Tag", "141 L2 Payload"));
    char small[14];
    EXPECT_EQ(ZR_OP(HAL_ACL_FieldType2Name)(137, small, 14), LSW_OK);
    EXPECT_EQ(ZR_OP(HAL_ACL_FieldType2Name)(138, small, 14), LSW_CHIP_FAILED);
    EXPECT_STREQ(small, "IP4 Tos Porto") << "a name that does not fit was written";
}

} // namespace
} // namespace zrtest
