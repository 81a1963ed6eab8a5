// Spanning tree.
#include "l2/stp.h"
#include "tools/zrbench/mac_entry.h"
#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

constexpr Argument kInstance{.name = "instance", .meaning = "a spanning-tree instance, 0 to 15"};
constexpr Argument kStpState{.name = "state", .choices = "forwarding|blocking"};

const Command kStpCommands[] = {
    slotRow("stp group", &ZrStpOps::stgCreate, {kUnit, "group"}, "allocates a spanning-tree group"),
    slotRow("stp bind", &ZrStpOps::setVlanInstanceid, {kUnit, kInstance, kVlan}, "binds a VLAN to an instance"),
    slotRow("stp state", &ZrStpOps::setStpMode, {kUnit, kInstance, kPort, kStpState},
            "sets a port's state in an instance: forwarding (0) or blocking (1)"),
    slotRow("stp flush-instance", &ZrStpOps::flushMacByPortInstance, {kUnit, kPort, kInstance},
            "deletes what a port learned in every VLAN of an instance"),
    entryRow("stp flush-vlan", &ZrStpOps::flushMacByPortVlan, {kEntryPort, kEntryVlan, kEntryUnit},
             "deletes what a port learned in a VLAN"),
    entryRow("stp flush-port", &ZrStpOps::flushMacByPort, {kEntryPort, kEntryUnit},
             "deletes what a port learned in every VLAN"),
    exportRow<decltype(HAL_STP_GetVlanInstanceIdZr)>("stp instance", "HAL_STP_GetVlanInstanceIdZr",
                                                     {kUnit, kVlan, "instance"},
                                                     "shows the instance that a VLAN is bound to"),
};

} // namespace

std::span<const Command> stpCommands()
{
    return kStpCommands;
}

} // namespace zrbench
