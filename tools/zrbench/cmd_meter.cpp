// Meters of the rate-limit table.
#include <fmt/format.h>

#include "qos/hsec.h"
#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

// Allocates identifiers, programs the chip meter and records the pair, as the manager does with several slots.
Outcome addMeter(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    uint32_t logic = 0;
    uint32_t chip = 0;
    if (uint32_t ret = session.slot(&ZrHsecOps::allocMeterId)(unit, a.number("type"), &logic, &chip);
        ret != LSW_OK)
        return Outcome::of(ret);
    const LswmCar car{a.number("mode"), a.number("rate"), a.number("bucket")};
    if (uint32_t ret = session.slot(&ZrHsecOps::configCar)(static_cast<uint8_t>(unit), chip, &car);
        ret != LSW_OK)
        return Outcome::of(ret);
    Outcome outcome = Outcome::of(session.slot(&ZrHsecOps::setMeterEntry)(unit, a.number("type"), logic, chip));
    return outcome.out("logic", logic).out("chip", chip);
}

// Switches a logic meter off and releases its identifiers.
Outcome removeMeter(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const uint32_t logic = a.number("logic");
    uint32_t chip = 0;
    if (uint32_t ret = session.slot(&ZrHsecOps::logicMeterToChipMeter)(unit, a.number("type"), logic, &chip);
        ret != LSW_OK)
        return Outcome::of(ret);
    if (uint32_t ret = session.slot(&ZrHsecOps::delCar)(unit, chip); ret != LSW_OK)
        return Outcome::of(ret);
    return Outcome::of(session.slot(&ZrHsecOps::releaseRecord)(unit, a.number("type"), logic));
}

Outcome getCar(Session &session, const Arguments &a)
{
    LswmCar car{};
    return Outcome::of(session.slot(&ZrHsecOps::getCar)(a.number("unit"), a.number("chip"), &car))
        .out("mode", car.mode)
        .out("rate", car.rate)
        .out("chipBucket", car.bucket);
}

Outcome setCar(Session &session, const Arguments &a)
{
    const LswmCar car{a.number("mode"), a.number("rate"), a.number("bucket")};
    return Outcome::of(
        session.slot(&ZrHsecOps::configCar)(static_cast<uint8_t>(a.number("unit")), a.number("chip"), &car));
}

Outcome getHits(Session &session, const Arguments &a)
{
    LswmCounter counter{};
    return Outcome::of(session.slot(&ZrHsecOps::getStat)(a.number("unit"), a.number("rule"), &counter))
        .out("hits", counter.count);
}

Outcome listMeters(Session &session, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const auto inUse = session.slot(&ZrHsecOps::isLogicMeterInUse);
    const auto chipOf = session.slot(&ZrHsecOps::logicMeterToChipMeter);
    const auto get = session.slot(&ZrHsecOps::getCar);
    TextTable table({"LOGIC", "CHIP", "MODE", "RATE", "CHIP BUCKET"});
    for (uint32_t logic = 0; logic < ZR_HSEC_CAR_METERS; ++logic) {
        uint32_t chip = 0;
        LswmCar car{};
        if (inUse(unit, ZR_HSEC_CAR_METER_TYPE, logic) != 1 ||
            chipOf(unit, ZR_HSEC_CAR_METER_TYPE, logic, &chip) != LSW_OK || get(unit, chip, &car) != LSW_OK)
            continue;
        table.row({logic, chip, car.mode, car.rate, car.bucket});
    }
    return Outcome::shown(table);
}

constexpr Argument kMeterType{.name = "type",
                              .optional = true,
                              .otherwise = ZR_HSEC_CAR_METER_TYPE,
                              .meaning = "a meter type of the records, 0 to 5; 0 is initialised"};
constexpr Argument kLogicMeter{.name = "logic", .meaning = "the manager's identifier of a meter"};
constexpr Argument kChipMeter{.name = "chip", .meaning = "a meter of the chip, 0 to 63"};
constexpr Argument kMode{.name = "mode", .meaning = "what a meter counts: 0 bytes, 1 frames"};
constexpr Argument kRate{.name = "rate", .meaning = "mode 0: kbit/s, rounded up to 8; mode 1: frames a second"};
constexpr Argument kBucket{
    .name = "bucket",
    .meaning = "a burst in the manager's unit: the chip takes 2.4 times as many bytes (mode 0) or "
               "frames (mode 1), 2097151 at most"};

const Command kMeterCommands[] = {
    slotRow("meter init", &ZrHsecOps::init, {kUnit}, "initialises the meter records"),
    {"meter add",
     {kByteUnit, kMode, kRate, kBucket, kMeterType},
     "allocates, programs and records a meter",
     "HSEC 11, 8, 5",
     addMeter},
    {"meter remove",
     {kUnit, kLogicMeter, kMeterType},
     "switches a meter off and releases its identifiers",
     "HSEC 1, 9, 6",
     removeMeter},
    {"meter list",
     {kUnit},
     "shows the recorded meters and what is programmed in them",
     "HSEC 0, 1, 7",
     listMeters},
    inUseRow(slotRow("meter inuse", &ZrHsecOps::isLogicMeterInUse, {kUnit, kMeterType, kLogicMeter},
                     "shows whether a logic meter is in use")),
    slotRow("meter chip", &ZrHsecOps::logicMeterToChipMeter, {kUnit, kMeterType, kLogicMeter, kChipMeter},
            "finds the chip meter of a logic meter"),
    slotRow("meter logic", &ZrHsecOps::chipMeterToLogicMeter, {kUnit, kMeterType, kChipMeter, kLogicMeter},
            "finds the logic meter of a chip meter"),
    slotRow("meter entry", &ZrHsecOps::entryIdToLogicMeter, {kUnit, kMeterType, "entry", kLogicMeter},
            "shows the logic meter of an entry identifier"),
    {"meter hits",
     {kUnit, {"rule"}},
     "reads the hit counter of an ACL rule by its first chip rule id",
     slotLabel(&ZrHsecOps::getStat),
     getHits},
    slotRow("meter record", &ZrHsecOps::setMeterEntry, {kUnit, kMeterType, kLogicMeter, kChipMeter},
            "records which chip meter backs a logic meter"),
    slotRow("meter release", &ZrHsecOps::releaseRecord, {kUnit, kMeterType, kLogicMeter},
            "releases a logic meter and its chip meter"),
    {"meter get", {kUnit, kChipMeter}, "reads a chip meter back", slotLabel(&ZrHsecOps::getCar), getCar},
    {"meter set",
     {kByteUnit, kChipMeter, kMode, kRate, kBucket},
     "programs a chip meter: mode 1 passes the rate, any other is mode 0",
     slotLabel(&ZrHsecOps::configCar),
     setCar},
    slotRow("meter delete", &ZrHsecOps::delCar, {kUnit, kChipMeter}, "ends the use of a chip meter"),
    slotRow("meter alloc", &ZrHsecOps::allocMeterId, {kUnit, kMeterType, kLogicMeter, kChipMeter},
            "chooses a free logic and a free chip meter, without taking them"),
    slotRow("meter alloc-chip", &ZrHsecOps::allocChipMeter, {kUnit, kMeterType, kChipMeter},
            "chooses a free chip meter, without taking it"),
};

} // namespace

std::span<const Command> meterCommands()
{
    return kMeterCommands;
}

} // namespace zrbench
