#ifdef ZRBENCH_LIBEDIT

#include "tools/zrbench/line_editor.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "tools/zrbench/complete.h"
#include "tools/zrbench/output.h"

namespace zrbench
{

namespace
{

// Enter takes the hint away first; Ctrl-R first lets the blank be a character to search for.
struct Macro {
    const char *key;
    const char *keys;
};
constexpr Macro kMacros[] = {{"^J", "^]^_"}, {"^M", "^]^_"}, {"^R", "^^^\\"}};

std::string commonStart(const std::vector<std::string> &words)
{
    std::string start = words.front();
    for (const std::string &word : words)
        start.erase(std::ranges::mismatch(start, word).in1, start.end());
    return start;
}

} // namespace

LineEditor::LineEditor(const Session &session, std::string prompt)
    : session_(session), prompt_(std::move(prompt)), editor_(el_init("zrbench", stdin, stdout, stderr)),
      history_(history_init())
{
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(editor_, EL_SIGNAL, 1);
    el_set(editor_, EL_PROMPT, LineEditor::prompt);
    el_set(editor_, EL_RPROMPT, LineEditor::hint);
    el_set(editor_, EL_EDITOR, "emacs");
    HistEvent event;
    ::history(history_, &event, H_SETSIZE, 1000);
    ::history(history_, &event, H_SETUNIQUE, 1);
    el_set(editor_, EL_HIST, ::history, history_);
    if (const char *home = std::getenv("HOME")) {
        file_ = std::string(home) + "/.zrbench_history";
        ::history(history_, &event, H_LOAD, file_.c_str());
    }
    const struct {
        const wchar_t *keys[3];
        const wchar_t *name;
        unsigned char (*act)(EditLine *editor, int key); // null: one of the library's own
    } bindings[] = {
        {{L"^I"}, L"zr-complete", complete},
        {{L"?"}, L"zr-help", help},
        {{L" "}, L"zr-space", space},
        {{L"^]"}, L"zr-unhint", unhint},
        {{L"^_"}, L"ed-newline", nullptr},
        {{L"^C"}, L"zr-drop", drop},
        {{L"^Z"}, L"zr-suspend", suspend},
        {{L"^^"}, L"zr-search", search},
        {{L"^\\"}, L"em-inc-search-prev", nullptr},
        {{L"^W"}, L"ed-delete-prev-word", nullptr},
        {{L"\\e[1~", L"\\e[H", L"\\eOH"}, L"ed-move-to-beg", nullptr},
        {{L"\\e[4~", L"\\e[F", L"\\eOF"}, L"ed-move-to-end", nullptr},
        {{L"\\e[3~"}, L"ed-delete-next-char", nullptr},
        {{L"\\e[1;5C", L"\\e[5C", L"\\eOc"}, L"em-next-word", nullptr},
        {{L"\\e[1;5D", L"\\e[5D", L"\\eOd"}, L"ed-prev-word", nullptr},
    };
    for (const auto &row : bindings) {
        if (row.act != nullptr)
            el_wset(editor_, EL_ADDFN, row.name, L"zrbench", row.act);
        for (const wchar_t *key : row.keys)
            if (key != nullptr)
                el_wset(editor_, EL_BIND, key, row.name, nullptr);
    }
    for (const Macro &macro : kMacros)
        el_set(editor_, EL_BIND, "-s", macro.key, macro.keys, nullptr);
    // Ctrl-C and Ctrl-Z are keys like any other while a line is edited.
    el_set(editor_, EL_SETTY, "-d", "-isig", nullptr);
    el_source(editor_, nullptr);
}

LineEditor::~LineEditor()
{
    HistEvent event;
    if (!file_.empty())
        ::history(history_, &event, H_SAVE, file_.c_str());
    history_end(history_);
    for (const Macro &macro : kMacros) // el_end() would not free them
        el_set(editor_, EL_BIND, "-r", macro.key, nullptr);
    el_end(editor_);
}

std::optional<std::string> LineEditor::read()
{
    hinting_ = true;
    dropped_ = false;
    int size = 0;
    const char *text = el_gets(editor_, &size);
    if (dropped_ || text == nullptr || size <= 0) {
        print("{}\n", dropped_ ? "^C" : "");
        return dropped_ ? std::optional<std::string>("") : std::nullopt;
    }
    std::string line(text, static_cast<size_t>(size));
    line.erase(line.find_last_not_of("\r\n") + 1);
    HistEvent event;
    if (line.find_first_not_of(" \t") != std::string::npos)
        ::history(history_, &event, H_ENTER, line.c_str());
    return line;
}

LineEditor &LineEditor::of(EditLine *editor)
{
    void *self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return *static_cast<LineEditor *>(self);
}

char *LineEditor::prompt(EditLine *editor)
{
    return of(editor).prompt_.data();
}

std::string LineEditor::typed() const
{
    const LineInfo *line = el_line(editor_);
    return {line->buffer, line->cursor};
}

// At the right margin; cut to the room that the line leaves.
char *LineEditor::hint(EditLine *editor)
{
    LineEditor &self = of(editor);
    const LineInfo *line = el_line(editor);
    // The search for an old line stands on a line of its own below.
    const bool searching = std::find(line->buffer, line->lastchar, '\n') != line->lastchar;
    if (self.searching_ && !searching)
        el_set(editor, EL_BIND, " ", "zr-space", nullptr);
    self.searching_ = searching;
    const size_t used = self.prompt_.size() + static_cast<size_t>(line->lastchar - line->buffer) + 4;
    const size_t width = terminalWidth();
    self.hint_ = self.hinting_ && !searching && used < width ? hintAt(self.typed()) : "";
    if (self.hint_.size() + used > width && !self.hint_.empty())
        self.hint_ = width - used > 8 ? self.hint_.substr(0, width - used - 3) + "..." : "";
    return self.hint_.data();
}

unsigned char LineEditor::complete(EditLine *editor, int)
{
    LineEditor &self = of(editor);
    const std::string line = self.typed();
    const Completion found = completionAt(line, &self.session_);
    if (found.words.empty()) {
        if (const std::string next = hintAt(line); !next.empty())
            return help(editor, 0);
        return CC_REFRESH_BEEP;
    }
    const std::string start = commonStart(found.words);
    if (start.size() > found.begun || found.words.size() == 1) {
        el_deletestr(editor, static_cast<int>(found.begun));
        el_insertstr(editor, start.c_str());
        return CC_REFRESH;
    }
    print("\n{}", inColumns(found.words, terminalWidth()));
    return CC_REDISPLAY;
}

unsigned char LineEditor::help(EditLine *editor, int key)
{
    LineEditor &self = of(editor);
    const std::string line = self.typed();
    if (key == '?' && std::ranges::count(line, '"') % 2 != 0)
        return el_insertstr(editor, "?") == 0 ? CC_REFRESH : CC_ERROR;
    print("\n{}", helpAt(line, &self.session_, terminalWidth()));
    return CC_REDISPLAY;
}

// The hint is drawn anew with every word.
unsigned char LineEditor::space(EditLine *editor, int)
{
    return el_insertstr(editor, " ") == 0 ? CC_REFRESH : CC_ERROR;
}

// What has been typed stays on the screen without a hint.
unsigned char LineEditor::unhint(EditLine *editor, int)
{
    of(editor).hinting_ = false;
    return CC_REFRESH;
}

// A search ends at any key that does not insert itself.
unsigned char LineEditor::search(EditLine *editor, int)
{
    el_set(editor, EL_BIND, " ", "ed-insert", nullptr);
    return CC_NORM;
}

unsigned char LineEditor::drop(EditLine *editor, int)
{
    of(editor).dropped_ = true;
    return CC_EOF;
}

unsigned char LineEditor::suspend(EditLine *, int)
{
    std::raise(SIGTSTP);
    return CC_REFRESH;
}

} // namespace zrbench

#endif
