#include "tools/zrbench/session.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>
#include <utility>

#include "tools/zrbench/dump.h"
#include "tools/zrbench/missing_init.h"
#include "tools/zrbench/monitor.h"
#include "tools/zrbench/ops.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

template <class Function> Function *needed(Function *function, std::string_view purpose)
{
    if (function == nullptr)
        throw UsageError{fmt::format("{}: this platform does not support it", purpose)};
    return function;
}

// Calls of the chip SDK and the board, not the manager's services and the bounded functions.
bool reachesHardware(std::string_view call)
{
    const std::string_view name = call.substr(0, call.find('('));
    return !name.starts_with("LSWM_") && !name.ends_with("_s");
}

void keepLine(int kind, uint32_t module, uint32_t status, const char *text, void *lines)
{
    static_cast<std::vector<Line> *>(lines)->push_back({kind, module, status, text});
}

} // namespace

Failure parseFailure(const std::string &text)
{
    const UsageError malformed{
        fmt::format("expected NAME[@N[+]]=STATUS, such as l2sw_vlan_set@2=22, found {}", shown(text))};
    const size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw malformed;
    Failure failure;
    std::string_view place = std::string_view(text).substr(0, equals);
    const std::string_view status = std::string_view(text).substr(equals + 1);
    // Some SDK functions return negative results.
    if (std::optional<uint32_t> number = parseNumber(status.substr(status.starts_with('-') ? 1 : 0)))
        failure.status = status.starts_with('-') ? 0 - *number : *number;
    else
        throw malformed;
    if (const size_t at = place.find('@'); at != std::string_view::npos) {
        std::string_view nth = place.substr(at + 1);
        failure.andAfter = nth.ends_with('+');
        nth.remove_suffix(failure.andAfter ? 1 : 0);
        const std::optional<uint32_t> number = parseNumber(nth);
        if (!number || *number == 0)
            throw malformed;
        failure.nth = *number;
        place = place.substr(0, at);
    }
    failure.name = place;
    return failure;
}

Session::Session(const SessionOptions &options)
    : platform_(located(options.platform), RTLD_NOW | RTLD_GLOBAL), inspection_(platform_),
      library_(located(options.library), RTLD_NOW), unitInfo_(platform_.need<LswmUnitInfo>("g_lswmInfo")),
      deviceFile_(options.deviceFile)
{
    for (const std::string &text : options.failures)
        fail(parseFailure(text));
    if (options.traceLevel != 0)
        setTraceLevel(options.traceLevel);
    if (!options.dumpFile.empty()) {
        needed(inspection_.dump, "--dump");
        dump_.emplace(options.dumpFile, options.dash);
    }
    if (!options.traceFile.empty()) {
        needed(inspection_.onCall, "--trace");
        trace_.emplace(options.traceFile, options.dash);
    }
    for (const std::string &read : {options.deviceFile, located(options.platform), located(options.library)}) {
        if ((dump_ && dump_->sameAs(read)) || (trace_ && trace_->sameAs(read)))
            throw UsageError{fmt::format("{} would be written over by --trace or --dump", read)};
    }
    if (dump_ && trace_ && dump_->sameAs(*trace_))
        throw UsageError{fmt::format("--trace and --dump both write {}", options.dumpFile)};
    for (std::optional<Output> *output : {&dump_, &trace_}) {
        if (*output)
            (*output)->start();
    }
    if (inspection_.onLine != nullptr)
        inspection_.onLine(keepLine, &lines_);
    watchCalls();
    tables_ = registerOperations(platform_, library_);
}

Session::~Session()
{
    if (inspection_.onLine != nullptr)
        inspection_.onLine(nullptr, nullptr);
    if (inspection_.onCall != nullptr)
        inspection_.onCall(nullptr, nullptr);
}

void Session::callMade(const char *text, unsigned depth, void *session)
{
    auto &self = *static_cast<Session *>(session);
    // The slot that leads to the board's interpreter hides the interpreter's status.
    const std::string_view call = text;
    if (self.watchingBoard_ && call.starts_with("excute_command(") && !call.ends_with(" = 0"))
        self.boardRefused_ = true;
    if (self.trace_)
        self.trace_->write(fmt::format("{:{}}{}\n", "", 2 * depth, text));
    if (self.shownCalls_ == ShownCalls::All ||
        (self.shownCalls_ == ShownCalls::Library && depth == 0 && reachesHardware(text)))
        self.calls_.push_back(fmt::format("{:{}}{}", "", 2 * depth, text));
}

// A watched platform records every call, which takes time.
void Session::watchCalls()
{
    const bool watched = trace_ || shownCalls_ != ShownCalls::None || watchingBoard_;
    if (inspection_.onCall == nullptr)
        return;
    inspection_.onCall(watched ? callMade : nullptr, watched ? this : nullptr);
}

void Session::showCalls(ShownCalls shown)
{
    needed(inspection_.onCall, "trace");
    shownCalls_ = shown;
    watchCalls();
}

std::string Session::board(uint32_t unit, const std::string &line)
{
    const auto cliCmdPrase = slot(&ZrCommonOps::cliCmdPrase);
    std::vector<Line> kept = std::exchange(lines_, {});
    boardRefused_ = false;
    watchingBoard_ = true;
    watchCalls();
    cliCmdPrase(unit, line.c_str());
    watchingBoard_ = false;
    watchCalls();

    std::string answer;
    for (Line &printed : std::exchange(lines_, {})) {
        if (printed.kind == ZRSIM_LINE_CLI)
            answer += printed.text;
        else
            kept.push_back(std::move(printed));
    }
    lines_ = std::move(kept);
    return answer;
}

void Session::release(void *block)
{
    platform_.need<void(void *)>("LSWM_MemFree")(block);
}

void Session::check(const Invocation &invocation) const
{
    const Command &command = *invocation.command;
    for (const Slot &slot : slots(tables_)) {
        if (slot.operation == nullptr && usesSlot(command, slot.module, slot.number))
            throw UsageError{fmt::format("the library does not fill {}", slot.label())};
    }
    if (command.name.starts_with("frame "))
        needed(inspection_.frame, command.name);
    if ((command.name == "source" || command.name == "save" || command.name == "report") && !shell_.source)
        throw UsageError{"only the shell does this"};
    if (command.name == "fail")
        checkCall(parseFailure(invocation.arguments.text("call")).name);
}

Result Session::invoke(const Invocation &invocation)
{
    if (trace_)
        trace_->write(fmt::format("# {}\n", invocation.text));
    lines_.clear();
    calls_.clear();
    boardRefused_ = false;
    const auto ask = [](unsigned (*counter)(void)) { return counter != nullptr ? counter() : 0; };
    const unsigned blocks = ask(inspection_.liveBlocks);
    const unsigned badFrees = ask(inspection_.badFrees);
    Outcome outcome = invocation.command->run(*this, invocation.arguments);
    std::optional<int> held;
    if (inspection_.liveBlocks != nullptr)
        held = static_cast<int>(ask(inspection_.liveBlocks) - blocks);
    std::vector<Line> lines = std::exchange(lines_, {});
    const std::string hint =
        outcome.hasStatus && outcome.status != LSW_OK ? missingInit(*this, invocation) : std::string();
    lines_.clear();
    std::vector<std::string> events;
    if (monitored_) {
        const nlohmann::json before = std::exchange(*monitored_, state());
        events = eventsBetween(before, *monitored_);
    }
    return {std::move(outcome),
            std::move(lines),
            std::exchange(calls_, {}),
            boardRefused_,
            held,
            ask(inspection_.badFrees) != badFrees,
            hint,
            std::move(events)};
}

// Data, the inspection interface and C++ functions are symbols of the platform, too, but no platform calls.
std::vector<std::string> Session::platformCalls() const
{
    std::vector<std::string> names = platform_.functions();
    std::erase_if(names, [](const std::string &name) { return name.starts_with("zrsim_") || name[0] == '_'; });
    std::ranges::sort(names);
    return names;
}

void Session::checkCall(const std::string &name) const
{
    needed(inspection_.fail, "fail");
    if (name.starts_with("zrsim_") || name.starts_with("_Z") || !platform_.hasFunction(name.c_str())) {
        const std::vector<std::string> names = platformCalls();
        throw UsageError{fmt::format("the platform has no call {}{}", shown(name),
                                     didYouMean(name, {names.begin(), names.end()}))};
    }
}

std::vector<std::string> Session::boardCommands() const
{
    std::vector<std::string> usages;
    for (unsigned i = 0; inspection_.boardUsage != nullptr && inspection_.boardUsage(i) != nullptr; ++i)
        usages.emplace_back(inspection_.boardUsage(i));
    return usages;
}

void Session::fail(const Failure &failure)
{
    const char *name = failure.name.c_str();
    checkCall(failure.name);
    const unsigned nth = failure.nth == 0 ? 0 : failure.nth + needed(inspection_.calls, "fail NAME@N")(name);
    if (inspection_.fail(name, nth, failure.andAfter ? 1 : 0, failure.status) != 0)
        throw UsageError{fmt::format("the platform has no call {}", name)};
}

void Session::monitor(bool on)
{
    monitored_ = on ? std::optional(state()) : std::nullopt;
}

uint32_t Session::portSet(uint32_t unit, uint32_t set) const
{
    const LswmPortSet *sets = unitInfo_[unit].portMap;
    return sets != nullptr ? sets[set].word[0] : 0;
}

void Session::failNone()
{
    needed(inspection_.failNone, "fail none")();
}

void Session::setTraceLevel(uint32_t level)
{
    needed(inspection_.traceLevel, "trace level")(level);
}

std::string Session::dump() const
{
    return stateText(state());
}

nlohmann::json Session::state() const
{
    const auto read = needed(inspection_.dump, "dump");
    std::string text(read(nullptr, 0), '\0');
    read(text.data(), text.size() + 1);
    nlohmann::json state = nlohmann::json::parse(text);
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit)
        if (nlohmann::json info = unitInfoState(unit); !info.is_null())
            state["manager"]["units"][std::to_string(unit)] = std::move(info);
    state["library"] = libraryRecords(*this);
    return state;
}

void Session::capture(uint32_t unit, uint32_t ports, const std::string &path)
{
    std::error_code error;
    if (std::filesystem::equivalent(path, deviceFile_, error) || (dump_ && dump_->sameAs(path)) ||
        (trace_ && trace_->sameAs(path)))
        throw UsageError{fmt::format("{} would be written over", path)};
    captures_.push_back({unit, ports, writeCapture(path)});
}

std::string Session::besideDevice(const std::string &path) const
{
    return (std::filesystem::path(deviceFile_).parent_path() / path).string();
}

void Session::finish()
{
    if (dump_) {
        dump_->write(dump() + "\n");
        dump_->check();
    }
    if (trace_)
        trace_->check();
}

} // namespace zrbench
