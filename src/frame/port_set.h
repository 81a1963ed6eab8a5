// Walks over the manager's port sets and guarded access to its unit information.
#pragma once

#include <bit>

#include "platform/manager.h"

namespace zr
{

// The unit's record, or null for a unit that the manager does not have.
inline const LswmUnitInfo *unitInfo(uint32_t unit)
{
    return unit < LSWM_UNITS ? &g_lswmInfo[unit] : nullptr;
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

    class Iterator
    {
    public:
        Iterator(const LswmPortSet *set, uint32_t port) : set_(set), port_(port) { skipAbsent(); }
        uint32_t operator*() const { return port_; }
        Iterator &operator++()
        {
            ++port_;
            skipAbsent();
            return *this;
        }
        bool operator!=(const Iterator &other) const { return port_ != other.port_; }

    private:
        // Whole words without a port are skipped at once.
        void skipAbsent()
        {
            while (port_ < LSWM_PORTS) {
                const uint32_t rest = set_->word[port_ / 32] >> (port_ % 32);
                if (rest != 0) {
                    port_ += static_cast<uint32_t>(std::countr_zero(rest));
                    return;
                }
                port_ = (port_ / 32 + 1) * 32;
            }
        }
        const LswmPortSet *set_;
        uint32_t port_;
    };

    Iterator begin() const { return {set_, set_ != nullptr ? 0U : static_cast<uint32_t>(LSWM_PORTS)}; }
    Iterator end() const { return {set_, LSWM_PORTS}; }

private:
    const LswmPortSet *set_;
};

} // namespace zr
