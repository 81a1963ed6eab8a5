// Match fields, chip to manager: the inverse of match_to_chip.cpp.
#include "acl/acl.h"

namespace
{

constexpr struct MacField {
    uint32_t rawId;
    uint16_t part;
    uint16_t offset; // of the address in the match; its mask follows
    uint32_t flag;
} kMacFields[] = {
    {1, 0, offsetof(LswmAclMatch, dstMac), LSWM_MATCH_DST_MAC},
    {2, 1, offsetof(LswmAclMatch, dstMac), LSWM_MATCH_DST_MAC},
    {3, 2, offsetof(LswmAclMatch, dstMac), LSWM_MATCH_DST_MAC},
    {4, 0, offsetof(LswmAclMatch, srcMac), LSWM_MATCH_SRC_MAC},
    {5, 1, offsetof(LswmAclMatch, srcMac), LSWM_MATCH_SRC_MAC},
    {6, 2, offsetof(LswmAclMatch, srcMac), LSWM_MATCH_SRC_MAC},
};
ZR_ASSERT_OFFSET(LswmAclMatch, dstMacMask, offsetof(LswmAclMatch, dstMac) + 6);
ZR_ASSERT_OFFSET(LswmAclMatch, srcMacMask, offsetof(LswmAclMatch, srcMac) + 6);

constexpr struct WordField {
    uint32_t rawId;
    uint16_t LswmAclMatch::*value;
    uint16_t LswmAclMatch::*mask;
    uint32_t flag;
} kWordFields[] = {
    {7, &LswmAclMatch::etherType, &LswmAclMatch::etherTypeMask, LSWM_MATCH_ETHER_TYPE},
    {77, &LswmAclMatch::l4SrcPort, &LswmAclMatch::l4SrcPortMask, LSWM_MATCH_L4_SRC_PORT},
    {78, &LswmAclMatch::l4DstPort, &LswmAclMatch::l4DstPortMask, LSWM_MATCH_L4_DST_PORT},
};

// Half an IPv4 address.
constexpr struct IpField {
    uint32_t rawId;
    uint32_t shift;
    uint32_t LswmAclMatch::*value;
    uint32_t LswmAclMatch::*mask;
    uint32_t flag;
} kIpFields[] = {
    {16, 0, &LswmAclMatch::srcIp, &LswmAclMatch::srcIpMask, LSWM_MATCH_SRC_IP},
    {17, 16, &LswmAclMatch::srcIp, &LswmAclMatch::srcIpMask, LSWM_MATCH_SRC_IP},
    {18, 0, &LswmAclMatch::dstIp, &LswmAclMatch::dstIpMask, LSWM_MATCH_DST_IP},
    {19, 16, &LswmAclMatch::dstIp, &LswmAclMatch::dstIpMask, LSWM_MATCH_DST_IP},
};

constexpr struct CapwapField {
    uint32_t rawId;
    uint32_t byte; // first of the word's two bytes
} kCapwapFields[] = {{67, 0}, {68, 2}};

// Type of service in the high byte, protocol in the low byte.
constexpr uint32_t kRawTosProtocol = 70;

uint8_t highByte(uint16_t word)
{
    return static_cast<uint8_t>(word >> 8);
}

uint8_t lowByte(uint16_t word)
{
    return static_cast<uint8_t>(word);
}

template <typename Row, size_t N> const Row *find(const Row (&rows)[N], uint32_t rawId)
{
    for (const Row &row : rows) {
        if (row.rawId == rawId)
            return &row;
    }
    return nullptr;
}

} // namespace

void HAL_ACL_FilterCfgToRuleZr(LswmAclMatch *match, const FilterCfgRaw *raw)
{
    if (match == nullptr || raw == nullptr)
        return;
    for (uint32_t field = 0; field < SDK_RAW_FIELDS; ++field)
        HAL_ACL_FieldToRuleCfgZr(raw->id[field], static_cast<uint16_t>(raw->value[field]),
                                 static_cast<uint16_t>(raw->mask[field]), match);
    match->portBitmap = raw->portBitmap;
}

void HAL_ACL_FieldToRuleCfgZr(uint32_t rawId, uint16_t value, uint16_t mask, LswmAclMatch *match)
{
    if (match == nullptr)
        return;
    if (const MacField *mac = find(kMacFields, rawId)) {
        HAL_ACL_MacFieldToRuleMacZr(mac->part, value, mask, reinterpret_cast<uint8_t *>(match) + mac->offset);
        match->flags |= mac->flag;
    } else if (const WordField *word = find(kWordFields, rawId)) {
        match->*word->value = value;
        match->*word->mask = mask;
        match->flags |= word->flag;
    } else if (const IpField *ip = find(kIpFields, rawId)) {
        match->*ip->value |= static_cast<uint32_t>(value) << ip->shift;
        match->*ip->mask |= static_cast<uint32_t>(mask) << ip->shift;
        match->flags |= ip->flag;
    } else if (const CapwapField *capwap = find(kCapwapFields, rawId)) {
        match->capwap[capwap->byte] = highByte(value);
        match->capwap[capwap->byte + 1] = lowByte(value);
        match->capwapMask = mask;
        match->flags |= LSWM_MATCH_CAPWAP;
    } else if (rawId == kRawTosProtocol) {
        match->tos = highByte(value);
        match->tosMask = highByte(mask);
        match->ipProtocol = lowByte(value);
        match->ipProtocolMask = lowByte(mask);
        match->flags |= LSWM_MATCH_IP_PROTOCOL;
    }
}

void HAL_ACL_MacFieldToRuleMacZr(uint16_t part, uint16_t value, uint16_t mask, uint8_t *macAndMask)
{
    if (part > 2 || macAndMask == nullptr)
        return;
    uint8_t *mac = macAndMask + 4 - 2 * part;
    mac[0] = highByte(value);
    mac[1] = lowByte(value);
    mac[6] = highByte(mask);
    mac[7] = lowByte(mask);
}
