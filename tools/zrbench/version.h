// The one version, and that of a library's file.
#pragma once

#include <string>

namespace zrbench
{

// "1.0.0", the bench manager's own.
std::string version();

// What the note in the file of a library says, without loading it. Throws UsageError when the file cannot be
// read or holds no such note.
std::string libraryVersion(const std::string &file);

} // namespace zrbench
