// The values of a repeated step.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace zrbench
{

// Substitutes `number` for "$name" and "${name...}" in every text within `value`. Throws UsageError.
void substitute(nlohmann::json &value, const std::string &name, uint32_t number);

} // namespace zrbench
