#include <fmt/format.h>

#include "platform/manager.h"
#include "qos/hsec.h"
#include "tools/zrbench/qos_commands.h"
#include "tools/zrbench/slots.h"

namespace zrbench
{

namespace
{

constexpr Argument kUnit{"unit", Type::Unit};
constexpr Argument kType{"type", Type::Number, {}, true};
constexpr Argument kLogic{"logic", Type::Number};
constexpr Argument kChip{"chip", Type::Number};
constexpr Argument kMode{"mode", Type::Number};
constexpr Argument kRate{"rate", Type::Number};
constexpr Argument kBucket{"bucket", Type::Number};

const ZrHsecOps &hsec(Bench &bench)
{
    return *bench.tables().hsec;
}

uint32_t typeOf(const Arguments &a)
{
    return a.number("type", ZR_HSEC_CAR_METER_TYPE);
}

// Draws identifiers, programs the chip meter and records the pair, as the manager does with several slots.
Outcome addMeter(Bench &bench, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    uint32_t logic = 0;
    uint32_t chip = 0;
    if (uint32_t ret = need(hsec(bench).allocMeterId, "HSEC 11")(unit, typeOf(a), &logic, &chip); ret != LSW_OK)
        return Outcome::of(ret);
    const LswmCar car{a.number("mode"), a.number("rate"), a.number("bucket")};
    if (uint32_t ret = need(hsec(bench).configCar, "HSEC 8")(static_cast<uint8_t>(unit), chip, &car);
        ret != LSW_OK)
        return Outcome::of(ret);
    Outcome outcome = Outcome::of(need(hsec(bench).setMeterEntry, "HSEC 5")(unit, typeOf(a), logic, chip));
    return outcome.status == LSW_OK ? outcome.out("logic", logic).out("chip", chip) : outcome;
}

// Turns a logic meter off and gives its identifiers back.
Outcome removeMeter(Bench &bench, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const uint32_t logic = a.number("logic");
    uint32_t chip = 0;
    if (uint32_t ret = need(hsec(bench).logicMeterToChipMeter, "HSEC 1")(unit, typeOf(a), logic, &chip);
        ret != LSW_OK)
        return Outcome::of(ret);
    if (uint32_t ret = need(hsec(bench).delCar, "HSEC 9")(unit, chip); ret != LSW_OK)
        return Outcome::of(ret);
    return Outcome::of(need(hsec(bench).releaseRecord, "HSEC 6")(unit, typeOf(a), logic));
}

Outcome getCar(Bench &bench, const Arguments &a)
{
    LswmCar car{};
    Outcome outcome = Outcome::of(hsec(bench).getCar(a.number("unit"), a.number("chip"), &car));
    if (outcome.status == LSW_OK)
        outcome.out("mode", car.mode).out("rate", car.rate).out("chipBucket", car.bucket);
    return outcome;
}

Outcome setCar(Bench &bench, const Arguments &a)
{
    const LswmCar car{a.number("mode"), a.number("rate"), a.number("bucket")};
    return Outcome::of(hsec(bench).configCar(static_cast<uint8_t>(a.number("unit")), a.number("chip"), &car));
}

Outcome listMeters(Bench &bench, const Arguments &a)
{
    const uint32_t unit = a.number("unit");
    const auto inUse = need(hsec(bench).isLogicMeterInUse, "HSEC 0");
    const auto chipOf = need(hsec(bench).logicMeterToChipMeter, "HSEC 1");
    const auto get = need(hsec(bench).getCar, "HSEC 7");
    TextTable table({"LOGIC", "CHIP", "MODE", "RATE", "CHIP BUCKET"});
    for (uint32_t logic = 0; logic < ZR_HSEC_CAR_METERS; ++logic) {
        uint32_t chip = 0;
        LswmCar car{};
        if (inUse(unit, ZR_HSEC_CAR_METER_TYPE, logic) != 1 ||
            chipOf(unit, ZR_HSEC_CAR_METER_TYPE, logic, &chip) != LSW_OK || get(unit, chip, &car) != LSW_OK)
            continue;
        table.row({fmt::to_string(logic), fmt::to_string(chip), fmt::to_string(car.mode),
                   fmt::to_string(car.rate), fmt::to_string(car.bucket)});
    }
    return Outcome::shown(table.text());
}

const Command kCommands[] = {
    {"meter init",
     {kUnit},
     "initialises the meter records",
     "HSEC 13",
     [](Bench &bench, const Arguments &a) { return Outcome::of(hsec(bench).init(a.number("unit"))); }},
    {"meter add",
     {kUnit, kMode, kRate, kBucket, kType},
     "draws, programs and records a meter",
     "HSEC 11, 8, 5",
     addMeter},
    {"meter remove",
     {kUnit, kLogic, kType},
     "turns a meter off and frees its identifiers",
     "HSEC 1, 9, 6",
     removeMeter},
    {"meter list",
     {kUnit},
     "shows the recorded meters and what is programmed in them",
     "HSEC 0, 1, 7",
     listMeters},
    {"meter show",
     {kUnit, kChip, {"bytes", Type::Number, {}, true}},
     "measures the burst and rate that a chip meter really lets through, with frames of 500 or so many bytes",
     "",
     [](Bench &bench, const Arguments &a) {
         return measured(bench, a, fmt::format("meter {} {}", a.number("chip"), a.number("bytes", 500)));
     }},
    {"meter inuse",
     {kUnit, kLogic, kType},
     "tells whether a logic meter is taken",
     "HSEC 0",
     [](Bench &bench, const Arguments &a) {
         Outcome outcome = Outcome::shown("");
         return outcome.out("inUse",
                            hsec(bench).isLogicMeterInUse(a.number("unit"), typeOf(a), a.number("logic")));
     }},
    {"meter chip",
     {kUnit, kLogic, kType},
     "finds the chip meter of a logic meter",
     "HSEC 1",
     [](Bench &bench, const Arguments &a) {
         uint32_t chip = 0;
         Outcome outcome = Outcome::of(
             hsec(bench).logicMeterToChipMeter(a.number("unit"), typeOf(a), a.number("logic"), &chip));
         return outcome.status == LSW_OK ? outcome.out("chip", chip) : outcome;
     }},
    {"meter logic",
     {kUnit, kChip, kType},
     "finds the logic meter of a chip meter",
     "HSEC 2",
     [](Bench &bench, const Arguments &a) {
         uint32_t logic = 0;
         Outcome outcome = Outcome::of(
             hsec(bench).chipMeterToLogicMeter(a.number("unit"), typeOf(a), a.number("chip"), &logic));
         return outcome.status == LSW_OK ? outcome.out("logic", logic) : outcome;
     }},
    {"meter entry",
     {kUnit, {"entry", Type::Number}, kType},
     "gives the logic meter of an entry identifier",
     "HSEC 3",
     [](Bench &bench, const Arguments &a) {
         uint32_t logic = 0;
         Outcome outcome = Outcome::of(
             hsec(bench).entryIdToLogicMeter(a.number("unit"), typeOf(a), a.number("entry"), &logic));
         return outcome.status == LSW_OK ? outcome.out("logic", logic) : outcome;
     }},
    {"meter hits",
     {kUnit, {"rule", Type::Number}},
     "reads the hit counter of an ACL rule by its first chip rule id",
     "HSEC 4",
     [](Bench &bench, const Arguments &a) {
         LswmCounter counter{};
         Outcome outcome = Outcome::of(hsec(bench).getStat(a.number("unit"), a.number("rule"), &counter));
         return outcome.status == LSW_OK ? outcome.out("hits", counter.count) : outcome;
     }},
    {"meter record",
     {kUnit, kLogic, kChip, kType},
     "records which chip meter backs a logic meter",
     "HSEC 5",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             hsec(bench).setMeterEntry(a.number("unit"), typeOf(a), a.number("logic"), a.number("chip")));
     }},
    {"meter release",
     {kUnit, kLogic, kType},
     "frees a logic meter and its chip meter",
     "HSEC 6",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(hsec(bench).releaseRecord(a.number("unit"), typeOf(a), a.number("logic")));
     }},
    {"meter get", {kUnit, kChip}, "reads a chip meter back", "HSEC 7", getCar},
    {"meter set",
     {kUnit, kChip, kMode, kRate, kBucket},
     "programs a chip meter: mode 1 passes the rate, any other is mode 0",
     "HSEC 8",
     setCar},
    {"meter delete",
     {kUnit, kChip},
     "ends the use of a chip meter",
     "HSEC 9",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(hsec(bench).delCar(a.number("unit"), a.number("chip")));
     }},
    {"meter alloc",
     {kUnit, kType},
     "chooses a free logic and a free chip meter, without taking them",
     "HSEC 11",
     [](Bench &bench, const Arguments &a) {
         uint32_t logic = 0;
         uint32_t chip = 0;
         Outcome outcome = Outcome::of(hsec(bench).allocMeterId(a.number("unit"), typeOf(a), &logic, &chip));
         return outcome.status == LSW_OK ? outcome.out("logic", logic).out("chip", chip) : outcome;
     }},
    {"meter alloc-chip",
     {kUnit, kType},
     "chooses a free chip meter, without taking it",
     "HSEC 12",
     [](Bench &bench, const Arguments &a) {
         uint32_t chip = 0;
         Outcome outcome = Outcome::of(hsec(bench).allocChipMeter(a.number("unit"), typeOf(a), &chip));
         return outcome.status == LSW_OK ? outcome.out("chip", chip) : outcome;
     }},
};

} // namespace

std::span<const Command> meterCommands()
{
    return kCommands;
}

} // namespace zrbench
