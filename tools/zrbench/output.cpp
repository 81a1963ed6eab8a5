#include "tools/zrbench/output.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

int keepOpen(std::FILE *file)
{
    return std::fflush(file);
}

std::FILE *opened(const std::string &path, std::FILE *standard)
{
    if (path == "-")
        return standard;
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    std::FILE *file = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
    if (file == nullptr)
        throw UsageError{fmt::format("cannot write {}: {}", path, std::strerror(errno))};
    return file;
}

} // namespace

Output::Output(const std::string &path, std::FILE *standard)
    : name_(path != "-"          ? path
            : standard == stdout ? "standard output"
                                 : "standard error"),
      file_(opened(path, standard), path == "-" ? keepOpen : std::fclose)
{
    fstat(fileno(file_.get()), &identity_);
}

bool Output::isFile(const struct stat &other) const
{
    return S_ISREG(identity_.st_mode) && identity_.st_dev == other.st_dev && identity_.st_ino == other.st_ino;
}

bool Output::sameAs(const Output &other) const
{
    return isFile(other.identity_);
}

bool Output::sameAs(const std::string &path) const
{
    struct stat other {
    };
    return stat(path.c_str(), &other) == 0 && isFile(other);
}

void Output::start()
{
    if (file_.get() != stdout && file_.get() != stderr && S_ISREG(identity_.st_mode) &&
        ftruncate(fileno(file_.get()), 0) != 0)
        keepFailure();
}

void Output::write(std::string_view text)
{
    if (kept_) {
        kept_->append(text);
        return;
    }
    if (std::fwrite(text.data(), 1, text.size(), file_.get()) != text.size())
        keepFailure();
}

void Output::check()
{
    if (std::fflush(file_.get()) != 0)
        keepFailure();
    if (error_ != 0)
        throw UsageError{fmt::format("cannot write {}: {}", name_, std::strerror(error_))};
}

void Output::keepFailure()
{
    error_ = error_ != 0 ? error_ : errno;
}

Output &standardOutput()
{
    static Output output("-");
    return output;
}

bool isTerminal()
{
    const char *terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

size_t terminalWidth(int stream)
{
    constexpr size_t kUsual = 80;
    winsize size{};
    if (isatty(stream) == 0)
        return 0;
    return ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : kUsual;
}

void complain(std::string_view text)
{
    constexpr size_t kHead = 400;
    constexpr size_t kTail = 200;
    std::fflush(stdout); // keeps the order of the two streams
    const std::string line = text.size() <= kHead + kTail ? std::string(text)
                                                          : fmt::format("{} ... {}", text.substr(0, kHead),
                                                                        text.substr(text.size() - kTail));
    std::fputs(folded(line, terminalWidth(STDERR_FILENO), 2).c_str(), stderr);
}

} // namespace zrbench
