#include "sim/pipeline/frame.h"

#include <algorithm>

namespace zrsim
{
namespace
{

constexpr size_t kIpv4Minimum = 20;
constexpr uint32_t kIpv4 = 0x0800;
constexpr uint32_t kIpv6 = 0x86DD;

bool isTag(uint32_t tpid)
{
    return tpid == Frame::kTpid || tpid == 0x88A8 || tpid == 0x9100;
}

} // namespace

Frame::Frame(std::span<const uint8_t> bytes) : bytes_(bytes)
{
    while (isTag(etherType())) {
        if (outerTag_ == 0)
            outerTag_ = etherType_ + 2;
        etherType_ += 4;
    }
    const size_t ip = etherType_ + 2;
    if (etherType() != kIpv4 || bytes.size() < ip + kIpv4Minimum || bytes[ip] >> 4U != 4)
        return;
    const size_t header = (bytes[ip] & 0x0FU) * 4;
    if (header < kIpv4Minimum || bytes.size() < ip + header)
        return;
    ipv4_ = ip;
    const uint32_t fragmentOffset = *wordAt(ip + 6) & 0x1FFFU;
    if (fragmentOffset == 0)
        ipv4Payload_ = ip + header;
}

bool Frame::toAll() const
{
    return std::all_of(bytes_.begin(), bytes_.begin() + 6, [](uint8_t byte) { return byte == 0xFF; });
}

std::optional<uint32_t> Frame::dscp() const
{
    if (ipv4_ != 0)
        return bytes_[ipv4_ + 1] >> 2U;
    const std::optional<uint16_t> word = wordAt(etherType_ + 2);
    if (etherType() == kIpv6 && word && *word >> 12U == 6)
        return *word >> 6U & 0x3FU;
    return std::nullopt;
}

} // namespace zrsim
