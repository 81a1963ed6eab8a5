// The bench manager's commands. Every command is one row of a table: its words, its arguments with their
// types, a line of help and what it does. The device file, the shell, completion and help are all
// generated from the rows, so a new command is a new row and nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/op_tables.h"

namespace zrbench
{

// The twelve tables as the library filled them. A null slot is an operation that the library lacks.
struct Tables {
    ZrCommonOps *common;
    ZrPortOps *port;
    ZrMacOps *mac;
    ZrVlanOps *vlan;
    ZrQosOps *qos;
    ZrAclOps *acl;
    ZrHsecOps *hsec;
    ZrMcOps *mc;
    ZrStormctlOps *stormctl;
    ZrStpOps *stp;
    ZrTrunkOps *trunk;
    ZrFmeaOps *fmea;
};

// Thrown for anything the user got wrong: what was found and what was expected.
struct UsageError {
    std::string text;
};

enum class Type {
    Number, // 32 bits: decimal, 0x hexadecimal
    Unit,   // a number; named so that help and completion know it
    Port,   // a number
    Vlan,   // a number
    Mac,    // 00:11:22:33:44:55
    Ports,  // a list of ports: 1,2,5-7
    Word,   // one of `choices`, separated by |
    Text,   // the rest of the line
    Json,   // a JSON value: an object in a device file, text in {} in the shell
};

struct Argument {
    std::string_view name;
    Type type;
    std::string_view choices = {}; // of Word, as "on|off"
    bool optional = false;         // only the last ones
};

// The arguments of one invocation by name, checked against the row.
class Arguments
{
public:
    bool has(std::string_view name) const;
    uint32_t number(std::string_view name) const; // Number, Unit, Port, Vlan
    uint32_t number(std::string_view name, uint32_t otherwise) const;
    std::vector<uint32_t> ports(std::string_view name) const;
    std::vector<uint8_t> mac(std::string_view name) const; // 6 bytes
    std::string text(std::string_view name) const;         // Word, Text
    const nlohmann::json &json(std::string_view name) const;

    void set(std::string_view name, nlohmann::json value);

private:
    nlohmann::json values_ = nlohmann::json::object();
};

// What a command answers.
struct Outcome {
    bool hasStatus = true; // false for listings and for answers that are no status
    uint32_t status = 0;
    // Outputs by name, shown as "name=value" and comparable in a device file's "out".
    std::vector<std::pair<std::string, nlohmann::json>> outputs;
    // A table or text shown under the step as it is.
    std::string text;

    static Outcome of(uint32_t status) { return {true, status, {}, {}}; }
    static Outcome shown(std::string text) { return {false, 0, {}, std::move(text)}; }
    // Adds an output; outputs are added only when the status says that they were written.
    Outcome &out(std::string name, nlohmann::json value)
    {
        outputs.emplace_back(std::move(name), std::move(value));
        return *this;
    }
};

// What a command works with.
class Bench
{
public:
    virtual ~Bench() = default;
    virtual const Tables &tables() const = 0;
    // An exported operation without a slot, by name; throws UsageError when the library lacks it.
    virtual void *operation(std::string_view name) const = 0;
    // Runs one line of the board's command interpreter through the common table; answers what it printed.
    virtual std::string board(uint32_t unit, const std::string &line) = 0;
    // Gives an answer text back to the manager's memory (LSWM_MemFree).
    virtual void release(void *block) = 0;
};

struct Command {
    std::string_view name; // one or two words: "vlan create"
    std::vector<Argument> arguments;
    std::string_view help;
    std::string_view slot; // "VLAN 1", or the operation's name when it has none, or empty
    std::function<Outcome(Bench &bench, const Arguments &arguments)> run;
};

// One list a file; commands.cpp joins them.
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

// A text table: a head and rows, columns padded to their widest cell.
class TextTable
{
public:
    explicit TextTable(std::vector<std::string> head);
    void row(std::vector<std::string> cells);
    std::string text() const;

private:
    std::vector<std::vector<std::string>> rows_;
};

std::string showMac(const uint8_t *mac);
std::string showPorts(uint32_t mask); // "0-4,15", "-" for none

} // namespace zrbench
