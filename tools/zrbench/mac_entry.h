// The manager's address record as commands of addresses and of spanning tree fill it.
#pragma once

#include "tools/zrbench/rows.h"

namespace zrbench
{

// The record holds a VLAN and a port in 16 bits and a unit in 8.
constexpr Argument kEntryUnit{.name = "entryUnit", .optional = true, .most = UINT8_MAX};
constexpr Argument kEntryVlan{.name = "vlan", .most = UINT16_MAX};
constexpr Argument kEntryPort{.name = "port", .most = UINT16_MAX};

// Takes mac, vlan, port, type and entryUnit (the unit when left out) from the arguments that are there.
LswmMacEntry entryOf(const Arguments &a);

// A slot that takes the unit and a record of the arguments.
template <class Table>
Command entryRow(std::string_view name, uint32_t (*Table::*slot)(uint32_t unit, const LswmMacEntry *entry),
                 std::vector<Argument> arguments, std::string_view help)
{
    arguments.insert(arguments.begin(), kByteUnit);
    return {name, std::move(arguments), help, slotLabel(slot), [slot](Session &session, const Arguments &a) {
                const LswmMacEntry entry = entryOf(a);
                return Outcome::of(session.slot(slot)(a.number("unit"), &entry));
            }};
}

} // namespace zrbench
