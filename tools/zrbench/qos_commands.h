// The parts of the QoS commands, and what they share.
#pragma once

#include <span>
#include <string>

#include "tools/zrbench/command.h"

namespace zrbench
{

// Meters of the rate-limit table.
std::span<const Command> meterCommands();
// Statistics records: exported operations without a slot.
std::span<const Command> statCommands();

// Has the board measure something. Its answer comes back as NAME=VALUE words, which become outputs; an
// answer without any is the board's refusal and is thrown.
Outcome measured(Bench &bench, const Arguments &a, const std::string &line);

} // namespace zrbench
