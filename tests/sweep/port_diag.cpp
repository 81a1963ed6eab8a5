// Counters, diagnostics and isolation of ports.
#include "port/port.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

constexpr uint32_t kSize = 2048; // of a text
constexpr uint32_t kPaged = 0x30010;
const uint32_t map = 0x6;
const SdkPortCounters counters{};

// An operation on port 3 of unit 1; further arguments may take outputs from `out`.
#define ON_PORT(name, ...)                                                                                     \
    SweepCase                                                                                                  \
    {                                                                                                          \
        .operation = #name,                                                                                    \
        .run = []([[maybe_unused]] Outputs &out) { return ZR_OP(name)(1, 3 __VA_OPT__(, ) __VA_ARGS__); }      \
    }

SweepCase tolerating(SweepCase sweep, std::vector<std::string> calls)
{
    sweep.tolerated = std::move(calls);
    return sweep;
}

SweepCase silent(SweepCase sweep)
{
    sweep.reportsNothing = true;
    return sweep;
}

SweepCase writing(SweepCase sweep)
{
    sweep.writesOnFailure = true;
    return sweep;
}

// A dump answers its length; a status is a small number.
SweepCase lengthy(SweepCase sweep)
{
    sweep.run = [run = sweep.run](Outputs &out) {
        const uint32_t answer = run(out);
        return answer > LSW_UNSUPPORTED ? 0 : answer;
    };
    return sweep;
}

const bool added = addSweep({
    // A latched odrop count that cannot be read adds nothing.
    tolerating(ON_PORT(HAL_PORT_GetStatisticZr, out.make<LswmPortStatistics>()), {"l2sw_getAsicReg"}),
    tolerating(ON_PORT(ZR_PORT_GetStatistics, out.make<LswmPortStatistics>()), {"l2sw_getAsicReg"}),
    ON_PORT(HAL_PORT_ClearStatisticsZr),
    ON_PORT(ZR_PORT_ClearStatistics),
    {"HAL_PORT_TranslateHwStatZr",
     [](Outputs &out) {
         ZR_OP(HAL_PORT_TranslateHwStatZr)(&counters, out.make<LswmPortStatistics>());
         return 0U;
     }},
    silent(ON_PORT(HAL_PORT_GetDebugInfoZr, out.make<char>(kSize), kSize)),
    silent(ON_PORT(ZR_PORT_GetDebugInfo, out.make<char>(kSize), kSize)),
    silent(lengthy(ON_PORT(HAL_PORT_DumpRegInfo, out.make<char>(kSize), kSize))),
    // What cannot be read is shown as such; without SNR readings there is no text.
    tolerating(lengthy(ON_PORT(HAL_PORT_DumpNormalDebugInfoZr, out.make<char>(kSize), kSize)),
               {"l2sw_port_adminEnable_get", "l2sw_port_phyStatus_get", "l2sw_port_macStatus_get",
                "l2sw_port_phyReg_get", "l2sw_port_phyAutoNegoAbility_get",
                "l2sw_port_macLocalLoopbackEnable_get", "l2sw_switch_ahb_read"}),
    writing(ON_PORT(HAL_PORT_GetLinkDownPhyRegZr, out.make<char>(kSize), kSize, 0)),
    writing(ON_PORT(ZR_GetLinkDownPhyReg, out.make<char>(kSize), kSize, 0)),
    silent(ON_PORT(HAL_PORT_PortDebugInfoGetZr, out.make<PortDebugInfo>())),
    ON_PORT(HAL_PORT_GetSnrZr, out.make<LswmPortSnr>()),
    ON_PORT(ZR_PORT_GetSnr, out.make<LswmPortSnr>()),
    writing(ON_PORT(HAL_PORT_GetMdixModeZr, out.make<uint32_t>())),
    ON_PORT(HAL_PORT_RegReadZr, kPaged, out.make<uint16_t>()),
    ON_PORT(ZR_PORT_RegRead, 0, kPaged, out.make<uint16_t>()),
    ON_PORT(HAL_PORT_RegWriteZr, kPaged, 1),
    ON_PORT(ZR_PORT_RegWrite, 0, kPaged, 1),
    ON_PORT(HAL_PORT_GetKhCheckZr, out.make<uint32_t>()),
    ON_PORT(ZR_PORT_GetKhCheck, out.make<uint32_t>()),
    ON_PORT(HAL_PORT_GetChipIdZr, out.make<uint32_t>()),
    ON_PORT(ZR_PORT_GetChipId, out.make<uint32_t>()),
    ON_PORT(HAL_PORT_SetLEDForceZr, 1, 2),
    ON_PORT(ZR_PORT_SetLEDForce, 1, 2),
    ON_PORT(HAL_PORT_LinkScanWarZr),
    ON_PORT(ZR_PORT_LinkScanWar),
    ON_PORT(HAL_PORT_GetIsolateMapZr, out.make<uint32_t>()),
    ON_PORT(ZR_PORT_GetIsolateMap, out.make<uint32_t>()),
    ON_PORT(HAL_PORT_SetIsolateZr, &map),
    ON_PORT(ZR_PORT_SetIsolate, &map, 1),
    {"ZR_PORT_SetAllIsolate", [](Outputs &) { return ZR_OP(ZR_PORT_SetAllIsolate)(1, 1); }},
});

} // namespace
} // namespace zrtest
