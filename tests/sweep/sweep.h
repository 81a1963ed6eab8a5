// The failure sweep: an operation is run once to count its platform calls, then again on a fresh device for
// every call with that call failing, once and together with all calls after it, with several statuses. Each
// time: the status must report the failure, outputs must stay untouched, nothing may leak, nothing that was
// not live may be freed, and the operation must then work.
//
// A failing case prints an id; ZR_SWEEP=id repeats that case alone.
#pragma once

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/kit/device.h"

namespace zrtest
{

// Memory handed to an operation as its outputs, filled with a pattern beforehand.
class Outputs
{
public:
    template <class T> T *make(size_t count = 1)
    {
        blocks_.push_back(std::vector<uint8_t>(count * sizeof(T), kPattern));
        return reinterpret_cast<T *>(blocks_.back().data());
    }
    bool untouched() const
    {
        for (const auto &block : blocks_)
            for (uint8_t byte : block)
                if (byte != kPattern)
                    return false;
        return true;
    }

private:
    static constexpr uint8_t kPattern = 0xEE;
    std::vector<std::vector<uint8_t>> blocks_;
};

struct SweepCase {
    const char *operation; // the exported name
    // Runs the operation on unit 1 of a prepared device and answers its status (0 when it has none).
    std::function<uint32_t(Outputs &out)> run;
    // Brings a running device to where the operation can be run.
    std::function<void()> prepare = [] {};
    // Platform calls whose failure the operation does not report. Prints, bounded functions and mutexes
    // never need naming.
    std::vector<std::string> tolerated = {};
    // Platform calls that the operation repeats: one failure may be survived or reported.
    std::vector<std::string> repeated = {};
    // The operation never reports a failure.
    bool reportsNothing = false;
    // Outputs that the operation clears or writes before it fails.
    bool writesOnFailure = false;
    // Blocks that a failed run may keep (arrays of identifier records live for ever).
    unsigned keeps = 0;
    // What the operation answers when it is run again after a failure.
    uint32_t again = 0;
    // Runs that cannot be repeated at all, because half of their work stands.
    bool notAgain = false;
};

// Adds the cases of one area; called from static initialisers: `static const bool added = addSweep({...});`
bool addSweep(std::vector<SweepCase> cases);
const std::vector<SweepCase> &sweepCases();

} // namespace zrtest
