#include "chip/chip.h"

#include <string.h>

#include "chip/rgmii_param.h"
#include "platform/board.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

constexpr char kCompareKeyword[] = "compare rgmii param";
constexpr size_t kTextSize = 256;

} // namespace

uint32_t ZR_COMMON_CliCmdPrase(uint32_t unit, const char *command)
{
    return HAL_CHIP_CliCmdPraseQ9(unit, command);
}

uint32_t HAL_CHIP_CliCmdPraseQ9(uint32_t unit, const char *command)
{
    if (command == nullptr)
        return LSW_NULL_POINTER;
    if (strncmp(command, kCompareKeyword, sizeof(kCompareKeyword) - 1) == 0)
        HAL_CHIP_CompareRgmiiParamQ9(unit);
    else
        excute_command(unit, command);
    return LSW_OK;
}

void HAL_CHIP_CompareRgmiiParamQ9(uint32_t unit)
{
    char name[zr::kRgmiiEnvNameSize];
    uint32_t wanted = 0;
    const bool found = zr::rgmii2FromEnvironment(unit, name, &wanted);

    uint32_t rgmii1 = 0;
    uint32_t rgmii2 = 0;
    l2sw_getAsicReg(static_cast<uint8_t>(unit), zr::kRegRgmii1Param, &rgmii1);
    l2sw_getAsicReg(static_cast<uint8_t>(unit), zr::kRegRgmii2Param, &rgmii2);

    char text[kTextSize];
    text[0] = '\0';
    int length = 0;
    if (!found)
        sprintf_s(text, kTextSize, "Failed! Can not find ENV %s\n", name);
    else if (wanted == rgmii2)
        length = sprintf_s(text, kTextSize, "Success! RGMII2 ENV %s(0x%x)== RGMII2 REG Value(0x%x)\n", name,
                           wanted, rgmii2);
    else
        length = sprintf_s(text, kTextSize, "Failed! RGMII2 ENV %s(0x%x)!= RGMII2 REG Value(0x%x)\n", name,
                           wanted, rgmii2);
    if (found && length >= 0)
        sprintf_s(text + length, kTextSize - static_cast<size_t>(length), "  RGMII1 REG Value(0x%x)\n", rgmii1);
    LSWM_CmdCliPrint(text);
}
