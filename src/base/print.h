// The one form of check, print, return: the call, its line and the status stand together, and the literal at
// the call leads from a log line to the code.
//
//     if (uint32_t ret = l2sw_vlan_set(unit, vlan, &cfg); ret != 0)
//         return ZR_CHIP_FAILED(VLAN, ret, "Zr vlan create failed (unit:%u, vlan:%u, retVal:0x%x).", ...);
//
// They are macros so that the compiler checks the format against its arguments. `module` is the last word of
// an LSW_MODULE_* name, `level` of an LSW_TRACE_* name; `status` may be evaluated twice.
#pragma once

#include "platform/manager.h"

// Prints a failure line that carries `status`.
#define ZR_PRINT_FAILED(module, status, ...) LSWM_ConfigFailPrint(LSW_MODULE_##module, 0, status, __VA_ARGS__)

// The same, as the value to return: `status` itself, or LSW_CHIP_FAILED.
#define ZR_FAILED(module, status, ...) (ZR_PRINT_FAILED(module, status, __VA_ARGS__), uint32_t{status})
#define ZR_CHIP_FAILED(module, status, ...)                                                                    \
    (ZR_PRINT_FAILED(module, status, __VA_ARGS__), uint32_t{LSW_CHIP_FAILED})

// Prints a trace line when the manager has switched `level` on; nothing is formatted while it is off.
#define ZR_TRACE(level, module, ...)                                                                           \
    do {                                                                                                       \
        if (zr::traceOn(LSW_TRACE_##level))                                                                    \
            LSWM_DebugInfoPrint(LSW_MODULE_##module, 0, __VA_ARGS__);                                          \
    } while (false)

namespace zr
{

// Whether traces of `level` are on. Only the low 8 bits of the manager's result count.
inline bool traceOn(uint32_t level)
{
    return static_cast<uint8_t>(LSWM_PrintSwitchOn(level)) != 0;
}

} // namespace zr
