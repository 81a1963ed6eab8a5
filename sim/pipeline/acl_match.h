// How a frame looks to the ingress ACL: every raw field id names a 16-bit word of it, or nothing. Given:
// what the raw ids of the read-back name. The model's own choice: the outer tag is the first of TPID 0x8100,
// 0x88A8 or 0x9100, the EtherType is the one behind all tags, a later fragment has no layer-4 ports, and a
// word that a frame does not have is matched by a mask of 0 only.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "sim/chip/acl_table.h"

namespace zrsim
{

class AclFrame
{
public:
    explicit AclFrame(std::span<const uint8_t> bytes);

    // The word of a raw field; `selectors` are those of the table.
    std::optional<uint16_t> word(uint32_t rawId, const AclTable &table) const;
    bool tcp() const { return protocol_ == 6; }
    bool udp() const { return protocol_ == 17; }

private:
    std::optional<uint16_t> at(size_t offset) const;
    std::optional<uint16_t> behind(std::optional<size_t> start, size_t offset) const;

    std::span<const uint8_t> bytes_;
    std::optional<size_t> tag_; // of the outer tag's control information
    size_t etherType_ = 0;
    std::optional<size_t> ip_;
    std::optional<size_t> ipPayload_; // of an unfragmented packet or its first fragment
    std::optional<uint8_t> protocol_;
};

// Whether the rule that begins at entry `id` matches; false where none begins.
bool aclRuleMatches(const AclTable &table, uint32_t id, uint32_t chipPort, const AclFrame &frame);

} // namespace zrsim
