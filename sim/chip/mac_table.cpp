#include "sim/chip/mac_table.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>

#include "sim/board/clock.h"
#include "sim/chip/chip.h"
#include "sim/chip/status.h"

namespace zrsim
{
namespace
{

constexpr uint32_t kResetAgeTime = 300;
constexpr uint16_t kRegIllegalMac = 0x355E; // bit 0: addresses that no station can have are not learned

uint32_t bucketOf(const MacAddress &mac, bool vlanKeyed, uint32_t vlan)
{
    uint64_t number = 0;
    for (uint8_t byte : mac)
        number = number << 8 | byte;
    return static_cast<uint32_t>((number + (vlanKeyed ? vlan : 0)) % MacTable::kBuckets);
}

bool isGroup(const MacAddress &mac)
{
    return (mac[0] & 1) != 0;
}

void describe(const MacEntry &entry, L2UcastAddr &addr)
{
    std::copy(entry.mac.begin(), entry.mac.end(), addr.mac);
    addr.vlanKeyed = entry.vlanKeyed;
    addr.vlan = entry.vlan;
    addr.port = entry.port;
    addr.srcBlock = entry.srcBlock;
    addr.dstBlock = entry.dstBlock;
    addr.isStatic = entry.isStatic;
}

// What a key without VLAN means: the address, wherever it is.
bool matchesKey(const MacEntry &entry, const MacAddress &mac, const L2UcastAddr &key)
{
    return entry.used && entry.mac == mac &&
           (key.vlanKeyed == 0 || (entry.vlanKeyed && entry.vlan == key.vlan));
}

} // namespace

void MacTable::reset()
{
    clear();
    limits_.fill(kEntries);
    ageTime_ = kResetAgeTime;
}

uint32_t MacTable::init()
{
    reset();
    return kSdkOk;
}

uint32_t MacTable::clear()
{
    entries_.fill({});
    learned_.fill(0);
    return kSdkOk;
}

uint32_t MacTable::used() const
{
    return static_cast<uint32_t>(
        std::count_if(entries_.begin(), entries_.end(), [](const MacEntry &entry) { return entry.used; }));
}

MacEntry *MacTable::exact(const MacAddress &mac, bool vlanKeyed, uint32_t vlan)
{
    MacEntry *bucket = &entries_[bucketOf(mac, vlanKeyed, vlan) * kWays];
    MacEntry *found = std::find_if(bucket, bucket + kWays, [&](const MacEntry &entry) {
        return entry.used && entry.mac == mac && entry.vlanKeyed == vlanKeyed &&
               (!vlanKeyed || entry.vlan == vlan);
    });
    return found != bucket + kWays ? found : nullptr;
}

// Where the key stands or can stand; null when its bucket is taken.
MacEntry *MacTable::place(const MacAddress &mac, bool vlanKeyed, uint32_t vlan)
{
    if (MacEntry *entry = exact(mac, vlanKeyed, vlan))
        return entry;
    MacEntry *bucket = &entries_[bucketOf(mac, vlanKeyed, vlan) * kWays];
    MacEntry *found = std::find_if(bucket, bucket + kWays, [](const MacEntry &entry) { return !entry.used; });
    return found != bucket + kWays ? found : nullptr;
}

void MacTable::set(MacEntry &entry, const MacEntry &value)
{
    auto counts = [](const MacEntry &at) { return at.used && !at.isStatic ? 1U : 0U; };
    learned_[entry.port] -= counts(entry);
    entry = value;
    learned_[entry.port] += counts(entry);
}

template <class Condition> uint32_t MacTable::drop(Condition goes)
{
    uint32_t dropped = 0;
    for (MacEntry &entry : entries_) {
        if (entry.used && goes(entry)) {
            set(entry, {});
            ++dropped;
        }
    }
    return dropped;
}

uint32_t MacTable::add(const MacAddress &mac, const L2UcastAddr &addr)
{
    if (addr.port >= kPorts)
        return kSdkBadPort;
    if (addr.vlan >= kVlans || isGroup(mac))
        return kSdkBadArgument;
    MacEntry *entry = place(mac, addr.vlanKeyed != 0, addr.vlan);
    if (entry == nullptr)
        return SDK_L2_TABLE_FULL;
    set(*entry, {true, addr.isStatic != 0, addr.vlanKeyed != 0, addr.srcBlock != 0, addr.dstBlock != 0, mac,
                 addr.vlan, addr.port, boardClock().ns});
    return kSdkOk;
}

uint32_t MacTable::remove(const MacAddress &mac, L2UcastAddr &addr)
{
    const L2UcastAddr key = addr;
    const uint32_t status = find(mac, addr);
    if (status == kSdkOk)
        drop([&](const MacEntry &entry) { return matchesKey(entry, mac, key); });
    return status;
}

uint32_t MacTable::find(const MacAddress &mac, L2UcastAddr &addr) const
{
    for (const MacEntry &entry : entries_) {
        if (matchesKey(entry, mac, addr)) {
            describe(entry, addr);
            return kSdkOk;
        }
    }
    return SDK_L2_ENTRY_NOT_FOUND;
}

uint32_t MacTable::read(L2TableEntry &entry) const
{
    if (entry.index >= kEntries)
        return kSdkBadArgument;
    const MacEntry &found = entries_[entry.index];
    if (!found.used)
        return SDK_L2_ENTRY_NOT_FOUND;
    std::copy(found.mac.begin(), found.mac.end(), entry.mac);
    entry.portMask = 1U << found.port;
    entry.vlan = found.vlan;
    entry.isStatic = found.isStatic;
    return kSdkOk;
}

uint32_t MacTable::flush(const L2FlushCfg &flush)
{
    if (flush.byPort == 0 && (flush.byVlan == 0 || flush.allPorts == 0))
        return kSdkBadArgument;
    if (flush.byPort != 0 && flush.port >= kPorts)
        return kSdkBadPort;
    if (flush.byVlan != 0 && flush.vlan >= kVlans)
        return kSdkBadArgument;
    drop([&](const MacEntry &entry) {
        return !entry.isStatic && (flush.byPort == 0 || entry.port == flush.port) &&
               (flush.byVlan == 0 || entry.vlan == flush.vlan);
    });
    return kSdkOk;
}

uint32_t MacTable::learnedCount(uint32_t port, uint32_t &count) const
{
    if (port >= kPorts)
        return kSdkBadPort;
    count = learned_[port];
    return kSdkOk;
}

uint32_t MacTable::setLimit(uint32_t port, uint32_t limit)
{
    if (port >= kPorts)
        return kSdkBadPort;
    if (limit > kEntries)
        return kSdkBadArgument;
    limits_[port] = limit;
    return kSdkOk;
}

uint32_t MacTable::limit(uint32_t port, uint32_t &limit) const
{
    if (port >= kPorts)
        return kSdkBadPort;
    limit = limits_[port];
    return kSdkOk;
}

const MacEntry *MacTable::lookup(const MacAddress &mac, uint32_t vlan) const
{
    auto *self = const_cast<MacTable *>(this);
    const MacEntry *keyed = self->exact(mac, true, vlan);
    return keyed != nullptr ? keyed : self->exact(mac, false, vlan);
}

const char *MacTable::learn(const MacAddress &mac, uint32_t vlan, uint32_t port)
{
    const bool refusesIllegal = (chip_->registers().held(kRegIllegalMac) & 1) != 0;
    if (refusesIllegal && (isGroup(mac) || mac == MacAddress{}))
        return "no station can have this address";
    if (chip_->stp.state(vlan, port) < StpStates::kLearning)
        return "the port is blocked by spanning tree";
    const MacEntry *known = lookup(mac, vlan);
    if (known != nullptr && known->fixed())
        return known->port == port ? nullptr : "the host fixed the address at another port";

    const bool perVlan = known != nullptr ? known->vlanKeyed : chip_->vlan.entry(vlan).independentLearning != 0;
    MacEntry *entry = place(mac, perVlan, vlan);
    if (entry == nullptr)
        return "the address's bucket is taken";
    if (!(entry->used && entry->port == port) && learned_[port] >= limits_[port])
        return limits_[port] == 0 ? "learning is off at the port" : "the port's learning limit is reached";
    set(*entry, {true, false, perVlan, false, false, mac, vlan, port, boardClock().ns});
    return nullptr;
}

uint32_t MacTable::age()
{
    if (ageTime_ == 0)
        return 0;
    const uint64_t now = boardClock().ns;
    return drop([&](const MacEntry &entry) {
        return !entry.fixed() && now - entry.seen >= uint64_t{ageTime_} * Clock::kSecond;
    });
}

// The ageing time, the limits that differ from the whole table, and the entries in the order of indexes.
void MacTable::dump(nlohmann::json &to) const
{
    to["ageTime"] = ageTime_;
    for (uint32_t port = 0; port < kPorts; ++port)
        if (limits_[port] != kEntries)
            to["learningLimits"][std::to_string(port)] = limits_[port];
    for (uint32_t index = 0; index < kEntries; ++index) {
        const MacEntry &entry = entries_[index];
        if (!entry.used)
            continue;
        nlohmann::json row = {{"index", index},
                              {"mac", fmt::format("{:02x}", fmt::join(entry.mac, ":"))},
                              {"vlan", entry.vlan},
                              {"port", entry.port},
                              {"static", entry.isStatic}};
        if (!entry.vlanKeyed)
            row["anyVlan"] = true;
        if (entry.srcBlock || entry.dstBlock)
            row["blocks"] = true;
        if (!entry.isStatic)
            row["age"] = (boardClock().ns - entry.seen) / Clock::kSecond;
        to["entries"].push_back(std::move(row));
    }
}

} // namespace zrsim
