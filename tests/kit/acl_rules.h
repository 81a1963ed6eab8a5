// Rules of a known length for the ACL tests: the chip takes eight 16-bit fields to an entry, three for a MAC
// address and two for an IPv4 address.
#pragma once

#include "platform/manager_records.h"

namespace zrtest
{

inline LswmAclRule oneEntryRule(uint32_t partition)
{
    LswmAclRule rule{};
    rule.partition = partition;
    rule.match.flags = LSWM_MATCH_ETHER_TYPE;
    rule.match.etherType = 0x88CC;
    rule.match.etherTypeMask = 0xFFFF;
    rule.match.portBitmap = 0x3;
    rule.action.flags = LSWM_ACTION_FORWARD_A;
    return rule;
}

inline LswmAclRule twoEntryRule(uint32_t partition)
{
    LswmAclRule rule = oneEntryRule(partition);
    rule.match.flags |= LSWM_MATCH_DST_MAC | LSWM_MATCH_SRC_MAC | LSWM_MATCH_DST_IP;
    return rule;
}

inline LswmAclRule threeEntryRule(uint32_t partition)
{
    LswmAclRule rule = twoEntryRule(partition);
    rule.match.flags |= LSWM_MATCH_SRC_IP | LSWM_MATCH_IP_PROTOCOL | LSWM_MATCH_L4_SRC_PORT |
                        LSWM_MATCH_L4_DST_PORT | LSWM_MATCH_UDF | LSWM_MATCH_CAPWAP;
    return rule;
}

} // namespace zrtest
