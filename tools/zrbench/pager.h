// Long output a page at a time.
#pragma once

namespace zrbench
{

// Keeps what is printed while it lives; then shows it through $PAGER (less) when standard output is a terminal
// that it does not fit on, else prints it. Ctrl-C ends the pager's work, not the program's.
class Pager
{
public:
    explicit Pager(bool wanted);
    Pager(const Pager &) = delete;
    Pager &operator=(const Pager &) = delete;
    ~Pager();

private:
    bool keeping_;
};

} // namespace zrbench
