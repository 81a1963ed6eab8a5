#include "sim/pipeline/acl_match.h"

namespace zrsim
{
namespace
{

constexpr size_t kFirstEtherType = 12;
constexpr size_t kIpMinimum = 20;
constexpr uint16_t kIpv4 = 0x0800;
constexpr uint32_t kRawSelectors = 64; // raw id of selector 0's word

bool isTag(uint16_t tpid)
{
    return tpid == 0x8100 || tpid == 0x88A8 || tpid == 0x9100;
}

// Raw fields at a fixed place: of the frame, or of the IPv4 header.
struct Place {
    uint32_t rawId;
    size_t offset;
};
constexpr Place kInFrame[] = {{1, 4}, {2, 2}, {3, 0}, {4, 10}, {5, 8}, {6, 6}};
constexpr Place kInIp[] = {{16, 14}, {17, 12}, {18, 18}, {19, 16}};

template <size_t N> const Place *find(const Place (&places)[N], uint32_t rawId)
{
    for (const Place &place : places)
        if (place.rawId == rawId)
            return &place;
    return nullptr;
}

} // namespace

AclFrame::AclFrame(std::span<const uint8_t> bytes) : bytes_(bytes), etherType_(kFirstEtherType)
{
    while (isTag(at(etherType_).value_or(0))) {
        if (!tag_)
            tag_ = etherType_ + 2;
        etherType_ += 4;
    }
    const size_t ip = etherType_ + 2;
    if (at(etherType_) != kIpv4 || bytes.size() < ip + kIpMinimum || bytes[ip] >> 4 != 4)
        return;
    const size_t header = (bytes[ip] & 0x0FU) * 4;
    if (header < kIpMinimum || bytes.size() < ip + header)
        return;
    ip_ = ip;
    protocol_ = bytes[ip + 9];
    const uint32_t fragmentOffset = *at(ip + 6) & 0x1FFFU;
    if (fragmentOffset == 0)
        ipPayload_ = ip + header;
}

std::optional<uint16_t> AclFrame::at(size_t offset) const
{
    if (offset + 2 > bytes_.size())
        return std::nullopt;
    return static_cast<uint16_t>(bytes_[offset] << 8U | bytes_[offset + 1]);
}

std::optional<uint16_t> AclFrame::behind(std::optional<size_t> start, size_t offset) const
{
    return start ? at(*start + offset) : std::nullopt;
}

std::optional<uint16_t> AclFrame::word(uint32_t rawId, const AclTable &table) const
{
    if (const Place *place = find(kInFrame, rawId))
        return at(place->offset);
    if (const Place *place = find(kInIp, rawId))
        return behind(ip_, place->offset);
    switch (rawId) {
    case 7:
        return at(etherType_);
    case 8:
        return behind(tag_, 0);
    case 70:
        if (!ip_)
            return std::nullopt;
        return static_cast<uint16_t>(bytes_[*ip_ + 1] << 8U | bytes_[*ip_ + 9]);
    case 77:
        return tcp() || udp() ? behind(ipPayload_, 0) : std::nullopt;
    case 78:
        return tcp() || udp() ? behind(ipPayload_, 2) : std::nullopt;
    default:
        break;
    }
    if (rawId < kRawSelectors || rawId >= kRawSelectors + AclTable::kSelectors)
        return std::nullopt;
    const AclSelector &selector = table.selector(rawId - kRawSelectors);
    if (selector.format == AclTable::kFromFrame)
        return at(selector.offset);
    if (selector.format == AclTable::kFromIpPayload)
        return behind(ipPayload_, selector.offset);
    return std::nullopt;
}

bool aclRuleMatches(const AclTable &table, uint32_t id, uint32_t chipPort, const AclFrame &frame)
{
    const AclEntry &first = table.entry(id);
    if (first.parts == 0 || first.part != 0 || chipPort >= 32)
        return false;
    if ((first.tcp && !frame.tcp()) || (first.udp && !frame.udp()))
        return false;
    for (uint32_t part = 0; part < first.parts; ++part) {
        const AclEntry &entry = table.entry(id + part);
        if (entry.parts != first.parts || entry.part != part || (entry.ports >> chipPort & 1U) == 0)
            return false;
        for (const AclRawField &field : entry.fields) {
            if (field.mask == 0)
                continue;
            const auto word = frame.word(field.id, table);
            if (!word || ((*word ^ field.value) & field.mask) != 0)
                return false;
        }
    }
    return true;
}

} // namespace zrsim
