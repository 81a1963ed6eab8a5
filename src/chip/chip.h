// The chip as a whole: bring-up, register access, drop-reason capture, chip command line.
//
// A ZR_COMMON_ operation calls the HAL_CHIP_ operation below it and returns what that returns. Chip registers
// are reached through calls that take the unit in 8 bits: a unit above 255 acts on its low 8 bits there.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

// ---- bring-up -------------------------------------------------------------------------------

// The identifier by which the board's reset service knows each unit's chip.
ZR_EXPORT extern const uint32_t g_vesperUnitMap[LSWM_UNITS];

// Brings a unit (0 to 2) into service: reset through the board in two phases, a delay of 20 in the platform's
// unit, registration of the SDK's services (SMI transport, mutexes, text output), SDK initialisation, RGMII,
// LEDs; ends with a revision line that is printed whatever the trace level. May be repeated; nothing is
// remembered. LSW_INVALID_ARGUMENT, silently, for another unit: nothing is touched. LSW_CHIP_FAILED when the
// sum of the two reset statuses is not 0 (32 bits: a sum that wraps to 0 counts as success) or
// l2sw_switch_init failed: printed under LSW_MODULE_CHIP with the sum or the SDK's status, and the steps after
// it are left out. The statuses of service registration, RGMII and LEDs are ignored.
ZR_EXPORT uint32_t ZR_COMMON_InitChip(uint32_t unit);
ZR_EXPORT uint32_t HAL_CHIP_InitQ9(uint32_t unit);

// Puts the LED groups 0 to 2 into mode 2 and the blink rate to 5. All four calls are made; the status is the
// last one's, unchanged and unprinted.
ZR_EXPORT uint32_t HAL_CHIP_LEDInitZr(uint8_t unit);

// ---- register access ------------------------------------------------------------------------

// One chip register by the SDK's own access. All arguments are passed unchecked, a null `value` too; the
// SDK's status is returned unchanged and nothing is printed.
ZR_EXPORT uint32_t ZR_COMMON_ChipRegRead(uint32_t unit, uint32_t reg, uint32_t *value);
ZR_EXPORT uint32_t HAL_CHIP_RegReadQ9(uint32_t unit, uint32_t reg, uint32_t *value);
ZR_EXPORT uint32_t ZR_COMMON_ChipRegWrite(uint32_t unit, uint32_t reg, uint32_t value);
ZR_EXPORT uint32_t HAL_CHIP_RegWriteQ9(uint32_t unit, uint32_t reg, uint32_t value);

// ---- why a port drops frames ----------------------------------------------------------------

// Each returns a text in a 256-byte block of the manager's memory, which the caller releases with
// LSWM_MemFree. Null: there was no memory (the chip is not touched, nothing is printed), or the text could
// not be formatted (printed under LSW_MODULE_PORT with LSW_CHIP_FAILED). Failing register accesses go
// unnoticed.

// Selects `port` for the capture and starts it. The selection register holds one port: the next start
// replaces it.
ZR_EXPORT char *ZR_COMMON_ChipCaptureDropReasonEnable(uint32_t unit, uint32_t port);
ZR_EXPORT char *HAL_CHIP_DropReasonEnableQ9(uint32_t unit, uint32_t port);

// Reads the captured result, in hexadecimal; `port` appears in the text only. A result that cannot be read
// shows as 0 unless the SDK stored something.
ZR_EXPORT char *ZR_COMMON_ChipGetDropReason(uint32_t unit, uint32_t port);
ZR_EXPORT char *HAL_CHIP_GetDropReasonQ9(uint32_t unit, uint32_t port);

// ---- chip command line ----------------------------------------------------------------------

// Runs one command line: one that starts with "compare rgmii param" compares the RGMII parameters, any other
// is passed whole to the board's interpreter. LSW_OK whatever came of it; LSW_NULL_POINTER, silently, for a
// null command.
ZR_EXPORT uint32_t ZR_COMMON_CliCmdPrase(uint32_t unit, const char *command);
ZR_EXPORT uint32_t HAL_CHIP_CliCmdPraseQ9(uint32_t unit, const char *command);

// Prints on the manager's command line whether the unit's RGMII2 parameter register holds the value of the
// environment variable lsw<unit>_vq9_rgmii2_para, and what the RGMII1 register holds; without the variable
// only that it is missing. A register that cannot be read shows as 0 unless the SDK stored something.
ZR_EXPORT void HAL_CHIP_CompareRgmiiParamQ9(uint32_t unit);

ZR_EXTERN_C_END
