#include "sim/chip/chip.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <array>

namespace zrsim
{
namespace
{

// What the three chips of a board are unless the board says otherwise: unit 2 is of the revision whose
// SMI writes need confirming.
struct Silicon {
    uint8_t revision;
    uint32_t fsData;
};
constexpr std::array<Silicon, 3> kSilicon = {{{1, 0x20}, {2, 0x24}, {3, 0x28}}};

} // namespace

Chip::Chip(uint32_t unit) : unit_(unit)
{
    everyModel([this](auto &model, const char *) { model.attach(*this); });
    powerOn();
}

template <class Visit> void Chip::everyModel(Visit visit)
{
    visit(leds, "leds");
    visit(mac, "mac");
    visit(stp, "stp");
    visit(vlan, "vlan");
    visit(trunk, "trunk");
    visit(ports, "ports");
    visit(counters, "counters");
    visit(extras, "extras");
    visit(isolation, "isolation");
    visit(acl, "acl");
    visit(qos, "qos");
    visit(meters, "meters");
    visit(storm, "storm");
    visit(rma, "rma");
    visit(drop, "drop");
}

void Chip::powerOn()
{
    revision = kSilicon[unit_].revision;
    fsData = kSilicon[unit_].fsData;
    ports.powerOn();
    assertReset();
}

void Chip::assertReset()
{
    inReset_ = true;
    resetModels();
}

void Chip::releaseReset()
{
    inReset_ = false;
    registers_.preset(kRegChipId, kChipId);
    registers_.preset(kRegRevision, revision);
    registers_.preset(kRegTableStatus, 1);
}

void Chip::resetModels()
{
    registers_.clear();
    everyModel([](auto &model, const char *) { model.reset(); });
    ++resets_;
}

void Chip::restore(const Snapshot &snapshot)
{
    static_cast<Models &>(*this) = snapshot.models;
    registers_ = snapshot.registers;
}

void Chip::dump(nlohmann::json &to) const
{
    to["inReset"] = inReset_;
    to["revision"] = revision;
    to["fsData"] = fmt::format("{:#x}", fsData);
    for (auto [address, value] : registers_.used())
        to["registers"][fmt::format("{:#06x}", address)] = fmt::format("{:#06x}", value);
    const_cast<Chip *>(this)->everyModel([&to](const auto &model, const char *name) {
        nlohmann::json state;
        model.dump(state);
        if (!state.is_null())
            to[name] = std::move(state);
    });
}

} // namespace zrsim
