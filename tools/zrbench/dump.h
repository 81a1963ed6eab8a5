// The state of everything as JSON, and what changed between two states. docs/state.md lists the keys.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace zrbench
{

class Session;

// What the library itself keeps of each unit: which chip resource backs which identifier.
nlohmann::json libraryRecords(const Session &session);

// A value a line, port sets and other lists of numbers among them.
std::string stateText(const nlohmann::json &state);

// A value that is not the same in two states; null where a state has none.
struct Change {
    std::string path; // "unit 1 vlan 10 members"
    nlohmann::json before;
    nlohmann::json after;
};

// In the order of the state, units and ports by number.
std::vector<Change> changes(const nlohmann::json &before, const nlohmann::json &after);

// "unit 1 vlan 10 members 0-3,15 -> 0-3,15,16"
std::string lineOf(const Change &change);
// {"path": "unit 1 vlan 10 members", "from": [0, 1], "to": [0, 1, 2]}; a value that is not there is left out.
nlohmann::json rowOf(const Change &change);

// The state that a file holds. Throws UsageError.
nlohmann::json readDump(const std::string &file);

} // namespace zrbench
