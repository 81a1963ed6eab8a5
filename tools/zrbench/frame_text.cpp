#include <algorithm>
#include <charconv>
#include <fmt/format.h>

#include "tools/zrbench/frame.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

std::vector<uint8_t> parseHex(std::string_view text)
{
    constexpr size_t kMost = 65536;
    std::vector<uint8_t> bytes(text.size() / 2);
    for (size_t i = 0; i < bytes.size(); ++i)
        std::from_chars(&text[2 * i], &text[2 * i] + 2, bytes[i], 16);
    if (text.size() % 2 != 0 || bytes.size() > kMost)
        throw UsageError{fmt::format("expected whole bytes, at most {}, found {} digits", kMost, text.size())};
    return bytes;
}

} // namespace

Frame parseFrame(std::string_view text, uint32_t unit, uint32_t port)
{
    constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
    if (text.find_first_not_of(kDigits) == std::string_view::npos)
        return {parseHex(text)};
    return buildFrame(text, fmt::format("02:00:00:00:{:02x}:{:02x}", unit & 0xFF, port & 0xFF));
}

void checkFrame(const nlohmann::json &text)
{
    parseFrame(text.get_ref<const std::string &>(), 0, 0);
}

} // namespace zrbench
