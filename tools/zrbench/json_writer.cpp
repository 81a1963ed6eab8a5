#include "tools/zrbench/json_writer.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "tools/zrbench/explain.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

void addStatus(json &object, uint32_t status)
{
    object["status"] = status;
    if (const std::string_view name = statusName(status); !name.empty())
        object["statusName"] = name;
}

// What one run came to; members that have nothing to tell are left out.
void addRun(json &object, const CheckedRun &run)
{
    const Outcome &outcome = run.result.outcome;
    object["command"] = run.invocation->text;
    object["expected"] = run.deviations.empty();
    if (outcome.hasStatus)
        addStatus(object, outcome.status);
    json &out = object["out"] = json::object();
    // Hexadecimal texts are for people.
    for (const auto &[name, value] : outcome.outputs) {
        const std::optional<uint32_t> number = value.is_string() ? asNumber(value) : std::nullopt;
        out[name] = number ? json(*number) : value;
    }
    json &lines = object["lines"] = json::array();
    json traces = json::array();
    std::string text;
    for (const Line &line : run.result.lines) {
        json printed = {{"module", line.module}, {"text", line.text}};
        if (line.kind == ZRSIM_LINE_CLI) {
            text += line.text;
        } else if (line.kind == ZRSIM_LINE_FAIL) {
            printed["status"] = line.status;
            if (const std::string_view name = sdkStatusName(line.status); !name.empty())
                printed["statusName"] = name;
            lines.push_back(std::move(printed));
        } else {
            traces.push_back(std::move(printed));
        }
    }
    text += outcome.text;
    for (auto &&[name, value] : {std::pair<const char *, json>{"traces", traces},
                                 {"calls", run.result.calls},
                                 {"events", run.result.events},
                                 {"hint", run.result.hint},
                                 {"deviations", run.deviations}})
        if (!value.empty() && value != "")
            object[name] = value;
    if (!text.empty())
        object["text"] = std::move(text);
    if (!outcome.rows.is_null())
        object["rows"] = outcome.rows;
}

void printLine(const json &object)
{
    print("{}\n", object.dump(-1, ' ', false, json::error_handler_t::replace));
}

} // namespace

json stepJson(const StepReport &step)
{
    json object = {{"step", step.number}};
    if (!step.note.empty())
        object["note"] = step.note;
    if (step.runs.size() == 1) {
        addRun(object, step.runs[0]);
        return object;
    }
    json runs = json::array();
    for (const CheckedRun &run : step.runs)
        addRun(runs.emplace_back(json::object()), run);
    object["command"] = step.text;
    object["expected"] = !step.deviates;
    object["runs"] = std::move(runs);
    return object;
}

void JsonWriter::step(const StepReport &step)
{
    if (quiet_ && !step.deviates && !step.always)
        return;
    json object = stepJson(step);
    if (!section_.empty())
        object["section"] = std::exchange(section_, {});
    printLine(object);
}

void JsonWriter::summary(const std::string &title, const RunCounts &counts)
{
    printLine({{"summary", title},
               {"steps", counts.steps},
               {"refusedAsExpected", counts.refused},
               {"notAsExpected", counts.deviating},
               {"heldBlocks", counts.heldBlocks}});
}

} // namespace zrbench
