#include "sim/chip/leds.h"

#include <nlohmann/json.hpp>

#include "sim/chip/status.h"

namespace zrsim
{

uint32_t Leds::setMode(uint32_t group, uint32_t mode)
{
    if (group >= modes_.size())
        return kSdkBadArgument;
    modes_[group] = mode;
    return kSdkOk;
}

void Leds::dump(nlohmann::json &to) const
{
    to["modes"] = modes_;
    to["blinkRate"] = blinkRate_;
}

} // namespace zrsim
