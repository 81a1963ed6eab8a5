// The library's statuses by name.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zrbench
{

// "chip failed"; empty for a status without a name.
std::string_view statusName(uint32_t status);

// The status of a name, its words joined by blanks or hyphens, or of a number.
std::optional<uint32_t> statusNumber(std::string_view text);

// The names as one word each, separated by |: "ok|invalid-argument|...".
std::string_view statusWords();

} // namespace zrbench
