// The command table as documents: a part of docs/device-files.md, and zrbench(1).
#pragma once

#include <CLI/App.hpp>
#include <string>

namespace zrbench
{

// Every command, and what its arguments stand for, as tables.
std::string markdownReference();

// The manual page in roff, of the program's subcommands and options, and of every command.
std::string manualPage(const CLI::App &app);

} // namespace zrbench
