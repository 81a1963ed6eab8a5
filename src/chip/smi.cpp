#include "chip/smi.h"

#include "base/print.h"
#include "platform/board.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

const uint32_t phyAddr[LSWM_UNITS] = {0, 0, 29};

namespace
{

// Indirect-access registers.
constexpr uint32_t kSmiCommand = 21;
constexpr uint32_t kSmiAddress = 23;
constexpr uint32_t kSmiWriteData = 24;
constexpr uint32_t kSmiReadData = 25;
constexpr uint32_t kSmiPage = 31;

constexpr uint16_t kAccessPage = 14;
constexpr uint16_t kCommandRead = 1;
constexpr uint16_t kCommandWrite = 3;

constexpr uint32_t kConfirmAttempts = 6;
constexpr uint8_t kConfirmedRevision = 3;

// The units that have an SMI transport.
bool isServed(uint8_t unit)
{
    return unit == 1 || unit == 2;
}

// Writes one indirect-access register of a served unit, confirmed on the revision that needs it.
uint32_t writeIndirect(uint8_t unit, uint32_t reg, uint16_t value)
{
    if (l2sw_eco[unit] == kConfirmedRevision)
        return L2sw_Op_Wait(unit, reg, value);
    return HAL_PORT_SmiWrite(1, phyAddr[unit], reg, value);
}

} // namespace

uint32_t L2sw_Op_Wait(uint8_t unit, uint32_t reg, uint16_t value)
{
    if (unit >= LSWM_UNITS)
        return LSW_INVALID_ARGUMENT;

    uint16_t lastRead = 0;
    for (uint32_t attempt = 0; attempt < kConfirmAttempts; ++attempt) {
        // A read that stores nothing must not confirm.
        uint16_t readBack = static_cast<uint16_t>(~value);
        const uint32_t writeRet = HAL_PORT_SmiWrite(1, phyAddr[unit], reg, value);
        const uint32_t readRet = HAL_PORT_SmiRead(1, phyAddr[unit], reg, &readBack);
        const uint32_t ret = writeRet + readRet;
        if (ret != 0)
            ZR_PRINT_FAILED(SMI, LSW_CHIP_FAILED, "l2sw Op_Wait failed, unit %u reg 0x%x op 0x%x", unit, reg,
                            value);
        if (readRet != 0)
            continue;
        if (readBack == value)
            return ret;
        lastRead = readBack;
    }
    return ZR_FAILED(SMI, LSW_CHIP_FAILED, "l2sw wait timeout unit %u reg 0x%x op 0x%x val 0x%x", unit, reg,
                     value, lastRead);
}

uint32_t L2sw_SmiRead(uint8_t unit, uint32_t address, uint32_t *value)
{
    if (!isServed(unit)) {
        ZR_PRINT_FAILED(SMI, LSW_INVALID_ARGUMENT, "smi read fail invalid unit %u", unit);
        return LSW_UNSUPPORTED;
    }
    if (value == nullptr)
        return LSW_NULL_POINTER;
    uint16_t result = 0;
    uint32_t ret = writeIndirect(unit, kSmiPage, kAccessPage);
    ret += writeIndirect(unit, kSmiAddress, static_cast<uint16_t>(address));
    ret += writeIndirect(unit, kSmiCommand, kCommandRead);
    ret += HAL_PORT_SmiRead(1, phyAddr[unit], kSmiReadData, &result);
    if (ret != 0)
        return ZR_CHIP_FAILED(SMI, ret, "Chip smi read unit %u addr 0x%x", unit, address);
    *value = result;
    return LSW_OK;
}

uint32_t L2sw_SmiWrite(uint8_t unit, uint32_t address, uint32_t data)
{
    if (!isServed(unit)) {
        ZR_PRINT_FAILED(PORT, LSW_INVALID_ARGUMENT, "smi write fail invalid unit %u", unit);
        return LSW_UNSUPPORTED;
    }
    uint32_t ret = writeIndirect(unit, kSmiPage, kAccessPage);
    ret += writeIndirect(unit, kSmiAddress, static_cast<uint16_t>(address));
    ret += writeIndirect(unit, kSmiWriteData, static_cast<uint16_t>(data));
    ret += writeIndirect(unit, kSmiCommand, kCommandWrite);
    if (ret != 0)
        return ZR_CHIP_FAILED(SMI, ret, "Chip smi write unit %u addr 0x%x data 0x%x", unit, address, data);
    return LSW_OK;
}
