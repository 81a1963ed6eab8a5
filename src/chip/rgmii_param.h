// RGMII parameters on the chip and in the environment, as bring-up and the command line both see them.
#pragma once

#include "platform/abi.h"

namespace zr
{

inline constexpr uint32_t kRegRgmii1Param = 0x1307;
inline constexpr uint32_t kRegRgmii2Param = 0x13C5;

inline constexpr uint32_t kRgmiiEnvNameSize = 64;

// Forms the name of the unit's RGMII2 variable (an empty text if that fails) and reads the variable.
// False, with `*value` unspecified, when there is no such number.
bool rgmii2FromEnvironment(uint32_t unit, char (&name)[kRgmiiEnvNameSize], uint32_t *value);

} // namespace zr
