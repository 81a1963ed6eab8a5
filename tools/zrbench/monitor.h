// What a step changed that an engineer watches for: links, addresses, counters.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace zrbench
{

// One line an event, between two states (Session::state). Counters are told as what they gained.
std::vector<std::string> eventsBetween(const nlohmann::json &before, const nlohmann::json &after);

} // namespace zrbench
