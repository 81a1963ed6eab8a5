// Bring-up, register access, RGMII, drop reasons, command line, entry and fillers.
#include "chip/chip.h"
#include "chip/rgmii.h"
#include "chip/smi.h"
#include "frame/fmea.h"
#include "frame/func_list.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

// The answer of an operation that answers with a text block: no text counts as its failure.
uint32_t textStatus(char *answer)
{
    if (answer == nullptr)
        return 1;
    zrsim::memory().free(answer);
    return 0;
}

template <class Table, class Filler> uint32_t fill(Filler filler)
{
    Table table{};
    filler(&table);
    return 0;
}

const std::vector<std::string> kUnjudgedInBringUp = {"l2sw_setAsicReg", "l2sw_switch_ahb_read",
                                                     "drv_env_num_get", "l2sw_led_groupConfig_set",
                                                     "l2sw_led_blinkRate_set"};

const bool added = addSweep({
    {.operation = "ZR_COMMON_InitChip",
     .run = [](Outputs &) { return device().ops().common.initChip(1); },
     .tolerated = kUnjudgedInBringUp},
    {.operation = "HAL_CHIP_InitQ9",
     .run = [](Outputs &) { return ZR_OP(HAL_CHIP_InitQ9)(2); },
     .tolerated = kUnjudgedInBringUp},
    {.operation = "HAL_CHIP_LEDInitZr",
     .run = [](Outputs &) { return ZR_OP(HAL_CHIP_LEDInitZr)(1); },
     .tolerated = {"l2sw_led_groupConfig_set"}},
    {.operation = "ZR_COMMON_ChipRegRead",
     .run = [](Outputs &out) { return device().ops().common.chipRegRead(1, 0x1300, out.make<uint32_t>()); }},
    {.operation = "HAL_CHIP_RegReadQ9",
     .run = [](Outputs &out) { return ZR_OP(HAL_CHIP_RegReadQ9)(2, 0x1300, out.make<uint32_t>()); }},
    {.operation = "ZR_COMMON_ChipRegWrite",
     .run = [](Outputs &) { return device().ops().common.chipRegWrite(1, 0x0345, 1); }},
    {.operation = "HAL_CHIP_RegWriteQ9",
     .run = [](Outputs &) { return ZR_OP(HAL_CHIP_RegWriteQ9)(2, 0x0345, 1); }},
    {.operation = "L2sw_SmiRead",
     .run = [](Outputs &out) { return ZR_OP(L2sw_SmiRead)(1, 0x1300, out.make<uint32_t>()); }},
    {.operation = "L2sw_SmiRead",
     .run = [](Outputs &out) { return ZR_OP(L2sw_SmiRead)(2, 0x1300, out.make<uint32_t>()); },
     .repeated = {"HAL_PORT_SmiRead", "HAL_PORT_SmiWrite"}},
    {.operation = "L2sw_SmiWrite", .run = [](Outputs &) { return ZR_OP(L2sw_SmiWrite)(1, 0x0345, 1); }},
    {.operation = "L2sw_Op_Wait",
     .run = [](Outputs &) { return ZR_OP(L2sw_Op_Wait)(2, 31, 14); },
     .repeated = {"HAL_PORT_SmiRead", "HAL_PORT_SmiWrite"}},
    {.operation = "L2sw_RGMIIInit",
     .run =
         [](Outputs &) {
             ZR_OP(L2sw_RGMIIInit)(1);
             return 0U;
         },
     .reportsNothing = true},
    {.operation = "L2sw_RGMIIParamInit",
     .run = [](Outputs &) { return ZR_OP(L2sw_RGMIIParamInit)(1); },
     .reportsNothing = true},
    {.operation = "L2sw_CalRGMIIParam",
     .run =
         [](Outputs &out) {
             ZR_OP(L2sw_CalRGMIIParam)(1, out.make<uint32_t>(), out.make<uint32_t>());
             return 0U;
         },
     .reportsNothing = true},
    {.operation = "L2sw_GetRGMIISpeedLevel",
     .run =
         [](Outputs &out) {
             ZR_OP(L2sw_GetRGMIISpeedLevel)(1, out.make<uint32_t>(), out.make<uint32_t>());
             return 0U;
         },
     .reportsNothing = true},
    {.operation = "Trans2ParamPath", .run = [](Outputs &) { return ZR_OP(Trans2ParamPath)(9); }},
    {.operation = "ZR_COMMON_ChipCaptureDropReasonEnable",
     .run = [](Outputs &) { return textStatus(device().ops().common.chipCaptureDropReasonEnable(1, 3)); },
     .tolerated = {"l2sw_setAsicReg"}},
    {.operation = "HAL_CHIP_DropReasonEnableQ9",
     .run = [](Outputs &) { return textStatus(ZR_OP(HAL_CHIP_DropReasonEnableQ9)(1, 3)); },
     .tolerated = {"l2sw_setAsicReg"}},
    {.operation = "ZR_COMMON_ChipGetDropReason",
     .run = [](Outputs &) { return textStatus(device().ops().common.chipGetDropReason(1, 3)); },
     .tolerated = {"l2sw_getAsicReg"}},
    {.operation = "HAL_CHIP_GetDropReasonQ9",
     .run = [](Outputs &) { return textStatus(ZR_OP(HAL_CHIP_GetDropReasonQ9)(1, 3)); },
     .tolerated = {"l2sw_getAsicReg"}},
    {.operation = "ZR_COMMON_CliCmdPrase",
     .run = [](Outputs &) { return device().ops().common.cliCmdPrase(1, "compare rgmii param"); },
     .reportsNothing = true},
    {.operation = "HAL_CHIP_CliCmdPraseQ9",
     .run = [](Outputs &) { return ZR_OP(HAL_CHIP_CliCmdPraseQ9)(1, "help"); },
     .reportsNothing = true},
    {.operation = "HAL_CHIP_CompareRgmiiParamQ9",
     .run =
         [](Outputs &) {
             ZR_OP(HAL_CHIP_CompareRgmiiParamQ9)(1);
             return 0U;
         },
     .reportsNothing = true},
    {.operation = "ZR_COMMON_FuncListInit",
     .run =
         [](Outputs &) {
             ZR_OP(ZR_COMMON_FuncListInit)(0);
             return 0U;
         },
     .reportsNothing = true},
    {.operation = "ZR_COMMON_FuncInit",
     .run = [](Outputs &) { return fill<ZrCommonOps>(ZR_OP(ZR_COMMON_FuncInit)); }},
    {.operation = "ZR_PORT_FuncInit",
     .run = [](Outputs &) { return fill<ZrPortOps>(ZR_OP(ZR_PORT_FuncInit)); }},
    {.operation = "ZR_MAC_FuncInit", .run = [](Outputs &) { return fill<ZrMacOps>(ZR_OP(ZR_MAC_FuncInit)); }},
    {.operation = "ZR_VLAN_FuncInit",
     .run = [](Outputs &) { return fill<ZrVlanOps>(ZR_OP(ZR_VLAN_FuncInit)); }},
    {.operation = "ZR_QOS_FuncInit", .run = [](Outputs &) { return fill<ZrQosOps>(ZR_OP(ZR_QOS_FuncInit)); }},
    {.operation = "ZR_ACL_FuncInit", .run = [](Outputs &) { return fill<ZrAclOps>(ZR_OP(ZR_ACL_FuncInit)); }},
    {.operation = "ZR_HSEC_FuncInit",
     .run = [](Outputs &) { return fill<ZrHsecOps>(ZR_OP(ZR_HSEC_FuncInit)); }},
    {.operation = "ZR_MC_FuncInit", .run = [](Outputs &) { return fill<ZrMcOps>(ZR_OP(ZR_MC_FuncInit)); }},
    {.operation = "ZR_STORMCTL_FuncInit",
     .run = [](Outputs &) { return fill<ZrStormctlOps>(ZR_OP(ZR_STORMCTL_FuncInit)); }},
    {.operation = "ZR_STP_FuncInit", .run = [](Outputs &) { return fill<ZrStpOps>(ZR_OP(ZR_STP_FuncInit)); }},
    {.operation = "ZR_TRUNK_FuncInit",
     .run = [](Outputs &) { return fill<ZrTrunkOps>(ZR_OP(ZR_TRUNK_FuncInit)); }},
    {.operation = "ZR_FMEA_FuncInit",
     .run = [](Outputs &) { return fill<ZrFmeaOps>(ZR_OP(ZR_FMEA_FuncInit)); }},
    {.operation = "ZR_FMEA_MonitorUnitReg", .run = [](Outputs &) { return ZR_OP(ZR_FMEA_MonitorUnitReg)(1); }},
});

} // namespace
} // namespace zrtest
