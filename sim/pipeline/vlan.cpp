// Which VLAN a frame belongs to, and whether its port may bring it there (IEEE 802.1Q clause 6.9). Given: PVID,
// priority and ingress filter of a port; VID 0 takes the PVID, VID 4095 is reserved. The model's own choice:
// only TPID 0x8100 is a VLAN tag; a VLAN exists when its entry of the VLAN table is not all zeros; the tag mode
// of a port rules what leaves it, not what comes in.
#include "sim/pipeline/passage.h"

namespace zrsim
{

constexpr uint32_t kReservedVid = 0xFFF;

bool classifyVlan(Passage &passage)
{
    const VlanPort &port = *passage.chip.vlan.port(passage.port);
    const Frame &frame = passage.frame;
    if (!frame.tagged()) {
        passage.vlan = port.pvid;
        passage.dot1p = port.priority;
        passage.say("vlan", "untagged: PVID {}, priority {} of port {}", port.pvid, port.priority,
                    passage.port);
    } else {
        passage.dot1p = frame.dot1p();
        passage.vlan = frame.vid() != 0 ? frame.vid() : port.pvid;
        if (frame.vid() == 0)
            passage.say("vlan", "priority tag: PVID {} of port {}, priority {}", port.pvid, passage.port,
                        passage.dot1p);
        else
            passage.say("vlan", "tag: VLAN {}, priority {}", passage.vlan, passage.dot1p);
    }
    if (passage.vlan == kReservedVid || !passage.chip.vlan.exists(passage.vlan))
        return passage.drop(Reason::UnknownVlan, "vlan", "VLAN {} does not exist", passage.vlan);
    return true;
}

bool filterIngress(Passage &passage)
{
    const uint32_t members = passage.chip.vlan.entry(passage.vlan).memberMask;
    const bool member = (members >> passage.port & 1U) != 0;
    if (member) {
        passage.say("ingress", "port {} is a member of VLAN {}", passage.port, passage.vlan);
        return true;
    }
    if (passage.chip.vlan.port(passage.port)->ingressFilter != 0)
        return passage.drop(Reason::IngressFilter, "ingress", "port {} is no member of VLAN {} and filters",
                            passage.port, passage.vlan);
    passage.say("ingress", "port {} is no member of VLAN {} but does not filter", passage.port, passage.vlan);
    return true;
}

} // namespace zrsim
