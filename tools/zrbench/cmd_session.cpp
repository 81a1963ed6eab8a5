#include "tools/zrbench/commands.h"
#include "tools/zrbench/ops.h"
#include "tools/zrbench/session.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

// The only bench there is.
Session &session(Bench &bench)
{
    return static_cast<Session &>(bench);
}

const Command kCommands[] = {
    {"help",
     {{"topic", Type::Text, {}, true}},
     "lists the commands, or those that start with TOPIC",
     "",
     [](Bench &, const Arguments &a) { return Outcome::shown(help(a.has("topic") ? a.text("topic") : "")); }},
    {"quit",
     {},
     "ends the session",
     "",
     [](Bench &bench, const Arguments &) {
         session(bench).quit();
         return Outcome::shown("");
     }},
    {"ops",
     {},
     "shows the operation tables slot by slot",
     "",
     [](Bench &bench, const Arguments &) { return Outcome::shown(showOperations(bench.tables())); }},
    {"dump",
     {},
     "shows the state of chips, board and manager as JSON",
     "",
     [](Bench &bench, const Arguments &) { return Outcome::shown(session(bench).dump() + "\n"); }},
    {"level",
     {{"level", Type::Number}},
     "switches traces up to LEVEL on (2 events, 3 details); 0 switches all off",
     "",
     [](Bench &bench, const Arguments &a) {
         session(bench).setTraceLevel(a.number("level"));
         return Outcome::shown("");
     }},
    {"trace",
     {{"calls", Type::Word, "off|calls|all"}},
     "shows under each step its calls of the chip SDK and the board, or all platform calls, nested ones too",
     "",
     [](Bench &bench, const Arguments &a) {
         const std::string word = a.text("calls");
         session(bench).showCalls(word == "off"     ? ShownCalls::None
                                  : word == "calls" ? ShownCalls::Library
                                                    : ShownCalls::All);
         return Outcome::shown("");
     }},
    {"fail",
     {{"call", Type::Text}},
     "makes platform calls fail: NAME[@N[+]]=STATUS, all, the Nth from now on, or that and all after it",
     "",
     [](Bench &bench, const Arguments &a) {
         session(bench).fail(parseFailure(a.text("call")));
         return Outcome::shown("");
     }},
    {"fail none",
     {},
     "lets all platform calls work again",
     "",
     [](Bench &bench, const Arguments &) {
         if (session(bench).inspection().failNone != nullptr)
             session(bench).inspection().failNone();
         return Outcome::shown("");
     }},
    {"unit set",
     {{"unit", Type::Unit}, {"info", Type::Json}},
     "changes unit information: maxFrameSize, reservedPort, cascadeTrunk, portSets, ports",
     "",
     [](Bench &bench, const Arguments &a) {
         try {
             session(bench).setUnitInfo(a.number("unit"), a.json("info"));
         } catch (const ArgumentError &error) {
             throw ArgumentError{{error.text}, "info" + error.argument};
         }
         return Outcome::shown("");
     }},
    {"unit show",
     {{"unit", Type::Unit}},
     "shows the manager's unit information",
     "",
     [](Bench &bench, const Arguments &a) {
         return Outcome::shown(session(bench).showUnitInfo(a.number("unit")));
     }},
};

} // namespace

std::span<const Command> sessionCommands()
{
    return kCommands;
}

} // namespace zrbench
