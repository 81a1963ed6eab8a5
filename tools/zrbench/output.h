// Standard output, or a file that the user names. The first failed write is remembered, and thrown when the
// output is checked, so that lost output never passes for success.
#pragma once

#include <cstdio>
#include <fmt/format.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zrbench
{

class Output
{
public:
    // "-" is the standard stream given. A file keeps its contents until start(). Throws UsageError.
    explicit Output(const std::string &path, std::FILE *standard = stdout);

    // Whether this writes the same regular file as the other, or the one of that path.
    bool sameAs(const Output &other) const;
    bool sameAs(const std::string &path) const;

    // Empties the file.
    void start();
    // Throws nothing: platform calls are traced from within the library.
    void write(std::string_view text);
    // What is written from here on is kept, until it is taken.
    void keep() { kept_.emplace(); }
    std::string kept() { return std::exchange(kept_, {}).value_or(""); }
    // Throws UsageError when anything was not written.
    void check();

private:
    void keepFailure();
    bool isFile(const struct stat &other) const;

    std::string name_;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file_;
    struct stat identity_ {
    };
    std::optional<std::string> kept_;
    int error_ = 0;
};

Output &standardOutput();

template <class... T> void print(fmt::format_string<T...> format, T &&...values)
{
    standardOutput().write(fmt::format(format, std::forward<T>(values)...));
}

// Whether standard output is a terminal that can do more than print lines.
bool isTerminal();
// The columns of the terminal that standard output, or another stream, is; 0 when it is none.
size_t terminalWidth(int stream = STDOUT_FILENO);

// Prints one line to standard error; a very long one loses its middle. A failure is ignored: there
// is nowhere left to report it.
void complain(std::string_view text);

} // namespace zrbench
