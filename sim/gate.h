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

// An argument or a result: its bits and how a trace shows it.
struct Argument {
    enum class Kind {
        Nothing, // the result of a call that answers none
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

    template <class T> T *pointer() const { return reinterpret_cast<T *>(static_cast<uintptr_t>(bits)); }
};

// A call as the gate sees it.
struct Call {
    const char *name;
    unsigned depth; // 0: made by the library itself
    std::vector<Argument> args;
    std::string text = {}; // "name(arguments) = result", complete once the call has returned
    uint64_t result = 0;
    bool injected = false; // answered by a failure or a script, not by the stand-in

    uint32_t number(size_t i) const { return static_cast<uint32_t>(args.at(i).bits); }
    template <class T> T *pointer(size_t i) const { return args.at(i).template pointer<T>(); }
};

// Numbers in decimal up to 9999 and in hexadecimal above, outputs as "&value", records as their bytes.
std::string show(uint64_t number);
std::string show(const Argument &argument);

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
    void after(Call &call, const Argument &result);
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

template <class T> uint64_t address(T *pointer)
{
    return reinterpret_cast<uintptr_t>(pointer);
}

template <class T> Argument describe(const T &value)
{
    using Kind = Argument::Kind;
    if constexpr (std::is_same_v<T, Mac>)
        return {address(value.bytes), Kind::Address, 6};
    else if constexpr (std::is_same_v<T, const char *> || std::is_same_v<T, char *>)
        return {address(value), Kind::Text, 0};
    else if constexpr (std::is_same_v<T, uint32_t *> || std::is_same_v<T, uint16_t *>)
        return {address(value), Kind::Output, sizeof *value};
    else if constexpr (std::is_pointer_v<T>) {
        using Pointee = std::remove_pointer_t<T>;
        if constexpr (std::is_void_v<Pointee> || std::is_function_v<Pointee>)
            return {address(value), Kind::Pointer, 0};
        else
            return {address(value), Kind::Record, sizeof(Pointee)};
    } else
        return {static_cast<uint64_t>(value), Kind::Number, sizeof value};
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

    Call call{name, level.depth, {detail::describe(args)...}};
    const bool injected = gate().before(call);
    if constexpr (std::is_void_v<Result>) {
        if (!injected)
            body();
        gate().after(call, {});
    } else if constexpr (std::is_pointer_v<Result>) {
        Result result = injected ? nullptr : body();
        gate().after(call, {detail::address(result), Argument::Kind::Pointer});
        return result;
    } else {
        Result result = injected ? static_cast<Result>(call.result) : body();
        gate().after(call, detail::describe(result));
        return result;
    }
}

} // namespace zrsim
