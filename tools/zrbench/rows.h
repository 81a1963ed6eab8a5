// Rows of the command table that need no code of their own: commands that make one call of the library,
// and commands that hand a line to the board's interpreter.
#pragma once

#include <algorithm>
#include <limits>
#include <tuple>
#include <type_traits>

#include "tools/zrbench/session.h"

namespace zrbench
{

// A parameter of an operation. One that points to a number is an output: its `choices` are the words for
// 0, 1 and so on, and `show` writes it in another form.
struct Parameter : Argument {
    Parameter(const Argument &argument) : Argument(argument) {}
    Parameter(const char *text, nlohmann::json (*form)(uint32_t) = nullptr) : Argument{text}, show(form) {}

    nlohmann::json (*show)(uint32_t) = nullptr;
};

// 0 and 1 as "off" and "on" with choices of "off|on"; a number beyond the choices as it is.
nlohmann::json worded(std::string_view choices, uint32_t value);

void addOutput(Outcome &outcome, const Parameter &parameter, uint32_t value);

// Calls an operation with the arguments named by its parameters.
template <class... P>
Outcome call(uint32_t (*operation)(P...), const std::vector<Parameter> &parameters, const Arguments &a)
{
    return [&]<size_t... i>(std::index_sequence<i...>)
    {
        std::tuple<std::remove_pointer_t<P>...> values{
            static_cast<std::remove_pointer_t<P>>(std::is_pointer_v<P> ? 0 : a.number(parameters[i].name))...};
        auto passed = []<class T>(std::type_identity<T>, std::remove_pointer_t<T> &value) -> T {
            if constexpr (std::is_pointer_v<T>)
                return &value;
            else
                return value;
        };
        Outcome outcome = Outcome::of(operation(passed(std::type_identity<P>(), std::get<i>(values))...));
        auto add = [&]<class T>(std::type_identity<T>, const Parameter &parameter, uint32_t value) {
            if constexpr (std::is_pointer_v<T>)
                addOutput(outcome, parameter, value);
        };
        (add(std::type_identity<P>(), parameters[i], std::get<i>(values)), ...);
        return outcome;
    }
    (std::index_sequence_for<P...>());
}

// The arguments that a command takes for the parameters: the optional ones last, numbers no larger than
// the operation takes them.
template <class... P> std::vector<Argument> argumentsOf(const std::vector<Parameter> &parameters)
{
    std::vector<Argument> arguments;
    size_t next = 0;
    auto add = [&]<class T>(std::type_identity<T>) {
        Argument argument = parameters.at(next++);
        if constexpr (!std::is_pointer_v<T>) {
            argument.most = std::min<uint32_t>(argument.most, std::numeric_limits<T>::max());
            arguments.push_back(argument);
        }
    };
    (add(std::type_identity<P>()), ...);
    std::stable_partition(arguments.begin(), arguments.end(),
                          [](const Argument &argument) { return !argument.optional; });
    return arguments;
}

// One slot.
template <class Table, class... P>
Command slotRow(std::string_view name, uint32_t (*Table::*slot)(P...), std::vector<Parameter> parameters,
                std::string_view help)
{
    std::vector<Argument> arguments = argumentsOf<P...>(parameters);
    return {name, std::move(arguments), help, slotLabel(slot),
            [slot, parameters = std::move(parameters)](Session &session, const Arguments &a) {
                return call(session.slot(slot), parameters, a);
            }};
}

// An exported operation without a slot: exportRow<decltype(COM_X)>("x", "COM_X", ...).
template <class Operation>
Command exportRow(std::string_view name, const char *operation, std::vector<Parameter> parameters,
                  std::string_view help)
{
    auto arguments = []<class... P>(uint32_t (*)(P...), const auto &all) { return argumentsOf<P...>(all); };
    return {name, arguments(static_cast<Operation *>(nullptr), parameters), help, operation,
            [operation, parameters](Session &session, const Arguments &a) {
                return call(session.operation<Operation>(operation), parameters, a);
            }};
}

// The row with a result that is 1 or 0, not a status.
Command inUseRow(Command row);
// The row with its arguments typed in another order.
Command ordered(Command row, std::vector<Argument> arguments);

// Hands the board's interpreter `verb` and the arguments but the unit, and shows what it prints.
Command boardRow(std::string_view name, std::string verb, std::vector<Argument> arguments,
                 std::string_view help);

} // namespace zrbench
