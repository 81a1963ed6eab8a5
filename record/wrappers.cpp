// Stands in for every function of the platform, and for every operation in the manager's tables: records the
// call and passes it on.
#include <stdarg.h>
#include <stdio.h>

#include "record/recorder.h"
#include "record/slots.h"

using namespace zrrecord;

namespace
{

constexpr uint64_t kNoSuchFunction = 0xFFFFFFFF; // status where the platform lacks the function
constexpr size_t kFormatted = 1024;              // of a printed line

// The platform's own function, looked up when it is first called.
template <class T> T *realOf(T *&cached, const char *name, T *self, const void *caller)
{
    T *found = __atomic_load_n(&cached, __ATOMIC_RELAXED);
    if (found == nullptr) {
        found = reinterpret_cast<T *>(realSymbol(name, reinterpret_cast<const void *>(self), caller));
        __atomic_store_n(&cached, found, __ATOMIC_RELAXED);
    }
    return found;
}

template <class R, class... A>
R passOn(char kind, const Function &function, R (*real)(A...), const void *caller, A... arguments)
{
    const uint64_t bits[] = {bitsOf(arguments)..., 0};
    Call call(kind, function, bits, caller);
    if constexpr (std::is_void_v<R>) {
        if (real != nullptr)
            real(arguments...);
        call.end(0);
    } else {
        const R result = real != nullptr ? real(arguments...) : valueOf<R>(kNoSuchFunction);
        call.end(bitsOf(result));
        return result;
    }
}

// ---- the manager's side ---------------------------------------------------------------------

// What the library filled in; the manager's own table holds the wrappers.
template <class Table> Table filled;
template <class Table> Table *hooked = nullptr;

template <auto Member> struct Wrapper;
template <class Table, class R, class... A, R (*Table::*Member)(A...)> struct Wrapper<Member> {
    static R call(A... arguments)
    {
        return passOn(kBegin, Slot<Member>::kFunction, filled<Table>.*Member, __builtin_return_address(0),
                      arguments...);
    }
};

#define ZR_WRAP_SLOT(table, slot, member, operation) real->member = Wrapper<&table::member>::call;
#define ZR_WRAP_GETTER(getter, table, slots)                                                                   \
    extern "C" ZR_EXPORT void *getter(uint32_t value)                                                          \
    {                                                                                                          \
        static decltype(&::getter) cached = nullptr;                                                           \
        const void *caller = __builtin_return_address(0);                                                      \
        auto *real = static_cast<table *>(                                                                     \
            passOn(kPlatform, kFunction_##getter, realOf(cached, #getter, &::getter, caller), caller, value)); \
        if (real == nullptr || !recording() || !inLibrary(caller))                                             \
            return real;                                                                                       \
        if (hooked<table> == nullptr) {                                                                        \
            hooked<table> = real;                                                                              \
            filled<table> = *real;                                                                             \
        }                                                                                                      \
        if (hooked<table> != real)                                                                             \
            return real;                                                                                       \
        slots(ZR_WRAP_SLOT) return &filled<table>;                                                             \
    }

} // namespace

ZR_TABLES(ZR_WRAP_GETTER)

// ---- the platform's side --------------------------------------------------------------------

#define ZR_WRAP(result, name, parameters, arguments)                                                           \
    extern "C" ZR_EXPORT result name parameters                                                                \
    {                                                                                                          \
        static decltype(&::name) cached = nullptr;                                                             \
        const void *caller = __builtin_return_address(0);                                                      \
        auto *real = realOf(cached, #name, &::name, caller);                                                   \
        return [&](auto... values) {                                                                           \
            return passOn(kPlatform, kFunction_##name, real, caller, values...);                               \
        } arguments;                                                                                           \
    }
ZR_PLAIN_CALLS(ZR_WRAP)

// Operations that the manager calls by name.
#define ZR_WRAP_EXPORTED(result, name, parameters, arguments)                                                  \
    extern "C" ZR_EXPORT result name parameters                                                                \
    {                                                                                                          \
        static decltype(&::name) cached = nullptr;                                                             \
        const void *caller = __builtin_return_address(0);                                                      \
        auto *real = realOf(cached, #name, &::name, caller);                                                   \
        return [&](auto... values) {                                                                           \
            return passOn(kBegin, kFunction_##name, real, caller, values...);                                  \
        } arguments;                                                                                           \
    }
ZR_EXPORTED_CALLS(ZR_WRAP_EXPORTED)

#define ZR_REAL(name)                                                                                          \
    static decltype(&::name) cached = nullptr;                                                                 \
    const void *caller = __builtin_return_address(0);                                                          \
    decltype(&::name) real = realOf(cached, #name, &::name, caller);

extern "C" {

ZR_EXPORT int memcpy_s(void *dest, size_t destMax, const void *src, size_t count)
{
    ZR_REAL(memcpy_s)
    return passOn(kPlatform, kFunction_memcpy_s, real, caller, dest, destMax, src, count);
}

ZR_EXPORT int memset_s(void *dest, size_t destMax, int c, size_t count)
{
    ZR_REAL(memset_s)
    return passOn(kPlatform, kFunction_memset_s, real, caller, dest, destMax, c, count);
}

ZR_EXPORT int strncpy_s(char *dest, size_t destMax, const char *src, size_t count)
{
    ZR_REAL(strncpy_s)
    return passOn(kPlatform, kFunction_strncpy_s, real, caller, dest, destMax, src, count);
}

ZR_EXPORT void *LSWM_MemAlloc(uint32_t size)
{
    ZR_REAL(LSWM_MemAlloc)
    const uint64_t bits[] = {size};
    Call call(kPlatform, kFunction_LSWM_MemAlloc, bits, caller);
    void *block = real != nullptr ? real(size) : nullptr;
    if (block != nullptr && recording())
        blockTaken(bitsOf(block));
    call.end(bitsOf(block));
    return block;
}

ZR_EXPORT void LSWM_MemFree(void *block)
{
    ZR_REAL(LSWM_MemFree)
    const uint64_t bits[] = {bitsOf(block)};
    Call call(kPlatform, kFunction_LSWM_MemFree, bits, caller);
    blockFreed(bits[0]); // before another thread may be given it
    if (real != nullptr)
        real(block);
    call.end(0);
}

#pragma GCC diagnostic ignored "-Wformat"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

// The format and its arguments go on as they came.
#define ZR_FORMATTED(format)                                                                                   \
    char text[kFormatted];                                                                                     \
    va_list arguments;                                                                                         \
    va_start(arguments, format);                                                                               \
    va_list words;                                                                                             \
    va_copy(words, arguments);                                                                                 \
    uint64_t w[kMostWords] = {};                                                                               \
    for (int i = 0; i < wordsOf(format); ++i)                                                                  \
        w[i] = va_arg(words, uint64_t);                                                                        \
    va_end(words);                                                                                             \
    vsnprintf(text, sizeof text, format, arguments);                                                           \
    va_end(arguments);
#define ZR_WORDS                                                                                               \
    w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7], w[8], w[9], w[10], w[11], w[12], w[13], w[14], w[15]
ZR_EXPORT uint32_t LSWM_ConfigFailPrint(uint32_t module, uint32_t reserved, uint32_t status, const char *format,
                                        ...)
{
    ZR_REAL(LSWM_ConfigFailPrint)
    ZR_FORMATTED(format)
    const uint64_t bits[] = {module, reserved, status, bitsOf(format)};
    Call call(kPlatform, kFunction_LSWM_ConfigFailPrint, bits, caller, text);
    const uint32_t result =
        real != nullptr ? real(module, reserved, status, format, ZR_WORDS) : valueOf<uint32_t>(kNoSuchFunction);
    call.end(result);
    return result;
}

ZR_EXPORT uint32_t LSWM_DebugInfoPrint(uint32_t module, uint32_t reserved, const char *format, ...)
{
    ZR_REAL(LSWM_DebugInfoPrint)
    ZR_FORMATTED(format)
    const uint64_t bits[] = {module, reserved, bitsOf(format)};
    Call call(kPlatform, kFunction_LSWM_DebugInfoPrint, bits, caller, text);
    const uint32_t result =
        real != nullptr ? real(module, reserved, format, ZR_WORDS) : valueOf<uint32_t>(kNoSuchFunction);
    call.end(result);
    return result;
}

ZR_EXPORT int sprintf_s(char *dest, size_t destMax, const char *format, ...)
{
    ZR_REAL(sprintf_s)
    ZR_FORMATTED(format)
    const uint64_t bits[] = {bitsOf(dest), destMax, bitsOf(format)};
    Call call(kPlatform, kFunction_sprintf_s, bits, caller, text);
    const int result = real != nullptr ? real(dest, destMax, format, ZR_WORDS) : -1;
    call.end(bitsOf(result));
    return result;
}

} // extern "C"

// ---- the services that the SDK calls the library by -----------------------------------------

namespace
{

SdkServices library;

uint32_t regRead(uint8_t unit, uint32_t address, uint32_t *value)
{
    return passOn(kService, kFunction_regRead, library.regRead, __builtin_return_address(0), unit, address,
                  value);
}

uint32_t regWrite(uint8_t unit, uint32_t address, uint32_t value)
{
    return passOn(kService, kFunction_regWrite, library.regWrite, __builtin_return_address(0), unit, address,
                  value);
}

} // namespace

extern "C" ZR_EXPORT uint32_t l2sw_fun_regist(const SdkServices *services)
{
    ZR_REAL(l2sw_fun_regist)
    SdkServices passed{};
    const SdkServices *given = services;
    if (services != nullptr && recording()) {
        passed = library = *services;
        passed.regRead = library.regRead != nullptr ? regRead : nullptr;
        passed.regWrite = library.regWrite != nullptr ? regWrite : nullptr;
        given = &passed;
    }
    return passOn(kPlatform, kFunction_l2sw_fun_regist, real, caller, given);
}
