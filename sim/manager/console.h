// Where the manager's print services end: a sink that a program or a test can take over.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <string>

namespace zrsim
{

struct Line {
    int kind; // ZRSIM_LINE_*
    uint32_t module;
    uint32_t status;
    std::string text;
};

class Console
{
public:
    using Sink = std::function<void(const Line &line)>;

    // An empty sink restores the default: failures and traces to stderr, command-line text to stdout.
    void onLine(Sink sink) { sink_ = std::move(sink); }
    void print(const Line &line) const;

    // Traces of levels up to `level` are on.
    void traceLevel(uint32_t level) { traceLevel_ = level; }
    uint32_t traceLevel() const { return traceLevel_; }

private:
    Sink sink_;
    uint32_t traceLevel_ = 0;
};

Console &console();

// The text of a print service's arguments; empty when it cannot be made. It is made before the gate, which
// shows it, and so must not throw.
std::string formatted(const char *format, va_list arguments) noexcept;

} // namespace zrsim
