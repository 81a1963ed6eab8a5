// Which of the destinations a frame may leave by: one port of a trunk, the permit map of the ingress port, VLAN
// membership, spanning tree, link. Given: permit maps and the trunk's hash inputs. The model's own choice: the
// hash is over the addresses, and over IPv4 addresses and ports where there are any; a known unicast address
// needs egress membership as a flood does; the drop is told by the last filter that left nothing.
#include <bit>

#include "sim/pipeline/passage.h"

namespace zrsim
{
namespace
{

// Equal for all frames of a flow.
uint32_t flowHash(const Frame &frame)
{
    uint32_t hash = 2166136261U; // FNV-1a
    auto mix = [&](size_t offset, size_t count) {
        for (uint8_t byte : frame.bytes().subspan(offset, count))
            hash = (hash ^ byte) * 16777619U;
    };
    mix(0, 12);
    if (frame.ipv4() != 0)
        mix(frame.ipv4() + 12, 8);
    const size_t ports = frame.ipv4Payload();
    if (ports != 0 && ports + 4 <= frame.bytes().size())
        mix(ports, 4);
    return hash ^ hash >> 16;
}

template <class Keep> uint32_t keepPorts(uint32_t ports, Keep keep)
{
    uint32_t kept = 0;
    for (uint32_t rest = ports; rest != 0; rest &= rest - 1) {
        const auto port = static_cast<uint32_t>(std::countr_zero(rest));
        kept |= keep(port) ? rest & -rest : 0;
    }
    return kept;
}

// Leaves the ports that `keep` accepts; false when there are none.
template <class Keep> bool filter(Passage &passage, Reason reason, const char *what, Keep keep)
{
    const uint32_t kept = keepPorts(passage.egress, keep);
    const uint32_t lost = passage.egress & ~kept;
    passage.egress = kept;
    if (kept == 0)
        return passage.drop(reason, "egress", "{}: {}", what, PortList{lost});
    if (lost != 0)
        passage.say("egress", "{}: not {}", what, PortList{lost});
    return true;
}

// Of every trunk among the destinations one port that has a link.
void chooseTrunkMembers(Passage &passage)
{
    Chip &chip = passage.chip;
    for (uint32_t group = 0; group < TrunkGroups::kGroups; ++group) {
        const uint32_t members = chip.trunk.ports(group);
        if ((passage.egress & members) == 0)
            continue;
        const uint32_t up = keepPorts(members, [&](uint32_t port) { return chip.ports.macLink(port).up; });
        passage.egress &= ~members;
        if (up == 0) {
            passage.egress |= members & -members;
            continue;
        }
        uint32_t chosen = up;
        for (uint32_t skip = flowHash(passage.frame) % static_cast<uint32_t>(std::popcount(up)); skip != 0;
             --skip)
            chosen &= chosen - 1;
        passage.egress |= chosen & -chosen;
        passage.say("egress", "trunk {}: port {} of {} by the flow's hash", group, std::countr_zero(chosen),
                    PortList{up});
    }
}

} // namespace

bool filterEgress(Passage &passage)
{
    Chip &chip = passage.chip;
    const uint32_t members = chip.vlan.entry(passage.vlan).memberMask;
    if (!filter(passage, Reason::NoMember, "no member of the VLAN",
                [&](uint32_t port) { return (members >> port & 1U) != 0; }))
        return false;
    chooseTrunkMembers(passage);
    return filter(passage, Reason::Isolated, "isolated from the ingress port",
                  [&](uint32_t port) { return chip.isolation.permits(passage.port, port); }) &&
           filter(
               passage, Reason::EgressSpanningTree, "does not forward in the VLAN's instance",
               [&](uint32_t port) { return chip.stp.state(passage.vlan, port) == StpStates::kForwarding; }) &&
           filter(passage, Reason::EgressLinkDown, "disabled or without link",
                  [&](uint32_t port) { return chip.ports.macLink(port).up; });
}

} // namespace zrsim
