// Counters, diagnostics and isolation of ports.
#include "port/port_diag.h"
#include "port/isolation.h"
#include "port/port.h"
#include "port/port_stat.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

constexpr uint32_t kUnit = 1;
constexpr uint32_t kPort = 3;
constexpr uint32_t kTextSize = 2048;

// Readers of the state whose failures the dump shows instead of reporting them.
const std::vector<std::string> kStateReaders = {
    "l2sw_port_adminEnable_get", "l2sw_port_phyStatus_get",          "l2sw_port_macStatus_get",
    "l2sw_port_phyReg_get",      "l2sw_port_phyAutoNegoAbility_get", "l2sw_port_macLocalLoopbackEnable_get",
    "l2sw_switch_ahb_read"};

// A failed read of the latched odrop count adds nothing and fails nothing.
const std::vector<std::string> kOdropRead = {"l2sw_getAsicReg"};

// A dump answers its length; a status is a small number.
uint32_t statusOfLength(uint32_t answer)
{
    return answer > LSW_UNSUPPORTED ? 0 : answer;
}

const bool added = addSweep({
    // Counters.
    {.operation = "HAL_PORT_GetStatisticZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_PORT_GetStatisticZr)(kUnit, kPort, out.make<LswmPortStatistics>());
         },
     .tolerated = kOdropRead},
    {.operation = "ZR_PORT_GetStatistics",
     .run =
         [](Outputs &out) {
             return ZR_OP(ZR_PORT_GetStatistics)(kUnit, kPort, out.make<LswmPortStatistics>());
         },
     .tolerated = kOdropRead},
    {.operation = "HAL_PORT_ClearStatisticsZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PORT_ClearStatisticsZr)(kUnit, kPort); }},
    {.operation = "ZR_PORT_ClearStatistics",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_ClearStatistics)(kUnit, kPort); }},
    {.operation = "HAL_PORT_TranslateHwStatZr",
     .run =
         [](Outputs &out) {
             const SdkPortCounters counters{};
             ZR_OP(HAL_PORT_TranslateHwStatZr)(&counters, out.make<LswmPortStatistics>());
             return 0U;
         }},
    // Texts.
    {.operation = "HAL_PORT_GetDebugInfoZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_PORT_GetDebugInfoZr)(kUnit, kPort, out.make<char>(kTextSize), kTextSize);
         },
     .reportsNothing = true},
    {.operation = "ZR_PORT_GetDebugInfo",
     .run =
         [](Outputs &out) {
             return ZR_OP(ZR_PORT_GetDebugInfo)(kUnit, kPort, out.make<char>(kTextSize), kTextSize);
         },
     .reportsNothing = true},
    {.operation = "HAL_PORT_DumpRegInfo",
     .run =
         [](Outputs &out) {
             return statusOfLength(
                 ZR_OP(HAL_PORT_DumpRegInfo)(kUnit, kPort, out.make<char>(kTextSize), kTextSize));
         },
     .reportsNothing = true},
    {.operation = "HAL_PORT_DumpNormalDebugInfoZr",
     .run =
         [](Outputs &out) {
             return statusOfLength(
                 ZR_OP(HAL_PORT_DumpNormalDebugInfoZr)(kUnit, kPort, out.make<char>(kTextSize), kTextSize));
         },
     .tolerated = kStateReaders},
    {.operation = "HAL_PORT_GetLinkDownPhyRegZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_PORT_GetLinkDownPhyRegZr)(kUnit, kPort, out.make<char>(kTextSize), kTextSize, 0);
         },
     .writesOnFailure = true},
    {.operation = "ZR_GetLinkDownPhyReg",
     .run =
         [](Outputs &out) {
             return ZR_OP(ZR_GetLinkDownPhyReg)(kUnit, kPort, out.make<char>(kTextSize), kTextSize, 0);
         },
     .writesOnFailure = true},
    {.operation = "HAL_PORT_PortDebugInfoGetZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_PORT_PortDebugInfoGetZr)(kUnit, kPort, out.make<PortDebugInfo>());
         },
     .reportsNothing = true},
    // Readings and registers.
    {.operation = "HAL_PORT_GetSnrZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_PORT_GetSnrZr)(kUnit, kPort, out.make<LswmPortSnr>()); }},
    {.operation = "ZR_PORT_GetSnr",
     .run = [](Outputs &out) { return ZR_OP(ZR_PORT_GetSnr)(kUnit, kPort, out.make<LswmPortSnr>()); }},
    {.operation = "HAL_PORT_GetMdixModeZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_PORT_GetMdixModeZr)(kUnit, kPort, out.make<uint32_t>()); },
     .writesOnFailure = true},
    {.operation = "HAL_PORT_RegReadZr",
     .run =
         [](Outputs &out) { return ZR_OP(HAL_PORT_RegReadZr)(kUnit, kPort, 0x30010, out.make<uint16_t>()); }},
    {.operation = "ZR_PORT_RegRead",
     .run =
         [](Outputs &out) { return ZR_OP(ZR_PORT_RegRead)(kUnit, kPort, 0, 0x30010, out.make<uint16_t>()); }},
    {.operation = "HAL_PORT_RegWriteZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PORT_RegWriteZr)(kUnit, kPort, 0x30010, 1); }},
    {.operation = "ZR_PORT_RegWrite",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_RegWrite)(kUnit, kPort, 0, 0x30010, 1); }},
    {.operation = "HAL_PORT_GetKhCheckZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_PORT_GetKhCheckZr)(kUnit, kPort, out.make<uint32_t>()); }},
    {.operation = "ZR_PORT_GetKhCheck",
     .run = [](Outputs &out) { return ZR_OP(ZR_PORT_GetKhCheck)(kUnit, kPort, out.make<uint32_t>()); }},
    {.operation = "HAL_PORT_GetChipIdZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_PORT_GetChipIdZr)(kUnit, kPort, out.make<uint32_t>()); }},
    {.operation = "ZR_PORT_GetChipId",
     .run = [](Outputs &out) { return ZR_OP(ZR_PORT_GetChipId)(kUnit, kPort, out.make<uint32_t>()); }},
    {.operation = "HAL_PORT_SetLEDForceZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PORT_SetLEDForceZr)(kUnit, kPort, 1, 2); }},
    {.operation = "ZR_PORT_SetLEDForce",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_SetLEDForce)(kUnit, kPort, 1, 2); }},
    {.operation = "HAL_PORT_LinkScanWarZr",
     .run = [](Outputs &) { return ZR_OP(HAL_PORT_LinkScanWarZr)(kUnit, kPort); }},
    {.operation = "ZR_PORT_LinkScanWar",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_LinkScanWar)(kUnit, kPort); }},
    // Isolation.
    {.operation = "HAL_PORT_GetIsolateMapZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_PORT_GetIsolateMapZr)(kUnit, kPort, out.make<uint32_t>()); }},
    {.operation = "ZR_PORT_GetIsolateMap",
     .run = [](Outputs &out) { return ZR_OP(ZR_PORT_GetIsolateMap)(kUnit, kPort, out.make<uint32_t>()); }},
    {.operation = "HAL_PORT_SetIsolateZr",
     .run =
         [](Outputs &) {
             const uint32_t permitMap = 0x11;
             return ZR_OP(HAL_PORT_SetIsolateZr)(kUnit, kPort, &permitMap);
         }},
    {.operation = "ZR_PORT_SetIsolate",
     .run =
         [](Outputs &) {
             const uint32_t portMap = 0x6;
             return ZR_OP(ZR_PORT_SetIsolate)(kUnit, kPort, &portMap, 1);
         }},
    {.operation = "ZR_PORT_SetAllIsolate",
     .run = [](Outputs &) { return ZR_OP(ZR_PORT_SetAllIsolate)(kUnit, 1); }},
});

} // namespace
} // namespace zrtest
