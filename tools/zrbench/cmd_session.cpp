// The commands about the session itself: help, failures, unit information and the like.
#include <algorithm>
#include <fmt/format.h>

#include "tools/zrbench/commands.h"
#include "tools/zrbench/dump.h"
#include "tools/zrbench/explain.h"
#include "tools/zrbench/ops.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/report.h"
#include "tools/zrbench/session.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

void checkFailure(const nlohmann::json &text)
{
    parseFailure(text.get<std::string>());
}

void checkStatus(const nlohmann::json &status)
{
    const auto &text = status.get_ref<const std::string &>();
    const std::vector<std::string_view> words = split(statusWords(), '|');
    if (!statusNumber(text))
        throw UsageError{fmt::format("expected a number or one of {}, found {}{}", fmt::join(words, ", "),
                                     shown(status), didYouMean(text, words))};
}

void checkLine(const nlohmann::json &line)
{
    parseInvocation(line.get_ref<const std::string &>());
}

Outcome showHelp(Session &, const Arguments &a)
{
    const size_t width = terminalWidth();
    return Outcome::shown(help(a.text("topic"), width - std::min(width, kStepIndent)));
}

Outcome quit(Session &session, const Arguments &)
{
    session.quit();
    return Outcome::shown("");
}

Outcome expect(Session &session, const Arguments &a)
{
    const Invocation invocation = parseInvocation(a.text("command"));
    session.check(invocation);
    Outcome outcome = invocation.command->run(session, invocation.arguments);
    outcome.expected = statusNumber(a.text("status"));
    return outcome;
}

const nlohmann::json &checkpoint(const Session &session, const std::string &name)
{
    const std::map<std::string, nlohmann::json> &kept = session.checkpoints();
    if (const auto found = kept.find(name); found != kept.end())
        return found->second;
    std::vector<std::string_view> names;
    for (const auto &[other, state] : kept)
        names.emplace_back(other);
    throw UsageError{
        fmt::format("no checkpoint {}{}", shown(name),
                    names.empty() ? "; none was made" : fmt::format("; there is {}", fmt::join(names, ", ")))};
}

Outcome showChanges(Session &session, const Arguments &a)
{
    const nlohmann::json &before = checkpoint(session, a.text("name"));
    const std::vector<Change> found =
        changes(before, a.has("later") ? checkpoint(session, a.text("later")) : session.state());
    Outcome outcome = Outcome::shown("");
    outcome.rows = nlohmann::json::array();
    for (const Change &change : found) {
        outcome.text += lineOf(change) + "\n";
        outcome.rows.push_back(rowOf(change));
    }
    return outcome.out("changes", found.size());
}

constexpr Argument kCheckpoint{.name = "name", .type = Type::Word, .meaning = "a checkpoint"};
constexpr Argument kTopic{"topic", Type::Text, {}, true};
constexpr Argument kManagedUnit{.name = "unit", .most = LSWM_UNITS - 1};

const Command kSessionCommands[] = {
    {"help", {kTopic}, "lists the commands, or those that start with TOPIC", "", showHelp},
    {"?", {kTopic}, "the same as help", "", showHelp},
    {"quit", {}, "ends the session", "", quit},
    {"exit", {}, "the same as quit", "", quit},
    {"expect",
     {{.name = "status", .type = Type::Word, .check = checkStatus},
      {.name = "command", .type = Type::Line, .check = checkLine}},
     "runs a command that is expected to return STATUS, a number or a name such as chip-failed",
     "",
     expect},
    {"source",
     {{"file", Type::File}},
     "takes commands from a file, one a line, or runs a device file",
     "",
     [](Session &session, const Arguments &a) {
         session.shell().source(a.text("file"));
         return Outcome::shown("");
     }},
    {"save",
     {{"file", Type::File}},
     "writes what was done in this session as a device file, with what came of it as expectations",
     "",
     [](Session &session, const Arguments &a) {
         session.shell().save(a.text("file"));
         return Outcome::shown("");
     }},
    {"report",
     {{"file", Type::File}},
     "writes the steps so far, the present state and the ways of frames as one page for a browser",
     "",
     [](Session &session, const Arguments &a) {
         session.shell().report(a.text("file"));
         return Outcome::shown("");
     }},
    {"explain",
     {{.name = "topic",
       .type = Type::Text,
       .meaning = "a printed line, a status, a platform call, an operation or a command"}},
     "tells what TOPIC means, what prints it, and where to look first",
     "",
     [](Session &, const Arguments &a) { return explain(a.text("topic")); }},
    {"ops",
     {},
     "shows the operation tables slot by slot",
     "",
     [](Session &session, const Arguments &) { return showOperations(session.tables()); }},
    {"dump",
     {},
     "shows the state of chips, board, manager and library as JSON",
     "",
     [](Session &session, const Arguments &) { return Outcome::shown(session.dump() + "\n"); }},
    {"monitor",
     {kOnOff},
     "tells with each step what it changed in links, addresses and counters",
     "",
     [](Session &session, const Arguments &a) {
         session.monitor(a.number("enable") != 0);
         return Outcome::shown("");
     }},
    {"checkpoint",
     {kCheckpoint},
     "keeps the present state under NAME, for diff",
     "",
     [](Session &session, const Arguments &a) {
         session.checkpoint(a.text("name"));
         return Outcome::shown("");
     }},
    {"diff",
     {kCheckpoint,
      {.name = "later", .type = Type::Word, .optional = true, .meaning = "the present state without it"}},
     "shows what changed since a checkpoint, or from one to another, a value a line",
     "",
     showChanges},
    {"level",
     {{.name = "level", .choices = "off|events=2|details=3"}},
     "enables traces up to LEVEL (2 events, 3 details); 0 disables all",
     "",
     [](Session &session, const Arguments &a) {
         session.setTraceLevel(a.number("level"));
         return Outcome::shown("");
     }},
    {"trace",
     {{"calls", Type::Word, "off|calls|all"}},
     "shows the calls of the chip SDK and the board that a step makes, or all platform calls, nested ones too",
     "",
     [](Session &session, const Arguments &a) {
         const std::string word = a.text("calls");
         session.showCalls(word == "off"     ? ShownCalls::None
                           : word == "calls" ? ShownCalls::Library
                                             : ShownCalls::All);
         return Outcome::shown("");
     }},
    {"fail",
     {{.name = "call", .type = Type::Call, .check = checkFailure}},
     "makes platform calls fail: NAME[@N[+]]=STATUS, all, the Nth from now on, or that and all after it",
     "",
     [](Session &session, const Arguments &a) {
         session.fail(parseFailure(a.text("call")));
         return Outcome::shown("");
     }},
    {"fail none",
     {},
     "removes all failures",
     "",
     [](Session &session, const Arguments &) {
         session.failNone();
         return Outcome::shown("");
     }},
    {"unit set",
     {kManagedUnit,
      {.name = "info",
       .type = Type::Json,
       .choices = "maxFrameSize|reservedPort|cascadeTrunk|portSets|ports",
       .check = checkUnitInfo}},
     "changes unit information: maxFrameSize, reservedPort, cascadeTrunk, portSets, ports",
     "",
     [](Session &session, const Arguments &a) {
         session.setUnitInfo(a.number("unit"), a.json("info"));
         return Outcome::shown("");
     }},
    {"unit show",
     {kManagedUnit},
     "shows the manager's unit information",
     "",
     [](Session &session, const Arguments &a) {
         return Outcome::shown(session.showUnitInfo(a.number("unit")));
     }},
};

} // namespace

std::span<const Command> sessionCommands()
{
    return kSessionCommands;
}

} // namespace zrbench
