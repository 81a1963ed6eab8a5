#include "sim/chip/ports.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "sim/chip/chip.h"
#include "sim/command.h"

namespace zrsim
{
namespace
{

constexpr Partner kGigabitPartner = {1, 1, 1, 1, 1, 1, 1, 1};
constexpr Link kStrapped = {true, SDK_SPEED_1000, true};

} // namespace

Ports::Ports()
{
    powerOn();
}

void Ports::reset()
{
    frameSize = 0;
    cpu = {};
    for (Port &port : ports_) {
        port.enabled = false;
        port.macLoop = false;
        port.phy.reset();
    }
}

void Ports::powerOn()
{
    for (Port &port : ports_) {
        port.plugged = false;
        port.partner = kGigabitPartner;
        port.strapped = kStrapped;
        port.phy.plug({});
    }
    reset();
}

void Ports::enable(uint32_t port, bool on)
{
    ports_[port].enabled = on;
    if (hasPhy(port))
        ports_[port].phy.power(on);
}

Link Ports::macLink(uint32_t port) const
{
    const Port &at = ports_[port];
    Link link = hasPhy(port) ? at.phy.link() : at.strapped;
    link.up = at.enabled && (link.up || at.macLoop);
    return link;
}

bool Ports::looped(uint32_t port) const
{
    const Port &at = ports_[port];
    return at.macLoop || (hasPhy(port) && (at.phy.looped() || at.phy.remoteLooped()));
}

void Ports::plug(uint32_t port, bool in)
{
    Port &at = ports_[port];
    at.plugged = in;
    at.phy.plug(in ? std::optional(at.partner) : std::nullopt);
}

void Ports::describePartner(uint32_t port, const Partner &partner)
{
    Port &at = ports_[port];
    at.partner = partner;
    if (at.plugged)
        at.phy.plug(partner);
}

void Ports::dump(nlohmann::json &to) const
{
    to["frameSizeIndex"] = frameSize;
    if (cpu.chosen)
        to["cpu"] = {{"port", cpu.port},
                     {"mode", cpu.mode},
                     {"tag", cpu.tag},
                     {"etherType", fmt::format("{:#06x}", cpu.etherType)}};
    for (uint32_t port = 0; port < ports_.size(); ++port) {
        if (!exists(port))
            continue;
        const Port &at = ports_[port];
        nlohmann::json &state = to["port"][std::to_string(port)];
        state["enabled"] = at.enabled;
        state["link"] = show(macLink(port));
        if (at.macLoop)
            state["macLoop"] = true;
        if (!hasPhy(port))
            continue;
        state["plugged"] = at.plugged;
        state["negotiates"] = at.phy.negotiates();
        if (at.phy.looped())
            state["phyLoop"] = true;
        if (at.phy.remoteLooped())
            state["remoteLoop"] = true;
    }
}

// ---- the world, by the board's commands -----------------------------------------------------

namespace
{

uint32_t portOf(const Words &words, bool withPhy)
{
    const uint32_t port = words.number(0);
    if (!Ports::exists(port))
        words.refuse(fmt::format("the chip has no port {}", port));
    if (withPhy && !Ports::hasPhy(port))
        words.refuse(fmt::format("port {} has no PHY; \"mac\" sets its link", port));
    if (!withPhy && Ports::hasPhy(port))
        words.refuse(fmt::format("port {} has a PHY; \"link\" and \"partner\" make its link", port));
    return port;
}

// The index of a word among `choices`.
template <size_t N> uint32_t choose(const Words &words, size_t i, const char *const (&choices)[N])
{
    for (uint32_t choice = 0; choice < N; ++choice)
        if (words.text(i) == choices[choice])
            return choice;
    words.refuse(fmt::format("\"{}\" is none of {}", words.text(i), fmt::join(choices, ", ")));
}

void noMoreThan(const Words &words, size_t count)
{
    if (words.count() > count)
        words.refuse(fmt::format("\"{}\" is too much", words.text(count)));
}

constexpr const char *kUpDown[] = {"down", "up"};
constexpr const char *kDuplexes[] = {"half", "full"};
constexpr const char *kSpeeds[] = {"10", "100", "1000"};
constexpr const char *kPartners[] = {"forced", "auto"};
constexpr const char *kAbilities[] = {"10h", "10f", "100h", "100f", "1000f", "pause", "asym"};
constexpr uint32_t Partner::*kAbilityMembers[] = {
    &Partner::half10,   &Partner::full10, &Partner::half100,   &Partner::full100,
    &Partner::full1000, &Partner::pause,  &Partner::pauseAsym,
};

const BoardCommand kLink("link PORT up|down", "plugs a port's cable in, or pulls it",
                         [](Chip &chip, const Words &words) {
                             const uint32_t port = portOf(words, true);
                             const bool in = choose(words, 1, kUpDown) == 1;
                             noMoreThan(words, 2);
                             chip.ports.plug(port, in);
                             return std::string();
                         });

const BoardCommand kPartner("partner PORT auto|forced ABILITY...",
                            "what a port's link partner is: 10h 10f 100h 100f 1000f pause asym",
                            [](Chip &chip, const Words &words) {
                                const uint32_t port = portOf(words, true);
                                Partner partner{};
                                partner.autoNego = choose(words, 1, kPartners);
                                for (size_t i = 2; i < words.count(); ++i)
                                    partner.*kAbilityMembers[choose(words, i, kAbilities)] = 1;
                                if (partner.autoNego == 0 && partner.full1000 != 0)
                                    words.refuse("gigabit is never forced");
                                chip.ports.describePartner(port, partner);
                                return std::string();
                            });

const BoardCommand kMac("mac PORT 10|100|1000 half|full up|down",
                        "forced link of the MAC of a port without PHY", [](Chip &chip, const Words &words) {
                            const uint32_t port = portOf(words, false);
                            Link link;
                            link.speed = choose(words, 1, kSpeeds);
                            link.full = choose(words, 2, kDuplexes) == 1;
                            link.up = choose(words, 3, kUpDown) == 1;
                            noMoreThan(words, 4);
                            chip.ports.strap(port, link);
                            return std::string();
                        });

} // namespace
} // namespace zrsim
