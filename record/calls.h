// The calls that a recording holds: every function of the platform and every slot of the operation tables, with
// the names, types and directions of their arguments, and the text form in which they stand in a file.
// Needs the C library alone; allocates nothing.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <type_traits>

#include "frame/op_tables.h"
#include "platform/board.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace zrrecord
{

// A field of a record: `count` numbers of `width` bytes. Bytes in a row are one value.
struct Field {
    const char *name;
    uint16_t offset;
    uint8_t width;
    bool pointer;
    uint16_t count;
};

template <class Record> struct Fields;

template <class T> constexpr Field fieldOf(const char *name, size_t offset)
{
    using Element = std::remove_extent_t<T>;
    // An array of records is shown as its bytes.
    constexpr size_t kWidth = std::is_class_v<Element> ? 1 : sizeof(Element);
    return {name, static_cast<uint16_t>(offset), kWidth, std::is_pointer_v<T>, sizeof(T) / kWidth};
}

#define ZR_FIELD(record, member)                                                                               \
    fieldOf<decltype(static_cast<record *>(nullptr)->member)>(#member, offsetof(record, member))

#include "record_lists.h"

// Every byte of a record belongs to a field.
template <class Record> constexpr bool complete()
{
    size_t bytes = 0;
    for (const Field &field : Fields<Record>::kList)
        bytes += static_cast<size_t>(field.width) * field.count;
    return bytes == sizeof(Record);
}
#define ZR_COMPLETE(record) static_assert(complete<record>(), #record " has bytes without a field");
ZR_RECORDS(ZR_COMPLETE)
#undef ZR_COMPLETE

enum class Kind : uint8_t {
    Nothing,
    Number, // by value
    Text,   // const char *
    Buffer, // char * that is written; its size is the next argument
    Bytes,  // const void *; as many as the last argument says
    Mac,    // 6 bytes
    List,   // const uint32_t *: one word, or a list of ports up to its end
    Output, // a number behind a pointer
    Record,
    Pointer, // an address: null, a block of the manager's memory by its number, or "ptr"
};

// Which content of an argument is recorded: before the call, or after it when it changed or the call succeeded.
enum class Way : uint8_t { In, Out, Both };

struct Type {
    Kind kind = Kind::Nothing;
    Way way = Way::In;
    uint16_t size = 0; // of what is pointed to
    const Field *fields = nullptr;
    uint16_t fieldCount = 0;
};

struct Function {
    const char *name;
    const char *names; // of the arguments, separated by blanks
    const Type *types;
    uint8_t count;
    Type result;
    bool ports;  // its lists are lists of ports
    bool chains; // links nodes to the rule that is its second argument
};

template <class T, bool Operation, bool Getter> constexpr Type typeOf()
{
    using P = std::remove_cv_t<std::remove_pointer_t<T>>;
    constexpr bool kConst = std::is_const_v<std::remove_pointer_t<T>>;
    if constexpr (std::is_void_v<T>)
        return {};
    else if constexpr (!std::is_pointer_v<T>)
        return {Kind::Number, Way::In, sizeof(T)};
    else if constexpr (std::is_same_v<P, char>)
        return {kConst ? Kind::Text : Kind::Buffer, kConst ? Way::In : Way::Out};
    else if constexpr (std::is_void_v<P>)
        return {kConst ? Kind::Bytes : Kind::Pointer};
    else if constexpr (std::is_function_v<P> || std::is_same_v<P, SdkServices>)
        return {Kind::Pointer};
    else if constexpr (std::is_same_v<P, uint8_t>)
        return {Kind::Mac, Way::In, 6};
    else if constexpr (kConst && std::is_same_v<P, uint32_t>)
        return {Kind::List};
    else if constexpr (std::is_integral_v<P>)
        return {Kind::Output, Operation ? Way::Both : Way::Out, sizeof(P)};
    else {
        const Way way = kConst ? Way::In : Getter && !Operation ? Way::Out : Way::Both;
        return {Kind::Record, way, sizeof(P), Fields<P>::kList, sizeof(Fields<P>::kList) / sizeof(Field)};
    }
}

// Functions of the SDK that only write the records they are given. The others that "get" read an index or a key
// in them first.
constexpr bool writesOnly(const char *name)
{
    auto equal = [](const char *a, const char *b) {
        while (*a != '\0' && *a == *b)
            ++a, ++b;
        return *a == *b;
    };
    if (equal(name, "l2sw_l2_addr_get") || equal(name, "l2sw_l2_entry_get") ||
        equal(name, "l2swFilterIgrAclRuleNumGet"))
        return false;
    for (; *name != '\0'; ++name) {
        if (name[0] == '_' && name[1] == 'g' && name[2] == 'e' && name[3] == 't')
            return true;
    }
    return false;
}

// The types of a function's arguments, made from its declaration.
template <class Signature> struct TypesOf;
template <class R, class... A> struct TypesOf<R(A...)> {
    using Result = R;
    struct List {
        Type types[sizeof...(A) + 1];
    };
    template <bool Operation, bool Getter = false> static constexpr List make()
    {
        return {{typeOf<A, Operation, Getter>()..., {}}};
    }
    static constexpr uint8_t kCount = sizeof...(A);
};
template <class R, class... A> struct TypesOf<R(A..., ...)> : TypesOf<R(A...)> {
};

template <class Signature>
constexpr Function describe(const char *name, const char *names, const Type *types, bool operation)
{
    using Result = typename TypesOf<Signature>::Result;
    Function function{name,  names, types, TypesOf<Signature>::kCount, typeOf<Result, false, false>(),
                      false, false};
    if constexpr (std::is_same_v<Result, char *>)
        function.result.kind = operation ? Kind::Text : Kind::Pointer;
    function.chains = std::is_same_v<Signature, decltype(l2sw_filter_igrAcl_field_add)>;
    // The one operation with lists: its second argument after the VLAN.
    if (operation)
        for (const char *at = names; *at != '\0'; ++at)
            function.ports = function.ports || (at[0] == 'u' && at[1] == 'n' && at[2] == 't' && at[3] == 'a' &&
                                                at[4] == 'g' && at[5] == 's');
    return function;
}

// An argument's or a result's 64 bits.
template <class T> uint64_t bitsOf(T value)
{
    if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<uintptr_t>(value);
    else
        return static_cast<uint64_t>(value);
}

template <class T> T valueOf(uint64_t bits)
{
    if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<T>(static_cast<uintptr_t>(bits));
    else if constexpr (!std::is_void_v<T>)
        return static_cast<T>(bits);
}

// Text that stops at the end of its space.
struct Writer {
    char *at;
    char *end;

    void put(char c)
    {
        if (at < end)
            *at++ = c;
    }
    void text(const char *words)
    {
        while (*words != '\0')
            put(*words++);
    }
    void decimal(uint64_t number, int digits = 1);
    void number(uint64_t number); // hexadecimal above 9999
    bool full() const { return at >= end; }
};

// The number under which a block of the manager's memory is known; 0: none.
uint32_t blockNumber(uint64_t address);

// Where the contents before a call are kept: a copy of everything that Way::Both and Way::Out name.
size_t savedSize(const Function &function);
void save(const Function &function, const uint64_t *bits, char *copy);

// "name(unit=0, cfg={memberMask=3})"
void writeCall(Writer &out, const Function &function, const uint64_t *bits, const char *text = nullptr);
// " = 0 cfg={memberMask=1}": the result and what is new behind the pointers.
void writeEnd(Writer &out, const Function &function, const uint64_t *bits, uint64_t result, const char *saved);
// The unit information and the chip revisions, in the form of a call.
void writeUnitInfo(Writer &out, uint32_t unit, const LswmUnitInfo &info);

// The sizes that the records have on this machine.
void writeLayout(Writer &out);

} // namespace zrrecord
