#include "tests/sweep/sweep.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <set>

#include "tests/sweep/transcript.h"

namespace zrtest
{
namespace
{

constexpr uint8_t kPattern = 0xEE;
// 22 and 0x6000A mean something to some operations.
constexpr uint32_t kStatuses[] = {22, 77, SDK_L2_ENTRY_NOT_FOUND, 0xFFFFFFFF};
constexpr uint32_t kAndAfter = 77; // the status when every call fails
const std::string kTranscripts = ZRLSW_SOURCE_DIR "/tests/sweep/transcript/";

std::vector<Sweep> &all()
{
    static std::vector<Sweep> rows;
    return rows;
}

// Calls without a result: there is nothing to fail.
bool cannotFail(const std::string &name)
{
    static const std::set<std::string> kNames = {"LSWM_MemFree", "LSWM_SemMCreate", "LSWM_SemTake",
                                                 "LSWM_SemGive", "PAL_TaskDelay"};
    return kNames.contains(name);
}

// Services that tell nothing about what the operation did.
bool isService(const std::string &name)
{
    static const std::set<std::string> kNames = {"LSWM_ConfigFailPrint",
                                                 "LSWM_DebugInfoPrint",
                                                 "LSWM_PrintSwitchOn",
                                                 "LSWM_CmdCliPrint",
                                                 "LSWM_MemFree",
                                                 "LSWM_SemTake",
                                                 "LSWM_SemGive",
                                                 "memset_s",
                                                 "memcpy_s",
                                                 "strncpy_s",
                                                 "sprintf_s"};
    return kNames.contains(name);
}

// The call as the gate tells it; of a record that may hold addresses, only that it is one.
std::string shown(const zrsim::Call &call)
{
    const std::string name = call.name;
    std::string text = call.text;
    if (name.find("grAcl") != std::string::npos || name == "l2sw_fun_regist")
        for (size_t at = 0; (at = text.find(":{", at)) != std::string::npos;) {
            const size_t size = text.find_last_not_of("0123456789", at - 1) + 1;
            text.replace(size, text.find('}', at) + 1 - size, "record");
        }
    return text;
}

Texts names(const Texts &calls)
{
    Texts found;
    for (const std::string &call : calls)
        found.push_back(call.substr(0, call.find('(')));
    return found;
}

// In one line, repetitions counted; without the arguments where that is long.
std::string listed(const Texts &calls)
{
    const auto line = [](const Texts &texts) { return fmt::format("{}", fmt::join(repeated(texts, 4), ", ")); };
    const std::string whole = line(calls);
    return whole.size() < 300 ? whole : line(names(calls));
}

// What came of one run.
struct Outcome {
    std::string answer;
    Texts printed; // failure lines, traces and command line
    Texts written; // outputs
    std::vector<zrsim::Call> all;
    Texts calls;         // of chip and board
    bool failed = false; // a call
    size_t from = 0;     // of `calls`, the first behind the failed one
    unsigned kept = 0;
};

struct Failure {
    std::string name;
    unsigned nth; // among the calls of that name
    bool andAfter;
    uint32_t status;
};

// Runs the operation on the device as it is.
Outcome play(const Sweep &row, Run run, const Failure *failure = nullptr)
{
    Device &dev = device();
    dev.takeFailures();
    dev.takeTraces();
    dev.takeCli();
    dev.forget();
    dev.record(true);
    // The failure of all later calls is played without traces: they change nothing.
    zrsim::console().traceLevel(failure != nullptr && failure->andAfter ? 0 : 0xFF);
    const unsigned before = zrsim::memory().liveBlocks();
    size_t made = 0;
    size_t failedAt = SIZE_MAX;
    if (failure != nullptr)
        zrsim::gate().intercept([&, seen = 0U](const zrsim::Call &call, uint64_t &result) mutable {
            if (call.depth != 0)
                return false;
            if (call.name == failure->name && ++seen == failure->nth)
                failedAt = made;
            const bool after =
                failure->andAfter && made > failedAt && !cannotFail(call.name) && !isService(call.name);
            result = failure->status;
            return made++ == failedAt || after;
        });
    Outcome outcome;
    outcome.answer = row.run(run);
    run.finish();
    zrsim::gate().intercept({});
    zrsim::console().traceLevel(0);

    outcome.failed = failure != nullptr;
    outcome.all = dev.recorded();
    dev.record(false);
    for (size_t i = 0; i < outcome.all.size(); ++i) {
        if (i == failedAt + 1)
            outcome.from = outcome.calls.size();
        if (!isService(outcome.all[i].name))
            outcome.calls.push_back(shown(outcome.all[i]));
    }
    if (failure != nullptr && failedAt + 1 >= outcome.all.size())
        outcome.from = outcome.calls.size();
    for (const std::string &line : repeated(dev.takeFailures(), 1))
        outcome.printed.push_back("fail " + line);
    for (const std::string &line : repeated(dev.takeTraces(), 1))
        outcome.printed.push_back("trace " + line);
    if (const std::string cli = dev.takeCli(); !cli.empty())
        outcome.printed.push_back(fmt::format("cli {:?}", cli));
    Texts labels;
    for (const SweepArgument &argument : row.arguments)
        labels.push_back(argument.label);
    outcome.written = run.written(labels);
    outcome.kept = zrsim::memory().liveBlocks() - before;

    EXPECT_EQ(zrsim::memory().badFrees(), 0U);
    EXPECT_EQ(zrsim::manager().mutexDepth, 0);
    EXPECT_FALSE(zrsim::manager().mutexMisuse);
    return outcome;
}

Texts linesOf(const std::string &text)
{
    Texts lines;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

// The answer, and the outputs unless they are those of the good run.
std::string answered(const Outcome &outcome, const Outcome *good)
{
    std::string text = "-> " + (outcome.answer.empty() ? "done" : outcome.answer);
    if (good == nullptr || outcome.answer != good->answer || outcome.written != good->written)
        for (const std::string &written : outcome.written)
            text += ", " + written;
    return text;
}

std::string text(const Outcome &outcome, const Outcome *good)
{
    std::string text = answered(outcome, good);
    const auto from = static_cast<long>(outcome.from);
    const Texts calls(outcome.calls.begin() + from, outcome.calls.end());
    if (good != nullptr && outcome.failed && Texts(good->calls.begin() + from, good->calls.end()) == calls)
        text += calls.empty() ? "" : ", goes on";
    else if (!calls.empty())
        text += (outcome.failed ? ", then " : ", calls ") + listed(good != nullptr ? calls : names(calls));
    // Lines that the good run prints as well go without saying.
    for (const std::string &line : outcome.printed)
        if (good == nullptr ||
            std::find(good->printed.begin(), good->printed.end(), line) == good->printed.end())
            text += "\n        " + line;
    return text;
}

// A running device where the operation can be run.
struct Prepared : Device {
    explicit Prepared(const Sweep &row, bool prepare = true)
    {
        bringUp();
        record(false);
        if (prepare && row.prepare)
            row.prepare();
    }
};

struct Place {
    std::string name;
    unsigned nth; // among the calls of that name
};

// Of a name that is called often, the first three calls and the last stand for all.
std::vector<Place> placesToFail(const std::vector<zrsim::Call> &calls, std::map<std::string, unsigned> &totals)
{
    for (const zrsim::Call &call : calls)
        ++totals[call.name];
    std::map<std::string, unsigned> seen;
    std::vector<Place> places;
    for (const zrsim::Call &call : calls) {
        const std::string name = call.name;
        const unsigned nth = ++seen[name];
        if (!cannotFail(name) && (nth <= 3 || nth == totals[name]))
            places.push_back({name, nth});
    }
    return places;
}

Outcome failed(const Sweep &row, const Outcome &good, const Place &place, bool andAfter, uint32_t status)
{
    SCOPED_TRACE(fmt::format("{}@{}{} = {}", place.name, place.nth, andAfter ? " and all after" : "", status));
    Prepared device(row);
    const Failure failure{place.name, place.nth, andAfter, status};
    Outcome outcome = play(row, Run(), &failure);
    const bool worked = outcome.answer == good.answer;
    EXPECT_LE(outcome.kept, worked ? good.kept : row.keeps) << "memory leaked";
    if (!worked && row.again) {
        EXPECT_EQ(play(row, Run()).answer, good.answer) << "does not work afterwards";
    }
    return outcome;
}

// What comes of the failure of one call: a text for all statuses where it differs in nothing else.
std::string rowsOf(const Sweep &row, const Outcome &good, const Place &place)
{
    std::vector<Variant> variants;
    std::string andAfter;
    for (uint32_t status : kStatuses) {
        const Outcome alone = failed(row, good, place, false, status);
        variants.push_back({status, text(alone, &good)});
        if (status != kAndAfter)
            continue;
        const Outcome all = failed(row, good, place, true, status);
        // The lines of bring-up are no matter of the trace level.
        for (const std::string &line : all.printed)
            EXPECT_TRUE(line.rfind("trace 1 ", 0) == 0 || line.rfind("trace", 0) != 0 ||
                        place.name == "LSWM_PrintSwitchOn")
                << line << " though traces are off";
        if (all.answer != alone.answer || all.written != alone.written)
            andAfter = fmt::format(" and all after {}\n", answered(all, &good));
    }
    std::string rows;
    for (const Merged &merged : merge("status", variants))
        rows += fmt::format("{} {}\n",
                            merged.values.size() == std::size(kStatuses)
                                ? ""
                                : fmt::format(" = {}", fmt::join(merged.values, ", ")),
                            merged.text);
    rows += andAfter;
    return rows;
}

// The failures of each kind of call, those that differ in numbers only as one.
void addFailures(Lines &body, const Sweep &row, const Outcome &good)
{
    std::map<std::string, unsigned> totals;
    const std::vector<Place> places = placesToFail(good.all, totals);
    const std::string unharmed = " -> " + (good.answer.empty() ? "done" : good.answer);
    std::vector<std::pair<std::string, std::vector<Variant>>> called;
    for (const Place &place : places) {
        if (isService(place.name) && place.name != "sprintf_s") {
            // Its failure is nobody's business, but harms nothing.
            failed(row, good, place, false, kAndAfter);
            continue;
        }
        auto found =
            std::find_if(called.begin(), called.end(), [&](const auto &c) { return c.first == place.name; });
        if (found == called.end())
            found = called.insert(called.end(), {place.name, {}});
        found->second.push_back({place.nth, rowsOf(row, good, place)});
    }
    Texts harmless;
    const auto isHarmless = [&](const Merged &kind) {
        return kind.text == unharmed + "\n" || kind.text == unharmed + ", goes on\n";
    };
    for (const auto &[name, variants] : called) {
        const std::vector<Merged> kinds = merge("", variants);
        if (std::all_of(kinds.begin(), kinds.end(), isHarmless)) {
            harmless.push_back(name);
            continue;
        }
        for (const Merged &kind : kinds) {
            const std::string which =
                kinds.size() == 1 ? name : fmt::format("{}@{}", name, fmt::join(kind.values, ","));
            if (isHarmless(kind))
                harmless.push_back(which);
            else
                for (const std::string &line : linesOf(kind.text))
                    body.push_back(line.rfind("        ", 0) == 0 ? line : "    " + which + line);
        }
    }
    if (!harmless.empty())
        body.push_back(fmt::format("    harmless: {}", fmt::join(harmless, ", ")));
}

void addRefusals(Lines &body, const Sweep &row, const Outcome &good)
{
    const auto add = [&](const std::string &text) {
        for (const std::string &line : linesOf("    " + text))
            body.push_back(line);
    };
    if (row.prepare) {
        Prepared device(row, false);
        add("unprepared " + text(play(row, Run()), &good));
    }
    for (size_t i = 0; i < row.arguments.size(); ++i) {
        const SweepArgument &argument = row.arguments[i];
        std::vector<Variant> variants;
        for (uint64_t value : argument.hostile) {
            SCOPED_TRACE(fmt::format("{} = {}", argument.label, value));
            Prepared device(row);
            variants.push_back({value, text(play(row, Run(i, value)), &good)});
        }
        for (const Merged &merged : merge(argument.label, variants)) {
            const std::string which =
                argument.pointer ? "null " + argument.label
                : merged.values.size() == variants.size()
                    ? "bad " + argument.label
                    : fmt::format("{} {}", argument.label, fmt::join(merged.values, ", "));
            add(which + " " + merged.text);
        }
    }
}

// An SDK that reports success and stores nothing: what comes out then are the library's own start values.
void addSilence(Lines &body, const Sweep &row, const Outcome &good)
{
    Prepared device(row);
    zrsim::gate().intercept([](const zrsim::Call &call, uint64_t &result) {
        const std::string name = call.name;
        result = 0;
        // These two return what they have to tell.
        return name.rfind("l2sw_", 0) == 0 && name != "l2sw_switch_isExtPort" &&
               name != "l2sw_switch_port_L2P_get";
    });
    const Outcome outcome = play(row, Run());
    if (outcome.calls == good.calls && answered(outcome, &good) == answered(good, &good))
        return;
    for (const std::string &line : linesOf("    silent SDK " + text(outcome, &good)))
        body.push_back(line);
}

Lines bodyOf(const Sweep &row)
{
    Outcome good;
    {
        Prepared device(row);
        good = play(row, Run());
    }
    Lines body = linesOf("    " + text(good, nullptr));
    addFailures(body, row, good);
    addSilence(body, row, good);
    addRefusals(body, row, good);
    return wrapped(body);
}

const Transcript &transcript(const std::string &file)
{
    static std::map<std::string, Transcript> files;
    auto [found, fresh] = files.try_emplace(file);
    if (fresh)
        found->second.read(kTranscripts + file + ".txt");
    return found->second;
}

} // namespace

void Run::finish()
{
    for (const auto &work : finally_)
        work();
}

Texts Run::written(const std::vector<std::string> &labels) const
{
    Texts texts;
    for (const Block &block : blocks_) {
        if (block.bytes == block.before)
            continue;
        uint32_t value = 0;
        if (block.bytes.size() <= sizeof value) {
            std::memcpy(&value, block.bytes.data(), block.bytes.size());
            texts.push_back(fmt::format("{} = {}", labels[block.argument], zrsim::show(value)));
        } else {
            const bool zero =
                std::all_of(block.bytes.begin(), block.bytes.end(), [](uint8_t b) { return b == 0; });
            texts.push_back(fmt::format("{} {}", labels[block.argument], zero ? "zeroed" : "written"));
        }
    }
    return texts;
}

uint8_t *Run::add(size_t size, const void *bytes)
{
    std::vector<uint8_t> memory(size, kPattern);
    if (bytes != nullptr)
        std::memcpy(memory.data(), bytes, size);
    return blocks_.emplace_back(Block{next_ - 1, memory, memory}).bytes.data();
}

std::string answerText(uint32_t status)
{
    return std::to_string(status);
}

std::string answerText(char *text)
{
    if (text == nullptr)
        return "null";
    std::string copy = fmt::format("{:?}", std::string_view(text));
    zrsim::memory().free(text);
    return copy;
}

std::string answerText(const void *record)
{
    return record != nullptr ? "record" : "null";
}

SweepArgument described(const Number &number, uint64_t limit)
{
    std::vector<uint64_t> hostile = number.hostile;
    std::erase_if(hostile, [limit](uint64_t value) { return value > limit; });
    return {number.label, number.label + " " + number.shown, hostile};
}

void nameApart(std::vector<SweepArgument> &arguments)
{
    std::map<std::string, unsigned> totals;
    for (const SweepArgument &argument : arguments)
        ++totals[argument.label];
    std::map<std::string, unsigned> seen;
    for (SweepArgument &argument : arguments)
        if (argument.pointer && totals[argument.label] > 1)
            argument.shown = argument.label += std::to_string(++seen[argument.label]);
}

std::string Sweep::heading() const
{
    Texts shown;
    for (const SweepArgument &argument : arguments)
        shown.push_back(argument.shown);
    return fmt::format("{}({})", operation, fmt::join(shown, ", "));
}

bool addSweeps(const char *file, std::function<void()> prepare, std::vector<Sweep> rows)
{
    for (Sweep &row : rows) {
        row.prepare = prepare;
        row.file = file;
        all().push_back(std::move(row));
    }
    return true;
}

void PrintTo(const Sweep &row, std::ostream *stream)
{
    *stream << row.heading();
}

class FailureSweep : public ::testing::TestWithParam<Sweep>
{
};

TEST_P(FailureSweep, GoesAsTheTranscriptSays)
{
    const Sweep &row = GetParam();
    const Lines expected = transcript(row.file).body(row.heading());
    const Lines actual = bodyOf(row);
    EXPECT_EQ(fmt::format("{}\n", fmt::join(expected, "\n")), fmt::format("{}\n", fmt::join(actual, "\n")))
        << row.heading() << ": transcript/" << row.file << ".txt (-) no longer tells what happens (+)";
}

INSTANTIATE_TEST_SUITE_P(Operation, FailureSweep, ::testing::ValuesIn(all()),
                         [](const ::testing::TestParamInfo<Sweep> &swept) {
                             return fmt::format("{}_{}", swept.param.operation, swept.index);
                         });

// What is exported and is no operation.
TEST(FailureSweepList, MissesNoExportedOperation)
{
    const std::set<std::string> data = {"g_HsecMeterInfo", "g_TrunkMeterInfo", "g_LswmL2Control",
                                        "g_stgInstace",    "g_vesperUnitMap",  "phyAddr",
                                        "g_rmaAddrTypeMap"};
    std::set<std::string> swept;
    for (const Sweep &row : all())
        swept.insert(row.operation);

    std::ifstream exports(ZRLSW_SOURCE_DIR "/cmake/exports.txt");
    ASSERT_TRUE(exports);
    Texts missed;
    unsigned names = 0;
    for (std::string name; std::getline(exports, name); ++names)
        if (!data.contains(name) && !swept.contains(name))
            missed.push_back(name);
    EXPECT_GT(names, 300U);
    EXPECT_EQ(missed, Texts{});
}

// A row that went must take its text along.
TEST(FailureSweepList, TheTranscriptHasNoOtherOperation)
{
    std::map<std::string, Texts> headings;
    for (const Sweep &row : all())
        headings[row.file].push_back(row.heading());
    for (auto &[file, rows] : headings) {
        Texts written = transcript(file).headings();
        std::sort(written.begin(), written.end());
        std::sort(rows.begin(), rows.end());
        EXPECT_EQ(written, rows) << file;
    }
}

// Writes every transcript anew, for a reviewer to read the difference.
void writeTranscripts()
{
    std::map<std::string, Transcript> files;
    for (const Sweep &row : all())
        files[row.file].add(row.heading(), bodyOf(row));
    for (const auto &[file, text] : files)
        text.write(kTranscripts + file + ".txt");
}

} // namespace zrtest

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (argc == 2 && std::string(argv[1]) == "--write-transcript") {
        zrtest::writeTranscripts();
        return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
    }
    return RUN_ALL_TESTS();
}
