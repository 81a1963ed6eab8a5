// The one gate that every platform call passes: it records, counts, and lets the n-th call of a name fail.
// While nobody watches, a call costs one test.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace zrsim
{

// A MAC address argument: 6 bytes.
struct Mac {
    const uint8_t *bytes;
};

// A call as the gate sees it. Pointers in `args` are good only while the call lasts.
struct Call {
    const char *name;
    unsigned depth;             // 0: made by the library itself
    std::vector<uint64_t> args; // numbers, or addresses
    std::string text;           // "name(arguments) = result", complete once the call has returned
    uint64_t result = 0;
    bool injected = false; // answered by a failure or a script, not by the stand-in

    uint32_t number(size_t i) const { return static_cast<uint32_t>(args.at(i)); }
    template <class T> T *pointer(size_t i) const
    {
        return reinterpret_cast<T *>(static_cast<uintptr_t>(args.at(i)));
    }
};

// Shows an argument: numbers in decimal up to 9999 and in hexadecimal above, outputs as "&value",
// records as their bytes.
std::string show(uint64_t number);
std::string show(const char *text);
std::string show(Mac mac);
std::string showOutput(const void *value, size_t bytes);
std::string showRecord(const void *record, size_t bytes);

class Gate
{
public:
    // Answers a call in the stand-in's place: return true and set `result`.
    using Script = std::function<bool(const Call &call, uint64_t &result)>;
    using Observer = std::function<void(const Call &call)>;

    bool on() const { return on_; }

    void observe(Observer observer);
    // Asked for every call, before the failures of `fail`. An empty script takes it away.
    void intercept(Script script);
    // Answers the calls of one name; the result is the status.
    void script(const std::string &name, std::function<uint64_t(const Call &call)> answer);
    void fail(const std::string &name, unsigned nth, bool andAfter, uint32_t status);
    void failNone();
    // Switches recording on without an observer.
    void count(bool on);
    unsigned calls(const std::string &name) const;
    unsigned calls() const;
    void reset();

    // Used by the shims.
    bool before(Call &call);
    // `result` is empty for a call without one.
    void after(Call &call, const std::vector<std::string> &arguments, const std::string &result);
    unsigned enter() { return depth_++; }
    void leave() { --depth_; }

private:
    struct Failure {
        std::string name;
        unsigned nth;
        bool andAfter;
        uint32_t status;
    };
    void update();

    bool on_ = false;
    bool counting_ = false;
    unsigned depth_ = 0;
    unsigned total_ = 0;
    std::map<std::string, unsigned, std::less<>> counts_;
    std::vector<Failure> failures_;
    std::map<std::string, std::function<uint64_t(const Call &)>, std::less<>> scripts_;
    Script interceptor_;
    Observer observer_;
};

Gate &gate();

namespace detail
{

template <class T> uint64_t bits(const T &value)
{
    if constexpr (std::is_same_v<T, Mac>)
        return reinterpret_cast<uintptr_t>(value.bytes);
    else if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<uintptr_t>(value);
    else
        return static_cast<uint64_t>(value);
}

template <class T> std::string showArgument(const T &value)
{
    if constexpr (std::is_same_v<T, Mac>)
        return show(value);
    else if constexpr (std::is_same_v<T, const char *> || std::is_same_v<T, char *>)
        return show(static_cast<const char *>(value));
    else if constexpr (std::is_same_v<T, uint32_t *> || std::is_same_v<T, uint16_t *>)
        return showOutput(value, sizeof *value);
    else if constexpr (std::is_pointer_v<T>) {
        using Pointee = std::remove_pointer_t<T>;
        if constexpr (std::is_void_v<Pointee> || std::is_function_v<Pointee>)
            return value == nullptr ? "null" : "ptr";
        else
            return showRecord(value, sizeof(Pointee));
    } else
        return show(static_cast<uint64_t>(value));
}

struct Depth {
    unsigned depth = gate().enter();
    Depth() = default;
    Depth(const Depth &) = delete;
    Depth &operator=(const Depth &) = delete;
    ~Depth() { gate().leave(); }
};

} // namespace detail

// Passes one call through the gate: `body` is what the stand-in does. An injected failure of a call that
// answers with a pointer answers null.
template <class Body, class... Args>
auto pass(const char *name, Body &&body, const Args &...args) -> decltype(body())
{
    using Result = decltype(body());
    detail::Depth level;
    if (!gate().on())
        return body();

    Call call{name, level.depth, {detail::bits(args)...}, {}};
    const bool injected = gate().before(call);
    auto finish = [&](const std::string &result) {
        gate().after(call, {detail::showArgument(args)...}, result);
    };
    if constexpr (std::is_void_v<Result>) {
        if (!injected)
            body();
        finish("");
    } else if constexpr (std::is_pointer_v<Result>) {
        Result result = injected ? nullptr : body();
        call.result = detail::bits(result);
        finish(result == nullptr ? "null" : "ptr");
        return result;
    } else {
        Result result = injected ? static_cast<Result>(call.result) : body();
        call.result = static_cast<uint64_t>(result);
        finish(show(call.result));
        return result;
    }
}

} // namespace zrsim
