// Commands typed by hand, or piped in.
#pragma once

#include <optional>
#include <string>

#include "tools/zrbench/page.h"
#include "tools/zrbench/report.h"
#include "tools/zrbench/session.h"

namespace zrbench
{

// Takes commands from `commands`, where ; separates them, or else from standard input, to the end or to "quit".
// At a terminal, mistakes are shown and do not count. Elsewhere every step is expected to succeed unless it is
// an "expect", and false is returned when a line was not understood.
// `device` has been run before: a file, or "" for the one within the program.
// `page` has what was done, for the command that writes it.
bool runShell(Session &session, Report &report, const PageWriter &page,
              const std::optional<std::string> &commands = {}, const std::optional<std::string> &device = {});

} // namespace zrbench
