// Blocks come filled with a pattern, as a heap's blocks do: a user that forgets to clear one is found out.
#include "sim/manager/memory.h"

#include <cstdlib>
#include <cstring>

#include "platform/manager.h"
#include "sim/gate.h"

namespace zrsim
{

Memory &memory()
{
    static Memory instance;
    return instance;
}

void *Memory::alloc(uint32_t size)
{
    void *block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr)
        return nullptr;
    std::memset(block, 0xA5, size);
    live_.emplace(block, size);
    return block;
}

void Memory::free(void *block)
{
    if (live_.erase(block) == 0) {
        ++badFrees_;
        return;
    }
    std::free(block);
}

uint64_t Memory::liveBytes() const
{
    uint64_t bytes = 0;
    for (const auto &[block, size] : live_)
        bytes += size;
    return bytes;
}

void Memory::reset()
{
    for (const auto &[block, size] : live_)
        std::free(block);
    live_.clear();
    badFrees_ = 0;
}

} // namespace zrsim

using namespace zrsim;

void *LSWM_MemAlloc(uint32_t size)
{
    return pass({__func__, {size}}, [&] { return memory().alloc(size); });
}

void LSWM_MemFree(void *block)
{
    pass({__func__, {block}}, [&] { memory().free(block); });
}
