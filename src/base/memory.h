// Cleared memory: records, and blocks of the manager's memory, which it allocates uncleared.
#pragma once

#include "platform/bounded.h"
#include "platform/manager.h"

namespace zr
{

// Clears every byte of a record that leaves the library, padding too, which `{}` may leave as it was.
template <typename T> void clear(T &record)
{
    memset_s(&record, sizeof(record), 0, sizeof(record));
}

// `bytes` cleared bytes, or null.
inline void *allocCleared(uint32_t bytes)
{
    void *block = LSWM_MemAlloc(bytes);
    if (block != nullptr)
        memset_s(block, bytes, 0, bytes);
    return block;
}

} // namespace zr
