// The failure sweep: every exported operation is played with every platform call that it makes failing in
// turn, and with every argument out of bounds in turn. What comes of it is compared with transcript/*.txt,
// the statement of the library's failure behaviour; transcript/README.md tells how to read it.
//
// A row names an operation and its arguments:
//
//     SWEEP(HAL_VLAN_GetPortPvidZr, unit, port(2), out)
//
// `unit`, `port` and `id` are numbers with hostile values, `out` is memory to write, `in` memory to read;
// a plain number goes in as it is.
#pragma once

#include <array>
#include <cstring>
#include <functional>
#include <list>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tests/kit/device.h"

namespace zrtest
{

// A number with a name and the values that must not hurt.
struct Number {
    std::string label;
    std::string shown;
    uint64_t value;
    std::vector<uint64_t> hostile;
};

inline Number onUnit(uint32_t number)
{
    return {"unit", std::to_string(number), number, {3, 4, 255, 256, 0x80000000, 0xFFFFFFFF}};
}
inline const Number unit = onUnit(1);

inline Number port(uint32_t number)
{
    return {"port", std::to_string(number), number, {32, 128, 0x80000000, 0xFFFFFFFF}};
}

// An identifier or an index of a table of `count` entries.
inline Number id(const char *label, uint64_t value, uint64_t count)
{
    return {
        label, std::to_string(value) + " of " + std::to_string(count), value, {count, 0x80000000, 0xFFFFFFFF}};
}

// A number of which few values mean something: the named ones do not.
inline Number of(const char *label, uint64_t value, std::vector<uint64_t> unknown)
{
    return {label, std::to_string(value), value, std::move(unknown)};
}

// Memory for what the operation's pointer points to, or an array of it.
struct Out {
    size_t count = 1;
};
inline constexpr Out out;

// Memory that the operation reads: a copy for every run.
template <class T> struct In {
    std::vector<T> values;
    std::string label = "in";
};
template <class T> In<T> in(const T &value, const char *label = "in")
{
    return {{value}, label};
}
template <class T, size_t N> In<T> in(const T (&values)[N])
{
    return {{std::begin(values), std::end(values)}};
}

// One run of an operation: which argument is replaced by which value, and the memory behind its pointers.
class Run
{
public:
    static constexpr size_t kNone = SIZE_MAX;
    explicit Run(size_t varied = kNone, uint64_t value = 0) : varied_(varied), value_(value) {}

    // The value of the next argument, of type P.
    template <class P> P argument(const Number &number)
    {
        return static_cast<P>(replaced() ? value_ : number.value);
    }
    template <class P> P argument(Out memory) { return block<P>(memory.count * sizeof(*P{}), nullptr); }
    template <class P, class T> P argument(const In<T> &memory)
    {
        static_assert(std::is_same_v<std::remove_cv_t<std::remove_pointer_t<P>>, T>);
        return block<P>(memory.values.size() * sizeof(T), memory.values.data());
    }
    // What an area builds itself.
    template <class P, class T>
    requires requires(const T &made, Run &run) { made.make(run); }
    P argument(const T &made) { return replaced() ? nullptr : made.make(*this); }
    // A text, a function, a plain number.
    template <class P, class T>
    requires std::is_pointer_v<T> || std::is_integral_v<T> P argument(T value)
    {
        return replaced() ? P{} : static_cast<P>(value);
    }

    // To be done when the operation has returned.
    void finally(std::function<void()> work) { finally_.push_back(std::move(work)); }
    void finish();

    // Memory that is not as it was, as "out1 = value", "out1 written" or "out1 zeroed".
    Texts written(const std::vector<std::string> &labels) const;

private:
    struct Block {
        size_t argument; // whose it is
        std::vector<uint8_t> before;
        std::vector<uint8_t> bytes;
    };
    bool replaced() { return next_++ == varied_; }
    template <class P> P block(size_t size, const void *bytes)
    {
        return replaced() ? nullptr : reinterpret_cast<P>(add(size, bytes));
    }
    uint8_t *add(size_t size, const void *bytes);

    size_t next_ = 0;
    size_t varied_;
    uint64_t value_;
    std::list<Block> blocks_;
    std::vector<std::function<void()>> finally_;
};

// How an answer reads: a number, "record" or "null", a text, or nothing.
std::string answerText(uint32_t status);
std::string answerText(char *text); // and frees it
std::string answerText(const void *record);

struct SweepArgument {
    std::string label;
    std::string shown; // in the heading: the label and its value
    std::vector<uint64_t> hostile;
    bool pointer = false; // null is its hostile value
};

class Sweep
{
public:
    // Half of the work stands after a failure, with so many blocks: no second run.
    Sweep once(unsigned blocks) &&
    {
        again = false;
        keeps = blocks;
        return std::move(*this);
    }

    std::string operation; // the exported name
    std::vector<SweepArgument> arguments;
    std::function<std::string(Run &)> run;
    std::function<void()> prepare = {};
    bool again = true;
    unsigned keeps = 0;
    std::string file = {};

    std::string heading() const;
};

// `limit` is the argument's highest value.
SweepArgument described(const Number &number, uint64_t limit);
inline SweepArgument described(Out, uint64_t)
{
    return {"out", "out", {0}, true};
}
template <class T> SweepArgument described(const In<T> &memory, uint64_t)
{
    return {memory.label, memory.label, {0}, true};
}
inline SweepArgument described(const char *text, uint64_t)
{
    return {"text", "\"" + std::string(text) + "\"", {0}, true};
}
inline SweepArgument described(void (*)(), uint64_t)
{
    return {"function", "function", {0}, true};
}
template <class T>
requires requires(const T &made, Run &run)
{
    made.make(run);
}
SweepArgument described(const T &made, uint64_t)
{
    return {made.label, made.label, {0}, true};
}
template <class T>
requires std::is_integral_v<T> SweepArgument described(T value, uint64_t)
{
    return {"", std::to_string(value), {}};
}

// Numbers arguments of the same label.
void nameApart(std::vector<SweepArgument> &arguments);

template <class R, class... P, class... D> Sweep sweep(const char *name, R (*)(P...), D... given)
{
    static_assert(sizeof...(P) == sizeof...(D), "one descriptor for every argument");
    Sweep row;
    row.operation = name;
    row.arguments = {described(given, sizeof(P) == 1 ? 0xFF : 0xFFFFFFFF)...};
    nameApart(row.arguments);
    row.run = [name, given...](Run &run) -> std::string {
        const std::tuple<P...> arguments{run.argument<P>(given)...};
        R (*called)(P...) = operation<R(P...)>(name);
        if constexpr (std::is_void_v<R>) {
            std::apply(called, arguments);
            return "";
        } else
            return answerText(std::apply(called, arguments));
    };
    return row;
}
// An operation of the module and its twin of the chip.
#define SWEEP_BOTH(name, twin, ...) SWEEP(name, __VA_ARGS__), SWEEP(twin, __VA_ARGS__)
#define SWEEP(name, ...)                                                                                       \
    ::zrtest::sweep(#name, static_cast<decltype(&name)>(nullptr) __VA_OPT__(, ) __VA_ARGS__)

// Adds rows to transcript/`file`.txt; called from static initialisers. `prepare` brings a running device to
// where the operations can be run; without it they are played as well.
bool addSweeps(const char *file, std::function<void()> prepare, std::vector<Sweep> rows);
inline bool addSweeps(const char *file, std::vector<Sweep> rows)
{
    return addSweeps(file, {}, std::move(rows));
}

} // namespace zrtest
