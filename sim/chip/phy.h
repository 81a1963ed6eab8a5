// A copper PHY and the partner at the other end of its cable.
//
// Given: IEEE 802.3 clause 22 registers 0 (control), 1 (status, a lost link latched until it is read), 4 and 5
// (abilities of both sides), 9 and 10 (gigabit); the best mode that both sides advertise is taken; register 16
// bits 15 and 14 hold the MDI mode, register 18 bit 0 the remote loopback; register 31 selects the page; the
// chip's driver keeps the forced-mode abilities, and setting either kind of abilities selects its mode.
//
// The model's own choice: of several forced abilities the best is forced, and gigabit is refused; a side that
// does not negotiate is detected by its speed and taken as half duplex, so that a forced full-duplex side ends
// up with a duplex mismatch; a setting that starts negotiation again loses the link for a moment; while a page
// other than 0 is selected, registers 0 to 30 are storage of that page; vendor registers of page 0 are storage
// and 0 after a reset; the loopback of register 0 cuts the partner off and shows a link of its own; the remote
// loopback leaves the link alone; without a link, speed and duplex are those of forced mode, or 10 half.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/chip_records.h"

namespace zrsim
{

struct Link {
    bool up = false;
    uint32_t speed = SDK_SPEED_10;
    bool full = false;
};
std::string show(const Link &link); // "1000 full", "down"

// What a partner is: `autoNego` 0 forces the best of its abilities.
using Partner = SdkPortAbility;

class Phy
{
public:
    static constexpr uint32_t kRegisters = 32;

    // Loses every register and setting; the cable stays.
    void reset();

    uint16_t read(uint32_t reg);
    void write(uint32_t reg, uint16_t value);

    bool negotiates() const;
    SdkPortAbility advertised() const;
    void advertise(const SdkPortAbility &ability);
    const SdkPortAbility &forced() const { return forced_; }
    // False when gigabit is among the abilities.
    bool force(const SdkPortAbility &ability);

    void power(bool on);
    void loop(bool on);

    // The world: what is at the other end of the cable, or nothing.
    void plug(const std::optional<Partner> &partner);

    Link link() const { return link_; }
    bool looped() const;
    bool remoteLooped() const;

private:
    uint16_t readStandard(uint32_t reg);
    void writeControl(uint16_t value);
    // A link found again, or lost: what a change of either side's settings brings about.
    void settle();
    Link resolve() const;
    SdkPortAbility own() const;

    uint16_t control_ = 0;
    std::map<std::pair<uint16_t, uint32_t>, uint16_t> stored_; // by page and register
    uint16_t page_ = 0;
    SdkPortAbility forced_{};
    bool lostSinceRead_ = false; // latched for the status register
    Link link_;
    std::optional<Partner> partner_;
};

} // namespace zrsim
