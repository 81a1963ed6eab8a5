// What a recording holds, for people and for programs; and the manager's calls as a device file.
#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <set>

#include "l2/vlan.h"
#include "platform/manager.h"
#include "tools/zrbench/commands.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/replay.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

using Values = std::vector<std::pair<std::string, std::string>>;

constexpr size_t kMostShown = 10; // functions of a ranking

std::optional<std::string> valueOf(const Values &values, std::string_view name)
{
    const auto found = std::ranges::find(values, name, &std::pair<std::string, std::string>::first);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

double micros(uint64_t nanoseconds)
{
    return static_cast<double>(nanoseconds / 100) / 10;
}

struct Counted {
    uint64_t calls = 0;
    uint64_t time = 0;
    uint64_t longest = 0;
    void add(uint64_t duration)
    {
        ++calls;
        time += duration;
        longest = std::max(longest, duration);
    }
};

// The platform's own time, calls and failure lines within an operation.
struct Inside {
    uint64_t platform = 0;
    size_t calls = 0;
    std::vector<std::string> lines;
    std::vector<const RecordedCall *> asked;
};

Inside insideOf(const RecordedCall &operation, const std::string &wanted)
{
    Inside inside;
    for (const RecordedCall &call : operation.within) {
        if (call.kind != RecordedCall::Platform)
            continue;
        ++inside.calls;
        inside.platform += call.duration;
        if (call.name() == "LSWM_ConfigFailPrint")
            inside.lines.push_back(valueOf(valuesIn(call.call), "text").value_or(""));
        if (!wanted.empty() && call.name() == wanted)
            inside.asked.push_back(&call);
    }
    return inside;
}

void count(std::map<std::string, Counted> &functions, const std::vector<RecordedCall> &calls)
{
    for (const RecordedCall &call : calls) {
        if (call.kind == RecordedCall::Value)
            continue;
        functions[std::string(call.name())].add(call.duration);
        count(functions, call.within);
    }
}

TextTable ranking(const char *what, const std::map<std::string, Counted> &functions, bool byCalls)
{
    std::vector<std::pair<std::string, Counted>> sorted(functions.begin(), functions.end());
    std::ranges::stable_sort(sorted, [&](const auto &a, const auto &b) {
        return byCalls ? a.second.calls > b.second.calls : a.second.time > b.second.time;
    });
    TextTable table({what, "CALLS", "MICROSECONDS", "EACH", "LONGEST"});
    for (size_t i = 0; i < std::min(kMostShown, sorted.size()); ++i) {
        const Counted &counted = sorted[i].second;
        table.row({sorted[i].first, counted.calls, micros(counted.time), micros(counted.time / counted.calls),
                   micros(counted.longest)});
    }
    return table;
}

std::string statusText(const RecordedCall &operation)
{
    return operation.ended ? valueOf(valuesIn(operation.end), "result").value_or("") : "";
}

} // namespace

void showRecording(const Recording &recording, const Shown &shown)
{
    std::map<std::string, Counted> operations;
    std::map<std::string, Counted> functions;
    nlohmann::json told = nlohmann::json::array();
    std::set<unsigned> threads;
    std::string last;
    size_t repeated = 0;
    auto endRepetition = [&] {
        if (repeated > 1)
            print("             {} times\n", repeated);
        repeated = 0;
    };
    if (!shown.json)
        print("{}: made on {}, {}\n", recording.file, recording.machine,
              recording.why.empty()      ? "without an end: the program was killed, or still runs"
              : recording.why == "exit"  ? "whole"
              : recording.why == "limit" ? "ended by its size limit"
                                         : "ended by a full disk");
    for (const RecordedCall &operation : recording.calls) {
        if (operation.kind != RecordedCall::Operation)
            continue;
        const Inside inside = insideOf(operation, shown.call);
        const std::string_view module = slotOf(operation.name()).first;
        if ((!shown.unit.empty() && valueOf(valuesIn(operation.call), "unit") != shown.unit) ||
            (!shown.module.empty() && module != shown.module) ||
            (!shown.call.empty() && operation.name() != shown.call && inside.asked.empty()))
            continue;
        threads.insert(operation.thread);
        operations[std::string(operation.name())].add(operation.duration);
        count(functions, operation.within);
        const std::string status = statusText(operation);
        const uint64_t library = operation.duration - std::min(operation.duration, inside.platform);
        if (shown.json) {
            nlohmann::json one = {{"line", operation.line},
                                  {"seconds", static_cast<double>(operation.time) / 1e9},
                                  {"thread", operation.thread},
                                  {"module", module},
                                  {"call", operation.call},
                                  {"end", operation.end},
                                  {"calls", inside.calls},
                                  {"libraryMicroseconds", micros(library)},
                                  {"platformMicroseconds", micros(inside.platform)}};
            one["ended"] = operation.ended;
            one["lines"] = inside.lines;
            told.push_back(std::move(one));
            continue;
        }
        // What is asked again and again is told once.
        const std::string again = fmt::format("{} {}", operation.name(), status);
        if (again == last && inside.lines.empty() && inside.asked.empty()) {
            ++repeated;
            continue;
        }
        endRepetition();
        last = again;
        repeated = 1;
        print("{:12.6f} {}{}\n", static_cast<double>(operation.time) / 1e9, operation.call,
              operation.ended ? operation.end : " has not ended");
        print("             {} platform calls, {} us in the library, {} us in the platform\n", inside.calls,
              micros(library), micros(inside.platform));
        for (const std::string &line : inside.lines)
            print("             {}\n", line);
        for (const RecordedCall *call : inside.asked)
            print("             {}:{}: {}\n", recording.file, call->line, call->text());
    }
    endRepetition();
    const std::vector<std::pair<std::string, TextTable>> rankings{
        {"slowestOperations", ranking("SLOWEST OPERATIONS", operations, false)},
        {"frequentOperations", ranking("MOST FREQUENT OPERATIONS", operations, true)},
        {"slowestCalls", ranking("SLOWEST PLATFORM CALLS", functions, false)},
        {"frequentCalls", ranking("MOST FREQUENT PLATFORM CALLS", functions, true)}};
    if (shown.json) {
        nlohmann::json all = {{"file", recording.file},
                              {"machine", recording.machine},
                              {"ended", recording.why},
                              {"threads", threads.size()}};
        all["operations"] = std::move(told);
        for (const auto &[name, table] : rankings)
            all[name] = table.rows();
        print("{}\n", all.dump());
        return;
    }
    for (const auto &[name, table] : rankings)
        print("\n{}", table.text());
}

// ---- as a device file -----------------------------------------------------------------------

namespace
{

// The numbers in "[1 2 255]".
std::vector<uint32_t> numbersIn(std::string_view list)
{
    std::vector<uint32_t> numbers;
    for (size_t at = 1; at < list.size();) {
        const size_t end = std::min(list.find_first_of(" ]", at), list.size());
        numbers.push_back(parseNumber(std::string(list.substr(at, end - at))).value_or(0));
        at = end + 1;
    }
    return numbers;
}

// The ports of a list up to its end, or those of them that `marked` marks.
nlohmann::json portsOf(const std::string &list, const std::string &marked)
{
    nlohmann::json ports = nlohmann::json::array();
    const std::vector<uint32_t> all = numbersIn(list);
    const std::vector<uint32_t> marks = numbersIn(marked);
    for (size_t i = 0; i < all.size() && all[i] != ZR_VLAN_LIST_END; ++i)
        if (marked.empty() || (i < marks.size() && marks[i] != 0))
            ports.push_back(all[i]);
    return ports;
}

// The recorded value as a command takes it; null when it cannot.
nlohmann::json argumentFrom(const Argument &argument, const std::string &value)
{
    if (argument.type == Type::Word) {
        std::string_view words = argument.choices;
        for (uint32_t nth = parseNumber(value).value_or(UINT32_MAX); nth > 0 && !words.empty(); --nth)
            words.remove_prefix(std::min(words.find('|'), words.size() - 1) + 1);
        return words.empty() ? nlohmann::json() : nlohmann::json(words.substr(0, words.find('|')));
    }
    if (argument.type == Type::Number) {
        if (const std::optional<uint32_t> number = parseNumber(value))
            return *number <= argument.most ? nlohmann::json(*number) : nlohmann::json();
        return nullptr;
    }
    if (argument.type == Type::Mac)
        return value;
    if (argument.type == Type::Text && value.size() >= 2 && value[0] == '"' &&
        value.find('\\') == std::string::npos)
        return value.substr(1, value.size() - 2);
    return nullptr;
}

nlohmann::json stepFrom(const RecordedCall &operation)
{
    const auto [module, slot] = slotOf(operation.name());
    const std::string label = fmt::format("{} {}", module, slot);
    const auto found = std::ranges::find(commands(), label, &Command::slot);
    if (found == commands().end())
        return nullptr;
    const Values values = valuesIn(operation.call);
    nlohmann::json step = {{"do", (*found)->name}};
    const std::vector<Argument> &arguments = (*found)->arguments;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const Argument &argument = arguments[i];
        std::optional<std::string> value;
        for (const auto &[name, text] : values)
            if (!value && (name == argument.name || name.ends_with(fmt::format(".{}", argument.name))))
                value = text;
        // Under another name, at the same place.
        if (!value && i < values.size() && values[i].first.find('.') == std::string::npos)
            value = values[i].second;
        nlohmann::json given = value ? argumentFrom(argument, *value) : nlohmann::json();
        if (argument.type == Type::Ports && operation.name() == "ZR_VLAN_AddMultiMember")
            given = portsOf(valueOf(values, "ports").value_or(""),
                            argument.name == "ports" ? "" : valueOf(values, "untags").value_or(""));
        if (given.is_null() && !argument.optional)
            return nullptr;
        if (!given.is_null())
            step[std::string(argument.name)] = given;
    }
    if (const std::optional<uint32_t> status = parseNumber(statusText(operation)); status && *status != 0)
        step["expect"] = *status;
    return step;
}

nlohmann::json unitFrom(const RecordedCall &value)
{
    const Values values = valuesIn(value.call);
    auto number = [&](const char *name) {
        return parseNumber(valueOf(values, name).value_or("0")).value_or(0);
    };
    nlohmann::json unit = {{"unit", number("unit")},
                           {"maxFrameSize", number("info.maxFrameSize")},
                           {"reservedPort", number("info.reservedPort")},
                           {"cascadeTrunk", number("info.cascadeTrunkId")}};
    const std::vector<uint32_t> words = numbersIn(valueOf(values, "portMap").value_or(""));
    for (size_t set = 0; set * 4 + 3 < words.size(); ++set) {
        nlohmann::json ports = nlohmann::json::array();
        for (uint32_t port = 0; port < LSWM_PORTS; ++port)
            if ((words[set * 4 + port / 32] >> (port % 32) & 1) != 0)
                ports.push_back(port);
        if (!ports.empty())
            unit["portSets"][std::to_string(set)] = std::move(ports);
    }
    // Two bytes a port.
    const std::string flags = valueOf(values, "info.port").value_or("");
    for (size_t port = 0; port * 6 + 5 <= flags.size() + 1; ++port) {
        auto byte = [&](size_t at) {
            return at + 2 <= flags.size() ? parseNumber("0x" + flags.substr(at, 2)).value_or(0) : 0;
        };
        const uint32_t flag = byte(port * 6);
        const uint32_t kind = byte(port * 6 + 3);
        if (flag != 0 || kind != 0)
            unit["ports"][std::to_string(port)] = {{"flags", flag}, {"kind", kind}};
    }
    return unit;
}

} // namespace

void writeDevice(const Recording &recording, const std::string &path)
{
    nlohmann::json units = nlohmann::json::object();
    nlohmann::json steps = nlohmann::json::array();
    std::map<std::string, size_t> leftOut;
    for (const RecordedCall &call : recording.calls) {
        if (call.kind == RecordedCall::Value && call.name() == "g_lswmInfo" && steps.empty()) {
            nlohmann::json unit = unitFrom(call);
            if (unit["maxFrameSize"] != 0)
                units[unit["unit"].dump()] = std::move(unit);
        } else if (call.kind == RecordedCall::Operation) {
            nlohmann::json step = stepFrom(call);
            if (step.is_null())
                ++leftOut[std::string(call.name())];
            else
                steps.push_back(std::move(step));
        }
    }
    nlohmann::json device = {{"about", fmt::format("from {}", recording.file)},
                             {"units", nlohmann::json::array()}};
    for (const auto &unit : units)
        device["units"].push_back(unit);
    device["steps"] = std::move(steps);
    Output output(path);
    output.start();
    output.write(device.dump(1) + "\n");
    output.check();
    print("{}: {} steps\n", path, device["steps"].size());
    for (const auto &[name, times] : leftOut)
        print("left out: {}, {} times: no command takes what it was given\n", name, times);
}

} // namespace zrbench
