#include "tools/zrbench/live.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <map>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

int openTap(const std::string &name)
{
    const int file = open("/dev/net/tun", O_RDWR | O_CLOEXEC | O_NONBLOCK);
    ifreq request{};
    request.ifr_flags = IFF_TAP | IFF_NO_PI;
    name.copy(request.ifr_name, IFNAMSIZ - 1);
    if (file >= 0 && ioctl(file, TUNSETIFF, &request) == 0)
        return file;
    const int error = errno;
    if (file >= 0)
        close(file);
    throw UsageError{fmt::format("cannot make the TAP interface {}: {}{}", name, std::strerror(error),
                                 error == EPERM || error == EACCES
                                     ? "; it takes the right to administer the network (CAP_NET_ADMIN)"
                                     : "")};
}

// Ctrl-C and kill as something that poll() waits for.
class Interrupts
{
public:
    Interrupts()
    {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGINT);
        sigaddset(&signals_, SIGTERM);
        sigprocmask(SIG_BLOCK, &signals_, &before_);
        file_ = signalfd(-1, &signals_, SFD_CLOEXEC);
    }
    Interrupts(const Interrupts &) = delete;
    Interrupts &operator=(const Interrupts &) = delete;
    ~Interrupts()
    {
        signalfd_siginfo taken{};
        [[maybe_unused]] const ssize_t size = read(file_, &taken, sizeof taken);
        close(file_);
        sigprocmask(SIG_SETMASK, &before_, nullptr);
    }
    int file() const { return file_; }

private:
    sigset_t signals_{};
    sigset_t before_{};
    int file_ = -1;
};

// The chips' time, in whole milliseconds of the clock.
class LiveTime
{
public:
    explicit LiveTime(Session &session) : session_(session) {}
    void follow()
    {
        using namespace std::chrono;
        const auto ms = duration_cast<milliseconds>(steady_clock::now() - at_);
        if (ms.count() == 0)
            return;
        at_ += ms;
        passTime(session_, static_cast<uint32_t>(ms.count()));
    }

private:
    Session &session_;
    std::chrono::steady_clock::time_point at_ = std::chrono::steady_clock::now();
};

class Live
{
public:
    Live(Session &session, std::vector<LivePort> &ports) : session_(session), ports_(ports), buffer_(kLargest)
    {
    }

    void run()
    {
        const Interrupts interrupts;
        std::vector<pollfd> files{{interrupts.file(), POLLIN, 0}};
        for (const LivePort &port : ports_)
            files.push_back({port.file, POLLIN, 0});
        LiveTime time(session_);
        constexpr int kTick = 100; // ms: time passes without frames, too
        while (poll(files.data(), files.size(), kTick) >= 0 && files[0].revents == 0) {
            time.follow();
            for (size_t i = 0; i < ports_.size(); ++i)
                if (files[i + 1].revents != 0)
                    take(ports_[i]);
        }
    }

    std::string report() const
    {
        TextTable table({"PORT", "INTERFACE", "IN", "OUT", "DROPPED"});
        for (const LivePort &port : ports_)
            table.row(
                {fmt::format("{}/{}", port.unit, port.port), port.interface, port.in, port.out, port.dropped});
        std::string text = table.text();
        for (const auto &[reason, count] : reasons_)
            text += fmt::format("dropped as {}: {}\n", reason, count);
        return text;
    }

private:
    static constexpr size_t kLargest = 65536;
    static constexpr size_t kShortest = 60; // what an interface fills up to

    void take(LivePort &from)
    {
        constexpr int kMost = 64; // at a time, so that a flood keeps nothing else waiting
        for (int count = 0; count < kMost; ++count) {
            const ssize_t size = read(from.file, buffer_.data(), buffer_.size());
            if (size <= 0)
                return;
            Frame frame{{buffer_.begin(), buffer_.begin() + size}};
            frame.bytes.resize(std::max(frame.bytes.size(), kShortest));
            ++from.in;
            const Way way = sendFrame(session_, from.unit, from.port, frame, 0);
            for (const Exit &exit : way.out)
                give(exit);
            if (way.out.empty() && way.cpu.empty()) {
                ++from.dropped;
                ++reasons_[way.dropped];
            }
        }
    }

    void give(const Exit &exit)
    {
        for (LivePort &to : ports_) {
            // An interface that is down takes nothing.
            if (to.unit == exit.unit && to.port == exit.port &&
                write(to.file, exit.bytes.data(), exit.bytes.size()) >= 0)
                ++to.out;
        }
    }

    Session &session_;
    std::vector<LivePort> &ports_;
    std::vector<uint8_t> buffer_;
    std::map<std::string, unsigned> reasons_;
};

} // namespace

LivePort::LivePort(const std::string &text)
{
    const size_t slash = std::min(text.find('/'), text.size());
    const size_t equals = std::min(text.find('='), text.size());
    const std::string_view view = text;
    const auto number = [](std::string_view digits, uint32_t most) {
        const std::optional<uint32_t> found = parseNumber(digits);
        return found && *found <= most ? found : std::nullopt;
    };
    const auto parsedUnit = number(view.substr(0, slash), LSWM_UNITS - 1);
    const auto parsedPort =
        slash < equals ? number(view.substr(slash + 1, equals - slash - 1), 31) : std::nullopt;
    interface = equals < text.size() ? text.substr(equals + 1) : "";
    if (!parsedUnit || !parsedPort || interface.empty() || interface.size() >= IFNAMSIZ)
        throw UsageError{fmt::format("expected UNIT/PORT=INTERFACE such as 1/0=tap0, found {}", shown(text))};
    unit = *parsedUnit;
    port = *parsedPort;
    file = openTap(interface);
}

LivePort::LivePort(LivePort &&other) noexcept
    : unit(other.unit), port(other.port), interface(std::move(other.interface)),
      file(std::exchange(other.file, -1))
{
}

LivePort::~LivePort()
{
    if (file >= 0)
        close(file);
}

std::vector<LivePort> openLivePorts(const std::vector<std::string> &texts)
{
    std::vector<LivePort> ports;
    for (const std::string &text : texts) {
        ports.emplace_back(text);
        for (const LivePort &other : std::span(ports).first(ports.size() - 1))
            if (other.unit == ports.back().unit && other.port == ports.back().port)
                throw UsageError{fmt::format("port {}/{} is given twice", other.unit, other.port)};
    }
    return ports;
}

void runLive(Session &session, std::vector<LivePort> &ports)
{
    for (const LivePort &port : ports)
        print("port {}/{} is {}\n", port.unit, port.port, port.interface);
    print("until Ctrl-C\n");
    standardOutput().check();
    Live live(session, ports);
    live.run();
    print("\n{}", live.report());
}

} // namespace zrbench
