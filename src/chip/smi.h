// Chip registers over the SMI (MDIO) bus: the transport that the chip SDK is given for units 1 and 2.
//
// A chip shows five indirect-access registers on the bus. An access selects their page, gives the chip
// register's address, gives the data of a write, and starts the command; a read then fetches the result.
// On chip revision 3 each of these writes is confirmed by reading it back.
//
// Statuses of transfers are added in 32 bits: a sum that wraps to 0 counts as success. Lines are logged under
// LSW_MODULE_SMI unless said otherwise.
#pragma once

#include "platform/manager.h"

ZR_EXTERN_C_BEGIN

// SMI address of each unit's indirect-access registers.
ZR_EXPORT extern const uint32_t phyAddr[LSWM_UNITS];

// Writes SMI register `reg` of a unit and reads it back, up to six times without a delay, until it holds
// `value`; only a read that succeeded confirms. Returns the status sum of the confirmed attempt's two
// transfers, which is not 0 when its write failed; LSW_CHIP_FAILED when all attempts are spent;
// LSW_INVALID_ARGUMENT, silently and without a bus access, for a unit above 2. Prints each attempt whose sum
// is not 0, and the timeout, with LSW_CHIP_FAILED.
ZR_EXPORT uint32_t L2sw_Op_Wait(uint8_t unit, uint32_t reg, uint16_t value);

// Reads or writes one chip register of unit 1 or 2: the low 16 bits of `address`, 16 bits of data (a read
// returns them zero-extended, a write takes the low 16 bits of `data`). LSW_UNSUPPORTED for any other unit,
// printed with LSW_INVALID_ARGUMENT (that of the write under LSW_MODULE_PORT); LSW_NULL_POINTER, silently,
// for a null `value`; both before any bus access. LSW_CHIP_FAILED, printed with the sum of the four statuses,
// when a transfer or a confirmation failed: all are made all the same, `*value` stays unwritten, and whether
// the register changed is not known.
ZR_EXPORT uint32_t L2sw_SmiRead(uint8_t unit, uint32_t address, uint32_t *value);
ZR_EXPORT uint32_t L2sw_SmiWrite(uint8_t unit, uint32_t address, uint32_t data);

ZR_EXTERN_C_END
