// What a printed line, a status, a platform call, an operation or a command means, and where to look first: out
// of docs/messages.md and the platform's headers, which travel within the program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/zrbench/command.h"

namespace zrbench
{

extern const std::string_view kMessagesPage;
extern const std::string_view kPlatformHeaders;

// Text, and as rows what the text was made of. Throws UsageError when nothing is known of it.
Outcome explain(const std::string &asked);

// The name of a status of the chip SDK: "bad argument"; empty for one without a name.
std::string_view sdkStatusName(uint32_t status);

} // namespace zrbench
