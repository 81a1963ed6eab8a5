/* A switch manager of one unit: takes the library into use, brings the unit up, creates a VLAN with two ports
 * and reads it back. The same source makes a program for the desktop, linked with the stand-in, and one for a
 * device, where the chip SDK, the manager's services and the board's are there when it starts. */
#include <stdio.h>

#include "frame/func_list.h"
#include "platform/manager.h"

enum { UNIT = 0, VLAN = 100, TAGGED_PORT = 1, UNTAGGED_PORT = 2 };

/* The manager owns the operation tables; the library fills them. Slots that it leaves stay null. */
static ZrCommonOps common;
static ZrPortOps port;
static ZrMacOps mac;
static ZrVlanOps vlan;
static ZrQosOps qos;
static ZrAclOps acl;
static ZrHsecOps hsec;
static ZrMcOps mc;
static ZrStormctlOps stormctl;
static ZrFmeaOps fmea;

/* What the manager tells of its units: the library reads it. */
static LswmPortSet portSets[LSWM_PORT_SETS];
LswmUnitInfo g_lswmInfo[LSWM_UNITS];

static void describe(uint32_t unit)
{
    portSets[LSWM_SET_VALID].word[0] = 0x3801F; /* ports 0 to 4 and 15 to 17 */
    g_lswmInfo[unit].maxFrameSize = 1536;
    g_lswmInfo[unit].reservedPort = 17;
    g_lswmInfo[unit].portMap = portSets;
}

static void takeIntoUse(void)
{
    ZR_COMMON_FuncInit(&common);
    ZR_PORT_FuncInit(&port);
    ZR_MAC_FuncInit(&mac);
    ZR_VLAN_FuncInit(&vlan);
    ZR_QOS_FuncInit(&qos);
    ZR_ACL_FuncInit(&acl);
    ZR_HSEC_FuncInit(&hsec);
    ZR_MC_FuncInit(&mc);
    ZR_STORMCTL_FuncInit(&stormctl);
    ZR_FMEA_FuncInit(&fmea);
}

/* Says what failed. What exactly went wrong stands in the lines that the library printed before. */
static int failed(const char *step, uint32_t status)
{
    if (status != LSW_OK)
        fprintf(stderr, "%s: status %u\n", step, status);
    return status != LSW_OK;
}

/* The chip first, then the modules in the order in which they build on each other. Spanning tree and trunks
 * have no initialisation. */
static int bringUp(uint32_t unit)
{
    return failed("chip", common.initChip(unit)) ||        /* reset, SDK, RGMII, LEDs */
           failed("ports", port.init(unit)) ||             /* frame size, trunk of the cascade ports, marker */
           failed("MAC table", mac.init(unit)) ||          /* ageing time */
           failed("VLANs", vlan.init(unit)) ||             /* reserved port out of VLAN 1, ingress filters */
           failed("QoS", qos.init(unit)) ||                /* queues, priority maps, weights */
           failed("ACLs", acl.init(unit)) ||               /* records, default policies */
           failed("rate limits", hsec.init(unit)) ||       /* records of the meters */
           failed("multicast", mc.init(unit)) ||           /* reserved addresses and LLDP to the host */
           failed("storm control", stormctl.init(unit)) || /* nothing yet: limits are set one by one */
           failed("monitoring", fmea.monitorUnitReg(unit));
}

int main(void)
{
    uint32_t members = 0;
    uint32_t untagged = 0;
    describe(UNIT);
    takeIntoUse();
    if (bringUp(UNIT) || failed("create VLAN", vlan.create(UNIT, VLAN)) ||
        failed("add tagged port", vlan.addMember(UNIT, TAGGED_PORT, VLAN, 0)) ||
        failed("add untagged port", vlan.addMember(UNIT, UNTAGGED_PORT, VLAN, 1)) ||
        failed("untagged frames", vlan.setPortPvid(UNIT, UNTAGGED_PORT, VLAN)) ||
        failed("read VLAN", vlan.getPortMap(UNIT, VLAN, &members, &untagged)))
        return 1;
    printf("VLAN %d: members 0x%x, untagged 0x%x\n", VLAN, members, untagged);
    return members == (1U << TAGGED_PORT | 1U << UNTAGGED_PORT) && untagged == 1U << UNTAGGED_PORT ? 0 : 1;
}
