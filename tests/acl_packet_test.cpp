// Frames of tests/packets through the virtual chip's ingress ACL: the default policies and
// hand-set rules catch what they name and nothing else.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>
#include <stdexcept>

#include "acl/acl.h"
#include "platform/chip_sdk.h"
#include "sim/zrsim.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kUnit = 1;
constexpr uint32_t kWan = 3;
constexpr uint32_t kLan = 2;

const std::string kPackets = ZRLSW_SOURCE_DIR "/tests/packets/packets.txt";

std::map<std::string, Bytes> readFrames()
{
    std::ifstream in(kPackets);
    if (!in)
        throw std::runtime_error("no frames in " + kPackets);
    std::map<std::string, Bytes> frames;
    for (std::string line; std::getline(in, line);) {
        if (line[0] == '#')
            continue;
        const size_t end = line.rfind(": ");
        Bytes &frame = frames[line.substr(0, end)];
        for (size_t i = end + 2; i + 1 < line.size(); i += 2)
            frame.push_back(static_cast<uint8_t>(std::stoul(line.substr(i, 2), nullptr, 16)));
    }
    return frames;
}

const Bytes &frameNamed(const std::string &name)
{
    static const std::map<std::string, Bytes> frames = readFrames();
    const auto found = frames.find(name);
    if (found == frames.end())
        throw std::runtime_error(kPackets + " has no frame '" + name + "'");
    return found->second;
}

class AclFramesTest : public RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        ASSERT_EQ(dev.ops().acl.init(kUnit) | dev.ops().vlan.init(kUnit), 0U);
        for (uint32_t vlan : {7, 100, 101, 4094})
            ASSERT_EQ(dev.ops().vlan.create(kUnit, vlan), 0U);
        for (uint32_t port : {kWan, kLan}) {
            ASSERT_EQ(dev.ops().port.setEnable(kUnit, port, 1), 0U);
            ASSERT_EQ(dev.ops().vlan.setIgrPortFilter(kUnit, port, 0), 0U);
            dev.chip(kUnit).ports.plug(port, true);
        }
    }
    // Sends a frame through the unit; returns the entry that it hit.
    std::optional<uint32_t> run(uint32_t port, const std::string &name)
    {
        Bytes bytes = frameNamed(name);
        bytes.resize(std::max<size_t>(60, bytes.size()));
        std::optional<uint32_t> hit;
        zrsim_frame(
            kUnit, port, bytes.data(), bytes.size(), ZRSIM_FRAME_EXPLAIN,
            [](const zrsim_frame_event *event, void *found) {
                uint32_t entry = 0;
                if (event->kind == ZRSIM_FRAME_STAGE && event->name == std::string("acl") &&
                    std::sscanf(event->text, "entry %u", &entry) == 1)
                    *static_cast<std::optional<uint32_t> *>(found) = entry;
            },
            &hit);
        return hit;
    }
    uint32_t counter(uint32_t id)
    {
        uint32_t count = 0;
        EXPECT_EQ(l2sw_stat_logging_counter_get(kUnit, id, &count), 0U);
        return count;
    }
    // Programs a rule for port kWan through the table and answers its first entry.
    uint32_t add(const LswmAclMatch &match, uint32_t flags = 0x20, uint32_t meter = 0)
    {
        LswmAclRule rule{};
        rule.match = match;
        rule.match.portBitmap = 1U << kWan;
        rule.partition = 1;
        rule.action.flags = flags;
        rule.action.carId = meter;
        uint32_t logicId = 0;
        uint32_t first = 0;
        EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicId), 0U);
        EXPECT_EQ(dev.ops().acl.logicRuleToChipRule(kUnit, logicId, &first), 0U);
        return first;
    }
};

TEST_F(AclFramesTest, DefaultPoliciesCatchTheirProtocolOnWanPortsAndCountIt)
{
    constexpr uint32_t kNone = 99;
    const struct {
        const char *what;
        uint32_t policy;
        std::string frame;
    } cases[] = {
        {"ARP request", 0, "arp request"},
        {"ARP reply", 0, "arp reply"},
        {"NTP answer", 1, "udp 123>40000 bytes=48"},
        {"NTP between servers", 1, "udp 123>123 bytes=48"},
        {"NTP in a VLAN", 1, "tagged 100 5"},
        {"DHCP discover", 2, "dhcp 68>67 discover"},
        {"DHCP request", 2, "dhcp 68>67 request"},
        {"first fragment of a DHCP request", 2, "fragment 0"},
        {"DHCP offer", 3, "dhcp 67>68 offer"},
        {"DHCP acknowledgement", 3, "dhcp 67>68 ack"},
        {"CoAP request", 4, "udp 40000>5683"},
        {"CoAP answer from the well-known port to another", kNone, "udp 5683>40000"},
        {"NTP request of a client", kNone, "udp 40000>123 bytes=48"},
        {"later fragment whose data looks like a DHCP request", kNone, "fragment 64"},
        {"another UDP port", kNone, "udp 68>69"},
        {"TCP to the DHCP server's port", kNone, "tcp 68>67"},
        {"TCP from the NTP port", kNone, "tcp 123>40000"},
        {"TCP to the CoAP port", kNone, "tcp 40000>5683"},
        {"ping", kNone, "ping"},
        {"IPv6 to the DHCP server's port", kNone, "udp6 68>67"},
        {"spanning tree", kNone, "stp"},
    };

    for (const auto &row : cases)
        EXPECT_FALSE(run(kWan, row.frame)) << row.what << ": the policies start on no port";
    ASSERT_EQ(dev.ops().acl.updateLanWanPolicy(kUnit, kWan, 1), 0U);
    ASSERT_EQ(dev.ops().acl.updateLanWanPolicy(kUnit, kLan, 0), 0U);

    std::array<uint32_t, 5> expected{};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.what);
        EXPECT_FALSE(run(kLan, row.frame)) << "on a LAN port";
        const auto hit = run(kWan, row.frame);
        ASSERT_EQ(hit.has_value(), row.policy != kNone);
        if (hit) {
            EXPECT_EQ(*hit, row.policy);
            ++expected[row.policy];
        }
        for (uint32_t id = 0; id < expected.size(); ++id)
            EXPECT_EQ(counter(id), expected[id]) << "counter " << id;
    }

    ASSERT_EQ(dev.ops().acl.updateLanWanPolicy(kUnit, kWan, 0), 0U);
    for (const auto &row : cases)
        EXPECT_FALSE(run(kWan, row.frame)) << row.what << ": the port became a LAN port";
}

// A match of one field, besides those of `match`.
using Match = LswmAclMatch;
template <class Value, class Word>
Match with(uint32_t flag, Value Match::*field, Word value, Value Match::*fieldMask, Word mask, Match match = {})
{
    match.flags |= flag;
    match.*field = static_cast<Value>(value);
    match.*fieldMask = static_cast<Value>(mask);
    return match;
}

TEST_F(AclFramesTest, EveryMatchFieldMeansWhatItSays)
{
    Match multicast{};
    multicast.flags = LSWM_MATCH_DST_MAC;
    multicast.dstMac[0] = multicast.dstMacMask[0] = 1;
    Match lastByte{};
    lastByte.flags = LSWM_MATCH_SRC_MAC;
    lastByte.srcMac[5] = 0x0A;
    lastByte.srcMacMask[5] = 0xFF;
    Match capwap{};
    capwap.flags = LSWM_MATCH_CAPWAP;
    capwap.capwap[1] = 0x10;
    capwap.capwap[2] = 0x02;
    capwap.capwapMask = 0xFFFF;
    const Match tcp = with(LSWM_MATCH_IP_PROTOCOL, &Match::ipProtocol, 6, &Match::ipProtocolMask, 0xFF);
    const Match arp = with(LSWM_MATCH_ETHER_TYPE, &Match::etherType, 0x0806, &Match::etherTypeMask, 0xFFFF);
    const struct {
        const char *what;
        Match match;
        Texts hits;
        Texts misses;
    } cases[] = {
        {"destination MAC, the multicast bit", multicast, {"arp request"}, {"udp 1>1"}},
        {"source MAC, the last byte", lastByte, {"udp 1>1"}, {"udp 1>1 srcmac=02:00:00:00:00:01"}},
        {"EtherType behind the tags",
         with(LSWM_MATCH_ETHER_TYPE, &Match::etherType, 0x0800, &Match::etherTypeMask, 0xFFFF),
         {"udp 1>1", "tagged 7 0"},
         {"arp request"}},
        {"VLAN with any priority",
         with(LSWM_MATCH_OUTER_VLAN, &Match::outerVlan, 100, &Match::outerVlanMask, 0xFFF),
         {"tagged 100 0", "tagged 100 7"},
         {"tagged 101 0", "udp 1>1"}},
        {"priority in any VLAN",
         with(LSWM_MATCH_OUTER_PRIORITY, &Match::outerPriority, 5, &Match::outerPriorityMask, 7),
         {"tagged 1 5", "tagged 4094 5"},
         {"tagged 1 4", "udp 1>1"}},
        {"source network",
         with(LSWM_MATCH_SRC_IP, &Match::srcIp, 0xC6336400, &Match::srcIpMask, 0xFFFFFF00),
         {"udp 1>1"},
         {"udp 1>1 srcip=192.0.2.1 dstip=198.51.100.7", "arp request"}},
        {"destination address",
         with(LSWM_MATCH_DST_IP, &Match::dstIp, 0xC0000201, &Match::dstIpMask, 0xFFFFFFFF),
         {"udp 1>1", "tcp 1>1"},
         {"udp 1>1 srcip=192.0.2.1 dstip=192.0.2.2"}},
        {"TCP from a port",
         with(LSWM_MATCH_L4_SRC_PORT, &Match::l4SrcPort, 80, &Match::l4SrcPortMask, 0xFFFF, tcp),
         {"tcp 80>40000"},
         {"udp 80>40000", "tcp 40000>80"}},
        {"a port without protocol is a UDP port",
         with(LSWM_MATCH_L4_DST_PORT, &Match::l4DstPort, 53, &Match::l4DstPortMask, 0),
         {"udp 40000>53"},
         {"tcp 40000>53", "udp 53>40000"}},
        {"CAPWAP words behind the UDP header",
         capwap,
         {"udp 40000>5247 data=0010020055"},
         {"udp 40000>5247 data=0010030055", "udp 40000>5247 data=0011020055", "arp request"}},
        {"user-defined word at byte 20: an ARP reply's operation",
         with(LSWM_MATCH_UDF, &Match::udf, 2, &Match::udfMask, 0xFFFF, arp),
         {"arp reply"},
         {"arp request"}},
        {"nothing: every frame", {}, {"udp 1>1", "arp reply", "udp 40000>5247 data=0010020055"}, {}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.what);
        const uint32_t id = add(row.match);
        for (const std::string &frame : row.hits) {
            EXPECT_TRUE(run(kWan, frame));
            EXPECT_FALSE(run(kLan, frame)) << "on a port that the rule does not name";
        }
        for (const std::string &frame : row.misses)
            EXPECT_FALSE(run(kWan, frame));
        EXPECT_EQ(dev.ops().acl.delEntry(kUnit, id), 0U);
        for (const std::string &frame : row.hits)
            EXPECT_FALSE(run(kWan, frame)) << "the rule was deleted";
    }
}

TEST_F(AclFramesTest, SelectorWordsNeedTheirSelectors)
{
    add(with(LSWM_MATCH_UDF, &Match::udf, 2, &Match::udfMask, 0xFFFF));
    EXPECT_TRUE(run(kWan, "arp reply"));
    EXPECT_EQ(l2sw_filter_igrAcl_field_sel_set(kUnit, 15, 1, 12), 0U);
    EXPECT_FALSE(run(kWan, "arp reply")) << "the selector points elsewhere now";
}

TEST_F(AclFramesTest, ALongRuleNeedsAllItsEntriesAndTheLowestRuleWins)
{
    // The protocol stands in the second entry.
    Match match = with(LSWM_MATCH_IP_PROTOCOL, &Match::ipProtocol, 17, &Match::ipProtocolMask, 0xFF);
    match.flags |= LSWM_MATCH_DST_MAC | LSWM_MATCH_SRC_MAC | LSWM_MATCH_ETHER_TYPE | LSWM_MATCH_DST_IP;
    const uint32_t longRule = add(match, 0x30);
    const uint32_t everyFrame = add({}, 0x30);
    ASSERT_EQ(everyFrame, longRule + 2);

    EXPECT_EQ(run(kWan, "udp 1>1"), longRule);
    EXPECT_EQ(run(kWan, "tcp 1>1"), everyFrame);
    EXPECT_EQ(counter(5), 1U);
    EXPECT_EQ(counter(6), 1U);

    EXPECT_EQ(l2sw_filter_igrAcl_cfg_del(kUnit, longRule + 1), 0U);
    EXPECT_EQ(run(kWan, "udp 1>1"), everyFrame) << "half a rule matched";
}

} // namespace
} // namespace zrtest
