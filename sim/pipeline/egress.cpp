// Which of the destinations a frame may leave by: the permit map of the ingress port, VLAN membership, spanning
// tree, one port of a trunk, link. Given: permit maps; a mode of trunking and a mask of seven hash inputs. The
// model's own choice: trunk mode 0 takes the lowest member that has a link, any other mode hashes; input bit 0
// is the ingress port, 1 and 2 the source and destination MAC address, 3 and 4 those of IPv4, 5 and 6 the ports
// of TCP and UDP in packets that are not fragments; a known unicast address needs egress membership as a flood
// does; the drop is told by the last filter that left nothing; a frame whose one destination has no link counts
// in that port's odrop.
#include <bit>

#include "sim/pipeline/passage.h"

namespace zrsim
{
namespace
{

// Equal for all frames of a flow.
uint32_t flowHash(const Passage &passage, uint32_t inputs)
{
    const Frame &frame = passage.frame;
    uint32_t hash = 2166136261U; // FNV-1a
    auto mix = [&](uint32_t input, size_t offset, size_t count) {
        if ((inputs >> input & 1U) != 0 && offset + count <= frame.bytes().size())
            for (uint8_t byte : frame.bytes().subspan(offset, count))
                hash = (hash ^ byte) * 16777619U;
    };
    if ((inputs & 1U) != 0)
        hash = (hash ^ passage.port) * 16777619U;
    mix(1, 6, 6);
    mix(2, 0, 6);
    if (const size_t ip = frame.ipv4(); ip != 0) {
        mix(3, ip + 12, 4);
        mix(4, ip + 16, 4);
        const bool fragment = (*frame.wordAt(ip + 6) & 0x3FFFU) != 0;
        if (!fragment && (frame.protocol() == 6 || frame.protocol() == 17)) {
            mix(5, frame.ipv4Payload(), 2);
            mix(6, frame.ipv4Payload() + 2, 2);
        }
    }
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

// Of every trunk among the destinations one port, and one that has a link where there is any.
void chooseTrunkMembers(Passage &passage)
{
    Chip &chip = passage.chip;
    for (uint32_t group = 0; group < TrunkGroups::kGroups; ++group) {
        const uint32_t members = passage.egress & chip.trunk.ports(group);
        if (std::popcount(members) < 2)
            continue;
        const uint32_t up = keepPorts(members, [&](uint32_t port) { return chip.ports.macLink(port).up; });
        uint32_t chosen = up != 0 ? up : members;
        if (chip.trunk.mode() != 0) {
            uint32_t skip = flowHash(passage, chip.trunk.distribution(group)) %
                            static_cast<uint32_t>(std::popcount(chosen));
            for (; skip != 0; --skip)
                chosen &= chosen - 1;
        }
        passage.egress = (passage.egress & ~members) | (chosen & -chosen);
        passage.say("egress", "trunk {}: port {} of {} by {}", group, std::countr_zero(chosen),
                    PortList{members}, chip.trunk.mode() != 0 ? "the flow's hash" : "the trunk mode");
    }
}

} // namespace

bool filterEgress(Passage &passage)
{
    Chip &chip = passage.chip;
    const uint32_t members = chip.vlan.entry(passage.vlan).memberMask;
    const bool mayLeave =
        filter(passage, Reason::Isolated, "isolated from the ingress port",
               [&](uint32_t port) { return chip.isolation.permits(passage.port, port); }) &&
        filter(passage, Reason::NoMember, "no member of the VLAN",
               [&](uint32_t port) { return (members >> port & 1U) != 0; }) &&
        filter(passage, Reason::EgressSpanningTree, "does not forward in the VLAN's instance",
               [&](uint32_t port) { return chip.stp.state(passage.vlan, port) == StpStates::kForwarding; });
    if (!mayLeave)
        return false;
    chooseTrunkMembers(passage);
    const uint32_t chosen = passage.egress;
    if (filter(passage, Reason::EgressLinkDown, "disabled or without link",
               [&](uint32_t port) { return chip.ports.macLink(port).up; }))
        return true;
    if (!passage.flooded)
        for (uint32_t rest = chosen; rest != 0; rest &= rest - 1)
            chip.counters.drop(static_cast<uint32_t>(std::countr_zero(rest)), 1);
    return false;
}

} // namespace zrsim
