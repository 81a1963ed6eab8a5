#include "sim/gate.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>

#include "sim/manager/console.h"
#include "sim/zrsim.h"

namespace zrsim
{

std::string show(uint64_t number)
{
    return number <= 9999 ? fmt::format("{}", number) : fmt::format("{:#x}", number);
}

namespace
{

std::string showText(const char *text)
{
    std::string shown = "\"";
    for (const char *c = text; *c != '\0'; ++c) {
        if (*c == '\r')
            shown += "\\r";
        else if (*c == '\n')
            shown += "\\n";
        else
            shown += *c;
    }
    return shown + "\"";
}

std::string showAddress(const uint8_t *b)
{
    return fmt::format("{:02x}:{:02x}:{:02x}:{:02x}:{:02x}:{:02x}", b[0], b[1], b[2], b[3], b[4], b[5]);
}

std::string showOutput(const void *value, size_t bytes)
{
    uint64_t number = 0;
    std::memcpy(&number, value, bytes);
    return "&" + show(number);
}

// Trailing zero bytes are left out: most of a record is reserved.
std::string showRecord(const uint8_t *b, size_t bytes)
{
    size_t used = bytes;
    while (used > 0 && b[used - 1] == 0)
        --used;
    std::string shown = fmt::format("{}:{{", bytes);
    for (size_t i = 0; i < used; ++i)
        shown += fmt::format("{:02x}", b[i]);
    return shown + "}";
}

} // namespace

std::string show(const Argument &argument)
{
    using Kind = Argument::Kind;
    if (argument.kind == Kind::Number)
        return show(argument.bits);
    if (argument.bits == 0)
        return "null";
    switch (argument.kind) {
    case Kind::Text:
        return showText(argument.pointer<const char>());
    case Kind::Address:
        return showAddress(argument.pointer<const uint8_t>());
    case Kind::Output:
        return showOutput(argument.pointer<const void>(), argument.bytes);
    case Kind::Record:
        return showRecord(argument.pointer<const uint8_t>(), argument.bytes);
    default:
        return "ptr";
    }
}

Gate &gate()
{
    static Gate instance;
    return instance;
}

void Gate::update()
{
    on_ = counting_ || observer_ || interceptor_ || !scripts_.empty() || !failures_.empty();
}

void Gate::observe(Observer observer)
{
    observer_ = std::move(observer);
    update();
}

void Gate::intercept(Script script)
{
    interceptor_ = std::move(script);
    update();
}

void Gate::script(const std::string &name, std::function<uint64_t(const Call &call)> answer)
{
    scripts_[name] = std::move(answer);
    update();
}

void Gate::fail(const std::string &name, unsigned nth, bool andAfter, uint32_t status)
{
    failures_.push_back({name, nth, andAfter, status});
    update();
}

void Gate::clearInjections()
{
    failures_.clear();
    scripts_.clear();
    interceptor_ = nullptr;
    update();
}

void Gate::count(bool on)
{
    counting_ = on;
    update();
}

unsigned Gate::calls(const std::string &name) const
{
    auto found = counts_.find(name);
    return found == counts_.end() ? 0 : found->second;
}

unsigned Gate::calls() const
{
    return total_;
}

void Gate::reset()
{
    clearInjections();
    observer_ = nullptr;
    counting_ = false;
    counts_.clear();
    total_ = 0;
    update();
}

bool Gate::before(Call &call)
{
    ++total_;
    unsigned nth = ++counts_[call.name];
    if (interceptor_ && interceptor_(call, call.result))
        return call.injected = true;
    if (auto found = scripts_.find(std::string_view(call.name)); found != scripts_.end()) {
        call.result = found->second(call);
        return call.injected = true;
    }
    for (const Failure &failure : failures_) {
        if (failure.name != call.name)
            continue;
        if (failure.nth == 0 || nth == failure.nth || (failure.andAfter && nth > failure.nth)) {
            call.result = failure.status;
            return call.injected = true;
        }
    }
    return false;
}

void Gate::reportException(const char *name, const std::exception_ptr &thrown) noexcept
{
    std::string why = "unknown exception";
    try {
        std::rethrow_exception(thrown);
    } catch (const std::exception &error) {
        why = error.what();
    } catch (...) {
    }
    // The exception may have come from the sink of the lines itself.
    try {
        console().print(
            {ZRSIM_LINE_FAIL, 0, kCallFailed, fmt::format("{}: the stand-in failed: {}", name, why)});
    } catch (...) {
        std::fprintf(stderr, "%s: the stand-in failed: %s\n", name, why.c_str());
    }
}

void Gate::after(Call &call, const Argument &result)
{
    if (!observer_)
        return;
    call.result = result.bits;
    call.text = fmt::format("{}(", call.name);
    for (const Argument &argument : call.args) {
        if (&argument != &call.args.front())
            call.text += ", ";
        call.text += show(argument);
    }
    call.text += ")";
    if (result.kind != Argument::Kind::Nothing)
        call.text += " = " + show(result);
    observer_(call);
}

} // namespace zrsim
