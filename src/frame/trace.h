// The guard of every trace that the manager can switch off: nothing is formatted while it is off.
#pragma once

#include "platform/manager.h"

namespace zr
{

// `level` is LSW_TRACE_EVENT or LSW_TRACE_DETAIL. The manager's answer counts by its low 8 bits.
inline bool traceOn(uint32_t level)
{
    return static_cast<uint8_t>(LSWM_PrintSwitchOn(level)) != 0;
}

} // namespace zr
