#include "sim/chip/storm_control.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "sim/chip/chip.h"
#include "sim/chip/status.h"
#include "sim/command.h"

namespace zrsim
{

uint32_t StormControl::enable(uint32_t on)
{
    if (on > 1)
        return kSdkBadArgument;
    enabled_ = on == 1;
    return kSdkOk;
}

uint32_t StormControl::bind(uint32_t port, uint32_t type, uint32_t meter)
{
    if (port >= kPorts)
        return kSdkBadPort;
    if (type >= kTypes || meter >= Meters::kMeters)
        return kSdkBadArgument;
    bindings_[port][type].meter = meter;
    return kSdkOk;
}

uint32_t StormControl::enablePort(uint32_t port, uint32_t type, uint32_t enable)
{
    if (port >= kPorts)
        return kSdkBadPort;
    if (type >= kTypes || enable > 1)
        return kSdkBadArgument;
    bindings_[port][type].enabled = enable == 1;
    return kSdkOk;
}

void StormControl::reset()
{
    enabled_ = false;
    bindings_ = {};
}

void StormControl::dump(nlohmann::json &to) const
{
    if (!enabled_)
        return;
    to["enabled"] = enabled_;
    for (uint32_t port = 0; port < kPorts; ++port)
        for (uint32_t type = 0; type < kTypes; ++type)
            if (bindings_[port][type].enabled)
                to["ports"][std::to_string(port)]["types"][std::to_string(type)] = {
                    {"meter", bindings_[port][type].meter}};
}

namespace
{

std::string showBindings(Chip &chip, const Words &)
{
    std::string text = fmt::format("storm control is {}\n", chip.storm.enabled() ? "on" : "off");
    for (uint32_t port = 0; port < StormControl::kPorts; ++port)
        for (uint32_t type = 0; type < StormControl::kTypes; ++type)
            if (const auto &bound = chip.storm.binding(port, type); bound.enabled)
                text += fmt::format("port {:<2} type {}  meter {}\n", port, type, bound.meter);
    return text;
}

const BoardCommand kBindings("storm", "which floods are limited by which meter", showBindings);

} // namespace
} // namespace zrsim
