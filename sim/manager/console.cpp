#include "sim/manager/console.h"

#include <cstdio>

#include "sim/zrsim.h"

namespace zrsim
{

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

std::string formatted(const char *format, va_list arguments) noexcept
{
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    try {
        std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
        std::vsnprintf(text.data(), text.size() + 1, format, arguments);
        return text;
    } catch (...) {
        return {};
    }
}

} // namespace zrsim
