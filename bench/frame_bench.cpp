// Frames through one unit of the stand-in: 64-byte known unicast from port to port, with 96 ACL entries in
// place that look at the ingress port and do not match, by what else is on or full.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "acl/acl.h"
#include "sim/zrsim.h"
#include "tests/kit/device.h"

namespace
{

constexpr uint32_t kUnit = 0;
constexpr uint32_t kVlan = 10;
constexpr uint32_t kVlans = 4096;

std::vector<uint8_t> frame(uint8_t to, uint8_t from)
{
    std::vector<uint8_t> bytes(60);
    bytes[0] = bytes[6] = 2;
    bytes[5] = to;
    bytes[11] = from;
    bytes[12] = 8;    // IPv4
    bytes[14] = 0x45; // UDP
    bytes[23] = 17;
    return bytes;
}

void count(const zrsim_frame_event *event, void *out)
{
    *static_cast<uint64_t *>(out) += event->kind == ZRSIM_FRAME_OUT;
}

uint64_t send(uint32_t port, const std::vector<uint8_t> &bytes, int flags = 0)
{
    uint64_t out = 0;
    zrsim_frame(kUnit, port, bytes.data(), bytes.size(), flags, count, &out);
    return out;
}

// Entries 0 to 95: rules of one entry, of which each takes a UDP port that the frame has not.
void fillAcl()
{
    LswmAclMatch match{};
    match.flags = LSWM_MATCH_L4_DST_PORT;
    match.l4DstPortMask = 0xFFFF;
    match.portBitmap = 1;
    LswmAclAction action{};
    action.flags = LSWM_ACTION_FORWARD_B;
    uint32_t count = 0;
    for (uint32_t id = 0; id < zrsim::AclTable::kEntries; ++id) {
        match.l4DstPort = static_cast<uint16_t>(1000 + id);
        ZR_OP(HAL_ACL_AddEntryZr)(kUnit, id, &match, &action, &count);
    }
}

// A device whose ports 0 and 1 know each other's station.
class Unit : public zrtest::Device
{
public:
    Unit(bool manyVlans, bool manyAddresses)
    {
        bringUp();
        record(false);
        const zrsim::OperationTables &to = ops();
        to.port.init(kUnit);
        to.mac.init(kUnit);
        to.vlan.init(kUnit);
        to.qos.init(kUnit);
        to.acl.init(kUnit);
        for (uint32_t vlan = manyVlans ? 1 : kVlan; vlan < (manyVlans ? kVlans : kVlan + 1); ++vlan)
            to.vlan.create(kUnit, vlan);
        for (uint32_t port : {0U, 1U}) {
            to.port.setEnable(kUnit, port, 1);
            chip(kUnit).ports.plug(port, true);
            to.vlan.addMember(kUnit, port, kVlan, 1);
            to.vlan.setPortPvid(kUnit, port, kVlan);
        }
        fillAcl();
        send(0, frame(2, 1));
        send(1, frame(1, 2));
        for (uint32_t i = 0; manyAddresses && chip(kUnit).mac.used() < zrsim::MacTable::kEntries; ++i)
            chip(kUnit).mac.learn({4, 0, 0, 0, static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)}, kVlan,
                                  1);
        takeFailures();
    }
};

enum Set { kPlain = 0, kExplain = 1, kVlansFull = 2, kAddressesFull = 4 };

void knownUnicast(benchmark::State &state)
{
    const auto what = static_cast<int>(state.range(0));
    const Unit unit((what & kVlansFull) != 0, (what & kAddressesFull) != 0);
    const std::vector<uint8_t> bytes = frame(2, 1);
    const int flags = (what & kExplain) != 0 ? ZRSIM_FRAME_EXPLAIN : 0;
    for (uint32_t id = 0; id < zrsim::AclTable::kEntries; ++id)
        if (zrsim::board().chip(kUnit).acl.entry(id).parts != 1 ||
            zrsim::board().chip(kUnit).acl.entry(id).ports != 1)
            return state.SkipWithError("the ACL is not full");
    if (send(0, bytes) != 1)
        return state.SkipWithError("the frame does not come out at one port");
    for (auto _ : state)
        benchmark::DoNotOptimize(send(0, bytes, flags));
    state.SetItemsProcessed(state.iterations());
    state.SetLabel(std::string((what & kExplain) != 0 ? "explained" : "not explained") +
                   ((what & kVlansFull) != 0 ? ", 4096 VLANs" : "") +
                   ((what & kAddressesFull) != 0 ? ", full address table" : ""));
}
BENCHMARK(knownUnicast)
    ->Arg(kPlain)
    ->Arg(kVlansFull)
    ->Arg(kAddressesFull)
    ->Arg(kVlansFull | kAddressesFull)
    ->Arg(kExplain);

} // namespace

BENCHMARK_MAIN();
