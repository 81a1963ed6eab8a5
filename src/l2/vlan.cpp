// Life of a VLAN: start-up, creation, deletion, port maps.
#include "l2/vlan.h"

#include "base/memory.h"
#include "base/port_set.h"
#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

uint32_t ZR_VLAN_Init(uint32_t unit)
{
    const LswmUnitInfo *info = zr::unitInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (uint32_t ret = HAL_VLAN_InitZr(unit); ret != LSW_OK)
        return ZR_FAILED(VLAN, ret, "HAL VLAN InitZr unitId = %u", unit);
    if (uint32_t ret = HAL_VLAN_UntagDscpPriorityEnableZr(unit, 1); ret != LSW_OK)
        return ret;

    for (uint32_t port : zr::PortSet(unit, LSWM_SET_VALID)) {
        if (port != info->reservedPort) {
            HAL_VLAN_SetPortFilterZr(unit, port, 1);
            continue;
        }
        // The chip is assumed to start with every port in VLAN 1.
        if (uint32_t ret = ZR_VLAN_DelMember(unit, port, 1); ret != LSW_OK)
            return ZR_FAILED(VLAN, ret, "Zr vlan init del mrt failed.=(unit:%u, port:%u).", unit, port);
        HAL_VLAN_SetPortFilterZr(unit, port, 0);
    }
    return LSW_OK;
}

uint32_t HAL_VLAN_InitZr(uint32_t unit)
{
    if (uint32_t ret = l2sw_vlan_init(unit); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr vlan init failed (unit:%u, retVal:0x%x).", unit, ret);
    return LSW_OK;
}

uint32_t HAL_VLAN_UntagDscpPriorityEnableZr(uint32_t unit, uint32_t enable)
{
    if (uint32_t ret = l2sw_vlan_UntagDscpPriorityEnable_set(unit, enable); ret != 0)
        return ZR_CHIP_FAILED(
            VLAN, ret, "Zr vlan Untag Dscp Priority Enable failed. (retVal = %d, unit = %u, enable = %u).",
            static_cast<int>(ret), unit, enable);
    return LSW_OK;
}

uint32_t ZR_VLAN_Create(uint32_t unit, uint32_t vlan)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (uint32_t ret = HAL_VLAN_CreateZr(unit, vlan); ret != LSW_OK)
        return ZR_FAILED(VLAN, ret, "Zr vlan create failed.(unit:%u, vlan:%u).", unit, vlan);
    for (uint32_t port : zr::PortSet(unit, LSWM_SET_CASCADE)) {
        if (uint32_t ret = ZR_VLAN_AddMember(unit, port, vlan, 0); ret != LSW_OK)
            return ZR_FAILED(VLAN, ret, "Zr vlan add cascade port failed. (unit:%u, port:%u, vlanId:%u)", unit,
                             port, vlan);
    }
    return LSW_OK;
}

uint32_t HAL_VLAN_CreateZr(uint32_t unit, uint32_t vlan)
{
    VlanCfg cfg;
    zr::clear(cfg);
    cfg.independentLearning = 1;
    if (uint32_t ret = l2sw_vlan_set(unit, vlan, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr vlan create failed (unit:%u, vlan:%u, retVal:0x%x).", unit, vlan,
                              ret);
    return LSW_OK;
}

uint32_t ZR_VLAN_Delete(uint32_t unit, uint32_t vlan)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    for (uint32_t port : zr::PortSet(unit, LSWM_SET_CASCADE)) {
        if (uint32_t ret = ZR_VLAN_DelMember(unit, port, vlan); ret != LSW_OK)
            return ZR_FAILED(VLAN, ret, "Zr vlan del cascade port failed. (unit:%u, port:%u, vlanId:%u)", unit,
                             port, vlan);
    }
    if (uint32_t ret = HAL_VLAN_DestroyZr(unit, vlan); ret != LSW_OK)
        return ZR_FAILED(VLAN, ret, "Zr vlan destroy failed.(unit:%u, vlan:%u).", unit, vlan);
    return LSW_OK;
}

uint32_t HAL_VLAN_DestroyZr(uint32_t unit, uint32_t vlan)
{
    VlanCfg cfg;
    zr::clear(cfg);
    if (uint32_t ret = l2sw_vlan_set(unit, vlan, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr vlan destroy failed (unit:%u, vlan:%u, retVal:0x%x).", unit, vlan,
                              ret);
    return LSW_OK;
}

uint32_t ZR_VLAN_GetPortMap(uint32_t unit, uint32_t vlan, uint32_t *memberMask, uint32_t *untagMask)
{
    return HAL_VLAN_GetPortMapZr(unit, vlan, memberMask, untagMask);
}

uint32_t HAL_VLAN_GetPortMapZr(uint32_t unit, uint32_t vlan, uint32_t *memberMask, uint32_t *untagMask)
{
    if (memberMask == nullptr || untagMask == nullptr)
        return LSW_NULL_POINTER;
    VlanCfg cfg;
    zr::clear(cfg);
    if (uint32_t ret = l2sw_vlan_get(unit, vlan, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr get vlan portmap failed (unit:%u, vlan:%u, retVal:0x%x).", unit,
                              vlan, ret);
    *memberMask = cfg.memberMask;
    *untagMask = cfg.untagMask;
    return LSW_OK;
}
