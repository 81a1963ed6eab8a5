// The chip as a whole: bring-up, register access, drop-reason capture, chip command line.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

// ---- bring-up -------------------------------------------------------------------------------

// The identifier by which the board's reset service knows each unit's chip.
ZR_EXPORT extern const uint32_t g_vesperUnitMap[LSWM_UNITS];

// Brings a unit (0 to 2) into service: reset through the board, a delay of 20 in the platform's unit,
// registration of the SDK's services (SMI transport, mutexes, text output), SDK initialisation, RGMII, LEDs;
// ends with a revision line that is printed whatever the trace level. May be repeated; nothing is remembered.
// LSW_INVALID_ARGUMENT: no such unit, nothing is touched; LSW_CHIP_FAILED: a reset call or l2sw_switch_init
// failed (printed), the steps after it are left out. Failing services, RGMII and LEDs are not looked at.
ZR_EXPORT uint32_t ZR_COMMON_InitChip(uint32_t unit);
ZR_EXPORT uint32_t HAL_CHIP_InitQ9(uint32_t unit);

// Puts the LED groups 0 to 2 into mode 2 and the blink rate to 5. Returns the SDK's status of the last
// of the four calls; all are made.
ZR_EXPORT uint32_t HAL_CHIP_LEDInitZr(uint8_t unit);

// ---- register access ------------------------------------------------------------------------

// One chip register, 16-bit address, by the SDK's own access: its status comes back unchanged and
// nothing is printed. The SDK takes the low 8 bits of `unit`.
ZR_EXPORT uint32_t ZR_COMMON_ChipRegRead(uint32_t unit, uint32_t reg, uint32_t *value);
ZR_EXPORT uint32_t ZR_COMMON_ChipRegWrite(uint32_t unit, uint32_t reg, uint32_t value);
ZR_EXPORT uint32_t HAL_CHIP_RegReadQ9(uint32_t unit, uint32_t reg, uint32_t *value);
ZR_EXPORT uint32_t HAL_CHIP_RegWriteQ9(uint32_t unit, uint32_t reg, uint32_t value);

// ---- why a port drops frames ----------------------------------------------------------------

// Answers are texts in 256-byte blocks of the manager's memory: the caller releases them with
// LSWM_MemFree. Null: there was no memory (the chip is not touched, nothing is printed) or the text did
// not fit (printed). Failing register accesses go unnoticed.

// Starts the capture on `port`; one port at a time is captured.
ZR_EXPORT char *ZR_COMMON_ChipCaptureDropReasonEnable(uint32_t unit, uint32_t port);
ZR_EXPORT char *HAL_CHIP_DropReasonEnableQ9(uint32_t unit, uint32_t port);

// Tells the captured result; `port` appears in the text only. A result that cannot be read shows as 0.
ZR_EXPORT char *ZR_COMMON_ChipGetDropReason(uint32_t unit, uint32_t port);
ZR_EXPORT char *HAL_CHIP_GetDropReasonQ9(uint32_t unit, uint32_t port);

// ---- chip command line ----------------------------------------------------------------------

// Runs one command line: one that starts with "compare rgmii param" compares the RGMII parameters, any
// other goes whole to the board's interpreter. LSW_OK whatever came of it; LSW_NULL_POINTER for a null
// command.
ZR_EXPORT uint32_t ZR_COMMON_CliCmdPrase(uint32_t unit, const char *command);
ZR_EXPORT uint32_t HAL_CHIP_CliCmdPraseQ9(uint32_t unit, const char *command);

// Prints on the manager's command line whether the unit's RGMII2 parameter register holds what the
// environment asks for, and what the RGMII1 register holds. Registers that cannot be read show as 0.
ZR_EXPORT void HAL_CHIP_CompareRgmiiParamQ9(uint32_t unit);

ZR_EXTERN_C_END
