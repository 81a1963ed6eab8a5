// The manager's print services. The model's own choice: LSWM_ConfigFailPrint returns the status that it was
// given, so that an operation that returns its result reports a failure as one.
#include <cstdarg>
#include <cstdio>

#include "platform/manager.h"
#include "sim/gate.h"
#include "sim/manager/console.h"
#include "sim/zrsim.h"

using namespace zrsim;

uint32_t LSWM_ConfigFailPrint(uint32_t module, uint32_t reserved, uint32_t status, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const std::string text = formatted(format, arguments);
    va_end(arguments);
    return pass({__func__, {module, reserved, status, text.c_str()}}, [&] {
        console().print({ZRSIM_LINE_FAIL, module, status, text});
        return status;
    });
}

uint32_t LSWM_DebugInfoPrint(uint32_t module, uint32_t reserved, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const std::string text = formatted(format, arguments);
    va_end(arguments);
    return pass({__func__, {module, reserved, text.c_str()}}, [&] {
        console().print({ZRSIM_LINE_TRACE, module, 0, text});
        return 0U;
    });
}

uint32_t LSWM_PrintSwitchOn(uint32_t level)
{
    return pass({__func__, {level}}, [&] { return level <= console().traceLevel() ? 1U : 0U; });
}

uint32_t LSWM_CmdCliPrint(const char *text)
{
    return pass({__func__, {text}}, [&] {
        console().print({ZRSIM_LINE_CLI, 0, 0, text});
        return 0U;
    });
}
