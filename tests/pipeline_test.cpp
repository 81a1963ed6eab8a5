// Frames through the virtual chips: what no device file can tell (devices/frames.json has the rest).
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <new>
#include <regex>
#include <set>

#include "acl/acl.h"
#include "platform/chip_sdk.h"
#include "port/port.h"
#include "sim/board/clock.h"
#include "sim/pipeline/pipeline.h"
#include "sim/zrsim.h"
#include "tests/kit/device.h"
#include "tests/kit/random.h"

namespace
{
size_t allocations = 0; // of the whole process
} // namespace

void *operator new(size_t size)
{
    ++allocations;
    return std::malloc(size); // NOLINT
}
void operator delete(void *block) noexcept
{
    std::free(block); // NOLINT
}
void operator delete(void *block, size_t) noexcept
{
    std::free(block); // NOLINT
}

namespace zrtest
{
namespace
{

using ::testing::HasSubstr;
using Bytes = std::vector<uint8_t>;

constexpr uint64_t kAll = 0xFFFFFFFFFFFF;
constexpr uint64_t kGroup = 0x01005E000001;
constexpr uint64_t kBpdu = 0x0180C2000000;
constexpr uint64_t kStations = 0x020000000000;
constexpr uint64_t kNobody = kStations + 0xFF;

// A UDP packet between two addresses, with tags (TPID 0x8100) in front.
Bytes frame(uint64_t to, uint64_t from, const std::vector<uint32_t> &tags = {}, size_t size = 60)
{
    Bytes bytes;
    auto put = [&](uint64_t value, int count) {
        while (count-- > 0)
            bytes.push_back(static_cast<uint8_t>(value >> count * 8));
    };
    put(to, 6);
    put(from, 6);
    for (uint32_t control : tags)
        put(0x81000000 | control, 4);
    for (uint64_t quarter : {0x0800450000280000, 0x0000401100000A00, 0x00010A0000020400, 0x0050000000000000})
        put(quarter, 8);
    bytes.resize(size);
    return bytes;
}

// Ports 0 and 1 of every unit in VLAN 10, 2 and 3 in VLAN 20, port 4 tagged in both. Units 0 and 1 are wired by
// their trunk (15 and 16), units 1 and 2 by their ports 4; port 17 leads to the host.
class PipelineTest : public RunningDeviceTest
{
protected:
    void SetUp() override
    {
        RunningDeviceTest::SetUp();
        const zrsim::OperationTables &ops = dev.ops();
        for (uint32_t unit = 0; unit < 3; ++unit) {
            EXPECT_EQ(ops.port.init(unit) | ops.mac.init(unit) | ops.vlan.init(unit) | ops.qos.init(unit) |
                          ops.acl.init(unit) | ops.mc.init(unit) | ops.hsec.init(unit) |
                          ops.port.cpuInit(unit, 17, 1) | ops.vlan.create(unit, 10) | ops.vlan.create(unit, 20),
                      0U);
            for (uint32_t port : {0, 1, 2, 3, 4, 15, 16}) {
                EXPECT_EQ(ops.port.setEnable(unit, port, port <= 4 || unit != 2), 0U);
                if (port > 4)
                    continue;
                dev.chip(unit).ports.plug(port, true);
                for (uint32_t vlan : {10U, 20U})
                    if (port == 4 || vlan == 10 + port / 2 * 10) {
                        EXPECT_EQ(ops.vlan.addMember(unit, port, vlan, port != 4), 0U);
                    }
                EXPECT_EQ(ops.vlan.setPortPvid(unit, port, 10 + port / 2 * 10 % 20), 0U);
                EXPECT_EQ(ops.vlan.setIgrPortFilter(unit, port, 1), 0U);
            }
        }
        for (uint32_t port : {15U, 16U})
            zrsim::board().cables.connect({0, port}, {1, port});
        zrsim::board().cables.connect({1, 4}, {2, 4});
        dev.record(false);
    }

    // Where a frame comes out, in order ("0/1, 2/4 vlan 10 priority 5", "cpu 0/17"), or why it was dropped.
    std::string send(uint32_t unit, uint32_t port, const Bytes &bytes, int flags = ZRSIM_FRAME_EXPLAIN)
    {
        to.clear();
        stages.clear();
        dropped.clear();
        EXPECT_EQ(zrsim_frame(unit, port, bytes.data(), bytes.size(), flags, tell, this), 0);
        if (!to.empty())
            return fmt::format("{}", fmt::join(to, ", "));
        return dropped.empty() ? "nothing" : dropped.back();
    }
    static void tell(const zrsim_frame_event *event, void *context)
    {
        auto &test = *static_cast<PipelineTest *>(context);
        if (event->kind == ZRSIM_FRAME_STAGE)
            test.stages += fmt::format("{} {}\n", event->name, event->text);
        else if (event->kind == ZRSIM_FRAME_DROPPED)
            test.dropped.emplace_back(event->name);
        else
            test.to.insert(fmt::format(
                "{}{}/{}{}", event->kind == ZRSIM_FRAME_CPU ? "cpu " : "", event->unit, event->port,
                event->tagged ? fmt::format(" vlan {} priority {}", event->vlan, event->priority) : ""));
    }
    static std::string dump()
    {
        std::string text(zrsim_dump(nullptr, 0) + 1, '\0');
        zrsim_dump(text.data(), text.size());
        return text;
    }
    LswmMacEntry entry(uint64_t address, uint32_t port, uint8_t type) const
    {
        LswmMacEntry entry{};
        for (int i = 0; i < 6; ++i)
            entry.mac[i] = static_cast<uint8_t>(address >> (40 - 8 * i));
        entry.entryVlan = entry.vlan = 10;
        entry.port = static_cast<uint16_t>(port);
        entry.type = type;
        return entry;
    }
    // Rule for all frames at port 0 of unit 0.
    uint32_t addRule(const LswmAclAction &action)
    {
        LswmAclRule rule{};
        rule.match.portBitmap = 1;
        rule.partition = 1;
        rule.action = action;
        uint32_t id = 0;
        uint32_t first = 0;
        EXPECT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(0, &rule, &id), 0U);
        EXPECT_EQ(dev.ops().acl.logicRuleToChipRule(0, id, &first), 0U);
        return first;
    }

    std::set<std::string> to;
    std::string stages;
    Texts dropped;
};

// Every kind of frame by every configuration: exactly these ports let it out, with exactly this tag.
TEST_F(PipelineTest, WhatMustNotComeOutDoesNot)
{
    using Ports = std::set<std::string>;
    const Ports vlan10{"0/1", "0/4 vlan 10 priority 0", "1/0", "1/1", "2/0", "2/1"};
    const Ports vlan20{"0/2", "0/3", "0/4 vlan 20 priority 0", "1/2", "1/3", "2/2", "2/3"};
    const Ports known{"1/1"};
    const Ports nowhere;
    const struct {
        const char *name;
        Bytes bytes;
        Ports out;
        const char *reason; // of a frame that comes out nowhere
    } kinds[] = {
        {"known", frame(kStations + 2, kStations + 1), known, ""},
        {"unknown", frame(kNobody, kStations + 1), vlan10, ""},
        {"multicast", frame(kGroup, kStations + 1), vlan10, ""},
        {"broadcast", frame(kAll, kStations + 1), vlan10, ""},
        {"reserved", frame(kBpdu, kStations + 1), {"cpu 0/17"}, ""},
        {"own tag", frame(kAll, kStations + 1, {10}), vlan10, ""},
        {"foreign tag", frame(kAll, kStations + 1, {20}), nowhere, "ingress-filter"},
        {"unknown tag", frame(kAll, kStations + 1, {30}), nowhere, "unknown-vlan"},
        {"reserved tag", frame(kAll, kStations + 1, {4095}), nowhere, "unknown-vlan"},
        {"priority tag", frame(kAll, kStations + 1, {0}), vlan10, ""},
        {"double tag", frame(kAll, kStations + 1, {10, 20}), vlan10, ""},
        {"double tag from abroad", frame(kAll, kStations + 1, {20, 10}), nowhere, "ingress-filter"},
        {"oversize", frame(kAll, kStations + 1, {}, 1533), nowhere, "oversize"},
        {"runt", frame(kAll, kStations + 1, {}, 59), nowhere, "runt"},
    };
    const zrsim::OperationTables &ops = dev.ops();
    enum What { kNothing, kNoFilter, kUnplug, kDisable, kLeave, kStp, kPermit };
    auto set = [&](What what, uint32_t unit, uint32_t port, uint32_t value) {
        switch (what) {
        case kUnplug:
            dev.chip(unit).ports.plug(port, value == 0);
            return 0U;
        case kNoFilter:
            return ops.vlan.setIgrPortFilter(unit, port, value == 0);
        case kDisable:
            return ops.port.setEnable(unit, port, value == 0);
        case kLeave:
            return value ? ops.vlan.delMember(unit, port, 10) : ops.vlan.addMember(unit, port, 10, 1);
        case kStp:
            return l2sw_stp_mstpState_set(unit, 0, port, value != 0 ? value - 1 : 3);
        case kPermit:
            return l2sw_port_isolation_set(unit, port, ~value);
        default:
            return 0U;
        }
    };
    const Ports unit1{"1/0", "1/1", "2/0", "2/1", "1/2", "1/3", "2/2", "2/3"};
    const Ports unit2{"2/0", "2/1", "2/2", "2/3"};
    const struct {
        const char *name;
        What what;
        uint32_t unit, port, value;
        Ports without;           // these never come out
        const char *reason = ""; // of every frame that enters the switch
    } configurations[] = {
        {"as it is", kNothing, 0, 0, 0, {}},
        {"no ingress filter", kNoFilter, 0, 0, 1, {}},
        {"1/1 unplugged", kUnplug, 1, 1, 1, {"1/1"}},
        {"1/1 disabled", kDisable, 1, 1, 1, {"1/1"}},
        {"1/1 no member", kLeave, 1, 1, 1, {"1/1"}},
        {"1/1 blocked", kStp, 1, 1, 2, {"1/1"}},
        {"0/0 isolated from 0/1", kPermit, 0, 0, 2, {"0/1"}},
        {"0/0 isolated from unit 1", kPermit, 0, 0, 0x18000, unit1},
        {"unit 2 isolated from its cable", kPermit, 2, 4, 0xFFFFFFFF, unit2},
        {"cable to unit 2 out", kUnplug, 1, 4, 1, unit2},
        {"0/0 disabled by spanning tree", kStp, 0, 0, 1, {}, "spanning-tree"},
        {"0/0 blocked", kStp, 0, 0, 2, {}, "spanning-tree"},
        {"0/0 learns", kStp, 0, 0, 3, {}, "spanning-tree"},
    };
    const LswmMacEntry there[] = {entry(kStations + 2, 15, LSWM_MAC_STATIC),
                                  entry(kStations + 2, 1, LSWM_MAC_STATIC)};
    for (const auto &config : configurations) {
        ASSERT_EQ(set(config.what, config.unit, config.port, config.value), 0U) << config.name;
        for (const auto &kind : kinds) {
            SCOPED_TRACE(fmt::format("{}, {}", kind.name, config.name));
            ASSERT_EQ(ops.mac.delAllMac(0) | ops.mac.delAllMac(1) | ops.mac.delAllMac(2), 0U);
            ASSERT_EQ(ops.mac.addMac(0, &there[0]) | ops.mac.addMac(1, &there[1]), 0U);
            std::string reason = kind.reason;
            Ports expected = kind.out;
            if (config.what == kNoFilter && reason == "ingress-filter")
                expected = vlan20;
            if (config.reason[0] != '\0' && reason.empty() && kind.name != std::string("reserved")) {
                expected.clear();
                reason = config.reason;
            }
            for (const std::string &port : config.without)
                expected.erase(port);
            send(0, 0, kind.bytes);
            EXPECT_EQ(to, expected) << stages;
            ASSERT_FALSE(dropped.empty() && to.empty());
            EXPECT_TRUE(!expected.empty() || reason.empty() || dropped.back() == reason) << dropped.back();
        }
        ASSERT_EQ(set(config.what, config.unit, config.port, 0), 0U) << config.name;
    }
    dev.takeFailures();
}

TEST_F(PipelineTest, ADryFrameLeavesNoTrace)
{
    LswmAclAction action{};
    const LswmCar car{1, 1, 10};
    action.flags = LSWM_ACTION_CAR | LSWM_ACTION_COUNT;
    action.carId = 7;
    ASSERT_EQ(dev.ops().hsec.configCar(0, 7, &car), 0U);
    addRule(action);
    LSWM_MemFree(dev.ops().common.chipCaptureDropReasonEnable(0, 0));
    const std::string before = dump();
    const int dry = ZRSIM_FRAME_EXPLAIN | ZRSIM_FRAME_DRY;
    for (const Bytes &bytes : {frame(kNobody, kStations + 1), frame(kAll, kStations + 2, {20}), Bytes(10)}) {
        send(0, 0, bytes, dry);
        EXPECT_EQ(dump(), before);
    }
    const std::string way = (send(0, 0, frame(kNobody, kStations + 1), dry), stages);
    send(0, 0, frame(kNobody, kStations + 1));
    EXPECT_EQ(stages, way) << "explaining and switching are one";
    EXPECT_NE(dump(), before);
}

TEST_F(PipelineTest, NoFrameUpsetsTheSwitch)
{
    EXPECT_EQ(zrsim_frame(3, 0, nullptr, 0, 0, nullptr, nullptr), 1);
    EXPECT_EQ(zrsim_frame(0, 0, nullptr, 65537, 0, nullptr, nullptr), 1);
    EXPECT_EQ(send(0, 0, {}), "malformed");
    EXPECT_EQ(send(0, 0, Bytes(65536, 0x81)), "oversize");
    for (uint32_t port : {5U, 18U, 32U, 0x1000003U, 0xFFFFFFFFU})
        EXPECT_EQ(send(0, port, frame(kAll, kStations + 1)), "no-port");
    dev.chip(0).ports.frameSize = 3; // up to 10000 bytes
    ZR_RANDOM(random);
    for (uint32_t type = 0; type <= 0xFFFF; ++type) {
        Bytes bytes(60 + random() % 40);
        std::ranges::generate(bytes, [&] { return static_cast<uint8_t>(random()); });
        bytes[0] &= static_cast<uint8_t>(random());
        bytes[12] = static_cast<uint8_t>(type >> 8);
        bytes[13] = static_cast<uint8_t>(type);
        bytes[14] = random() % 2 == 0 ? 0x45 : bytes[14];
        EXPECT_NE(send(random() % 3, random() % 5, bytes, type % 16 == 0 ? ZRSIM_FRAME_EXPLAIN : 0), "nothing");
        bytes.resize(random() % bytes.size());
        EXPECT_NE(send(0, 0, bytes, 0), "nothing");
    }
}

TEST_F(PipelineTest, AFrameCostsNoAllocation)
{
    const Bytes there = frame(kStations + 2, kStations + 1);
    const Bytes back = frame(kStations + 1, kStations + 2);
    const Bytes all = frame(kAll, kStations + 1);
    auto round = [&] {
        for (const auto &[port, bytes] : {std::pair(0U, &there), {1U, &back}, {0U, &all}, {2U, &all}})
            zrsim_frame(0, port, bytes->data(), bytes->size(), 0, nullptr, nullptr);
    };
    round();
    const size_t before = allocations;
    for (int i = 0; i < 100; ++i)
        round();
    EXPECT_EQ(allocations, before);
}

// The document names every reason in the words of the code.
TEST_F(PipelineTest, TheDocumentListsTheReasons)
{
    std::ifstream in(ZRLSW_SOURCE_DIR "/docs/stand-in.md");
    std::map<std::string, std::string> listed;
    const std::regex row(R"(\| `([a-z-]+)` \| ([0-9]+|-) \| (.*) \|)");
    std::smatch found;
    for (std::string line; std::getline(in, line);)
        if (std::regex_match(line, found, row))
            listed[found[1]] = fmt::format("{}, {}", found[2].str(), found[3].str());
    std::map<std::string, std::string> known;
    for (const zrsim::ReasonInfo &reason : zrsim::kReasons)
        if (reason.name[0] != '\0')
            known[reason.name] = fmt::format(
                "{}, {}", reason.captureBit == zrsim::kNotCaptured ? "-" : std::to_string(reason.captureBit),
                reason.text);
    EXPECT_EQ(listed, known);
}

} // namespace
} // namespace zrtest
