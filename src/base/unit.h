// A unit as the manager describes it, and as the chip SDK takes it.
#pragma once

#include "platform/manager.h"

namespace zr
{

// The unit's record, or null for a unit that the manager does not have.
inline const LswmUnitInfo *unitInfo(uint32_t unit)
{
    return unit < LSWM_UNITS ? &g_lswmInfo[unit] : nullptr;
}

// Some SDK calls take the unit in 8 bits: a unit above 255 acts on its low 8 bits there.
constexpr uint8_t unit8(uint32_t unit)
{
    return static_cast<uint8_t>(unit);
}

} // namespace zr
