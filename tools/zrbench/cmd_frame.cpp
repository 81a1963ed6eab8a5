// Frames that come in at ports, what comes of them, and time.
#include <algorithm>
#include <fmt/format.h>
#include <map>

#include "tools/zrbench/frame_way.h"
#include "tools/zrbench/session.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

constexpr Argument kFrameUnit{.name = "unit", .most = LSWM_UNITS - 1};
constexpr Argument kFrame{.name = "frame",
                          .type = Type::Text,
                          .choices = kFrameWords,
                          .check = checkFrame,
                          .meaning = "NAME=VALUE, or hexadecimal"};
constexpr Argument kFile{.name = "file", .type = Type::File};

// ---- one frame ----------------------------------------------------------------------------------------------

// One line for each stage; and as rows, with where it comes out behind them.
Outcome told(const Frame &frame, const Way &way)
{
    const std::string frameText = describeFrame(frame.bytes);
    Outcome outcome = Outcome::shown(frameText.empty() ? "" : frameText + "\n");
    outcome.rows = nlohmann::json::array();
    for (const Stage &stage : way.stages) {
        outcome.text += fmt::format("{}/{:<2} {:<9} {}\n", stage.unit, stage.port, stage.name, stage.text);
        outcome.rows.push_back(
            {{"unit", stage.unit}, {"port", stage.port}, {"stage", stage.name}, {"text", stage.text}});
    }
    for (const auto &[name, exits] : {std::pair("out", &way.out), std::pair("cpu", &way.cpu)})
        for (const Exit &exit : *exits)
            outcome.rows.push_back(
                {{"unit", exit.unit}, {"port", exit.port}, {"stage", name}, {"text", showExit(exit)}});
    if (!way.out.empty())
        outcome.text += fmt::format("comes out at {}\n", showExits(way.out));
    if (!way.cpu.empty())
        outcome.text += fmt::format("goes to the CPU at {}\n", showExits(way.cpu));
    outcome.out("to", showExits(way.out));
    if (!way.cpu.empty())
        outcome.out("cpu", showExits(way.cpu));
    if (way.out.empty() && way.cpu.empty())
        outcome.out("dropped", way.dropped);
    return outcome;
}

Outcome send(Session &session, const Arguments &a, int flags)
{
    const uint32_t unit = a.number("unit");
    const uint32_t port = a.number("port");
    const Frame frame = parseFrame(a.text("frame"), unit, port);
    return told(frame, sendFrame(session, unit, port, frame, flags | ZRSIM_FRAME_EXPLAIN));
}

// ---- captures -----------------------------------------------------------------------------------------------

// How many frames by where they came out or why they did not.
using Tally = std::map<std::pair<uint32_t, uint32_t>, unsigned>;

void count(Tally &tally, const std::vector<Exit> &exits)
{
    for (const Exit &exit : exits)
        ++tally[{exit.unit, exit.port}];
}

// "1/3 12, 1/15 8"
std::string showTally(const Tally &tally)
{
    std::string text;
    for (const auto &[place, count] : tally)
        text += fmt::format("{}{}/{} {}", text.empty() ? "" : ", ", place.first, place.second, count);
    return text.empty() ? "-" : text;
}

Outcome play(Session &session, const Arguments &a)
{
    const std::vector<Frame> frames = readCapture(session.besideDevice(a.text("file")));
    const uint64_t rate = a.number("rate");
    Tally to;
    Tally cpu;
    std::map<std::string, unsigned> dropped;
    uint64_t ms = 0;
    for (uint64_t number = 0; number < frames.size(); ++number) {
        if (const uint64_t due = rate != 0 ? number * 1000 / rate : 0; due > ms) {
            passTime(session, static_cast<uint32_t>(due - ms));
            ms = due;
        }
        const Way way = sendFrame(session, a.number("unit"), a.number("port"), frames[number], 0);
        count(to, way.out);
        count(cpu, way.cpu);
        if (way.out.empty() && way.cpu.empty())
            ++dropped[way.dropped];
    }
    Outcome outcome = Outcome::shown("");
    outcome.out("frames", frames.size()).out("to", showTally(to));
    if (!cpu.empty())
        outcome.out("cpu", showTally(cpu));
    std::string reasons;
    for (const auto &[reason, count] : dropped)
        reasons += fmt::format("{}{} {}", reasons.empty() ? "" : ", ", reason, count);
    if (!reasons.empty())
        outcome.out("dropped", reasons);
    return outcome;
}

Outcome capture(Session &session, const Arguments &a)
{
    uint32_t ports = 0;
    for (const uint32_t port : a.ports("ports"))
        ports |= 1U << port;
    session.capture(a.number("unit"), ports, session.besideDevice(a.text("file")));
    return Outcome::shown("");
}

// ---- time ---------------------------------------------------------------------------------------------------

uint32_t parseDuration(std::string_view text)
{
    constexpr std::pair<std::string_view, uint64_t> kUnits[] = {
        {"ms", 1}, {"s", 1000}, {"m", 60000}, {"h", 3600000}};
    const size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::optional<uint32_t> number = parseNumber(text.substr(0, digits));
    for (const auto &[name, ms] : kUnits)
        if (number && text.substr(digits) == name && *number <= UINT32_MAX / ms)
            return static_cast<uint32_t>(*number * ms);
    throw UsageError{fmt::format("expected a time such as 500ms, 90s, 5m or 24h, found {}", shown(text))};
}

void checkDuration(const nlohmann::json &text)
{
    parseDuration(text.get_ref<const std::string &>());
}

const Command kFrameCommands[] = {
    {"frame send",
     {kFrameUnit, kPort, kFrame},
     "puts a frame into a port, hexadecimal or as words, and tells its way",
     "",
     [](Session &session, const Arguments &a) { return send(session, a, 0); }},
    {"frame explain",
     {kFrameUnit, kPort, kFrame},
     "tells the way that a frame would take, and leaves no trace in any table or counter",
     "",
     [](Session &session, const Arguments &a) { return send(session, a, ZRSIM_FRAME_DRY); }},
    {"frame play",
     {kFrameUnit, kPort, kFile, {.name = "rate", .optional = true, .meaning = "frames a second"}},
     "puts the frames of a capture (pcap, pcapng) into a port; with RATE, time passes at RATE frames a second",
     "",
     play},
    {"frame capture",
     {kFrameUnit, {.name = "ports", .type = Type::Ports, .most = 31}, kFile},
     "writes what comes out at ports from now on as pcap",
     "",
     capture},
    {"time show",
     {},
     "shows the time of the virtual chips in milliseconds",
     "",
     [](Session &session, const Arguments &) { return Outcome::shown("").out("ms", passTime(session, 0).ms); }},
    {"time advance",
     {{.name = "time", .type = Type::Text, .check = checkDuration}},
     "lets time pass, such as 500ms, 90s, 5m or 24h: addresses age, meters fill",
     "",
     [](Session &session, const Arguments &a) {
         const BoardTime now = passTime(session, parseDuration(a.text("time")));
         return Outcome::shown("").out("ms", now.ms).out("aged", now.aged);
     }},
};

} // namespace

std::span<const Command> frameCommands()
{
    return kFrameCommands;
}

} // namespace zrbench
