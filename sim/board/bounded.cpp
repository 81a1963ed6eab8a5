#include "platform/bounded.h"

#include "sim/gate.h"
#include "sim/manager/console.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

using zrsim::pass;

namespace
{

constexpr int kRefused = 22;

} // namespace

int memcpy_s(void *dest, size_t destMax, const void *src, size_t count)
{
    return pass({__func__, {dest, destMax, src, count}}, [&] {
        if (dest == nullptr || src == nullptr || count > destMax)
            return kRefused;
        std::memcpy(dest, src, count);
        return 0;
    });
}

int memset_s(void *dest, size_t destMax, int c, size_t count)
{
    return pass({__func__, {dest, destMax, c, count}}, [&] {
        if (dest == nullptr || count > destMax)
            return kRefused;
        std::memset(dest, c, count);
        return 0;
    });
}

int strncpy_s(char *dest, size_t destMax, const char *src, size_t count)
{
    void *to = dest; // shown by its address: the text is not there yet
    return pass({__func__, {to, destMax, src, count}}, [&] {
        if (dest == nullptr || src == nullptr)
            return kRefused;
        const size_t length = strnlen(src, count);
        if (length >= destMax)
            return kRefused;
        std::memcpy(dest, src, length);
        dest[length] = '\0';
        return 0;
    });
}

int sprintf_s(char *dest, size_t destMax, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const std::string text = zrsim::formatted(format, arguments);
    va_end(arguments);
    const int length = static_cast<int>(text.size());

    // Whatever status an injected failure carries, this function knows one failure only.
    constexpr int kDoesNotFit = -1;
    void *to = dest;
    const int written = pass({__func__, {to, destMax, text.c_str()}}, [&] {
        if (dest == nullptr || text.size() >= destMax)
            return kDoesNotFit;
        std::memcpy(dest, text.c_str(), text.size() + 1);
        return length;
    });
    if (written == length)
        return length;
    if (dest != nullptr && destMax != 0)
        *dest = '\0';
    return kDoesNotFit;
}
