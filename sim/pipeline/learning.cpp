// The source address: learned, moved, refused, or blocked (IEEE 802.1Q clause 8.7). Given: a learning limit per
// port, which is its learn switch too (0: learns nothing), and addresses that the host made static or blocking.
// The model's own choice: what sim/chip/mac_table.h says; a frame whose source is not learned goes on; a trunk
// learns at its lowest port.
#include "sim/pipeline/passage.h"

namespace zrsim
{

bool learnSource(Passage &passage)
{
    Chip &chip = passage.chip;
    const MacAddress &mac = passage.frame.source();
    const MacEntry *known = chip.mac.lookup(mac, passage.vlan);
    if (known != nullptr && known->srcBlock)
        return passage.drop(Reason::SourceBlocked, "learn", "entry {} blocks the source address",
                            chip.mac.indexOf(*known));
    const uint32_t port = chip.trunk.logicalPort(passage.port);
    const uint32_t before = known != nullptr ? known->port : port;
    const char *refusal = chip.mac.learn(mac, passage.vlan, port);
    if (!passage.told)
        return true;
    if (refusal != nullptr)
        passage.say("learn", "not learned: {}", refusal);
    else if (const uint32_t index = chip.mac.indexOf(*chip.mac.lookup(mac, passage.vlan)); before != port)
        passage.say("learn", "entry {}: source moved from port {} to {}", index, before, port);
    else
        passage.say("learn", "entry {}: source {} at port {}", index, known != nullptr ? "known" : "learned",
                    port);
    return true;
}

} // namespace zrsim
