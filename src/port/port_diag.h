// Port diagnostics: text dumps, PHY register access, signal-to-noise readings, chip identifier, kh
// marker, forced LEDs and the link-scan work-around.
//
// The module operations ZR_PORT_RegRead, _RegWrite, _GetDebugInfo, _GetSnr, _GetKhCheck, _GetChipId,
// _SetLEDForce, _LinkScanWar and ZR_GetLinkDownPhyReg (port/port.h) forward to the operations here.
// A missing buffer, record or output is LSW_NULL_POINTER, silently and before any chip call.
//
// Texts never leave their buffer and are always terminated; a buffer of size 0 is not touched. What does
// not fit is left out whole, and the text ends there.
#pragma once

#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

// The state of a port as the debug dump shows it. A value that cannot be read is
// ZR_PORT_DEBUG_UNREADABLE, an ability that cannot be read all zeros.
typedef struct {
    uint32_t enable;
    uint32_t phyLink;
    uint32_t macLink;
    uint32_t loop;
    uint32_t speed; // Mbit/s
    uint32_t duplex;
    uint32_t mdixStatus; // always 0: not read from the chip
    uint32_t mdixCfg;    // as HAL_PORT_GetMdixModeZr tells it
    uint32_t autoneg;
    uint32_t autonegStatus; // always 0: not read from the chip
    LswmPortAbility localAbility;
    LswmPortAbility remoteAbility;
} PortDebugInfo;
ZR_ASSERT_SIZE(PortDebugInfo, 64);
ZR_ASSERT_OFFSET(PortDebugInfo, mdixStatus, 6 * 4);
ZR_ASSERT_OFFSET(PortDebugInfo, autonegStatus, 9 * 4);
ZR_ASSERT_OFFSET(PortDebugInfo, localAbility, 40);
ZR_ASSERT_OFFSET(PortDebugInfo, remoteAbility, 52);

enum { ZR_PORT_DEBUG_UNREADABLE = 255 };

// ---- texts ----------------------------------------------------------------------------------

// Both dumps below, one after the other; cut at a line when the buffer is too small. What cannot be read
// does not fail the dump: LSW_OK.
ZR_EXPORT uint32_t HAL_PORT_GetDebugInfoZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size);

// PHY registers 0 to 31 in rows of four. A register that cannot be read shows the last one that could.
// Returns the characters written, 0 for a null buffer.
ZR_EXPORT uint32_t HAL_PORT_DumpRegInfo(uint32_t unit, uint32_t port, char *buffer, uint32_t size);

// The port's state, its SNR readings and the silicon's FS level. Returns the characters written, 0 for a
// null buffer. When the SNR readings fail, it prints, writes nothing and returns the failure's status.
ZR_EXPORT uint32_t HAL_PORT_DumpNormalDebugInfoZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size);

// PHY registers 0 to 10 in one line, at `buffer` + `offset`; `size` counts from `buffer`. An offset at or
// beyond `size` writes nothing, the registers are read all the same. LSW_CHIP_FAILED at the first register
// that cannot be read, silently; the text so far stays.
ZR_EXPORT uint32_t HAL_PORT_GetLinkDownPhyRegZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size,
                                                uint32_t offset);

// ---- state and registers ---------------------------------------------------------------------

// Fills the record. Readers that fail print their own lines; the status is LSW_OK all the same.
ZR_EXPORT uint32_t HAL_PORT_PortDebugInfoGetZr(uint32_t unit, uint32_t port, PortDebugInfo *info);

// Signal-to-noise readings. LSW_CHIP_FAILED, printed, with `snr` unwritten.
ZR_EXPORT uint32_t HAL_PORT_GetSnrZr(uint32_t unit, uint32_t port, LswmPortSnr *snr);

// MDI mode 0, 1 or 2 from PHY register 16, bits 15 and 14. The unassigned pattern is LSW_UNSUPPORTED,
// printed, with `mode` unwritten; otherwise the status of the register read, unchanged, and a register that
// cannot be read counts as 0 (mode 2).
ZR_EXPORT uint32_t HAL_PORT_GetMdixModeZr(uint32_t unit, uint32_t port, uint32_t *mode);

// PHY register access: `reg` holds the page in its upper and the register number in its lower 16 bits.
// A page other than 0 is selected by PHY register 31, which is set back to 0 afterwards, but not after a
// failure. LSW_CHIP_FAILED, silent, at the first access that fails; `value` then stays unwritten.
ZR_EXPORT uint32_t HAL_PORT_RegReadZr(uint32_t unit, uint32_t port, uint32_t reg, uint16_t *value);
ZR_EXPORT uint32_t HAL_PORT_RegWriteZr(uint32_t unit, uint32_t port, uint32_t reg, uint16_t value);

// Whether the marker that HAL_PORT_KhInitZr left in the chip is still there: 1 or 0. A chip that lost its
// registers no longer shows it. LSW_CHIP_FAILED, printed, with `intact` unwritten.
ZR_EXPORT uint32_t HAL_PORT_GetKhCheckZr(uint32_t unit, uint32_t port, uint32_t *intact);

// Chip identifier, chip register 0x1300; the SDK itself writes `identifier`. LSW_CHIP_FAILED, printed.
ZR_EXPORT uint32_t HAL_PORT_GetChipIdZr(uint32_t unit, uint32_t port, uint32_t *identifier);

// Forces the LEDs of a port; `a` and `b` are the chip SDK's own. LSW_CHIP_FAILED, printed.
ZR_EXPORT uint32_t HAL_PORT_SetLEDForceZr(uint32_t unit, uint32_t port, uint32_t a, uint32_t b);

// Applies the chip SDK's link-scan work-around for gigabit PHYs, but to ports of kind
// LSWM_PORT_NO_LINK_SCAN. LSW_INVALID_ARGUMENT, silent, for a unit above 2 or a port above 127;
// LSW_CHIP_FAILED, printed.
ZR_EXPORT uint32_t HAL_PORT_LinkScanWarZr(uint32_t unit, uint32_t port);

ZR_EXTERN_C_END
