// The manager's and the board's side of a platform that returns at once, and the SDK calls that must answer
// something for an operation to go its usual way.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/pair.h"
#include "platform/board.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

LswmPortSet portSets[LSWM_UNITS][LSWM_PORT_SETS];
zrbench_pair::Tables operations;

// Ports 0 to 4 and 15 to 17, of which 15 and 16 are cascade ports.
bool fillUnitInfo()
{
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit) {
        g_lswmInfo[unit].maxFrameSize = 1536;
        g_lswmInfo[unit].reservedPort = 17;
        g_lswmInfo[unit].cascadeTrunkId = 1;
        for (LswmPortInfo &port : g_lswmInfo[unit].port)
            port.flags = LSWM_PORT_MAC_REPORTED;
        g_lswmInfo[unit].portMap = portSets[unit];
        portSets[unit][LSWM_SET_VALID].word[0] = 0x3801F;
        portSets[unit][LSWM_SET_PRISEL_A].word[0] = 0x7;
        portSets[unit][LSWM_SET_PRISEL_B].word[0] = 0x18;
        portSets[unit][LSWM_SET_CASCADE].word[0] = 0x18000;
    }
    return true;
}

} // namespace

LswmUnitInfo g_lswmInfo[LSWM_UNITS];
uint8_t l2sw_eco[3];

static const bool unitInfoFilled = fillUnitInfo();

const zrbench_pair::Tables &zrbench_pair::tables()
{
    return operations;
}

extern "C" {

uint32_t LSWM_ConfigFailPrint(uint32_t, uint32_t, uint32_t status, const char *, ...)
{
    return status;
}
uint32_t LSWM_DebugInfoPrint(uint32_t, uint32_t, const char *, ...)
{
    return 0;
}
void *LSWM_MemAlloc(uint32_t size)
{
    return std::malloc(size);
}
void LSWM_MemFree(void *block)
{
    std::free(block);
}

void *LSW_Common_GetFuncPtr(uint32_t)
{
    return &operations.common;
}
void *LSW_PORT_GetFuncPtr(uint32_t)
{
    return &operations.port;
}
void *LSW_MAC_GetFuncPtr(uint32_t)
{
    return &operations.mac;
}
void *LSW_VLAN_GetFuncPtr(uint32_t)
{
    return &operations.vlan;
}
void *LSW_QOS_GetFuncPtr(uint32_t)
{
    return &operations.qos;
}
void *LSW_ACL_GetFuncPtr(uint32_t)
{
    return &operations.acl;
}
void *LSW_HSEC_GetFuncPtr(uint32_t)
{
    return &operations.hsec;
}
void *LSW_MC_GetFuncPtr(uint32_t)
{
    return &operations.mc;
}
void *LSW_STORMCTL_GetFuncPtr(uint32_t)
{
    return &operations.stormctl;
}
void *LSW_STP_GetFuncPtr(uint32_t)
{
    return &operations.stp;
}
void *LSW_TRUNK_GetFuncPtr(uint32_t)
{
    return &operations.trunk;
}
void *LSW_FMEA_GetFuncPtr(uint32_t)
{
    return &operations.fmea;
}

int memcpy_s(void *dest, size_t, const void *src, size_t count)
{
    std::memcpy(dest, src, count);
    return 0;
}
int memset_s(void *dest, size_t, int c, size_t count)
{
    std::memset(dest, c, count);
    return 0;
}
int strncpy_s(char *dest, size_t, const char *src, size_t count)
{
    std::strncpy(dest, src, count);
    return 0;
}
int sprintf_s(char *dest, size_t destMax, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(dest, destMax, format, arguments);
    va_end(arguments);
    return length;
}

uint32_t l2sw_switch_port_L2P_get(uint32_t, uint32_t port)
{
    return port;
}
uint32_t l2sw_switch_isExtPort(uint32_t, uint32_t)
{
    return 1;
}
uint32_t l2sw_switch_logPortMask_get(uint32_t, uint32_t *mask)
{
    *mask = 0x3801F;
    return 0;
}
// Chains nodes as the SDK does; a rule takes an entry for every two of them.
uint32_t l2sw_filter_igrAcl_field_add(uint32_t, FilterCfg *cfg, FilterField *field)
{
    field->next = cfg->head;
    cfg->head = field;
    return 0;
}
static uint32_t entriesOf(const FilterCfg *cfg)
{
    uint32_t nodes = 0;
    for (const FilterField *field = cfg->head; field != nullptr; field = field->next)
        ++nodes;
    return (nodes + 1) / 2;
}
uint32_t l2swFilterIgrAclRuleNumGet(uint32_t, FilterCfg *cfg, FilterAct *, uint32_t *count)
{
    *count = entriesOf(cfg);
    return 0;
}
uint32_t l2sw_filter_igrAcl_cfg_add(uint32_t, uint32_t, FilterCfg *cfg, FilterAct *, uint32_t *written)
{
    *written = entriesOf(cfg);
    return 0;
}
uint32_t l2sw_l2_learningCnt_get(uint32_t, uint32_t, uint32_t *count)
{
    *count = 3;
    return 0;
}

} // extern "C"
