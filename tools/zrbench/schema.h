// The JSON schema of device files, made from the command table.
#pragma once

#include <nlohmann/json.hpp>

namespace zrbench
{

// Draft 7, which editors know best. It takes every file that zrbench takes, but for ranges that only a command
// knows.
nlohmann::ordered_json deviceSchema();

} // namespace zrbench
