// The bench manager's commands. Every command is one row of a table: its words, its arguments with their
// types, a line of help and what it does. The device file, the shell, completion and help are all
// generated from the rows, so a new command is a new row and nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zrbench
{

class Session;

// Thrown for anything the user got wrong: what was found and what was expected.
struct UsageError {
    std::string text;
};

// What is wrong with one argument, or with a place within it: "info/ports".
struct ArgumentError : UsageError {
    std::string argument;
};

enum class Type {
    Number, // 32 bits: decimal, 0x hexadecimal
    Mac,    // 00:11:22:33:44:55
    Ports,  // a list of ports: 1,2,5-7
    Word,   // one of `choices`, separated by |; as a number its place among them, from 0. Any without choices
    Text,   // the rest of the line
    Json,   // a JSON value: an object in a device file, text in {} in the shell
    File,   // the path of a file; in "" when it has blanks
    Call,   // failures of a platform call: NAME[@N[+]]=STATUS
    Line,   // the rest of the line: another command
};

struct Argument {
    std::string_view name;
    Type type = Type::Number;
    // Of Word, as "off|on". Of Number, names for 0, 1 and so on, or for other numbers: "icmp=1|tcp=6". Of Json
    // and Text, the keys and words that they may hold.
    std::string_view choices = {};
    bool optional = false;      // only the last ones
    uint32_t otherwise = 0;     // a number that is left out
    uint32_t most = UINT32_MAX; // the largest number
    // Throws UsageError for a value of the right type that the command cannot take.
    void (*check)(const nlohmann::json &value) = nullptr;
    std::string_view meaning = {}; // what it stands for, where its name and type do not say it
};

constexpr Argument kUnit{.name = "unit", .meaning = "a chip, 0 to 2"};
// For operations that take 8 bits.
constexpr Argument kByteUnit{.name = "unit", .most = UINT8_MAX, .meaning = kUnit.meaning};
constexpr Argument kPort{.name = "port", .meaning = "the manager's number of a port"};
constexpr Argument kVlan{.name = "vlan", .meaning = "a VLAN, 1 to 4094"};
constexpr Argument kOnOff{"enable", Type::Word, "off|on"};

// The arguments of one invocation by name, each checked against its type.
class Arguments
{
public:
    Arguments() = default;
    explicit Arguments(std::span<const Argument> declared) : declared_(declared) {}

    bool has(std::string_view name) const;
    uint32_t number(std::string_view name) const; // Number, Word
    std::vector<uint32_t> ports(std::string_view name) const;
    std::vector<uint8_t> mac(std::string_view name) const; // 6 bytes
    std::string text(std::string_view name) const;         // Word, Text; empty when left out
    const nlohmann::json &json(std::string_view name) const;

    void set(std::string_view name, nlohmann::json value);

private:
    const Argument &declared(std::string_view name) const;

    std::span<const Argument> declared_;
    nlohmann::json values_ = nlohmann::json::object();
};

// A table: a head and rows of texts, numbers and port sets. "-" is a cell without a value.
class TextTable
{
public:
    explicit TextTable(std::vector<std::string> head) : head_(std::move(head)) {}
    void row(std::vector<nlohmann::json> cells) { rows_.push_back(std::move(cells)); }
    // Columns padded to their widest cell; with a `width`, wide cells are folded to stay within it.
    std::string text(size_t width = 0) const;
    // A list of objects; "CHIP IDS" names the member "chipIds".
    nlohmann::json rows() const;

private:
    std::vector<std::string> head_;
    std::vector<std::vector<nlohmann::json>> rows_;
};

// What a command returns.
struct Outcome {
    bool hasStatus = true; // false for listings and for results that are no status
    uint32_t status = 0;
    // Outputs by name, shown as "name=value" and comparable in a device file's "out".
    std::vector<std::pair<std::string, nlohmann::json>> outputs = {};
    // A table or text shown under the step as it is.
    std::string text = {};
    // The table's rows for programs; null without a table.
    nlohmann::json rows = {};
    // The table that `text` starts with, for a terminal that is narrower.
    std::optional<TextTable> table = {};
    // The status that the command itself says to expect, in place of 0 or of what the device file says.
    std::optional<uint32_t> expected = {};

    static Outcome of(uint32_t status) { return {true, status}; }
    static Outcome shown(std::string text) { return {.hasStatus = false, .text = std::move(text)}; }
    // `text` as a terminal of that width shows it.
    std::string textWithin(size_t width) const
    {
        return table && width != 0 ? table->text(width) + text.substr(table->text().size()) : text;
    }
    // A table, and text below it.
    static Outcome shown(const TextTable &table, const std::string &below = {})
    {
        return {.hasStatus = false, .text = table.text() + below, .rows = table.rows(), .table = table};
    }
    // Adds an output, unless the status says that it was not written.
    Outcome &out(std::string name, nlohmann::json value)
    {
        if (status == 0)
            outputs.emplace_back(std::move(name), std::move(value));
        return *this;
    }
};

struct Command {
    std::string_view name; // one or two words: "vlan create"
    std::vector<Argument> arguments;
    std::string_view help;
    std::string slot; // "VLAN 1", or the operation's name when it has none, or empty
    std::function<Outcome(Session &session, const Arguments &arguments)> run;
};

// One list a file; commands.cpp joins them.
std::span<const Command> sessionCommands();
std::span<const Command> commonCommands();
std::span<const Command> boardCommands();
std::span<const Command> portCommands();
std::span<const Command> portDiagnosticsCommands();
std::span<const Command> macCommands();
std::span<const Command> stpCommands();
std::span<const Command> vlanCommands();
std::span<const Command> trunkCommands();
std::span<const Command> aclCommands();
std::span<const Command> qosCommands();
std::span<const Command> meterCommands();
std::span<const Command> statCommands();
std::span<const Command> frameCommands();
std::span<const Command> showCommands();

// The columns that a line takes on a terminal, colours among it.
size_t columnsOf(std::string_view line);
// Lines of at most `width` columns, broken at blanks, those after the first indented. 0: as it is.
std::string folded(std::string_view line, size_t width, size_t indent);
std::string foldedLines(std::string_view text, size_t width, size_t indent);

std::string showMac(const uint8_t *mac);
nlohmann::json portList(uint32_t mask); // [0, 1, 2, 3, 4, 15], shown as "0-4,15"

} // namespace zrbench
