// One frame's passage through one unit: what the stages have found out so far, and how they tell it.
#pragma once

#include <cstdint>
#include <fmt/format.h>
#include <optional>
#include <string>

#include "sim/chip/chip.h"
#include "sim/pipeline/frame.h"
#include "sim/pipeline/reasons.h"

namespace zrsim
{

// A mask of ports as text: "0-4,15", "-" for none. Formed only when it is shown.
struct PortList {
    uint32_t mask;
};
std::string show(const PortList &list);

// How a frame leaves a unit's port, as a person wants to know it.
struct Departure {
    uint32_t unit;
    uint32_t port;
    bool toCpu; // trapped; else switched
    bool tagged;
    uint32_t vlan;
    uint32_t dot1p;
    uint32_t queue;
    std::span<const uint8_t> bytes; // good only while it is told
};

// Is told what becomes of a frame while it happens.
class Witness
{
public:
    virtual ~Witness() = default;
    // Lines are formed, and stage() called, only for a witness that wants them.
    virtual bool wantsStages() const { return false; }
    virtual void stage(uint32_t, uint32_t, const char *, const std::string &) {}
    // It came out of the world's end of a port, or reached the host.
    virtual void left(const Departure &departure) = 0;
    virtual void dropped(uint32_t unit, uint32_t port, Reason reason) = 0;
};

struct Passage {
    Chip &chip;
    uint32_t port; // that it came in at
    const Frame &frame;
    bool fcsGood;
    Witness &witness;
    const bool told = witness.wantsStages();

    // What the stages find, in their order.
    Reason reason = Reason::None;
    bool trapped = false; // to the CPU port, past the rest of the pipeline
    uint32_t vlan = 0;
    uint32_t dot1p = 0;                    // of its tag, or the port's
    std::optional<uint32_t> aclPriority{}; // replaces it
    std::optional<uint32_t> redirect{};    // ports, bit n = port n
    bool flooded = false;                  // not to one known address or a redirect
    uint32_t egress = 0;                   // ports
    uint32_t queue = 0;

    template <class... Args> void say(const char *stage, fmt::format_string<Args...> text, Args &&...args) const
    {
        if (told)
            witness.stage(chip.unit(), port, stage, fmt::format(text, std::forward<Args>(args)...));
    }
    // Ends the passage: always false, for a stage to return.
    template <class... Args>
    bool drop(Reason why, const char *stage, fmt::format_string<Args...> text, Args &&...args)
    {
        say(stage, text, std::forward<Args>(args)...);
        reason = why;
        return false;
    }
    bool trap()
    {
        trapped = true;
        return false;
    }
};

// A stage: false ends the passage, dropped or trapped.
using Stage = bool (*)(Passage &);

bool admitAtPort(Passage &passage);       // port.cpp
bool checkReserved(Passage &passage);     // reserved.cpp
bool classifyVlan(Passage &passage);      // vlan.cpp
bool filterIngress(Passage &passage);     // vlan.cpp
bool checkSpanningTree(Passage &passage); // spanning_tree.cpp
bool learnSource(Passage &passage);       // learning.cpp
bool applyAcl(Passage &passage);          // acl.cpp
bool findDestination(Passage &passage);   // destination.cpp
bool limitStorm(Passage &passage);        // storm.cpp
bool filterEgress(Passage &passage);      // egress.cpp
bool choosePriority(Passage &passage);    // priority.cpp

} // namespace zrsim

template <> struct fmt::formatter<zrsim::PortList> : fmt::formatter<std::string> {
    template <class Context> auto format(const zrsim::PortList &list, Context &context) const
    {
        return fmt::formatter<std::string>::format(zrsim::show(list), context);
    }
};
