#include "chip/rgmii.h"

#include "base/fs_level.h"
#include "base/unit.h"
#include "chip/chip.h"
#include "platform/board.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

struct RegValue {
    uint16_t reg;
    uint16_t value;
};

constexpr RegValue kFixedRegs[] = {{0x3B0C, 7}, {0x1311, 0x1016}, {0x3B0D, 7}, {0x13C4, 0x1016}};

constexpr uint32_t kRegRgmii1Param = 0x1307;
constexpr uint32_t kRegRgmii2Param = 0x13C5;
constexpr uint32_t kRegUnitSetting = 0x3EE0;

constexpr uint32_t kEnvNameSize = 64;
constexpr uint32_t kTextSize = 256;

struct UnitSetting {
    int32_t divisor; // of the FS level's multiplier
    uint32_t base1;  // RGMII1 parameter of normal silicon
    uint32_t base2;
    uint32_t reg3EE0;
};

constexpr UnitSetting kUnitSettings[LSWM_UNITS] = {
    {10, 0x0, 0x0, 0x0},
    {10, 0x988, 0x280, 0x132},
    {10, 0x980, 0x280, 0x133},
};

// Added to a scaled delay, by FS level and by class of the base delay.
constexpr int8_t kCorrection[5][3] = {{0, -1, -1}, {0, -1, -1}, {0, 0, 0}, {0, 1, 1}, {0, 2, 1}};

constexpr uint32_t kNormalLevel = 2;

constexpr uint32_t kDelayMask = 0x1F;
constexpr uint32_t kHighDelayShift = 6;

struct Speed {
    uint32_t level;
    uint32_t multiplier;
};

// One delay at the chip's speed. Slower silicon rounds up.
uint32_t scaledDelay(uint32_t baseDelay, const Speed &speed, int32_t divisor)
{
    const auto delay = static_cast<int32_t>(baseDelay);
    const int32_t roundUp = speed.level > kNormalLevel ? divisor - 1 : 0;
    const int32_t scaled = (delay * static_cast<int32_t>(speed.multiplier) + roundUp) / divisor;
    return static_cast<uint32_t>(scaled + kCorrection[speed.level][Trans2ParamPath(delay)]);
}

// A base word with both delays replaced. The new delays are not cut to their fields.
uint32_t scaledParam(uint32_t base, const Speed &speed, int32_t divisor)
{
    const uint32_t low = scaledDelay(base & kDelayMask, speed, divisor);
    const uint32_t high = scaledDelay(base >> kHighDelayShift & kDelayMask, speed, divisor);
    return (base & ~(kDelayMask | kDelayMask << kHighDelayShift)) | low | high << kHighDelayShift;
}

// Forms the name of the unit's RGMII2 variable (an empty text if that fails) and reads the variable.
// False, with `*value` unspecified, when there is no such number.
bool rgmii2FromEnvironment(uint32_t unit, char (&name)[kEnvNameSize], uint32_t *value)
{
    name[0] = '\0';
    return sprintf_s(name, sizeof(name), "lsw%u_vq9_rgmii2_para", unit) >= 0 &&
           drv_env_num_get(name, value, 16) == 0;
}

} // namespace

void L2sw_RGMIIInit(uint32_t unit)
{
    if (unit >= LSWM_UNITS)
        return;
    for (const RegValue &row : kFixedRegs)
        l2sw_setAsicReg(zr::unit8(unit), row.reg, row.value);
    L2sw_RGMIIParamInit(unit);
}

uint32_t L2sw_RGMIIParamInit(uint32_t unit)
{
    if (unit >= LSWM_UNITS)
        return LSW_INVALID_ARGUMENT;

    uint32_t rgmii1 = 0;
    uint32_t rgmii2 = 0;
    L2sw_CalRGMIIParam(unit, &rgmii1, &rgmii2);

    char name[kEnvNameSize];
    uint32_t fromEnvironment = 0;
    if (rgmii2FromEnvironment(unit, name, &fromEnvironment)) {
        rgmii2 = fromEnvironment;
        LSWM_DebugInfoPrint(LSW_MODULE_CHIP, 0,
                            "Find RGMII2 env, The chip %u use env rgmii2 param 0x%x, rgmii1 param 0x%x", unit,
                            rgmii2, rgmii1);
    } else {
        LSWM_DebugInfoPrint(
            LSW_MODULE_CHIP, 0,
            "Can not Find RGMII2 env, The chip %u use calc rgmii2 param 0x%x, rgmii1 param 0x%x", unit, rgmii2,
            rgmii1);
    }

    l2sw_setAsicReg(zr::unit8(unit), kRegRgmii1Param, rgmii1);
    l2sw_setAsicReg(zr::unit8(unit), kRegRgmii2Param, rgmii2);
    l2sw_setAsicReg(zr::unit8(unit), kRegUnitSetting, kUnitSettings[unit].reg3EE0);
    return LSW_OK;
}

void L2sw_CalRGMIIParam(uint32_t unit, uint32_t *rgmii1, uint32_t *rgmii2)
{
    if (rgmii1 == nullptr || rgmii2 == nullptr)
        return;
    if (unit >= LSWM_UNITS) {
        *rgmii1 = 0;
        *rgmii2 = 0;
        return;
    }
    Speed speed{};
    L2sw_GetRGMIISpeedLevel(unit, &speed.level, &speed.multiplier);
    const UnitSetting &setting = kUnitSettings[unit];
    *rgmii1 = scaledParam(setting.base1, speed, setting.divisor);
    *rgmii2 = scaledParam(setting.base2, speed, setting.divisor);
}

void L2sw_GetRGMIISpeedLevel(uint32_t unit, uint32_t *level, uint32_t *multiplier)
{
    if (level == nullptr || multiplier == nullptr)
        return;
    uint32_t fsData = 0;
    const uint32_t ret = l2sw_switch_ahb_read(unit, zr::kFsDataAddress, &fsData);
    const zr::FsLevel &fs = ret == 0 ? zr::fsLevel(fsData) : zr::kFsUnknown;
    *level = fs.level;
    *multiplier = fs.multiplier;
}

uint32_t Trans2ParamPath(int32_t value)
{
    if (value < 10)
        return 0;
    return value == 10 ? 1 : 2;
}

void HAL_CHIP_CompareRgmiiParamQ9(uint32_t unit)
{
    char name[kEnvNameSize];
    uint32_t wanted = 0;
    const bool found = rgmii2FromEnvironment(unit, name, &wanted);

    uint32_t rgmii1 = 0;
    uint32_t rgmii2 = 0;
    l2sw_getAsicReg(zr::unit8(unit), kRegRgmii1Param, &rgmii1);
    l2sw_getAsicReg(zr::unit8(unit), kRegRgmii2Param, &rgmii2);

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
