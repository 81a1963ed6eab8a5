// VLAN settings of a port: PVID, ingress filter, egress tag mode.
#include "l2/vlan.h"

#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

uint32_t ZR_VLAN_SetPortPvid(uint32_t unit, uint32_t port, uint32_t vlan)
{
    return HAL_VLAN_SetPortPvidZr(unit, port, vlan);
}

uint32_t HAL_VLAN_SetPortPvidZr(uint32_t unit, uint32_t port, uint32_t vlan)
{
    if (uint32_t ret = l2sw_vlan_portPvid_set(unit, port, vlan, 0); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr set port pvid failed (unit:%u, port:%u, vlan:%u, retVal:0x%x).",
                              unit, port, vlan, ret);
    return LSW_OK;
}

uint32_t ZR_VLAN_GetPortPvid(uint32_t unit, uint32_t port, uint32_t *vlan)
{
    return HAL_VLAN_GetPortPvidZr(unit, port, vlan);
}

uint32_t HAL_VLAN_GetPortPvidZr(uint32_t unit, uint32_t port, uint32_t *vlan)
{
    if (vlan == nullptr)
        return LSW_NULL_POINTER;
    uint32_t pvid = 0;
    uint32_t priority = 0;
    if (uint32_t ret = l2sw_vlan_portPvid_get(unit, port, &pvid, &priority); ret != 0) {
        *vlan = 0;
        return ZR_CHIP_FAILED(VLAN, ret, "Zr get port pvid failed (unit:%u, port:%u, retVal:0x%x).", unit, port,
                              ret);
    }
    *vlan = pvid;
    return LSW_OK;
}

uint32_t ZR_VLAN_SetIgrPortFilter(uint32_t unit, uint32_t port, uint32_t enable)
{
    HAL_VLAN_SetPortFilterZr(unit, port, enable);
    return LSW_OK;
}

uint32_t HAL_VLAN_SetPortFilterZr(uint32_t unit, uint32_t port, uint32_t enable)
{
    if (uint32_t ret = l2sw_vlan_portIgrFilterEnable_set(unit, port, enable); ret != 0)
        return ZR_PRINT_FAILED(VLAN, ret, "ingress port filter set failed (unit:%u, port:%u, igrEn:%u).", unit,
                               port, enable);
    return LSW_OK;
}

uint32_t HAL_VLAN_SetTagModeZr(uint32_t unit, uint32_t port, uint32_t tagMode)
{
    constexpr uint32_t kLastTagMode = 3;
    if (tagMode > kLastTagMode)
        return ZR_PRINT_FAILED(VLAN, LSW_INVALID_ARGUMENT, "Zr tag mode illegal (unit:%u, port:%u, tagmode:%u)",
                               unit, port, tagMode);
    if (uint32_t ret = l2sw_vlan_tagMode_set(unit, port, tagMode); ret != 0)
        return ZR_PRINT_FAILED(VLAN, ret, "Zr set tag mode failed (unit:%u, port:%u, tagMode:%u, retVal:%d).",
                               unit, port, tagMode, static_cast<int>(ret));
    return LSW_OK;
}
