#include "tools/zrbench/pager.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/zrbench/output.h"

namespace zrbench
{

namespace
{

using SignalAction = struct sigaction;

// Sets what a signal does while it lives.
class Handling
{
public:
    Handling(int signal, void (*handler)(int)) : signal_(signal)
    {
        SignalAction action{};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        sigaction(signal_, &action, &before_);
    }
    Handling(const Handling &) = delete;
    Handling &operator=(const Handling &) = delete;
    ~Handling() { sigaction(signal_, &before_, nullptr); }

private:
    int signal_;
    SignalAction before_{};
};

// Returns whether the pager was there.
bool page(const std::string &pager, const std::string &text)
{
    // A handler, unlike SIG_IGN, is not inherited by the pager.
    const Handling interrupt(SIGINT, [](int) {});
    std::FILE *pipe = popen(("LESS=${LESS-FRX} " + pager).c_str(), "we");
    if (pipe == nullptr)
        return false;
    const Handling broken(SIGPIPE, SIG_IGN); // the rest of what the reader has left is not wanted
    std::fwrite(text.data(), 1, text.size(), pipe);
    constexpr int kNotFound = 127;
    const int status = pclose(pipe);
    return !WIFEXITED(status) || WEXITSTATUS(status) != kNotFound;
}

} // namespace

Pager::Pager(bool wanted) : keeping_(wanted && isTerminal())
{
    if (keeping_)
        standardOutput().keep();
}

Pager::~Pager()
{
    if (!keeping_)
        return;
    const std::string text = standardOutput().kept();
    constexpr int kUsualRows = 24;
    winsize size{};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row != 0;
    const char *chosen = std::getenv("PAGER");
    const std::string pager = chosen == nullptr ? "less" : chosen;
    const bool fits = std::ranges::count(text, '\n') < (known ? size.ws_row : kUsualRows);
    std::fflush(stdout);
    if (fits || pager.empty() || !page(pager, text))
        print("{}", text);
}

} // namespace zrbench
