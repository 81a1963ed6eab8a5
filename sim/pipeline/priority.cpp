// The internal priority and the queue. Given: selection tables and maps, and a switch for the DSCP of untagged
// frames. The model's own choice: how the selection weighs its sources (sim/chip/qos.h). The tag of a frame
// that leaves carries the priority that it came with, or the port's, or the ACL rule's; the internal one
// chooses the queue only.
#include "sim/pipeline/passage.h"

namespace zrsim
{

bool choosePriority(Passage &passage)
{
    Qos::Sources sources;
    sources.port = passage.chip.vlan.port(passage.port)->priority;
    if (passage.frame.tagged())
        sources.dot1p = passage.dot1p;
    sources.acl = passage.aclPriority;
    if (passage.frame.tagged() || passage.chip.vlan.untagDscpPriority())
        sources.dscp = passage.frame.dscp();
    const Qos::Verdict verdict = passage.chip.qos.classify(passage.port, sources);
    passage.queue = verdict.queue;
    passage.say("priority", "{} by {}: queue {}", verdict.priority, verdict.source, verdict.queue);
    return true;
}

} // namespace zrsim
