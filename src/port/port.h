// Ports: start-up, frame size, enable, link settings, loopback, counters, diagnostics, isolation.
//
// Ports are the manager's numbers; they go to the chip SDK as they come. Every failure line is printed with
// module LSW_MODULE_PORT and carries the SDK's status, or the status returned where no SDK call was made.
// A reader that fails leaves its output unwritten unless said otherwise. An output that is null is refused
// with LSW_NULL_POINTER before any chip call; where a line is printed for that, it is named.
#pragma once

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

ZR_EXTERN_C_END
