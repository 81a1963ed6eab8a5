#include "tools/zrbench/shell.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <memory>
#include <optional>
#include <unistd.h>
#include <utility>
#include <vector>

#ifdef ZRBENCH_LIBEDIT
#include "tools/zrbench/line_editor.h"
#endif

#include "tools/zrbench/complete.h"
#include "tools/zrbench/expectations.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/pager.h"
#include "tools/zrbench/runner.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

constexpr const char *kPrompt = "zrbench> ";
constexpr size_t kLongest = 1 << 20; // of lines

class LineSource
{
public:
    virtual ~LineSource() = default;
    virtual std::optional<std::string> next() = 0;
    // Where the last line stands, as an error starts: "line 4: ".
    virtual std::string place() const { return {}; }
};

// The lines of a file or, with prompts, of a terminal that cannot be edited on.
class PlainLines final : public LineSource
{
public:
    PlainLines(std::FILE *file, std::string name, bool prompts)
        : file_(file, file == stdin ? keepOpen : std::fclose), name_(std::move(name)), prompts_(prompts)
    {
    }

    std::optional<std::string> next() override
    {
        if (prompts_) {
            print("{}", kPrompt);
            standardOutput().check();
        }
        ++number_;
        std::string line;
        for (int c = std::fgetc(file_.get()); c != EOF; c = std::fgetc(file_.get())) {
            if (c == '\n')
                return line;
            if (line.size() == kLongest)
                throw UsageError{fmt::format("{}a line of over {} bytes", place(), kLongest)};
            line += static_cast<char>(c);
        }
        if (std::ferror(file_.get()) != 0)
            throw UsageError{fmt::format("cannot read {}: {}", name_.empty() ? "standard input" : name_,
                                         std::strerror(errno))};
        return line.empty() ? std::nullopt : std::optional(line);
    }
    std::string place() const override
    {
        return prompts_ ? "" : fmt::format("{}line {}: ", name_.empty() ? "" : name_ + ": ", number_);
    }

private:
    static int keepOpen(std::FILE *) { return 0; }

    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file_;
    std::string name_; // empty for standard input
    bool prompts_;
    size_t number_ = 0;
};

// Commands on one line. A ; within quotes or brackets belongs to its command.
class GivenCommands final : public LineSource
{
public:
    explicit GivenCommands(std::string text) : text_(std::move(text)) {}

    std::optional<std::string> next() override
    {
        if (at_ >= text_.size())
            return std::nullopt;
        ++number_;
        const size_t start = at_;
        int depth = 0;
        bool quoted = false;
        for (; at_ < text_.size(); ++at_) {
            const char c = text_[at_];
            if (c == '\n' || (c == ';' && !quoted && depth <= 0))
                break;
            if (c == '"')
                quoted = !quoted;
            else if (quoted && c == '\\')
                ++at_;
            else if (!quoted)
                depth += c == '{' || c == '[' ? 1 : c == '}' || c == ']' ? -1 : 0;
        }
        at_ = std::min(at_, text_.size());
        return text_.substr(start, at_++ - start);
    }
    std::string place() const override { return fmt::format("command {}: ", number_); }

private:
    std::string text_;
    size_t at_ = 0;
    size_t number_ = 0;
};

#ifdef ZRBENCH_LIBEDIT

class EditedLines final : public LineSource
{
public:
    explicit EditedLines(const Session &session) : editor_(session, kPrompt) {}

    std::optional<std::string> next() override
    {
        standardOutput().check();
        return editor_.read();
    }

private:
    LineEditor editor_;
};

#endif

std::unique_ptr<LineSource> openLines(bool atTerminal, [[maybe_unused]] const Session &session)
{
#ifdef ZRBENCH_LIBEDIT
    std::setlocale(LC_CTYPE, ""); // of the characters that are typed
    if (atTerminal && isTerminal()) {
        print("Tab completes, ? tells what can stand there, exit ends the session.\n");
        return std::make_unique<EditedLines>(session);
    }
#endif
    return std::make_unique<PlainLines>(stdin, "", atTerminal);
}

// The lines being read: those of the shell, and above them those of files that they name.
class Shell
{
public:
    Shell(Session &session, Report &report, const PageWriter &page, bool atTerminal,
          const std::optional<std::string> &device)
        : session_(session), report_(report), atTerminal_(atTerminal)
    {
        if (device)
            log_.addFile(*device);
        session_.setShell({[this](const std::string &file) { source(file); },
                           [this](const std::string &file) { log_.write(file); },
                           [&page](const std::string &file) { page.write(file); }});
    }
    Shell(const Shell &) = delete;
    Shell &operator=(const Shell &) = delete;
    ~Shell() { session_.setShell({}); }

    // Returns whether every line was understood.
    bool run(std::unique_ptr<LineSource> lines)
    {
        reading_.push_back(std::move(lines));
        while (!reading_.empty() && !session_.quitting()) {
            standardOutput().check();
            if (const std::optional<std::string> line = reading_.back()->next())
                take(*line);
            else
                reading_.pop_back();
        }
        return allGood_;
    }

private:
    void take(const std::string &line)
    {
        const size_t start = line.find_first_not_of(" \t\r");
        if (start == std::string::npos || line[start] == '#')
            return;
        try {
            const Invocation invocation = parseInvocation(line);
            session_.check(invocation);
            std::vector<CheckedRun> runs;
            runs.push_back({&invocation, session_.invoke(invocation), {}});
            const Result &result = runs[0].result;
            if (!atTerminal_ || result.outcome.expected)
                runs[0].deviations = deviations(result, {}, false);
            {
                const Pager pager(atTerminal_);
                report_.step(invocation.text, {}, runs, true);
            }
            log(runs[0]);
            if (device_) {
                log_.addFile(device_->file);
                runDevice(session_, *std::exchange(device_, {}), report_);
            }
        } catch (const ArgumentError &error) {
            refuse(line, error.argument + ": " + error.text);
        } catch (const UsageError &error) {
            refuse(line, error.text);
        }
    }

    // Commands about the shell itself are not part of what was done.
    void log(const CheckedRun &run)
    {
        constexpr std::string_view kOwn[] = {"source", "save", "report", "help", "?", "quit", "exit"};
        if (std::ranges::count(kOwn, run.invocation->command->name) == 0)
            log_.add(run);
    }

    // A ? at the end of a line asks what can stand there; where lines are edited, the key does. The answer is
    // no step, so it goes where errors go.
    void refuse(const std::string &line, const std::string &text)
    {
        const size_t end = line.find_last_not_of(" \t\r");
        if (line[end] == '?' && end > 0) {
            std::fflush(stdout);
            std::fputs(helpAt(line.substr(0, end), &session_, terminalWidth()).c_str(), stderr);
            return;
        }
        complain(reading_.back()->place() + text);
        allGood_ = false;
    }

    // The file's commands come next, once the step that names it has been told.
    void source(const std::string &file)
    {
        constexpr size_t kDeepest = 16;
        if (reading_.size() > kDeepest)
            throw UsageError{fmt::format("{}: files name each other more than {} deep", file, kDeepest)};
        std::FILE *opened = std::filesystem::is_directory(file) ? nullptr : std::fopen(file.c_str(), "re");
        if (opened == nullptr)
            throw UsageError{file + ": cannot be read"};
        auto lines = std::make_unique<PlainLines>(opened, file, false);
        const int first = std::fgetc(opened);
        std::ungetc(first, opened);
        if (first == '{' || file.ends_with(".json"))
            device_ = loadDevice(file);
        else
            reading_.push_back(std::move(lines));
    }

    Session &session_;
    Report &report_;
    bool atTerminal_;
    std::vector<std::unique_ptr<LineSource>> reading_;
    std::optional<Device> device_;
    SessionLog log_;
    bool allGood_ = true;
};

} // namespace

bool runShell(Session &session, Report &report, const PageWriter &page,
              const std::optional<std::string> &commands, const std::optional<std::string> &device)
{
    const bool atTerminal = !commands && isatty(STDIN_FILENO) != 0;
    const bool good =
        Shell(session, report, page, atTerminal, device)
            .run(commands ? std::make_unique<GivenCommands>(*commands) : openLines(atTerminal, session));
    return good || atTerminal;
}

} // namespace zrbench
