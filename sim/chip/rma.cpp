#include "sim/chip/rma.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

#include "sim/chip/chip.h"
#include "sim/chip/status.h"
#include "sim/command.h"
#include "sim/pipeline/capture.h"

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

Rma::Action Rma::judge(uint32_t port, std::span<const uint8_t, 6> mac, uint32_t etherType) const
{
    if (!std::equal(std::begin(kPrefix), std::end(kPrefix), mac.begin()) || mac[5] >= kAddressTypes)
        return kSwitch;
    if (lldp_ && isLldp(mac[5], etherType))
        return kToHost;
    const auto action = static_cast<Action>(actions_[mac[5]]);
    if (action == kDrop)
        chip_->drop.note(port, DropCapture::kReserved);
    return action;
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

namespace
{

const BoardCommand kReserved("reserved PORT MAC [ETHERTYPE]", "what becomes of a frame to a reserved address",
                             [](Chip &chip, const Words &words) {
                                 const uint32_t port = words.number(0, 31);
                                 const Frame mac = frameFromHex(words.text(1));
                                 if (mac.size() != 6)
                                     words.refuse("'" + words.text(1) + "' is no MAC address");
                                 static constexpr const char *kWhat[] = {"switched", "dropped", "to the host"};
                                 const auto action = chip.rma.judge(port, std::span<const uint8_t, 6>(mac),
                                                                    words.number(2, 0xFFFF, 0));
                                 return fmt::format("action={} {}\n", static_cast<uint32_t>(action),
                                                    kWhat[action]);
                             });

} // namespace
} // namespace zrsim
