// The SDK's meter and storm control functions.
#include "sim/sdk/sdk.h"

using namespace zrsim;

uint32_t l2sw_rate_shareMeter_set(uint8_t unit, uint32_t meter, uint32_t mode, uint32_t rate, uint32_t one)
{
    return onChip({__func__, {unit, meter, mode, rate, one}},
                  [&](Chip &chip) { return chip.meters.setRate(meter, mode, rate, one); });
}

uint32_t l2sw_rate_shareMeter_get(uint8_t unit, uint32_t meter, uint32_t *mode, uint32_t *rate, uint32_t *third)
{
    return onChip({__func__, {unit, meter, mode, rate, third}}, [&](Chip &chip) -> uint32_t {
        const Meter *found = chip.meters.find(meter);
        if (found == nullptr)
            return kSdkBadArgument;
        *mode = found->mode;
        *rate = found->rate;
        *third = found->third;
        return kSdkOk;
    });
}

uint32_t l2sw_rate_shareMeterBucket_set(uint8_t unit, uint32_t meter, uint32_t bucket)
{
    return onChip({__func__, {unit, meter, bucket}},
                  [&](Chip &chip) { return chip.meters.setBucket(meter, bucket); });
}

uint32_t l2sw_rate_shareMeterBucket_get(uint8_t unit, uint32_t meter, uint32_t *bucket)
{
    return onChip({__func__, {unit, meter, bucket}}, [&](Chip &chip) -> uint32_t {
        const Meter *found = chip.meters.find(meter);
        if (found == nullptr)
            return kSdkBadArgument;
        *bucket = found->bucket;
        return kSdkOk;
    });
}

uint32_t l2sw_rate_stormControlEnable_set(uint8_t unit, uint32_t on)
{
    return onChip({__func__, {unit, on}}, [&](Chip &chip) { return chip.storm.enable(on); });
}

uint32_t l2sw_rate_stormControlMeterIdx_set(uint8_t unit, uint32_t port, uint32_t type, uint32_t meter)
{
    return onChip({__func__, {unit, port, type, meter}},
                  [&](Chip &chip) { return chip.storm.bind(port, type, meter); });
}

uint32_t l2sw_rate_stormControlPortEnable_set(uint8_t unit, uint32_t port, uint32_t type, uint32_t enable)
{
    return onChip({__func__, {unit, port, type, enable}},
                  [&](Chip &chip) { return chip.storm.enablePort(port, type, enable); });
}
