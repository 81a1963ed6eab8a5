// The part of the QoS commands that has its own file.
#pragma once

#include <span>

#include "tools/zrbench/command.h"

namespace zrbench
{

// Statistics records: exported operations without a slot.
std::span<const Command> statCommands();

} // namespace zrbench
