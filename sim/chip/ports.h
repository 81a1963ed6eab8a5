// Ports of a chip: admin state, MAC, link, frame size, CPU port.
//
// Given: a port's PHY is reached by logical port number; a port without PHY takes its link from the forced-link
// settings of its MAC; one frame size for the whole chip, by index; a port's MAC and PHY loop back on request.
//
// The model's own choice: ports 0 to 4 have a gigabit PHY, 15 to 17 only a MAC, and no other exists
// (kSdkBadPort); a MAC without PHY is forced to 1000 full, link up, until the board says otherwise; after a
// reset every port is disabled, which powers its PHY down; a MAC in loopback shows its link up; the MAC of a
// disabled port shows it down. Cables, partners and the board's forced links outlive a reset of the chip.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

#include "sim/chip/phy.h"

namespace zrsim
{

class Chip;

class Ports
{
public:
    static constexpr uint32_t kLogicalPorts = 0x3801F; // bit n = port n
    static constexpr uint32_t kPhyPorts = 0x0001F;
    static constexpr uint32_t kFrameSizes = 4;

    static bool exists(uint32_t port) { return port < 32 && (kLogicalPorts >> port & 1U) != 0; }
    static bool hasPhy(uint32_t port) { return port < 32 && (kPhyPorts >> port & 1U) != 0; }

    Ports();
    void attach(Chip &) {}
    void reset();
    // Also pulls every cable and forgets what the board said of partners and forced links.
    void powerOn();
    void dump(nlohmann::json &to) const;

    // The functions below take ports that exist; phy() one that has a PHY.
    Phy &phy(uint32_t port) { return ports_[port].phy; }
    bool enabled(uint32_t port) const { return ports_[port].enabled; }
    void enable(uint32_t port, bool on);
    // The link that the MAC works with.
    Link macLink(uint32_t port) const;
    // Forced-link settings of the MAC; a port with a PHY has none.
    bool macForced(uint32_t port) const { return !hasPhy(port); }
    Link forcedLink(uint32_t port) const { return hasPhy(port) ? Link{} : ports_[port].strapped; }
    bool macLooped(uint32_t port) const { return ports_[port].macLoop; }
    // In any loopback: of the MAC, or of the PHY towards the chip or the cable.
    bool looped(uint32_t port) const;
    void macLoop(uint32_t port, bool on) { ports_[port].macLoop = on; }

    // The world.
    void plug(uint32_t port, bool in);
    void describePartner(uint32_t port, const Partner &partner);
    void strap(uint32_t port, const Link &link) { ports_[port].strapped = link; }

    uint32_t frameSize = 0; // index

    struct CpuPort {
        bool chosen;
        uint32_t port;
        uint32_t mode;
        bool tag; // frames trapped to it carry the CPU tag
        uint32_t etherType;
    };
    CpuPort cpu{};

private:
    struct Port {
        bool enabled = false;
        bool macLoop = false;
        Phy phy;
        // The world.
        bool plugged = false;
        Partner partner{};
        Link strapped;
    };
    std::array<Port, 32> ports_;
};

} // namespace zrsim
