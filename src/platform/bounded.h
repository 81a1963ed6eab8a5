// The platform's bounds-checked memory and string functions. After a failure nothing outside the destination
// has changed; what the destination holds is not known but for sprintf_s.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// Copies `count` bytes. 0 on success; fails for a null pointer and for a count above destMax.
int memcpy_s(void *dest, size_t destMax, const void *src, size_t count);

// Sets `count` bytes to `c`. 0 on success; fails as memcpy_s does.
int memset_s(void *dest, size_t destMax, int c, size_t count);

// Copies at most `count` characters and terminates the copy. 0 on success; fails for a null pointer and when
// text and terminator do not fit into destMax.
int strncpy_s(char *dest, size_t destMax, const char *src, size_t count);

// Formats into `dest`. Returns the number of characters written, without the terminator; -1 and an
// empty text when the result does not fit into destMax.
int sprintf_s(char *dest, size_t destMax, const char *format, ...) ZR_PRINTF_LIKE(3, 4);

ZR_EXTERN_C_END
