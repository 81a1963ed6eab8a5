// Conversion of ACL rules beside code written for the one rule, with the same calls of the platform.
#include <cstring>

#include "acl/acl.h"
#include "base/field_chain.h"
#include "bench/pair.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;

FilterField *newField(uint32_t type)
{
    auto *field = static_cast<FilterField *>(LSWM_MemAlloc(sizeof(FilterField)));
    memset_s(field, sizeof *field, 0, sizeof *field);
    field->type = type;
    return field;
}

void addWord(FilterCfg &cfg, uint32_t type, uint32_t value, uint32_t mask)
{
    FilterField *field = newField(type);
    field->data.word = {value, mask};
    l2sw_filter_igrAcl_field_add(1, &cfg, field);
}

void addIp(FilterCfg &cfg, uint32_t type, uint32_t value, uint32_t mask)
{
    FilterField *field = newField(type);
    field->data.ip.address = {value, mask};
    l2sw_filter_igrAcl_field_add(1, &cfg, field);
}

void addMac(FilterCfg &cfg, uint32_t type, const uint8_t *mac, const uint8_t *mask)
{
    FilterField *field = newField(type);
    memcpy_s(field->data.mac.address, 6, mac, 6);
    memcpy_s(field->data.mac.mask, 6, mask, 6);
    l2sw_filter_igrAcl_field_add(1, &cfg, field);
}

// The rule of a DHCP policy.
LswmAclMatch dhcpMatch()
{
    LswmAclMatch match{};
    match.flags = LSWM_MATCH_IP_PROTOCOL | LSWM_MATCH_L4_DST_PORT;
    match.ipProtocol = 17;
    match.ipProtocolMask = 0xFF;
    match.l4DstPort = 67;
    return match;
}

// Every field: twelve nodes.
LswmAclMatch fullMatch()
{
    LswmAclMatch match = dhcpMatch();
    match.flags = 0x6060E02F;
    return match;
}

const LswmAclMatch kDhcp = dhcpMatch();
const LswmAclMatch kFull = fullMatch();

void convert(const LswmAclMatch &match)
{
    FilterCfg cfg{};
    const zr::FieldChain chain(cfg);
    benchmark::DoNotOptimize(HAL_ACL_ConvertRuleInfoZr(opaque(1U), opaque(&match), &cfg));
}

const bool registered =
    pair(
        "acl convert 2 fields", [] { convert(kDhcp); },
        [] {
            const LswmAclMatch &match = *opaque(&kDhcp);
            FilterCfg cfg{};
            const zr::FieldChain chain(cfg);
            addWord(cfg, SDK_FIELD_IP_PROTOCOL, match.ipProtocol, match.ipProtocolMask);
            addWord(cfg, SDK_FIELD_UDP_DST_PORT, match.l4DstPort, 0xFFFF);
            cfg.portBitmap = match.portBitmap & 0x3801F;
            cfg.portMask = 0x3801F;
        }) &&
    pair(
        "acl convert 12 fields", [] { convert(kFull); },
        [] {
            const LswmAclMatch &match = *opaque(&kFull);
            FilterCfg cfg{};
            const zr::FieldChain chain(cfg);
            addMac(cfg, SDK_FIELD_DST_MAC, match.dstMac, match.dstMacMask);
            addMac(cfg, SDK_FIELD_SRC_MAC, match.srcMac, match.srcMacMask);
            addWord(cfg, SDK_FIELD_ETHER_TYPE, match.etherType, match.etherTypeMask);
            addWord(cfg, SDK_FIELD_SELECTOR_15, match.udf, match.udfMask);
            FilterField *tag = newField(SDK_FIELD_OUTER_TAG);
            tag->data.tag.priority = {match.outerPriority, match.outerPriorityMask};
            tag->data.tag.vlan = {match.outerVlan, match.outerVlanMask};
            l2sw_filter_igrAcl_field_add(1, &cfg, tag);
            const uint8_t *words = match.capwap;
            addWord(cfg, SDK_FIELD_SELECTOR_3, static_cast<uint32_t>(words[0] << 8 | words[1]),
                    match.capwapMask & 0xFFFF);
            addWord(cfg, SDK_FIELD_SELECTOR_4, static_cast<uint32_t>(words[2] << 8 | words[3]),
                    match.capwapMask & 0xFFFF);
            addIp(cfg, SDK_FIELD_DST_IP, match.dstIp, match.dstIpMask);
            addIp(cfg, SDK_FIELD_SRC_IP, match.srcIp, match.srcIpMask);
            addWord(cfg, SDK_FIELD_IP_PROTOCOL, match.ipProtocol, match.ipProtocolMask);
            addWord(cfg, SDK_FIELD_UDP_SRC_PORT, match.l4SrcPort, match.l4SrcPortMask);
            addWord(cfg, SDK_FIELD_UDP_DST_PORT, match.l4DstPort, 0xFFFF);
            cfg.portBitmap = match.portBitmap & 0x3801F;
            cfg.portMask = 0x3801F;
        });

} // namespace
