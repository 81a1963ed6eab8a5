// Services of the board: chip reset, delay, SMI bus, numeric environment, chip command interpreter.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// One phase of a chip reset: `chip` is the identifier by which the board knows the chip (g_vesperUnitMap);
// the library passes `scope` 0xFFFFFFFF and the phases 0 and 1, in this order. 0 on success.
uint32_t VESPER_ADPAPI_ResetChip(uint32_t scope, uint32_t chip, uint32_t phase);

// Suspends the calling task for `duration`, whose unit is the platform's.
void PAL_TaskDelay(uint32_t duration);

// One SMI (MDIO) write or read: `one` is always 1, `address` the device address (0 to 31), `reg` the
// register (0 to 31). 0 on success; what a failed read leaves in `*value` is not known.
uint32_t HAL_PORT_SmiWrite(uint32_t one, uint32_t address, uint32_t reg, uint16_t value);
uint32_t HAL_PORT_SmiRead(uint32_t one, uint32_t address, uint32_t reg, uint16_t *value);

// Reads a numeric environment variable. 0 when it exists and holds a number. The library passes 16 as the
// third argument, which is assumed to be the base of the number.
uint32_t drv_env_num_get(const char *name, uint32_t *value, uint32_t sixteen);

// Runs one line of the chip's command interpreter. The library ignores the result.
uint32_t excute_command(uint32_t unit, const char *line);

ZR_EXTERN_C_END
