// Address table and spanning tree through their tables beside hand-written code.
#include "bench/pair.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

using zrbench_pair::opaque;
using zrbench_pair::pair;
using zrbench_pair::tables;

uint32_t staticNum[LSWM_UNITS];

uint32_t addStatic(uint32_t unit, const LswmMacEntry *entry)
{
    L2UcastAddr asked{};
    asked.vlan = entry->entryVlan;
    if (l2sw_l2_addr_get(unit, entry->mac, &asked) != 0)
        ++staticNum[unit];
    L2UcastAddr addr{};
    addr.isStatic = 1;
    addr.vlanKeyed = 1;
    addr.vlan = entry->entryVlan;
    addr.port = entry->port;
    const uint32_t ret = l2sw_l2_addr_add(unit, entry->mac, &addr);
    if (ret == 0)
        return LSW_OK;
    --staticNum[unit];
    return ret == SDK_L2_TABLE_FULL ? LSW_NO_RESOURCE : LSW_CHIP_FAILED;
}

uint32_t deleteAddress(uint32_t unit, const LswmMacEntry *entry)
{
    L2UcastAddr addr{};
    addr.vlanKeyed = 1;
    addr.vlan = entry->vlan;
    const uint32_t ret = l2sw_l2_addr_del(unit, entry->mac, &addr);
    if (ret != 0 && ret != SDK_L2_ENTRY_NOT_FOUND)
        return LSW_CHIP_FAILED;
    if (addr.isStatic != 0 && staticNum[unit] != 0)
        --staticNum[unit];
    return LSW_OK;
}

uint32_t getCapacity(uint32_t unit, uint32_t *capacity, uint32_t *used)
{
    const uint32_t *valid = g_lswmInfo[unit].portMap[LSWM_SET_VALID].word;
    uint32_t sum = staticNum[unit];
    for (uint32_t port = 0; port < LSWM_PORTS; ++port) {
        uint32_t learned = 0;
        if ((valid[port / 32] >> port % 32 & 1) != 0 && l2sw_l2_learningCnt_get(unit, port, &learned) == 0)
            sum += learned;
    }
    *capacity = 2112;
    *used = sum < 2112 ? sum : 2112;
    LSWM_PrintSwitchOn(LSW_TRACE_EVENT);
    return LSW_OK;
}

uint32_t flushInstance(uint32_t unit, uint32_t port, uint32_t instance)
{
    for (uint32_t vlan = 1; vlan < 4095; ++vlan) {
        uint32_t bound = 0;
        if (l2sw_vlan_stg_get(unit, vlan, &bound) != 0)
            return LSW_CHIP_FAILED;
        if (bound != instance)
            continue;
        L2FlushCfg flush{};
        flush.byVlan = 1;
        flush.vlan = vlan;
        flush.byPort = 1;
        flush.port = port;
        if (l2sw_l2_ucastAddr_flush(unit, &flush) != 0)
            return LSW_CHIP_FAILED;
    }
    return LSW_OK;
}

constexpr LswmMacEntry staticEntry()
{
    LswmMacEntry entry{};
    entry.mac[5] = 1;
    entry.vlan = 10;
    entry.entryVlan = 10;
    entry.port = 3;
    entry.type = LSWM_MAC_STATIC;
    return entry;
}
LswmMacEntry entry = staticEntry();

const bool registered =
    pair(
        "mac add", [] { benchmark::DoNotOptimize(tables().mac.addMac(opaque(1U), &entry)); },
        [] { benchmark::DoNotOptimize(addStatic(opaque(1U), &entry)); }) &&
    pair(
        "mac delete", [] { benchmark::DoNotOptimize(tables().mac.delByVlanMac(opaque(1U), &entry)); },
        [] { benchmark::DoNotOptimize(deleteAddress(opaque(1U), &entry)); }) &&
    pair(
        "mac capacity",
        [] {
            uint32_t capacity = 0;
            uint32_t used = 0;
            benchmark::DoNotOptimize(tables().mac.getCapacity(opaque(1U), &capacity, &used));
        },
        [] {
            uint32_t capacity = 0;
            uint32_t used = 0;
            benchmark::DoNotOptimize(getCapacity(opaque(1U), &capacity, &used));
        }) &&
    pair(
        "flush by instance, no VLAN bound",
        [] {
            benchmark::DoNotOptimize(tables().stp.flushMacByPortInstance(opaque(1U), opaque(3U), opaque(5U)));
        },
        [] { benchmark::DoNotOptimize(flushInstance(opaque(1U), opaque(3U), opaque(5U))); }) &&
    pair(
        "flush by instance, every VLAN bound",
        [] {
            benchmark::DoNotOptimize(tables().stp.flushMacByPortInstance(opaque(1U), opaque(3U), opaque(0U)));
        },
        [] { benchmark::DoNotOptimize(flushInstance(opaque(1U), opaque(3U), opaque(0U))); });

} // namespace
