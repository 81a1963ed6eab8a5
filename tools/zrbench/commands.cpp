#include "tools/zrbench/commands.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>

#include "tools/zrbench/scanner.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

const Command *findCommand(std::string_view name)
{
    for (const Command *command : commands()) {
        if (command->name == name)
            return command;
    }
    return nullptr;
}

// Commands have one or two words; the longer name wins.
const Command &scanCommand(Scanner &scanner)
{
    if (scanner.atEnd())
        throw UsageError{"expected a command"};
    const std::string_view first = scanner.word();
    Scanner after = scanner;
    const std::string name = fmt::format("{} {}", first, after.word());
    if (const Command *command = findCommand(name)) {
        scanner = after;
        return *command;
    }
    if (const Command *command = findCommand(first))
        return *command;
    std::vector<std::string_view> alike;
    std::vector<std::string_view> names;
    for (const Command *command : commands()) {
        if (command->name.starts_with(fmt::format("{} ", first)))
            alike.push_back(command->name);
        names.push_back(command->name);
        names.push_back(command->name.substr(0, command->name.find(' ')));
    }
    const std::string_view typed = name.ends_with(' ') ? first : std::string_view(name);
    if (const std::string meant = didYouMean(typed, names); !meant.empty() && typed != first)
        throw UsageError{fmt::format("no command {}{}", shown(typed), meant)};
    if (alike.empty())
        throw UsageError{
            fmt::format("no command {}{}", shown(first), didYouMean(first, names, "; help lists them"))};
    throw UsageError{fmt::format("no command {}; there is {}", shown(typed), fmt::join(alike, ", "))};
}

json scanArgument(Scanner &scanner, const Argument &argument)
{
    if (argument.type == Type::Text || argument.type == Type::Line)
        return scanner.all();
    if (argument.type == Type::File)
        return scanner.path();
    if (argument.type != Type::Json)
        return scanner.word();
    try {
        return parseJson(scanner.value());
    } catch (const UsageError &error) {
        throw ArgumentError{{"expected a JSON value: " + error.text}, std::string(argument.name)};
    }
}

std::string upperCase(std::string_view text)
{
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

// A value given by name as the shell takes it.
std::string shellText(const Argument &argument, const json &value)
{
    if (argument.type == Type::Ports && value.is_array()) {
        std::string text;
        for (const json &port : value)
            text += (text.empty() ? "" : ",") + shellText({}, port);
        return text.empty() ? "-" : text;
    }
    return plainText(value);
}

} // namespace

const std::vector<const Command *> &commands()
{
    static const std::vector<const Command *> joined = [] {
        std::vector<const Command *> all;
        for (std::span<const Command> list :
             {sessionCommands(), commonCommands(), boardCommands(), portCommands(), portDiagnosticsCommands(),
              macCommands(), stpCommands(), vlanCommands(), trunkCommands(), aclCommands(), qosCommands(),
              meterCommands(), statCommands(), frameCommands(), showCommands()}) {
            for (const Command &command : list)
                all.push_back(&command);
        }
        std::ranges::sort(all, {}, &Command::name);
        return all;
    }();
    return joined;
}

Invocation parseInvocation(std::string_view line, const json &named)
{
    Scanner scanner(line);
    const Command &command = scanCommand(scanner);
    if (line.find('\0') != std::string_view::npos)
        throw UsageError{"expected a line without NUL characters"};
    Invocation invocation{&command, Arguments(command.arguments), std::string(Scanner(line).all())};
    for (const Argument &argument : command.arguments) {
        const auto given = named.find(std::string(argument.name));
        json value;
        if (given != named.end()) {
            value = *given;
            invocation.text += " " + shellText(argument, value);
        } else if (!scanner.atEnd()) {
            value = scanArgument(scanner, argument);
        } else if (argument.optional) {
            continue;
        } else {
            throw UsageError{fmt::format("{} is missing: {}", argument.name, usage(command))};
        }
        invocation.arguments.set(argument.name, checkedValue(argument, value));
    }
    if (!scanner.atEnd())
        throw UsageError{fmt::format("{} is too much: {}", shown(scanner.all()), usage(command))};
    for (const auto &[name, value] : named.items()) {
        if (!invocation.arguments.has(name))
            throw ArgumentError{{fmt::format("no such argument: {}", usage(command))}, name};
    }
    return invocation;
}

std::string usage(const Command &command)
{
    std::string text(command.name);
    for (const Argument &argument : command.arguments)
        text += " " + usage(argument);
    return text;
}

std::string usage(const Argument &argument)
{
    const bool chosen = argument.type == Type::Word && !argument.choices.empty();
    const std::string shown = chosen ? std::string(argument.choices) : upperCase(argument.name);
    return argument.optional ? fmt::format("[{}]", shown) : shown;
}

bool usesSlot(const Command &command, std::string_view module, size_t number)
{
    // "ACL 7, 8, HSEC 4": a number without a module belongs to the module before it.
    std::string_view current;
    for (Scanner scanner(command.slot); !scanner.atEnd();) {
        std::string_view word = scanner.word();
        word.remove_suffix(word.ends_with(',') ? 1 : 0);
        const std::optional<uint32_t> slot = parseNumber(word);
        if (!slot)
            current = word;
        else if (current == module && *slot == number)
            return true;
    }
    return false;
}

std::string help(const Command &command, size_t width)
{
    constexpr size_t kWidest = 44;
    const size_t column = width == 0 ? kWidest : std::min(kWidest, width * 2 / 5);
    const std::string how = usage(command);
    const std::string what =
        fmt::format("{}{}", command.help, command.slot.empty() ? "" : fmt::format(" [{}]", command.slot));
    const bool beside = how.size() <= column;
    return (beside ? "" : folded(how, width, 4)) +
           folded(fmt::format("{:<{}}  {}", beside ? how : "", column, what), width, column + 2);
}

std::string help(std::string_view topic, size_t width)
{
    std::string text;
    std::vector<std::string_view> names;
    for (const Command *command : commands()) {
        names.push_back(command->name);
        if (command->name.starts_with(topic))
            text += help(*command, width);
    }
    if (text.empty())
        throw UsageError{fmt::format("no command starts with {}{}", shown(topic),
                                     didYouMean(topic, names, "; help lists them"))};
    return text;
}

} // namespace zrbench
