// Frames at the bench: what is built of words, what is read and written, what is told.
#include "kit/zrbench.h"

namespace
{

using namespace zrtest;
using testing::HasSubstr;

// Port 0 and 1 of unit 1 in VLAN 10.
const std::string kSwitch =
    R"({"do": "unit set 1", "info": {"portSets": {"valid": "0-1"}, "ports": {"0-1": {"flags": 2}}}}, "chip init 1", "mac init 1", "vlan init 1", "vlan create 1 10",
    {"do": "port enable 1 $p on", "each": {"p": "0-1"}}, {"do": "link 1 $p up", "each": {"p": "0-1"}},
    {"do": "vlan add 1 10 $p untagged", "each": {"p": "0-1"}}, {"do": "vlan set-pvid 1 $p 10", "each": {"p": "0-1"}},)";

class ZrbenchFrameTest : public ZrbenchTest
{
protected:
    void SetUp() override
    {
        ZrbenchTest::SetUp();
        if (lacksPackets(shell("frame send 1 0 len=64\n")))
            GTEST_SKIP() << "built without the packet library";
    }
};

// What comes out of a port that leaves tags as they came.
TEST_F(ZrbenchFrameTest, WordsBecomeTheirBytes)
{
    const struct {
        const char *words;
        std::string bytes; // from the start
        size_t size;       // without FCS
    } cases[] = {
        {"dst=02:00:00:00:00:02", "02000000000202000000010088b50000", 60},
        {"dstMac=02:00:00:00:00:02 srcMac=02:00:00:00:00:0a etherType=0x88cc payload=0207 len=100",
         "02000000000202000000000a88cc020700", 96},
        {"vlan=10 priority=5 innerVlan=20", "ffffffffffff0200000001008100a00a8100001488b5", 60},
        {"vlan=10 arp=request srcIp=192.0.2.9 dstIp=192.0.2.1",
         "ffffffffffff0200000001008100000a08060001080006040001020000000100c0000209000000000000c0000201", 60},
        {"srcIp=198.51.100.7 dstIp=192.0.2.1 ttl=128 dscp=46 ipProto=udp l4Src=123 l4Dst=40000",
         "ffffffffffff020000000100080045b8001c0001000080114ddcc6336407c0000201007b9c400008", 60},
        {"srcIp=198.51.100.7 dstIp=192.0.2.1 ipProto=tcp l4Dst=23 len=200",
         "ffffffffffff0200000001000800450000b6", 196},
        {"srcIp=2001:db8::7 ipProto=icmpv6 dscp=8",
         "ffffffffffff02000000010086dd6200000000083a4020010db8000000000000000000000007", 62},
    };
    for (const auto &row : cases) {
        const Ended ended = steps(kSwitch + fmt::format(R"("vlan tag-mode 1 1 1", "frame capture 1 1 out.pcap",
                                           "frame send 1 0 {}")",
                                                        row.words));
        EXPECT_EQ(ended.status, kAsExpected) << ended.output;
        std::string hex;
        for (const char c :
             contents("out.pcap").substr(24 + 16)) // behind the header of the file and of the record
            hex += fmt::format("{:02x}", static_cast<unsigned char>(c));
        EXPECT_EQ(hex.size(), 2 * row.size) << row.words;
        EXPECT_EQ(hex.substr(0, row.bytes.size()), row.bytes) << row.words;
    }
}

TEST_F(ZrbenchFrameTest, WrongWordsAreNamed)
{
    const struct {
        const char *words;
        const char *named;
    } cases[] = {
        {"vlan", "expected hexadecimal digits or NAME=VALUE with one of dst, src"},
        {"vlans=10", "found \"vlans=10\""},
        {"vlan=4096", "vlan: expected a number up to 4095"},
        {"dst=02:00:00:00:00", "dst: expected an address such as"},
        {"vlan=1 vlan=1", "vlan is given twice"},
        {"srcIp=192.0.2.256", "srcIp: expected an address such as 192.0.2.1"},
        {"srcIp=192.0.2.1 dstIp=2001:db8::1", "srcIp: expected an IPv6 address"},
        {"ipProto=icmp l4Dst=7", "l4Dst does not go with IP protocol 1"},
        {"arp=request l4Dst=7", "l4Dst does not go with arp"},
        {"innerVlan=7", "an inner tag needs an outer one"},
        {"len=41 ipProto=udp", "len: expected at least the 46 bytes of headers, payload and FCS"},
        {"len=65537", "len: expected a number up to 65536"},
        {"payload=0", "expected whole bytes"},
        {"fcs=wrong", "fcs: expected good or bad"},
    };
    for (const auto &row : cases) {
        const Ended ended = shell(fmt::format("frame send 1 0 {}\n", row.words));
        EXPECT_EQ(ended.status, kUsage) << row.words;
        EXPECT_THAT(ended.output, HasSubstr(row.named)) << row.words;
    }
}

TEST_F(ZrbenchFrameTest, AWayIsToldToItsEnd)
{
    const Ended ended = steps(kSwitch + R"(
        {"do": "frame explain 1 0 dst=02:00:00:00:00:02", "out": {"to": "1/1 untagged"}, "shows": ["unknown unicast"]},
        {"do": "mac capacity 1", "out": {"used": 0}}, {"do": "port stats 1 0", "shows": ["every counter is 0"]},
        "frame send 1 0 dst=02:00:00:00:00:02", {"do": "mac capacity 1", "out": {"used": 1}},
        {"do": "frame send 1 0 fcs=bad", "out": {"to": "-", "dropped": "bad-fcs"}},
        {"do": "frame send 1 9 len=64", "out": {"to": "-", "dropped": "no-port"}},
        {"do": "frame send 1 0 00", "out": {"to": "-", "dropped": "malformed"}},
        {"do": "time advance 5m", "out": {"ms": 300000, "aged": 1}}, {"do": "time show", "out": {"ms": 300000}})");
    EXPECT_EQ(ended.status, kAsExpected) << ended.output;
    for (const char *piece : {"02:00:00:00:01:00 to 02:00:00:00:00:02, type 0x88b5, 64 bytes with FCS",
                              "comes out at 1/1 untagged", "1/0  dropped   bad-fcs: "})
        EXPECT_THAT(ended.output, HasSubstr(piece));
}

TEST_F(ZrbenchFrameTest, CapturesArePlayedAndWritten)
{
    // What pcapng has before its packets: a section, an interface of Ethernet.
    const std::string section(
        "\x0A\x0D\x0D\x0A\x1C\0\0\0\x4D\x3C\x2B\x1A\1\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x1C\0\0\0", 28);
    const std::string interface("\1\0\0\0\x14\0\0\0\1\0\0\0\0\0\0\0\x14\0\0\0", 20);
    const std::string frame = std::string("\2\0\0\0\0\2\2\0\0\0\0\1", 12) + std::string(48, '\0');
    const std::string packet =
        std::string("\3\0\0\0\x4C\0\0\0\x3C\0\0\0", 12) + frame + std::string("\x4C\0\0\0", 4);
    file("ng.pcap", section + interface + packet + packet);
    file("text.pcap", "no capture");
    file("loop.pcap", contents(ZRLSW_SOURCE_DIR "/tests/packets/packets.pcap").replace(20, 1, "\x6C"));
    const Ended played = steps(kSwitch + R"("frame capture 1 0,1 all.pcap",
        {"do": "frame play 1 0 ng.pcap 2", "out": {"frames": 2, "to": "1/1 2"}}, {"do": "time show", "out": {"ms": 500}},
        {"do": "frame play 1 1 all.pcap", "out": {"frames": 2, "to": "1/0 2"}})");
    EXPECT_EQ(played.status, kAsExpected) << played.output;
    for (auto [step, named] : {std::pair("frame play 1 0 none.pcap", "No such file"),
                               {"frame play 1 0 text.pcap", "cannot read"},
                               {"frame play 1 0 loop.pcap", "not a capture of Ethernet frames"},
                               {"frame capture 1 0 none/x.pcap", "cannot write"},
                               {"frame capture 1 0 device.json", "device.json would be written over"}}) {
        const Ended ended = steps(fmt::format("\"{}\"", step));
        EXPECT_EQ(ended.status, kUsage) << step;
        EXPECT_THAT(ended.output, HasSubstr(named)) << step;
    }
}

} // namespace
