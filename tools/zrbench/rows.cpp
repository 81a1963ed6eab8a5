#include "tools/zrbench/rows.h"

#include <fmt/format.h>
#include <sstream>

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
        else if (argument.type == Type::Mac)
            line += showMac(a.mac(argument.name).data());
        else
            line += a.text(argument.name);
    }
    return session.board(a.number("unit"), line);
}

// An answer without any output is the board's refusal.
Outcome measured(const std::string &answer)
{
    Outcome outcome = Outcome::shown("");
    std::istringstream words(answer);
    for (std::string word; words >> word;) {
        const size_t equals = word.find('=');
        if (equals == std::string::npos)
            continue;
        if (const auto number = parseNumber(std::string_view(word).substr(equals + 1)))
            outcome.out(word.substr(0, equals), *number);
    }
    if (outcome.outputs.empty())
        throw UsageError{"the board refuses this: " + answer.substr(0, answer.find('\n'))};
    return outcome;
}

} // namespace

std::string worded(std::string_view choices, uint32_t value)
{
    const std::vector<std::string_view> words = split(choices, '|');
    return !choices.empty() && value < words.size() ? std::string(words[value]) : fmt::to_string(value);
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
    return {
        name, arguments, help, {}, [verb = std::move(verb), arguments](Session &session, const Arguments &a) {
            return Outcome::shown(boardAnswer(session, verb, arguments, a));
        }};
}

Command measuredRow(std::string_view name, std::string verb, std::vector<Argument> arguments,
                    std::string_view help)
{
    Command row = boardRow(name, std::move(verb), std::move(arguments), help);
    row.run = [run = std::move(row.run)](Session &session, const Arguments &a) {
        return measured(run(session, a).text);
    };
    return row;
}

} // namespace zrbench
