#include <fmt/format.h>

#include <sstream>

#include "tools/zrbench/command.h"
#include "tools/zrbench/qos_commands.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

Outcome measured(Bench &bench, const Arguments &a, const std::string &line)
{
    const std::string answer = bench.board(a.number("unit"), line);
    Outcome outcome = Outcome::shown("");
    std::istringstream words(answer);
    for (std::string word; words >> word;) {
        const size_t equals = word.find('=');
        if (equals == std::string::npos)
            continue;
        if (const auto number = parseNumber(word.substr(equals + 1)))
            outcome.out(word.substr(0, equals), *number);
    }
    if (outcome.outputs.empty())
        throw UsageError{"the board answers: " + answer.substr(0, answer.find('\n'))};
    return outcome;
}

namespace
{

constexpr Argument kUnit{"unit", Type::Unit};
constexpr Argument kPort{"port", Type::Port};

Outcome shownByBoard(Bench &bench, const Arguments &a, const std::string &line)
{
    return Outcome::shown(bench.board(a.number("unit"), line));
}

const Command kCommands[] = {
    {"qos init",
     {kUnit},
     "sets queues, priority maps and weights to their start-up state",
     "QOS 0",
     [](Bench &bench, const Arguments &a) { return Outcome::of(bench.tables().qos->init(a.number("unit"))); }},
    {"qos show",
     {kUnit},
     "shows queues, priority maps and weights as tables",
     "",
     [](Bench &bench, const Arguments &a) { return shownByBoard(bench, a, "qos"); }},
    {"qos classify",
     {kUnit, kPort, {"tags", Type::Text, {}, true}},
     "tells the priority and queue of a frame: tags as \"dot1p 5 dscp 46\"",
     "",
     [](Bench &bench, const Arguments &a) {
         return measured(bench, a,
                         fmt::format("classify {} {}", a.number("port"), a.has("tags") ? a.text("tags") : ""));
     }},

    {"storm init",
     {kUnit},
     "initialises storm control, which leaves it off",
     "STORMCTL 0",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().stormctl->init(a.number("unit")));
     }},
    {"storm set",
     {kUnit, kPort, {"packets", Type::Number}, {"enable", Type::Number}, {"meter", Type::Number}},
     "binds a port's floods of a packet type (0 to 2) to a chip meter",
     "STORMCTL 1",
     [](Bench &bench, const Arguments &a) {
         const LswmStormControl control{0, a.number("packets"), a.number("enable"), a.number("meter")};
         return Outcome::of(bench.tables().stormctl->set(a.number("unit"), a.number("port"), &control));
     }},
    {"storm show",
     {kUnit},
     "shows which floods are limited by which meter",
     "",
     [](Bench &bench, const Arguments &a) { return shownByBoard(bench, a, "storm"); }},
    {"storm flood",
     {kUnit, kPort, {"storm", Type::Number}, {"kbit", Type::Number}, {"ms", Type::Number}},
     "floods a port with a chip storm type (0 to 3) and tells what passes",
     "",
     [](Bench &bench, const Arguments &a) {
         return measured(bench, a,
                         fmt::format("flood {} {} {} {}", a.number("port"), a.number("storm"), a.number("kbit"),
                                     a.number("ms")));
     }},

    {"mc init",
     {kUnit},
     "hands reserved multicast addresses and LLDP to the host",
     "MC 0",
     [](Bench &bench, const Arguments &a) { return Outcome::of(bench.tables().mc->init(a.number("unit"))); }},
    {"mc reserved",
     {kUnit, kPort, {"mac", Type::Mac}, {"ethertype", Type::Number, {}, true}},
     "tells what becomes of a frame to a reserved address: 0 switched, 1 dropped, 2 to the host",
     "",
     [](Bench &bench, const Arguments &a) {
         return measured(bench, a,
                         fmt::format("reserved {} {} {}", a.number("port"), showMac(a.mac("mac").data()),
                                     a.number("ethertype", 0)));
     }},
};

} // namespace

std::span<const Command> qosCommands()
{
    static const std::vector<Command> all = [] {
        std::vector<Command> joined(std::begin(kCommands), std::end(kCommands));
        for (std::span<const Command> more : {meterCommands(), statCommands()})
            joined.insert(joined.end(), more.begin(), more.end());
        return joined;
    }();
    return all;
}

} // namespace zrbench
