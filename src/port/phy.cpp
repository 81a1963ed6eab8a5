// Speed, duplex and auto-negotiation of a port.
#include "port/phy.h"

#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "port/port.h"

namespace
{

// The current speed and duplex, in the chip's codes, by the PHY path or the MAC path. Returns the SDK's status;
// what was not read stays 0.
uint32_t readLink(uint32_t unit, uint32_t port, SdkMacLink &link)
{
    if (l2sw_switch_isExtPort(unit, port) != 0)
        return l2sw_port_phyStatus_get(unit, port, &link.link, &link.speed, &link.duplex);
    uint32_t flag = 0;
    return l2sw_port_macForceLinkExt_get(unit, port, &flag, &link);
}

} // namespace

// ---- speed ----------------------------------------------------------------------------------

uint32_t ZR_PORT_GetSpeed(uint32_t unit, uint32_t port, uint32_t *speed)
{
    return HAL_PHY_GetSpeedZr(unit, port, speed);
}

uint32_t HAL_PHY_GetSpeedZr(uint32_t unit, uint32_t port, uint32_t *speed)
{
    if (speed == nullptr)
        return ZR_FAILED(PORT, LSW_NULL_POINTER, "get speed failed reason null pointer (unit = %u, port = %u).",
                         unit, port);
    SdkMacLink link{};
    if (uint32_t ret = readLink(unit, port, link); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get speed failed(unit = %u, port = %u, ret = %u).", unit, port, ret);
    *speed = link.speed == SDK_SPEED_1000 ? 1000 : link.speed == SDK_SPEED_100 ? 100 : 10;
    return LSW_OK;
}

uint32_t ZR_PORT_SetSpeed(uint32_t unit, uint32_t port, uint32_t speed)
{
    return HAL_PHY_SetSpeedZr(unit, port, speed);
}

uint32_t HAL_PHY_SetSpeedZr(uint32_t unit, uint32_t port, uint32_t speed)
{
    // A port whose abilities cannot be read still gets its speed, without pause.
    SdkPortAbility ability{};
    l2sw_port_phyForceModeAbility_get(unit, port, &ability);
    if (speed != 10 && speed != 100 && speed != 1000)
        return ZR_FAILED(PORT, LSW_UNSUPPORTED, "unsupport speed (unit = %u, port = %u, speed = %u).", unit,
                         port, speed);
    ability.half10 = 1;
    ability.full10 = 1;
    ability.half100 = speed >= 100;
    ability.full100 = speed >= 100;
    ability.full1000 = speed == 1000;
    // Gigabit over copper exists only with negotiation (IEEE 802.3 clause 40): it is advertised, never forced.
    if (speed == 1000)
        return l2sw_port_phyAutoNegoAbility_set(unit, port, &ability);
    return l2sw_port_phyForceModeAbility_set(unit, port, &ability);
}

// ---- duplex ---------------------------------------------------------------------------------

uint32_t ZR_PORT_GetDuplex(uint32_t unit, uint32_t port, uint32_t *duplex)
{
    return HAL_PHY_GetDuplexZr(unit, port, duplex);
}

uint32_t HAL_PHY_GetDuplexZr(uint32_t unit, uint32_t port, uint32_t *duplex)
{
    if (duplex == nullptr)
        return LSW_NULL_POINTER;
    SdkMacLink link{};
    if (uint32_t ret = readLink(unit, port, link); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get duplex mode failed(unit = %u, port = %u, duplex = %u).", unit,
                              port, link.duplex);
    *duplex = link.duplex == 1;
    return LSW_OK;
}

uint32_t ZR_PORT_SetDuplex(uint32_t unit, uint32_t port, uint32_t duplex)
{
    return HAL_PHY_SetDuplexZr(unit, port, duplex);
}

uint32_t HAL_PHY_SetDuplexZr(uint32_t unit, uint32_t port, uint32_t duplex)
{
    enum { kHalf = 0, kFull = 1, kKeep = 2 };
    SdkPortAbility ability{};
    l2sw_port_phyForceModeAbility_get(unit, port, &ability);
    if (duplex != kHalf && duplex != kFull && duplex != kKeep)
        return ZR_FAILED(PORT, LSW_UNSUPPORTED, "unsupport duplex mode (unit = %u, port = %u, duplex = %u).",
                         unit, port, duplex);
    if (duplex != kKeep) {
        const uint32_t full = duplex == kFull;
        const bool upTo100 = ability.half100 != 0 || ability.full100 != 0;
        ability.half10 = 1;
        ability.full10 = full;
        if (upTo100) {
            ability.half100 = 1;
            ability.full100 = full;
        }
    }
    return l2sw_port_phyForceModeAbility_set(unit, port, &ability);
}

// ---- auto-negotiation -----------------------------------------------------------------------

uint32_t ZR_PORT_GetAutonegEnable(uint32_t unit, uint32_t port, uint32_t *enable)
{
    return HAL_PHY_GetAutonegEnableZr(unit, port, enable);
}

uint32_t HAL_PHY_GetAutonegEnableZr(uint32_t unit, uint32_t port, uint32_t *enable)
{
    if (enable == nullptr)
        return ZR_FAILED(PORT, LSW_NULL_POINTER,
                         "get auto neg enable failed reason null pointer (unit = %u, port = %u).", unit, port);
    if (l2sw_switch_isExtPort(unit, port) == 0) {
        *enable = 0;
        return LSW_OK;
    }
    SdkPortAbility ability{};
    if (uint32_t ret = l2sw_port_phyAutoNegoAbility_get(unit, port, &ability); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get anto neg failed(unit = %u, port = %u, ret = %u).", unit, port,
                              ret);
    *enable = ability.autoNego;
    return LSW_OK;
}

uint32_t ZR_PORT_SetAutonegEnable(uint32_t unit, uint32_t port, uint32_t enable)
{
    return HAL_PHY_SetAutonegEnableZr(unit, port, enable);
}

uint32_t HAL_PHY_SetAutonegEnableZr(uint32_t unit, uint32_t port, uint32_t enable)
{
    // Writing either set of abilities selects its mode; they are written as they were read.
    SdkPortAbility ability{};
    if (enable == 1) {
        if (uint32_t ret = l2sw_port_phyAutoNegoAbility_get(unit, port, &ability); ret != 0)
            return ZR_CHIP_FAILED(PORT, ret, "get anto neg failed(unit = %u, port = %u, ret = %u).", unit, port,
                                  ret);
        if (uint32_t ret = l2sw_port_phyAutoNegoAbility_set(unit, port, &ability); ret != 0)
            return ZR_CHIP_FAILED(PORT, ret, "set anto neg failed(unit = %u, port = %u, ret = %u).", unit, port,
                                  ret);
        return LSW_OK;
    }
    if (uint32_t ret = l2sw_port_phyForceModeAbility_get(unit, port, &ability); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get force mode failed(unit = %u, port = %u, ret = %u).", unit, port,
                              ret);
    if (uint32_t ret = l2sw_port_phyForceModeAbility_set(unit, port, &ability); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "set force mode failed(unit = %u, port = %u, ret = %u).", unit, port,
                              ret);
    return LSW_OK;
}
