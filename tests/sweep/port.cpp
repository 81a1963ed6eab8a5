// Ports: start-up, PHY settings, loopback and link.
#include "port/port.h"
#include "port/phy.h"
#include "tests/sweep/sweep.h"

namespace
{

using zrtest::Outputs;

// A port with a PHY, and one without.
constexpr uint32_t kPhyPort = 3;
constexpr uint32_t kMacPort = 16;

// Speed and duplex are set even when the abilities before could not be read.
const std::vector<std::string> kReadFirst = {"l2sw_port_phyForceModeAbility_get"};

const LswmPortAbility kEverything = {1, 1, 1, 1, 1, {}, 1, 1, {}};

// A getter of one value, at one port.
template <class Get> auto reads(Get *, const char *name, uint32_t port = kPhyPort)
{
    return
        [name, port](Outputs &out) { return (*zrtest::operation<Get>(name))(1, port, out.make<uint32_t>()); };
}
#define READS(name, ...) reads(static_cast<decltype(&name)>(nullptr), #name __VA_OPT__(, ) __VA_ARGS__)

const bool added = zrtest::addSweep({
    {"ZR_PORT_Init", [](Outputs &) { return ZR_OP(ZR_PORT_Init)(1); }},
    {"ZR_PORT_SetMaxFrame", [](Outputs &) { return ZR_OP(ZR_PORT_SetMaxFrame)(1, 1552); }},
    {"HAL_PORT_SetMaxFrameZr", [](Outputs &) { return ZR_OP(HAL_PORT_SetMaxFrameZr)(1, 1552); }},
    {"ZR_PORT_GetMaxFrame", [](Outputs &out) { return ZR_OP(ZR_PORT_GetMaxFrame)(1, out.make<uint32_t>()); }},
    {"HAL_PORT_GetMaxFrameZr",
     [](Outputs &out) { return ZR_OP(HAL_PORT_GetMaxFrameZr)(1, out.make<uint32_t>()); }},
    {"ZR_PORT_CpuInit", [](Outputs &) { return ZR_OP(ZR_PORT_CpuInit)(1, kMacPort, 1); }},
    {"HAL_PORT_CpuInitZr", [](Outputs &) { return ZR_OP(HAL_PORT_CpuInitZr)(1, kMacPort, 1); }},
    {"HAL_PORT_KhInitZr", [](Outputs &) { return ZR_OP(HAL_PORT_KhInitZr)(1); }},
    {"HAL_PORT_GetValidPortMapZr",
     [](Outputs &out) { return ZR_OP(HAL_PORT_GetValidPortMapZr)(1, out.make<uint32_t>()); }},

    {"ZR_PORT_SetEnable", [](Outputs &) { return ZR_OP(ZR_PORT_SetEnable)(1, kPhyPort, 1); }},
    {"HAL_PORT_SetEnableZr", [](Outputs &) { return ZR_OP(HAL_PORT_SetEnableZr)(1, kMacPort, 1); }},
    {"ZR_PORT_GetEnable", READS(ZR_PORT_GetEnable)},
    {"HAL_PORT_GetEnableZr", READS(HAL_PORT_GetEnableZr, kMacPort)},

    {"ZR_PORT_GetSpeed", READS(ZR_PORT_GetSpeed)},
    {"HAL_PHY_GetSpeedZr", READS(HAL_PHY_GetSpeedZr, kMacPort)},
    {"ZR_PORT_GetDuplex", READS(ZR_PORT_GetDuplex)},
    {"HAL_PHY_GetDuplexZr", READS(HAL_PHY_GetDuplexZr, kMacPort)},
    {.operation = "ZR_PORT_SetSpeed",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_SetSpeed)(1, kPhyPort, 100); },
     .tolerated = kReadFirst},
    {.operation = "HAL_PHY_SetSpeedZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PHY_SetSpeedZr)(1, kPhyPort, 1000); },
     .tolerated = kReadFirst},
    {.operation = "ZR_PORT_SetDuplex",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_SetDuplex)(1, kPhyPort, 0); },
     .tolerated = kReadFirst},
    {.operation = "HAL_PHY_SetDuplexZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PHY_SetDuplexZr)(1, kPhyPort, 2); },
     .tolerated = kReadFirst},
    {"ZR_PORT_GetAutonegEnable", READS(ZR_PORT_GetAutonegEnable)},
    {"HAL_PHY_GetAutonegEnableZr", READS(HAL_PHY_GetAutonegEnableZr)},
    {"ZR_PORT_SetAutonegEnable", [](Outputs &) { return ZR_OP(ZR_PORT_SetAutonegEnable)(1, kPhyPort, 1); }},
    {"HAL_PHY_SetAutonegEnableZr", [](Outputs &) { return ZR_OP(HAL_PHY_SetAutonegEnableZr)(1, kPhyPort, 0); }},

    {.operation = "ZR_PORT_GetAutonegAbility",
     .run =
         [](Outputs &out) {
             return ZR_OP(ZR_PORT_GetAutonegAbility)(1, kPhyPort, out.make<LswmPortAbility>());
         },
     .writesOnFailure = true},
    {.operation = "HAL_PORT_GetAutonegAbilityZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_PORT_GetAutonegAbilityZr)(1, kPhyPort, out.make<LswmPortAbility>());
         },
     .writesOnFailure = true},
    {.operation = "ZR_PORT_GetRemoteAutonegAbility",
     .run =
         [](Outputs &out) {
             return ZR_OP(ZR_PORT_GetRemoteAutonegAbility)(1, kPhyPort, out.make<LswmPortAbility>());
         },
     .writesOnFailure = true},
    {.operation = "HAL_PORT_GetAutonegRemoteAbilityZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_PORT_GetAutonegRemoteAbilityZr)(1, kPhyPort, out.make<LswmPortAbility>());
         },
     .writesOnFailure = true},
    {"ZR_PORT_SetAdvert", [](Outputs &) { return ZR_OP(ZR_PORT_SetAdvert)(1, kPhyPort, &kEverything); }},
    {"HAL_PORT_SetAutonegAbilityZr",
     [](Outputs &) { return ZR_OP(HAL_PORT_SetAutonegAbilityZr)(1, kPhyPort, &kEverything); }},

    {"ZR_PORT_GetLoopback", READS(ZR_PORT_GetLoopback)},
    {"HAL_PORT_GetLoopbackZr", READS(HAL_PORT_GetLoopbackZr)},
    {"HAL_PORT_GetMacLoopbackZr", READS(HAL_PORT_GetMacLoopbackZr)},
    {"HAL_PORT_GetPCSLoopbackZr", READS(HAL_PORT_GetPCSLoopbackZr)},
    {"HAL_PORT_GetRemoteLoopbackZr", READS(HAL_PORT_GetRemoteLoopbackZr)},
    // A loop mode that the chip did not take is printed and not returned.
    {.operation = "ZR_PORT_SetLoopback",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_SetLoopback)(1, kPhyPort, ZR_LOOP_PCS); },
     .reportsNothing = true},
    {.operation = "HAL_PORT_SetLoopbackZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PORT_SetLoopbackZr)(1, kPhyPort, ZR_LOOP_NONE); },
     .reportsNothing = true},
    {.operation = "HAL_PORT_SetLoopbackDisableZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PORT_SetLoopbackDisableZr)(1, kPhyPort); },
     .reportsNothing = true},
    {"HAL_PORT_SetMacLoopbackZr", [](Outputs &) { return ZR_OP(HAL_PORT_SetMacLoopbackZr)(1, kPhyPort); }},
    {"HAL_PORT_SetPCSLoopbackZr", [](Outputs &) { return ZR_OP(HAL_PORT_SetPCSLoopbackZr)(1, kPhyPort); }},
    {"HAL_PORT_SetRemoteLoopbackZr",
     [](Outputs &) { return ZR_OP(HAL_PORT_SetRemoteLoopbackZr)(1, kPhyPort); }},

    {.operation = "ZR_PORT_GetLinkStatus", .run = READS(ZR_PORT_GetLinkStatus), .writesOnFailure = true},
    {.operation = "HAL_PHY_GetLinkstatusZr",
     .run = READS(HAL_PHY_GetLinkstatusZr, kMacPort),
     .writesOnFailure = true},
    {"HAL_PHY_GetMacLinkStatusZr", READS(HAL_PHY_GetMacLinkStatusZr)},
    {"ZR_PORT_LinkEvt", [](Outputs &) { return ZR_OP(ZR_PORT_LinkEvt)(1, kPhyPort); }},
});

} // namespace
