// Reading entries by table index, and the table's fill.
#include "l2/mac.h"

#include "base/memory.h"
#include "base/port_set.h"
#include "base/print.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

// The chip's mask is one word: no entry names a port above 31.
uint32_t reportedPort(const LswmUnitInfo &info, uint32_t portMask)
{
    for (uint32_t port = 0; port < 32; ++port)
        if ((portMask >> port & 1U) != 0 && (info.port[port].flags & LSWM_PORT_MAC_REPORTED) != 0)
            return port;
    return ZR_MAC_NO_PORT;
}

} // namespace

uint32_t ZR_MAC_GetMacEntry(uint32_t unit, uint32_t queryType, const LswmMacQuery *query, LswmMacEntry *entry)
{
    if (queryType != ZR_MAC_QUERY_INDEX)
        return LSW_INVALID_ARGUMENT;
    if (query == nullptr)
        return LSW_NULL_POINTER;
    return HAL_MAC_GetMacByIdxZr(unit, query->index, entry);
}

uint32_t HAL_MAC_GetMacByIdxZr(uint32_t unit, uint32_t index, LswmMacEntry *entry)
{
    const LswmUnitInfo *info = zr::unitInfo(unit);
    if (info == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (entry == nullptr)
        return LSW_NULL_POINTER;

    L2TableEntry chipEntry;
    zr::clear(chipEntry);
    chipEntry.index = index;
    if (uint32_t ret = l2sw_l2_entry_get(unit, &chipEntry); ret != 0) {
        ZR_TRACE(DETAIL, MAC, "Get l2 entry failed(unit:%u, index:%u, retVal:0x%x).", unit, index, ret);
        return LSW_CHIP_FAILED;
    }

    entry->unit = zr::unit8(unit);
    entry->valid = 1;
    entry->entryVlan = chipEntry.vlan;
    if (chipEntry.isStatic == 1)
        entry->type = LSWM_MAC_STATIC;
    memcpy_s(entry->mac, sizeof(entry->mac), chipEntry.mac, sizeof(chipEntry.mac));

    const uint32_t port = reportedPort(*info, chipEntry.portMask);
    entry->port = static_cast<uint16_t>(port);
    if (port == ZR_MAC_NO_PORT)
        entry->noPort = 1;
    return LSW_OK;
}

uint32_t ZR_MAC_GetCapacity(uint32_t unit, uint32_t *capacity, uint32_t *used)
{
    return HAL_MAC_GetCapacityZr(unit, capacity, used);
}

uint32_t HAL_MAC_GetCapacityZr(uint32_t unit, uint32_t *capacity, uint32_t *used)
{
    if (zr::unitInfo(unit) == nullptr)
        return LSW_INVALID_ARGUMENT;
    if (capacity == nullptr || used == nullptr)
        return LSW_NULL_POINTER;

    const uint32_t staticNum = g_LswmL2Control.staticMacNum[unit];
    uint32_t sum = 0;
    for (uint32_t port : zr::PortSet(unit, LSWM_SET_VALID)) {
        uint32_t learned = 0;
        if (l2sw_l2_learningCnt_get(unit, port, &learned) == 0)
            sum += learned;
        else
            ZR_TRACE(DETAIL, MAC, "Zr get unit %u port %u learned mac failed.", unit, port);
    }
    sum += staticNum;
    if (sum > ZR_MAC_CAPACITY)
        sum = ZR_MAC_CAPACITY;

    *used = sum;
    *capacity = ZR_MAC_CAPACITY;
    ZR_TRACE(EVENT, MAC, "Zr get mac capacity (unit:%u, usedNum:%u, static:%u, capacity:%u)", unit, *used,
             staticNum, *capacity);
    return LSW_OK;
}
