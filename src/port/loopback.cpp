// Loopback of a port: inside the MAC, inside the PHY (PCS), or back to the link partner (remote).
#include "port/port.h"

#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

constexpr uint32_t kPhyControl = 0; // IEEE 802.3 clause 22.2.4.1
constexpr uint32_t kPhyControlLoopbackBit = 14;
// PHY vendor registers and the values that the chip wants in them.
constexpr uint32_t kPhyPcsLoopback = 16;
constexpr uint32_t kPhyPcsLoopbackOn = 0x2646;
constexpr uint32_t kPhyRemoteLoopback = 18; // bit 0: on
constexpr uint32_t kPhyRemoteLoopbackOn = 0x0729;

} // namespace

// ---- reading --------------------------------------------------------------------------------

uint32_t ZR_PORT_GetLoopback(uint32_t unit, uint32_t port, uint32_t *mode)
{
    return HAL_PORT_GetLoopbackZr(unit, port, mode);
}

uint32_t HAL_PORT_GetLoopbackZr(uint32_t unit, uint32_t port, uint32_t *mode)
{
    if (mode == nullptr)
        return ZR_FAILED(PORT, LSW_NULL_POINTER,
                         "get loop mode failed reason null pointer (unit = %u, port = %u).", unit, port);
    uint32_t on = 0;
    if (uint32_t ret = HAL_PORT_GetMacLoopbackZr(unit, port, &on); ret != LSW_OK)
        return ret;
    if (on != 0) {
        *mode = ZR_LOOP_MAC;
        return LSW_OK;
    }
    if (uint32_t ret = HAL_PORT_GetPCSLoopbackZr(unit, port, &on); ret != LSW_OK)
        return ret;
    if (on != 0) {
        *mode = ZR_LOOP_PCS;
        return LSW_OK;
    }
    if (uint32_t ret = HAL_PORT_GetRemoteLoopbackZr(unit, port, &on); ret != LSW_OK)
        return ret;
    *mode = on != 0 ? ZR_LOOP_REMOTE : ZR_LOOP_NONE;
    return LSW_OK;
}

uint32_t HAL_PORT_GetMacLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on)
{
    if (on == nullptr)
        return LSW_NULL_POINTER;
    uint32_t value = 0;
    if (uint32_t ret = l2sw_port_macLocalLoopbackEnable_get(unit, port, &value); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get macloopback failed (unit = %u, port = %u).", unit, port);
    *on = value == 1;
    return LSW_OK;
}

uint32_t HAL_PORT_GetPCSLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on)
{
    if (on == nullptr)
        return LSW_NULL_POINTER;
    // The vendor register has to be readable; its value does not count.
    uint32_t vendor = 0;
    uint32_t control = 0;
    uint32_t ret = l2sw_port_phyReg_get(unit, port, kPhyPcsLoopback, &vendor);
    ret += l2sw_port_phyReg_get(unit, port, kPhyControl, &control);
    if (ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get phyloopback failed (unit = %u, port = %u).", unit, port);
    *on = control >> kPhyControlLoopbackBit & 1U;
    return LSW_OK;
}

uint32_t HAL_PORT_GetRemoteLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on)
{
    if (on == nullptr)
        return LSW_NULL_POINTER;
    uint32_t value = 0;
    if (uint32_t ret = l2sw_port_phyReg_get(unit, port, kPhyRemoteLoopback, &value); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get remote loopback failed (unit = %u, port = %u)", unit, port);
    *on = value & 1U;
    return LSW_OK;
}

// ---- setting --------------------------------------------------------------------------------

uint32_t ZR_PORT_SetLoopback(uint32_t unit, uint32_t port, uint32_t mode)
{
    return HAL_PORT_SetLoopbackZr(unit, port, mode);
}

uint32_t HAL_PORT_SetLoopbackZr(uint32_t unit, uint32_t port, uint32_t mode)
{
    uint32_t ret = LSW_OK;
    switch (mode) {
    case ZR_LOOP_NONE:
        ret = HAL_PORT_SetLoopbackDisableZr(unit, port);
        break;
    case ZR_LOOP_MAC:
        ret = HAL_PORT_SetMacLoopbackZr(unit, port);
        break;
    case ZR_LOOP_PCS:
        ret = HAL_PORT_SetPCSLoopbackZr(unit, port);
        break;
    case ZR_LOOP_REMOTE:
    case ZR_LOOP_REMOTE_ALT:
        ret = HAL_PORT_SetRemoteLoopbackZr(unit, port);
        break;
    default:
        return ZR_FAILED(PORT, LSW_UNSUPPORTED, "unsupport loop mode (unit = %u, port = %u, mode = %u).", unit,
                         port, mode);
    }
    if (ret != LSW_OK)
        ZR_PRINT_FAILED(PORT, ret, "set loopback failed (unit = %u, port = %u).", unit, port);
    return LSW_OK;
}

uint32_t HAL_PORT_SetLoopbackDisableZr(uint32_t unit, uint32_t port)
{
    uint32_t ret = l2sw_port_macLocalLoopbackEnable_set(unit, port, 0);
    ret += l2sw_port_phyLocalLoopbackEnable_set(unit, port, 0);
    if (ret != 0)
        ZR_PRINT_FAILED(PORT, ret, "set loopback disable failed (unit = %u, port = %u).", unit, port);
    return LSW_OK;
}

uint32_t HAL_PORT_SetMacLoopbackZr(uint32_t unit, uint32_t port)
{
    if (uint32_t ret = l2sw_port_macLocalLoopbackEnable_set(unit, port, 1); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "set local phy loopback failed (unit = %u, port = %u).", unit, port);
    return LSW_OK;
}

uint32_t HAL_PORT_SetPCSLoopbackZr(uint32_t unit, uint32_t port)
{
    uint32_t control = 0;
    uint32_t ret = l2sw_port_phyReg_get(unit, port, kPhyControl, &control);
    ret += l2sw_port_phyReg_set(unit, port, kPhyControl, control | 1U << kPhyControlLoopbackBit);
    ret += l2sw_port_phyReg_set(unit, port, kPhyPcsLoopback, kPhyPcsLoopbackOn);
    if (ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "set local phy loopback failed (unit = %u, port = %u).", unit, port);
    return LSW_OK;
}

uint32_t HAL_PORT_SetRemoteLoopbackZr(uint32_t unit, uint32_t port)
{
    if (uint32_t ret = l2sw_port_phyReg_set(unit, port, kPhyRemoteLoopback, kPhyRemoteLoopbackOn); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "set remote loopback failed (unit = %u, port = %u).", unit, port);
    return LSW_OK;
}
