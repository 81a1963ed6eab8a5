// For commands that use slots which their row does not name: named ones are checked before a command runs.
#pragma once

#include <string>
#include <string_view>

#include "tools/zrbench/command.h"

namespace zrbench
{

// The slot's operation; throws UsageError when the library has not filled it. `label` is as "VLAN 1".
template <class Function> Function *need(Function *slot, std::string_view label)
{
    if (slot == nullptr)
        throw UsageError{"the library does not fill " + std::string(label)};
    return slot;
}

} // namespace zrbench
