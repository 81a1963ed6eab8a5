// Flushes: removing learned addresses by VLAN, by port, or by both.
#include "l2/mac.h"

#include "base/port_set.h"
#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

uint32_t ZR_MAC_DelByVlan(uint32_t unit, uint32_t vlan)
{
    return HAL_MAC_DelByVlanZr(unit, vlan);
}

uint32_t HAL_MAC_DelByVlanZr(uint32_t unit, uint32_t vlan)
{
    L2FlushCfg flush{};
    flush.byVlan = 1;
    flush.vlan = vlan;
    flush.allPorts = 1;
    if (uint32_t ret = l2sw_l2_ucastAddr_flush(unit, &flush); ret != 0) {
        ZR_TRACE(DETAIL, MAC, "Zr del mac by vlan failed(unit:%u, vlan:%u, retVal:0x%x).", unit, vlan, ret);
        return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

uint32_t ZR_MAC_DelByPort(uint32_t unit, const LswmMacEntry *entry)
{
    return HAL_MAC_DelByPortZr(unit, entry);
}

uint32_t HAL_MAC_DelByPortZr(uint32_t unit, const LswmMacEntry *entry)
{
    if (entry == nullptr)
        return LSW_NULL_POINTER;
    if (entry->unit != unit)
        return LSW_OK;
    L2FlushCfg flush{};
    flush.byPort = 1;
    flush.port = entry->port;
    if (uint32_t ret = l2sw_l2_ucastAddr_flush(entry->unit, &flush); ret != 0) {
        ZR_TRACE(DETAIL, MAC, "Zr del mac by port failed(unit:%u, port:%u, retVal:0x%x).", entry->unit,
                 entry->port, ret);
        return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

uint32_t ZR_MAC_DelByPortVlan(uint32_t unit, const LswmMacEntry *entry)
{
    return HAL_MAC_DelByPortVlanZr(unit, entry);
}

uint32_t HAL_MAC_DelByPortVlanZr(uint32_t unit, const LswmMacEntry *entry)
{
    if (entry == nullptr)
        return LSW_NULL_POINTER;
    if (entry->unit != unit)
        return LSW_OK;
    L2FlushCfg flush{};
    flush.byVlan = 1;
    flush.vlan = entry->vlan;
    flush.byPort = 1;
    flush.port = entry->port;
    if (uint32_t ret = l2sw_l2_ucastAddr_flush(entry->unit, &flush); ret != 0) {
        ZR_TRACE(DETAIL, MAC, "Zr del mac by port vlan failed(unit:%u, port:%u, vlan:%u, retVal:0x%x).",
                 entry->unit, entry->port, entry->vlan, ret);
        return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

uint32_t ZR_MAC_DelDynMac(uint32_t unit)
{
    for (uint32_t port : zr::PortSet(unit, LSWM_SET_VALID))
        HAL_MAC_DelDynMacZr(unit, port);
    return LSW_OK;
}

uint32_t HAL_MAC_DelDynMacZr(uint32_t unit, uint32_t port)
{
    L2FlushCfg flush{};
    flush.byPort = 1;
    flush.port = port;
    if (uint32_t ret = l2sw_l2_ucastAddr_flush(unit, &flush); ret != 0)
        return ZR_CHIP_FAILED(MAC, ret, "Hal delete dynamic mac failed(unit:%u, port:%u, retVal:0x%x).", unit,
                              port, ret);
    return LSW_OK;
}
