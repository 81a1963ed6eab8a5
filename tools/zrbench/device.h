// A device and the steps made on it, as a JSON file; docs/device-files.md describes it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zrbench/commands.h"

namespace zrbench
{

// What a step must result in.
struct Expectation {
    uint32_t status = 0;
    std::vector<std::string> lines; // failure lines, whole and in order
    unsigned holds = 0;
    nlohmann::json outputs = nlohmann::json::object();
    std::vector<std::string> shows;
};

struct Run {
    Invocation invocation;
    Expectation expected;
};

// One entry of the file: a heading, or a command with one run, or with one per value of its "each".
struct Step {
    std::string place; // "gateway.json: /steps/3"
    std::string text;
    std::string note;
    bool heading = false;
    std::vector<Run> runs;
};

struct DeviceUnit {
    std::string place;
    uint32_t unit = 0;
    nlohmann::json info; // as Session::setUnitInfo takes it
    std::vector<std::string> board;
};

// A cable between two ports.
struct DeviceCable {
    std::string place;
    uint32_t unit = 0;
    std::string line; // for the board of that unit
};

struct Device {
    std::string file;
    std::string about;
    std::vector<std::pair<std::string, std::string>> environment;
    std::vector<DeviceUnit> units;
    std::vector<DeviceCable> cables;
    std::vector<Step> steps;
};

// What a file holds, "-" for standard input. Throws UsageError.
std::string contents(const std::string &file);

// Reads and checks the whole file and those that it includes. Throws UsageError with file, place and what was
// expected.
Device loadDevice(const std::string &file);
// The same of a file's contents.
Device readDevice(const std::string &file, std::string_view text);

} // namespace zrbench
