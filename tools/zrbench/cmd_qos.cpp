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

const Command kCommands[] = {
    slotRow("qos init", &ZrQosOps::init, {kUnit},
            "sets queues, priority maps and weights to their start-up state"),
    boardRow("qos show", "qos", {kUnit}, "shows queues, priority maps and weights as tables"),
    measuredRow("qos classify", "classify", {kUnit, kPort, {"tags", Type::Text, {}, true}},
                "shows the priority and queue of a frame: tags as \"dot1p 5 dscp 46\""),
    slotRow("storm init", &ZrStormctlOps::init, {kUnit}, "initialises storm control, which leaves it off"),
    {"storm set",
     {kUnit, kPort, {"packets"}, {"enable"}, {"meter"}},
     "limits a port's floods of a packet type (0 to 2) by a chip meter",
     slotLabel(&ZrStormctlOps::set),
     setStormControl},
    boardRow("storm show", "storm", {kUnit}, "shows which floods are limited by which meter"),
    measuredRow("storm flood", "flood", {kUnit, kPort, {"storm"}, {"kbit"}, {"ms"}},
                "floods a port with a chip storm type (0 to 3) and shows what passes"),
    slotRow("mc init", &ZrMcOps::init, {kUnit}, "traps reserved multicast addresses and LLDP to the host"),
    measuredRow("mc reserved", "reserved",
                {kUnit, kPort, {"mac", Type::Mac}, {.name = "ethertype", .optional = true}},
                "shows what becomes of a frame to a reserved address: 0 switched, 1 dropped, 2 to the host"),
};

} // namespace

std::span<const Command> qosCommands()
{
    return kCommands;
}

} // namespace zrbench
