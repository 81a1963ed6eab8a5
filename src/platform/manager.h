// Services of the switch manager, and its per-unit description of the device.
#pragma once

#include "platform/abi.h"

ZR_EXTERN_C_BEGIN

// Status of every operation that can fail.
enum {
    LSW_OK = 0,
    LSW_INVALID_ARGUMENT = 1, // unit, type or index out of range, or no record for the unit
    LSW_NULL_POINTER = 2,     // a required pointer is null; in record initialisers also: no memory
    LSW_NO_MEMORY = 3,        // no memory for a chip field node
    LSW_CHIP_FAILED = 4,      // the chip SDK, the SMI bus or a reset failed; no mapping recorded
    LSW_NOT_FOUND = 5,        // the identifier or key does not exist
    LSW_IN_USE = 6,           // already in use or already initialised
    LSW_NO_RESOURCE = 7,      // no free identifier, table full, index beyond the configured range
    LSW_UNSUPPORTED = 8       // unsupported value, or a unit that the SMI path does not serve
};

// The module that a line belongs to: the first argument of both print services. The library does not use
// 8, 9 and 10.
enum {
    LSW_MODULE_SMI = 0,
    LSW_MODULE_CHIP = 1,
    LSW_MODULE_PORT = 2,
    LSW_MODULE_MAC = 3,
    LSW_MODULE_VLAN = 4,
    LSW_MODULE_QOS = 5,
    LSW_MODULE_ACL = 6,
    LSW_MODULE_STORMCTL = 7,
    LSW_MODULE_STP = 11,
    LSW_MODULE_TRUNK = 12
};

// Trace levels that LSWM_PrintSwitchOn is asked for.
enum { LSW_TRACE_EVENT = 2, LSW_TRACE_DETAIL = 3 };

// Records a failed configuration step: always printed. `reserved` is 0; `status` is usually what the lower
// layer returned, and a constant where it returned none. The result means nothing to the library, but two
// failures of HAL_VLAN_SetTagModeZr return it.
uint32_t LSWM_ConfigFailPrint(uint32_t module, uint32_t reserved, uint32_t status, const char *format, ...)
    ZR_PRINTF_LIKE(4, 5);

// Prints a trace line. `reserved` is 0. Ask LSWM_PrintSwitchOn first unless the line is unconditional.
uint32_t LSWM_DebugInfoPrint(uint32_t module, uint32_t reserved, const char *format, ...) ZR_PRINTF_LIKE(3, 4);

// Nonzero in the low 8 bits, which alone count, when traces of `level` are on.
uint32_t LSWM_PrintSwitchOn(uint32_t level);

// Prints a text on the manager's command line as it is: it is not a format.
uint32_t LSWM_CmdCliPrint(const char *text);

// `size` bytes of the manager's memory, uncleared; null when there are none.
void *LSWM_MemAlloc(uint32_t size);
void LSWM_MemFree(void *block);

// Mutex services. The library hands their addresses to the chip SDK and calls none of them.
void LSWM_SemMCreate(void);
void LSWM_SemTake(void);
void LSWM_SemGive(void);

// The manager's operation table of each module, or null. `value` is what the manager gave to
// ZR_COMMON_FuncListInit. The tables' types are in frame/op_tables.h.
void *LSW_Common_GetFuncPtr(uint32_t value);
void *LSW_PORT_GetFuncPtr(uint32_t value);
void *LSW_MAC_GetFuncPtr(uint32_t value);
void *LSW_VLAN_GetFuncPtr(uint32_t value);
void *LSW_QOS_GetFuncPtr(uint32_t value);
void *LSW_ACL_GetFuncPtr(uint32_t value);
void *LSW_HSEC_GetFuncPtr(uint32_t value);
void *LSW_MC_GetFuncPtr(uint32_t value);
void *LSW_STORMCTL_GetFuncPtr(uint32_t value);
void *LSW_STP_GetFuncPtr(uint32_t value);
void *LSW_TRUNK_GetFuncPtr(uint32_t value);
void *LSW_FMEA_GetFuncPtr(uint32_t value);

enum {
    LSWM_UNITS = 3,     // units 0 to 2
    LSWM_PORTS = 128,   // ports 0 to 127 of a unit
    LSWM_PORT_SETS = 16 // port sets of a unit's port map
};

// Bits of LswmPortInfo.flags and values of LswmPortInfo.kind that the library reads.
enum {
    LSWM_PORT_MAC_REPORTED = 0x2, // flag: the port may be reported as that of an address read by index
    LSWM_PORT_NO_LINK_SCAN = 1    // kind: the link-scan work-around is not applied
};

typedef struct {
    uint8_t flags;
    uint8_t kind;
} LswmPortInfo;

// A port set: port p is bit (p mod 32) of word (p div 32).
typedef struct {
    uint32_t word[4];
} LswmPortSet;

// Sets of a unit's port map that the library reads.
enum {
    LSWM_SET_VALID = 0,    // the unit's valid ports
    LSWM_SET_PRISEL_A = 1, // first set bound to priority selection 0
    LSWM_SET_PRISEL_B = 2, // second set bound to priority selection 0
    LSWM_SET_CASCADE = 15  // the cascade ports
};

// The manager's record of one unit; the library only reads it.
typedef struct {
    uint32_t maxFrameSize;   // bytes
    uint32_t reservedPort;   // port number
    uint32_t cascadeTrunkId; // trunk that the cascade ports join
    LswmPortInfo port[LSWM_PORTS];
    LswmPortSet *portMap; // LSWM_PORT_SETS sets
} LswmUnitInfo;
ZR_ASSERT_OFFSET(LswmUnitInfo, port, 12);
ZR_ASSERT_OFFSET(LswmUnitInfo, portMap, 272);

extern LswmUnitInfo g_lswmInfo[LSWM_UNITS];

ZR_EXTERN_C_END
