// Adding and deleting single addresses, and the static count that goes with them.
#include "l2/mac.h"

#include "base/port_set.h"
#include "base/print.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

void dropStaticCount(uint32_t unit)
{
    uint32_t &count = g_LswmL2Control.staticMacNum[unit];
    if (count != 0)
        --count;
}

} // namespace

uint32_t ZR_MAC_AddMac(uint32_t unit, const LswmMacEntry *entry)
{
    return HAL_MAC_AddMacZr(unit, entry);
}

uint32_t HAL_MAC_AddMacZr(uint32_t unit, const LswmMacEntry *entry)
{
    if (unit >= ZR_MAC_COUNTED_UNITS)
        return LSW_INVALID_ARGUMENT;
    if (entry == nullptr)
        return LSW_NULL_POINTER;

    const bool blocking = entry->type == LSWM_MAC_BLOCKING;
    L2UcastAddr addr{};
    if (blocking || entry->type == LSWM_MAC_STATIC) {
        if (HAL_MAC_HasExistedMacTabZr(unit, entry, entry->entryVlan) == 0)
            ++g_LswmL2Control.staticMacNum[unit];
        addr.isStatic = 1;
    }
    addr.vlanKeyed = blocking && entry->vlanSpecific == 0 ? 0 : 1;
    addr.vlan = entry->entryVlan;
    addr.port = entry->port;
    addr.srcBlock = blocking;
    addr.dstBlock = blocking;

    uint8_t mac[6];
    memcpy_s(mac, sizeof(mac), entry->mac, sizeof(entry->mac));
    const uint32_t ret = l2sw_l2_addr_add(unit, mac, &addr);
    if (ret == 0)
        return LSW_OK;
    if (addr.isStatic == 1)
        dropStaticCount(unit);
    if (ret == SDK_L2_TABLE_FULL) {
        ZR_PRINT_FAILED(
            MAC, ret,
            "Zr Mac add failed, l2table full or hash conflict (unit:%u, MAC:0x%02x%02x-%02x%02x-****).", unit,
            mac[0], mac[1], mac[2], mac[3]);
        return LSW_NO_RESOURCE;
    }
    ZR_TRACE(EVENT, MAC, "Zr add mac failed(unit:%u, retVal:0x%x, MAC:0x%02x%02x-%02x%02x-****).", unit, ret,
             mac[0], mac[1], mac[2], mac[3]);
    return LSW_CHIP_FAILED;
}

uint32_t ZR_MAC_SyncMacInsert(uint32_t unit, LswmMacEntry *entry)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (entry == nullptr)
        return LSW_NULL_POINTER;
    const uint32_t port = zr::PortSet(unit, LSWM_SET_CASCADE).first();
    if (port == LSWM_PORTS)
        return LSW_OK;
    entry->port = static_cast<uint16_t>(port);
    return HAL_MAC_AddMacZr(unit, entry);
}

uint32_t HAL_MAC_HasExistedMacTabZr(uint32_t unit, const LswmMacEntry *entry, uint32_t vlan)
{
    if (entry == nullptr)
        return 0;
    L2UcastAddr addr{};
    addr.vlan = vlan;
    if (uint32_t ret = l2sw_l2_addr_get(unit, entry->mac, &addr); ret != 0) {
        ZR_TRACE(DETAIL, VLAN, "Zr get mac by vlan mac failed(unit:%u, vlan:%u, retVal:0x%x).", unit, vlan,
                 ret);
        return 0;
    }
    return 1;
}

uint32_t ZR_MAC_DelByVlanMac(uint32_t unit, const LswmMacEntry *entry)
{
    return HAL_MAC_DelByVlanMacZr(unit, entry);
}

uint32_t HAL_MAC_DelByVlanMacZr(uint32_t unit, const LswmMacEntry *entry)
{
    if (unit >= ZR_MAC_COUNTED_UNITS)
        return LSW_INVALID_ARGUMENT;
    if (entry == nullptr)
        return LSW_NULL_POINTER;
    L2UcastAddr addr{};
    addr.vlanKeyed = 1;
    addr.vlan = entry->vlan;
    uint8_t mac[6];
    memcpy_s(mac, sizeof(mac), entry->mac, sizeof(entry->mac));
    const uint32_t ret = l2sw_l2_addr_del(unit, mac, &addr);
    if (ret != 0 && ret != SDK_L2_ENTRY_NOT_FOUND) {
        ZR_TRACE(DETAIL, MAC, "Zr del by vlan mac failed(unit:%u, retVal:0x%x).", unit, ret);
        return LSW_CHIP_FAILED;
    }
    if (addr.isStatic != 0)
        dropStaticCount(unit);
    return LSW_OK;
}

uint32_t ZR_MAC_DelByMac(uint32_t unit, const uint8_t *mac)
{
    return HAL_MAC_DelByMacZr(unit, mac);
}

uint32_t HAL_MAC_DelByMacZr(uint32_t unit, const uint8_t *mac)
{
    uint8_t address[6]{};
    if (int err = memcpy_s(address, sizeof(address), mac, sizeof(address)); err != 0)
        ZR_PRINT_FAILED(MAC, static_cast<uint32_t>(err), "Zr del mac by mac memcpy failed, err :%d", err);
    L2UcastAddr addr{};
    if (uint32_t ret = l2sw_l2_addr_del(unit, address, &addr); ret != 0) {
        ZR_TRACE(DETAIL, MAC, "Zr del mac by mac failed(unit:%u, retVal:0x%x).", unit, ret);
        return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

uint32_t ZR_MAC_DelAllMac(uint32_t unit)
{
    return HAL_MAC_DelAllMacZr(unit);
}

uint32_t HAL_MAC_DelAllMacZr(uint32_t unit)
{
    if (unit >= ZR_MAC_COUNTED_UNITS)
        return LSW_INVALID_ARGUMENT;
    g_LswmL2Control.staticMacNum[unit] = 0;
    return l2sw_l2_table_clear(unit);
}
