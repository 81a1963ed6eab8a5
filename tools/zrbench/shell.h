// Commands typed by hand, or piped in.
#pragma once

#include "tools/zrbench/report.h"
#include "tools/zrbench/session.h"

namespace zrbench
{

// Reads commands from standard input to its end or to "quit". Returns false when a piped line was bad; at
// a terminal mistakes are shown and do not count.
bool runShell(Session &session, Report &report);

} // namespace zrbench
