// One virtual chip: a register file and the tables behind it, one class each. Every model has
//   attach(chip)  once: puts itself behind its registers, remembers its chip;
//   reset()       whenever the chip is reset: back to what a chip shows then;
//   dump(json)    its state for people and for comparison.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>

#include "sim/chip/acl_table.h"
#include "sim/chip/drop_capture.h"
#include "sim/chip/isolation.h"
#include "sim/chip/leds.h"
#include "sim/chip/mac_table.h"
#include "sim/chip/meters.h"
#include "sim/chip/port_counters.h"
#include "sim/chip/port_extras.h"
#include "sim/chip/ports.h"
#include "sim/chip/qos.h"
#include "sim/chip/registers.h"
#include "sim/chip/rma.h"
#include "sim/chip/storm_control.h"
#include "sim/chip/stp_states.h"
#include "sim/chip/trunk_groups.h"
#include "sim/chip/vlan_table.h"

namespace zrsim
{

// Chip registers that the foundation models itself. 0x1300 is given; the others are the model's own choice.
constexpr uint16_t kRegChipId = 0x1300;
constexpr uint16_t kRegRevision = 0x1301;
constexpr uint16_t kRegTableStatus = 0x0100; // 1: the tables can be accessed
constexpr uint16_t kChipId = 0x5109;

// The tables of a chip.
struct Models {
    Leds leds;
    MacTable mac;
    StpStates stp;
    VlanTable vlan;
    TrunkGroups trunk;
    Ports ports;
    PortCounters counters;
    PortExtras extras;
    Isolation isolation;
    AclTable acl;
    Qos qos;
    Meters meters;
    StormControl storm;
    Rma rma;
    DropCapture drop;
};

class Chip : public Models
{
public:
    explicit Chip(uint32_t unit);
    Chip(const Chip &) = delete;
    Chip &operator=(const Chip &) = delete;

    uint32_t unit() const { return unit_; }
    Registers &registers() { return registers_; }
    const Registers &registers() const { return registers_; }

    // Held in reset from power-on until the board releases it.
    // Resets so far, the one at power-on included: never 0.
    unsigned resets() const { return resets_; }
    bool inReset() const { return inReset_; }
    void powerOn();
    void assertReset();
    void releaseReset();

    // What the silicon is: kept across resets, set by the board's command interpreter.
    uint8_t revision = 0;
    uint32_t fsData = 0;

    // A picture of everything that frames and the SDK change, and the way back to it.
    struct Snapshot {
        Models models;
        Registers registers;
    };
    Snapshot snapshot() const { return {*this, registers_}; }
    void restore(const Snapshot &snapshot);

    void dump(nlohmann::json &to) const;

private:
    template <class Visit> void everyModel(Visit visit);
    void resetModels();

    uint32_t unit_;
    unsigned resets_ = 0;
    bool inReset_ = true;
    Registers registers_;
};

} // namespace zrsim
