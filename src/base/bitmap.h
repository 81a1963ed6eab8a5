// Sets of small identifiers, kept as bits of 32-bit words inside the records.
#pragma once

#include <bit>
#include <stdint.h>

namespace zr
{

// A view of a record's bitmap: identifier i is bit (i mod 32) of word (i div 32). The capacity is that of
// the array, `Bitmap used(info.inUse)`: 256 identifiers for 8 words, 128 for 4. An identifier beyond it is
// never in the set and cannot be put there.
template <typename Word, uint32_t Words> class Bitmap
{
public:
    static constexpr uint32_t capacity = Words * 32;

    explicit Bitmap(Word (&words)[Words]) : words_(words) {}

    bool test(uint32_t id) const { return id < capacity && (words_[id / 32] & bit(id)) != 0; }

    void set(uint32_t id)
    {
        if (id < capacity) // GCOVR_EXCL_BR_LINE: every caller has found the identifier to be in bounds
            words_[id / 32] |= bit(id);
    }

    void clear(uint32_t id)
    {
        if (id < capacity)
            words_[id / 32] &= ~bit(id);
    }

    // The lowest identifier of [first, end) that is not in the set; `end` when there is none.
    uint32_t firstClear(uint32_t first, uint32_t end) const { return find(first, end, ~uint32_t{0}); }
    uint32_t firstClear(uint32_t end) const { return firstClear(0, end); }

    // The lowest identifier of [first, end) that is in the set; `end` when there is none.
    uint32_t firstSet(uint32_t first, uint32_t end) const { return find(first, end, 0); }

private:
    static constexpr uint32_t bit(uint32_t id) { return uint32_t{1} << (id % 32); }

    // A word at a time; `flip` turns the search for a set bit into one for a clear bit.
    uint32_t find(uint32_t first, uint32_t end, uint32_t flip) const
    {
        const uint32_t limit = end < capacity ? end : capacity;
        for (uint32_t id = first; id < limit; id = (id | 31) + 1) {
            const uint32_t left = (words_[id / 32] ^ flip) & (~uint32_t{0} << (id % 32));
            if (left != 0) {
                const uint32_t found = (id & ~uint32_t{31}) + static_cast<uint32_t>(std::countr_zero(left));
                return found < limit ? found : end;
            }
        }
        return end;
    }

    Word (&words_)[Words];
};

} // namespace zr
