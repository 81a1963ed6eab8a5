// Walks over the manager's port sets.
#pragma once

#include <bit>

#include "base/unit.h"

namespace zr
{

// A port's bit in a one-word map, or in its word of a set. A map has no bits of its own for ports above 31:
// they share those of ports 0 to 31.
constexpr uint32_t portBit(uint32_t port)
{
    return 1U << (port % 32);
}

// The ports of a set in ascending order, 0 to 127: `for (uint32_t port : PortSet(unit, LSWM_SET_VALID))`.
// A unit without record or port map has no ports.
class PortSet
{
public:
    PortSet(uint32_t unit, uint32_t set)
    {
        const LswmUnitInfo *info = unitInfo(unit);
        set_ = info != nullptr && info->portMap != nullptr ? &info->portMap[set] : nullptr;
    }

    struct End {
    };

    class Iterator
    {
    public:
        explicit Iterator(const LswmPortSet *set) : set_(set), port_(firstFrom(set, 0)) {}
        uint32_t operator*() const { return port_; }
        Iterator &operator++()
        {
            port_ = firstFrom(set_, port_ + 1);
            return *this;
        }
        bool operator!=(End) const { return port_ != LSWM_PORTS; }

    private:
        const LswmPortSet *set_;
        uint32_t port_;
    };

    Iterator begin() const { return Iterator(set_); }
    End end() const { return {}; }

    // The lowest port, or LSWM_PORTS for an empty set.
    uint32_t first() const { return firstFrom(set_, 0); }

private:
    // The lowest port from `port` on, or LSWM_PORTS. Whole words without a port are skipped at once.
    static uint32_t firstFrom(const LswmPortSet *set, uint32_t port)
    {
        if (set == nullptr)
            return LSWM_PORTS;
        for (; port < LSWM_PORTS; port = (port / 32 + 1) * 32) {
            const uint32_t rest = set->word[port / 32] >> (port % 32);
            if (rest != 0)
                return port + static_cast<uint32_t>(std::countr_zero(rest));
        }
        return LSWM_PORTS;
    }

    const LswmPortSet *set_;
};

} // namespace zr
