// One run of the bench: the loaded platform and library, what they print, and how commands are run.
#pragma once

#include <cstdio>
#include <dlfcn.h>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/zrbench/commands.h"
#include "tools/zrbench/frame_way.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/platform.h"

namespace zrbench
{

// A line that the library or the platform printed.
struct Line {
    int kind; // ZRSIM_LINE_*
    uint32_t module;
    uint32_t status;
    std::string text;
};

// The result of an invocation.
struct Result {
    Outcome outcome;
    std::vector<Line> lines;
    std::vector<std::string> calls;       // platform calls, while they are shown; indented by their depth
    bool boardRefused = false;            // the board's interpreter refused a line
    std::optional<int> held = {};         // memory blocks that the library took and keeps, where that is known
    bool badFree = false;                 // it freed a block that it did not hold
    std::string hint = {};                // the initialisation that a refused operation lacks
    std::vector<std::string> events = {}; // while the session is monitored
};

// Library: the library's own calls of the chip SDK and the board. All: every call, nested ones too.
enum class ShownCalls { None, Library, All };

// A failure to inject: NAME[@N[+]]=STATUS.
struct Failure {
    std::string name;
    unsigned nth = 0; // from 1; 0: all
    bool andAfter = false;
    uint32_t status = 0;
};

// Throws UsageError.
Failure parseFailure(const std::string &text);

struct SessionOptions {
    std::string platform = "libzrsim.so";
    std::string library = "libzrlsw.so";
    std::string deviceFile;   // read, so never written over
    std::string traceFile;    // "-": standard output; empty: none
    std::string dumpFile;     // the same
    std::FILE *dash = stdout; // what "-" stands for in these two
    std::vector<std::string> failures;
    uint32_t traceLevel = 0;
};

// Throws ArgumentError whose argument is the place within the information, "/ports", when setUnitInfo would
// refuse it.
void checkUnitInfo(const nlohmann::json &info);

class Session
{
public:
    // Throws UsageError.
    explicit Session(const SessionOptions &options);
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;
    ~Session();

    const Tables &tables() const { return tables_; }
    // The operation of a slot. Throws UsageError when the library has not filled it.
    template <class Table, class Operation> Operation *slot(Operation *Table::*member) const
    {
        if (Operation *filled = tables_.*Module<Table>::kTable->*member)
            return filled;
        throw UsageError{"the library does not fill " + slotLabel(member)};
    }
    // An exported operation without a slot. Throws UsageError when the library lacks it.
    template <class Operation> Operation *operation(const char *name) const
    {
        // A recorder in front of the library has the same names.
        if (void *recorder = dlsym(RTLD_DEFAULT, name))
            return reinterpret_cast<Operation *>(recorder);
        return library_.need<Operation>(name);
    }
    // Runs one line of the board's command interpreter through the common table; returns what it printed.
    std::string board(uint32_t unit, const std::string &line);
    // Returns a text to the manager's memory (LSWM_MemFree).
    void release(void *block);
    // Whether the last board() was refused; its text says why. Unknown, and false, without inspection.
    bool boardRefused() const { return boardRefused_; }

    // Throws UsageError when the library or the platform lacks what the command needs.
    void check(const Invocation &invocation) const;
    // Runs a command that check() has passed. Throws UsageError when the command refuses.
    Result invoke(const Invocation &invocation);

    // What the platform lets us observe and disturb.
    const Inspection &inspection() const { return inspection_; }
    // The nth call is counted from now on. Throws UsageError when the platform knows no such call.
    void fail(const Failure &failure);
    void failNone();
    void setTraceLevel(uint32_t level);
    void showCalls(ShownCalls shown);
    // The names that fail() knows, in order.
    std::vector<std::string> platformCalls() const;
    // The usage texts of the board's interpreter, as far as the platform tells them.
    std::vector<std::string> boardCommands() const;
    // The state of chips, board, manager and library; docs/state.md lists its keys.
    nlohmann::json state() const;
    // The same as text.
    std::string dump() const;
    // States by name, to be compared with later ones.
    const std::map<std::string, nlohmann::json> &checkpoints() const { return checkpoints_; }
    void checkpoint(const std::string &name) { checkpoints_[name] = state(); }

    // What comes out of ports is written to a file until the session ends. Throws UsageError.
    void capture(uint32_t unit, uint32_t ports, const std::string &path);
    const std::vector<Capture> &captures() const { return captures_; }
    // A path that starts in the device file's directory, if there is a device file.
    std::string besideDevice(const std::string &path) const;

    // The manager's unit information, checked whole before anything is written. Throws as checkUnitInfo.
    void setUnitInfo(uint32_t unit, const nlohmann::json &info);
    std::string showUnitInfo(uint32_t unit) const;
    nlohmann::json unitInfoState(uint32_t unit) const; // null when there is nothing
    const LswmUnitInfo &unitInfo(uint32_t unit) const { return unitInfo_[unit]; }
    // The ports below 32 of one of the unit's sets.
    uint32_t portSet(uint32_t unit, uint32_t set) const;
    // A call of the platform itself. Throws UsageError when it lacks it.
    template <class Function> Function *platformCall(const char *name) const
    {
        return platform_.need<Function>(name);
    }
    // What a step changes in links, addresses and counters is told with it from now on, or no more.
    void monitor(bool on);

    // Writes the dump and completes the trace. Throws UsageError.
    void finish();

    // What only a shell does: takes the commands of a file next, writes what was done to a file, as a device
    // file or as a page. They throw UsageError.
    struct ShellCalls {
        std::function<void(const std::string &file)> source;
        std::function<void(const std::string &file)> save;
        std::function<void(const std::string &file)> report;
    };
    const ShellCalls &shell() const { return shell_; }
    void setShell(ShellCalls calls) { shell_ = std::move(calls); }

    void quit() { quit_ = true; }
    bool quitting() const { return quit_; }

private:
    void checkCall(const std::string &name) const;
    static void callMade(const char *text, unsigned depth, void *session);
    void watchCalls();

    SharedObject platform_;
    Inspection inspection_;
    SharedObject library_;
    Tables tables_{};
    LswmUnitInfo *unitInfo_;
    LswmPortSet portMaps_[LSWM_UNITS][LSWM_PORT_SETS]{}; // for a platform without its own
    std::vector<Line> lines_;
    std::vector<std::string> calls_;
    ShownCalls shownCalls_ = ShownCalls::None;
    bool watchingBoard_ = false;
    bool boardRefused_ = false;
    std::string deviceFile_;
    std::vector<Capture> captures_;
    std::map<std::string, nlohmann::json> checkpoints_;
    std::optional<Output> trace_;
    std::optional<Output> dump_;
    ShellCalls shell_;
    std::optional<nlohmann::json> monitored_; // the state after the last step
    bool quit_ = false;
};

} // namespace zrbench
