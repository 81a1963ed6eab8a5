// Reserved multicast addresses (IEEE 802.1Q table 8-1) and LLDP. Given: an action for each address type and the
// switch of LLDP trapping. The model's own choice: what the actions do, and which addresses the types are
// (sim/chip/rma.h); a trapped frame passes no further stage.
#include "sim/pipeline/passage.h"

namespace zrsim
{

bool checkReserved(Passage &passage)
{
    const MacAddress &mac = passage.frame.destination();
    const Rma::Decision decided = passage.chip.rma.decide(mac, passage.frame.etherType());
    if (!decided.reserved)
        return true;
    const char *by = decided.lldp ? "the LLDP trap" : "the action of its type";
    switch (decided.action) {
    case Rma::kDrop:
        return passage.drop(Reason::Reserved, "reserved", "type {}: dropped by {}", mac[5], by);
    case Rma::kToHost:
        passage.say("reserved", "type {}: to the CPU by {}", mac[5], by);
        return passage.trap();
    default:
        passage.say("reserved", "type {}: switched by {}", mac[5], by);
        return true;
    }
}

} // namespace zrsim
