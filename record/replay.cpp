#include "record/replay.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <utility>

#include "record/slots.h"

using namespace zrrecord;

extern "C" {
ZR_EXPORT LswmUnitInfo g_lswmInfo[LSWM_UNITS];
ZR_EXPORT uint8_t l2sw_eco[3];
}

namespace
{

constexpr size_t kLine = 32 * 1024;
constexpr size_t kBuffer = 64 * 1024; // of a text that an operation writes
constexpr uint64_t kNoAnswer = 0;
constexpr int kMostArguments = 8;
constexpr uint64_t kUnknown = 1; // an address that nobody follows

zrreplay_answer_fn answer = nullptr;
zrreplay_find_fn findOperation = nullptr;
void *answerContext = nullptr;
LswmPortSet portMaps[LSWM_UNITS][LSWM_PORT_SETS];
SdkServices services;

void *library(const char *operation)
{
    return findOperation(operation, answerContext);
}

// ---- from text ------------------------------------------------------------------------------

struct Reader {
    const char *at;
    bool good = true;

    bool is(const char *word)
    {
        const size_t size = strlen(word);
        if (strncmp(at, word, size) != 0)
            return false;
        at += size;
        return true;
    }
    void need(const char *word) { good = is(word) && good; }
    uint64_t number()
    {
        char *end = nullptr;
        const uint64_t value = strtoull(at, &end, 0);
        good = good && end != at && *at != '-';
        at = end;
        return value;
    }
    size_t bytes(uint8_t *to, size_t most)
    {
        size_t count = 0;
        do {
            char *end = nullptr;
            const unsigned long value = strtoul(at, &end, 16);
            if (end != at + 2 || count == most) {
                good = false;
                return count;
            }
            to[count++] = static_cast<uint8_t>(value);
            at = end;
        } while (is(":"));
        return count;
    }
    size_t words(char *to, size_t width, size_t most)
    {
        size_t count = 0;
        need("[");
        while (good && !is("]")) {
            const uint64_t value = number();
            if (count == most || !good) {
                good = false;
                break;
            }
            memcpy(to + count++ * width, &value, width);
            is(" ");
        }
        return count;
    }
    void text(char *to, size_t size)
    {
        size_t used = 0;
        need("\"");
        while (good && *at != '"') {
            char c = *at++;
            if (c == '\0') {
                good = false;
                break;
            }
            if (c == '\\') {
                c = *at++;
                uint8_t byte = 0;
                if (c == 'x' && bytes(&byte, 1) == 1)
                    c = static_cast<char>(byte);
                else
                    c = c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
            }
            if (used + 1 < size)
                to[used++] = c;
        }
        need("\"");
        if (size != 0)
            to[used] = '\0';
    }
    uint64_t pointer();
    void record(char *to, const Type &type);
    void behind(char *to, const Type &type)
    {
        if (type.kind == Kind::Record) {
            record(to, type);
        } else {
            const uint64_t value = number();
            memcpy(to, &value, type.size);
        }
    }
};

void Reader::record(char *to, const Type &type)
{
    memset(to, 0, type.size);
    need("{");
    while (good && !is("}")) {
        const Field *field = type.fields;
        const Field *const end = field + type.fieldCount;
        for (; field != end; ++field) {
            const size_t size = strlen(field->name);
            if (strncmp(at, field->name, size) == 0 && at[size] == '=') {
                at += size + 1;
                break;
            }
        }
        if (field == end) {
            good = false;
            return;
        }
        char *value = to + field->offset;
        if (field->pointer || field->count == 1) {
            const uint64_t number = field->pointer ? pointer() : this->number();
            memcpy(value, &number, field->width);
        } else if (field->width == 1) {
            bytes(reinterpret_cast<uint8_t *>(value), field->count);
        } else {
            words(value, field->width, field->count);
        }
        is(" ");
    }
}

// ---- blocks of the manager's memory, by the numbers of the recording ------------------------

struct Block {
    uint32_t number;
    void *address;
    Block *next;
};
Block *blocks = nullptr;

uint64_t Reader::pointer()
{
    if (is("null"))
        return 0;
    if (is("ptr"))
        return kUnknown;
    need("m");
    const uint64_t wanted = number();
    for (const Block *block = blocks; block != nullptr; block = block->next)
        if (block->number == wanted)
            return bitsOf(block->address);
    return kUnknown;
}

const char *answered(const Function &function, const uint64_t *bits, const char *text = nullptr)
{
    static char line[kLine];
    Writer out{line, line + sizeof line - 1};
    writeCall(out, function, bits, text);
    *out.at = '\0';
    return answer != nullptr ? answer(line, answerContext) : nullptr;
}

// Puts the recorded result and outputs where the library expects them.
uint64_t take(const char *recorded, const Function &function, const uint64_t *bits)
{
    if (recorded == nullptr)
        return kNoAnswer;
    Reader in{recorded};
    uint64_t result = 0;
    if (in.is(" = "))
        result = function.result.kind == Kind::Number ? in.number() : in.pointer();
    while (in.good && in.is(" ")) {
        if (in.is("chain=[")) {
            FilterField **link = &reinterpret_cast<FilterCfg *>(static_cast<uintptr_t>(bits[1]))->head;
            for (; in.good && !in.is("]"); in.is(" ")) {
                const uint64_t node = in.pointer();
                if (node <= kUnknown)
                    break;
                *link = valueOf<FilterField *>(node);
                link = &(*link)->next;
            }
            *link = nullptr;
            continue;
        }
        const char *names = function.names;
        for (int i = 0; i < function.count; ++i) {
            const size_t size = strcspn(names, " ");
            if (strncmp(in.at, names, size) == 0 && in.at[size] == '=') {
                in.at += size + 1;
                if (function.types[i].kind == Kind::Buffer)
                    return result; // the bounded functions do their work themselves
                if (bits[i] != 0)
                    in.behind(reinterpret_cast<char *>(static_cast<uintptr_t>(bits[i])), function.types[i]);
                break;
            }
            names += size + (names[size] == ' ' ? 1 : 0);
        }
    }
    return result;
}

template <class R, class... A> R ask(const Function &function, R (*)(A...), A... arguments)
{
    const uint64_t bits[] = {bitsOf(arguments)..., 0};
    return valueOf<R>(take(answered(function, bits), function, bits));
}

// ---- the manager's side ---------------------------------------------------------------------

template <class Table> Table operations;

// The arguments of an operation as the recording has them, with what their pointers point to.
struct Given {
    uint64_t bits[kMostArguments + 1];
    alignas(8) char behind[kMostArguments][1024];
};

bool read(Reader &in, const Function &function, Given &given)
{
    static char buffer[kBuffer];
    static char texts[kMostArguments][kLine / 4];
    memset(&given, 0, sizeof given);
    const char *names = function.names;
    for (int i = 0; i < function.count && in.good; ++i) {
        const Type &type = function.types[i];
        const size_t size = strcspn(names, " ");
        in.good = strncmp(in.at, names, size) == 0 && in.at[size] == '=';
        if (!in.good)
            return false;
        in.at += size + 1;
        names += size + (names[size] == ' ' ? 1 : 0);
        given.bits[i] = bitsOf(static_cast<char *>(given.behind[i]));
        if (type.kind == Kind::Number)
            given.bits[i] = in.number();
        else if (type.kind == Kind::Pointer)
            given.bits[i] = in.pointer();
        else if (in.is("null"))
            given.bits[i] = 0;
        else if (type.kind == Kind::Buffer) {
            in.need("&");
            memset(buffer, 0, sizeof buffer);
            given.bits[i] = bitsOf(static_cast<char *>(buffer));
        } else if (type.kind == Kind::Text) {
            in.text(texts[i], sizeof texts[i]);
            given.bits[i] = bitsOf(static_cast<char *>(texts[i]));
        } else if (type.kind == Kind::Mac)
            in.bytes(reinterpret_cast<uint8_t *>(given.behind[i]), 6);
        else if (type.kind == Kind::List)
            in.words(given.behind[i], sizeof(uint32_t), 64);
        else
            in.behind(given.behind[i], type);
        if (i + 1 < function.count)
            in.need(", ");
        if (i > 0 && function.types[i - 1].kind == Kind::Buffer && given.bits[i] > sizeof buffer)
            in.good = false;
    }
    in.need(")");
    return in.good;
}

template <class R, class... A, size_t... I>
uint64_t callWith(R (*operation)(A...), const uint64_t *bits, std::integer_sequence<size_t, I...>)
{
    if constexpr (std::is_void_v<R>) {
        operation(valueOf<A>(bits[I])...);
        return 0;
    } else {
        return bitsOf(operation(valueOf<A>(bits[I])...));
    }
}

template <class R, class... A>
int run(const Function &function, R (*operation)(A...), Reader &in, char *end, size_t size)
{
    static_assert(sizeof...(A) <= kMostArguments);
    if (operation == nullptr)
        return 1;
    Given given;
    if (!read(in, function, given))
        return 2;
    char *saved = static_cast<char *>(malloc(savedSize(function) + 1));
    save(function, given.bits, saved);
    const uint64_t result = callWith(operation, given.bits, std::make_index_sequence<sizeof...(A)>());
    Writer out{end, end + size - 1};
    writeEnd(out, function, given.bits, result, saved);
    *out.at = '\0';
    free(saved);
    return 0;
}

bool takeValue(Reader &in)
{
    if (in.is("l2sw_eco(revisions=")) {
        in.words(reinterpret_cast<char *>(l2sw_eco), 1, LSWM_UNITS);
    } else {
        constexpr Type kInfo{Kind::Record, Way::In, sizeof(LswmUnitInfo), Fields<LswmUnitInfo>::kList,
                             sizeof(Fields<LswmUnitInfo>::kList) / sizeof(Field)};
        in.need("g_lswmInfo(unit=");
        const uint64_t unit = in.number();
        if (!in.good || unit >= LSWM_UNITS)
            return false;
        in.need(", info=");
        in.record(reinterpret_cast<char *>(&g_lswmInfo[unit]), kInfo);
        in.need(", portMap=");
        g_lswmInfo[unit].portMap = nullptr;
        if (!in.is("null")) {
            in.words(reinterpret_cast<char *>(portMaps[unit]), sizeof(uint32_t), LSWM_PORT_SETS * 4);
            g_lswmInfo[unit].portMap = portMaps[unit];
        }
    }
    in.need(")");
    return in.good;
}

} // namespace

// ---- what the bench calls -------------------------------------------------------------------

extern "C" {

ZR_EXPORT void zrreplay_on_call(zrreplay_answer_fn fn, zrreplay_find_fn find, void *context)
{
    answer = fn;
    findOperation = find;
    answerContext = context;
}

ZR_EXPORT int zrreplay_run(const char *call, char *end, size_t size)
{
    Reader in{call};
    *end = '\0';
    if (strncmp(call, "g_lswmInfo(", 11) == 0 || strncmp(call, "l2sw_eco(", 9) == 0)
        return takeValue(in) ? 0 : 2;
    if (in.is("regRead("))
        return run(kFunction_regRead, services.regRead, in, end, size);
    if (in.is("regWrite("))
        return run(kFunction_regWrite, services.regWrite, in, end, size);
#define ZR_RUN(table, slot, member, operation)                                                                 \
    if (in.is(#operation "("))                                                                                 \
        return run(Slot<&table::member>::kFunction, operations<table>.member, in, end, size);
    ZR_SLOTS(ZR_RUN)
#undef ZR_RUN
#define ZR_RUN(result, name, parameters, arguments)                                                            \
    if (in.is(#name "("))                                                                                      \
        return run(kFunction_##name, reinterpret_cast<decltype(&::name)>(library(#name)), in, end, size);
    ZR_EXPORTED_CALLS(ZR_RUN)
#undef ZR_RUN
    return 1;
}

ZR_EXPORT const char *zrreplay_layout(void)
{
    static char layout[2048];
    Writer out{layout, layout + sizeof layout - 1};
    writeLayout(out);
    *out.at = '\0';
    return layout;
}

} // extern "C"

// ---- the platform ---------------------------------------------------------------------------

#define ZR_ANSWER(result, name, parameters, arguments)                                                         \
    extern "C" ZR_EXPORT result name parameters                                                                \
    {                                                                                                          \
        return [&](auto... values) { return ask(kFunction_##name, &::name, values...); } arguments;            \
    }
ZR_PLAIN_CALLS(ZR_ANSWER)

#define ZR_GIVE_TABLE(getter, table, slots)                                                                    \
    extern "C" ZR_EXPORT void *getter(uint32_t)                                                                \
    {                                                                                                          \
        return &operations<table>;                                                                             \
    }
ZR_TABLES(ZR_GIVE_TABLE)

extern "C" {

ZR_EXPORT uint32_t l2sw_fun_regist(const SdkServices *given)
{
    if (given != nullptr)
        services = *given;
    return ask(kFunction_l2sw_fun_regist, &::l2sw_fun_regist, given);
}

ZR_EXPORT void *LSWM_MemAlloc(uint32_t size)
{
    const uint64_t bits[] = {size};
    const char *recorded = answered(kFunction_LSWM_MemAlloc, bits);
    if (recorded != nullptr && strstr(recorded, "null") != nullptr)
        return nullptr;
    auto *block = static_cast<Block *>(malloc(sizeof(Block)));
    *block = {0, malloc(size), blocks};
    if (recorded != nullptr && strncmp(recorded, " = m", 4) == 0)
        block->number = static_cast<uint32_t>(strtoul(recorded + 4, nullptr, 10));
    blocks = block;
    return block->address;
}

ZR_EXPORT void LSWM_MemFree(void *address)
{
    const uint64_t bits[] = {bitsOf(address)};
    answered(kFunction_LSWM_MemFree, bits);
    for (Block **block = &blocks; *block != nullptr; block = &(*block)->next) {
        if ((*block)->address != address)
            continue;
        Block *freed = *block;
        *block = freed->next;
        free(address);
        free(freed);
        return;
    }
}

// The bounded functions do what they are for: a recording does not hold all that they touch.
ZR_EXPORT int memcpy_s(void *dest, size_t destMax, const void *src, size_t count)
{
    ask(kFunction_memcpy_s, &::memcpy_s, dest, destMax, src, count);
    if (dest == nullptr || src == nullptr || count > destMax)
        return 1;
    memcpy(dest, src, count);
    return 0;
}

ZR_EXPORT int memset_s(void *dest, size_t destMax, int c, size_t count)
{
    ask(kFunction_memset_s, &::memset_s, dest, destMax, c, count);
    if (dest == nullptr || count > destMax)
        return 1;
    memset(dest, c, count);
    return 0;
}

ZR_EXPORT int strncpy_s(char *dest, size_t destMax, const char *src, size_t count)
{
    ask(kFunction_strncpy_s, &::strncpy_s, dest, destMax, src, count);
    if (dest == nullptr || src == nullptr || strnlen(src, count) >= destMax)
        return 1;
    const size_t size = strnlen(src, count);
    memcpy(dest, src, size);
    dest[size] = '\0';
    return 0;
}

#define ZR_FORMATTED(format)                                                                                   \
    char text[1024];                                                                                           \
    va_list arguments;                                                                                         \
    va_start(arguments, format);                                                                               \
    const int length = vsnprintf(text, sizeof text, format, arguments);                                        \
    va_end(arguments);

ZR_EXPORT int sprintf_s(char *dest, size_t destMax, const char *format, ...)
{
    ZR_FORMATTED(format)
    const uint64_t bits[] = {bitsOf(dest), destMax, bitsOf(format)};
    answered(kFunction_sprintf_s, bits, text);
    const bool fits = length >= 0 && static_cast<size_t>(length) < destMax;
    if (dest != nullptr && destMax != 0)
        memcpy(dest, fits ? text : "", fits ? static_cast<size_t>(length) + 1 : 1);
    return fits ? length : -1;
}

ZR_EXPORT uint32_t LSWM_ConfigFailPrint(uint32_t module, uint32_t reserved, uint32_t status, const char *format,
                                        ...)
{
    ZR_FORMATTED(format)
    static_cast<void>(length);
    const uint64_t bits[] = {module, reserved, status, bitsOf(format)};
    return valueOf<uint32_t>(
        take(answered(kFunction_LSWM_ConfigFailPrint, bits, text), kFunction_LSWM_ConfigFailPrint, bits));
}

ZR_EXPORT uint32_t LSWM_DebugInfoPrint(uint32_t module, uint32_t reserved, const char *format, ...)
{
    ZR_FORMATTED(format)
    static_cast<void>(length);
    const uint64_t bits[] = {module, reserved, bitsOf(format)};
    return valueOf<uint32_t>(
        take(answered(kFunction_LSWM_DebugInfoPrint, bits, text), kFunction_LSWM_DebugInfoPrint, bits));
}

} // extern "C"

namespace zrrecord
{

uint32_t blockNumber(uint64_t address)
{
    for (const Block *block = blocks; block != nullptr; block = block->next)
        if (bitsOf(block->address) == address)
            return block->number;
    return 0;
}

} // namespace zrrecord
