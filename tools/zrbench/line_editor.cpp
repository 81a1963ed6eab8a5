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
        const char *keys[3];
        const char *name;
        unsigned char (*act)(EditLine *editor, int key); // null: one of the library's own
    } bindings[] = {
        {{"^I"}, "zr-complete", complete},
        {{"?"}, "zr-help", help},
        {{" "}, "zr-space", space},
        {{"^]"}, "zr-unhint", unhint},
        {{"^_"}, "ed-newline", nullptr},
        {{"^C"}, "zr-drop", drop},
        {{"^Z"}, "zr-suspend", suspend},
        {{"^^"}, "zr-search", search},
        {{"^\\"}, "em-inc-search-prev", nullptr},
        {{"^W"}, "ed-delete-prev-word", nullptr},
        {{"\\e[1~", "\\e[H", "\\eOH"}, "ed-move-to-beg", nullptr},
        {{"\\e[4~", "\\e[F", "\\eOF"}, "ed-move-to-end", nullptr},
        {{"\\e[3~"}, "ed-delete-next-char", nullptr},
        {{"\\e[1;5C", "\\e[5C", "\\eOc"}, "em-next-word", nullptr},
        {{"\\e[1;5D", "\\e[5D", "\\eOd"}, "ed-prev-word", nullptr},
    };
    for (const auto &row : bindings) {
        if (row.act != nullptr)
            el_set(editor_, EL_ADDFN, row.name, "zrbench", row.act);
        for (const char *key : row.keys)
            if (key != nullptr)
                el_set(editor_, EL_BIND, key, row.name, nullptr);
    }
    for (const char *enter : {"^J", "^M"})
        el_set(editor_, EL_BIND, "-s", enter, "^]^_", nullptr);
    el_set(editor_, EL_BIND, "-s", "^R", "^^^\\", nullptr);
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
