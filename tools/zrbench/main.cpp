#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <optional>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/zrbench/completion.h"
#include "tools/zrbench/dump.h"
#include "tools/zrbench/expectations.h"
#include "tools/zrbench/explain.h"
#include "tools/zrbench/in_service.h"
#include "tools/zrbench/json_writer.h"
#include "tools/zrbench/junit_writer.h"
#include "tools/zrbench/live.h"
#include "tools/zrbench/ops.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/page.h"
#include "tools/zrbench/pager.h"
#include "tools/zrbench/platform.h"
#include "tools/zrbench/reference.h"
#include "tools/zrbench/replay.h"
#include "tools/zrbench/runner.h"
#include "tools/zrbench/schema.h"
#include "tools/zrbench/shell.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/values.h"
#include "tools/zrbench/version.h"

using namespace zrbench;

namespace
{

enum Exit { kAsExpected = 0, kNotAsExpected = 1, kUsage = 2 };

struct Options {
    SessionOptions session;
    std::string topic;
    std::vector<std::string> ports;
    std::optional<std::string> commands;
    bool inService = false;
    std::string colour = "auto";
    bool quiet = false;
    bool json = false;
    bool stop = false;
    bool update = false;
    std::vector<std::string> files; // to run
    std::string junitFile;
    std::string recording; // to write
    std::string page;      // to write

    Report report(bool silent = false) const
    {
        if (json)
            return Report(std::make_unique<JsonWriter>(quiet || silent));
        return Report(std::make_unique<TextWriter>(coloured(), quiet || silent));
    }

    bool coloured() const
    {
        // https://no-color.org: any value but an empty one.
        const char *refused = std::getenv("NO_COLOR");
        return colour == "always" ||
               (colour == "auto" && isTerminal() && (refused == nullptr || *refused == '\0'));
    }
};

// A flag with an optional value reads as other programs show it.
class HelpFormatter final : public CLI::Formatter
{
public:
    std::string make_option_name(const CLI::Option *option, bool positional) const override
    {
        return option->check_lname("color") ? "--color[=WHEN]"
                                            : CLI::Formatter::make_option_name(option, positional);
    }
};

// The subcommands and options of a command line.
std::vector<std::string_view> wordsOf(const CLI::App &app)
{
    static std::vector<std::string> names;
    for (const CLI::Option *option : app.get_options())
        for (const std::string &name : option->get_lnames())
            names.push_back("--" + name);
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; })) {
        names.push_back(command->get_name());
        for (const CLI::Option *option : command->get_options())
            for (const std::string &name : option->get_lnames())
                names.push_back("--" + name);
    }
    return {names.begin(), names.end()};
}

// Keeps a file that is opened later from taking the place of a closed standard stream. Reading from or writing
// to the stream still fails.
void occupyStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

int refuse(std::string_view text)
{
    complain(fmt::format("zrbench: {}", text));
    return kUsage;
}

int run(const Options &options, JunitFile *junit)
{
    try {
        const Device device = loadDevice(options.session.deviceFile);
        Session session(options.session);
        Report report = options.report();
        if (junit != nullptr)
            report.add(std::make_unique<JunitWriter>(*junit));
        std::optional<Output> pageFile;
        const PageWriter *page = nullptr;
        if (!options.page.empty()) {
            pageFile.emplace(options.page, options.session.dash);
            for (const std::string &other : {device.file, options.session.dumpFile, options.session.traceFile})
                if (pageFile->sameAs(other))
                    throw UsageError{fmt::format("{} would be written over by --report", other)};
            auto writer = std::make_unique<PageWriter>(session, device.file);
            page = writer.get();
            report.add(std::move(writer));
        }
        if (options.update)
            report.add(std::make_unique<ExpectationUpdate>(device.file));
        runDevice(session, device, report, options.stop);
        report.summary(device.file, session);
        if (page != nullptr)
            page->write(*pageFile);
        session.finish();
        return report.deviating() == 0 ? kAsExpected : kNotAsExpected;
    } catch (const UsageError &error) {
        if (junit != nullptr)
            junit->error(options.session.deviceFile, error.text);
        throw;
    }
}

// Each of several files has a process, and so a library and chips, of its own.
int runApart(const Options &options, JunitFile *junit)
{
    standardOutput().check();
    const pid_t child = fork();
    if (child < 0)
        throw UsageError{fmt::format("cannot run {}: {}", options.session.deviceFile, std::strerror(errno))};
    if (child == 0) {
        int result = kUsage;
        try {
            result = run(options, junit);
            standardOutput().check();
        } catch (const UsageError &error) {
            result = refuse(error.text);
        }
        _exit(result);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status))
        throw UsageError{fmt::format("{}: ended by signal {}", options.session.deviceFile, WTERMSIG(status))};
    return WEXITSTATUS(status);
}

// Starts the program afresh with the recorder loaded in front of it, unless that is done.
void recordFrom(const Options &options, char **argv)
{
    const char *recorded = std::getenv("ZRLSW_RECORD");
    if (options.files.size() > 1)
        throw UsageError{"--record takes one device file at a time"};
    if (recorded != nullptr && recorded == options.recording)
        return;
    const Output writable(options.recording);
    const char *before = std::getenv("LD_PRELOAD");
    const std::string loaded =
        located("libzrrecord.so") + (before == nullptr ? "" : fmt::format(":{}", before));
    setenv("LD_PRELOAD", loaded.c_str(), 1);
    setenv("ZRLSW_RECORD", options.recording.c_str(), 1);
    execv("/proc/self/exe", argv);
    throw UsageError{fmt::format("cannot start with the recorder: {}", std::strerror(errno))};
}

int runAll(Options options)
{
    std::optional<JunitFile> junit;
    if (!options.junitFile.empty())
        junit.emplace(options.junitFile, options.files);
    JunitFile *const told = junit ? &*junit : nullptr;
    if (options.files.size() > 1 &&
        !(options.session.traceFile + options.session.dumpFile + options.page).empty())
        throw UsageError{"--trace, --dump and --report take one device file at a time"};
    int result = kAsExpected;
    for (const std::string &file : options.files) {
        options.session.deviceFile = file;
        result = std::max(result, options.files.size() == 1 ? run(options, told) : runApart(options, told));
        if (options.stop && result != kAsExpected)
            break;
    }
    if (junit)
        junit->finish();
    return result;
}

int shell(const Options &options)
{
    Session session(options.session);
    Report report = options.report();
    auto writer = std::make_unique<PageWriter>(session, options.inService ? "shell --up" : "shell");
    const PageWriter &page = *writer;
    report.add(std::move(writer));
    unsigned deviating = 0;
    if (options.inService) {
        Report first = options.report(true);
        const Device device = readDevice("--up", kInService);
        runDevice(session, device, first);
        report.heading(device.about);
        deviating = first.deviating();
    }
    if (!options.session.deviceFile.empty())
        runDevice(session, loadDevice(options.session.deviceFile), report);
    std::optional<std::string> device;
    if (options.inService || !options.session.deviceFile.empty())
        device = options.session.deviceFile;
    const bool good = runShell(session, report, page, options.commands, device);
    if (options.json)
        report.summary("shell", session);
    session.finish();
    if (!good)
        return kUsage;
    return report.deviating() + deviating == 0 ? kAsExpected : kNotAsExpected;
}

int live(const Options &options)
{
    const Device device = loadDevice(options.session.deviceFile);
    std::vector<LivePort> ports = openLivePorts(options.ports);
    Session session(options.session);
    Report report = options.report();
    runDevice(session, device, report);
    runLive(session, ports);
    session.finish();
    return report.deviating() == 0 ? kAsExpected : kNotAsExpected;
}

int diff(const Options &options, const std::string &before, const std::string &after)
{
    const std::vector<Change> found = changes(readDump(before), readDump(after));
    const Pager pager(!options.json);
    for (const Change &change : found) {
        if (options.json)
            print("{}\n", rowOf(change).dump());
        else
            print("{}", folded(lineOf(change), terminalWidth(), 4));
    }
    return found.empty() ? kAsExpected : kNotAsExpected;
}

} // namespace

int main(int argc, char **argv)
{
    occupyStandardStreams();
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is lost output
    Options options;
    CLI::App app("Drives libzrlsw.so through the switch manager's operation tables.", "zrbench");
    app.formatter(std::make_shared<HelpFormatter>());
    app.require_subcommand(1);
    app.failure_message([](const CLI::App *failed, const CLI::Error &error) {
        const std::vector<std::string> unknown = failed->remaining();
        if (unknown.empty())
            return fmt::format("zrbench: {}; see --help", error.what());
        return fmt::format("zrbench: {}, found {}{}", error.what(), shown(unknown[0]),
                           didYouMean(unknown[0], wordsOf(*failed), "; see --help"));
    });
    app.footer("Exit status: 0 all as expected, 1 a step was not as expected, 2 bad use, file or platform.\n"
               "Device files: docs/device-files.md");
    app.fallthrough();
    app.add_option("--lib", options.session.library, "The library")->type_name("FILE")->capture_default_str();
    app.add_option("--platform", options.session.platform, "The platform that it runs on")
        ->type_name("FILE")
        ->capture_default_str();
    app.add_option("--trace", options.session.traceFile,
                   "Write every platform call to FILE, - for standard output")
        ->type_name("FILE");
    app.add_option("--dump", options.session.dumpFile,
                   "Write the final state as JSON to FILE, - for standard output")
        ->type_name("FILE");
    app.add_option("--fail", options.session.failures,
                   "Make platform calls fail: all of NAME, the Nth, or that and all after it (N+); repeatable")
        ->type_name("NAME[@N[+]]=STATUS")
        ->expected(1)
        ->take_all();
    app.add_option("--level", options.session.traceLevel,
                   "Enable the library's traces up to this level: 2 events, 3 details")
        ->type_name("LEVEL");
    app.add_flag_callback(
        "--json",
        [&] {
            options.json = true;
            options.session.dash = stderr;
        },
        "Tell each step as one JSON object a line, the summary last; - is then standard error");
    app.add_flag("--quiet", options.quiet, "Show only what is not as expected, and the summary");
    app.add_flag("--color{always}", options.colour,
                 "Use colours, WHEN: auto (on a terminal), always (or no WHEN), never")
        ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
    app.set_version_flag(
        "--version",
        [&] {
            const std::string library = located(options.session.library);
            return fmt::format("zrbench {}\n{} {}", version(), library, libraryVersion(library));
        },
        "Show the versions of the bench manager and of the library's file");

    int result = kAsExpected;
    CLI::App *command = app.add_subcommand("run", "Run device files")->fallthrough();
    command->add_option("file", options.files, "Devices and their steps, JSON; - for standard input")
        ->required()
        ->type_name("FILE");
    command->add_flag("--stop,!--keep-going", options.stop, "End at the first step that is not as expected");
    command->add_flag("--update", options.update,
                      "Take the expectations anew where they are not met, and show what changes in the files");
    command->add_option("--junit", options.junitFile, "Write the steps as test cases to FILE, XML")
        ->type_name("FILE");
    command
        ->add_option("--record", options.recording, "Record what is asked of the library and of the platform")
        ->type_name("FILE");
    command
        ->add_option("--report", options.page, "Write what came of it as one page for a browser to FILE, HTML")
        ->type_name("FILE");
    command->callback([&] {
        if (!options.recording.empty())
            recordFrom(options, argv);
        result = runAll(options);
    });

    std::string recording;
    bool all = false;
    std::string asDevice;
    command = app.add_subcommand("replay", "Replay a recording against the library")->fallthrough();
    command->add_option("file", recording, "What libzrrecord.so recorded")->required()->type_name("FILE");
    command->add_flag("--all", all, "Go on behind the first difference");
    command->add_option("--as-device", asDevice, "Write the manager's calls as a device file instead")
        ->type_name("FILE");
    command->callback([&] {
        const Recording recorded = readRecording(recording);
        if (!asDevice.empty())
            writeDevice(recorded, asDevice);
        else
            result = replay(recorded, options.session.library, all) ? kAsExpected : kNotAsExpected;
    });

    Shown shownCalls;
    command = app.add_subcommand("show", "Tell what a recording holds")->fallthrough();
    command->add_option("file", recording, "What libzrrecord.so recorded")->required()->type_name("FILE");
    command->add_option("--unit", shownCalls.unit, "Only operations of this unit")->type_name("UNIT");
    command->add_option("--module", shownCalls.module, "Only operations of this module: PORT, VLAN")
        ->type_name("MODULE");
    command
        ->add_option("--call", shownCalls.call, "Only this operation, or the calls of this platform function")
        ->type_name("NAME");
    command->callback([&] {
        shownCalls.json = options.json;
        showRecording(readRecording(recording), shownCalls);
    });

    command = app.add_subcommand("shell", "Take commands from the keyboard or standard input")->fallthrough();
    command->add_option("-c", options.commands, "Take these commands, separated by ;")->type_name("COMMANDS");
    CLI::Option *up = command->add_flag("--up", options.inService, "Start with three units in service");
    command->add_option("file", options.session.deviceFile, "A device file to run first")
        ->type_name("FILE")
        ->excludes(up);
    command->callback([&] { result = shell(options); });

    command = app.add_subcommand("live", "Run a device file, then connect ports to TAP interfaces until Ctrl-C")
                  ->fallthrough();
    command->add_option("file", options.session.deviceFile, "The device and its steps, JSON")
        ->required()
        ->type_name("FILE");
    command->add_option("--port", options.ports, "Connect a port to a TAP interface; repeatable")
        ->required()
        ->type_name("UNIT/PORT=INTERFACE")
        ->expected(1)
        ->take_all();
    command->callback([&] { result = live(options); });

    command = app.add_subcommand("ops", "Show the operation tables slot by slot")->fallthrough();
    command->callback([&] {
        Session session(options.session);
        const Pager pager(true);
        const size_t width = terminalWidth();
        print("{}", foldedLines(showOperations(session.tables()).textWithin(width), width, 4));
        session.finish();
    });

    std::string before;
    std::string after;
    command =
        app.add_subcommand("diff", "Show what is not the same in two dumps, a value a line")->fallthrough();
    command->add_option("before", before, "As --dump writes it")->required()->type_name("FILE");
    command->add_option("after", after, "As --dump writes it")->required()->type_name("FILE");
    command->callback([&] { result = diff(options, before, after); });

    command = app.add_subcommand("report", "Write a dump as one page for a browser")->fallthrough();
    command->add_option("dump", before, "As --dump writes it")->required()->type_name("FILE");
    command->add_option("page", after, "To write, HTML")->required()->type_name("OUT");
    command->callback([&] { writeStatePage(before, readDump(before), after); });

    std::vector<std::string> words;
    command =
        app.add_subcommand("explain", "Tell what a printed line, a status, a platform call, an operation or a "
                                      "command means, and where to look first")
            ->fallthrough();
    command
        ->add_option("topic", words,
                     "As it was printed; in quotes when it holds what the shell takes for itself")
        ->required();
    command->callback([&] {
        const Outcome outcome = explain(fmt::to_string(fmt::join(words, " ")));
        const Pager pager(!options.json);
        if (!options.json)
            print("{}", foldedLines(outcome.text, terminalWidth(), 14));
        for (const nlohmann::json &row : options.json ? outcome.rows : nlohmann::json::array())
            print("{}\n", row.dump());
    });

    command = app.add_subcommand("schema", "Write the JSON schema of device files, for editors and checkers");
    command->callback([&] { print("{}\n", deviceSchema().dump(1)); });

    command =
        app.add_subcommand("commands", "List the commands of device files and of the shell")->fallthrough();
    CLI::Option *topic = command->add_option("topic", options.topic, "Only those that start with this");
    bool markdown = false;
    bool manual = false;
    command->add_flag("--markdown", markdown, "Write them as the reference of docs/device-files.md")
        ->excludes(topic);
    command->add_flag("--man", manual, "Write the manual page zrbench(1)")->excludes(topic, "--markdown");
    command->callback([&] {
        if (markdown || manual) {
            print("{}", markdown ? markdownReference() : manualPage(app));
            return;
        }
        const Pager pager(true);
        print("{}", help(options.topic, terminalWidth()));
    });

    std::string shellName;
    command = app.add_subcommand("completion", "Write a shell's completion script for this program");
    command->add_option("shell", shellName, "bash or zsh")
        ->required()
        ->type_name("SHELL")
        ->check(CLI::IsMember({"bash", "zsh"}).description(""));
    command->callback([&] { print("{}", completionScript(app, shellName)); });

    try {
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError &error) {
            std::ostringstream output;
            std::ostringstream errors;
            result = app.exit(error, output, errors) == 0 ? kAsExpected : kUsage;
            print("{}", foldedLines(output.str(), terminalWidth(), 30));
            if (result != kAsExpected)
                complain(errors.str());
        }
        standardOutput().check();
        return result;
    } catch (const UsageError &error) {
        return refuse(error.text);
    } catch (const std::exception &error) {
        return refuse(error.what());
    }
}
