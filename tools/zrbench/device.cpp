#include "tools/zrbench/device.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>

#include "tools/zrbench/session.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/substitute.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// A value in the file and its JSON pointer.
struct Node {
    const json &value;
    std::string place;

    [[noreturn]] void refuse(const std::string &why) const
    {
        throw UsageError{place.empty() ? why : fmt::format("{}: {}", place, why)};
    }
    [[noreturn]] void expected(std::string_view what) const
    {
        refuse(fmt::format("expected {}, found {}", what, shown(value)));
    }
    bool has(const std::string &key) const { return value.contains(key); }
    Node operator[](const std::string &key) const { return {value.at(key), place + "/" + key}; }

    std::string text() const
    {
        if (!value.is_string())
            expected("a text");
        return value.get<std::string>();
    }
    uint32_t number() const
    {
        const std::optional<uint32_t> found = asNumber(value);
        if (!found)
            expected("a number of 32 bits");
        return *found;
    }
    // A number, or the name of a status.
    uint32_t status() const
    {
        const std::optional<uint32_t> found =
            value.is_string() ? statusNumber(value.get_ref<const std::string &>()) : asNumber(value);
        if (!found)
            expected(fmt::format("a number or one of {}", fmt::join(split(statusWords(), '|'), ", ")));
        return *found;
    }
    const json &object() const
    {
        if (!value.is_object())
            expected("an object");
        return value;
    }
    std::vector<Node> elements() const
    {
        if (!value.is_array())
            expected("a list");
        std::vector<Node> found;
        for (size_t i = 0; i < value.size(); ++i)
            found.push_back({value[i], fmt::format("{}/{}", place, i)});
        return found;
    }
    std::vector<std::string> texts() const
    {
        std::vector<std::string> found;
        for (const Node &element : elements())
            found.push_back(element.text());
        return found;
    }
    void onlyKeys(std::initializer_list<std::string_view> keys) const
    {
        for (const auto &[key, unused] : object().items()) {
            if (std::ranges::count(keys, key) == 0)
                (*this)[key].refuse(fmt::format("not known here; there is {}", fmt::join(keys, ", ")));
        }
    }
};

constexpr std::string_view kStepKeys[] = {"do", "expect", "lines", "holds", "out", "shows", "note", "each"};

Expectation readExpectation(const Node &step)
{
    Expectation expected;
    if (step.has("expect"))
        expected.status = step["expect"].status();
    if (step.has("lines"))
        expected.lines = step["lines"].texts();
    if (step.has("holds"))
        expected.holds = step["holds"].number();
    if (step.has("out"))
        expected.outputs = step["out"].object();
    if (step.has("shows"))
        expected.shows = step["shows"].texts();
    return expected;
}

Run readRun(const Node &step)
{
    json named = json::object();
    for (const auto &[key, value] : step.value.items()) {
        if (std::ranges::count(kStepKeys, key) == 0)
            named[key] = value;
    }
    const Node line = step["do"];
    const std::string text = line.text();
    Expectation expected = readExpectation(step);
    try {
        return {parseInvocation(text, named), std::move(expected)};
    } catch (const ArgumentError &error) {
        if (named.contains(error.argument.substr(0, error.argument.find('/'))))
            Node{step.value, step.place + "/" + error.argument}.refuse(error.text);
        line.refuse(fmt::format("{}: {}", error.argument, error.text));
    } catch (const UsageError &error) {
        line.refuse(error.text);
    }
}

Step readRepeatedStep(const Node &step)
{
    constexpr size_t kMostRuns = 100000;
    const Node each = step["each"];
    if (each.object().empty())
        each.expected("names with their values");
    // Every combination; the last name changes fastest.
    std::vector<json> combined{step.value};
    combined[0].erase("each");
    std::string names;
    for (const auto &[name, unused] : each.value.items()) {
        const Node values = each[name];
        const std::optional<std::vector<uint32_t>> numbers = parseList(values.text(), UINT32_MAX, kMostRuns);
        if (!numbers || numbers->empty() || numbers->size() * combined.size() > kMostRuns)
            values.expected(fmt::format("up to {} numbers such as 1,2,5-7", kMostRuns));
        names += fmt::format("{}{} = {}", names.empty() ? "" : ", ", name, values.text());
        std::vector<json> next;
        for (const json &one : combined) {
            for (const uint32_t number : *numbers) {
                next.push_back(one);
                try {
                    substitute(next.back(), name, number);
                } catch (const UsageError &error) {
                    step.refuse(error.text);
                }
            }
        }
        combined = std::move(next);
    }
    Step repeated{step.place, fmt::format("{}  ({})", step["do"].text(), names), {}, false, {}};
    for (const json &one : combined)
        repeated.runs.push_back(readRun({one, step.place}));
    return repeated;
}

Step readStep(const Node &node)
{
    if (node.value.is_string()) {
        try {
            Run run{parseInvocation(node.text()), {}};
            std::string text = run.invocation.text;
            return {node.place, std::move(text), {}, false, {std::move(run)}};
        } catch (const ArgumentError &error) {
            node.refuse(fmt::format("{}: {}", error.argument, error.text));
        } catch (const UsageError &error) {
            node.refuse(error.text);
        }
    }
    if (!node.value.is_object())
        node.expected("a command line or an object");
    if (node.has("say")) {
        node.onlyKeys({"say"});
        return {node.place, node["say"].text(), {}, true, {}};
    }
    if (!node.has("do"))
        node.expected("an object with \"do\" or \"say\"");

    Step step;
    if (node.has("each")) {
        step = readRepeatedStep(node);
    } else {
        Run run = readRun(node);
        step = {node.place, run.invocation.text, {}, false, {}};
        step.runs.push_back(std::move(run));
    }
    if (node.has("note"))
        step.note = node["note"].text();
    return step;
}

DeviceUnit readUnit(const Node &node)
{
    if (!node.object().contains("unit"))
        node.expected("an object with \"unit\"");
    DeviceUnit unit{node.place, node["unit"].number(), node.value, {}};
    unit.info.erase("unit");
    if (node.has("board")) {
        unit.board = node["board"].texts();
        unit.info.erase("board");
    }
    if (unit.unit >= LSWM_UNITS)
        node.refuse(fmt::format("expected a unit from 0 to {}, found {}", LSWM_UNITS - 1, unit.unit));
    try {
        checkUnitInfo(unit.info);
    } catch (const ArgumentError &error) {
        Node{node.value, node.place + error.argument}.refuse(error.text);
    }
    return unit;
}

// "1/15": a unit and its port.
std::pair<uint32_t, uint32_t> readEnd(const Node &node)
{
    const std::string text = node.text();
    const size_t slash = std::min(text.find('/'), text.size());
    const std::optional<uint32_t> unit = parseNumber(text.substr(0, slash));
    const std::optional<uint32_t> port = parseNumber(text.substr(std::min(slash + 1, text.size())));
    if (!unit || !port || *unit >= LSWM_UNITS || *port >= LSWM_PORTS)
        node.expected("a unit and a port such as \"1/15\"");
    return {*unit, *port};
}

// Reads a file and those that it includes into one device.
class Reader
{
public:
    void read(const std::string &file, std::string_view text)
    {
        try {
            const json whole = parseJson(text);
            if (!whole.is_object())
                Node{whole, ""}.expected("an object with \"steps\"");
            readDevice({whole, ""}, file);
        } catch (const UsageError &error) {
            throw UsageError{fmt::format("{}: {}", file, error.text)};
        }
    }
    Device device;

private:
    void readDevice(const Node &root, const std::string &file)
    {
        root.onlyKeys({"$schema", "about", "environment", "units", "cables", "steps"});
        if (root.has("about") && files_.empty())
            device.about = root["about"].text();
        if (root.has("environment")) {
            const Node environment = root["environment"];
            for (const auto &[name, unused] : environment.object().items()) {
                if (name.empty() || name.find('=') != std::string::npos)
                    environment[name].refuse("not the name of an environment variable");
                device.environment.emplace_back(name, environment[name].text());
            }
        }
        if (root.has("units")) {
            for (const Node &unit : root["units"].elements()) {
                device.units.push_back(readUnit(unit));
                device.units.back().place = placeIn(file, unit);
                if (!units_.insert(device.units.back().unit).second)
                    unit.refuse("this unit is given already");
            }
        }
        if (root.has("cables")) {
            for (const Node &cable : root["cables"].elements())
                readCable(cable, file);
        }
        if (!root.has("steps"))
            return;
        for (const Node &step : root["steps"].elements()) {
            if (step.value.is_object() && step.has("include")) {
                step.onlyKeys({"include"});
                include(step["include"], file);
                continue;
            }
            device.steps.push_back(readStep(step));
            device.steps.back().place = placeIn(file, step);
        }
    }

    static std::string placeIn(const std::string &file, const Node &node)
    {
        return fmt::format("{}: {}", file, node.place);
    }

    void readCable(const Node &cable, const std::string &file)
    {
        const std::vector<Node> ends = cable.elements();
        if (ends.size() != 2)
            cable.expected("two ports such as [\"0/15\", \"1/15\"]");
        const auto [unit, port] = readEnd(ends[0]);
        const auto [peerUnit, peerPort] = readEnd(ends[1]);
        for (const Node &end : ends)
            if (!plugged_.insert(readEnd(end)).second)
                end.refuse("this port has a cable already");
        device.cables.push_back(
            {placeIn(file, cable), unit, fmt::format("cable {} {} {}", port, peerUnit, peerPort)});
    }

    // The steps of another file come here; what it says of units and cables counts from the start.
    void include(const Node &node, const std::string &file)
    {
        const std::string name = (std::filesystem::path(file).parent_path() / node.text()).string();
        files_.push_back(file);
        std::error_code error;
        for (const std::string &above : files_)
            if (std::filesystem::equivalent(above, name, error))
                node.refuse(fmt::format("includes itself: {}, {}", fmt::join(files_, ", "), name));
        std::string text;
        try {
            text = contents(name);
        } catch (const UsageError &refused) {
            node.refuse(fmt::format("{} {}", name, refused.text));
        }
        read(name, text);
        files_.pop_back();
    }

    std::vector<std::string> files_; // that are being read, each included by the one before
    std::set<uint32_t> units_;
    std::set<std::pair<uint32_t, uint32_t>> plugged_;
};

} // namespace

std::string contents(const std::string &file)
{
    std::ostringstream text;
    if (file == "-") {
        text << std::cin.rdbuf();
        return text.str();
    }
    std::ifstream in(file);
    if (!in || std::filesystem::is_directory(file) || !(text << in.rdbuf()))
        throw UsageError{"cannot be read"};
    return text.str();
}

Device loadDevice(const std::string &file)
{
    std::string text;
    try {
        text = contents(file);
    } catch (const UsageError &error) {
        throw UsageError{fmt::format("{}: {}", file, error.text)};
    }
    return readDevice(file, text);
}

Device readDevice(const std::string &file, std::string_view text)
{
    Reader reader;
    reader.device.file = file;
    reader.read(file, text);
    return std::move(reader.device);
}

} // namespace zrbench
