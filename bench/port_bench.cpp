// Port settings and link through the port table beside hand-written code.
#include "bench/pair.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "port/port.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;
using zrbench_pair::tables;

uint32_t getSpeed(uint32_t unit, uint32_t port, uint32_t *speed)
{
    SdkMacLink link{};
    uint32_t ret = 0;
    if (l2sw_switch_isExtPort(unit, port) != 0) {
        ret = l2sw_port_phyStatus_get(unit, port, &link.link, &link.speed, &link.duplex);
    } else {
        uint32_t flag = 0;
        ret = l2sw_port_macForceLinkExt_get(unit, port, &flag, &link);
    }
    if (ret != 0)
        return LSW_CHIP_FAILED;
    *speed = link.speed == 2 ? 1000 : link.speed == 1 ? 100 : 10;
    return LSW_OK;
}

uint32_t setSpeed(uint32_t unit, uint32_t port, uint32_t speed)
{
    SdkPortAbility ability{};
    l2sw_port_phyForceModeAbility_get(unit, port, &ability);
    ability.half10 = 1;
    ability.full10 = 1;
    ability.half100 = 0;
    ability.full100 = 0;
    ability.full1000 = 0;
    switch (speed) {
    case 1000:
        ability.full1000 = 1;
        [[fallthrough]];
    case 100:
        ability.half100 = 1;
        ability.full100 = 1;
        [[fallthrough]];
    case 10:
        break;
    default:
        return LSW_UNSUPPORTED;
    }
    return speed == 1000 ? l2sw_port_phyAutoNegoAbility_set(unit, port, &ability)
                         : l2sw_port_phyForceModeAbility_set(unit, port, &ability);
}

uint32_t getAbility(uint32_t unit, uint32_t port, LswmPortAbility *ability)
{
    memset_s(ability, sizeof *ability, 0, sizeof *ability);
    SdkPortAbility chip{};
    if (l2sw_port_phyAutoNegoAbility_get(unit, port, &chip) != 0)
        return LSW_CHIP_FAILED;
    ability->half10 = static_cast<uint8_t>(chip.half10);
    ability->full10 = static_cast<uint8_t>(chip.full10);
    ability->half100 = static_cast<uint8_t>(chip.half100);
    ability->full100 = static_cast<uint8_t>(chip.full100);
    ability->full1000 = static_cast<uint8_t>(chip.full1000);
    ability->pause = static_cast<uint8_t>(chip.pause);
    ability->pauseAsym = static_cast<uint8_t>(chip.pauseAsym);
    return LSW_OK;
}

uint32_t setAdvert(uint32_t unit, uint32_t port, const LswmPortAbility *ability)
{
    SdkPortAbility chip = {1,
                           ability->half10,
                           ability->full10,
                           ability->half100,
                           ability->full100,
                           ability->full1000,
                           ability->pause,
                           ability->pauseAsym};
    return l2sw_port_phyAutoNegoAbility_set(unit, port, &chip);
}

uint32_t getRemote(uint32_t unit, uint32_t port, LswmPortAbility *ability)
{
    memset_s(ability, sizeof *ability, 0, sizeof *ability);
    uint32_t base = 0;
    uint32_t gigabit = 0;
    if (l2sw_port_phyReg_get(unit, port, 5, &base) != 0 || l2sw_port_phyReg_get(unit, port, 10, &gigabit) != 0)
        return LSW_CHIP_FAILED;
    ability->half10 = base >> 5 & 1;
    ability->full10 = base >> 6 & 1;
    ability->half100 = base >> 7 & 1;
    ability->full100 = base >> 8 & 1;
    ability->full1000 = gigabit >> 11 & 1;
    ability->pause = base >> 10 & 1;
    ability->pauseAsym = base >> 11 & 1;
    return LSW_OK;
}

uint32_t getLoopback(uint32_t unit, uint32_t port, uint32_t *mode)
{
    uint32_t value = 0;
    uint32_t vendor = 0;
    if (l2sw_port_macLocalLoopbackEnable_get(unit, port, &value) != 0)
        return LSW_CHIP_FAILED;
    if (value == 1) {
        *mode = 1;
        return LSW_OK;
    }
    uint32_t ret = l2sw_port_phyReg_get(unit, port, 16, &vendor);
    ret += l2sw_port_phyReg_get(unit, port, 0, &value);
    if (ret != 0)
        return LSW_CHIP_FAILED;
    if ((value & 0x4000) != 0) {
        *mode = 2;
        return LSW_OK;
    }
    if (l2sw_port_phyReg_get(unit, port, 18, &value) != 0)
        return LSW_CHIP_FAILED;
    *mode = (value & 1) != 0 ? 3 : 0;
    return LSW_OK;
}

template <class Library, class Direct> bool getters(const char *name, Library library, Direct direct)
{
    return pair(
        name,
        [library] {
            uint32_t value = 0;
            benchmark::DoNotOptimize((tables().port.*library)(opaque(1U), opaque(3U), &value));
            benchmark::DoNotOptimize(value);
        },
        [direct] {
            uint32_t value = 0;
            benchmark::DoNotOptimize(direct(opaque(1U), opaque(3U), &value));
            benchmark::DoNotOptimize(value);
        });
}

template <class Library, class Direct> bool abilities(const char *name, Library library, Direct direct)
{
    return pair(
        name,
        [library] {
            LswmPortAbility ability{};
            benchmark::DoNotOptimize(ability);
            benchmark::DoNotOptimize((tables().port.*library)(opaque(1U), opaque(3U), &ability));
            benchmark::DoNotOptimize(ability);
        },
        [direct] {
            LswmPortAbility ability{};
            benchmark::DoNotOptimize(ability);
            benchmark::DoNotOptimize(direct(opaque(1U), opaque(3U), &ability));
            benchmark::DoNotOptimize(ability);
        });
}

const bool registered =
    getters("port get speed", &ZrPortOps::getSpeed, getSpeed) &&
    pair(
        "port set speed",
        [] { benchmark::DoNotOptimize(tables().port.setSpeed(opaque(1U), opaque(3U), opaque(100U))); },
        [] { benchmark::DoNotOptimize(setSpeed(opaque(1U), opaque(3U), opaque(100U))); }) &&
    pair(
        "port set enable",
        [] { benchmark::DoNotOptimize(tables().port.setEnable(opaque(1U), opaque(3U), opaque(1U))); },
        [] {
            benchmark::DoNotOptimize(
                l2sw_port_adminEnable_set(opaque(1U), opaque(3U), opaque(1U)) != 0 ? LSW_CHIP_FAILED : LSW_OK);
        }) &&
    abilities("port get abilities", &ZrPortOps::getAutonegAbility, getAbility) &&
    abilities("port get partner abilities", &ZrPortOps::getRemoteAutonegAbility, getRemote) &&
    abilities("port advertise", &ZrPortOps::setAdvert, setAdvert) &&
    getters("port get loopback", &ZrPortOps::getLoopback, getLoopback);

} // namespace
