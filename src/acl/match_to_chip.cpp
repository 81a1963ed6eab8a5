// Match fields, manager to chip.
#include "acl/acl.h"

#include "base/memory.h"
#include "base/print.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

// A field node until it is chained: the chain's afterwards, freed with this owner otherwise.
class FieldNode
{
public:
    explicit FieldNode(uint32_t type)
        : field_(static_cast<FilterField *>(zr::allocCleared(sizeof(FilterField))))
    {
        if (field_ != nullptr)
            field_->type = type;
    }
    ~FieldNode()
    {
        if (field_ != nullptr)
            LSWM_MemFree(field_);
    }
    FieldNode(const FieldNode &) = delete;
    FieldNode &operator=(const FieldNode &) = delete;

    explicit operator bool() const { return field_ != nullptr; }
    FilterField *operator->() const { return field_; }
    FilterField &operator*() const { return *field_; }

    // The SDK's status; 0 gives the node away.
    uint32_t chain(uint32_t unit, FilterCfg *cfg)
    {
        const uint32_t ret = l2sw_filter_igrAcl_field_add(unit, cfg, field_);
        if (ret == 0)
            field_ = nullptr;
        return ret;
    }

private:
    FilterField *field_;
};

constexpr uint32_t kProtocolTcp = 6; // IANA protocol number
constexpr uint32_t kWholePort = 0xFFFF;
constexpr uint8_t kLayer3Ipv4 = 0;

void setMac(FilterField &field, const uint8_t *mac, const uint8_t *mask)
{
    memcpy_s(field.data.mac.address, sizeof(field.data.mac.address), mac, sizeof(field.data.mac.address));
    memcpy_s(field.data.mac.mask, sizeof(field.data.mac.mask), mask, sizeof(field.data.mac.mask));
}

} // namespace

uint32_t HAL_ACL_ConvertDMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask, FilterCfg *cfg)
{
    FieldNode node(SDK_FIELD_DST_MAC);
    if (!node)
        return LSW_NO_MEMORY;
    setMac(*node, mac, mask);
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertDMac acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertSMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask, FilterCfg *cfg)
{
    FieldNode node(SDK_FIELD_SRC_MAC);
    if (!node)
        return LSW_NO_MEMORY;
    setMac(*node, mac, mask);
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertSMac acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertEthTypeZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    FieldNode node(SDK_FIELD_ETHER_TYPE);
    if (!node)
        return LSW_NO_MEMORY;
    node->data.word = {value, mask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertEthType acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertOuterVlanAndPriZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg)
{
    const bool byVlan = (match->flags & LSWM_MATCH_OUTER_VLAN) != 0;
    const bool byPriority = (match->flags & LSWM_MATCH_OUTER_PRIORITY) != 0;
    if (!byVlan && !byPriority)
        return LSW_OK;

    FieldNode node(SDK_FIELD_OUTER_TAG);
    if (!node)
        return LSW_NO_MEMORY;
    if (byPriority)
        node->data.tag.priority = {match->outerPriority, match->outerPriorityMask};
    if (byVlan)
        node->data.tag.vlan = {match->outerVlan, match->outerVlanMask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertOuterVlanAndPri acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertUdfDataZr(uint32_t unit, uint32_t fieldType, uint32_t value, uint32_t mask,
                                  FilterCfg *cfg)
{
    FieldNode node(fieldType);
    if (!node)
        return LSW_NO_MEMORY;
    node->data.word = {value, mask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertUdfData acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertCapWapZr(uint32_t unit, uint32_t fieldType, const uint8_t *capwap, uint32_t mask,
                                 FilterCfg *cfg)
{
    FieldNode node(fieldType);
    if (!node)
        return LSW_NO_MEMORY;
    const uint8_t *word = fieldType == SDK_FIELD_SELECTOR_3 ? capwap : capwap + 2;
    node->data.word = {static_cast<uint32_t>(word[0] << 8 | word[1]), mask & 0xFFFF};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertCapWap acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertSrcIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    FieldNode node(SDK_FIELD_SRC_IP);
    if (!node)
        return LSW_NO_MEMORY;
    node->data.ip.address = {value, mask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertSip acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertDstIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    FieldNode node(SDK_FIELD_DST_IP);
    if (!node)
        return LSW_NO_MEMORY;
    node->data.ip.address = {value, mask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertDstIp acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertIpProtocolZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    FieldNode node(SDK_FIELD_IP_PROTOCOL);
    if (!node)
        return LSW_NO_MEMORY;
    node->data.word = {value, mask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertIpProtocol acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertSrcPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    FieldNode node(tcp != 0 ? SDK_FIELD_TCP_SRC_PORT : SDK_FIELD_UDP_SRC_PORT);
    if (!node)
        return LSW_NO_MEMORY;
    node->data.word = {value, mask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertSrcPort acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertDstPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t, FilterCfg *cfg)
{
    FieldNode node(tcp != 0 ? SDK_FIELD_TCP_DST_PORT : SDK_FIELD_UDP_DST_PORT);
    if (!node)
        return LSW_NO_MEMORY;
    node->data.word = {value, kWholePort};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertDstPort acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertL2InfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg)
{
    const uint32_t flags = match->flags;
    uint32_t total = 0;
    if ((flags & LSWM_MATCH_DST_MAC) != 0)
        total += HAL_ACL_ConvertDMacZr(unit, match->dstMac, match->dstMacMask, cfg);
    if ((flags & LSWM_MATCH_SRC_MAC) != 0)
        total += HAL_ACL_ConvertSMacZr(unit, match->srcMac, match->srcMacMask, cfg);
    if ((flags & LSWM_MATCH_ETHER_TYPE) != 0)
        total += HAL_ACL_ConvertEthTypeZr(unit, match->etherType, match->etherTypeMask, cfg);
    if ((flags & LSWM_MATCH_UDF) != 0)
        total += HAL_ACL_ConvertUdfDataZr(unit, SDK_FIELD_SELECTOR_15, match->udf, match->udfMask, cfg);
    total += HAL_ACL_ConvertOuterVlanAndPriZr(unit, match, cfg);
    if ((flags & LSWM_MATCH_CAPWAP) != 0) {
        total += HAL_ACL_ConvertCapWapZr(unit, SDK_FIELD_SELECTOR_3, match->capwap, match->capwapMask, cfg);
        total += HAL_ACL_ConvertCapWapZr(unit, SDK_FIELD_SELECTOR_4, match->capwap, match->capwapMask, cfg);
    }
    return total;
}

uint32_t HAL_ACL_ConvertIpv4InfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg)
{
    const uint32_t flags = match->flags;
    const bool byProtocol = (flags & LSWM_MATCH_IP_PROTOCOL) != 0;
    uint32_t total = 0;
    if ((flags & LSWM_MATCH_DST_IP) != 0)
        total += HAL_ACL_ConvertDstIpZr(unit, match->dstIp, match->dstIpMask, cfg);
    if ((flags & LSWM_MATCH_SRC_IP) != 0)
        total += HAL_ACL_ConvertSrcIpZr(unit, match->srcIp, match->srcIpMask, cfg);
    if (byProtocol)
        total += HAL_ACL_ConvertIpProtocolZr(unit, match->ipProtocol, match->ipProtocolMask, cfg);

    const uint32_t tcp = byProtocol && match->ipProtocol == kProtocolTcp ? 1 : 0;
    if ((flags & LSWM_MATCH_L4_SRC_PORT) != 0)
        total += HAL_ACL_ConvertSrcPortZr(unit, tcp, match->l4SrcPort, match->l4SrcPortMask, cfg);
    if ((flags & LSWM_MATCH_L4_DST_PORT) != 0)
        total += HAL_ACL_ConvertDstPortZr(unit, tcp, match->l4DstPort, match->l4DstPortMask, cfg);
    return total;
}

uint32_t HAL_ACL_EmptyMatchHandle(uint32_t unit, FilterCfg *cfg)
{
    if (cfg->head != nullptr)
        return LSW_OK;
    static constexpr uint8_t kAnyMac[6] = {};
    return HAL_ACL_ConvertDMacZr(unit, kAnyMac, kAnyMac, cfg);
}

uint32_t HAL_ACL_ConvertRuleInfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg)
{
    if (uint32_t total = HAL_ACL_ConvertL2InfoZr(unit, match, cfg); total != 0)
        return total;
    if (match->l3Type == kLayer3Ipv4) {
        if (uint32_t total = HAL_ACL_ConvertIpv4InfoZr(unit, match, cfg); total != 0)
            return total;
    }
    cfg->portBitmap = match->portBitmap & ZR_ACL_CHIP_PORTS;
    cfg->portMask = ZR_ACL_CHIP_PORTS;
    return HAL_ACL_EmptyMatchHandle(unit, cfg);
}
