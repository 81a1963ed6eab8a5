// Frames of a packet library through the virtual chip's ingress ACL: the default policies and hand-set rules
// catch what they name and nothing else.
#include <gmock/gmock.h>
#include <tins/tins.h>
#include <unistd.h>

#include <cstring>
#include <fstream>

#include "platform/chip_sdk.h"
#include "sim/board/command.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using ::testing::HasSubstr;
using Bytes = std::vector<uint8_t>;

constexpr uint32_t kUnit = 1;
constexpr uint32_t kWan = 3;
constexpr uint32_t kLan = 2;
const Tins::HWAddress<6> kHost("02:00:00:00:00:0a");
const Tins::HWAddress<6> kGateway("02:00:00:00:00:01");
const Tins::HWAddress<6> kBroadcast("ff:ff:ff:ff:ff:ff");

template <class Pdu> Bytes bytes(Pdu pdu)
{
    return pdu.serialize();
}

Tins::EthernetII ethernet()
{
    return {kGateway, kHost};
}

Tins::IP ip()
{
    return {"192.0.2.1", "198.51.100.7"}; // destination, source
}

Bytes udp(uint16_t dport, uint16_t sport, const Bytes &payload = Bytes(32))
{
    return bytes(ethernet() / ip() / Tins::UDP(dport, sport) / Tins::RawPDU(payload));
}

Bytes tcp(uint16_t dport, uint16_t sport)
{
    return bytes(ethernet() / ip() / Tins::TCP(dport, sport));
}

Bytes arp(Tins::ARP::Flags operation)
{
    Tins::ARP body("192.0.2.1", "192.0.2.9", kGateway, kHost);
    body.opcode(operation);
    return bytes(Tins::EthernetII(kBroadcast, kHost) / body);
}

Bytes dhcp(uint16_t dport, uint16_t sport, Tins::DHCP::Flags type)
{
    Tins::DHCP body;
    body.type(type);
    body.chaddr(kHost);
    body.end();
    return bytes(Tins::EthernetII(kBroadcast, kHost) / Tins::IP("255.255.255.255", "0.0.0.0") /
                 Tins::UDP(dport, sport) / body);
}

Bytes tagged(uint16_t vlan, uint8_t priority, Tins::EthernetII outer)
{
    Tins::Dot1Q tag(vlan);
    tag.priority(priority);
    return bytes(std::move(outer) / tag / ip() / Tins::UDP(123, 123) / Tins::RawPDU(Bytes(48)));
}

Bytes fragment(uint16_t eighths, Tins::IP packet = ip())
{
    packet.fragment_offset(eighths);
    packet.flags(Tins::IP::MORE_FRAGMENTS);
    packet.protocol(17);
    return bytes(ethernet() / packet / Tins::RawPDU(bytes(Tins::UDP(67, 68) / Tins::RawPDU(Bytes(32)))));
}

class AclFramesTest : public RunningDeviceTest
{
protected:
    std::optional<zrsim::AclHit> run(uint32_t port, const Bytes &frame)
    {
        return dev.chip(kUnit).acl.run(port, frame);
    }
    uint32_t counter(uint32_t id)
    {
        uint32_t count = 0;
        EXPECT_EQ(l2sw_stat_logging_counter_get(kUnit, id, &count), 0U);
        return count;
    }
    // Programs a rule for port kWan through the table and answers its first entry.
    uint32_t add(const LswmAclMatch &match, uint32_t flags = 0x20)
    {
        LswmAclRule rule{};
        rule.match = match;
        rule.match.portBitmap = 1U << kWan;
        rule.partition = 1;
        rule.action.flags = flags;
        AclEntryPlace place{};
        uint32_t logicId = 0;
        EXPECT_EQ(dev.ops().acl.addEntry(kUnit, &rule, &place), 0U);
        EXPECT_EQ(dev.ops().acl.allocLogicRuleId(kUnit, 1, &logicId), 0U);
        EXPECT_EQ(dev.ops().acl.setRuleMapEntry(kUnit, logicId, place.firstChipId, place.count), 0U);
        return place.firstChipId;
    }
};

TEST_F(AclFramesTest, DefaultPoliciesCatchTheirProtocolOnWanPortsAndCountIt)
{
    ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
    constexpr uint32_t kNone = 99;
    const struct {
        const char *what;
        uint32_t policy;
        Bytes frame;
    } cases[] = {
        {"ARP request", 0, arp(Tins::ARP::REQUEST)},
        {"ARP reply", 0, arp(Tins::ARP::REPLY)},
        {"NTP answer", 1, udp(40000, 123, Bytes(48))},
        {"NTP between servers", 1, udp(123, 123, Bytes(48))},
        {"NTP in a VLAN", 1, tagged(100, 5, ethernet())},
        {"DHCP discover", 2, dhcp(67, 68, Tins::DHCP::DISCOVER)},
        {"DHCP request", 2, dhcp(67, 68, Tins::DHCP::REQUEST)},
        {"first fragment of a DHCP request", 2, fragment(0)},
        {"DHCP offer", 3, dhcp(68, 67, Tins::DHCP::OFFER)},
        {"DHCP acknowledgement", 3, dhcp(68, 67, Tins::DHCP::ACK)},
        {"CoAP request", 4, udp(5683, 40000)},
        {"CoAP answer from the well-known port to another", kNone, udp(40000, 5683)},
        {"NTP request of a client", kNone, udp(123, 40000, Bytes(48))},
        {"later fragment whose data looks like a DHCP request", kNone, fragment(64)},
        {"another UDP port", kNone, udp(69, 68)},
        {"TCP to the DHCP server's port", kNone, tcp(67, 68)},
        {"TCP from the NTP port", kNone, tcp(40000, 123)},
        {"TCP to the CoAP port", kNone, tcp(5683, 40000)},
        {"ping", kNone, bytes(ethernet() / ip() / Tins::ICMP())},
        {"IPv6 to the DHCP server's port", kNone,
         bytes(ethernet() / Tins::IPv6("2001:db8::1", "2001:db8::2") / Tins::UDP(67, 68))},
        {"spanning tree", kNone, bytes(Tins::Dot3(kBroadcast, kHost) / Tins::LLC() / Tins::STP())},
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
            EXPECT_EQ(hit->entry, row.policy);
            ++expected[row.policy];
        }
        for (uint32_t id = 0; id < expected.size(); ++id)
            EXPECT_EQ(counter(id), expected[id]) << "counter " << id;
    }

    ASSERT_EQ(dev.ops().acl.updateLanWanPolicy(kUnit, kWan, 0), 0U);
    for (const auto &row : cases)
        EXPECT_FALSE(run(kWan, row.frame)) << row.what << ": the port became a LAN port";
}

TEST_F(AclFramesTest, EveryMatchFieldMeansWhatItSays)
{
    ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
    const Bytes keepAlive = udp(5247, 40000, {0x00, 0x10, 0x02, 0x00, 0x55});
    const struct {
        const char *what;
        std::function<void(LswmAclMatch &)> set;
        std::vector<Bytes> hits;
        std::vector<Bytes> misses;
    } cases[] = {
        {"destination MAC, the multicast bit",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_DST_MAC;
             m.dstMac[0] = m.dstMacMask[0] = 1;
         },
         {arp(Tins::ARP::REQUEST)},
         {udp(1, 1)}},
        {"source MAC, the last byte",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_SRC_MAC;
             m.srcMac[5] = 0x0A;
             m.srcMacMask[5] = 0xFF;
         },
         {udp(1, 1)},
         {bytes(Tins::EthernetII(kGateway, kGateway) / ip())}},
        {"EtherType behind the tags",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_ETHER_TYPE;
             m.etherType = 0x0800;
             m.etherTypeMask = 0xFFFF;
         },
         {udp(1, 1), tagged(7, 0, ethernet())},
         {arp(Tins::ARP::REQUEST)}},
        {"VLAN with any priority",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_OUTER_VLAN;
             m.outerVlan = 100;
             m.outerVlanMask = 0xFFF;
         },
         {tagged(100, 0, ethernet()), tagged(100, 7, ethernet())},
         {tagged(101, 0, ethernet()), udp(1, 1)}},
        {"priority in any VLAN",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_OUTER_PRIORITY;
             m.outerPriority = 5;
             m.outerPriorityMask = 7;
         },
         {tagged(1, 5, ethernet()), tagged(4094, 5, ethernet())},
         {tagged(1, 4, ethernet()), udp(1, 1)}},
        {"source network",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_SRC_IP;
             m.srcIp = 0xC6336400;
             m.srcIpMask = 0xFFFFFF00;
         },
         {udp(1, 1)},
         {bytes(ethernet() / Tins::IP("198.51.100.7", "192.0.2.1") / Tins::UDP(1, 1)),
          arp(Tins::ARP::REQUEST)}},
        {"destination address",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_DST_IP;
             m.dstIp = 0xC0000201;
             m.dstIpMask = 0xFFFFFFFF;
         },
         {udp(1, 1), tcp(1, 1)},
         {bytes(ethernet() / Tins::IP("192.0.2.2", "192.0.2.1") / Tins::UDP(1, 1))}},
        {"TCP from a port",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_IP_PROTOCOL | LSWM_MATCH_L4_SRC_PORT;
             m.ipProtocol = 6;
             m.ipProtocolMask = 0xFF;
             m.l4SrcPort = 80;
             m.l4SrcPortMask = 0xFFFF;
         },
         {tcp(40000, 80)},
         {udp(40000, 80), tcp(80, 40000)}},
        {"a port without protocol is a UDP port",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_L4_DST_PORT;
             m.l4DstPort = 53;
         },
         {udp(53, 40000)},
         {tcp(53, 40000), udp(40000, 53)}},
        {"CAPWAP words behind the UDP header",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_CAPWAP;
             const uint8_t words[4] = {0x00, 0x10, 0x02, 0x00};
             std::memcpy(m.capwap, words, sizeof words);
             m.capwapMask = 0xFFFF;
         },
         {keepAlive},
         {udp(5247, 40000, {0x00, 0x10, 0x03, 0x00, 0x55}), udp(5247, 40000, {0x00, 0x11, 0x02, 0x00, 0x55}),
          arp(Tins::ARP::REQUEST)}},
        {"user-defined word at byte 20: an ARP reply's operation",
         [](LswmAclMatch &m) {
             m.flags = LSWM_MATCH_UDF | LSWM_MATCH_ETHER_TYPE;
             m.etherType = 0x0806;
             m.etherTypeMask = 0xFFFF;
             m.udf = 2;
             m.udfMask = 0xFFFF;
         },
         {arp(Tins::ARP::REPLY)},
         {arp(Tins::ARP::REQUEST)}},
        {"nothing: every frame", [](LswmAclMatch &) {}, {udp(1, 1), arp(Tins::ARP::REPLY), keepAlive}, {}},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.what);
        LswmAclMatch match{};
        row.set(match);
        const uint32_t id = add(match);
        for (const Bytes &frame : row.hits) {
            EXPECT_TRUE(run(kWan, frame));
            EXPECT_FALSE(run(kLan, frame)) << "on a port that the rule does not name";
        }
        for (const Bytes &frame : row.misses)
            EXPECT_FALSE(run(kWan, frame));
        EXPECT_EQ(dev.ops().acl.delEntry(kUnit, id), 0U);
        for (const Bytes &frame : row.hits)
            EXPECT_FALSE(run(kWan, frame)) << "the rule was deleted";
    }
}

TEST_F(AclFramesTest, SelectorWordsNeedTheirSelectors)
{
    LswmAclMatch match{};
    match.flags = LSWM_MATCH_UDF;
    match.udf = 2;
    match.udfMask = 0xFFFF;
    ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
    add(match);
    EXPECT_TRUE(run(kWan, arp(Tins::ARP::REPLY)));
    EXPECT_EQ(l2sw_filter_igrAcl_field_sel_set(kUnit, 15, 1, 12), 0U);
    EXPECT_FALSE(run(kWan, arp(Tins::ARP::REPLY))) << "the selector points elsewhere now";
}

TEST_F(AclFramesTest, ALongRuleNeedsAllItsEntriesAndTheLowestRuleWins)
{
    ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
    LswmAclMatch match{};
    match.flags = LSWM_MATCH_DST_MAC | LSWM_MATCH_SRC_MAC | LSWM_MATCH_ETHER_TYPE | LSWM_MATCH_DST_IP |
                  LSWM_MATCH_IP_PROTOCOL;
    match.ipProtocol = 17; // stands in the second entry
    match.ipProtocolMask = 0xFF;
    const uint32_t longRule = add(match, 0x30);
    const uint32_t everyFrame = add({}, 0x30);
    ASSERT_EQ(everyFrame, longRule + 2);

    EXPECT_EQ(run(kWan, udp(1, 1))->entry, longRule);
    EXPECT_EQ(run(kWan, tcp(1, 1))->entry, everyFrame);
    EXPECT_EQ(counter(5), 1U);
    EXPECT_EQ(counter(6), 1U);

    EXPECT_EQ(l2sw_filter_igrAcl_cfg_del(kUnit, longRule + 1), 0U);
    EXPECT_EQ(run(kWan, udp(1, 1))->entry, everyFrame) << "half a rule matched";
}

TEST_F(AclFramesTest, AMeterJudgesTheFramesOfItsRules)
{
    ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
    LswmAclRule rule{};
    rule.match.portBitmap = 1U << kWan;
    rule.action.flags = 0x40;
    rule.action.carId = 9;
    AclEntryPlace place{};
    ASSERT_EQ(dev.ops().acl.addEntry(kUnit, &rule, &place), 0U);

    std::vector<std::pair<uint32_t, size_t>> asked;
    const auto police = dev.chip(kUnit).acl.policeWith([&](uint32_t meter, size_t length) {
        asked.emplace_back(meter, length);
        return asked.size() == 1;
    });
    const Bytes frame = udp(1, 1, Bytes(100));
    EXPECT_TRUE(run(kWan, frame)->conforms);
    EXPECT_FALSE(run(kWan, frame)->conforms);
    EXPECT_EQ(asked, (decltype(asked)(2, {9, 142})));
    dev.chip(kUnit).acl.policeWith(police);
}

class MatchCommandTest : public AclFramesTest
{
protected:
    void SetUp() override
    {
        AclFramesTest::SetUp();
        ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
        ASSERT_EQ(dev.ops().acl.updateLanWanPolicy(kUnit, kWan, 1), 0U);
        path = ::testing::TempDir() + "/zr_frames_" + std::to_string(getpid()) + ".pcap";
        Tins::PacketWriter writer(path, Tins::DataLinkType<Tins::EthernetII>());
        for (const Bytes &frame :
             {arp(Tins::ARP::REQUEST), dhcp(67, 68, Tins::DHCP::DISCOVER), tcp(80, 40000)}) {
            Tins::EthernetII parsed(frame.data(), static_cast<uint32_t>(frame.size()));
            writer.write(parsed);
        }
    }
    void TearDown() override
    {
        std::remove(path.c_str());
        AclFramesTest::TearDown();
    }
    std::string command(const std::string &line, bool understood = true)
    {
        bool ok = false;
        const std::string answer = zrsim::runBoardLine(kUnit, line, ok);
        EXPECT_EQ(ok, understood) << answer;
        return answer;
    }
    static std::string hex(const Bytes &frame, const char *separator)
    {
        std::string text;
        for (uint8_t byte : frame) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02X", byte);
            text += (text.empty() ? "" : separator) + std::string(digits);
        }
        return text;
    }
    // The file's bytes, changed and written back.
    void rewrite(const std::function<void(std::string &)> &change)
    {
        std::ifstream in(path, std::ios::binary);
        std::string content{std::istreambuf_iterator<char>(in), {}};
        in.close();
        change(content);
        std::ofstream(path, std::ios::binary) << content;
    }

    std::string path;
};

TEST_F(MatchCommandTest, TakesAFrameInHexadecimal)
{
    const Bytes frame = udp(5683, 40000, Bytes(18));
    EXPECT_EQ(command("match 3 " + hex(frame, "")),
              "port 3, 60 bytes: entry 4, switch 14, switch 16 value 3, counter 4 = 1\n");
    EXPECT_EQ(command("match 3 " + hex(frame, ":")),
              "port 3, 60 bytes: entry 4, switch 14, switch 16 value 3, counter 4 = 2\n");
    EXPECT_EQ(command("match 2 " + hex(frame, " ")), "port 2, 60 bytes: no rule\n");
}

TEST_F(MatchCommandTest, TakesACaptureOfEitherByteOrder)
{
    const std::string answer = command("match 3 " + path);
    EXPECT_THAT(answer, HasSubstr(": entry 0, switch 14, switch 16 value 3, counter 0 = 1\n"));
    EXPECT_THAT(answer, HasSubstr(": entry 2, switch 14, switch 16 value 4, counter 2 = 1\n"));
    EXPECT_THAT(answer, HasSubstr(": no rule\n"));
    EXPECT_EQ(std::count(answer.begin(), answer.end(), '\n'), 3);

    rewrite([](std::string &content) {
        const auto swap = [&](size_t offset, size_t size) {
            std::reverse(content.begin() + static_cast<long>(offset),
                         content.begin() + static_cast<long>(offset + size));
        };
        swap(0, 4);
        swap(20, 4);
        for (size_t at = 24; at + 16 <= content.size();) {
            uint32_t length = 0;
            std::memcpy(&length, &content[at + 8], sizeof length);
            swap(at + 8, 4);
            at += 16 + length;
        }
    });
    EXPECT_THAT(command("match 3 " + path), HasSubstr("counter 2 = 2\n"));
}

TEST_F(MatchCommandTest, RefusesWhatIsNoFrame)
{
    EXPECT_THAT(command("match 3", false), HasSubstr("usage: match PORT FRAME|FILE"));
    EXPECT_THAT(command("match 32 " + path, false), HasSubstr("0 to 31"));
    EXPECT_THAT(command("match 3 0102", false), HasSubstr("at least 14 bytes"));
    EXPECT_THAT(command("match 3 /no/such/file", false), HasSubstr("cannot be read"));
    EXPECT_THAT(command("match 3 abc", false), HasSubstr("cannot be read")) << "an odd number of digits";

    rewrite([](std::string &content) { content.pop_back(); });
    EXPECT_THAT(command("match 3 " + path, false), HasSubstr("in the middle of frame 2"));
    rewrite([](std::string &content) { content[20] = 101; });
    EXPECT_THAT(command("match 3 " + path, false), HasSubstr("not a capture of Ethernet frames"));
    rewrite([](std::string &content) { content = "frames"; });
    EXPECT_THAT(command("match 3 " + path, false), HasSubstr("neither a pcap capture"));
    for (uint32_t id = 0; id < 32; ++id)
        EXPECT_EQ(counter(id), 0U) << "a refused file moved a counter";
}

} // namespace
} // namespace zrtest
