// Chip bring-up, chip registers, the chip's command line and drop reasons.
#include <fmt/format.h>

#include "tools/zrbench/rows.h"

namespace zrbench
{

namespace
{

nlohmann::json hex(uint32_t value)
{
    return fmt::format("{:#x}", value);
}

// The drop-reason operations return a text in the manager's memory.
Command dropRow(std::string_view name, char *(*ZrCommonOps::*slot)(uint32_t unit, uint32_t port),
                std::string_view help)
{
    return {name, {kUnit, kPort}, help, slotLabel(slot), [slot](Session &session, const Arguments &a) {
                char *text = session.slot(slot)(a.number("unit"), a.number("port"));
                if (text == nullptr)
                    return Outcome::shown("(no answer)\n");
                Outcome outcome = Outcome::shown("");
                outcome.out("answer", text);
                session.release(text);
                return outcome;
            }};
}

Outcome commandLine(Session &session, const Arguments &a)
{
    return Outcome::of(session.slot(&ZrCommonOps::cliCmdPrase)(a.number("unit"), a.text("line").c_str()));
}

constexpr Argument kRegister{.name = "register", .meaning = "the address of a chip register"};

const Command kCommonCommands[] = {
    slotRow("chip init", &ZrCommonOps::initChip, {kUnit}, "resets a unit's chip and brings it up"),
    slotRow("reg read", &ZrCommonOps::chipRegRead, {kUnit, kRegister, {"value", hex}}, "reads a chip register"),
    slotRow("reg write", &ZrCommonOps::chipRegWrite, {kUnit, kRegister, "value"}, "writes a chip register"),
    {"cli",
     {kUnit, {"line", Type::Text}},
     "runs a line of the chip's command line",
     slotLabel(&ZrCommonOps::cliCmdPrase),
     commandLine},
    dropRow("drop capture", &ZrCommonOps::chipCaptureDropReasonEnable,
            "starts capturing the reason why a port drops frames"),
    dropRow("drop reason", &ZrCommonOps::chipGetDropReason, "shows the captured drop reason"),
    slotRow("fmea monitor", &ZrFmeaOps::monitorUnitReg, {kUnit}, "registers a unit for fault monitoring"),
};

} // namespace

std::span<const Command> commonCommands()
{
    return kCommonCommands;
}

} // namespace zrbench
