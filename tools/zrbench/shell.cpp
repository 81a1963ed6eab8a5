#include "tools/zrbench/shell.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>
#include <memory>
#include <optional>
#include <unistd.h>

#ifdef ZRBENCH_LIBEDIT
#include <editline/readline.h>
#endif

#include "tools/zrbench/output.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

class LineSource
{
public:
    virtual ~LineSource() = default;
    virtual std::optional<std::string> next() = 0;
};

class PlainLines final : public LineSource
{
public:
    explicit PlainLines(bool prompts) : prompts_(prompts) {}

    std::optional<std::string> next() override
    {
        if (prompts_) {
            print("zrbench> ");
            standardOutput().check();
        }
        std::string line;
        for (int c = std::fgetc(stdin); c != EOF; c = std::fgetc(stdin)) {
            if (c == '\n')
                return line;
            line += static_cast<char>(c);
        }
        if (std::ferror(stdin) != 0)
            throw UsageError{fmt::format("cannot read standard input: {}", std::strerror(errno))};
        return line.empty() ? std::nullopt : std::optional(line);
    }

private:
    bool prompts_;
};

#ifdef ZRBENCH_LIBEDIT

char *nextCompletion(const char *, int state)
{
    static std::vector<std::string> found;
    static size_t next;
    if (state == 0) {
        found = completions(std::string_view(rl_line_buffer, static_cast<size_t>(rl_point)));
        next = 0;
    }
    return next < found.size() ? strdup(found[next++].c_str()) : nullptr;
}

char **complete(const char *text, int, int)
{
    // Without this, file names would be offered when nothing is found.
    rl_attempted_completion_over = 1;
    return rl_completion_matches(text, nextCompletion);
}

volatile std::sig_atomic_t interrupted;

class EditedLines final : public LineSource
{
public:
    EditedLines()
    {
        rl_readline_name = "zrbench";
        rl_attempted_completion_function = complete;
        using_history();
        if (const char *home = std::getenv("HOME")) {
            file_ = std::string(home) + "/.zrbench_history";
            read_history(file_.c_str());
        }
    }
    EditedLines(const EditedLines &) = delete;
    EditedLines &operator=(const EditedLines &) = delete;
    ~EditedLines() override
    {
        if (!file_.empty())
            write_history(file_.c_str());
    }

    std::optional<std::string> next() override
    {
        // Ctrl-C at the prompt drops the line, not the session with the chips' state.
        using SignalAction = struct sigaction;
        SignalAction drop{};
        SignalAction usual{};
        drop.sa_handler = [](int) { interrupted = 1; };
        interrupted = 0;
        sigaction(SIGINT, &drop, &usual);
        char *typed = readline("zrbench> ");
        sigaction(SIGINT, &usual, nullptr);
        if (typed == nullptr) {
            print("\n");
            return interrupted != 0 ? std::optional<std::string>("") : std::nullopt;
        }
        std::string line = typed;
        std::free(typed);
        if (line.find_first_not_of(" \t") != std::string::npos)
            add_history(line.c_str());
        return line;
    }

private:
    std::string file_;
};

#endif

std::unique_ptr<LineSource> openLines(bool atTerminal)
{
#ifdef ZRBENCH_LIBEDIT
    if (atTerminal)
        return std::make_unique<EditedLines>();
#endif
    return std::make_unique<PlainLines>(atTerminal);
}

} // namespace

bool runShell(Session &session, Report &report)
{
    const bool atTerminal = isatty(STDIN_FILENO) != 0;
    const std::unique_ptr<LineSource> lines = openLines(atTerminal);
    bool allGood = true;
    size_t number = 0;
    auto refuse = [&](const std::string &text) {
        complain((atTerminal ? "" : fmt::format("line {}: ", number)) + text);
        allGood = false;
    };
    while (!session.quitting()) {
        standardOutput().check();
        const std::optional<std::string> line = lines->next();
        if (!line)
            break;
        ++number;
        const size_t start = line->find_first_not_of(" \t\r");
        if (start == std::string::npos || (*line)[start] == '#')
            continue;
        try {
            const Invocation invocation = parseInvocation(*line);
            session.check(invocation);
            std::vector<CheckedRun> runs;
            runs.push_back({&invocation, session.invoke(invocation), {}});
            report.step(invocation.text, {}, runs, true);
        } catch (const ArgumentError &error) {
            refuse(error.argument + ": " + error.text);
        } catch (const UsageError &error) {
            refuse(error.text);
        }
    }
    return allGood || atTerminal;
}

} // namespace zrbench
