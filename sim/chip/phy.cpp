#include "sim/chip/phy.h"

#include <fmt/format.h>

namespace zrsim
{
namespace
{

enum Register : uint32_t {
    kControl = 0,
    kStatus = 1,
    kIdHigh = 2,
    kIdLow = 3,
    kAdvertised = 4,
    kPartnerAbility = 5,
    kExpansion = 6,
    kGigabitControl = 9,
    kGigabitStatus = 10,
    kExtendedStatus = 15,
    kRemoteLoop = 18,
    kPage = 31,
};

constexpr uint16_t kReset = 0x8000;
constexpr uint16_t kLoopback = 0x4000;
constexpr uint16_t kSpeed100 = 0x2000;
constexpr uint16_t kNegotiate = 0x1000;
constexpr uint16_t kPowerDown = 0x0800;
constexpr uint16_t kRestart = 0x0200;
constexpr uint16_t kFullDuplex = 0x0100;
constexpr uint16_t kSpeed1000 = 0x0040;
constexpr uint16_t kControlHeld = kLoopback | kSpeed100 | kNegotiate | kPowerDown | kFullDuplex | kSpeed1000;

// 10 and 100 Mbit/s in both duplexes, extended status, preamble suppression, negotiation, extended registers.
constexpr uint16_t kStatusFixed = 0x7949;
constexpr uint16_t kStatusLink = 0x0004;
constexpr uint16_t kStatusNegotiated = 0x0020;

constexpr uint16_t kSelector = 0x0001;
constexpr uint16_t kAcknowledge = 0x4000;
constexpr uint16_t kPartnerNegotiates = 0x0001;
constexpr uint16_t kExtendedGigabitFull = 0x2000;
constexpr uint16_t kReceiversGood = 0x3000;

// One mode of a link and where it stands in the registers, best first.
struct Mode {
    uint32_t speed;
    bool full;
    uint32_t SdkPortAbility::*ability;
};
constexpr Mode kModes[] = {
    {SDK_SPEED_1000, true, &SdkPortAbility::full1000}, {SDK_SPEED_100, true, &SdkPortAbility::full100},
    {SDK_SPEED_100, false, &SdkPortAbility::half100},  {SDK_SPEED_10, true, &SdkPortAbility::full10},
    {SDK_SPEED_10, false, &SdkPortAbility::half10},
};

struct AbilityBit {
    uint32_t SdkPortAbility::*ability;
    uint16_t bit;
};
// Registers 4 and 5.
constexpr AbilityBit kBaseBits[] = {
    {&SdkPortAbility::half10, 0x0020},  {&SdkPortAbility::full10, 0x0040}, {&SdkPortAbility::half100, 0x0080},
    {&SdkPortAbility::full100, 0x0100}, {&SdkPortAbility::pause, 0x0400},  {&SdkPortAbility::pauseAsym, 0x0800},
};
constexpr uint16_t kOwnGigabitFull = 0x0200;     // register 9
constexpr uint16_t kPartnerGigabitFull = 0x0800; // register 10

uint16_t baseWord(const SdkPortAbility &ability)
{
    uint16_t word = kSelector;
    for (const AbilityBit &row : kBaseBits)
        if (ability.*row.ability != 0)
            word |= row.bit;
    return word;
}

const Mode *best(const SdkPortAbility &ability)
{
    for (const Mode &mode : kModes)
        if (ability.*mode.ability != 0)
            return &mode;
    return nullptr;
}

// A side that does not negotiate is heard by its speed alone; the listener takes it as half duplex.
bool detects(const SdkPortAbility &listener, uint32_t speed)
{
    return (speed == SDK_SPEED_100 && listener.half100 != 0) || (speed == SDK_SPEED_10 && listener.half10 != 0);
}

} // namespace

std::string show(const Link &link)
{
    constexpr const char *kSpeeds[] = {"10", "100", "1000"};
    return link.up ? fmt::format("{} {}", kSpeeds[link.speed], link.full ? "full" : "half") : "down";
}

void Phy::reset()
{
    stored_.clear();
    page_ = 0;
    control_ = kNegotiate | kPowerDown | kFullDuplex | kSpeed1000;
    stored_[{0, kAdvertised}] = 0x0DE1; // everything up to 100 Mbit/s, and both kinds of pause
    stored_[{0, kGigabitControl}] = kOwnGigabitFull;
    forced_ = {0, 1, 1, 1, 1, 0, 0, 0};
    lostSinceRead_ = false;
    link_ = {};
}

bool Phy::negotiates() const
{
    return (control_ & kNegotiate) != 0;
}

bool Phy::looped() const
{
    return (control_ & kLoopback) != 0;
}

bool Phy::remoteLooped() const
{
    auto found = stored_.find({0, kRemoteLoop});
    return found != stored_.end() && (found->second & 1) != 0;
}

// ---- registers ------------------------------------------------------------------------------

uint16_t Phy::read(uint32_t reg)
{
    if (reg == kPage)
        return page_;
    return page_ == 0 ? readStandard(reg) : stored_[{page_, reg}];
}

uint16_t Phy::readStandard(uint32_t reg)
{
    const bool heard = partner_ && partner_->autoNego != 0 && negotiates() && (control_ & kPowerDown) == 0;
    switch (reg) {
    case kControl:
        return control_;
    case kStatus: {
        const bool up = link_.up && !lostSinceRead_;
        lostSinceRead_ = false;
        return static_cast<uint16_t>(kStatusFixed | (up ? kStatusLink : 0) |
                                     (link_.up && negotiates() ? kStatusNegotiated : 0));
    }
    case kIdHigh:
        return 0x5A52;
    case kIdLow:
        return 0x0091;
    case kPartnerAbility:
        if (heard)
            return baseWord(*partner_) | kAcknowledge;
        if (link_.up && negotiates() && !looped())
            return link_.speed == SDK_SPEED_100 ? 0x0080 : 0x0020; // detected, not heard
        return 0;
    case kExpansion:
        return heard ? kPartnerNegotiates : 0;
    case kGigabitStatus:
        return static_cast<uint16_t>((heard && partner_->full1000 != 0 ? kPartnerGigabitFull : 0) |
                                     (link_.up && link_.speed == SDK_SPEED_1000 ? kReceiversGood : 0));
    case kExtendedStatus:
        return kExtendedGigabitFull;
    default:
        return stored_[{0, reg}];
    }
}

void Phy::write(uint32_t reg, uint16_t value)
{
    if (reg == kPage)
        page_ = value;
    else if (page_ == 0 && reg == kControl)
        writeControl(value);
    else
        stored_[{page_, reg}] = value;
}

void Phy::writeControl(uint16_t value)
{
    if ((value & kReset) != 0) {
        const uint16_t power = control_ & kPowerDown;
        const bool lost = lostSinceRead_ || link_.up;
        reset();
        control_ = static_cast<uint16_t>((control_ & ~kPowerDown) | power);
        lostSinceRead_ = lost;
        settle();
        return;
    }
    const uint16_t held = value & kControlHeld;
    const bool again = held != control_ || ((value & kRestart) != 0 && (held & kNegotiate) != 0);
    control_ = held;
    if (again)
        settle();
}

// ---- abilities ------------------------------------------------------------------------------

SdkPortAbility Phy::advertised() const
{
    SdkPortAbility ability{};
    ability.autoNego = negotiates();
    for (const AbilityBit &row : kBaseBits)
        ability.*row.ability = (stored_.at({0, kAdvertised}) & row.bit) != 0;
    ability.full1000 = (stored_.at({0, kGigabitControl}) & kOwnGigabitFull) != 0;
    return ability;
}

void Phy::advertise(const SdkPortAbility &ability)
{
    stored_[{0, kAdvertised}] = baseWord(ability);
    stored_[{0, kGigabitControl}] = ability.full1000 != 0 ? kOwnGigabitFull : 0;
    writeControl(control_ | kNegotiate | kRestart);
}

bool Phy::force(const SdkPortAbility &ability)
{
    if (ability.full1000 != 0)
        return false;
    forced_ = ability;
    const Mode *mode = best(ability);
    uint16_t control = control_ & (kLoopback | kPowerDown);
    if (mode != nullptr && mode->speed == SDK_SPEED_100)
        control |= kSpeed100;
    if (mode != nullptr && mode->full)
        control |= kFullDuplex;
    writeControl(control);
    return true;
}

void Phy::power(bool on)
{
    writeControl(static_cast<uint16_t>(on ? control_ & ~kPowerDown : control_ | kPowerDown));
}

void Phy::loop(bool on)
{
    writeControl(static_cast<uint16_t>(on ? control_ | kLoopback : control_ & ~kLoopback));
}

// ---- link -----------------------------------------------------------------------------------

void Phy::plug(const std::optional<Partner> &partner)
{
    partner_ = partner;
    settle();
}

void Phy::settle()
{
    lostSinceRead_ = lostSinceRead_ || link_.up;
    link_ = resolve();
}

// What this side offers: its advertised abilities, or the one mode that it forces.
SdkPortAbility Phy::own() const
{
    if (negotiates())
        return advertised();
    SdkPortAbility ability{};
    const bool full = (control_ & kFullDuplex) != 0;
    if ((control_ & kSpeed1000) != 0)
        return ability; // gigabit does not exist without negotiation
    if ((control_ & kSpeed100) != 0)
        (full ? ability.full100 : ability.half100) = 1;
    else
        (full ? ability.full10 : ability.half10) = 1;
    return ability;
}

Link Phy::resolve() const
{
    const SdkPortAbility mine = own();
    const Mode *forcedMode = negotiates() ? nullptr : best(mine);
    Link link;
    if (forcedMode != nullptr)
        link = {false, forcedMode->speed, forcedMode->full};
    if ((control_ & kPowerDown) != 0)
        return link;
    if (looped()) {
        if (const Mode *mode = best(mine); mode != nullptr)
            link = {true, mode->speed, mode->full};
        return link;
    }
    if (!partner_)
        return link;

    if (negotiates() && partner_->autoNego != 0) {
        for (const Mode &mode : kModes)
            if (mine.*mode.ability != 0 && (*partner_).*mode.ability != 0)
                return {true, mode.speed, mode.full};
        return link;
    }
    if (negotiates()) {
        const Mode *theirs = best(*partner_);
        return theirs != nullptr && detects(mine, theirs->speed) ? Link{true, theirs->speed, false} : link;
    }
    if (forcedMode == nullptr)
        return link;
    const Mode *theirs = best(*partner_);
    link.up = partner_->autoNego != 0 ? detects(*partner_, link.speed)
                                      : theirs != nullptr && theirs->speed == link.speed;
    return link;
}

} // namespace zrsim
