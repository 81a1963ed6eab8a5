// Where a frame is to go (IEEE 802.1Q clause 8.8): to the port of its address, or to the VLAN's members; never
// back to the port or trunk that it came from. Given: the address table and the VLAN table; the SDK has no
// static multicast entries, so a group address is flooded. The model's own choice: a redirect of an ACL rule
// replaces the lookup, but not the rules of what may leave a port; an address at a port of a trunk is at the
// trunk.
#include "sim/pipeline/passage.h"

namespace zrsim
{

bool findDestination(Passage &passage)
{
    Chip &chip = passage.chip;
    const Frame &frame = passage.frame;
    const uint32_t members = chip.vlan.entry(passage.vlan).memberMask & Ports::kLogicalPorts;
    const uint32_t own = chip.trunk.portsWith(passage.port);

    if (passage.redirect) {
        passage.egress = *passage.redirect & Ports::kLogicalPorts & ~own;
        passage.say("forward", "to the redirected ports {}", PortList{passage.egress});
        return passage.egress != 0 || passage.drop(Reason::SamePort, "forward", "no other port to go to");
    }
    const MacEntry *entry = frame.toGroup() ? nullptr : chip.mac.lookup(frame.destination(), passage.vlan);
    if (entry != nullptr) {
        const uint32_t index = chip.mac.indexOf(*entry);
        if (entry->dstBlock)
            return passage.drop(Reason::DestinationBlocked, "forward",
                                "entry {} blocks the destination address", index);
        passage.egress = chip.trunk.portsWith(entry->port);
        passage.say("forward", "entry {}: {} address at port {}", index, entry->isStatic ? "static" : "learned",
                    entry->port);
        if ((passage.egress & own) != 0)
            return passage.drop(Reason::SamePort, "forward", "that is where it came from");
        return true;
    }
    passage.flooded = true;
    passage.egress = members & ~own;
    passage.say("forward", "{}: flooded to the members of VLAN {}: {}",
                !frame.toGroup() ? "unknown unicast"
                : frame.toAll()  ? "broadcast"
                                 : "multicast",
                passage.vlan, PortList{passage.egress});
    return passage.egress != 0 ||
           passage.drop(Reason::NoMember, "forward", "VLAN {} has no other member", passage.vlan);
}

} // namespace zrsim
