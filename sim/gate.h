// The one gate that every platform call passes: it records, counts, and lets the n-th call of a name fail.
// While nobody watches, a call costs one test.
#pragma once

#include <algorithm>
#include <cstdint>
#include <exception>
#include <functional>
#include <initializer_list>
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

// An argument or a result: its bits and how a trace shows it.
struct Argument {
    enum class Kind {
        Nothing, // the result of a call that returns none
        Number,
        Text,    // a string's address
        Address, // of 6 bytes
        Output,  // the address of a number of `bytes` bytes
        Record,  // the address of `bytes` bytes
        Pointer, // an address with nothing known behind it
    };
    uint64_t bits = 0; // a number, or an address that is good only while the call lasts
    Kind kind = Kind::Nothing;
    size_t bytes = 0;

    Argument() = default;
    Argument(uint64_t value, Kind how, size_t size) : bits(value), kind(how), bytes(size) {}
    template <class T> Argument(const T &value);

    template <class T> T *pointer() const { return reinterpret_cast<T *>(static_cast<uintptr_t>(bits)); }
};

// A platform call as its shim states it: {__func__, {arguments}}.
struct Shim {
    const char *name;
    std::initializer_list<Argument> args;

    uint32_t number(size_t i) const { return static_cast<uint32_t>(args.begin()[i].bits); }
    bool anyNull() const
    {
        return std::ranges::any_of(
            args, [](const Argument &arg) { return arg.kind != Argument::Kind::Number && arg.bits == 0; });
    }
};

// A call as the gate sees it.
struct Call {
    const char *name;
    unsigned depth; // 0: made by the library itself
    std::vector<Argument> args;
    std::string text = {}; // "name(arguments) = result", complete once the call has returned
    uint64_t result = 0;
    bool injected = false; // the result of a failure or a script, not of the stand-in

    uint32_t number(size_t i) const { return static_cast<uint32_t>(args.at(i).bits); }
    template <class T> T *pointer(size_t i) const { return args.at(i).template pointer<T>(); }
};

// Numbers in decimal up to 9999 and in hexadecimal above, outputs as "&value", records as their bytes.
std::string show(uint64_t number);
std::string show(const Argument &argument);

class Gate
{
public:
    // Takes a call in the stand-in's place: returns true and sets `result`.
    using Script = std::function<bool(const Call &call, uint64_t &result)>;
    using Observer = std::function<void(const Call &call)>;

    bool on() const { return on_; }

    void observe(Observer observer);
    // Asked for every call, before the failures of `fail`. An empty script removes it.
    void intercept(Script script);
    // Runs in place of the calls of one name and returns their status.
    void script(const std::string &name, std::function<uint64_t(const Call &call)> answer);
    void fail(const std::string &name, unsigned nth, bool andAfter, uint32_t status);
    // Removes failures, scripts and the interceptor.
    void clearInjections();
    // Switches recording on without an observer.
    void count(bool on);
    unsigned calls(const std::string &name) const;
    unsigned calls() const;
    void reset();

    // Used by the shims.
    bool before(Call &call);
    void after(Call &call, const Argument &result);
    // Reports the exception being handled, which ended a call: one failure line.
    static void reportException(const char *name, const std::exception_ptr &thrown) noexcept;
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

template <class T> Argument::Argument(const T &value)
{
    auto address = [](const auto *pointer) {
        return static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pointer));
    };
    if constexpr (std::is_same_v<T, Mac>)
        *this = {address(value.bytes), Kind::Address, 6};
    else if constexpr (std::is_same_v<T, const char *> || std::is_same_v<T, char *>)
        *this = {address(value), Kind::Text, 0};
    else if constexpr (std::is_same_v<T, uint32_t *> || std::is_same_v<T, uint16_t *>)
        *this = {address(value), Kind::Output, sizeof *value};
    else if constexpr (std::is_pointer_v<T>) {
        using Pointee = std::remove_pointer_t<T>;
        if constexpr (std::is_void_v<Pointee> || std::is_function_v<Pointee>)
            *this = {address(value), Kind::Pointer, 0};
        else
            *this = {address(value), Kind::Record, sizeof(Pointee)};
    } else
        *this = {static_cast<uint64_t>(value), Kind::Number, sizeof value};
}

namespace detail
{

struct Depth {
    unsigned depth = gate().enter();
    Depth() = default;
    Depth(const Depth &) = delete;
    Depth &operator=(const Depth &) = delete;
    ~Depth() { gate().leave(); }
};

} // namespace detail

// What a call that an exception ended returns, where it returns a status.
constexpr uint32_t kCallFailed = 0xFFFFFFFF;

// Passes one call through the gate: `body` is what the stand-in does. An injected failure of a call that
// returns a pointer returns null. No exception leaves: the caller is libzrlsw.so, which has no unwind tables,
// so that an exception would end the process.
template <class Body> auto pass(const Shim &shim, Body &&body) -> decltype(body())
{
    using Result = decltype(body());
    try {
        detail::Depth level;
        if (!gate().on())
            return body();

        Call call{shim.name, level.depth, shim.args};
        const bool injected = gate().before(call);
        if constexpr (std::is_void_v<Result>) {
            if (!injected)
                body();
            gate().after(call, {});
        } else if constexpr (std::is_pointer_v<Result>) {
            Result result = injected ? nullptr : body();
            gate().after(call, static_cast<const void *>(result));
            return result;
        } else {
            Result result = injected ? static_cast<Result>(call.result) : body();
            gate().after(call, result);
            return result;
        }
    } catch (...) {
        Gate::reportException(shim.name, std::current_exception());
        if constexpr (std::is_pointer_v<Result>)
            return nullptr;
        else if constexpr (!std::is_void_v<Result>)
            return static_cast<Result>(kCallFailed);
    }
}

} // namespace zrsim
