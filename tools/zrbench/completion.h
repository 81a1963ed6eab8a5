// Completion of zrbench's own arguments by the user's shell.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace zrbench
{

// The script for "bash" or "zsh", of the program's subcommands and options.
std::string completionScript(const CLI::App &app, const std::string &shell);

} // namespace zrbench
