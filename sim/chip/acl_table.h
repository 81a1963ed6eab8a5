// The ingress ACL. Given: 96 entries of eight 16-bit raw fields with ids and masks, a port bitmap and an
// action each; a rule takes as many consecutive entries as its raw fields need, eight to an entry; field
// selectors that pick packet words; 32 logging counters of 32 bits. The model's own choice:
//   - a MAC address takes three raw fields, an IPv4 address two, everything else one (priority and VLAN
//     share the outer tag's word); raw ids 64 to 79 are the words of field selectors 0 to 15, of which 6,
//     13 and 14 always hold type of service with protocol, and the layer-4 ports;
//   - the raw form does not tell TCP ports from UDP ports, so an entry keeps that beside its fields;
//   - a rule's action stands in its first entry, its ports in all; writing over entries takes them from
//     the rule that had them, deleting an empty entry succeeds, changing the ports of one fails;
//   - a rule that lost an entry matches nothing; of several rules that match, the lowest entry wins;
//   - a counter counts frames, wraps, and is set back only by a reset of the chip.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

#include "platform/chip_records.h"

namespace zrsim
{

class Chip;

struct AclRawField {
    uint32_t id = 0; // 0: not used
    uint16_t value = 0;
    uint16_t mask = 0;
};

struct AclEntry {
    uint32_t parts = 0; // entries of the rule; 0: empty
    uint32_t part = 0;  // which of them this is
    bool tcp = false;   // matches TCP frames only
    bool udp = false;
    std::array<AclRawField, SDK_RAW_FIELDS> fields{};
    uint32_t ports = 0;
    FilterAct action{};
};

struct AclSelector {
    uint32_t format = 0; // 0: not set up
    uint32_t offset = 0; // bytes
};

class AclTable
{
public:
    static constexpr uint32_t kEntries = 96;
    static constexpr uint32_t kCounters = 32;
    static constexpr uint32_t kSelectors = 16;
    static constexpr uint32_t kMeters = 64;
    enum Format : uint32_t {
        kFromFrame = 1,     // offset from the frame's first byte
        kFromIpPayload = 6, // offset from the first byte after the IPv4 header
    };

    // Host side of the SDK: needs no chip. `count` is the number of entries that the rule takes.
    static uint32_t chain(FilterCfg &cfg, FilterField &field);
    static uint32_t size(const FilterCfg &cfg, const FilterAct &act, uint32_t &count);

    uint32_t write(uint32_t id, const FilterCfg &cfg, const FilterAct &act, uint32_t &written);
    // An empty entry reads as a record that holds no rule.
    uint32_t read(uint32_t id, FilterCfgRaw &raw, FilterAct &act) const;
    uint32_t erase(uint32_t id);
    enum class Ports { Replace, Add, Remove };
    uint32_t changePorts(uint32_t id, Ports change, uint32_t ports);
    uint32_t select(uint32_t selector, uint32_t format, uint32_t offset);
    uint32_t counter(uint32_t id, uint32_t &count) const;

    const AclEntry &entry(uint32_t id) const { return entries_.at(id); }
    const AclSelector &selector(uint32_t id) const { return selectors_.at(id); }

    // A frame hit a rule that counts; returns what the counter holds now.
    uint32_t hit(uint32_t counter) { return ++counters_[counter]; }

    void attach(Chip &) {}
    void reset() { *this = AclTable{}; }
    void dump(nlohmann::json &to) const;

private:
    std::array<AclEntry, kEntries> entries_{};
    std::array<AclSelector, kSelectors> selectors_{};
    std::array<uint32_t, kCounters> counters_{};
};

} // namespace zrsim
