// The SDK's address-table functions, and what the world does to the table.
#include <fmt/format.h>

#include <algorithm>

#include "sim/chip/chip.h"
#include "sim/command.h"
#include "sim/pipeline/capture.h"
#include "sim/sdk/sdk.h"

namespace zrsim
{
namespace
{

MacAddress address(const uint8_t *bytes)
{
    MacAddress mac;
    std::copy_n(bytes, mac.size(), mac.begin());
    return mac;
}

void next(MacAddress &mac)
{
    for (auto byte = mac.rbegin(); byte != mac.rend() && ++*byte == 0; ++byte) {
    }
}

std::string learn(Chip &chip, const Words &words)
{
    const Frame bytes = frameFromHex(words.text(0));
    if (bytes.size() != 6)
        words.refuse(fmt::format("'{}' is no MAC address", words.text(0)));
    MacAddress mac = address(bytes.data());
    const uint32_t vlan = words.number(1, MacTable::kVlans - 1);
    const uint32_t port = words.number(2, MacTable::kPorts - 1);
    const uint32_t count = words.number(3, MacTable::kEntries, 1);
    if (chip.inReset())
        words.refuse("the chip is in reset");

    uint32_t learned = 0;
    std::string text;
    for (uint32_t i = 0; i < count; ++i, next(mac)) {
        if (const char *why = chip.mac.learn(mac, vlan, port); why == nullptr)
            ++learned;
        else if (text.empty())
            text = fmt::format("first not learned: {:02x}, {}\n", fmt::join(mac, ":"), why);
    }
    text = fmt::format("learned {} of {}\n", learned, count) + text;
    if (learned != count)
        throw BoardError{text};
    return text;
}

const BoardCommand kLearn("learn MAC VLAN PORT [COUNT]",
                          "frames come in from a station, or from so many with addresses in a row", learn);

const BoardCommand kTime("mac-time N", "lets N units of the ageing time pass over the address table",
                         [](Chip &chip, const Words &words) {
                             return fmt::format("{} addresses aged out\n", chip.mac.pass(words.number(0)));
                         });

} // namespace
} // namespace zrsim

using namespace zrsim;

uint32_t l2sw_l2_init(uint32_t unit)
{
    return onChip("l2sw_l2_init", unit, [](Chip &chip) { return chip.mac.init(); });
}

uint32_t l2sw_l2_table_clear(uint32_t unit)
{
    return onChip("l2sw_l2_table_clear", unit, [](Chip &chip) { return chip.mac.clear(); });
}

uint32_t l2sw_l2_aging_set(uint32_t unit, uint32_t time)
{
    return onChip(
        "l2sw_l2_aging_set", unit,
        [&](Chip &chip) {
            chip.mac.setAgeTime(time);
            return kSdkOk;
        },
        time);
}

uint32_t l2sw_l2_aging_get(uint32_t unit, uint32_t *time)
{
    return onChip(
        "l2sw_l2_aging_get", unit,
        [&](Chip &chip) {
            if (time == nullptr)
                return kSdkNull;
            *time = chip.mac.ageTime();
            return kSdkOk;
        },
        time);
}

uint32_t l2sw_l2_addr_add(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr)
{
    return onChip(
        "l2sw_l2_addr_add", unit,
        [&](Chip &chip) -> uint32_t {
            if (mac == nullptr || addr == nullptr)
                return kSdkNull;
            return chip.mac.add(address(mac), *addr);
        },
        Mac{mac}, addr);
}

uint32_t l2sw_l2_addr_del(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr)
{
    return onChip(
        "l2sw_l2_addr_del", unit,
        [&](Chip &chip) -> uint32_t {
            if (mac == nullptr || addr == nullptr)
                return kSdkNull;
            return chip.mac.remove(address(mac), *addr);
        },
        Mac{mac}, addr);
}

uint32_t l2sw_l2_addr_get(uint32_t unit, const uint8_t mac[6], L2UcastAddr *addr)
{
    return onChip(
        "l2sw_l2_addr_get", unit,
        [&](Chip &chip) -> uint32_t {
            if (mac == nullptr || addr == nullptr)
                return kSdkNull;
            return chip.mac.find(address(mac), *addr);
        },
        Mac{mac}, addr);
}

uint32_t l2sw_l2_ucastAddr_flush(uint32_t unit, L2FlushCfg *flush)
{
    return onChip(
        "l2sw_l2_ucastAddr_flush", unit,
        [&](Chip &chip) -> uint32_t { return flush == nullptr ? kSdkNull : chip.mac.flush(*flush); }, flush);
}

uint32_t l2sw_l2_entry_get(uint32_t unit, L2TableEntry *entry)
{
    return onChip(
        "l2sw_l2_entry_get", unit,
        [&](Chip &chip) -> uint32_t { return entry == nullptr ? kSdkNull : chip.mac.read(*entry); }, entry);
}

uint32_t l2sw_l2_learningCnt_get(uint32_t unit, uint32_t port, uint32_t *count)
{
    return onChip(
        "l2sw_l2_learningCnt_get", unit,
        [&](Chip &chip) -> uint32_t {
            return count == nullptr ? kSdkNull : chip.mac.learnedCount(port, *count);
        },
        port, count);
}

uint32_t l2sw_l2_limitLearningCnt_set(uint32_t unit, uint32_t port, uint32_t limit)
{
    return onChip(
        "l2sw_l2_limitLearningCnt_set", unit, [&](Chip &chip) { return chip.mac.setLimit(port, limit); }, port,
        limit);
}

uint32_t l2sw_l2_limitLearningCnt_get(uint32_t unit, uint32_t port, uint32_t *limit)
{
    return onChip(
        "l2sw_l2_limitLearningCnt_get", unit,
        [&](Chip &chip) -> uint32_t { return limit == nullptr ? kSdkNull : chip.mac.limit(port, *limit); },
        port, limit);
}
