// Match fields, manager to chip: match_from_chip.cpp is the inverse.
#include "acl/acl.h"

#include "base/memory.h"
#include "base/print.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

constexpr uint32_t kProtocolTcp = 6; // IANA protocol number
constexpr uint32_t kWholePort = 0xFFFF;
constexpr uint8_t kLayer3Ipv4 = 0;

// A field node until it is chained: the chain's afterwards, freed with this owner otherwise.
class FieldNode
{
public:
    FieldNode() = default;
    ~FieldNode()
    {
        if (field_ != nullptr)
            LSWM_MemFree(field_);
    }
    FieldNode(const FieldNode &) = delete;
    FieldNode &operator=(const FieldNode &) = delete;

    // Takes a cleared node for a configuration.
    uint32_t create(uint32_t type, const FilterCfg *cfg)
    {
        if (cfg == nullptr)
            return LSW_NULL_POINTER;
        field_ = static_cast<FilterField *>(zr::allocCleared(sizeof(FilterField)));
        if (field_ == nullptr)
            return LSW_NO_MEMORY;
        field_->type = type;
        return LSW_OK;
    }

    FilterField *operator->() const { return field_; }

    // The SDK's status; 0 gives the node away.
    uint32_t chain(uint32_t unit, FilterCfg *cfg)
    {
        const uint32_t ret = l2sw_filter_igrAcl_field_add(unit, cfg, field_);
        if (ret == 0)
            field_ = nullptr;
        return ret;
    }

private:
    FilterField *field_ = nullptr;
};

// What a converter does when the SDK refuses its field: prints its own line and gives the status to return.
using Refused = uint32_t (*)(uint32_t sdkStatus);

uint32_t addMac(uint32_t unit, uint32_t type, const uint8_t *mac, const uint8_t *mask, FilterCfg *cfg,
                Refused refused)
{
    if (mac == nullptr || mask == nullptr)
        return LSW_NULL_POINTER;
    FieldNode node;
    if (uint32_t ret = node.create(type, cfg); ret != LSW_OK)
        return ret;
    auto &data = node->data.mac;
    memcpy_s(data.address, sizeof(data.address), mac, sizeof(data.address));
    memcpy_s(data.mask, sizeof(data.mask), mask, sizeof(data.mask));
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return refused(ret);
    return LSW_OK;
}

uint32_t addIp(uint32_t unit, uint32_t type, FilterWord address, FilterCfg *cfg, Refused refused)
{
    FieldNode node;
    if (uint32_t ret = node.create(type, cfg); ret != LSW_OK)
        return ret;
    node->data.ip.address = address;
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return refused(ret);
    return LSW_OK;
}

uint32_t addWord(uint32_t unit, uint32_t type, FilterWord word, FilterCfg *cfg, Refused refused)
{
    FieldNode node;
    if (uint32_t ret = node.create(type, cfg); ret != LSW_OK)
        return ret;
    node->data.word = word;
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return refused(ret);
    return LSW_OK;
}

} // namespace

uint32_t HAL_ACL_ConvertRuleInfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg)
{
    // It refuses null pointers as well.
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

uint32_t HAL_ACL_ConvertL2InfoZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg)
{
    if (match == nullptr || cfg == nullptr)
        return LSW_NULL_POINTER;
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
    if (match == nullptr || cfg == nullptr)
        return LSW_NULL_POINTER;
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
    if (cfg == nullptr)
        return LSW_NULL_POINTER;
    if (cfg->head != nullptr)
        return LSW_OK;
    static constexpr uint8_t kAnyMac[6] = {};
    return HAL_ACL_ConvertDMacZr(unit, kAnyMac, kAnyMac, cfg);
}

// ---- one field each ---------------------------------------------------------------------------------

uint32_t HAL_ACL_ConvertDMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask, FilterCfg *cfg)
{
    return addMac(unit, SDK_FIELD_DST_MAC, mac, mask, cfg,
                  [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertDMac acl field add type"); });
}

uint32_t HAL_ACL_ConvertSMacZr(uint32_t unit, const uint8_t *mac, const uint8_t *mask, FilterCfg *cfg)
{
    return addMac(unit, SDK_FIELD_SRC_MAC, mac, mask, cfg,
                  [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertSMac acl field add type"); });
}

uint32_t HAL_ACL_ConvertEthTypeZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    return addWord(unit, SDK_FIELD_ETHER_TYPE, {value, mask}, cfg,
                   [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertEthType acl field add type"); });
}

uint32_t HAL_ACL_ConvertUdfDataZr(uint32_t unit, uint32_t fieldType, uint32_t value, uint32_t mask,
                                  FilterCfg *cfg)
{
    return addWord(unit, fieldType, {value, mask}, cfg,
                   [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertUdfData acl field add type"); });
}

uint32_t HAL_ACL_ConvertOuterVlanAndPriZr(uint32_t unit, const LswmAclMatch *match, FilterCfg *cfg)
{
    if (match == nullptr || cfg == nullptr)
        return LSW_NULL_POINTER;
    const bool byVlan = (match->flags & LSWM_MATCH_OUTER_VLAN) != 0;
    const bool byPriority = (match->flags & LSWM_MATCH_OUTER_PRIORITY) != 0;
    if (!byVlan && !byPriority)
        return LSW_OK;

    FieldNode node;
    if (uint32_t ret = node.create(SDK_FIELD_OUTER_TAG, cfg); ret != LSW_OK)
        return ret;
    if (byPriority)
        node->data.tag.priority = {match->outerPriority, match->outerPriorityMask};
    if (byVlan)
        node->data.tag.vlan = {match->outerVlan, match->outerVlanMask};
    if (uint32_t ret = node.chain(unit, cfg); ret != 0)
        return ZR_CHIP_FAILED(ACL, ret, "ConvertOuterVlanAndPri acl field add type");
    return LSW_OK;
}

uint32_t HAL_ACL_ConvertCapWapZr(uint32_t unit, uint32_t fieldType, const uint8_t *capwap, uint32_t mask,
                                 FilterCfg *cfg)
{
    if (capwap == nullptr)
        return LSW_NULL_POINTER;
    const uint8_t *word = fieldType == SDK_FIELD_SELECTOR_3 ? capwap : capwap + 2;
    const uint32_t value = static_cast<uint32_t>(word[0] << 8 | word[1]);
    return addWord(unit, fieldType, {value, mask & 0xFFFF}, cfg,
                   [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertCapWap acl field add type"); });
}

uint32_t HAL_ACL_ConvertDstIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    return addIp(unit, SDK_FIELD_DST_IP, {value, mask}, cfg,
                 [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertDstIp acl field add type"); });
}

uint32_t HAL_ACL_ConvertSrcIpZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    return addIp(unit, SDK_FIELD_SRC_IP, {value, mask}, cfg,
                 [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertSip acl field add type"); });
}

uint32_t HAL_ACL_ConvertIpProtocolZr(uint32_t unit, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    return addWord(unit, SDK_FIELD_IP_PROTOCOL, {value, mask}, cfg, [](uint32_t ret) {
        return ZR_CHIP_FAILED(ACL, ret, "ConvertIpProtocol acl field add type");
    });
}

uint32_t HAL_ACL_ConvertSrcPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t mask, FilterCfg *cfg)
{
    const uint32_t fieldType = tcp != 0 ? SDK_FIELD_TCP_SRC_PORT : SDK_FIELD_UDP_SRC_PORT;
    return addWord(unit, fieldType, {value, mask}, cfg,
                   [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertSrcPort acl field add type"); });
}

uint32_t HAL_ACL_ConvertDstPortZr(uint32_t unit, uint32_t tcp, uint32_t value, uint32_t, FilterCfg *cfg)
{
    const uint32_t fieldType = tcp != 0 ? SDK_FIELD_TCP_DST_PORT : SDK_FIELD_UDP_DST_PORT;
    return addWord(unit, fieldType, {value, kWholePort}, cfg,
                   [](uint32_t ret) { return ZR_CHIP_FAILED(ACL, ret, "ConvertDstPort acl field add type"); });
}
