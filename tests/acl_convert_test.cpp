// Conversion of ACL rules: what the nodes, the action and the read-back hold, byte for byte, and what
// happens when a field is refused or memory is short.
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
using Words = std::map<size_t, uint32_t>; // by byte offset; the others are 0

// A configuration that gives its nodes back.
struct Cfg : FilterCfg {
    Cfg() : FilterCfg{} {}

    // One text a node: its words by byte offset, in hexadecimal; words that are 0 are left out.
    Texts nodes() const
    {
        Texts all;
        for (const FilterField *field = head; field != nullptr; field = field->next) {
            std::string text;
            for (auto [offset, word] : words(field, offsetof(FilterField, next)))
                text += fmt::format("{}{}={:x}", text.empty() ? "" : " ", offset, word);
            all.push_back(text);
        }
        return all;
    }
    std::vector<uint32_t> types() const
    {
        std::vector<uint32_t> all;
        for (const FilterField *field = head; field != nullptr; field = field->next)
            all.push_back(field->type);
        return all;
    }
    static Words words(const void *record, size_t size)
    {
        Words found;
        for (size_t offset = 0; offset < size; offset += 4) {
            uint32_t word = 0;
            std::memcpy(&word, static_cast<const uint8_t *>(record) + offset, sizeof word);
            if (word != 0)
                found[offset] = word;
        }
        return found;
    }

    const zr::FieldChain chain{*this};
};

template <class Record> Words wordsOf(const Record &record)
{
    return Cfg::words(&record, sizeof record);
}

// The bytes at 4 * n of a little-endian record.
uint32_t bytes(uint8_t a, uint8_t b, uint8_t c, uint8_t d)
{
    return static_cast<uint32_t>(a) | static_cast<uint32_t>(b) << 8 | static_cast<uint32_t>(c) << 16 |
           static_cast<uint32_t>(d) << 24;
}

// Every field filled with something of its own.
LswmAclMatch fullMatch(uint32_t flags)
{
    LswmAclMatch match{};
    match.flags = flags;
    for (uint8_t i = 0; i < 6; ++i) {
        match.dstMac[i] = static_cast<uint8_t>(0x10 + i);
        match.dstMacMask[i] = static_cast<uint8_t>(0xF0 + i);
        match.srcMac[i] = static_cast<uint8_t>(0x20 + i);
        match.srcMacMask[i] = static_cast<uint8_t>(0xE0 + i);
    }
    match.etherType = 0x0806;
    match.etherTypeMask = 0xFFF0;
    match.outerVlan = 0x123;
    match.outerVlanMask = 0xFFF;
    match.outerPriority = 5;
    match.outerPriorityMask = 7;
    match.udf = 0xBEEF;
    match.udfMask = 0xFF00;
    const uint8_t capwap[4] = {0x00, 0x10, 0x02, 0x00};
    std::memcpy(match.capwap, capwap, sizeof capwap);
    match.capwapMask = 0xABCDFFFF;
    match.tos = 0x55;
    match.tosMask = 0x66;
    match.ipProtocol = 6;
    match.ipProtocolMask = 0xFE;
    match.l4SrcPort = 123;
    match.l4SrcPortMask = 0x0FFF;
    match.l4DstPort = 67;
    match.l4DstPortMask = 0x00FF;
    match.srcIp = 0xC0000201;
    match.srcIpMask = 0xFFFFFF00;
    match.dstIp = 0x0A010203;
    match.dstIpMask = 0xFFFF0000;
    match.portBitmap = 0xFFFFFFFF;
    return match;
}

const char *const kAlloc = "LSWM_MemAlloc";
const char *const kChain = "l2sw_filter_igrAcl_field_add";
constexpr uint32_t kIpv4Flags = 0x60E000;
constexpr uint32_t kAllFlags = 0x6000002F | kIpv4Flags;

class AclConvertTest : public RunningDeviceTest
{
};

TEST_F(AclConvertTest, EveryFlagMakesItsNode)
{
    const struct {
        uint32_t flags;
        uint8_t l3Type;
        uint8_t protocol;
        Texts nodes;
    } cases[] = {
        {0x1, 0, 6, {"8=13121110 12=f1f01514 16=f5f4f3f2"}},
        {0x2, 0, 6, {"0=1 8=23222120 12=e1e02524 16=e5e4e3e2"}},
        {0x4, 0, 6, {"0=2 8=806 12=fff0"}},
        {0x20000000, 0, 6, {"0=29 8=beef 12=ff00"}},
        {0x40000000, 0, 6, {"0=1d 8=10 12=ffff", "0=1e 8=200 12=ffff"}},
        // VLAN and priority share a node; one that is not asked for matches anything.
        {0x8, 0, 6, {"0=3 36=123 40=fff"}},
        {0x20, 0, 6, {"0=3 8=5 12=7"}},
        {0x28, 0, 6, {"0=3 8=5 12=7 36=123 40=fff"}},
        {0x2000, 0, 6, {"0=6 16=a010203 20=ffff0000"}},
        {0x4000, 0, 6, {"0=5 16=c0000201 20=ffffff00"}},
        {0x8000, 0, 6, {"0=8 8=6 12=fe"}},
        // Ports: of TCP with protocol 6, of UDP with any other or none; the destination port is matched whole.
        {0x208000, 0, 6, {"0=8 8=6 12=fe", "0=f 8=7b 12=fff"}},
        {0x408000, 0, 6, {"0=8 8=6 12=fe", "0=10 8=43 12=ffff"}},
        {0x408000, 0, 17, {"0=8 8=11 12=fe", "0=13 8=43 12=ffff"}},
        {0x600000, 0, 6, {"0=12 8=7b 12=fff", "0=13 8=43 12=ffff"}},
        // IPv4 flags count for layer-3 type 0 only, those of layer 2 always.
        {kIpv4Flags | 0x4, 1, 6, {"0=2 8=806 12=fff0"}},
        // Without a field, and with flags that are none: a destination MAC of mask 0.
        {0, 0, 6, {""}},
        {kIpv4Flags, 255, 6, {""}},
        {~kAllFlags, 0, 6, {""}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(fmt::format("{:#x}", row.flags));
        LswmAclMatch match = fullMatch(row.flags);
        match.l3Type = row.l3Type;
        match.ipProtocol = row.protocol;
        Cfg cfg;
        EXPECT_EQ(ZR_OP(HAL_ACL_ConvertRuleInfoZr)(1, &match, &cfg), 0U);
        EXPECT_EQ(cfg.nodes(), row.nodes);
        EXPECT_EQ(cfg.portBitmap, 0x3801FU);
        EXPECT_EQ(cfg.portMask, 0x3801FU);
    }
}

TEST_F(AclConvertTest, NodesStandInTheOrderOfTheirConversionWithOneBlockEach)
{
    LswmAclMatch match = fullMatch(kAllFlags);
    match.portBitmap = 0x70029;
    {
        Cfg cfg;
        EXPECT_EQ(ZR_OP(HAL_ACL_ConvertRuleInfoZr)(1, &match, &cfg), 0U);
        EXPECT_THAT(cfg.types(), ElementsAre(0, 1, 2, 41, 3, 29, 30, 6, 5, 8, 15, 16));
        EXPECT_EQ(zrsim::memory().liveBlocks(), 12U);
        EXPECT_EQ(dev.calls().size(), 12U);
        EXPECT_EQ(cfg.portBitmap, 0x30009U) << "cut to those that a rule can name";
        for (const zrsim::Call &call : dev.recorded())
            if (std::string(call.name) == "LSWM_MemAlloc") {
                EXPECT_EQ(call.text, "LSWM_MemAlloc(120) = ptr");
            }
    }
    EXPECT_EQ(zrsim::memory().liveBlocks(), 0U);
}

TEST_F(AclConvertTest, AFailedFieldDoesNotStopItsLayer)
{
    const LswmAclMatch match = fullMatch(kAllFlags);
    {
        SCOPED_TRACE("layer 2: no memory for the source MAC, both CAPWAP words refused");
        dev.fail(kAlloc, 1, 2);
        dev.fail(kChain, 9, 5);
        dev.fail(kChain, 8, 6);
        Cfg cfg;
        EXPECT_EQ(ZR_OP(HAL_ACL_ConvertRuleInfoZr)(1, &match, &cfg), 3U + 4U + 4U);
        EXPECT_THAT(cfg.types(), ElementsAre(0, 2, 41, 3));
        EXPECT_EQ(cfg.portBitmap, 0U) << "the conversion went on behind a failed layer";
        EXPECT_EQ(cfg.portMask, 0U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre("6/9 ConvertCapWap acl field add type",
                                                    "6/8 ConvertCapWap acl field add type"));
        dev.clearInjections();
    }
    {
        SCOPED_TRACE("IPv4: destination address refused, no memory for the destination port");
        dev.fail(kChain, 7, 8);
        dev.fail(kAlloc, 1, 12);
        Cfg cfg;
        EXPECT_EQ(ZR_OP(HAL_ACL_ConvertRuleInfoZr)(1, &match, &cfg), 4U + 3U);
        EXPECT_THAT(cfg.types(), ElementsAre(0, 1, 2, 41, 3, 29, 30, 5, 8, 15));
        EXPECT_EQ(cfg.portMask, 0U);
        EXPECT_THAT(dev.takeFailures(), ElementsAre("6/7 ConvertDstIp acl field add type"));
    }
    EXPECT_EQ(zrsim::memory().liveBlocks(), 0U);
}

TEST_F(AclConvertTest, TheActionBecomesSwitchesAndArguments)
{
    const struct {
        uint32_t flags;
        uint32_t port;
        std::map<size_t, uint32_t> words; // by word number
    } cases[] = {
        {0, 3, {}},
        {0x1, 3, {{11, 1}}},
        {0x20A3, 3, {{11, 1}}},
        {0x2, 3, {{10, 1}}},
        {0x20A2, 3, {{10, 1}}},
        {0x20A0, 3, {{14, 1}}},
        {0x80, 3, {{9, 1}}},
        {0x2000, 3, {{9, 1}}},
        {0x40, 3, {{8, 1}, {33, 0x12345}}},
        {0x10, 3, {{26, 1}, {40, 31}}},
        {0x230, 3, {{14, 1}, {26, 1}, {40, 31}, {16, 1}, {38, 0xA7}}},
        {0x800, 3, {{18, 1}, {38, 0xA7}}},
        {0x1000, 3, {{19, 1}, {38, 0xA7}}},
        {0x1A00, 3, {{16, 1}, {18, 1}, {19, 1}, {38, 0xA7}}},
        {0x400, 0, {{12, 1}, {37, 1}}},
        {0x400, 31, {{12, 1}, {37, 0x80000000}}},
        {0x400, 32, {{12, 1}}},
        {0x400, 0xFFFFFFFF, {{12, 1}}},
        {0xFFFFC10C, 3, {}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(::testing::Message() << std::hex << row.flags << " port " << row.port);
        LswmAclAction action{};
        action.flags = row.flags;
        action.carId = 0x12345;
        action.counterId = 31;
        action.value = 0xA7;
        action.port = row.port;
        FilterAct act{};
        ZR_OP(HAL_ACL_ConvertFwdActionZr)(&action, &act);
        Words expected;
        for (auto [word, value] : row.words)
            expected[4 * word] = value;
        EXPECT_EQ(wordsOf(act), expected);
    }
}

TEST_F(AclConvertTest, TheActionIsReadBack)
{
    const struct {
        std::map<size_t, uint32_t> words;
        uint32_t flags;
        Words record; // besides the flags, by offset in the action part
    } cases[] = {
        {{}, 0, {}},
        {{{8, 1}, {33, 63}}, 0x40, {{44, 63}}},
        {{{33, 63}, {40, 5}, {38, 7}}, 0, {}},
        {{{26, 2}, {40, 5}}, 0x10, {{8, 5}}},
        {{{16, 1}, {38, 0x1A7}}, 0x200, {{116, 0xA7}}},
        {{{18, 1}, {38, 0x1A7}}, 0x800, {{116, 0xA7}}},
        {{{19, 1}, {38, 0x1A7}}, 0x1000, {{116, 0xA7}}},
        {{{14, 1}}, 0x20, {}},
        {{{11, 1}}, 0x1, {}},
        {{{10, 1}}, 0x2, {}},
        {{{10, 1}, {11, 1}}, 0x3, {}},
        {{{11, 1}, {37, 0x10000}}, 0x2081, {}},
        {{{10, 1}, {11, 1}, {37, 0xFFFFFFFF}}, 0x2083, {}},
        {{{11, 1}, {37, 0xFFFEFFFF}}, 0x1, {}},
        {{{10, 1}, {37, 0x10000}}, 0x2, {}},
        {{{9, 1}, {12, 1}, {37, 0x10000}}, 0, {}},
    };
    for (const auto &row : cases) {
        FilterAct act{};
        for (auto [word, value] : row.words)
            std::memcpy(reinterpret_cast<uint8_t *>(&act) + 4 * word, &value, sizeof value);
        SCOPED_TRACE(::testing::PrintToString(row.words));
        LswmAclAction action{};
        action.flags = 0x40000000; // what the caller has set stays
        ZR_OP(HAL_ACL_FilterActToLswmActionZr)(&action, &act);
        Words expected = row.record;
        expected[0] = row.flags | 0x40000000;
        EXPECT_EQ(wordsOf(action), expected);
    }
}

TEST_F(AclConvertTest, RawFieldsAreReadBack)
{
    // Offsets in the match part; the value is 0xA1B2 and the mask 0xC3D4.
    const std::map<uint32_t, Words> known = {
        {1, {{4, 0x1}, {24, bytes(0xA1, 0xB2, 0, 0)}, {28, bytes(0, 0, 0xC3, 0xD4)}}},
        {2, {{4, 0x1}, {20, bytes(0, 0, 0xA1, 0xB2)}, {28, bytes(0xC3, 0xD4, 0, 0)}}},
        {3, {{4, 0x1}, {20, bytes(0xA1, 0xB2, 0, 0)}, {24, bytes(0, 0, 0xC3, 0xD4)}}},
        {4, {{4, 0x2}, {36, bytes(0xA1, 0xB2, 0, 0)}, {40, bytes(0, 0, 0xC3, 0xD4)}}},
        {5, {{4, 0x2}, {32, bytes(0, 0, 0xA1, 0xB2)}, {40, bytes(0xC3, 0xD4, 0, 0)}}},
        {6, {{4, 0x2}, {32, bytes(0xA1, 0xB2, 0, 0)}, {36, bytes(0, 0, 0xC3, 0xD4)}}},
        {7, {{4, 0x4}, {44, 0xC3D4A1B2}}},
        {16, {{4, 0x4000}, {108, 0x0000A1B2}, {112, 0x0000C3D4}}},
        {17, {{4, 0x4000}, {108, 0xA1B20000}, {112, 0xC3D40000}}},
        {18, {{4, 0x2000}, {116, 0x0000A1B2}, {120, 0x0000C3D4}}},
        {19, {{4, 0x2000}, {116, 0xA1B20000}, {120, 0xC3D40000}}},
        {67, {{4, 0x40000000}, {68, bytes(0xA1, 0xB2, 0, 0)}, {72, 0xC3D4}}},
        {68, {{4, 0x40000000}, {68, bytes(0, 0, 0xA1, 0xB2)}, {72, 0xC3D4}}},
        {70, {{4, 0x8000}, {80, bytes(0xA1, 0xC3, 0xB2, 0xD4)}}},
        {77, {{4, 0x200000}, {92, 0xC3D4A1B2}}},
        {78, {{4, 0x400000}, {96, 0xC3D4A1B2}}},
    };
    for (uint32_t id = 0; id < 300; ++id) {
        SCOPED_TRACE(id);
        LswmAclMatch match{};
        ZR_OP(HAL_ACL_FieldToRuleCfgZr)(id, 0xA1B2, 0xC3D4, &match);
        EXPECT_EQ(wordsOf(match), known.contains(id) ? known.at(id) : Words{});
    }
    LswmAclMatch match{};
    ZR_OP(HAL_ACL_FieldToRuleCfgZr)(0x10001, 0xA1B2, 0xC3D4, &match);
    EXPECT_EQ(wordsOf(match), Words{}) << "only the low bits of the id were looked at";
}

TEST_F(AclConvertTest, AnEntryIsReadBackFieldByField)
{
    FilterCfgRaw raw{};
    const uint32_t ids[SDK_RAW_FIELDS] = {16, 17, 67, 68, 9, 70, 0, 7};
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
    EXPECT_EQ(wordsOf(match), (Words{{0, 9},
                                     {4, 0x4000C104},
                                     {44, 0xFF071107},
                                     {68, bytes(0x11, 0x02, 0x11, 0x03)},
                                     {72, 0xFF03}, // of the word that came last
                                     {80, bytes(0x11, 0xFF, 0x05, 0x05)},
                                     {108, 0x11011100},
                                     {112, 0xFF01FF00},
                                     {160, 0xFFFFFFFF}}));
}

TEST_F(AclConvertTest, APartOfAMacAddressBeyondItsThreeWritesNothing)
{
    for (uint16_t part : {3, 4, 0x7FFF, 0xFFFF}) {
        uint8_t memory[12 + 16] = {};
        ZR_OP(HAL_ACL_MacFieldToRuleMacZr)(part, 0xFFFF, 0xFFFF, memory + 8);
        EXPECT_THAT(memory, ::testing::Each(0)) << part;
    }
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
