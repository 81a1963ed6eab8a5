// A device file within the program: three units in service (examples/in-service.json).
#pragma once

#include <string_view>

namespace zrbench
{

extern const std::string_view kInService;

} // namespace zrbench
