// The unicast address table. Given: 2112 entries, read by index; an address is keyed with its VLAN or
// without; status 22 when the table is full or the address's bucket is taken; deleting what is not there
// returns 0x6000A, and a delete tells whether the entry was static; flushes take learned addresses only;
// a learning limit and a learned count per port; bit 0 of register 0x355E. The model's own choice:
//   - 528 buckets of four entries: the bucket is the address as a number, plus the VLAN when it is part of
//     the key, modulo 528. So 2112 addresses in a row fill the table, and five addresses 528 apart do not
//     fit together. Index = bucket times 4 plus place, unchanged while the entry lives;
//   - one key is one entry: adding it again replaces the entry. A lookup or a delete without VLAN key means
//     the address in every VLAN; one with VLAN key does not find an entry without;
//   - an address is learned with its VLAN in the key where the VLAN learns independently, else without (the
//     entry still tells in which VLAN it was seen). It is not learned when the port does not learn in its
//     spanning-tree state, its limit is reached, the bucket is taken, a static or blocking entry has the
//     address at another port or, with register bit 0 set, when it is a group or the zero address. An ordinary
//     entry that the host adds counts as learned, but the limit does not hold it back;
//   - the ageing time is in seconds; an entry that has not been seen for so long, and neither is static nor
//     blocks, ages out when time advances;
//     it is 300 after a reset, and 0 keeps all;
//   - initialisation empties the table and lets every port learn up to the whole table.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

#include "platform/chip_records.h"

namespace zrsim
{

class Chip;

using MacAddress = std::array<uint8_t, 6>;

struct MacEntry {
    bool used = false;
    bool isStatic = false;
    bool vlanKeyed = false;
    bool srcBlock = false;
    bool dstBlock = false;
    MacAddress mac{};
    uint32_t vlan = 0;
    uint32_t port = 0;
    uint64_t seen = 0; // ns: when it was last added or learned

    // Neither moves nor ages.
    bool fixed() const { return isStatic || srcBlock || dstBlock; }
};

class MacTable
{
public:
    static constexpr uint32_t kWays = 4;
    static constexpr uint32_t kBuckets = 528;
    static constexpr uint32_t kEntries = kBuckets * kWays;
    static constexpr uint32_t kPorts = 32;
    static constexpr uint32_t kVlans = 4096;

    uint32_t init();
    uint32_t clear();
    uint32_t add(const MacAddress &mac, const L2UcastAddr &addr);
    // Both fill the record from the (first) entry found.
    uint32_t remove(const MacAddress &mac, L2UcastAddr &addr);
    uint32_t find(const MacAddress &mac, L2UcastAddr &addr) const;
    uint32_t read(L2TableEntry &entry) const;
    uint32_t flush(const L2FlushCfg &flush);
    uint32_t learnedCount(uint32_t port, uint32_t &count) const;
    uint32_t setLimit(uint32_t port, uint32_t limit);
    uint32_t limit(uint32_t port, uint32_t &limit) const;
    void setAgeTime(uint32_t time) { ageTime_ = time; }
    uint32_t ageTime() const { return ageTime_; }

    const MacEntry &entry(uint32_t index) const { return entries_.at(index); }
    uint32_t used() const;

    uint32_t indexOf(const MacEntry &entry) const { return static_cast<uint32_t>(&entry - entries_.data()); }

    // The entry that a frame to or from `mac` in a VLAN meets, or null: one with the VLAN in its key first.
    const MacEntry *lookup(const MacAddress &mac, uint32_t vlan) const;
    // A frame from `mac` came in at a port. Null when the table knows the address there now, else why not.
    const char *learn(const MacAddress &mac, uint32_t vlan, uint32_t port);
    // Drops the entries that have aged out; returns how many.
    uint32_t age();

    void attach(Chip &chip) { chip_ = &chip; }
    void reset();
    void dump(nlohmann::json &to) const;

private:
    MacEntry *exact(const MacAddress &mac, bool vlanKeyed, uint32_t vlan);
    MacEntry *place(const MacAddress &mac, bool vlanKeyed, uint32_t vlan);
    template <class Condition> uint32_t drop(Condition goes);
    void set(MacEntry &entry, const MacEntry &value);

    Chip *chip_ = nullptr;
    std::array<MacEntry, kEntries> entries_{};
    std::array<uint32_t, kPorts> limits_{};
    std::array<uint32_t, kPorts> learned_{}; // entries that are not static, by port
    uint32_t ageTime_ = 0;
};

} // namespace zrsim
