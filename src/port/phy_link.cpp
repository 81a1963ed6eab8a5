// Link state of a port.
#include "port/phy.h"

#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"
#include "port/port.h"

namespace
{

constexpr uint32_t kPhyStatus = 1; // IEEE 802.3 clause 22.2.4.2
constexpr uint32_t kPhyStatusLinkBit = 2;

} // namespace

uint32_t ZR_PORT_GetLinkStatus(uint32_t unit, uint32_t port, uint32_t *link)
{
    if (uint32_t ret = HAL_PHY_GetLinkstatusZr(unit, port, link); ret != LSW_OK)
        return ZR_FAILED(PORT, ret, "ZR PHY GetLinkstatusZr ret = %u, unitId = %u, portId = %u", ret, unit,
                         port);
    return LSW_OK;
}

uint32_t HAL_PHY_GetLinkstatusZr(uint32_t unit, uint32_t port, uint32_t *link)
{
    if (link == nullptr)
        return LSW_NULL_POINTER;
    uint32_t ret = 0;
    if (l2sw_switch_isExtPort(unit, port) != 0) {
        // The bit holds a lost link until it is read: only the second reading gives the current state.
        uint32_t status = 0;
        ret = l2sw_port_phyReg_get(unit, port, kPhyStatus, &status);
        ret += l2sw_port_phyReg_get(unit, port, kPhyStatus, &status);
        *link = status >> kPhyStatusLinkBit & 1U;
    } else {
        SdkMacLink forced{};
        uint32_t flag = 0;
        ret = l2sw_port_macForceLinkExt_get(unit, port, &flag, &forced);
        *link = forced.link == 1;
    }
    if (ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get link status failed (unit = %u, port = %u).", unit, port);
    return LSW_OK;
}

uint32_t HAL_PHY_GetMacLinkStatusZr(uint32_t unit, uint32_t port, uint32_t *link)
{
    if (link == nullptr)
        return LSW_NULL_POINTER;
    SdkMacLink status{};
    if (uint32_t ret = l2sw_port_macStatus_get(unit, port, &status); ret != 0)
        return ZR_CHIP_FAILED(PORT, ret, "get mac link status failed (unit = %u, port = %u).", unit, port);
    *link = status.link == 1;
    return LSW_OK;
}

uint32_t ZR_PORT_LinkEvt(uint32_t, uint32_t)
{
    return LSW_OK;
}
