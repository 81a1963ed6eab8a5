#include "l2/trunk.h"
#include "records/trunk_records.h"
#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

const Argument kUnit = {"unit", Type::Unit};
const Argument kPort = {"port", Type::Port};
const Argument kGroup = {"group", Type::Number};
const Argument kTrunk = {"trunk", Type::Number};

const Command kCommands[] = {
    {"trunk add",
     {kUnit, kGroup, kPort},
     "adds a port to a chip trunk group: chip ports 0 to 3 to group 0, others to group 1",
     "TRUNK 0",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             bench.tables().trunk->addMember(a.number("unit"), a.number("port"), a.number("group")));
     }},
    {"trunk remove",
     {kUnit, kGroup, kPort},
     "takes a port out of chip trunk group 0; group 1 is refused",
     "TRUNK 1",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             bench.tables().trunk->delMember(a.number("unit"), a.number("port"), a.number("group")));
     }},
    {"trunk members",
     {kUnit, kTrunk},
     "shows the chip ports behind a trunk",
     "TRUNK 2",
     [](Bench &bench, const Arguments &a) {
         uint32_t mask = 0;
         Outcome outcome =
             Outcome::of(bench.tables().trunk->getMember(a.number("unit"), a.number("trunk"), &mask));
         if (outcome.status == 0)
             outcome.out("chipPorts", showPorts(mask));
         return outcome;
     }},
    {"trunk create",
     {kUnit, kTrunk},
     "records a trunk for chip trunk group 0",
     "TRUNK 3",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().trunk->create(a.number("unit"), a.number("trunk")));
     }},
    {"trunk delete",
     {kUnit, kTrunk},
     "forgets a trunk; its members stay in the chip",
     "TRUNK 4",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().trunk->destroy(a.number("unit"), a.number("trunk")));
     }},
    {"trunk count",
     {kUnit},
     "shows the number of recorded trunks plus one",
     "TRUNK 5",
     [](Bench &bench, const Arguments &a) {
         uint32_t number = 0;
         Outcome outcome = Outcome::of(bench.tables().trunk->getTrunkNum(a.number("unit"), &number));
         if (outcome.status == 0)
             outcome.out("number", number);
         return outcome;
     }},
    {"trunk record",
     {kUnit, kTrunk, kGroup},
     "records a trunk for a chip trunk group of one's choice",
     "COM_TRUNK_SetMeterInfo",
     [](Bench &bench, const Arguments &a) {
         auto setMeterInfo =
             reinterpret_cast<decltype(&COM_TRUNK_SetMeterInfo)>(bench.operation("COM_TRUNK_SetMeterInfo"));
         return Outcome::of(setMeterInfo(a.number("unit"), a.number("trunk"), a.number("group")));
     }},
    {"trunk hash",
     {kUnit},
     "sets trunk mode and hash selection, as port initialisation does",
     "ZR_TRUNK_InitMode",
     [](Bench &bench, const Arguments &a) {
         auto initMode = reinterpret_cast<decltype(&ZR_TRUNK_InitMode)>(bench.operation("ZR_TRUNK_InitMode"));
         return Outcome::of(initMode(a.number("unit")));
     }},
};

} // namespace

std::span<const Command> trunkCommands()
{
    return kCommands;
}

} // namespace zrbench
