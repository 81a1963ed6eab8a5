// The wrappers of the slots and the platform's functions have their descriptions from here.
#pragma once

#include "record/calls.h"

namespace zrrecord
{

template <auto> inline constexpr const char *kOperation = nullptr;
template <auto> inline constexpr const char *kArguments = nullptr;
#define ZR_NAME_SLOT(table, slot, member, operation)                                                           \
    template <> inline constexpr const char *kOperation<&table::member> = #operation;                          \
    template <> inline constexpr const char *kArguments<&table::member> = kNames_##table##_##member;
ZR_SLOTS(ZR_NAME_SLOT)
#undef ZR_NAME_SLOT

// The tables with their getters.
#define ZR_TABLES(X)                                                                                           \
    X(LSW_Common_GetFuncPtr, ZrCommonOps, ZR_COMMON_SLOTS)                                                     \
    X(LSW_PORT_GetFuncPtr, ZrPortOps, ZR_PORT_SLOTS)                                                           \
    X(LSW_MAC_GetFuncPtr, ZrMacOps, ZR_MAC_SLOTS)                                                              \
    X(LSW_VLAN_GetFuncPtr, ZrVlanOps, ZR_VLAN_SLOTS)                                                           \
    X(LSW_QOS_GetFuncPtr, ZrQosOps, ZR_QOS_SLOTS)                                                              \
    X(LSW_ACL_GetFuncPtr, ZrAclOps, ZR_ACL_SLOTS)                                                              \
    X(LSW_HSEC_GetFuncPtr, ZrHsecOps, ZR_HSEC_SLOTS)                                                           \
    X(LSW_MC_GetFuncPtr, ZrMcOps, ZR_MC_SLOTS)                                                                 \
    X(LSW_STORMCTL_GetFuncPtr, ZrStormctlOps, ZR_STORMCTL_SLOTS)                                               \
    X(LSW_STP_GetFuncPtr, ZrStpOps, ZR_STP_SLOTS)                                                              \
    X(LSW_TRUNK_GetFuncPtr, ZrTrunkOps, ZR_TRUNK_SLOTS)                                                        \
    X(LSW_FMEA_GetFuncPtr, ZrFmeaOps, ZR_FMEA_SLOTS)

// Of an operation by its slot.
template <auto Member> struct Slot;
template <class Table, class R, class... A, R (*Table::*Member)(A...)> struct Slot<Member> {
    static constexpr auto kTypes = TypesOf<R(A...)>::template make<true>();
    static constexpr Function kFunction =
        describe<R(A...)>(kOperation<Member>, kArguments<Member>, kTypes.types, true);
};

// Of the platform's functions. What the compiler checks of a printing one does not matter here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-attributes"
#define ZR_DESCRIBE(name)                                                                                      \
    inline constexpr auto kTypes_##name = TypesOf<decltype(::name)>::make<false, writesOnly(#name)>();         \
    inline constexpr Function kFunction_##name =                                                               \
        describe<decltype(::name)>(#name, kNames_##name, kTypes_##name.types, false);
ZR_PLATFORM_CALLS(ZR_DESCRIBE)
#undef ZR_DESCRIBE
#pragma GCC diagnostic pop

// Of the operations that a manager calls by name.
#define ZR_DESCRIBE_EXPORTED(result, name, parameters, arguments)                                              \
    inline constexpr auto kTypes_##name = TypesOf<decltype(::name)>::make<true>();                             \
    inline constexpr Function kFunction_##name =                                                               \
        describe<decltype(::name)>(#name, kNames_##name, kTypes_##name.types, true);
ZR_EXPORTED_CALLS(ZR_DESCRIBE_EXPORTED)
#undef ZR_DESCRIBE_EXPORTED

// Of the services that the SDK is given.
inline constexpr auto kTypes_regRead = TypesOf<uint32_t(uint8_t, uint32_t, uint32_t *)>::make<true>();
inline constexpr Function kFunction_regRead = describe<uint32_t(uint8_t, uint32_t, uint32_t *)>(
    "regRead", "unit address value", kTypes_regRead.types, true);
inline constexpr auto kTypes_regWrite = TypesOf<uint32_t(uint8_t, uint32_t, uint32_t)>::make<true>();
inline constexpr Function kFunction_regWrite = describe<uint32_t(uint8_t, uint32_t, uint32_t)>(
    "regWrite", "unit address value", kTypes_regWrite.types, true);

// The arguments of a printing function, whose number its format tells: integers and addresses, each of which
// takes one word.
constexpr int kMostWords = 16;
inline int wordsOf(const char *format)
{
    int words = 0;
    for (; *format != '\0'; ++format) {
        if (*format != '%')
            continue;
        if (format[1] == '%')
            ++format;
        else if (words < kMostWords)
            ++words;
    }
    return words;
}

} // namespace zrrecord
