// An Ethernet frame as the stages of the pipeline read it: its bytes, without preamble and FCS, and where its
// headers lie. Given: IEEE 802.3 and 802.1Q headers, IPv4 and IPv6. The model's own choice: a tag is TPID
// 0x8100, 0x88A8 or 0x9100; the first of them is the outer tag, the EtherType is the one behind all tags.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "sim/chip/mac_table.h"

namespace zrsim
{

class Frame
{
public:
    static constexpr size_t kHeader = 14;
    static constexpr uint32_t kFcs = 4;
    static constexpr uint16_t kTpid = 0x8100;

    // The bytes must outlive the frame. Headers that are cut off are not there.
    explicit Frame(std::span<const uint8_t> bytes);

    std::span<const uint8_t> bytes() const { return bytes_; }
    uint32_t wireSize() const { return static_cast<uint32_t>(bytes_.size()) + kFcs; }
    bool hasHeader() const { return bytes_.size() >= kHeader; }

    // The rest needs a whole header.
    const MacAddress &destination() const { return *reinterpret_cast<const MacAddress *>(bytes_.data()); }
    const MacAddress &source() const { return *reinterpret_cast<const MacAddress *>(bytes_.data() + 6); }
    bool toGroup() const { return (bytes_[0] & 1U) != 0; }
    bool toAll() const;

    // Whether it carries a C-tag (TPID 0x8100) in front; vid() and dot1p() are its fields.
    bool tagged() const { return wordAt(12) == kTpid && bytes_.size() >= 16; }
    uint32_t vid() const { return bytes_.size() >= 16 ? *wordAt(14) & 0xFFFU : 0; }
    uint32_t dot1p() const { return bytes_.size() >= 16 ? bytes_[14] >> 5U : 0; }

    // Offsets of headers; 0 where there is none.
    size_t outerTag() const { return outerTag_; }     // of the control information behind the first TPID
    size_t etherTypeAt() const { return etherType_; } // of the EtherType behind all tags
    size_t ipv4() const { return ipv4_; }
    size_t ipv4Payload() const { return ipv4Payload_; } // of an unfragmented packet or its first fragment
    uint32_t etherType() const { return wordAt(etherType_).value_or(0); }
    uint32_t protocol() const { return ipv4_ != 0 ? bytes_[ipv4_ + 9] : 0; } // of IPv4
    std::optional<uint32_t> dscp() const;                                    // of IPv4 and IPv6

    // A 16-bit word in network byte order.
    std::optional<uint16_t> wordAt(size_t offset) const
    {
        if (offset + 2 > bytes_.size())
            return std::nullopt;
        return static_cast<uint16_t>(bytes_[offset] << 8U | bytes_[offset + 1]);
    }

private:
    std::span<const uint8_t> bytes_;
    size_t outerTag_ = 0;
    size_t etherType_ = 12;
    size_t ipv4_ = 0;
    size_t ipv4Payload_ = 0;
};

} // namespace zrsim
