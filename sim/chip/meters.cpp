#include "sim/chip/meters.h"

#include <nlohmann/json.hpp>

#include <algorithm>

#include "sim/board/clock.h"
#include "sim/chip/status.h"

namespace zrsim
{

bool Meter::admit(uint32_t bytes, uint64_t now)
{
    if (!limits)
        return true;
    const uint64_t elapsed = now - filledAt;
    filledAt = now;
    if (rate != 0 && elapsed >= (full() - tokens) / rate + 1)
        tokens = full();
    else
        tokens += elapsed * rate;
    const uint64_t cost = (mode == 0 ? bytes : 1) * scale();
    if (tokens < cost)
        return false;
    tokens -= cost;
    return true;
}

uint32_t Meters::setRate(uint32_t meter, uint32_t mode, uint32_t rate, uint32_t third)
{
    if (meter >= kMeters || mode > 1)
        return kSdkBadArgument;
    Meter &chosen = meters_[meter];
    chosen.limits = true;
    chosen.mode = mode;
    chosen.rate = rate;
    chosen.third = third;
    chosen.tokens = chosen.full();
    chosen.filledAt = boardClock().ns;
    return kSdkOk;
}

uint32_t Meters::setBucket(uint32_t meter, uint32_t bucket)
{
    if (meter >= kMeters || bucket > kMaxBucket)
        return kSdkBadArgument;
    Meter &chosen = meters_[meter];
    chosen.bucket = bucket;
    chosen.tokens = chosen.full();
    chosen.filledAt = boardClock().ns;
    return kSdkOk;
}

bool Meters::admit(uint32_t meter, uint32_t bytes)
{
    return meter >= kMeters || meters_[meter].admit(bytes, boardClock().ns);
}

void Meters::dump(nlohmann::json &to) const
{
    for (uint32_t id = 0; id < kMeters; ++id) {
        const Meter &meter = meters_[id];
        if (meter.limits || meter.bucket != 0)
            to[std::to_string(id)] = {
                {"mode", meter.mode}, {"rate", meter.rate}, {"bucket", meter.bucket}, {"tokens", meter.tokens}};
    }
}

} // namespace zrsim
