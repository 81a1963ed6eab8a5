// A frame as the ingress ACL sees it: every raw field id names a 16-bit word of it, or nothing. Given: what
// the raw ids of the read-back name. The model's own choice: a later fragment has no layer-4 ports, and a word
// that a frame does not have is matched by a mask of 0 only.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>

#include "sim/chip/acl_table.h"
#include "sim/pipeline/frame.h"

namespace zrsim
{

class AclWords
{
public:
    AclWords(const Frame &frame, const AclTable &table);

    // The first entry of the rule that wins at a port: of those that match the lowest, or AclTable::kEntries.
    uint32_t match(uint32_t port) const;

private:
    static constexpr uint32_t kRawIds = 80;

    void set(uint32_t rawId, const Frame &frame, size_t offset);
    bool matches(uint32_t id, uint32_t port) const;

    const AclTable &table_;
    bool tcp_;
    bool udp_;
    std::array<uint16_t, kRawIds> words_{};
    std::bitset<kRawIds> present_;
};

} // namespace zrsim
