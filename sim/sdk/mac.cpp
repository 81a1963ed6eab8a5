// The SDK's address-table functions.
#include <algorithm>

#include "sim/sdk/sdk.h"

using namespace zrsim;

namespace
{

MacAddress address(const uint8_t *bytes)
{
    MacAddress mac;
    std::copy_n(bytes, mac.size(), mac.begin());
    return mac;
}

} // namespace

uint32_t l2sw_l2_init(uint32_t unit)
{
    return onChip({__func__, {unit}}, [](Chip &chip) { return chip.mac.init(); });
}

uint32_t l2sw_l2_table_clear(uint32_t unit)
{
    return onChip({__func__, {unit}}, [](Chip &chip) { return chip.mac.clear(); });
}

uint32_t l2sw_l2_aging_set(uint32_t unit, uint32_t time)
{
    return onChip({__func__, {unit, time}}, [&](Chip &chip) { chip.mac.setAgeTime(time); });
}

uint32_t l2sw_l2_aging_get(uint32_t unit, uint32_t *time)
{
    return onChip({__func__, {unit, time}}, [&](Chip &chip) { *time = chip.mac.ageTime(); });
}

uint32_t l2sw_l2_addr_add(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr)
{
    return onChip({__func__, {unit, Mac{mac}, addr}},
                  [&](Chip &chip) { return chip.mac.add(address(mac), *addr); });
}

uint32_t l2sw_l2_addr_del(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr)
{
    return onChip({__func__, {unit, Mac{mac}, addr}},
                  [&](Chip &chip) { return chip.mac.remove(address(mac), *addr); });
}

uint32_t l2sw_l2_addr_get(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr)
{
    return onChip({__func__, {unit, Mac{mac}, addr}},
                  [&](Chip &chip) { return chip.mac.find(address(mac), *addr); });
}

uint32_t l2sw_l2_ucastAddr_flush(uint32_t unit, L2FlushCfg *flush)
{
    return onChip({__func__, {unit, flush}}, [&](Chip &chip) { return chip.mac.flush(*flush); });
}

uint32_t l2sw_l2_entry_get(uint32_t unit, L2TableEntry *entry)
{
    return onChip({__func__, {unit, entry}}, [&](Chip &chip) { return chip.mac.read(*entry); });
}

uint32_t l2sw_l2_learningCnt_get(uint32_t unit, uint32_t port, uint32_t *count)
{
    return onChip({__func__, {unit, port, count}},
                  [&](Chip &chip) { return chip.mac.learnedCount(port, *count); });
}

uint32_t l2sw_l2_limitLearningCnt_set(uint32_t unit, uint32_t port, uint32_t limit)
{
    return onChip({__func__, {unit, port, limit}}, [&](Chip &chip) { return chip.mac.setLimit(port, limit); });
}

uint32_t l2sw_l2_limitLearningCnt_get(uint32_t unit, uint32_t port, uint32_t *limit)
{
    return onChip({__func__, {unit, port, limit}}, [&](Chip &chip) { return chip.mac.limit(port, *limit); });
}
