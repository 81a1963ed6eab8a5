#include "tools/zrbench/commands.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <set>

#include "tools/zrbench/scanner.h"
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
    for (const Command *command : commands()) {
        if (command->name.starts_with(fmt::format("{} ", first)))
            alike.push_back(command->name);
    }
    if (alike.empty())
        throw UsageError{fmt::format("no command {}; help lists them", shown(first))};
    throw UsageError{fmt::format("no command {}; there is {}", shown(name.ends_with(' ') ? first : name),
                                 fmt::join(alike, ", "))};
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
              meterCommands(), statCommands(), frameCommands()}) {
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
    for (const Argument &argument : command.arguments) {
        std::string shown = argument.choices.empty() ? upperCase(argument.name) : std::string(argument.choices);
        text += argument.optional ? fmt::format(" [{}]", shown) : " " + shown;
    }
    return text;
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

std::string help(std::string_view topic)
{
    constexpr size_t kWidth = 44;
    std::string text;
    for (const Command *command : commands()) {
        if (!command->name.starts_with(topic))
            continue;
        const std::string how = usage(*command);
        text += how.size() <= kWidth ? fmt::format("{:<{}}  ", how, kWidth)
                                     : fmt::format("{}\n{:{}}  ", how, "", kWidth);
        text += command->help;
        text += command->slot.empty() ? "\n" : fmt::format(" [{}]\n", command->slot);
    }
    if (text.empty())
        throw UsageError{fmt::format("no command starts with {}; help lists them", shown(topic))};
    return text;
}

std::vector<std::string> completions(std::string_view line)
{
    const size_t blank = line.find_last_of(kBlanks);
    const size_t lastWord = blank == std::string_view::npos ? 0 : blank + 1;
    const std::string_view begun = line.substr(lastWord);
    std::set<std::string> found;

    // Words of command names.
    for (const Command *command : commands()) {
        if (!command->name.starts_with(line))
            continue;
        const std::string_view rest = command->name.substr(lastWord);
        found.emplace(rest.substr(0, rest.find(' ')));
    }
    // Choices of the argument that is being typed.
    try {
        Scanner scanner(line.substr(0, lastWord));
        const Command &command = scanCommand(scanner);
        for (const Argument &argument : command.arguments) {
            if (!scanner.atEnd()) {
                scanArgument(scanner, argument);
                continue;
            }
            for (size_t from = 0; !argument.choices.empty() && from <= argument.choices.size();) {
                const size_t to = std::min(argument.choices.find('|', from), argument.choices.size());
                if (const std::string_view choice = argument.choices.substr(from, to - from);
                    choice.starts_with(begun))
                    found.emplace(choice);
                from = to + 1;
            }
            break;
        }
    } catch (const UsageError &) {
        // Not a command yet.
    }
    return {found.begin(), found.end()};
}

} // namespace zrbench
