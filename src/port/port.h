// Ports: start-up, enable, link settings, loopback, link state, counters, diagnostics, isolation.
//
// `unit` and `port` are the manager's numbers; both are passed to the chip SDK unchecked unless a status for
// them is named. Where a chip register is accessed (kh marker, chip identifier, odrop count) a unit above
// 255 acts on its low 8 bits. A ZR_ operation that stands above a HAL_ operation calls it and returns its
// status, and prints nothing of its own unless said otherwise.
//
// Every operation that can fail returns a status: LSW_OK, LSW_NULL_POINTER for a null argument, before any
// chip call and unprinted; LSW_CHIP_FAILED, printed, at the first SDK call that fails; others are named where
// they occur, and so is what differs. On any of them outputs stay unwritten unless said otherwise. Where the
// statuses of several SDK calls are added, all calls are made and the 32-bit sum decides: a sum that wraps to
// 0 counts as success.
//
// Lines are logged under LSW_MODULE_PORT, with the exception named at ZR_PORT_Init. A line about an SDK
// call carries the SDK's status or the sum; a line that an operation adds to that of another operation
// carries the status which that one returned; a line about an argument the status returned.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager_records.h"

ZR_EXTERN_C_BEGIN

// The marker that port start-up leaves in the chip: a chip that lost its registers no longer shows it.
enum { ZR_PORT_KH_REG = 0x3DE3, ZR_PORT_KH_MARK = 0x55AA };

// Loopback modes. Setting 4 is setting 3; 4 is never read back.
enum { ZR_LOOP_NONE = 0, ZR_LOOP_MAC = 1, ZR_LOOP_PCS = 2, ZR_LOOP_REMOTE = 3, ZR_LOOP_REMOTE_ALT = 4 };

// What PortDebugInfo shows for a value that cannot be read.
enum { ZR_PORT_DEBUG_UNREADABLE = 255 };

// The state of a port as the debug dump shows it. An ability that cannot be read is all zeros.
typedef struct {
    uint32_t enable;        // as the chip SDK gives it
    uint32_t phyLink;       // as HAL_PHY_GetLinkstatusZr reads it: 1 up
    uint32_t macLink;       // as HAL_PHY_GetMacLinkStatusZr reads it: 1 up
    uint32_t loop;          // ZR_LOOP_*
    uint32_t speed;         // Mbit/s
    uint32_t duplex;        // 0 half, 1 full
    uint32_t mdixStatus;    // not written: the dump shows 0
    uint32_t mdixCfg;       // as HAL_PORT_GetMdixModeZr reads it
    uint32_t autoneg;       // as HAL_PHY_GetAutonegEnableZr reads it
    uint32_t autonegStatus; // not written: the dump shows 0
    LswmPortAbility localAbility;
    LswmPortAbility remoteAbility;
} PortDebugInfo;
ZR_ASSERT_SIZE(PortDebugInfo, 64);
ZR_ASSERT_OFFSET(PortDebugInfo, mdixStatus, 6 * 4);
ZR_ASSERT_OFFSET(PortDebugInfo, autonegStatus, 9 * 4);
ZR_ASSERT_OFFSET(PortDebugInfo, localAbility, 40);
ZR_ASSERT_OFFSET(PortDebugInfo, remoteAbility, 52);

// ---- start-up -------------------------------------------------------------------------------

// Brings up the port side of a unit from its unit information, once, after the chip: frame size, trunk
// hashing, the cascade ports joined to the cascade trunk, the kh marker. Enables no port and sets no speed.
// Stops at the first step that fails, with a line of its own, and returns that step's status; what was done
// before stays done. LSW_INVALID_ARGUMENT, silently, for a unit above 2. The lines of HAL_TRUNK_
// operations are logged under LSW_MODULE_TRUNK.
ZR_EXPORT uint32_t ZR_PORT_Init(uint32_t unit);

// Writes ZR_PORT_KH_MARK to chip register ZR_PORT_KH_REG.
ZR_EXPORT uint32_t HAL_PORT_KhInitZr(uint32_t unit);

// Largest frame of the unit in bytes: 1522, 1536, 1552 or 10000. Setting any other is LSW_INVALID_ARGUMENT
// without a chip call; a failed call's status is returned unchanged. Reading is LSW_CHIP_FAILED also when
// the chip holds a size index other than 0 to 3. The ZR_ operations print every failure, a null output too;
// the HAL_ operations print nothing.
ZR_EXPORT uint32_t ZR_PORT_SetMaxFrame(uint32_t unit, uint32_t maxFrameSize);
ZR_EXPORT uint32_t HAL_PORT_SetMaxFrameZr(uint32_t unit, uint32_t maxFrameSize);
ZR_EXPORT uint32_t ZR_PORT_GetMaxFrame(uint32_t unit, uint32_t *maxFrameSize);
ZR_EXPORT uint32_t HAL_PORT_GetMaxFrameZr(uint32_t unit, uint32_t *maxFrameSize);

// Makes `port` the CPU port and sets the CPU tag's EtherType to 0x8874. `addTag`, passed to the SDK
// unchecked, decides whether frames trapped to the CPU carry that tag.
ZR_EXPORT uint32_t ZR_PORT_CpuInit(uint32_t unit, uint32_t port, uint32_t addTag);
ZR_EXPORT uint32_t HAL_PORT_CpuInitZr(uint32_t unit, uint32_t port, uint32_t addTag);

// The SDK's logical ports of the unit, bit n = port n.
ZR_EXPORT uint32_t HAL_PORT_GetValidPortMapZr(uint32_t unit, uint32_t *portMap);

// `enable` is passed to and from the SDK as it is. The SDK writes the output itself, so what a failed read
// leaves there is the SDK's. A null output is refused with a line.
ZR_EXPORT uint32_t ZR_PORT_SetEnable(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t HAL_PORT_SetEnableZr(uint32_t unit, uint32_t port, uint32_t enable);
ZR_EXPORT uint32_t ZR_PORT_GetEnable(uint32_t unit, uint32_t port, uint32_t *enable);
ZR_EXPORT uint32_t HAL_PORT_GetEnableZr(uint32_t unit, uint32_t port, uint32_t *enable);

// ---- speed, duplex, auto-negotiation --------------------------------------------------------

// Each calls the HAL_PHY_ operation of the same name (port/phy.h) and returns its status.
ZR_EXPORT uint32_t ZR_PORT_GetSpeed(uint32_t unit, uint32_t port, uint32_t *speed);
ZR_EXPORT uint32_t ZR_PORT_SetSpeed(uint32_t unit, uint32_t port, uint32_t speed);
ZR_EXPORT uint32_t ZR_PORT_GetDuplex(uint32_t unit, uint32_t port, uint32_t *duplex);
ZR_EXPORT uint32_t ZR_PORT_SetDuplex(uint32_t unit, uint32_t port, uint32_t duplex);
ZR_EXPORT uint32_t ZR_PORT_GetAutonegEnable(uint32_t unit, uint32_t port, uint32_t *enable);
ZR_EXPORT uint32_t ZR_PORT_SetAutonegEnable(uint32_t unit, uint32_t port, uint32_t enable);

// What the port advertises, by the SDK: the low 8 bits of each of its words. The record is cleared first, so
// that a failed read leaves it cleared. A null record is refused with a line.
ZR_EXPORT uint32_t ZR_PORT_GetAutonegAbility(uint32_t unit, uint32_t port, LswmPortAbility *ability);
ZR_EXPORT uint32_t HAL_PORT_GetAutonegAbilityZr(uint32_t unit, uint32_t port, LswmPortAbility *ability);

// Advertises `ability`, its bytes passed to the SDK unchecked, and turns auto-negotiation on whatever is
// advertised. Returns the SDK's status unchanged; prints nothing.
ZR_EXPORT uint32_t ZR_PORT_SetAdvert(uint32_t unit, uint32_t port, const LswmPortAbility *ability);
ZR_EXPORT uint32_t HAL_PORT_SetAutonegAbilityZr(uint32_t unit, uint32_t port, const LswmPortAbility *ability);

// What the link partner advertised, 0 or 1 each: PHY registers 5 (IEEE 802.3 clause 28) and 10 (clause 40).
// Cleared first and refused with a line as above.
ZR_EXPORT uint32_t ZR_PORT_GetRemoteAutonegAbility(uint32_t unit, uint32_t port, LswmPortAbility *ability);
ZR_EXPORT uint32_t HAL_PORT_GetAutonegRemoteAbilityZr(uint32_t unit, uint32_t port, LswmPortAbility *ability);

// ---- loopback -------------------------------------------------------------------------------

// The first loopback found on, read in the order MAC, PCS, remote; later ones are not read. A null output is
// refused with a line.
ZR_EXPORT uint32_t ZR_PORT_GetLoopback(uint32_t unit, uint32_t port, uint32_t *mode);
ZR_EXPORT uint32_t HAL_PORT_GetLoopbackZr(uint32_t unit, uint32_t port, uint32_t *mode);

// One loopback each, 0 or 1: the SDK's MAC loopback; bit 14 of PHY register 0, where the status of a read of
// register 16 is added; bit 0 of PHY register 18.
ZR_EXPORT uint32_t HAL_PORT_GetMacLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on);
ZR_EXPORT uint32_t HAL_PORT_GetPCSLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on);
ZR_EXPORT uint32_t HAL_PORT_GetRemoteLoopbackZr(uint32_t unit, uint32_t port, uint32_t *on);

// `mode` is ZR_LOOP_*; any other is LSW_UNSUPPORTED, printed. A step that fails gets a second line here,
// but the status is LSW_OK.
ZR_EXPORT uint32_t ZR_PORT_SetLoopback(uint32_t unit, uint32_t port, uint32_t mode);
ZR_EXPORT uint32_t HAL_PORT_SetLoopbackZr(uint32_t unit, uint32_t port, uint32_t mode);

// The steps of HAL_PORT_SetLoopbackZr. The first switches off the MAC's and the PHY's local loopback, not the
// remote one, and returns LSW_OK even when the sum of the two statuses is a failure, which it prints. The
// third adds the statuses of three PHY register accesses.
ZR_EXPORT uint32_t HAL_PORT_SetLoopbackDisableZr(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_SetMacLoopbackZr(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_SetPCSLoopbackZr(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_SetRemoteLoopbackZr(uint32_t unit, uint32_t port);

// ---- link state -----------------------------------------------------------------------------

// 1 = up. Calls HAL_PHY_GetLinkstatusZr (port/phy.h), which also says what a failure writes, and prints a
// line on any failure, a null output too.
ZR_EXPORT uint32_t ZR_PORT_GetLinkStatus(uint32_t unit, uint32_t port, uint32_t *link);

// The chip side handles no link events: touches nothing, returns LSW_OK.
ZR_EXPORT uint32_t ZR_PORT_LinkEvt(uint32_t unit, uint32_t port);

// ---- counters -------------------------------------------------------------------------------

// Reads and clears the counters of `port`, 0 to 31; a port above 31 is LSW_INVALID_ARGUMENT, silently.
//
// The chip keeps the odrop count apart from its counter record, 16 bits wide and behind a command register.
// The library accumulates it over the readings in two tables by port number, shared by all units, which
// start at 0 and which only a clear resets. Between two readings the count may wrap once; the total then
// comes out one short. No lock: one statistics operation at a time per port number.
//
// Reading writes all 80 counters: counter 8 is the accumulated odrop count, counters that have no source are
// 0. It fails when the counter record cannot be read or the odrop count cannot be latched, and then leaves
// the odrop tables as they were. A latched count that cannot be read adds nothing and fails nothing.
//
// Clearing zeroes the library's odrop count first, whatever follows, then the chip's counters, then the
// chip's odrop count.
ZR_EXPORT uint32_t ZR_PORT_GetStatistics(uint32_t unit, uint32_t port, LswmPortStatistics *statistics);
ZR_EXPORT uint32_t HAL_PORT_GetStatisticZr(uint32_t unit, uint32_t port, LswmPortStatistics *statistics);
ZR_EXPORT uint32_t ZR_PORT_ClearStatistics(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_ClearStatisticsZr(uint32_t unit, uint32_t port);

// Writes the manager counters that have a source in the chip's record, counter 8 among them; the others stay
// as they are. A null pointer: nothing is written.
ZR_EXPORT void HAL_PORT_TranslateHwStatZr(const SdkPortCounters *counters, LswmPortStatistics *statistics);

// ---- diagnostics: texts ---------------------------------------------------------------------

// Nothing is written outside a buffer, and what is written is terminated; a buffer of size 0 is not touched.
// `size` is in bytes. A piece that does not fit is left out whole, and the text ends there.

// Both texts below, one after the other. Always LSW_OK for a buffer: what cannot be read does not fail it.
ZR_EXPORT uint32_t ZR_PORT_GetDebugInfo(uint32_t unit, uint32_t port, char *buffer, uint32_t size);
ZR_EXPORT uint32_t HAL_PORT_GetDebugInfoZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size);

// PHY registers 0 to 31 in rows of four, in hexadecimal. A failed read that stores nothing shows the value
// before it, 0 at the start. Returns the characters written, 0 for a null buffer.
ZR_EXPORT uint32_t HAL_PORT_DumpRegInfo(uint32_t unit, uint32_t port, char *buffer, uint32_t size);

// The port's state, its signal-to-noise readings and the silicon's FS level (AHB address 0x9000084C).
// Returns the characters written, 0 for a null buffer. When the signal-to-noise readings fail it prints a
// line, writes nothing and returns LSW_CHIP_FAILED. Other values that cannot be read show as in
// PortDebugInfo; FS data that cannot be read shows as 0 unless the SDK stored something.
ZR_EXPORT uint32_t HAL_PORT_DumpNormalDebugInfoZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size);

// PHY registers 0 to 10 in one line, at `buffer` + `offset`; `size` counts from `buffer`. An offset at or
// beyond `size` writes nothing, the registers are read all the same. LSW_CHIP_FAILED, silently, at the first
// register that cannot be read; the text so far stays.
ZR_EXPORT uint32_t ZR_GetLinkDownPhyReg(uint32_t unit, uint32_t port, char *buffer, uint32_t size,
                                        uint32_t offset);
ZR_EXPORT uint32_t HAL_PORT_GetLinkDownPhyRegZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size,
                                                uint32_t offset);

// ---- diagnostics: state and registers -------------------------------------------------------

// Fills the record by the operations that read the single values, with the lines that they print. LSW_OK
// even when some or all of them fail.
ZR_EXPORT uint32_t HAL_PORT_PortDebugInfoGetZr(uint32_t unit, uint32_t port, PortDebugInfo *info);

// MDI mode from bits 15 and 14 of PHY register 16: 01 is mode 0, 11 mode 1, 00 mode 2; 10 is LSW_UNSUPPORTED,
// printed, with `mode` unwritten. Otherwise the status of the register read is returned unchanged, unprinted,
// and `mode` is written even when the read failed: the register counts as 0 unless the SDK stored something.
ZR_EXPORT uint32_t HAL_PORT_GetMdixModeZr(uint32_t unit, uint32_t port, uint32_t *mode);

// A PHY's signal-to-noise readings.
ZR_EXPORT uint32_t ZR_PORT_GetSnr(uint32_t unit, uint32_t port, LswmPortSnr *snr);
ZR_EXPORT uint32_t HAL_PORT_GetSnrZr(uint32_t unit, uint32_t port, LswmPortSnr *snr);

// PHY register access: `reg` holds the page in its upper and the register number in its lower 16 bits.
// Page 0 is direct access; any other page is written to PHY register 31 before the access, and 0 after it.
// LSW_CHIP_FAILED, silently, at the first access that fails: a page that was selected stays selected then.
// The ZR_ operations' third argument is ignored.
ZR_EXPORT uint32_t ZR_PORT_RegRead(uint32_t unit, uint32_t port, uint32_t ignored, uint32_t reg,
                                   uint16_t *value);
ZR_EXPORT uint32_t HAL_PORT_RegReadZr(uint32_t unit, uint32_t port, uint32_t reg, uint16_t *value);
ZR_EXPORT uint32_t ZR_PORT_RegWrite(uint32_t unit, uint32_t port, uint32_t ignored, uint32_t reg,
                                    uint16_t value);
ZR_EXPORT uint32_t HAL_PORT_RegWriteZr(uint32_t unit, uint32_t port, uint32_t reg, uint16_t value);

// 1 while chip register ZR_PORT_KH_REG holds ZR_PORT_KH_MARK, else 0. `port` appears in the line only.
ZR_EXPORT uint32_t ZR_PORT_GetKhCheck(uint32_t unit, uint32_t port, uint32_t *intact);
ZR_EXPORT uint32_t HAL_PORT_GetKhCheckZr(uint32_t unit, uint32_t port, uint32_t *intact);

// Chip identifier, chip register 0x1300. The SDK writes the output itself, so what a failed read leaves
// there is the SDK's. `port` appears in the line only.
ZR_EXPORT uint32_t ZR_PORT_GetChipId(uint32_t unit, uint32_t port, uint32_t *identifier);
ZR_EXPORT uint32_t HAL_PORT_GetChipIdZr(uint32_t unit, uint32_t port, uint32_t *identifier);

// Forces the LEDs of a port; the meaning of `a` and `b` is the SDK's.
ZR_EXPORT uint32_t ZR_PORT_SetLEDForce(uint32_t unit, uint32_t port, uint32_t a, uint32_t b);
ZR_EXPORT uint32_t HAL_PORT_SetLEDForceZr(uint32_t unit, uint32_t port, uint32_t a, uint32_t b);

// Applies the SDK's link-scan work-around for gigabit PHYs; on ports of kind LSWM_PORT_NO_LINK_SCAN it does
// nothing and returns LSW_OK. LSW_INVALID_ARGUMENT, silently, for a unit above 2 or a port above 127.
ZR_EXPORT uint32_t ZR_PORT_LinkScanWar(uint32_t unit, uint32_t port);
ZR_EXPORT uint32_t HAL_PORT_LinkScanWarZr(uint32_t unit, uint32_t port);

// ---- isolation ------------------------------------------------------------------------------

// The chip keeps a permit map per port: the ports that it may forward to. The manager speaks of the isolate
// map: the unit's logical ports (HAL_PORT_GetValidPortMapZr) that it may not forward to. Of any map the first
// word counts, bit n = port n; a port above 31 has the bit of its number modulo 32.

// The port's isolate map; the HAL_ operation reads its permit map.
ZR_EXPORT uint32_t ZR_PORT_GetIsolateMap(uint32_t unit, uint32_t port, uint32_t *isolateMap);
ZR_EXPORT uint32_t HAL_PORT_GetIsolateMapZr(uint32_t unit, uint32_t port, uint32_t *permitMap);

// `isolate` 1 takes the ports of `portMap`, and those that are no logical ports, out of the permit map;
// anything else adds the ports of `portMap` to it, whatever they are. The HAL_ operation writes a permit map.
ZR_EXPORT uint32_t ZR_PORT_SetIsolate(uint32_t unit, uint32_t port, const uint32_t *portMap, uint32_t isolate);
ZR_EXPORT uint32_t HAL_PORT_SetIsolateZr(uint32_t unit, uint32_t port, const uint32_t *permitMap);

// ZR_PORT_SetIsolate on every valid port of the unit information but the reserved one, with all logical
// ports except the port itself and the reserved one. Stops at the first port that fails, with a line of its
// own; the ports before it stay changed. LSW_INVALID_ARGUMENT, silently, for a unit above 2.
ZR_EXPORT uint32_t ZR_PORT_SetAllIsolate(uint32_t unit, uint32_t isolate);

ZR_EXTERN_C_END
