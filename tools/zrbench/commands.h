// The joined command table: lookup, parsing, completion and help.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/zrbench/command.h"

namespace zrbench
{

// Every command, ordered by name.
const std::vector<const Command *> &commands();

struct Invocation {
    const Command *command = nullptr;
    Arguments arguments;
    std::string text; // as the shell would take it
};

// A line as the shell takes it: the command's words, then its arguments in their order. `named` gives
// further arguments by name (an object). Throws UsageError, or ArgumentError for a wrong argument.
Invocation parseInvocation(std::string_view line, const nlohmann::json &named = nlohmann::json::object());

// Whether the slot is among those that the command names.
bool usesSlot(const Command &command, std::string_view module, size_t number);

// "vlan create UNIT VLAN", and one argument of it.
std::string usage(const Command &command);
std::string usage(const Argument &argument);

// A command's usage and what it does, folded to `width` unless it is 0.
std::string help(const Command &command, size_t width = 0);

// All commands, or those that start with `topic`. Throws UsageError when none does.
std::string help(std::string_view topic, size_t width = 0);

} // namespace zrbench
