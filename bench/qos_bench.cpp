// QoS start-up, meters, storm control and reserved addresses beside the SDK calls themselves.
#include "bench/pair.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;
using zrbench_pair::tables;

const LswmCar kCar{0, 1000, 1000};
const LswmStormControl kStorm{0, 2, 1, 7};

bool contains(const LswmPortSet &set, uint32_t port)
{
    return (set.word[port / 32] >> port % 32 & 1) != 0;
}

uint32_t directQosInit(uint32_t unit)
{
    uint32_t failed = l2sw_qos_init(unit, 8);
    failed |= l2sw_Flow_Control_Pause_All_set(unit, 1535);
    SdkQosRecord selection{{1, 5, 7, 6, 0, 0, 0, 0}};
    failed |= l2sw_qos_priSel_set(unit, 0, &selection);
    const LswmPortSet *sets = g_lswmInfo[unit].portMap;
    for (uint32_t set : {LSWM_SET_PRISEL_A, LSWM_SET_PRISEL_B})
        for (uint32_t port = 0; port < LSWM_PORTS; ++port)
            if (contains(sets[set], port))
                failed |= l2sw_qos_portPriSelIndex_set(unit, port, 0);
    SdkQosRecord map{{0, 1, 2, 3, 4, 5, 6, 7}};
    failed |= l2sw_qos_priMap_set(unit, 8, &map);
    for (uint32_t dscp = 0; dscp < 64; ++dscp)
        failed |= l2sw_qos_dscpPriRemap_set(unit, dscp, dscp >> 3);
    for (uint32_t p = 0; p < 8; ++p)
        failed |= l2sw_qos_1pPriRemap_set(unit, p, p);
    SdkQosRecord weights{};
    for (uint32_t port = 0; port < LSWM_PORTS; ++port)
        if (contains(sets[LSWM_SET_VALID], port))
            failed |= l2sw_qos_schedulingQueue_set(unit, port, &weights);
    return failed;
}

uint32_t directConfigCar(uint8_t unit, uint32_t meter, const LswmCar &car)
{
    const bool raw = car.mode == 1;
    if (l2sw_rate_shareMeter_set(unit, meter, raw, raw ? car.rate : (car.rate + 7) / 8, 1) != 0)
        return LSW_CHIP_FAILED;
    const uint64_t bucket = uint64_t{car.bucket} * 12 / 5;
    return l2sw_rate_shareMeterBucket_set(unit, meter,
                                          bucket > 2097151 ? 2097151U : static_cast<uint32_t>(bucket));
}

uint32_t directStormSet(uint8_t unit, uint32_t port, const LswmStormControl &control)
{
    static constexpr uint32_t kTypes[] = {0, 1, 3};
    if (control.packetType > 2)
        return LSW_CHIP_FAILED;
    uint32_t mode = 0;
    uint32_t rate = 0;
    uint32_t third = 0;
    if (l2sw_rate_shareMeter_get(unit, control.meter, &mode, &rate, &third) != 0)
        return LSW_CHIP_FAILED;
    const uint32_t bucket = rate < 1000 ? 1000 : rate > 2097151 ? 2097151 : rate;
    if (l2sw_rate_shareMeterBucket_set(unit, control.meter, bucket) != 0)
        return LSW_CHIP_FAILED;
    if (l2sw_rate_stormControlEnable_set(unit, 1) != 0)
        return LSW_CHIP_FAILED;
    const uint32_t type = kTypes[control.packetType];
    if (l2sw_rate_stormControlMeterIdx_set(unit, port, type, control.meter) != 0)
        return LSW_CHIP_FAILED;
    return l2sw_rate_stormControlPortEnable_set(unit, port, type, control.enable);
}

uint32_t directMcInit(uint32_t unit)
{
    if (l2sw_trap_lldpEnable_set(unit, 1) != 0)
        return LSW_CHIP_FAILED;
    for (uint32_t type = 0; type <= 50; ++type)
        if (l2sw_trap_rmaAction_set(unit, type, 2) != 0)
            return LSW_CHIP_FAILED;
    return LSW_OK;
}

const bool registered =
    pair(
        "qos init", [] { benchmark::DoNotOptimize(tables().qos.init(opaque(1U))); },
        [] { benchmark::DoNotOptimize(directQosInit(opaque(1U))); }) &&
    pair(
        "meter set",
        [] {
            benchmark::DoNotOptimize(
                tables().hsec.configCar(static_cast<uint8_t>(opaque(1U)), opaque(7U), opaque(&kCar)));
        },
        [] {
            benchmark::DoNotOptimize(
                directConfigCar(static_cast<uint8_t>(opaque(1U)), opaque(7U), *opaque(&kCar)));
        }) &&
    pair(
        "storm set",
        [] { benchmark::DoNotOptimize(tables().stormctl.set(opaque(1U), opaque(4U), opaque(&kStorm))); },
        [] {
            benchmark::DoNotOptimize(
                directStormSet(static_cast<uint8_t>(opaque(1U)), opaque(4U), *opaque(&kStorm)));
        }) &&
    pair(
        "mc init", [] { benchmark::DoNotOptimize(tables().mc.init(opaque(1U))); },
        [] { benchmark::DoNotOptimize(directMcInit(opaque(1U))); });

} // namespace
