// Ports: start-up, PHY settings, loopback, link, counters, diagnostics, isolation.
#include "port/port.h"
#include "port/phy.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

// A port with a PHY, and one without.
const Number phyPort = port(3);
const Number macPort = port(16);

const Number speed = of("speed", 100, {0, 2500, 0xFFFFFFFF});
const Number duplex = of("duplex", 0, {3, 0xFFFFFFFF});
const Number mode = of("mode", ZR_LOOP_PCS, {5, 0xFFFFFFFF});
const LswmPortAbility kEverything = {1, 1, 1, 1, 1, {}, 1, 1, {}};
const uint32_t kMap = 0x6;
constexpr Out kBuffer{2048};
constexpr uint32_t kPaged = 0x30010;

const bool added = addSweeps(
    "port",
    {
        SWEEP(ZR_PORT_Init, unit),
        SWEEP_BOTH(ZR_PORT_SetMaxFrame, HAL_PORT_SetMaxFrameZr, unit, of("size", 1552, {0, 1553, 0xFFFFFFFF})),
        SWEEP_BOTH(ZR_PORT_GetMaxFrame, HAL_PORT_GetMaxFrameZr, unit, out),
        SWEEP_BOTH(ZR_PORT_CpuInit, HAL_PORT_CpuInitZr, unit, macPort, 1),
        SWEEP(HAL_PORT_KhInitZr, unit),
        SWEEP(HAL_PORT_GetValidPortMapZr, unit, out),
        SWEEP_BOTH(ZR_PORT_SetEnable, HAL_PORT_SetEnableZr, unit, phyPort, 1),
        SWEEP_BOTH(ZR_PORT_GetEnable, HAL_PORT_GetEnableZr, unit, phyPort, out),
        SWEEP(ZR_PORT_GetSpeed, unit, phyPort, out),
        SWEEP(HAL_PHY_GetSpeedZr, unit, macPort, out),
        SWEEP(ZR_PORT_GetDuplex, unit, phyPort, out),
        SWEEP(HAL_PHY_GetDuplexZr, unit, macPort, out),
        SWEEP_BOTH(ZR_PORT_SetSpeed, HAL_PHY_SetSpeedZr, unit, phyPort, speed),
        SWEEP_BOTH(ZR_PORT_SetDuplex, HAL_PHY_SetDuplexZr, unit, phyPort, duplex),
        SWEEP_BOTH(ZR_PORT_GetAutonegEnable, HAL_PHY_GetAutonegEnableZr, unit, phyPort, out),
        SWEEP(ZR_PORT_SetAutonegEnable, unit, phyPort, 1),
        SWEEP(HAL_PHY_SetAutonegEnableZr, unit, phyPort, 0),
        SWEEP_BOTH(ZR_PORT_GetAutonegAbility, HAL_PORT_GetAutonegAbilityZr, unit, phyPort, out),
        SWEEP_BOTH(ZR_PORT_GetRemoteAutonegAbility, HAL_PORT_GetAutonegRemoteAbilityZr, unit, phyPort, out),
        SWEEP_BOTH(ZR_PORT_SetAdvert, HAL_PORT_SetAutonegAbilityZr, unit, phyPort, in(kEverything)),
        SWEEP(ZR_PORT_GetLinkStatus, unit, phyPort, out),
        SWEEP(HAL_PHY_GetLinkstatusZr, unit, macPort, out),
        SWEEP(HAL_PHY_GetMacLinkStatusZr, unit, phyPort, out),
        SWEEP(ZR_PORT_LinkEvt, unit, phyPort),
        SWEEP_BOTH(ZR_PORT_GetLoopback, HAL_PORT_GetLoopbackZr, unit, phyPort, out),
        SWEEP(HAL_PORT_GetMacLoopbackZr, unit, phyPort, out),
        SWEEP(HAL_PORT_GetPCSLoopbackZr, unit, phyPort, out),
        SWEEP(HAL_PORT_GetRemoteLoopbackZr, unit, phyPort, out),
        SWEEP_BOTH(ZR_PORT_SetLoopback, HAL_PORT_SetLoopbackZr, unit, phyPort, mode),
        SWEEP(HAL_PORT_SetLoopbackDisableZr, unit, phyPort),
        SWEEP(HAL_PORT_SetMacLoopbackZr, unit, phyPort),
        SWEEP(HAL_PORT_SetPCSLoopbackZr, unit, phyPort),
        SWEEP(HAL_PORT_SetRemoteLoopbackZr, unit, phyPort),
    });

const bool diagnosticsAdded = addSweeps(
    "port_diag", {
                     SWEEP_BOTH(ZR_PORT_GetStatistics, HAL_PORT_GetStatisticZr, unit, phyPort, out),
                     SWEEP_BOTH(ZR_PORT_ClearStatistics, HAL_PORT_ClearStatisticsZr, unit, phyPort),
                     SWEEP(HAL_PORT_TranslateHwStatZr, in(SdkPortCounters{}), out),
                     SWEEP_BOTH(ZR_PORT_GetDebugInfo, HAL_PORT_GetDebugInfoZr, unit, phyPort, kBuffer, 2048),
                     SWEEP(HAL_PORT_DumpRegInfo, unit, phyPort, kBuffer, 2048),
                     SWEEP(HAL_PORT_DumpNormalDebugInfoZr, unit, phyPort, kBuffer, 2048),
                     SWEEP_BOTH(ZR_GetLinkDownPhyReg, HAL_PORT_GetLinkDownPhyRegZr, unit, phyPort, kBuffer,
                                2048, of("offset", 0, {2048, 0xFFFFFFFF})),
                     SWEEP(HAL_PORT_PortDebugInfoGetZr, unit, phyPort, out),
                     SWEEP_BOTH(ZR_PORT_GetSnr, HAL_PORT_GetSnrZr, unit, phyPort, out),
                     SWEEP(HAL_PORT_GetMdixModeZr, unit, phyPort, out),
                     SWEEP(ZR_PORT_RegRead, unit, phyPort, 0, kPaged, out),
                     SWEEP(HAL_PORT_RegReadZr, unit, phyPort, kPaged, out),
                     SWEEP(ZR_PORT_RegWrite, unit, phyPort, 0, kPaged, 1),
                     SWEEP(HAL_PORT_RegWriteZr, unit, phyPort, kPaged, 1),
                     SWEEP_BOTH(ZR_PORT_GetKhCheck, HAL_PORT_GetKhCheckZr, unit, phyPort, out),
                     SWEEP_BOTH(ZR_PORT_GetChipId, HAL_PORT_GetChipIdZr, unit, phyPort, out),
                     SWEEP_BOTH(ZR_PORT_SetLEDForce, HAL_PORT_SetLEDForceZr, unit, phyPort, 1, 2),
                     SWEEP_BOTH(ZR_PORT_LinkScanWar, HAL_PORT_LinkScanWarZr, unit, phyPort),
                     SWEEP_BOTH(ZR_PORT_GetIsolateMap, HAL_PORT_GetIsolateMapZr, unit, phyPort, out),
                     SWEEP(ZR_PORT_SetIsolate, unit, phyPort, in(kMap), 1),
                     SWEEP(HAL_PORT_SetIsolateZr, unit, phyPort, in(kMap)),
                     SWEEP(ZR_PORT_SetAllIsolate, unit, 1),
                 });

} // namespace
} // namespace zrtest
