// Commands typed by hand, or piped in.
#pragma once

#include "tools/zrbench/report.h"
#include "tools/zrbench/session.h"

namespace zrbench
{

// Reads commands from standard input to its end or to "quit". Answers false when a piped line was no good; a
// person at a terminal is told and goes on.
bool runShell(Session &session, Report &report);

} // namespace zrbench
