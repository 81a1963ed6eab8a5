// Values as users write them, and how arguments are checked against their types.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zrbench/command.h"

namespace zrbench
{

// Decimal or 0x hexadecimal, 32 bits.
std::optional<uint32_t> parseNumber(std::string_view text);

// The number that a JSON value stands for: a number, a text that parseNumber takes, or a boolean.
std::optional<uint32_t> asNumber(const nlohmann::json &value);

// "1,2,5-7" in the order written, "-" for none; at most `count` numbers, none above `most`. Nothing when the
// text is not such a list.
std::optional<std::vector<uint32_t>> parseList(std::string_view text, uint32_t most, size_t count);

// The names of numbers that the choices of a number give, and the number of a name.
std::vector<std::pair<std::string_view, uint32_t>> namedNumbers(std::string_view choices);
std::optional<uint32_t> namedNumber(std::string_view choices, std::string_view name);
// The name of a number, or nothing.
std::string_view numberName(std::string_view choices, uint32_t number);

// The parts between separators; at least one.
std::vector<std::string_view> split(std::string_view text, char separator);

// JSON as a file or a line holds it. Throws UsageError for bad syntax and for what would be lost silently or
// overflow: a key given twice, a NUL in a text, too deep nesting, numbers out of range.
nlohmann::json parseJson(std::string_view text);

// A JSON value as an error message shows it, cut where it is long.
std::string shown(const nlohmann::json &value);
// A text as it is, a list of numbers as "0-4,15" ("-" without any), anything else as JSON. Bytes that are not
// UTF-8 are replaced.
std::string plainText(const nlohmann::json &value);

// The value that Arguments keeps for `argument`. Throws ArgumentError.
nlohmann::json checkedValue(const Argument &argument, const nlohmann::json &value);

// What a value of the type looks like: "a number (decimal or 0x)", "one of on, off".
std::string expectedOf(const Argument &argument);

} // namespace zrbench
