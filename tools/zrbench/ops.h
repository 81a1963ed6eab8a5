// The operation tables slot by slot.
#pragma once

#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "tools/zrbench/command.h"
#include "tools/zrbench/tables.h"

namespace zrbench
{

struct Slot {
    std::string_view module; // "VLAN"
    size_t number;
    void *operation;            // null when the library has not filled it
    const std::type_info *type; // of the function pointer; null for a reserved slot

    std::string label() const { return std::string(module) + " " + std::to_string(number); }
};

// Every slot of every table, reserved ones too, in the order of modules and slots.
std::vector<Slot> slots(const Tables &tables);

// The exported name of an operation, or an empty text.
std::string operationName(const void *operation);

// The slots as a table: operation with signature, and the command that calls it.
Outcome showOperations(const Tables &tables);

} // namespace zrbench
