// Replays a recording against a version of the library.
#pragma once

#include <string>

#include "tools/zrbench/recording.h"

namespace zrbench
{

// Tells the first difference, or with `all` the first one of every operation. Returns whether there was none.
// Throws UsageError.
bool replay(const Recording &recording, const std::string &library, bool all);

// The manager's calls as a device file; tells what has no command. Throws UsageError.
void writeDevice(const Recording &recording, const std::string &path);

struct Shown {
    std::string unit; // only these, unless empty
    std::string module;
    std::string call;
    bool json = false;
};

// The story that a recording tells.
void showRecording(const Recording &recording, const Shown &shown);

} // namespace zrbench
