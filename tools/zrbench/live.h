// Ports as network interfaces of this machine, for real hosts to talk through the virtual gateway.
#pragma once

#include <string>
#include <vector>

#include "tools/zrbench/session.h"

namespace zrbench
{

// A port and the TAP interface (Linux) that its cable leads to.
class LivePort
{
public:
    // "1/0=tap0". Makes the interface, or takes it over. Throws UsageError.
    explicit LivePort(const std::string &text);
    LivePort(LivePort &&other) noexcept;
    LivePort &operator=(LivePort &&) = delete;
    ~LivePort();

    uint32_t unit = 0;
    uint32_t port = 0;
    std::string interface;
    int file = -1;

    unsigned in = 0;
    unsigned out = 0;
    unsigned dropped = 0;
};

// Throws UsageError, also for a port or an interface that is there twice.
std::vector<LivePort> openLivePorts(const std::vector<std::string> &texts);

// Carries frames until Ctrl-C while the chips' time follows the clock, then tells how many. Throws UsageError.
void runLive(Session &session, std::vector<LivePort> &ports);

} // namespace zrbench
