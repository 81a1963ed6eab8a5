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

const bool added = addSweeps(
    "chip", {
                SWEEP(ZR_COMMON_InitChip, unit),
                SWEEP(HAL_CHIP_InitQ9, onUnit(2)),
                SWEEP(HAL_CHIP_LEDInitZr, unit),
                SWEEP(ZR_COMMON_ChipRegRead, unit, 0x1300, out),
                SWEEP(HAL_CHIP_RegReadQ9, unit, 0x1300, out),
                SWEEP_BOTH(ZR_COMMON_ChipRegWrite, HAL_CHIP_RegWriteQ9, unit, 0x0345, 1),
                SWEEP(L2sw_SmiRead, unit, 0x1300, out),
                SWEEP(L2sw_SmiRead, onUnit(2), 0x1300, out),
                SWEEP(L2sw_SmiWrite, unit, 0x0345, 1),
                SWEEP(L2sw_Op_Wait, onUnit(2), 31, 14),
                SWEEP(L2sw_RGMIIInit, unit),
                SWEEP(L2sw_RGMIIParamInit, unit),
                SWEEP(L2sw_CalRGMIIParam, unit, out, out),
                SWEEP(L2sw_GetRGMIISpeedLevel, unit, out, out),
                SWEEP(Trans2ParamPath, of("value", 9, {0x80000000, 0xFFFFFFFF})),
                SWEEP_BOTH(ZR_COMMON_ChipCaptureDropReasonEnable, HAL_CHIP_DropReasonEnableQ9, unit, port(3)),
                SWEEP_BOTH(ZR_COMMON_ChipGetDropReason, HAL_CHIP_GetDropReasonQ9, unit, port(3)),
                SWEEP(ZR_COMMON_CliCmdPrase, unit, "compare rgmii param"),
                SWEEP(HAL_CHIP_CliCmdPraseQ9, unit, "help"),
                SWEEP(HAL_CHIP_CompareRgmiiParamQ9, unit),
                SWEEP(ZR_COMMON_FuncListInit, 0),
                SWEEP(ZR_COMMON_FuncInit, out),
                SWEEP(ZR_PORT_FuncInit, out),
                SWEEP(ZR_MAC_FuncInit, out),
                SWEEP(ZR_VLAN_FuncInit, out),
                SWEEP(ZR_QOS_FuncInit, out),
                SWEEP(ZR_ACL_FuncInit, out),
                SWEEP(ZR_HSEC_FuncInit, out),
                SWEEP(ZR_MC_FuncInit, out),
                SWEEP(ZR_STORMCTL_FuncInit, out),
                SWEEP(ZR_STP_FuncInit, out),
                SWEEP(ZR_TRUNK_FuncInit, out),
                SWEEP(ZR_FMEA_FuncInit, out),
                SWEEP(ZR_FMEA_MonitorUnitReg, unit),
            });

} // namespace
} // namespace zrtest
