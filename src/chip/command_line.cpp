#include "chip/chip.h"

#include <string.h>

#include "platform/board.h"
#include "platform/manager.h"

namespace
{

constexpr char kCompareKeyword[] = "compare rgmii param";

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
