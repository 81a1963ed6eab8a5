// Blocks of the manager's memory, which come uncleared.
#pragma once

#include "platform/bounded.h"
#include "platform/manager.h"

namespace zr
{

// `bytes` cleared bytes, or null.
inline void *allocCleared(uint32_t bytes)
{
    void *block = LSWM_MemAlloc(bytes);
    if (block != nullptr)
        memset_s(block, bytes, 0, bytes);
    return block;
}

} // namespace zr
