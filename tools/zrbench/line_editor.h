// A line edited at a terminal: completion with Tab, help with ?, a hint of what comes next, history.
#pragma once

#include <histedit.h>
#include <optional>
#include <string>

namespace zrbench
{

class Session;

class LineEditor
{
public:
    LineEditor(const Session &session, std::string prompt);
    LineEditor(const LineEditor &) = delete;
    LineEditor &operator=(const LineEditor &) = delete;
    ~LineEditor();

    // A line, empty after Ctrl-C; nothing at the end of the input.
    std::optional<std::string> read();

private:
    static LineEditor &of(EditLine *editor);
    static char *prompt(EditLine *editor);
    static char *hint(EditLine *editor);
    static unsigned char complete(EditLine *editor, int key);
    static unsigned char help(EditLine *editor, int key);
    static unsigned char space(EditLine *editor, int key);
    static unsigned char unhint(EditLine *editor, int key);
    static unsigned char search(EditLine *editor, int key);
    static unsigned char drop(EditLine *editor, int key);
    static unsigned char suspend(EditLine *editor, int key);

    std::string typed() const; // to the cursor

    const Session &session_;
    std::string prompt_;
    std::string file_; // of the history; empty for none
    EditLine *editor_;
    History *history_;
    std::string hint_;
    bool hinting_ = true;
    bool searching_ = false;
    bool dropped_ = false;
};

} // namespace zrbench
