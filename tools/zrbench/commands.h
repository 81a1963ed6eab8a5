// The joined command table: lookup, the shell's form of an invocation, completion and help.
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
// further arguments by name (an object). Throws UsageError, or ArgumentError where one argument is to blame.
Invocation parseInvocation(std::string_view line, const nlohmann::json &named = nlohmann::json::object());

// Whether the command names the slot, alone or among others.
bool usesSlot(const Command &command, std::string_view module, size_t number);

// "vlan create UNIT VLAN".
std::string usage(const Command &command);

// All commands, or those that start with `topic`. Throws UsageError when none does.
std::string help(std::string_view topic);

// What the last word of `line` can become.
std::vector<std::string> completions(std::string_view line);

} // namespace zrbench
