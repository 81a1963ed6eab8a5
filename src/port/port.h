// Ports: start-up, frame size, enable, link settings, loopback, counters, diagnostics, isolation.
//
// Ports are the manager's numbers; they go to the chip SDK as they come. Every failure line is printed with
// module LSW_MODULE_PORT and carries the SDK's status, or the status returned where no SDK call was made.
// A reader that fails leaves its output unwritten unless said otherwise. An output that is null is refused
// with LSW_NULL_POINTER before any chip call; where a line is printed for that, it is named.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

// The marker that port start-up leaves in the chip: a chip that lost its registers no longer shows it.
enum { ZR_PORT_KH_REG = 0x3DE3, ZR_PORT_KH_MARK = 0x55AA };

// Loopback modes. Setting 4 is setting 3; 4 is never read back.
enum { ZR_LOOP_NONE = 0, ZR_LOOP_MAC = 1, ZR_LOOP_PCS = 2, ZR_LOOP_REMOTE = 3, ZR_LOOP_REMOTE_ALT = 4 };

// ---- start-up -------------------------------------------------------------------------------

// Brings up the port side of a unit from its unit information, once, after the chip: frame size, trunk
// hashing, the cascade ports joined to the cascade trunk, the kh marker. Stops at the first failure, printed
// with its step, and returns that step's status; what was done before stays done. LSW_INVALID_ARGUMENT for a
// unit above 2. Enables no port and sets no speed.
ZR_EXPORT uint32_t ZR_PORT_Init(uint32_t unit);

// Largest frame of the unit: 1522, 1536, 1552 or 10000 bytes. Any other size is LSW_INVALID_ARGUMENT and
// does not reach the chip; an SDK status comes back unchanged. Prints on failure.
ZR_EXPORT uint32_t ZR_PORT_SetMaxFrame(uint32_t unit, uint32_t maxFrameSize);
// LSW_CHIP_FAILED also when the chip answers a size index that is not known. Prints on failure.
ZR_EXPORT uint32_t ZR_PORT_GetMaxFrame(uint32_t unit, uint32_t *maxFrameSize);

// Makes `port` the CPU port. `addTag` nonzero: frames trapped to it carry the CPU tag (EtherType 0x8874).
// LSW_CHIP_FAILED after a printed line at the first call that fails.
ZR_EXPORT uint32_t ZR_PORT_CpuInit(uint32_t unit, uint32_t port, uint32_t addTag);

// The two below are silent: the module operations above print for them.
ZR_EXPORT uint32_t HAL_PORT_SetMaxFrameZr(uint32_t unit, uint32_t maxFrameSize);
ZR_EXPORT uint32_t HAL_PORT_GetMaxFrameZr(uint32_t unit, uint32_t *maxFrameSize);
ZR_EXPORT uint32_t HAL_PORT_CpuInitZr(uint32_t unit, uint32_t port, uint32_t addTag);
// Writes the kh marker. LSW_CHIP_FAILED after a printed line.
ZR_EXPORT uint32_t HAL_PORT_KhInitZr(uint32_t unit);
// The unit's logical ports, bit n = port n. LSW_CHIP_FAILED after a printed line.
ZR_EXPORT uint32_t HAL_PORT_GetValidPortMapZr(uint32_t unit, uint32_t *portMap);

// ---- enable, speed, duplex, auto-negotiation ------------------------------------------------

// `enable` goes to and comes from the chip SDK as it is; the SDK itself writes it. LSW_CHIP_FAILED after a
// printed line; a null output prints.
ZR_EXPORT uint32_t ZR_PORT_SetEnable(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t ZR_PORT_GetEnable(uint32_t unit, uint32_t port, uint32_t *enable);
ZR_EXPORT uint32_t HAL_PORT_SetEnableZr(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t HAL_PORT_GetEnableZr(uint32_t unit, uint32_t port, uint32_t *enable);

// Forwarders to the operations of the same name in port/phy.h.
ZR_EXPORT uint32_t ZR_PORT_GetSpeed(uint32_t unit, uint32_t port, uint32_t *speed);
ZR_EXPORT uint32_t ZR_PORT_SetSpeed(uint32_t unit, uint32_t port, uint32_t speed);
ZR_EXPORT uint32_t ZR_PORT_GetDuplex(uint32_t unit, uint32_t port, uint32_t *duplex);
ZR_EXPORT uint32_t ZR_PORT_SetDuplex(uint32_t unit, uint32_t port, uint32_t duplex);
ZR_EXPORT uint32_t ZR_PORT_GetAutonegEnable(uint32_t unit, uint32_t port, uint32_t *enable);
ZR_EXPORT uint32_t ZR_PORT_SetAutonegEnable(uint32_t unit, uint32_t port, uint32_t enable);

// Abilities, one byte each, 0 or 1. Both readers clear the record first, so that a failed read (LSW_CHIP_FAILED
// after a printed line) leaves it cleared; a null record prints.
ZR_EXPORT uint32_t ZR_PORT_GetAutonegAbility(uint32_t unit, uint32_t port, LswmPortAbility *ability);
ZR_EXPORT uint32_t ZR_PORT_GetRemoteAutonegAbility(uint32_t unit, uint32_t port, LswmPortAbility *ability);
// Advertises `ability` and turns auto-negotiation on, whatever is advertised. Prints nothing; the SDK's status
// comes back unchanged.
ZR_EXPORT uint32_t ZR_PORT_SetAdvert(uint32_t unit, uint32_t port, const LswmPortAbility *ability);
ZR_EXPORT uint32_t HAL_PORT_GetAutonegAbilityZr(uint32_t unit, uint32_t port, LswmPortAbility *ability);
// From the PHY's registers 5 and 10: what the link partner advertised (IEEE 802.3 clauses 28 and 40).
ZR_EXPORT uint32_t HAL_PORT_GetAutonegRemoteAbilityZr(uint32_t unit, uint32_t port, LswmPortAbility *ability);
ZR_EXPORT uint32_t HAL_PORT_SetAutonegAbilityZr(uint32_t unit, uint32_t port, const LswmPortAbility *ability);

// ---- loopback and link ----------------------------------------------------------------------

// The first loopback found on, asked in the order MAC, PCS, remote. LSW_CHIP_FAILED after a printed line when
// one cannot be read; a null output prints.
ZR_EXPORT uint32_t ZR_PORT_GetLoopback(uint32_t unit, uint32_t port, uint32_t *mode);
// `mode` is ZR_LOOP_*; any other is LSW_UNSUPPORTED after a printed line. A chip failure is printed and not
// returned. ZR_LOOP_NONE ends both local loopbacks; a remote loopback stays on.
ZR_EXPORT uint32_t ZR_PORT_SetLoopback(uint32_t unit, uint32_t port, uint32_t mode);
ZR_EXPORT uint32_t HAL_PORT_GetLoopbackZr(uint32_t unit, uint32_t port, uint32_t *mode);
ZR_EXPORT uint32_t HAL_PORT_SetLoopbackZr(uint32_t unit, uint32_t port, uint32_t mode);

// One loopback each, 0 or 1. LSW_CHIP_FAILED after a printed line; a null output is refused silently.
ZR_EXPORT uint32_t HAL_PORT_GetMacLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on);
ZR_EXPORT uint32_t HAL_PORT_GetPCSLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on);
ZR_EXPORT uint32_t HAL_PORT_GetRemoteLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on);

// Steps of HAL_PORT_SetLoopbackZr. LSW_CHIP_FAILED after a printed line, but the first, which prints a failure
// and returns LSW_OK.
ZR_EXPORT uint32_t HAL_PORT_SetLoopbackDisableZr(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_SetMacLoopbackZr(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_SetPCSLoopbackZr(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_SetRemoteLoopbackZr(uint32_t unit, uint32_t port);

// 1 = up. Any failure, a null output too, prints a line on top of that of HAL_PHY_GetLinkstatusZr, which tells
// what a failure writes.
ZR_EXPORT uint32_t ZR_PORT_GetLinkStatus(uint32_t unit, uint32_t port, uint32_t *link);
// The chip side handles no link events: touches nothing, returns LSW_OK.
ZR_EXPORT uint32_t ZR_PORT_LinkEvt(uint32_t unit, uint32_t port);

// ---- counters: port/port_stat.h -------------------------------------------------------------

// A port's traffic counters in the manager's layout; the second also clears the accumulated odrop count.
ZR_EXPORT uint32_t ZR_PORT_GetStatistics(uint32_t unit, uint32_t port, LswmPortStatistics *statistics);
ZR_EXPORT uint32_t ZR_PORT_ClearStatistics(uint32_t unit, uint32_t port);

// ---- diagnostics: port/port_diag.h ----------------------------------------------------------

// PHY registers: `reg` holds the page in its upper and the register number in its lower 16 bits; page 0 is
// direct access. `ignored` is not read.
ZR_EXPORT uint32_t ZR_PORT_RegRead(uint32_t unit, uint32_t port, uint32_t ignored, uint32_t reg,
                                   uint16_t *value);
ZR_EXPORT uint32_t ZR_PORT_RegWrite(uint32_t unit, uint32_t port, uint32_t ignored, uint32_t reg,
                                    uint16_t value);
// Texts: `size` is the buffer's size in bytes; a buffer too small holds a cut text.
ZR_EXPORT uint32_t ZR_PORT_GetDebugInfo(uint32_t unit, uint32_t port, char *buffer, uint32_t size);
ZR_EXPORT uint32_t ZR_GetLinkDownPhyReg(uint32_t unit, uint32_t port, char *buffer, uint32_t size,
                                        uint32_t offset);
ZR_EXPORT uint32_t ZR_PORT_GetSnr(uint32_t unit, uint32_t port, LswmPortSnr *snr);
// 1 while the kh marker of port start-up stands.
ZR_EXPORT uint32_t ZR_PORT_GetKhCheck(uint32_t unit, uint32_t port, uint32_t *intact);
ZR_EXPORT uint32_t ZR_PORT_GetChipId(uint32_t unit, uint32_t port, uint32_t *identifier);
// `a` and `b` go to the chip SDK as they are.
ZR_EXPORT uint32_t ZR_PORT_SetLEDForce(uint32_t unit, uint32_t port, uint32_t a, uint32_t b);
// The gigabit PHY's link-scan work-around, for ports whose kind does not exclude it.
ZR_EXPORT uint32_t ZR_PORT_LinkScanWar(uint32_t unit, uint32_t port);

// ---- isolation: port/isolation.h ------------------------------------------------------------

// The chip keeps per port a permit map, the ports that it may forward to; the manager speaks of the isolate
// map, the valid ports that it may not forward to. The first word of a map counts, bit n = port n.
// `isolate` 1 isolates from the map's ports, anything else releases them. SDK failures are LSW_CHIP_FAILED
// after a printed line.
ZR_EXPORT uint32_t ZR_PORT_SetIsolate(uint32_t unit, uint32_t port, const uint32_t *portMap, uint32_t isolate);
ZR_EXPORT uint32_t ZR_PORT_GetIsolateMap(uint32_t unit, uint32_t port, uint32_t *isolateMap);
// Isolates every valid port but the reserved one from all others, or releases them all; the way to the reserved
// port stays. Stops at the first port that fails, with a line of its own; the ports before it stay changed.
ZR_EXPORT uint32_t ZR_PORT_SetAllIsolate(uint32_t unit, uint32_t isolate);

// Port diagnostics: text dumps, PHY register access, signal-to-noise readings, chip identifier, kh
// marker, forced LEDs and the link-scan work-around.
//
// The module operations ZR_PORT_RegRead, _RegWrite, _GetDebugInfo, _GetSnr, _GetKhCheck, _GetChipId,
// _SetLEDForce, _LinkScanWar and ZR_GetLinkDownPhyReg (port/port.h) forward to the operations here.
// A missing buffer, record or output is LSW_NULL_POINTER, silently and before any chip call.
//
// Texts never leave their buffer and are always terminated; a buffer of size 0 is not touched. What does
// not fit is left out whole, and the text ends there.

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

// Port traffic counters: the chip's counter record turned into the manager's, and the odrop count.
//
// The chip keeps a port's odrop count apart from its counter record, 16 bits wide and behind a command
// register. The library accumulates it over the readings in two tables of 32 entries, by port number
// and shared by all units; they start at 0 and only a clear resets them. Between two readings the
// count may wrap once. No lock: one statistics operation at a time per port number.
//
// ZR_PORT_GetStatistics and ZR_PORT_ClearStatistics (port/port.h) forward to the first two operations.

// Reads the counters of `port`, 0 to 31. Counters that the chip does not have are 0; counter 8 is the
// accumulated odrop count. Statuses: LSW_INVALID_ARGUMENT for a port of 32 or more and LSW_NULL_POINTER,
// both silent and before any chip call; LSW_CHIP_FAILED, printed, when the counter record cannot be read
// or the odrop count not be latched: `statistics` and the odrop tables then stay as they were. A latched
// count that cannot be read adds nothing and fails nothing.
ZR_EXPORT uint32_t HAL_PORT_GetStatisticZr(uint32_t unit, uint32_t port, LswmPortStatistics *statistics);

// Clears the counters of `port`, 0 to 31: first the library's odrop count, then the chip's counters, then
// the chip's odrop count. Statuses: LSW_INVALID_ARGUMENT, silent, for a port of 32 or more;
// LSW_CHIP_FAILED, printed, at the first chip call that fails.
ZR_EXPORT uint32_t HAL_PORT_ClearStatisticsZr(uint32_t unit, uint32_t port);

// Writes the manager counters that have a source in the chip's record; the others stay untouched. Both
// records are required.
ZR_EXPORT void HAL_PORT_TranslateHwStatZr(const SdkPortCounters *counters, LswmPortStatistics *statistics);

// Port isolation on the chip. Per port the chip keeps a permit map: bit n set lets the port forward to
// port n. The manager speaks of isolate maps instead, the valid ports that a port may not reach;
// ZR_PORT_GetIsolateMap, ZR_PORT_SetIsolate and ZR_PORT_SetAllIsolate (port/port.h) convert.

// Reads the permit map of `port`. Statuses: LSW_NULL_POINTER, silent; LSW_CHIP_FAILED, printed, with
// `permitMap` unwritten.
ZR_EXPORT uint32_t HAL_PORT_GetIsolateMapZr(uint32_t unit, uint32_t port, uint32_t *permitMap);

// Writes the permit map of `port` from the first word of `permitMap`. Statuses: LSW_NULL_POINTER, silent;
// LSW_CHIP_FAILED, printed.
ZR_EXPORT uint32_t HAL_PORT_SetIsolateZr(uint32_t unit, uint32_t port, const uint32_t *permitMap);

ZR_EXTERN_C_END
