#include "tools/zrbench/status.h"

#include <algorithm>
#include <string>

#include "platform/manager.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

constexpr std::pair<uint32_t, std::string_view> kNames[] = {
    {LSW_OK, "ok"},
    {LSW_INVALID_ARGUMENT, "invalid argument"},
    {LSW_NULL_POINTER, "null pointer"},
    {LSW_NO_MEMORY, "no memory"},
    {LSW_CHIP_FAILED, "chip failed"},
    {LSW_NOT_FOUND, "not found"},
    {LSW_IN_USE, "in use"},
    {LSW_NO_RESOURCE, "no resource"},
    {LSW_UNSUPPORTED, "unsupported"},
};

} // namespace

std::string_view statusName(uint32_t status)
{
    for (const auto &[number, name] : kNames)
        if (number == status)
            return name;
    return {};
}

std::optional<uint32_t> statusNumber(std::string_view text)
{
    std::string spaced(text);
    std::ranges::replace(spaced, '-', ' ');
    for (const auto &[number, name] : kNames)
        if (name == spaced)
            return number;
    return parseNumber(text);
}

std::string_view statusWords()
{
    static const std::string words = [] {
        std::string joined;
        for (const auto &[number, name] : kNames)
            joined += (joined.empty() ? "" : "|") + std::string(name);
        std::ranges::replace(joined, ' ', '-');
        return joined;
    }();
    return words;
}

} // namespace zrbench
