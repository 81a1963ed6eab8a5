// Chip registers over the SMI (MDIO) bus: the transport that the chip SDK is given for units 1 and 2.
//
// A chip shows five indirect-access registers on the bus. An access selects their page, gives the chip
// register's address, gives the data of a write, and starts the command; a read then fetches the result.
// On chip revision 3 each of these writes is confirmed by reading it back.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

// SMI address of each unit's indirect-access registers.
ZR_EXPORT extern const uint32_t phyAddr[LSWM_UNITS];

// Writes SMI register `reg` of a unit and reads it back, up to six times, until it holds `value`; only a
// read that succeeded confirms. Returns the status sum of the confirmed attempt's two transfers;
// LSW_CHIP_FAILED when all attempts are spent; LSW_INVALID_ARGUMENT without a bus access when the unit is
// not 0 to 2. Prints each attempt whose sum is not 0, and the timeout.
ZR_EXPORT uint32_t L2sw_Op_Wait(uint8_t unit, uint32_t reg, uint16_t value);

// Reads or writes one chip register of unit 1 or 2: the low 16 bits of `address`, the low 16 bits of
// `data`. All transfers are made even when one fails. LSW_UNSUPPORTED: any other unit, the bus is left
// alone; LSW_CHIP_FAILED: a transfer or a confirmation failed, `*value` is not written. Both are printed.
ZR_EXPORT uint32_t L2sw_SmiRead(uint8_t unit, uint32_t address, uint32_t *value);
ZR_EXPORT uint32_t L2sw_SmiWrite(uint8_t unit, uint32_t address, uint32_t data);

ZR_EXTERN_C_END
