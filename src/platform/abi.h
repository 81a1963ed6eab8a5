// What every public header of the library needs to be read by C11 and by C++20 alike.
#pragma once

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define ZR_EXTERN_C_BEGIN extern "C" {
#define ZR_EXTERN_C_END }
#else
#define ZR_EXTERN_C_BEGIN
#define ZR_EXTERN_C_END
#endif

// Marks an operation or a record that the library exports. Everything else stays hidden.
#define ZR_EXPORT __attribute__((visibility("default")))

// The compiler checks a message against its arguments: both positions count from 1.
#define ZR_PRINTF_LIKE(text, first) __attribute__((format(printf, text, first)))

// A record's layout is shared byte for byte; these make a drift a compile error.
#define ZR_ASSERT_SIZE(type, bytes) static_assert(sizeof(type) == (bytes), #type " changed its size")
#define ZR_ASSERT_OFFSET(type, member, bytes)                                                                  \
    static_assert(offsetof(type, member) == (bytes), #type "." #member " moved")
