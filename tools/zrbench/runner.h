// Carries out a device file.
#pragma once

#include "tools/zrbench/device.h"
#include "tools/zrbench/report.h"
#include "tools/zrbench/session.h"

namespace zrbench
{

// Checks the steps against library and platform, sets up the device and makes its steps. Throws UsageError,
// with the step's place, for a step that cannot be made at all.
void runDevice(Session &session, const Device &device, Report &report);

// What of `result` is not as expected. Lines count only where the platform lets them be seen.
std::vector<std::string> deviations(const Result &result, const Expectation &expected, bool linesSeen);

} // namespace zrbench
