// The twelve operation tables that the switch manager owns and this library fills: the system's
// table of contents. A table is an array of slots of pointer width; each struct here names the slots in
// their order, and frame/slots.h the operation of each. An operation with another signature, or a name at
// another slot, does not compile.
//
// The manager hands over each table by LSW_<MODULE>_GetFuncPtr; the library writes the named slots and
// leaves the reserved ones as they came. Every operation takes the unit (0 to 2) first and returns a status
// (platform/manager.h) unless said otherwise. What an operation does, prints and leaves unwritten on failure
// is described at its declaration, in the header named beside each table.
#pragma once

#include "frame/slots.h"
#include "platform/abi.h"
#include "platform/manager_records.h"

// A slot that the library does not write.
typedef void (*ZrReservedSlot)(void);

// Common chip control: chip/chip.h
typedef struct {
    uint32_t (*initChip)(uint32_t unit);
    // Chip registers: 16-bit addresses, 16-bit values.
    uint32_t (*chipRegRead)(uint32_t unit, uint32_t reg, uint32_t *value);
    uint32_t (*chipRegWrite)(uint32_t unit, uint32_t reg, uint32_t value);
    // One line of the chip's command line.
    uint32_t (*cliCmdPrase)(uint32_t unit, const char *command);
    ZrReservedSlot reserved4[4];
    // Why a port drops frames: a text to be freed with LSWM_MemFree, or null.
    char *(*chipCaptureDropReasonEnable)(uint32_t unit, uint32_t port);
    char *(*chipGetDropReason)(uint32_t unit, uint32_t port);
} ZrCommonOps;
ZR_ASSERT_SIZE(ZrCommonOps, 10 * sizeof(void *));

// Ports and PHYs: port/port.h
typedef struct {
    uint32_t (*init)(uint32_t unit);
    // PHY registers: page in the upper, register number in the lower 16 bits. `ignored` is not read.
    uint32_t (*regRead)(uint32_t unit, uint32_t port, uint32_t ignored, uint32_t reg, uint16_t *value);
    uint32_t (*regWrite)(uint32_t unit, uint32_t port, uint32_t ignored, uint32_t reg, uint16_t value);
    uint32_t (*setEnable)(uint32_t unit, uint32_t port, uint32_t enable);
    uint32_t (*getEnable)(uint32_t unit, uint32_t port, uint32_t *enable);
    uint32_t (*cpuInit)(uint32_t unit, uint32_t port, uint32_t addTag);
    // Link.
    uint32_t (*getLinkStatus)(uint32_t unit, uint32_t port, uint32_t *link);
    uint32_t (*linkEvt)(uint32_t unit, uint32_t port);
    uint32_t (*linkScanWar)(uint32_t unit, uint32_t port);
    // Speed in Mbit/s, auto-negotiation, abilities.
    uint32_t (*getSpeed)(uint32_t unit, uint32_t port, uint32_t *speed);
    uint32_t (*setSpeed)(uint32_t unit, uint32_t port, uint32_t speed);
    uint32_t (*getAutonegEnable)(uint32_t unit, uint32_t port, uint32_t *enable);
    uint32_t (*setAutonegEnable)(uint32_t unit, uint32_t port, uint32_t enable);
    uint32_t (*getAutonegAbility)(uint32_t unit, uint32_t port, LswmPortAbility *ability);
    uint32_t (*getRemoteAutonegAbility)(uint32_t unit, uint32_t port, LswmPortAbility *ability);
    // Counters.
    uint32_t (*getStatistics)(uint32_t unit, uint32_t port, LswmPortStatistics *statistics);
    uint32_t (*clearStatistics)(uint32_t unit, uint32_t port);
    // Duplex (0 half, 1 full; 2 leaves it as it is), frame size in bytes, isolation, loopback.
    uint32_t (*setDuplex)(uint32_t unit, uint32_t port, uint32_t duplex);
    uint32_t (*getDuplex)(uint32_t unit, uint32_t port, uint32_t *duplex);
    uint32_t (*getMaxFrame)(uint32_t unit, uint32_t *maxFrameSize);
    uint32_t (*setIsolate)(uint32_t unit, uint32_t port, const uint32_t *portMap, uint32_t isolate);
    uint32_t (*getLoopback)(uint32_t unit, uint32_t port, uint32_t *mode);
    uint32_t (*setLoopback)(uint32_t unit, uint32_t port, uint32_t mode);
    // Diagnostics.
    uint32_t (*getDebugInfo)(uint32_t unit, uint32_t port, char *buffer, uint32_t size);
    uint32_t (*getSnr)(uint32_t unit, uint32_t port, LswmPortSnr *snr);
    uint32_t (*getKhCheck)(uint32_t unit, uint32_t port, uint32_t *intact);
    uint32_t (*getChipId)(uint32_t unit, uint32_t port, uint32_t *identifier);
    uint32_t (*setLedForce)(uint32_t unit, uint32_t port, uint32_t a, uint32_t b);
    uint32_t (*getLinkDownPhyReg)(uint32_t unit, uint32_t port, char *buffer, uint32_t size, uint32_t offset);
    uint32_t (*setAllIsolate)(uint32_t unit, uint32_t isolate);
    uint32_t (*getIsolateMap)(uint32_t unit, uint32_t port, uint32_t *isolateMap);
    uint32_t (*setAdvert)(uint32_t unit, uint32_t port, const LswmPortAbility *ability);
} ZrPortOps;
ZR_ASSERT_SIZE(ZrPortOps, 32 * sizeof(void *));

// MAC address table: l2/mac.h
typedef struct {
    uint32_t (*init)(uint32_t unit);
    uint32_t (*syncMacInsert)(uint32_t unit, LswmMacEntry *entry);
    uint32_t (*addMac)(uint32_t unit, const LswmMacEntry *entry);
    // Ageing time in the chip's unit.
    uint32_t (*setAgeTime)(uint32_t unit, uint32_t ageTime);
    uint32_t (*getAgeTime)(uint32_t unit, uint32_t *ageTime);
    // Deletes and flushes.
    uint32_t (*delAllMac)(uint32_t unit);
    uint32_t (*delByVlanMac)(uint32_t unit, const LswmMacEntry *entry);
    uint32_t (*delByPort)(uint32_t unit, const LswmMacEntry *entry);
    uint32_t (*delByVlan)(uint32_t unit, uint32_t vlan);
    uint32_t (*delByPortVlan)(uint32_t unit, const LswmMacEntry *entry);
    uint32_t (*delByMac)(uint32_t unit, const uint8_t *mac);
    uint32_t (*delDynMac)(uint32_t unit);
    // Queries and learning.
    uint32_t (*getMacEntry)(uint32_t unit, uint32_t queryType, const LswmMacQuery *query, LswmMacEntry *entry);
    uint32_t (*setPortLearnMode)(uint32_t unit, uint32_t port, uint32_t enable);
    uint32_t (*getPortLearnMode)(uint32_t unit, uint32_t port, uint32_t *enable);
    ZrReservedSlot reserved15;
    uint32_t (*getCapacity)(uint32_t unit, uint32_t *capacity, uint32_t *used);
    void (*registerCallBack)(uint32_t type, void (*callBack)(void)); // no unit
} ZrMacOps;
ZR_ASSERT_SIZE(ZrMacOps, 18 * sizeof(void *));

// VLANs: l2/vlan.h
typedef struct {
    uint32_t (*init)(uint32_t unit);
    uint32_t (*create)(uint32_t unit, uint32_t vlan);
    uint32_t (*destroy)(uint32_t unit, uint32_t vlan);
    // Members; `untag` nonzero: the port leaves the VLAN untagged.
    uint32_t (*addMember)(uint32_t unit, uint32_t port, uint32_t vlan, uint32_t untag);
    uint32_t (*addMultiMember)(uint32_t unit, uint32_t vlan, const uint32_t *ports, const uint32_t *untags);
    uint32_t (*delMember)(uint32_t unit, uint32_t port, uint32_t vlan);
    uint32_t (*getPortMap)(uint32_t unit, uint32_t vlan, uint32_t *memberMask, uint32_t *untagMask);
    // Per port: VLAN of untagged frames, ingress filter, egress tag mode.
    uint32_t (*setPortPvid)(uint32_t unit, uint32_t port, uint32_t vlan);
    uint32_t (*getPortPvid)(uint32_t unit, uint32_t port, uint32_t *vlan);
    uint32_t (*setIgrPortFilter)(uint32_t unit, uint32_t port, uint32_t enable);
    ZrReservedSlot reserved10;
    uint32_t (*setTagMode)(uint32_t unit, uint32_t port, uint32_t tagMode);
} ZrVlanOps;
ZR_ASSERT_SIZE(ZrVlanOps, 12 * sizeof(void *));

// QoS: qos/qos.h
typedef struct {
    uint32_t (*init)(uint32_t unit);
} ZrQosOps;
ZR_ASSERT_SIZE(ZrQosOps, 1 * sizeof(void *));

// Access control lists: records/acl_records.h (identifiers), acl/acl.h (entries and policies)
typedef struct {
    // Identifiers. The first returns 1 or 0, not a status.
    uint32_t (*isLogicRuleInUse)(uint32_t unit, uint32_t logicRuleId);
    uint32_t (*allocLogicRuleId)(uint32_t unit, uint32_t partition, uint32_t *logicRuleId);
    uint32_t (*logicRuleToChipRule)(uint32_t unit, uint32_t logicRuleId, uint32_t *firstChipId);
    // Default policies: portType 1 = WAN, anything else = LAN.
    uint32_t (*updateLanWanPolicy)(uint32_t unit, uint32_t port, uint32_t portType);
    // Records.
    uint32_t (*setRuleMapEntry)(uint32_t unit, uint32_t logicRuleId, uint32_t firstChipId, uint32_t count);
    uint32_t (*releaseRuleRecord)(uint32_t unit, uint32_t logicRuleId);
    // Entries on the chip.
    uint32_t (*addEntry)(uint32_t unit, LswmAclRule *rule, AclEntryPlace *place);
    uint32_t (*getEntry)(uint32_t unit, uint32_t firstChipId, LswmAclRule *rule);
    uint32_t (*delEntry)(uint32_t unit, uint32_t firstChipId);
    uint32_t (*modifyEntryPortmap)(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
    uint32_t (*addEntryPortmap)(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
    uint32_t (*removeEntryPortmap)(uint32_t unit, uint32_t firstChipId, const uint32_t *ports);
    ZrReservedSlot reserved12;
    uint32_t (*init)(uint32_t unit);
} ZrAclOps;
ZR_ASSERT_SIZE(ZrAclOps, 14 * sizeof(void *));

// Rate limits (CAR): records/meter_records.h (identifiers), qos/hsec.h (meters and counters)
typedef struct {
    // Identifiers, per meter type (0 to 5). The first returns 1 or 0, not a status.
    uint32_t (*isLogicMeterInUse)(uint32_t unit, uint32_t type, uint32_t logicId);
    uint32_t (*logicMeterToChipMeter)(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t *chipId);
    uint32_t (*chipMeterToLogicMeter)(uint32_t unit, uint32_t type, uint32_t chipId, uint32_t *logicId);
    uint32_t (*entryIdToLogicMeter)(uint32_t unit, uint32_t type, uint32_t entryId, uint32_t *logicId);
    // Hit counter of an ACL rule.
    uint32_t (*getStat)(uint32_t unit, uint32_t chipRuleId, LswmCounter *counter);
    // Records.
    uint32_t (*setMeterEntry)(uint32_t unit, uint32_t type, uint32_t logicId, uint32_t chipId);
    uint32_t (*releaseRecord)(uint32_t unit, uint32_t type, uint32_t logicId);
    // Meters on the chip.
    uint32_t (*getCar)(uint32_t unit, uint32_t chipMeter, LswmCar *car);
    uint32_t (*configCar)(uint8_t unit, uint32_t chipMeter, const LswmCar *car); // the unit in 8 bits
    uint32_t (*delCar)(uint32_t unit, uint32_t chipMeter);
    ZrReservedSlot reserved10;
    // Allocation: nothing is taken until setMeterEntry.
    uint32_t (*allocMeterId)(uint32_t unit, uint32_t type, uint32_t *logicId, uint32_t *chipId);
    uint32_t (*allocChipMeter)(uint32_t unit, uint32_t type, uint32_t *chipId);
    uint32_t (*init)(uint32_t unit);
} ZrHsecOps;
ZR_ASSERT_SIZE(ZrHsecOps, 14 * sizeof(void *));

// Multicast: qos/rma.h
typedef struct {
    uint32_t (*init)(uint32_t unit);
} ZrMcOps;
ZR_ASSERT_SIZE(ZrMcOps, 1 * sizeof(void *));

// Storm control: qos/stormctl.h. Port 0xFFFFFFFF is the global port.
typedef struct {
    uint32_t (*init)(uint32_t unit);
    uint32_t (*set)(uint32_t unit, uint32_t port, const LswmStormControl *control);
} ZrStormctlOps;
ZR_ASSERT_SIZE(ZrStormctlOps, 2 * sizeof(void *));

// Spanning tree: l2/stp.h
typedef struct {
    uint32_t (*stgCreate)(uint32_t unit, uint32_t *group);
    uint32_t (*setVlanInstanceid)(uint32_t unit, uint32_t instance, uint32_t vlan);
    uint32_t (*setStpMode)(uint32_t unit, uint32_t instance, uint32_t port, uint32_t state);
    uint32_t (*flushMacByPortInstance)(uint32_t unit, uint32_t port, uint32_t instance);
    uint32_t (*flushMacByPortVlan)(uint32_t unit, const LswmMacEntry *entry);
    uint32_t (*flushMacByPort)(uint32_t unit, const LswmMacEntry *entry);
} ZrStpOps;
ZR_ASSERT_SIZE(ZrStpOps, 6 * sizeof(void *));

// Link aggregation: l2/trunk.h
typedef struct {
    uint32_t (*addMember)(uint32_t unit, uint32_t port, uint32_t trunk);
    uint32_t (*delMember)(uint32_t unit, uint32_t port, uint32_t trunk);
    uint32_t (*getMember)(uint32_t unit, uint32_t logicTrunkId, uint32_t *memberMask);
    uint32_t (*create)(uint32_t unit, uint32_t logicTrunkId);
    uint32_t (*destroy)(uint32_t unit, uint32_t logicTrunkId);
    uint32_t (*getTrunkNum)(uint32_t unit, uint32_t *number);
} ZrTrunkOps;
ZR_ASSERT_SIZE(ZrTrunkOps, 6 * sizeof(void *));

// Fault monitoring: frame/fmea.h
typedef struct {
    uint32_t (*monitorUnitReg)(uint32_t unit);
} ZrFmeaOps;
ZR_ASSERT_SIZE(ZrFmeaOps, 1 * sizeof(void *));

// Ties every member that the library fills to its slot number.
#define ZR_ASSERT_SLOT(table, slot, member, operation) ZR_ASSERT_OFFSET(table, member, (slot) * sizeof(void *));
ZR_SLOTS(ZR_ASSERT_SLOT)
#undef ZR_ASSERT_SLOT
