// The manager's memory with its books: who was given what, and what came back.
#pragma once

#include <cstdint>
#include <map>

namespace zrsim
{

class Memory
{
public:
    Memory() = default;
    Memory(const Memory &) = delete;
    Memory &operator=(const Memory &) = delete;
    ~Memory() { reset(); }

    void *alloc(uint32_t size);
    void free(void *block);

    unsigned liveBlocks() const { return static_cast<unsigned>(live_.size()); }
    uint64_t liveBytes() const;
    // Blocks given back that were not live.
    unsigned badFrees() const { return badFrees_; }
    void reset();

private:
    std::map<void *, uint32_t> live_;
    unsigned badFrees_ = 0;
};

Memory &memory();

} // namespace zrsim
