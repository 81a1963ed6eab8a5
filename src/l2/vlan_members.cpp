// Members of a VLAN: the VLAN table and the member-configuration table, kept in step.
#include "l2/vlan.h"

#include "base/memory.h"
#include "base/port_set.h"
#include "base/print.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

uint32_t ZR_VLAN_AddMember(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag)
{
    if (uint32_t ret = HAL_VLAN_AddMemberZr(unit, port, vlan, untag); ret != LSW_OK) {
        ZR_TRACE(DETAIL, VLAN, "Zr add vlan member failed(unit:%u, port:%u, vlan:%u, untag:%u)", unit, port,
                 vlan, untag);
        return ret;
    }
    if (uint32_t ret = HAL_VLAN_AddMbrTabZr(unit, port, vlan); ret != LSW_OK) {
        ZR_TRACE(DETAIL, VLAN, "Zr add vlan mbr failed(unit:%u, port:%u, vlan:%u)", unit, port, vlan);
        return ret;
    }
    return LSW_OK;
}

uint32_t HAL_VLAN_AddMemberZr(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag)
{
    VlanCfg cfg;
    zr::clear(cfg);
    if (uint32_t ret = l2sw_vlan_get(unit, vlan, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr add vlan member failed (unit:%u, port:%u, vlan:%u, retVal:0x%x).",
                              unit, port, vlan, ret);
    cfg.memberMask |= zr::portBit(port);
    if (untag != 0)
        cfg.untagMask |= zr::portBit(port);
    if (uint32_t ret = l2sw_vlan_set(unit, vlan, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr mbr create failed (unit:%u, port:%u, vlan:%u, retVal:0x%x).", unit,
                              port, vlan, ret);
    return LSW_OK;
}

uint32_t HAL_VLAN_AddMbrTabZr(uint32_t unit, uint32_t port, uint32_t vlan)
{
    VlanMbrCfg cfg;
    zr::clear(cfg);
    uint32_t index = 0;
    if (HAL_VLAN_CreateMbrIdxZr(unit, vlan, &index) != LSW_OK)
        return LSW_CHIP_FAILED;
    // An index that was just taken may have nothing to read: the configuration then starts empty.
    l2sw_vlan_mbrCfg_get(unit, index, &cfg);
    cfg.vlan = static_cast<uint16_t>(vlan);
    cfg.memberMask |= zr::portBit(port);
    if (uint32_t ret = l2sw_vlan_mbrCfg_set(unit, index, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr mbr create failed (unit:%u, port:%u, vlan:%u, retVal:0x%x).", unit,
                              port, vlan, ret);
    return LSW_OK;
}

uint32_t HAL_VLAN_CreateMbrIdxZr(uint32_t unit, uint32_t vlan, uint32_t *index)
{
    if (index == nullptr)
        return LSW_NULL_POINTER;
    uint32_t mbrIndex = 0;
    const uint32_t ret = l2sw_vlan_checkAndCreateMbr(unit, vlan, &mbrIndex);
    if (ret == SDK_MBR_TABLE_FULL) {
        ZR_PRINT_FAILED(VLAN, ret, "Zr mbr table is full (unit:%u, vlan:%u).", unit, vlan);
        return LSW_NO_RESOURCE;
    }
    if (ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr mbr create failed (unit:%u, vlan:%u, retVal:0x%x).", unit, vlan,
                              ret);
    *index = mbrIndex;
    return LSW_OK;
}

uint32_t ZR_VLAN_AddMultiMember(uint32_t unit, uint32_t vlan, const uint32_t *ports, const uint32_t *untags)
{
    if (ports == nullptr || untags == nullptr)
        return LSW_NULL_POINTER;
    for (uint32_t i = 0; i < ZR_VLAN_LIST_PORTS && ports[i] != ZR_VLAN_LIST_END; ++i) {
        if (uint32_t ret = ZR_VLAN_AddMember(unit, ports[i], vlan, untags[i]); ret != LSW_OK) {
            ZR_TRACE(DETAIL, VLAN, "Zr add multi member failed.(unit:%u, vlan:%u, port:%u)", unit, vlan,
                     ports[i]);
            return ret;
        }
    }
    return LSW_OK;
}

uint32_t ZR_VLAN_DelMember(uint32_t unit, uint32_t port, uint32_t vlan)
{
    // A VLAN that never had a member has no member configuration; its VLAN table entry counts.
    if (HAL_VLAN_DelMbrTabZr(unit, port, vlan) != LSW_OK)
        ZR_TRACE(DETAIL, VLAN, "Zr vlan del mrt table failed(unit:%u, port:%u, vlan:%u).", unit, port, vlan);
    if (uint32_t ret = HAL_VLAN_DelMemberZr(unit, port, vlan); ret != LSW_OK) {
        ZR_TRACE(DETAIL, VLAN, "Zr vlan del member failed (unit:%u, port:%u, vlan:%u).", unit, port, vlan);
        return ret;
    }
    return LSW_OK;
}

uint32_t HAL_VLAN_DelMemberZr(uint32_t unit, uint32_t port, uint32_t vlan)
{
    VlanCfg cfg;
    zr::clear(cfg);
    if (uint32_t ret = l2sw_vlan_get(unit, vlan, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr del vlan member failed (unit:%u, port:%u, vlan:%u, retVal:0x%x).",
                              unit, port, vlan, ret);
    cfg.memberMask &= ~zr::portBit(port);
    cfg.untagMask &= ~zr::portBit(port);
    if (uint32_t ret = l2sw_vlan_set(unit, vlan, &cfg); ret != 0)
        return ZR_CHIP_FAILED(
            VLAN, ret,
            "Zr del vlan member failed (unit:%u, vlan:%u, bitmap:0x%x, untag bitmap:0x%x, retVal:0x%x).", unit,
            vlan, cfg.memberMask, cfg.untagMask, ret);
    return LSW_OK;
}

uint32_t HAL_VLAN_DelMbrTabZr(uint32_t unit, uint32_t port, uint32_t vlan)
{
    uint32_t index = 0;
    if (uint32_t ret = l2sw_vlan_GetMbrIdx(unit, vlan, &index); ret != 0)
        return ZR_FAILED(VLAN, ret, "Zr get vlan mbr idx failed (unit:%u, vlan:%u, retVal:%u)", unit, vlan,
                         ret);
    VlanMbrCfg cfg;
    zr::clear(cfg);
    if (uint32_t ret = l2sw_vlan_mbrCfg_get(unit, index, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr get vlan mbr cfg failed (unit:%u, idx:%u, retVal:%u)", unit, index,
                              ret);
    cfg.memberMask &= ~zr::portBit(port);
    if (uint32_t ret = l2sw_vlan_mbrCfg_set(unit, index, &cfg); ret != 0)
        return ZR_CHIP_FAILED(VLAN, ret, "Zr del mbr member failed (unit:%u, vlan:%u, retVal:0x%x).", unit,
                              vlan, ret);
    return LSW_OK;
}
