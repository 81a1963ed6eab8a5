// A recording that libzrrecord.so made (docs/recordings.md), read whole.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zrbench
{

struct RecordedCall {
    enum Kind : char { Operation = '<', Platform = '|', Service = '^', Value = '=' };

    size_t line = 0;
    char kind = Platform;
    uint64_t time = 0;     // nanoseconds since the start
    uint64_t duration = 0; // nanoseconds
    unsigned thread = 0;
    bool ended = true; // false: the recording ends within it
    std::string call;  // "name(arguments)"
    std::string end;   // " = 0 cfg={...}"
    std::vector<RecordedCall> within;

    std::string_view name() const { return std::string_view(call).substr(0, call.find('(')); }
    std::string text() const { return call + end; }
};

struct Recording {
    std::string file;
    std::string machine;
    std::string layout;
    std::string why; // it ended; empty: the program was killed
    std::vector<RecordedCall> calls;
};

// Throws UsageError, with the line, for a file that is no recording, is damaged or of another version.
Recording readRecording(const std::string &file);

// The values in "name(unit=0, cfg={vlan=5})" or in " = 0 value=5": "unit", "cfg.vlan". The result is "result".
std::vector<std::pair<std::string, std::string>> valuesIn(std::string_view text);

// The module of an operation and the number of its slot; no module for an unknown name.
std::pair<std::string_view, size_t> slotOf(std::string_view operation);

} // namespace zrbench
