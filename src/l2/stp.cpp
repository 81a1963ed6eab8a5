#include "l2/stp.h"

#include "base/print.h"
#include "base/unit.h"
#include "l2/mac.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

uint32_t g_stgInstace;

namespace
{

// By the manager's state. A blocking port must not learn, so the limit goes with the state.
constexpr struct {
    uint32_t chipState;
    uint32_t learningLimit;
} kPortStates[] = {
    {3, ZR_MAC_CAPACITY}, // ZR_STP_FORWARDING
    {1, 0},               // ZR_STP_BLOCKING
};

constexpr uint32_t kFirstVlan = 1;
constexpr uint32_t kVlanEnd = 0xFFF; // reserved by IEEE 802.1Q

} // namespace

uint32_t ZR_STP_stgCreate(uint32_t, uint32_t *group)
{
    if (group == nullptr)
        return LSW_NULL_POINTER;
    *group = g_stgInstace;
    return LSW_OK;
}

uint32_t ZR_STP_SetVlanInstanceid(uint32_t unit, uint32_t instance, uint32_t vlan)
{
    return HAL_STP_SetVlanInstanceIdZr(unit, instance, vlan);
}

uint32_t HAL_STP_SetVlanInstanceIdZr(uint32_t unit, uint32_t instance, uint32_t vlan)
{
    if (uint32_t ret = l2sw_vlan_stg_set(unit, vlan, instance); ret != 0)
        return ZR_CHIP_FAILED(STP, ret, "Zr set VLAN : %u TO INSTANCE : %u FAIL ret : %d", vlan, instance,
                              static_cast<int>(ret));
    return LSW_OK;
}

uint32_t HAL_STP_GetVlanInstanceIdZr(uint32_t unit, uint32_t vlan, uint32_t *instance)
{
    if (instance == nullptr)
        return LSW_NULL_POINTER;
    if (uint32_t ret = l2sw_vlan_stg_get(unit, vlan, instance); ret != 0)
        return ZR_CHIP_FAILED(STP, ret, "Zr get instance by vlan %u fail ret : %d", vlan,
                              static_cast<int>(ret));
    return LSW_OK;
}

uint32_t ZR_STP_SetStpMode(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state)
{
    return HAL_STP_SetStpModeZr(unit, instance, port, state);
}

uint32_t HAL_STP_SetStpModeZr(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state)
{
    if (state != ZR_STP_FORWARDING && state != ZR_STP_BLOCKING)
        return ZR_FAILED(STP, LSW_INVALID_ARGUMENT, "Zr set unit: %u port:%u pvstate : %u param error", unit,
                         port, state);
    const auto &[chipState, learningLimit] = kPortStates[state];
    if (uint32_t ret = l2sw_stp_mstpState_set(unit, instance, port, chipState); ret != 0)
        return ZR_CHIP_FAILED(STP, ret, "Zr set unit : %u port : %u  INSTANCE : %u state: %u fail", unit, port,
                              instance, state);
    if (uint32_t ret = l2sw_l2_limitLearningCnt_set(unit, port, learningLimit); ret != 0)
        return ZR_CHIP_FAILED(STP, ret, "Set Stp Mode Zr failed (unit:%u, port:%u, state:%u, ret:0x%x).", unit,
                              port, state, ret);
    return LSW_OK;
}

uint32_t ZR_STP_FlushMacByPortInstance(uint32_t unit, uint32_t port, uint32_t instance)
{
    return HAL_STP_FlushMacByPortInstance(unit, port, instance);
}

uint32_t HAL_STP_FlushMacByPortInstance(uint32_t unit, uint32_t port, uint32_t instance)
{
    // The record's port has 16 bits: a wider number would come out as another port and flush that.
    if (port > UINT16_MAX)
        return LSW_INVALID_ARGUMENT;
    LswmMacEntry entry{};
    entry.unit = zr::unit8(unit);
    entry.port = static_cast<uint16_t>(port);
    for (uint32_t vlan = kFirstVlan; vlan < kVlanEnd; ++vlan) {
        uint32_t vlanInstance = 0;
        if (uint32_t ret = HAL_STP_GetVlanInstanceIdZr(unit, vlan, &vlanInstance); ret != LSW_OK)
            return ret;
        if (vlanInstance != instance)
            continue;
        entry.vlan = static_cast<uint16_t>(vlan);
        if (uint32_t ret = HAL_MAC_DelByPortVlanZr(unit, &entry); ret != LSW_OK)
            return ZR_CHIP_FAILED(STP, ret, "Zr flush mac by unit %u port %u instance %u fail ret : %d", unit,
                                  port, instance, static_cast<int>(ret));
    }
    return LSW_OK;
}

uint32_t ZR_STP_FlushMacByPortVlan(uint32_t unit, const LswmMacEntry *entry)
{
    return HAL_STP_FlushMacByPortVlan(unit, entry);
}

uint32_t HAL_STP_FlushMacByPortVlan(uint32_t unit, const LswmMacEntry *entry)
{
    if (entry == nullptr)
        return LSW_NULL_POINTER;
    if (uint32_t ret = HAL_MAC_DelByPortVlanZr(unit, entry); ret != LSW_OK)
        return ZR_CHIP_FAILED(STP, ret, "Zr flush mac by unit %u port %u vlan %u fail ret : %d", unit,
                              entry->port, entry->vlan, static_cast<int>(ret));
    return LSW_OK;
}

uint32_t ZR_STP_FlushMacByPort(uint32_t unit, const LswmMacEntry *entry)
{
    return HAL_STP_FlushMacByPort(unit, entry);
}

uint32_t HAL_STP_FlushMacByPort(uint32_t unit, const LswmMacEntry *entry)
{
    if (entry == nullptr)
        return LSW_NULL_POINTER;
    if (uint32_t ret = HAL_MAC_DelByPortZr(unit, entry); ret != LSW_OK)
        return ZR_CHIP_FAILED(STP, ret, "Zr flush mac by unit %u port %u fail ret : %d", unit, entry->port,
                              static_cast<int>(ret));
    return LSW_OK;
}
