// Default policies of LAN and WAN ports.
#include "acl/acl.h"

#include "base/port_set.h"
#include "platform/manager.h"
#include "records/acl_records.h"

namespace
{

// Logic rule ids of a unit's default policies, in installation order.
struct AclLanWanPolicy {
    uint32_t ruleIds[ZR_ACL_RULES];
    uint32_t ruleNum;
};
AclLanWanPolicy g_AclLanWanPolicy[LSWM_UNITS];

// What sets one default policy apart from the others. Values are in the processor's byte order; a field that
// its flags do not name stays 0.
struct Policy {
    uint32_t matchFlags;
    uint16_t etherType;
    uint16_t udpSrcPort;
    uint16_t udpDstPort;
    uint8_t actionValue;
};

constexpr uint32_t kFromUdpPort = LSWM_MATCH_IP_PROTOCOL | LSWM_MATCH_L4_SRC_PORT;
constexpr uint32_t kToUdpPort = LSWM_MATCH_IP_PROTOCOL | LSWM_MATCH_L4_DST_PORT;

enum { kArp, kNtp, kDhcpRequest, kDhcpReply, kCoap };
constexpr Policy kPolicies[] = {
    {LSWM_MATCH_ETHER_TYPE, 0x0806, 0, 0, 3}, // ARP
    {kFromUdpPort, 0, 123, 0, 5},             // NTP from servers
    {kToUdpPort, 0, 0, 67, 4},                // DHCP to servers
    {kToUdpPort, 0, 0, 68, 4},                // DHCP to clients
    {kToUdpPort, 0, 0, 5683, 3},              // CoAP
};

constexpr uint8_t kProtocolUdp = 17; // IANA protocol number
constexpr uint32_t kPolicyAction = LSWM_ACTION_FORWARD_C | LSWM_ACTION_COUNT | LSWM_ACTION_VALUE_A;

LswmAclRule ruleOf(const Policy &policy)
{
    LswmAclRule rule{};
    LswmAclMatch &match = rule.match;
    match.flags = policy.matchFlags;
    if ((policy.matchFlags & LSWM_MATCH_ETHER_TYPE) != 0) {
        match.etherType = policy.etherType;
        match.etherTypeMask = 0xFFFF;
    }
    if ((policy.matchFlags & LSWM_MATCH_IP_PROTOCOL) != 0) {
        match.ipProtocol = kProtocolUdp;
        match.ipProtocolMask = 0xFF;
    }
    if ((policy.matchFlags & LSWM_MATCH_L4_SRC_PORT) != 0) {
        match.l4SrcPort = policy.udpSrcPort;
        match.l4SrcPortMask = 0xFFFF;
    }
    if ((policy.matchFlags & LSWM_MATCH_L4_DST_PORT) != 0) {
        match.l4DstPort = policy.udpDstPort;
        match.l4DstPortMask = 0xFFFF;
    }
    rule.action.flags = kPolicyAction;
    rule.action.value = policy.actionValue;
    return rule;
}

// Installs a policy and lists it; once the list is full, a policy is installed but its ports are not updated.
uint32_t install(uint32_t unit, const Policy &policy)
{
    LswmAclRule rule = ruleOf(policy);
    uint32_t logicRuleId = 0;
    if (ZR_ACL_AddLogicEntry(unit, &rule, &logicRuleId) != LSW_OK)
        return LSW_CHIP_FAILED;
    AclLanWanPolicy &list = g_AclLanWanPolicy[unit];
    if (list.ruleNum < ZR_ACL_RULES)
        list.ruleIds[list.ruleNum++] = logicRuleId;
    return LSW_OK;
}

// Adds the port to, or removes it from, every listed policy.
uint32_t updatePolicies(uint32_t (*change)(uint32_t unit, uint32_t firstChipId, const uint32_t *ports),
                        uint32_t unit, uint32_t port)
{
    if (unit >= LSWM_UNITS || port >= LSWM_PORTS)
        return LSW_INVALID_ARGUMENT;
    LswmPortSet ports{};
    ports.word[port / 32] = zr::portBit(port);

    const AclLanWanPolicy &list = g_AclLanWanPolicy[unit];
    for (uint32_t i = 0; i < list.ruleNum; ++i) {
        uint32_t firstChipId = 0;
        if (COM_ACL_LogicRuleToChipRule(unit, list.ruleIds[i], &firstChipId) != LSW_OK)
            return LSW_CHIP_FAILED;
        if (change(unit, firstChipId, ports.word) != LSW_OK)
            return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

} // namespace

uint32_t ZR_ACL_InitLanWanDefualtPolicy(uint32_t unit)
{
    for (const Policy &policy : kPolicies)
        if (install(unit, policy) != LSW_OK)
            return LSW_CHIP_FAILED;
    return LSW_OK;
}

uint32_t ZR_ACL_InitLanWanARPPolicy(uint32_t unit)
{
    return install(unit, kPolicies[kArp]);
}

uint32_t ZR_ACL_InitLanWanNtpPolicy(uint32_t unit)
{
    return install(unit, kPolicies[kNtp]);
}

uint32_t ZR_ACL_InitLanWanDhcpReqPolicy(uint32_t unit)
{
    return install(unit, kPolicies[kDhcpRequest]);
}

uint32_t ZR_ACL_InitLanWanDhcpRepPolicy(uint32_t unit)
{
    return install(unit, kPolicies[kDhcpReply]);
}

uint32_t ZR_ACL_InitLanWanCoapPolicy(uint32_t unit)
{
    return install(unit, kPolicies[kCoap]);
}

uint32_t ZR_ACL_UpdateLANWanPolicy(uint32_t unit, uint32_t port, uint32_t portType)
{
    constexpr uint32_t kFacesWan = 1;
    return portType == kFacesWan ? ZR_ACL_UpdateWanDefaultPolicy(unit, port)
                                 : ZR_ACL_UpdateLANDefaultPolicy(unit, port);
}

uint32_t ZR_ACL_UpdateWanDefaultPolicy(uint32_t unit, uint32_t port)
{
    return updatePolicies(ZR_ACL_AddEntryPortmap, unit, port);
}

uint32_t ZR_ACL_UpdateLANDefaultPolicy(uint32_t unit, uint32_t port)
{
    return updatePolicies(ZR_ACL_RemoveEntryPortmap, unit, port);
}
