// The manager's print services. What LSWM_ConfigFailPrint answers is the model's own choice: the status
// it was given, so that an operation that hands the answer up reports a failure as one.
#include <cstdarg>
#include <cstdio>

#include "platform/manager.h"
#include "sim/gate.h"
#include "sim/manager/console.h"
#include "sim/zrsim.h"

namespace zrsim
{
namespace
{

std::string format(const char *text, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    std::string formatted(static_cast<size_t>(std::vsnprintf(nullptr, 0, text, arguments)), '\0');
    std::vsnprintf(formatted.data(), formatted.size() + 1, text, again);
    va_end(again);
    return formatted;
}

} // namespace

Console &console()
{
    static Console instance;
    return instance;
}

void Console::print(const Line &line) const
{
    if (sink_)
        sink_(line);
    else if (line.kind == ZRSIM_LINE_CLI)
        std::fputs(line.text.c_str(), stdout);
    else if (line.kind == ZRSIM_LINE_FAIL)
        std::fprintf(stderr, "fail module %u status %u: %s\n", line.module, line.status, line.text.c_str());
    else
        std::fprintf(stderr, "trace module %u: %s\n", line.module, line.text.c_str());
}

} // namespace zrsim

using namespace zrsim;

uint32_t LSWM_ConfigFailPrint(uint32_t module, uint32_t reserved, uint32_t status, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const std::string text = zrsim::format(format, arguments);
    va_end(arguments);
    return pass(
        "LSWM_ConfigFailPrint",
        [&] {
            console().print({ZRSIM_LINE_FAIL, module, status, text});
            return status;
        },
        module, reserved, status, text.c_str());
}

uint32_t LSWM_DebugInfoPrint(uint32_t module, uint32_t reserved, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const std::string text = zrsim::format(format, arguments);
    va_end(arguments);
    return pass(
        "LSWM_DebugInfoPrint",
        [&] {
            console().print({ZRSIM_LINE_TRACE, module, 0, text});
            return 0U;
        },
        module, reserved, text.c_str());
}

uint32_t LSWM_PrintSwitchOn(uint32_t level)
{
    return pass(
        "LSWM_PrintSwitchOn", [&] { return level <= console().traceLevel() ? 1U : 0U; }, level);
}

uint32_t LSWM_CmdCliPrint(const char *text)
{
    return pass(
        "LSWM_CmdCliPrint",
        [&] {
            console().print({ZRSIM_LINE_CLI, 0, 0, text});
            return 0U;
        },
        text);
}
