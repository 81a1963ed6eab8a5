#include "tools/zrbench/substitute.h"

#include <cctype>
#include <fmt/format.h>

#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

// What stands after the name in "${name...}": an operation with a constant, then ":" and a format.
std::string calculated(std::string_view rest, uint32_t number)
{
    const UsageError malformed{
        fmt::format("expected ${{NAME[+|-|*|/|% NUMBER][:FORMAT]}}, found \"{}\" after the name", rest)};
    const size_t colon = rest.find(':');
    const std::string_view format = colon == std::string_view::npos ? "" : rest.substr(colon + 1);
    if (const std::string_view operation = rest.substr(0, colon); !operation.empty()) {
        const std::optional<uint32_t> operand = parseNumber(operation.substr(1));
        if (!operand)
            throw malformed;
        const bool divides = operation[0] == '/' || operation[0] == '%';
        if (divides && *operand == 0)
            throw malformed;
        switch (operation[0]) {
        case '+':
            number += *operand;
            break;
        case '-':
            number -= *operand;
            break;
        case '*':
            number *= *operand;
            break;
        case '/':
            number /= *operand;
            break;
        case '%':
            number %= *operand;
            break;
        default:
            throw malformed;
        }
    }
    // A number above 127 is no character of UTF-8.
    if (format.ends_with('c'))
        throw malformed;
    try {
        return fmt::format(fmt::runtime(fmt::format("{{:{}}}", format)), number);
    } catch (const fmt::format_error &) {
        throw malformed;
    }
}

std::string substituted(const std::string &text, const std::string &name, uint32_t number)
{
    std::string result;
    for (size_t from = 0;;) {
        const size_t dollar = text.find('$', from);
        result += text.substr(from, dollar - from);
        if (dollar == std::string::npos)
            return result;
        const bool braced = text.compare(dollar + 1, 1, "{") == 0;
        const size_t start = dollar + (braced ? 2 : 1);
        const size_t end = start + name.size();
        const bool named = text.compare(start, name.size(), name) == 0 &&
                           (end >= text.size() || std::isalnum(static_cast<unsigned char>(text[end])) == 0);
        const size_t close = braced && named ? text.find('}', end) : end;
        if (!named || close == std::string::npos) {
            result += '$';
            from = dollar + 1;
            continue;
        }
        result += calculated(std::string_view(text).substr(end, close - end), number);
        from = close + (braced ? 1 : 0);
    }
}

} // namespace

void substitute(nlohmann::json &value, const std::string &name, uint32_t number)
{
    if (value.is_string()) {
        value = substituted(value.get<std::string>(), name, number);
        return;
    }
    if (value.is_structured()) {
        for (nlohmann::json &element : value)
            substitute(element, name, number);
    }
}

} // namespace zrbench
