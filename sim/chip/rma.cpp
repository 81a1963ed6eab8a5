#include "sim/chip/rma.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

#include "sim/chip/status.h"

namespace zrsim
{
namespace
{

constexpr uint8_t kPrefix[5] = {0x01, 0x80, 0xC2, 0x00, 0x00};
constexpr uint32_t kAddressTypes = 48;
constexpr uint32_t kLldp = 0x88CC;

bool isLldp(uint32_t lastByte, uint32_t etherType)
{
    return etherType == kLldp && (lastByte == 0x00 || lastByte == 0x03 || lastByte == 0x0E);
}

} // namespace

uint32_t Rma::setAction(uint32_t type, uint32_t action)
{
    if (type >= kTypes || action >= kActions)
        return kSdkBadArgument;
    actions_[type] = action;
    return kSdkOk;
}

uint32_t Rma::trapLldp(uint32_t on)
{
    if (on > 1)
        return kSdkBadArgument;
    lldp_ = on == 1;
    return kSdkOk;
}

Rma::Decision Rma::decide(const std::array<uint8_t, 6> &mac, uint32_t etherType) const
{
    if (!std::equal(std::begin(kPrefix), std::end(kPrefix), mac.begin()) || mac[5] >= kAddressTypes)
        return {false, false, kSwitch};
    if (lldp_ && isLldp(mac[5], etherType))
        return {true, true, kToHost};
    return {true, false, static_cast<Action>(actions_[mac[5]])};
}

void Rma::reset()
{
    actions_ = {};
    lldp_ = false;
}

void Rma::dump(nlohmann::json &to) const
{
    if (lldp_)
        to["lldp"] = "to the host";
    if (std::ranges::any_of(actions_, [](uint32_t action) { return action != kSwitch; }))
        to["actions"] = actions_;
}

} // namespace zrsim
