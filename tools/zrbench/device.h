// A device and what is done with it, as a JSON file:
//
//   {
//     "about": "text",
//     "environment": {"lsw1_vq9_rgmii2_para": "0x2a0"},
//     "units": [{"unit": 1, "maxFrameSize": 1536, "reservedPort": 17, "cascadeTrunk": 1,
//                "portSets": {"valid": "0-4,15-17", "cascade": "15,16", "7": "1"},
//                "ports": {"0-4": {"flags": 2, "kind": 0}},
//                "board": ["revision 3"]}],                      lines for the board's interpreter
//     "steps": ["chip init 1",                                   as in the shell; expected to succeed silently
//               {"say": "a heading"},
//               {"do": "vlan create 1 5000", "expect": 4, "lines": ["a failure line", ...]},
//               {"do": "reg read", "unit": 1, "register": 4871, "out": {"value": "0x988"}},
//               {"do": "acl init 1", "holds": 3, "note": "blocks of memory that the step keeps"},
//               {"do": "mac list 1", "shows": ["a piece of the text", ...]},
//               {"do": "vlan create 1 $v", "each": {"v": "100-163"}}]
//   }
//
// In a step with "each" the texts "$v" and "${v}" stand for the value in turn; "${v+1}" (also - * / %)
// calculates, "${v/256:02x}" formats. A step that the board's interpreter refuses is not as expected unless
// it says what is shown then.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zrbench/commands.h"

namespace zrbench
{

// What a step must bring about.
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
    std::string place; // "/steps/3"
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

struct Device {
    std::string file;
    std::string about;
    std::vector<std::pair<std::string, std::string>> environment;
    std::vector<DeviceUnit> units;
    std::vector<Step> steps;
};

// Reads and checks the whole file. Throws UsageError with file, place and what was expected.
Device loadDevice(const std::string &file);

} // namespace zrbench
