// The two shared objects that the bench works with: the platform (the stand-in, or the board's own
// libraries) and the library under test, loaded as the switch manager loads it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/manager.h"
#include "sim/zrsim.h"
#include "tools/zrbench/command.h"
#include "tools/zrbench/tables.h"

namespace zrbench
{

// A name without a directory is looked for where a build or an installation has its libraries, seen from the
// program; one that is not there is left to the loader.
std::string located(const std::string &name);

// A loaded shared object; stays loaded until the program ends.
class SharedObject
{
public:
    // Throws UsageError when it cannot be loaded.
    SharedObject(const std::string &path, int flags);

    // Null when there is no such symbol.
    void *find(const char *name) const;
    // Whether the symbol is a function, not data.
    bool hasFunction(const char *name) const;
    // The names of all functions.
    std::vector<std::string> functions() const;
    // Throws UsageError when there is no such symbol.
    void *need(const char *name) const;
    template <class T> T *need(const char *name) const { return reinterpret_cast<T *>(need(name)); }

private:
    std::string path_;
    void *handle_;
};

// The stand-in's inspection interface. A platform may lack all of it or any function: that
// member is null.
struct Inspection {
    explicit Inspection(const SharedObject &platform);

    bool available() const { return onLine != nullptr; }

    decltype(zrsim_on_line) *onLine;
    decltype(zrsim_on_call) *onCall;
    decltype(zrsim_fail) *fail;
    decltype(zrsim_fail_none) *failNone;
    decltype(zrsim_calls) *calls;
    decltype(zrsim_frame) *frame;
    decltype(zrsim_trace_level) *traceLevel;
    decltype(zrsim_live_blocks) *liveBlocks;
    decltype(zrsim_bad_frees) *badFrees;
    decltype(zrsim_dump) *dump;
    decltype(zrsim_board_usage) *boardUsage;
};

// Has the library register its operations and fetches the tables that it filled.
Tables registerOperations(const SharedObject &platform, const SharedObject &library);

} // namespace zrbench
