// Reserved multicast addresses. Given: 51 types (0 to 50) with an action (0, 1 or 2) each, and a switch for
// trapping LLDP. The model's own choice: type n up to 47 is the address 01:80:c2:00:00:00 + n, types above
// belong to no address of the model; action 0 switches a frame, 1 drops it, 2 hands it to the host; LLDP
// (EtherType 0x88cc to 01:80:c2:00:00:00, 03 or 0e) goes to the host whatever the action while its trap is
// on; after a reset every action is 0 and the trap is off.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

class Rma
{
public:
    static constexpr uint32_t kTypes = 51;
    enum Action : uint32_t { kSwitch = 0, kDrop = 1, kToHost = 2, kActions = 3 };

    uint32_t setAction(uint32_t type, uint32_t action);
    uint32_t trapLldp(uint32_t on);

    uint32_t action(uint32_t type) const { return actions_.at(type); }
    bool trapsLldp() const { return lldp_; }

    struct Decision {
        bool reserved; // the address is one of the types
        bool lldp;     // decided by the trap of LLDP
        Action action;
    };
    // What becomes of a frame to `mac`.
    Decision decide(const std::array<uint8_t, 6> &mac, uint32_t etherType) const;

    void attach(Chip &) {}
    void reset();
    void dump(nlohmann::json &to) const;

private:
    std::array<uint32_t, kTypes> actions_{};
    bool lldp_ = false;
};

} // namespace zrsim
