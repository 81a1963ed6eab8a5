#include <fmt/format.h>

#include "l2/stp.h"
#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

LswmMacEntry entryOf(const Arguments &a)
{
    LswmMacEntry entry{};
    for (std::string_view name : {"port", "vlan"})
        if (a.has(name) && a.number(name) > UINT16_MAX)
            throw UsageError{
                fmt::format("{}: {} does not fit into the manager's record", name, a.number(name))};
    entry.unit = static_cast<uint8_t>(a.number("entryUnit", a.number("unit")));
    entry.port = static_cast<uint16_t>(a.number("port"));
    entry.vlan = static_cast<uint16_t>(a.number("vlan", 0));
    return entry;
}

const Argument kUnit = {"unit", Type::Unit};
const Argument kPort = {"port", Type::Port};
const Argument kVlan = {"vlan", Type::Vlan};
const Argument kInstance = {"instance", Type::Number};
const Argument kEntryUnit = {"entryUnit", Type::Number, {}, true};

const Command kCommands[] = {
    {"stp group",
     {kUnit},
     "obtains a spanning-tree group",
     "STP 0",
     [](Bench &bench, const Arguments &a) {
         uint32_t group = 0;
         Outcome outcome = Outcome::of(bench.tables().stp->stgCreate(a.number("unit"), &group));
         if (outcome.status == 0)
             outcome.out("group", group);
         return outcome;
     }},
    {"stp bind",
     {kUnit, kInstance, kVlan},
     "binds a VLAN to an instance",
     "STP 1",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             bench.tables().stp->setVlanInstanceid(a.number("unit"), a.number("instance"), a.number("vlan")));
     }},
    {"stp state",
     {kUnit, kInstance, kPort, {"state", Type::Number}},
     "sets a port's state in an instance: 0 forwarding, 1 blocking",
     "STP 2",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().stp->setStpMode(a.number("unit"), a.number("instance"),
                                                           a.number("port"), a.number("state")));
     }},
    {"stp flush-instance",
     {kUnit, kPort, kInstance},
     "forgets what a port learned in every VLAN of an instance",
     "STP 3",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().stp->flushMacByPortInstance(a.number("unit"), a.number("port"),
                                                                       a.number("instance")));
     }},
    {"stp flush-vlan",
     {kUnit, kPort, kVlan, kEntryUnit},
     "forgets what a port learned in a VLAN",
     "STP 4",
     [](Bench &bench, const Arguments &a) {
         const LswmMacEntry entry = entryOf(a);
         return Outcome::of(bench.tables().stp->flushMacByPortVlan(a.number("unit"), &entry));
     }},
    {"stp flush-port",
     {kUnit, kPort, kEntryUnit},
     "forgets what a port learned in every VLAN",
     "STP 5",
     [](Bench &bench, const Arguments &a) {
         const LswmMacEntry entry = entryOf(a);
         return Outcome::of(bench.tables().stp->flushMacByPort(a.number("unit"), &entry));
     }},
    {"stp instance",
     {kUnit, kVlan},
     "reads the instance that a VLAN is bound to",
     "HAL_STP_GetVlanInstanceIdZr",
     [](Bench &bench, const Arguments &a) {
         auto *get = reinterpret_cast<decltype(HAL_STP_GetVlanInstanceIdZr) *>(
             bench.operation("HAL_STP_GetVlanInstanceIdZr"));
         uint32_t instance = 0;
         Outcome outcome = Outcome::of(get(a.number("unit"), a.number("vlan"), &instance));
         if (outcome.status == 0)
             outcome.out("instance", instance);
         return outcome;
     }},
};

} // namespace

std::span<const Command> stpCommands()
{
    return kCommands;
}

} // namespace zrbench
