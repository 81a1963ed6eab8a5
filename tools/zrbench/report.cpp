#include "tools/zrbench/report.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

#include "tools/zrbench/explain.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

constexpr const char *kGood = "32";
constexpr const char *kRefused = "33";
constexpr const char *kBad = "1;31";
constexpr const char *kDim = "2";
constexpr const char *kHeading = "1";

constexpr size_t kResultColumn = 62;
constexpr size_t kResultWidth = 29; // "status 1 (invalid argument)" and a margin
const std::string kIndent(kStepIndent, ' ');

std::string statusText(uint32_t status)
{
    const std::string_view name = statusName(status);
    if (status == LSW_OK)
        return std::string(name);
    return name.empty() ? fmt::format("status {:#x}", status) : fmt::format("status {} ({})", status, name);
}

std::string moduleText(uint32_t module)
{
    const std::string_view name = moduleName(module);
    return fmt::format("{}{}{}", module, name.empty() ? "" : " ", name);
}

// Of a failure line: the SDK's statuses have names of their own.
std::string lineStatus(uint32_t status)
{
    const std::string_view name = sdkStatusName(status);
    return (status <= 9999 ? std::to_string(status) : fmt::format("{:#x}", status)) +
           (name.empty() ? "" : fmt::format(" ({})", name));
}

// The columns for what stands below a step; 0 for any number.
size_t roomBelow()
{
    const size_t width = terminalWidth();
    return width - std::min(width, kStepIndent);
}

// Lines below a step, folded where a terminal ends.
void below(std::string_view text)
{
    const std::string lines = foldedLines(text, roomBelow(), 2);
    for (std::string_view rest = lines; !rest.empty();) {
        const size_t end = rest.find('\n');
        print("{}{}\n", end == 0 ? "" : kIndent, rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
}

std::string outputsText(const Outcome &outcome)
{
    std::string text;
    for (const auto &[name, value] : outcome.outputs)
        text += fmt::format("{}{}={}", text.empty() ? "" : "  ", name, plainText(value));
    return text;
}

bool hasDeviated(const CheckedRun &run)
{
    return !run.deviations.empty();
}

bool isRefused(const CheckedRun &run)
{
    return run.result.outcome.hasStatus && run.result.outcome.status != LSW_OK;
}

} // namespace

std::string TextWriter::painted(const char *colour, const std::string &text) const
{
    return colour_ ? fmt::format("\033[{}m{}\033[0m", colour, text) : text;
}

void TextWriter::heading(const std::string &text)
{
    if (!quiet_)
        print("\n{}", folded(painted(kHeading, text), terminalWidth(), 0));
}

std::string TextWriter::verdict(const std::vector<CheckedRun> &runs) const
{
    if (runs.size() == 1) {
        const Outcome &outcome = runs[0].result.outcome;
        const std::string outputs = outputsText(outcome);
        if (!outcome.hasStatus)
            return outputs;
        return painted(isRefused(runs[0]) ? kRefused : kGood, statusText(outcome.status)) +
               (outputs.empty() ? "" : "  ") + outputs;
    }
    std::map<uint32_t, size_t> tally;
    for (const CheckedRun &run : runs)
        ++tally[run.result.outcome.status];
    std::string text;
    for (const auto &[status, count] : tally) {
        text += text.empty() ? "" : ", ";
        const std::string times = count == 1 ? "once" : fmt::format("{} times", count);
        text += painted(status == LSW_OK ? kGood : kRefused, fmt::format("{} {}", times, statusText(status)));
    }
    return text;
}

void TextWriter::details(const CheckedRun &run) const
{
    for (const std::string &call : run.result.calls)
        below(painted(kDim, "> " + call));
    for (const Line &line : run.result.lines) {
        if (line.kind == ZRSIM_LINE_CLI)
            below(line.text);
        else if (line.kind == ZRSIM_LINE_FAIL)
            below(painted(kRefused, fmt::format("! [{}] status {}: {}", moduleText(line.module),
                                                lineStatus(line.status), line.text)));
        else
            below(painted(kDim, fmt::format("- [{}] {}", moduleText(line.module), line.text)));
    }
    below(run.result.outcome.textWithin(roomBelow()));
    if (!run.result.hint.empty())
        below(painted(kDim, "hint: " + run.result.hint));
    for (const std::string &event : run.result.events)
        below(painted(kDim, "~ " + event));
    for (const std::string &deviation : run.deviations)
        below(painted(kBad, "NOT AS EXPECTED: " + deviation));
}

void TextWriter::step(const StepReport &step)
{
    if (quiet_ && !step.deviates && !step.always)
        return;

    const std::string result = verdict(step.runs);
    const size_t width = terminalWidth();
    const std::string line = fmt::format("{:>4}  {}", step.number, step.text);
    // A result that does not fit beside its step stands below.
    const size_t column =
        width == 0 ? kResultColumn : std::min(kResultColumn, width - std::min(width, kResultWidth));
    const std::string both = result.empty() ? line : fmt::format("{:<{}}  {}", line, column, result);
    if (width == 0 || columnsOf(both) <= width)
        print("{}\n", both);
    else
        print("{}{}", folded(line, width, kIndent.size() + 2),
              result.empty() ? "" : folded(fmt::format("{}{}", kIndent, result), width, kIndent.size() + 2));
    if (!step.note.empty())
        below(painted(kDim, step.note));
    if (step.runs.size() == 1) {
        details(step.runs[0]);
        return;
    }
    // Of many runs the first that deviate are shown, else the first that was refused.
    constexpr size_t kMostShown = 3;
    size_t shownRuns = 0;
    for (const CheckedRun &run : step.runs) {
        if (step.deviates ? !hasDeviated(run) : !isRefused(run))
            continue;
        if (++shownRuns > (step.deviates ? kMostShown : 1))
            continue;
        print("       {}: {}\n", run.invocation->text, statusText(run.result.outcome.status));
        details(run);
    }
    if (step.deviates && shownRuns > kMostShown)
        print("       and {} more\n", shownRuns - kMostShown);
}

void TextWriter::summary(const std::string &title, const RunCounts &counts)
{
    const std::string text =
        fmt::format("{} steps, {} refused as expected, {} not as expected, {} memory blocks held", counts.steps,
                    counts.refused, counts.deviating, counts.heldBlocks);
    print("{}{}", quiet_ ? "" : "\n",
          folded(fmt::format("{}: {}", title, painted(counts.deviating == 0 ? kGood : kBad, text)),
                 terminalWidth(), 4));
}

void Report::heading(const std::string &text)
{
    for (const auto &writer : writers_)
        writer->heading(text);
}

void Report::step(const std::string &text, const std::string &note, const std::vector<CheckedRun> &runs,
                  bool always, std::string_view place)
{
    const bool deviates = std::ranges::any_of(runs, hasDeviated);
    const bool refused = !deviates && std::ranges::any_of(runs, isRefused);
    ++counts_.steps;
    counts_.deviating += deviates ? 1 : 0;
    counts_.refused += refused ? 1 : 0;
    for (const auto &writer : writers_)
        writer->step({counts_.steps, text, note, runs, deviates, refused, always, place});
}

void Report::summary(const std::string &title, const Session &session)
{
    const Inspection &inspection = session.inspection();
    counts_.heldBlocks = inspection.liveBlocks != nullptr ? inspection.liveBlocks() : 0;
    for (const auto &writer : writers_)
        writer->summary(title, counts_);
}

std::string_view moduleName(uint32_t module)
{
    static const std::map<uint32_t, std::string_view> kNames = {
        {LSW_MODULE_SMI, "smi"},     {LSW_MODULE_CHIP, "chip"},      {LSW_MODULE_PORT, "port"},
        {LSW_MODULE_MAC, "mac"},     {LSW_MODULE_VLAN, "vlan"},      {LSW_MODULE_QOS, "qos"},
        {LSW_MODULE_ACL, "acl"},     {LSW_MODULE_STORMCTL, "storm"}, {LSW_MODULE_STP, "stp"},
        {LSW_MODULE_TRUNK, "trunk"},
    };
    const auto name = kNames.find(module);
    return name == kNames.end() ? std::string_view() : name->second;
}

} // namespace zrbench
