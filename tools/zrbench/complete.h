// What can be typed next: completion, hints and help at a place of the line, from the command table and from
// what the session's units hold.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zrbench
{

class Session;

struct Completion {
    size_t begun = 0;               // characters at the line's end that a candidate replaces
    std::vector<std::string> words; // with what follows them: "create ", "srcIp="
};

// `session` tells ports, VLANs and the like; without one they are left out.
Completion completionAt(std::string_view line, const Session *session);

// The arguments that are still to come, as usage() shows them; before them the second words of the command.
std::string hintAt(std::string_view line);

// What can stand at the line's end, for a terminal of `width` columns: the commands that start so, or the
// command's help, the argument's type and its candidates.
std::string helpAt(std::string_view line, const Session *session, size_t width);

// Words in columns.
std::string inColumns(std::vector<std::string> words, size_t width);

} // namespace zrbench
