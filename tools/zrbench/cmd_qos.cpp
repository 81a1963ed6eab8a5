// Queues and priorities, storm control, reserved multicast addresses.
#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

Outcome setStormControl(Session &session, const Arguments &a)
{
    const LswmStormControl control{0, a.number("packets"), a.number("enable"), a.number("meter")};
    return Outcome::of(session.slot(&ZrStormctlOps::set)(a.number("unit"), a.number("port"), &control));
}

constexpr Argument kPackets{.name = "packets", .choices = "unknown-unicast|multicast|broadcast"};
constexpr Argument kStormEnable{.name = "enable", .choices = "off|on"};

const Command kQosCommands[] = {
    slotRow("qos init", &ZrQosOps::init, {kUnit},
            "sets queues, priority maps and weights to their start-up state"),
    boardRow("qos show", "qos", {kUnit}, "shows queues, priority maps and weights as tables"),
    slotRow("storm init", &ZrStormctlOps::init, {kUnit}, "initialises storm control, which leaves it off"),
    {"storm set",
     {kUnit, kPort, kPackets, kStormEnable, {.name = "meter", .meaning = "a chip meter, 0 to 63"}},
     "limits a port's floods of a packet type by a chip meter",
     slotLabel(&ZrStormctlOps::set),
     setStormControl},
    boardRow("storm show", "storm", {kUnit}, "shows which floods are limited by which meter"),
    slotRow("mc init", &ZrMcOps::init, {kUnit}, "traps reserved multicast addresses and LLDP to the host"),
};

} // namespace

std::span<const Command> qosCommands()
{
    return kQosCommands;
}

} // namespace zrbench
