// Runs a device file.
#pragma once

#include "tools/zrbench/device.h"
#include "tools/zrbench/report.h"
#include "tools/zrbench/session.h"

namespace zrbench
{

// Checks the steps against library and platform, sets up the device and runs its steps. Throws UsageError,
// with the step's place, for a step that cannot be run. With `stop` the first step that is not as expected is
// the last.
void runDevice(Session &session, const Device &device, Report &report, bool stop = false);

// The differences between `result` and what was expected; lines are compared only when the platform reports
// them.
std::vector<std::string> deviations(const Result &result, const Expectation &expected, bool linesSeen);

} // namespace zrbench
