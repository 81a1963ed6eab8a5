#include "tools/zrbench/values.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <set>
#include <stdexcept>

#include "platform/manager.h"
#include "tools/zrbench/suggest.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

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

uint32_t lastPort(const Argument &argument)
{
    return std::min<uint32_t>(argument.most, LSWM_PORTS - 1);
}

std::optional<std::vector<uint32_t>> asPorts(const json &value, uint32_t last)
{
    if (value.is_string())
        return parseList(value.get_ref<const std::string &>(), last, LSWM_PORTS);
    if (!value.is_array())
        return std::nullopt;
    std::vector<uint32_t> ports;
    for (const json &element : value) {
        const std::optional<uint32_t> port = asNumber(element);
        if (!port || *port > last)
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
        if (auto number = asNumber(value); number && *number <= argument.most)
            return *number;
        if (auto number = value.is_string()
                              ? namedNumber(argument.choices, value.get_ref<const std::string &>())
                              : std::nullopt)
            return *number;
        return std::nullopt;
    case Type::Mac:
        if (value.is_string()) {
            if (auto bytes = parseMac(value.get_ref<const std::string &>()))
                return *bytes;
        }
        return std::nullopt;
    case Type::Ports:
        if (auto ports = asPorts(value, lastPort(argument)))
            return *ports;
        return std::nullopt;
    case Type::Word: {
        if (!value.is_string())
            return std::nullopt;
        const auto &word = value.get_ref<const std::string &>();
        const bool fits = argument.choices.empty()
                              ? !word.empty() && word.find_first_of(" \t") == std::string::npos
                              : std::ranges::count(split(argument.choices, '|'), word) != 0;
        return fits ? std::optional(value) : std::nullopt;
    }
    case Type::Text:
    case Type::Call:
    case Type::Line:
        return value.is_string() ? std::optional(value) : std::nullopt;
    case Type::File:
        return value.is_string() && value != "" ? std::optional(value) : std::nullopt;
    case Type::Json:
        return value;
    }
    return std::nullopt;
}

} // namespace

std::vector<std::pair<std::string_view, uint32_t>> namedNumbers(std::string_view choices)
{
    std::vector<std::pair<std::string_view, uint32_t>> named;
    if (choices.empty())
        return named;
    for (const std::string_view choice : split(choices, '|')) {
        const size_t equals = choice.find('=');
        const auto place = static_cast<uint32_t>(named.size());
        named.emplace_back(
            choice.substr(0, equals),
            equals == std::string_view::npos ? place : parseNumber(choice.substr(equals + 1)).value_or(place));
    }
    return named;
}

std::optional<uint32_t> namedNumber(std::string_view choices, std::string_view name)
{
    for (const auto &[named, number] : namedNumbers(choices))
        if (named == name)
            return number;
    return std::nullopt;
}

std::string_view numberName(std::string_view choices, uint32_t number)
{
    for (const auto &[name, named] : namedNumbers(choices))
        if (named == number)
            return name;
    return {};
}

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
    // Numbers that a command made from signed ones.
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
    if (value.is_string())
        return value.get<std::string>();
    if (!value.is_array() || !std::ranges::all_of(value, [](const json &e) { return e.is_number_unsigned(); }))
        return dumped(value);
    std::string text;
    for (size_t first = 0, last = 0; first < value.size(); first = ++last) {
        while (last + 1 < value.size() && value[last + 1] == value[last].get<uint64_t>() + 1)
            ++last;
        text += fmt::format("{}{}", text.empty() ? "" : ",", value[first].get<uint64_t>());
        if (first != last)
            text += fmt::format("-{}", value[last].get<uint64_t>());
    }
    return text.empty() ? "-" : text;
}

json parseJson(std::string_view text)
{
    constexpr int kDeepest = 64;
    struct Level {
        std::set<std::string> keys;
        std::string step; // of the JSON pointer: a key, or an index
        size_t index = 0;
    };
    std::vector<Level> levels;
    auto place = [&] {
        std::string pointer;
        for (const Level &level : levels)
            pointer += "/" + level.step;
        return pointer + ": ";
    };
    auto refuseNul = [&](const std::string &found) {
        if (found.find('\0') != std::string::npos)
            throw UsageError{place() + "expected a text without \\u0000"};
    };
    using Event = json::parse_event_t;
    auto accept = [&](int depth, Event event, json &value) {
        const bool opens = event == Event::object_start || event == Event::array_start;
        const bool closes = event == Event::object_end || event == Event::array_end;
        if (closes)
            levels.pop_back();
        if ((opens || event == Event::value) && !levels.empty() && levels.back().keys.empty())
            levels.back().step = std::to_string(levels.back().index++);
        if (opens && depth >= kDeepest) // the outermost opens at 0
            throw UsageError{fmt::format("expected JSON nested at most {} deep", kDeepest)};
        if (opens)
            levels.emplace_back();
        if (event == Event::key) {
            Level &level = levels.back();
            level.step = value.get<std::string>();
            if (level.step.find('\0') != std::string::npos)
                level.step = shown(value);
            refuseNul(value.get_ref<const std::string &>());
            if (!level.keys.insert(level.step).second)
                throw UsageError{place() + "given twice"};
        }
        if (event == Event::value && value.is_string())
            refuseNul(value.get_ref<const std::string &>());
        return true;
    };
    try {
        return json::parse(text, accept, true, true);
    } catch (const json::exception &error) {
        // "[json.exception.parse_error.101] parse error at line 3, column 5: ..."
        const std::string_view what = error.what();
        const size_t start = what.find("at line");
        throw UsageError{std::string(start == std::string_view::npos ? what : what.substr(start))};
    }
}

std::string shown(const json &value)
{
    constexpr size_t kMost = 60;
    const std::string text = dumped(value);
    if (text.size() <= kMost)
        return text;
    size_t kept = kMost - 3;
    while (kept > 0 && (text[kept] & 0xC0) == 0x80) // within a character of UTF-8
        --kept;
    return text.substr(0, kept) + "...";
}

std::string expectedOf(const Argument &argument)
{
    std::string choices;
    for (const auto &[name, unused] : namedNumbers(argument.choices))
        choices += fmt::format("{}{}", choices.empty() ? "" : ", ", name);
    switch (argument.type) {
    case Type::Number:
        return (argument.most == UINT32_MAX ? "a number of 32 bits, decimal or 0x"
                                            : fmt::format("a number up to {}, decimal or 0x", argument.most)) +
               (choices.empty() ? "" : ", or one of " + choices);
    case Type::Mac:
        return "an address such as 00:11:22:33:44:55";
    case Type::Ports:
        return fmt::format("ports up to {} such as 1,2,5-7, or - for none", lastPort(argument));
    case Type::Word:
        return choices.empty() ? "a word" : "one of " + choices;
    case Type::Text:
        return choices.empty() ? "a text" : "a text of " + choices;
    case Type::Json:
        return choices.empty() ? "a JSON value" : "an object with " + choices;
    case Type::File:
        return "the path of a file";
    case Type::Call:
        return "NAME[@N[+]]=STATUS";
    case Type::Line:
        return "a command";
    }
    return {};
}

namespace
{

std::vector<std::string_view> namesOf(std::string_view choices)
{
    std::vector<std::string_view> names;
    for (const auto &[name, unused] : namedNumbers(choices))
        names.push_back(name);
    return names;
}

} // namespace

json checkedValue(const Argument &argument, const json &value)
{
    const std::string name(argument.name);
    const std::optional<json> kept = valueOf(argument, value);
    if (!kept) {
        const bool word = (argument.type == Type::Word || argument.type == Type::Number) && value.is_string() &&
                          !argument.choices.empty();
        throw ArgumentError{
            {fmt::format("expected {}, found {}{}", expectedOf(argument), shown(value),
                         word ? didYouMean(value.get_ref<const std::string &>(), namesOf(argument.choices))
                              : "")},
            name};
    }
    try {
        if (argument.check != nullptr)
            argument.check(*kept);
    } catch (const ArgumentError &error) {
        throw ArgumentError{{error.text}, name + error.argument};
    } catch (const UsageError &error) {
        throw ArgumentError{{error.text}, name};
    }
    return *kept;
}

// ---- Arguments ------------------------------------------------------------------------------

const Argument &Arguments::declared(std::string_view name) const
{
    const auto found = std::ranges::find(declared_, name, &Argument::name);
    if (found == declared_.end())
        throw std::logic_error(fmt::format("a command reads its argument '{}', which it does not have", name));
    return *found;
}

bool Arguments::has(std::string_view name) const
{
    return values_.contains(name);
}

uint32_t Arguments::number(std::string_view name) const
{
    const Argument &argument = declared(name);
    if (!has(name))
        return argument.otherwise;
    const nlohmann::json &value = json(name);
    if (value.is_number())
        return value.get<uint32_t>();
    const std::vector<std::string_view> words = split(argument.choices, '|');
    return static_cast<uint32_t>(std::ranges::find(words, value.get<std::string>()) - words.begin());
}

std::vector<uint32_t> Arguments::ports(std::string_view name) const
{
    return has(name) ? json(name).get<std::vector<uint32_t>>() : std::vector<uint32_t>();
}

std::vector<uint8_t> Arguments::mac(std::string_view name) const
{
    return json(name).get<std::vector<uint8_t>>();
}

std::string Arguments::text(std::string_view name) const
{
    return has(name) ? json(name).get<std::string>() : std::string();
}

const nlohmann::json &Arguments::json(std::string_view name) const
{
    return values_.at(std::string(declared(name).name));
}

void Arguments::set(std::string_view name, nlohmann::json value)
{
    values_[std::string(name)] = std::move(value);
}

} // namespace zrbench
