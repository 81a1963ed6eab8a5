#include "tools/zrbench/session.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>
#include <utility>

#include "tools/zrbench/ops.h"
#include "tools/zrbench/slots.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

// A name without a directory is looked for in the lib directory beside the program's own.
std::string located(const std::string &name)
{
    if (name.find('/') != std::string::npos)
        return name;
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto beside = self.parent_path().parent_path() / "lib" / name;
    return !error && std::filesystem::exists(beside, error) ? beside.string() : name;
}

std::FILE *openForWriting(const std::string &path)
{
    if (path == "-")
        return stdout;
    std::FILE *file = std::fopen(path.c_str(), "w");
    if (file == nullptr)
        throw UsageError{fmt::format("cannot write {}: {}", path, std::strerror(errno))};
    return file;
}

// Full disks show only now.
void closeWritten(std::FILE *&file, const std::string &path)
{
    std::FILE *written = std::exchange(file, nullptr);
    if (written == nullptr || written == stdout)
        return;
    const bool failed = std::ferror(written) != 0;
    if (std::fclose(written) != 0 || failed)
        throw UsageError{fmt::format("cannot write {}: {}", path, std::strerror(errno))};
}

void closeAfterFailure(std::FILE *file)
{
    if (file != nullptr && file != stdout)
        std::fclose(file);
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
        fmt::format("expected NAME[@N[+]]=STATUS, such as l2sw_vlan_set@2=22, found \"{}\"", text)};
    const size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw malformed;
    Failure failure;
    std::string_view place = std::string_view(text).substr(0, equals);
    const std::string_view status = std::string_view(text).substr(equals + 1);
    // The SDK has negative results, too.
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
      traceFile_(options.traceFile), dumpFile_(options.dumpFile)
{
    if (!dumpFile_.empty())
        needInspection(reinterpret_cast<void *>(inspection_.dump), "--dump");
    if (!options.traceFile.empty())
        needInspection(reinterpret_cast<void *>(inspection_.onCall), "--trace");
    for (const std::string &text : options.failures)
        fail(parseFailure(text));
    if (options.traceLevel != 0)
        setTraceLevel(options.traceLevel);
    if (inspection_.onLine != nullptr)
        inspection_.onLine(keepLine, &lines_);
    if (!dumpFile_.empty())
        dump_ = openForWriting(dumpFile_);
    if (!traceFile_.empty()) {
        trace_ = openForWriting(traceFile_);
        watchCalls();
    }
    tables_ = takeIntoUse(platform_, library_);
}

Session::~Session()
{
    if (inspection_.onLine != nullptr)
        inspection_.onLine(nullptr, nullptr);
    if (inspection_.onCall != nullptr)
        inspection_.onCall(nullptr, nullptr);
    closeAfterFailure(trace_);
    closeAfterFailure(dump_);
}

void Session::callMade(const char *text, unsigned depth, void *session)
{
    auto &self = *static_cast<Session *>(session);
    // The slot that leads to the board's interpreter hides what the interpreter answers.
    const std::string_view call = text;
    if (self.watchingBoard_ && call.starts_with("excute_command(") && !call.ends_with(" = 0"))
        self.boardRefused_ = true;
    if (self.trace_ != nullptr)
        std::fputs(fmt::format("{:{}}{}\n", "", 2 * depth, text).c_str(), self.trace_);
    if (self.shownCalls_ == ShownCalls::All ||
        (self.shownCalls_ == ShownCalls::Library && depth == 0 && reachesHardware(text)))
        self.calls_.push_back(fmt::format("{:{}}{}", "", 2 * depth, text));
}

// A watched platform records every call; one that nobody watches is left alone.
void Session::watchCalls()
{
    const bool watched = trace_ != nullptr || shownCalls_ != ShownCalls::None || watchingBoard_;
    if (inspection_.onCall == nullptr)
        return;
    inspection_.onCall(watched ? callMade : nullptr, watched ? this : nullptr);
}

void Session::showCalls(ShownCalls shown)
{
    needInspection(reinterpret_cast<void *>(inspection_.onCall), "trace");
    shownCalls_ = shown;
    watchCalls();
}

void Session::needInspection(const void *function, std::string_view what) const
{
    if (function == nullptr)
        throw UsageError{fmt::format("{}: this platform cannot be inspected", what)};
}

void *Session::operation(std::string_view name) const
{
    return library_.need(std::string(name).c_str());
}

std::string Session::board(uint32_t unit, const std::string &line)
{
    const auto cliCmdPrase = need(tables_.common->cliCmdPrase, "COMMON 3");
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

Result Session::invoke(const Invocation &invocation)
{
    const Command &command = *invocation.command;
    for (const Slot &slot : slots(tables_)) {
        if (slot.operation == nullptr && usesSlot(command, slot.module, slot.number))
            throw UsageError{fmt::format("the library does not fill {}", slot.label())};
    }
    if (trace_ != nullptr)
        std::fputs(fmt::format("# {}\n", invocation.text).c_str(), trace_);
    lines_.clear();
    calls_.clear();
    boardRefused_ = false;
    try {
        Outcome outcome = command.run(*this, invocation.arguments);
        return {std::move(outcome), std::exchange(lines_, {}), std::exchange(calls_, {}), boardRefused_};
    } catch (const nlohmann::json::exception &error) {
        // A JSON argument of another shape than the command reads.
        throw UsageError{error.what()};
    }
}

void Session::fail(const Failure &failure)
{
    needInspection(reinterpret_cast<void *>(inspection_.fail), "failures");
    const unsigned nth = failure.nth == 0 ? 0 : failure.nth + inspection_.calls(failure.name.c_str());
    if (inspection_.fail(failure.name.c_str(), nth, failure.andAfter ? 1 : 0, failure.status) != 0)
        throw UsageError{fmt::format("the platform has no call {}", failure.name)};
}

void Session::setTraceLevel(uint32_t level)
{
    needInspection(reinterpret_cast<void *>(inspection_.traceLevel), "trace level");
    inspection_.traceLevel(level);
}

std::string Session::dump() const
{
    needInspection(reinterpret_cast<void *>(inspection_.dump), "dump");
    std::string text(inspection_.dump(nullptr, 0), '\0');
    inspection_.dump(text.data(), text.size() + 1);
    return text;
}

void Session::finish()
{
    if (dump_ != nullptr)
        std::fputs((dump() + "\n").c_str(), dump_);
    closeWritten(dump_, dumpFile_);
    closeWritten(trace_, traceFile_);
}

} // namespace zrbench
