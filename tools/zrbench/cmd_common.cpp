#include <fmt/format.h>

#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

// An answer text of the drop-reason operations: shown, then given back.
Outcome dropAnswer(Bench &bench, char *answer)
{
    if (answer == nullptr)
        return Outcome::shown("(no answer)\n");
    Outcome outcome = Outcome::shown("");
    outcome.out("answer", answer);
    bench.release(answer);
    return outcome;
}

const Command kCommands[] = {
    {"chip init",
     {{"unit", Type::Unit}},
     "resets a unit's chip and brings it up",
     "COMMON 0",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().common->initChip(a.number("unit")));
     }},
    {"reg read",
     {{"unit", Type::Unit}, {"register", Type::Number}},
     "reads a chip register",
     "COMMON 1",
     [](Bench &bench, const Arguments &a) {
         uint32_t value = 0;
         Outcome outcome =
             Outcome::of(bench.tables().common->chipRegRead(a.number("unit"), a.number("register"), &value));
         if (outcome.status == 0)
             outcome.out("value", fmt::format("{:#x}", value));
         return outcome;
     }},
    {"reg write",
     {{"unit", Type::Unit}, {"register", Type::Number}, {"value", Type::Number}},
     "writes a chip register",
     "COMMON 2",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(
             bench.tables().common->chipRegWrite(a.number("unit"), a.number("register"), a.number("value")));
     }},
    {"cli",
     {{"unit", Type::Unit}, {"line", Type::Text}},
     "runs a line of the chip's command line",
     "COMMON 3",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().common->cliCmdPrase(a.number("unit"), a.text("line").c_str()));
     }},
    {"drop capture",
     {{"unit", Type::Unit}, {"port", Type::Port}},
     "starts the capture of the reason why a port drops frames",
     "COMMON 8",
     [](Bench &bench, const Arguments &a) {
         return dropAnswer(
             bench, bench.tables().common->chipCaptureDropReasonEnable(a.number("unit"), a.number("port")));
     }},
    {"drop reason",
     {{"unit", Type::Unit}, {"port", Type::Port}},
     "shows the captured drop reason",
     "COMMON 9",
     [](Bench &bench, const Arguments &a) {
         return dropAnswer(bench, bench.tables().common->chipGetDropReason(a.number("unit"), a.number("port")));
     }},
    {"fmea monitor",
     {{"unit", Type::Unit}},
     "registers a unit for fault monitoring",
     "FMEA 0",
     [](Bench &bench, const Arguments &a) {
         return Outcome::of(bench.tables().fmea->monitorUnitReg(a.number("unit")));
     }},
};

} // namespace

std::span<const Command> commonCommands()
{
    return kCommands;
}

} // namespace zrbench
