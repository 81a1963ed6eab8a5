// The state of the ingress port in the instance of the VLAN (IEEE 802.1Q clause 8.4). Given: four states, one
// for each port and instance; a port that learns but does not forward learns the address before the frame ends.
// The model's own choice: reserved addresses are handled before, so a blocked port still receives BPDUs.
#include "sim/pipeline/passage.h"

namespace zrsim
{

bool checkSpanningTree(Passage &passage)
{
    const StpStates &stp = passage.chip.stp;
    const StpStates::State state = stp.state(passage.vlan, passage.port);
    const uint32_t instance = stp.instanceOf(passage.vlan);
    if (state == StpStates::kForwarding) {
        passage.say("stp", "port {} forwards in instance {}", passage.port, instance);
        return true;
    }
    if (state == StpStates::kLearning)
        learnSource(passage);
    return passage.drop(Reason::SpanningTree, "stp", "port {} is {} in instance {}", passage.port,
                        StpStates::name(state), instance);
}

} // namespace zrsim
