#include "sim/pipeline/acl_words.h"

namespace zrsim
{
namespace
{

constexpr uint32_t kRawSelectors = 64; // raw id of selector 0's word

// Raw fields at a fixed place: of the frame, or of the IPv4 header.
struct Place {
    uint32_t rawId;
    size_t offset;
};
constexpr Place kInFrame[] = {{1, 4}, {2, 2}, {3, 0}, {4, 10}, {5, 8}, {6, 6}};
constexpr Place kInIpv4[] = {{16, 14}, {17, 12}, {18, 18}, {19, 16}};

} // namespace

AclWords::AclWords(const Frame &frame, const AclTable &table)
    : table_(table), tcp_(frame.protocol() == 6), udp_(frame.protocol() == 17)
{
    for (const Place &place : kInFrame)
        set(place.rawId, frame, place.offset);
    set(7, frame, frame.etherTypeAt());
    if (frame.outerTag() != 0)
        set(8, frame, frame.outerTag());
    for (uint32_t id = 0; id < AclTable::kSelectors; ++id) {
        const AclSelector &selector = table.selector(id);
        if (selector.format == AclTable::kFromFrame)
            set(kRawSelectors + id, frame, selector.offset);
        else if (selector.format == AclTable::kFromIpPayload && frame.ipv4Payload() != 0)
            set(kRawSelectors + id, frame, frame.ipv4Payload() + selector.offset);
    }
    if (frame.ipv4() == 0)
        return;
    for (const Place &place : kInIpv4)
        set(place.rawId, frame, frame.ipv4() + place.offset);
    words_[70] = static_cast<uint16_t>(frame.bytes()[frame.ipv4() + 1] << 8U | frame.protocol());
    present_[70] = true;
    if (frame.ipv4Payload() != 0 && (tcp_ || udp_)) {
        set(77, frame, frame.ipv4Payload());
        set(78, frame, frame.ipv4Payload() + 2);
    }
}

void AclWords::set(uint32_t rawId, const Frame &frame, size_t offset)
{
    if (const auto word = frame.wordAt(offset)) {
        words_[rawId] = *word;
        present_[rawId] = true;
    }
}

bool AclWords::matches(uint32_t id, uint32_t port) const
{
    const AclEntry &first = table_.entry(id);
    if (first.parts == 0 || first.part != 0 || (first.tcp && !tcp_) || (first.udp && !udp_))
        return false;
    for (uint32_t part = 0; part < first.parts; ++part) {
        const AclEntry &entry = table_.entry(id + part);
        if (entry.parts != first.parts || entry.part != part || (entry.ports >> port & 1U) == 0)
            return false;
        for (const AclRawField &field : entry.fields) {
            if (field.mask != 0 && (field.id >= kRawIds || !present_[field.id] ||
                                    ((words_[field.id] ^ field.value) & field.mask) != 0))
                return false;
        }
    }
    return true;
}

uint32_t AclWords::match(uint32_t port) const
{
    uint32_t id = 0;
    while (id < AclTable::kEntries && !matches(id, port))
        ++id;
    return id;
}

} // namespace zrsim
