#include "tools/zrbench/rows.h"

#include <fmt/format.h>

#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

std::string boardAnswer(Session &session, const std::string &verb, const std::vector<Argument> &arguments,
                        const Arguments &a)
{
    std::string line = verb;
    for (const Argument &argument : arguments) {
        if (argument.name == kUnit.name)
            continue;
        line += " ";
        if (argument.type == Type::Number)
            line += fmt::to_string(a.number(argument.name));
        else
            line += a.text(argument.name);
    }
    return session.board(a.number("unit"), line);
}

} // namespace

nlohmann::json worded(std::string_view choices, uint32_t value)
{
    const std::vector<std::string_view> words = split(choices, '|');
    return !choices.empty() && value < words.size() ? nlohmann::json(words[value]) : nlohmann::json(value);
}

void addOutput(Outcome &outcome, const Parameter &parameter, uint32_t value)
{
    if (parameter.show != nullptr)
        outcome.out(std::string(parameter.name), parameter.show(value));
    else if (!parameter.choices.empty())
        outcome.out(std::string(parameter.name), worded(parameter.choices, value));
    else
        outcome.out(std::string(parameter.name), value);
}

Command inUseRow(Command row)
{
    row.run = [run = std::move(row.run)](Session &session, const Arguments &a) {
        return Outcome::shown("").out("inUse", run(session, a).status);
    };
    return row;
}

Command ordered(Command row, std::vector<Argument> arguments)
{
    row.arguments = std::move(arguments);
    return row;
}

Command boardRow(std::string_view name, std::string verb, std::vector<Argument> arguments,
                 std::string_view help)
{
    Command row{name, std::move(arguments), help, {}, {}};
    row.run = [verb = std::move(verb), arguments = row.arguments, how = usage(row)](Session &session,
                                                                                    const Arguments &a) {
        std::string answer = boardAnswer(session, verb, arguments, a);
        // The interpreter names its own command and not the one that was typed.
        constexpr std::string_view kUsage = "; usage: ";
        if (const size_t own = answer.find(kUsage); session.boardRefused() && own != std::string::npos)
            answer.replace(own + kUsage.size(), std::string::npos, how + "\n");
        return Outcome::shown(answer);
    };
    return row;
}

} // namespace zrbench
