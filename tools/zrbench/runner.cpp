#include "tools/zrbench/runner.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>

#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// Numbers are compared as numbers, port sets as sets, however they are written.
bool same(const json &a, const json &b)
{
    if (a.is_array() && b.is_string())
        return plainText(a) == b;
    const std::optional<uint32_t> left = asNumber(a);
    const std::optional<uint32_t> right = asNumber(b);
    return left && right ? *left == *right : a == b;
}

void compareLines(const std::vector<Line> &lines, const std::vector<std::string> &expected,
                  std::vector<std::string> &found)
{
    std::vector<std::string> printed;
    for (const Line &line : lines) {
        if (line.kind == ZRSIM_LINE_FAIL)
            printed.push_back(line.text);
    }
    if (printed == expected)
        return;
    const size_t before = found.size();
    for (const std::string &text : expected) {
        if (std::ranges::count(printed, text) < std::ranges::count(expected, text))
            found.push_back(fmt::format("this line is missing: {}", text));
    }
    for (const std::string &text : printed) {
        if (std::ranges::count(expected, text) < std::ranges::count(printed, text))
            found.push_back(fmt::format("this line is not expected: {}", text));
    }
    if (found.size() == before)
        found.push_back("the lines come in another order");
}

void compareOutputs(const Outcome &outcome, const json &expected, std::vector<std::string> &found)
{
    for (const auto &[name, value] : expected.items()) {
        const auto output = std::ranges::find(outcome.outputs, name, &std::pair<std::string, json>::first);
        if (output == outcome.outputs.end())
            found.push_back(fmt::format("there is no output {}", name));
        else if (!same(output->second, value))
            found.push_back(fmt::format("expected {}={}", name, shown(value)));
    }
}

void compareText(const Result &result, const std::vector<std::string> &shows, std::vector<std::string> &found)
{
    std::string text = result.outcome.text;
    for (const Line &line : result.lines)
        text += line.kind == ZRSIM_LINE_FAIL ? "" : line.text + "\n";
    for (const std::string &piece : shows) {
        if (text.find(piece) == std::string::npos)
            found.push_back(fmt::format("\"{}\" is not shown", piece));
    }
}

} // namespace

std::vector<std::string> deviations(const Result &result, const Expectation &expected, bool linesSeen)
{
    std::vector<std::string> found;
    const uint32_t status = result.outcome.expected.value_or(expected.status);
    if (!result.outcome.hasStatus && status != LSW_OK)
        found.push_back(fmt::format("expected status {}; this command has none", status));
    if (result.outcome.hasStatus && result.outcome.status != status)
        found.push_back(fmt::format("expected status {}", status));
    if (linesSeen)
        compareLines(result.lines, expected.lines, found);
    // A step that means to be refused says so in "shows".
    if (result.boardRefused && expected.shows.empty())
        found.push_back("the board refuses this");
    compareOutputs(result.outcome, expected.outputs, found);
    if (!linesSeen)
        return found;
    compareText(result, expected.shows, found);
    if (result.held && *result.held != static_cast<int>(expected.holds))
        found.push_back(fmt::format("keeps {} memory blocks, expected {}", *result.held, expected.holds));
    if (result.badFree)
        found.push_back("frees a memory block that it does not hold");
    return found;
}

void runDevice(Session &session, const Device &device, Report &report, bool stop)
{
    auto placed = [&](const Step &step, const Run &run, auto action) {
        try {
            action();
        } catch (const UsageError &error) {
            throw UsageError{fmt::format("{}: {}: {}", step.place, run.invocation.text, error.text)};
        }
    };
    auto setBoard = [&](uint32_t unit, const std::string &line, const std::string &place) {
        const std::string answer = session.board(unit, line);
        if (session.boardRefused())
            throw UsageError{
                fmt::format("{}: the board refuses this: {}", place, answer.substr(0, answer.find('\n')))};
    };
    for (const Step &step : device.steps) {
        for (const Run &run : step.runs)
            placed(step, run, [&] { session.check(run.invocation); });
    }
    for (const auto &[name, value] : device.environment)
        setenv(name.c_str(), value.c_str(), 1);
    for (const DeviceUnit &unit : device.units) {
        session.setUnitInfo(unit.unit, unit.info);
        for (size_t i = 0; i < unit.board.size(); ++i)
            setBoard(unit.unit, unit.board[i], fmt::format("{}/board/{}", unit.place, i));
    }
    for (const DeviceCable &cable : device.cables)
        setBoard(cable.unit, cable.line, cable.place);
    if (!device.about.empty())
        report.heading(device.about);
    for (const Step &step : device.steps) {
        if (session.quitting() || (stop && report.deviating() != 0))
            break;
        if (step.heading) {
            report.heading(step.text);
            continue;
        }
        std::vector<CheckedRun> runs;
        for (const Run &run : step.runs)
            placed(step, run, [&] {
                Result result = session.invoke(run.invocation);
                std::vector<std::string> found =
                    deviations(result, run.expected, session.inspection().available());
                runs.push_back({&run.invocation, std::move(result), std::move(found)});
            });
        report.step(step.text, step.note, runs, false, step.place);
    }
}

} // namespace zrbench
