#include "tools/zrbench/values.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <stdexcept>

#include "platform/manager.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (size_t from = 0;;) {
        const size_t to = text.find(separator, from);
        parts.push_back(text.substr(from, to - from));
        if (to == std::string_view::npos)
            return parts;
        from = to + 1;
    }
}

std::optional<std::vector<uint8_t>> parseMac(std::string_view text)
{
    std::vector<uint8_t> bytes;
    for (std::string_view part : split(text, ':')) {
        uint8_t byte = 0;
        auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), byte, 16);
        if (error != std::errc{} || end != part.data() + part.size() || part.size() > 2)
            return std::nullopt;
        bytes.push_back(byte);
    }
    return bytes.size() == 6 ? std::optional(bytes) : std::nullopt;
}

std::optional<std::vector<uint32_t>> asPorts(const json &value)
{
    constexpr uint32_t kLastPort = LSWM_PORTS - 1;
    if (value.is_string())
        return parseList(value.get_ref<const std::string &>(), kLastPort, LSWM_PORTS);
    if (!value.is_array())
        return std::nullopt;
    std::vector<uint32_t> ports;
    for (const json &element : value) {
        const std::optional<uint32_t> port = asNumber(element);
        if (!port || *port > kLastPort)
            return std::nullopt;
        ports.push_back(*port);
    }
    return ports;
}

// Files, terminals and chips may hold what is not UTF-8.
std::string dumped(const json &value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<json> valueOf(const Argument &argument, const json &value)
{
    switch (argument.type) {
    case Type::Number:
    case Type::Unit:
    case Type::Port:
    case Type::Vlan:
        if (auto number = asNumber(value))
            return *number;
        return std::nullopt;
    case Type::Mac:
        if (value.is_string()) {
            if (auto bytes = parseMac(value.get_ref<const std::string &>()))
                return *bytes;
        }
        return std::nullopt;
    case Type::Ports:
        if (auto ports = asPorts(value))
            return *ports;
        return std::nullopt;
    case Type::Word: {
        const std::vector<std::string_view> choices = split(argument.choices, '|');
        if (value.is_string() && std::ranges::count(choices, value.get<std::string>()) != 0)
            return value;
        return std::nullopt;
    }
    case Type::Text:
        return value.is_string() ? std::optional(value) : std::nullopt;
    case Type::Json:
        return value;
    }
    return std::nullopt;
}

} // namespace

std::optional<uint32_t> parseNumber(std::string_view text)
{
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal)
        text.remove_prefix(2);
    uint32_t number = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::optional<uint32_t> asNumber(const json &value)
{
    if (value.is_string())
        return parseNumber(value.get_ref<const std::string &>());
    if (value.is_boolean())
        return value.get<bool>() ? 1 : 0;
    if (value.is_number_unsigned() && value.get<uint64_t>() <= UINT32_MAX)
        return value.get<uint32_t>();
    // Numbers that a program made of signed ones.
    if (value.is_number_integer() && value.get<int64_t>() >= 0 && value.get<int64_t>() <= UINT32_MAX)
        return value.get<uint32_t>();
    return std::nullopt;
}

std::optional<std::vector<uint32_t>> parseList(std::string_view text, uint32_t most, size_t count)
{
    std::vector<uint32_t> numbers;
    if (text == "-" || text.empty())
        return numbers;
    for (std::string_view part : split(text, ',')) {
        const size_t dash = part.find('-');
        const std::optional<uint32_t> first = parseNumber(part.substr(0, dash));
        const std::optional<uint32_t> last =
            dash == std::string_view::npos ? first : parseNumber(part.substr(dash + 1));
        if (!first || !last || *first > *last || *last > most || *last - *first >= count - numbers.size())
            return std::nullopt;
        for (uint64_t number = *first; number <= *last; ++number)
            numbers.push_back(static_cast<uint32_t>(number));
    }
    return numbers;
}

std::string plainText(const json &value)
{
    return value.is_string() ? value.get<std::string>() : dumped(value);
}

bool acceptNesting(int depth, json::parse_event_t event, json &)
{
    constexpr int kDeepest = 64;
    const bool opens = event == json::parse_event_t::object_start || event == json::parse_event_t::array_start;
    if (opens && depth >= kDeepest) // the outermost opens at 0
        throw UsageError{fmt::format("expected JSON nested at most {} deep", kDeepest)};
    return true;
}

std::string shown(const json &value)
{
    std::string text = dumped(value);
    constexpr size_t kMost = 60;
    return text.size() <= kMost ? text : text.substr(0, kMost - 3) + "...";
}

std::string expectedOf(const Argument &argument)
{
    switch (argument.type) {
    case Type::Number:
    case Type::Unit:
    case Type::Port:
    case Type::Vlan:
        return "a number of 32 bits, decimal or 0x";
    case Type::Mac:
        return "an address such as 00:11:22:33:44:55";
    case Type::Ports:
        return fmt::format("ports up to {} such as 1,2,5-7, or - for none", LSWM_PORTS - 1);
    case Type::Word: {
        return fmt::format("one of {}", fmt::join(split(argument.choices, '|'), ", "));
    }
    case Type::Text:
        return "a text";
    case Type::Json:
        return "a JSON value";
    }
    return {};
}

json checkedValue(const Argument &argument, const json &value)
{
    if (std::optional<json> kept = valueOf(argument, value))
        return *kept;
    throw ArgumentError{{fmt::format("expected {}, found {}", expectedOf(argument), shown(value))},
                        std::string(argument.name)};
}

// ---- Arguments ------------------------------------------------------------------------------

bool Arguments::has(std::string_view name) const
{
    return values_.contains(name);
}

uint32_t Arguments::number(std::string_view name) const
{
    return json(name).get<uint32_t>();
}

uint32_t Arguments::number(std::string_view name, uint32_t otherwise) const
{
    return has(name) ? number(name) : otherwise;
}

std::vector<uint32_t> Arguments::ports(std::string_view name) const
{
    return json(name).get<std::vector<uint32_t>>();
}

std::vector<uint8_t> Arguments::mac(std::string_view name) const
{
    return json(name).get<std::vector<uint8_t>>();
}

std::string Arguments::text(std::string_view name) const
{
    return json(name).get<std::string>();
}

const nlohmann::json &Arguments::json(std::string_view name) const
{
    if (auto found = values_.find(std::string(name)); found != values_.end())
        return *found;
    throw std::logic_error(fmt::format("a command reads its argument '{}', which it was not given", name));
}

void Arguments::set(std::string_view name, nlohmann::json value)
{
    values_[std::string(name)] = std::move(value);
}

} // namespace zrbench
