// A frame's way through the virtual chips, and their time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/zrbench/frame.h"

namespace zrbench
{

class Session;

// How a frame, or a copy of it, comes out of a port.
struct Exit {
    uint32_t unit;
    uint32_t port;
    bool tagged;
    uint32_t vlan;
    uint32_t priority;
    std::vector<uint8_t> bytes;
};

// What a stage of a chip decided about a frame that came in at a port of it, and by which entry.
struct Stage {
    uint32_t unit;
    uint32_t port;
    std::string name; // "dropped" where it ends
    std::string text;
};

struct Way {
    std::vector<Stage> stages;
    std::vector<Exit> out; // in order of unit and port
    std::vector<Exit> cpu; // trapped
    std::string dropped;   // the last reason; empty when there was none
};

// What comes out of some ports of a unit is written to a file.
struct Capture {
    uint32_t unit;
    uint32_t ports; // bit n = port n
    std::unique_ptr<CaptureWriter> file;
};

// Puts a frame into a port; flags as in sim/zrsim.h. Throws UsageError.
Way sendFrame(Session &session, uint32_t unit, uint32_t port, const Frame &frame, int flags);

// "1/3 untagged", "1/15 vlan 10 priority 5"
std::string showExit(const Exit &exit);
// Several of them; "-" for nowhere.
std::string showExits(const std::vector<Exit> &exits);

struct BoardTime {
    uint64_t ms = 0;
    uint64_t aged = 0; // addresses
};
// The time on all units once `ms` have passed. Throws UsageError.
BoardTime passTime(Session &session, uint32_t ms);

} // namespace zrbench
