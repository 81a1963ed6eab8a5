// The ingress ACL: the lowest rule that matches counts, is metered and acts. Given: which words of an action
// the library sets. The model's own choice is what they do:
//   word 10 drops, 11 permits, 14 permits with the action value as priority, 9 traps to the CPU port, 12
//   redirects to the ports of its map; 16, 18 and 19 keep the value and change nothing; of several the first
//   in the order 10, 9, 12, 14, 11 decides; a frame over its meter's rate is dropped whatever the action.
#include "sim/pipeline/acl_words.h"
#include "sim/pipeline/passage.h"

namespace zrsim
{

bool applyAcl(Passage &passage)
{
    Chip &chip = passage.chip;
    const uint32_t id = AclWords(passage.frame, chip.acl).match(passage.port);
    if (id == AclTable::kEntries) {
        passage.say("acl", "no rule matches");
        return true;
    }
    const FilterAct &act = chip.acl.entry(id).action;
    if (act.counterEnable != 0) {
        const uint32_t hits = chip.acl.hit(act.counterId);
        passage.say("acl", "entry {} matches: counter {} = {}", id, act.counterId, hits);
    } else {
        passage.say("acl", "entry {} matches", id);
    }
    if (act.carEnable != 0) {
        if (!chip.meters.admit(act.carId, passage.frame.wireSize()))
            return passage.drop(Reason::Policed, "acl", "entry {}: red, over the rate of meter {}", id,
                                act.carId);
        passage.say("acl", "entry {}: green, within the rate of meter {}", id, act.carId);
    }
    if (act.switch10 != 0)
        return passage.drop(Reason::Acl, "acl", "entry {} drops", id);
    if (act.switch9 != 0) {
        passage.say("acl", "entry {} traps to the CPU", id);
        return passage.trap();
    }
    if (act.redirectEnable != 0) {
        passage.redirect = act.redirectPorts;
        passage.say("acl", "entry {} redirects to port map {:#x}", id, act.redirectPorts);
    } else if (act.switch14 != 0) {
        passage.aclPriority = act.value & 7U;
        passage.say("acl", "entry {} permits with priority {}", id, *passage.aclPriority);
    } else if (act.switch11 != 0) {
        passage.say("acl", "entry {} permits", id);
    }
    return true;
}

} // namespace zrsim
