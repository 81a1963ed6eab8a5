#include "tools/zrbench/frame_way.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <tuple>

#include "tools/zrbench/session.h"

namespace zrbench
{

namespace
{

Exit exitOf(const zrsim_frame_event &event)
{
    return {event.unit, event.port,     event.tagged != 0,
            event.vlan, event.priority, {event.bytes, event.bytes + event.size}};
}

void follow(const zrsim_frame_event *event, void *context)
{
    Way &way = *static_cast<Way *>(context);
    switch (event->kind) {
    case ZRSIM_FRAME_STAGE:
        way.stages.push_back({event->unit, event->port, event->name, event->text});
        break;
    case ZRSIM_FRAME_OUT:
        way.out.push_back(exitOf(*event));
        break;
    case ZRSIM_FRAME_CPU:
        way.cpu.push_back(exitOf(*event));
        break;
    case ZRSIM_FRAME_DROPPED:
        way.stages.push_back(
            {event->unit, event->port, "dropped", fmt::format("{}: {}", event->name, event->text)});
        way.dropped = event->name;
        break;
    default:
        break;
    }
}

} // namespace

Way sendFrame(Session &session, uint32_t unit, uint32_t port, const Frame &frame, int flags)
{
    Way way;
    flags |= frame.fcsGood ? 0 : ZRSIM_FRAME_BAD_FCS;
    if (session.inspection().frame == nullptr)
        throw UsageError{"frames: this platform does not support them"};
    if (session.inspection().frame(unit, port, frame.bytes.data(), frame.bytes.size(), flags, follow, &way) !=
        0)
        throw UsageError{
            fmt::format("the platform does not take {} bytes for unit {}", frame.bytes.size(), unit)};
    const auto place = [](const Exit &exit) { return std::tuple(exit.unit, exit.port); };
    std::ranges::stable_sort(way.out, {}, place);
    std::ranges::stable_sort(way.cpu, {}, place);
    if ((flags & ZRSIM_FRAME_DRY) != 0 || session.captures().empty())
        return way;
    const uint64_t now = passTime(session, 0).ms;
    for (const Exit &exit : way.out)
        for (const Capture &capture : session.captures())
            if (capture.unit == exit.unit && (capture.ports >> exit.port & 1U) != 0)
                capture.file->write(exit.bytes, now);
    return way;
}

std::string showExit(const Exit &exit)
{
    return fmt::format("{}/{} {}", exit.unit, exit.port,
                       exit.tagged ? fmt::format("vlan {} priority {}", exit.vlan, exit.priority) : "untagged");
}

std::string showExits(const std::vector<Exit> &exits)
{
    std::string text;
    for (const Exit &exit : exits)
        text += (text.empty() ? "" : ", ") + showExit(exit);
    return text.empty() ? "-" : text;
}

BoardTime passTime(Session &session, uint32_t ms)
{
    const std::string answer = session.board(0, fmt::format("time {}", ms));
    unsigned long long now = 0;
    unsigned long long aged = 0;
    if (std::sscanf(answer.c_str(), "ms=%llu aged=%llu", &now, &aged) != 2)
        throw UsageError{"the board knows no time: " + answer.substr(0, answer.find('\n'))};
    return {now, aged};
}

} // namespace zrbench
