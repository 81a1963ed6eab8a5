#include "chip/chip.h"

#include "base/memory.h"
#include "base/print.h"
#include "base/unit.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

constexpr uint32_t kRegCaptureSelect = 0x3825; // port in bits 8 and up
constexpr uint32_t kRegCaptureControl = 0x3826;
constexpr uint32_t kRegCaptureMask = 0x3827;
constexpr uint32_t kRegCaptureResult = 0x3828;

constexpr uint32_t kCaptureSelect = 25;
constexpr uint32_t kCaptureControl = 4;
constexpr uint32_t kCaptureMask = 0xFFB;

constexpr uint32_t kTextSize = 256;

char *allocText()
{
    return static_cast<char *>(zr::allocCleared(kTextSize));
}

} // namespace

char *ZR_COMMON_ChipCaptureDropReasonEnable(uint32_t unit, uint32_t port)
{
    return HAL_CHIP_DropReasonEnableQ9(unit, port);
}

char *HAL_CHIP_DropReasonEnableQ9(uint32_t unit, uint32_t port)
{
    char *text = allocText();
    if (text == nullptr)
        return nullptr;
    HAL_CHIP_RegWriteQ9(unit, kRegCaptureSelect, port << 8 | kCaptureSelect);
    l2sw_setAsicReg(zr::unit8(unit), kRegCaptureControl, kCaptureControl);
    l2sw_setAsicReg(zr::unit8(unit), kRegCaptureMask, kCaptureMask);
    if (sprintf_s(text, kTextSize, "capture drop reason start on unit %u port %u.", unit, port) < 0) {
        ZR_PRINT_FAILED(PORT, LSW_CHIP_FAILED, "capture drop reason start on failed. (unit = %u, port = %u)",
                        unit, port);
        LSWM_MemFree(text);
        return nullptr;
    }
    return text;
}

char *ZR_COMMON_ChipGetDropReason(uint32_t unit, uint32_t port)
{
    return HAL_CHIP_GetDropReasonQ9(unit, port);
}

char *HAL_CHIP_GetDropReasonQ9(uint32_t unit, uint32_t port)
{
    char *text = allocText();
    if (text == nullptr)
        return nullptr;
    uint32_t result = 0;
    l2sw_getAsicReg(zr::unit8(unit), kRegCaptureResult, &result);
    if (sprintf_s(text, kTextSize, "unit %u port %u drop result: 0x%x.", unit, port, result) < 0) {
        ZR_PRINT_FAILED(PORT, LSW_CHIP_FAILED, "capture drop result start on failed. (unit = %u, port = %u)",
                        unit, port);
        LSWM_MemFree(text);
        return nullptr;
    }
    return text;
}
