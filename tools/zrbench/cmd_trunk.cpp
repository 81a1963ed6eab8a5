// Trunks: link aggregation.
#include "l2/trunk.h"
#include "records/trunk_records.h"
#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

constexpr Argument kGroup{.name = "group", .meaning = "a chip trunk group, 0 or 1"};
constexpr Argument kTrunk{.name = "trunk", .meaning = "the manager's identifier of a trunk"};

const Command kTrunkCommands[] = {
    ordered(slotRow("trunk add", &ZrTrunkOps::addMember, {kUnit, kPort, kGroup},
                    "adds a port to a chip trunk group: chip ports 0 to 3 to group 0, others to group 1"),
            {kUnit, kGroup, kPort}),
    ordered(slotRow("trunk remove", &ZrTrunkOps::delMember, {kUnit, kPort, kGroup},
                    "takes a port out of chip trunk group 0; group 1 is refused"),
            {kUnit, kGroup, kPort}),
    slotRow("trunk members", &ZrTrunkOps::getMember, {kUnit, kTrunk, {"chipPorts", portList}},
            "shows the chip ports of a trunk"),
    slotRow("trunk create", &ZrTrunkOps::create, {kUnit, kTrunk}, "records a trunk for chip trunk group 0"),
    slotRow("trunk delete", &ZrTrunkOps::destroy, {kUnit, kTrunk},
            "deletes a trunk's record; its members stay in the chip"),
    slotRow("trunk count", &ZrTrunkOps::getTrunkNum, {kUnit, "number"},
            "shows the number of recorded trunks plus one"),
    exportRow<decltype(COM_TRUNK_SetMeterInfo)>("trunk record", "COM_TRUNK_SetMeterInfo",
                                                {kUnit, kTrunk, kGroup},
                                                "records a trunk for any chip trunk group"),
    exportRow<decltype(ZR_TRUNK_InitMode)>("trunk hash", "ZR_TRUNK_InitMode", {kUnit},
                                           "sets trunk mode and hash selection, as port initialisation does"),
};

} // namespace

std::span<const Command> trunkCommands()
{
    return kTrunkCommands;
}

} // namespace zrbench
