// The map of logic to chip identifiers under the meter and the statistics records: a flat array of
// {logicId, chipId, valid} entries in which the entry of lowest index wins.
#pragma once

#include "base/memory.h"

namespace zr
{

// A view of `count` entries that a record owns.
template <typename Entry> class IdMap
{
public:
    IdMap(Entry *entries, uint32_t count) : entries_(entries), count_(count) {}

    // The valid entry of lowest index with that identifier, or null.
    Entry *findLogic(uint32_t logicId) const
    {
        return find([=](const Entry &entry) { return entry.valid == 1 && entry.logicId == logicId; });
    }
    Entry *findChip(uint32_t chipId) const
    {
        return find([=](const Entry &entry) { return entry.valid == 1 && entry.chipId == chipId; });
    }

    // Takes the free entry of lowest index for the pair; null when all are taken.
    Entry *take(uint32_t logicId, uint32_t chipId) const
    {
        Entry *entry = find([](const Entry &candidate) { return candidate.valid == 0; });
        if (entry != nullptr) {
            entry->logicId = logicId;
            entry->chipId = chipId;
            entry->valid = 1;
        }
        return entry;
    }

    uint32_t indexOf(const Entry *entry) const { return static_cast<uint32_t>(entry - entries_); }

private:
    template <typename Match> Entry *find(Match match) const
    {
        for (uint32_t i = 0; i < count_; ++i)
            if (match(entries_[i]))
                return &entries_[i];
        return nullptr;
    }

    Entry *entries_;
    uint32_t count_;
};

// `count` cleared entries from the manager's memory, or null: also for a count whose size in bytes does not fit
// into the 32 bits that the manager takes.
template <typename Entry> Entry *allocIdMap(uint32_t count)
{
    const uint64_t bytes = static_cast<uint64_t>(count) * sizeof(Entry);
    if (bytes > UINT32_MAX)
        return nullptr;
    return static_cast<Entry *>(allocCleared(static_cast<uint32_t>(bytes)));
}

} // namespace zr
