// Records that the manager passes to the operations, byte for byte as the manager lays them out.
// Only the named fields are read or written, and reserved bytes are left alone, unless a record says otherwise.
#pragma once

#include "platform/abi.h"

// One entry of the MAC address table.
typedef struct {
    uint8_t mac[6]; // network byte order
    uint16_t vlan;  // VLAN of delete by VLAN and MAC and of the flush by port and VLAN
    uint8_t valid;  // set to 1 by a read
    uint8_t reserved9;
    uint16_t port; // written by a read and by the synchronised insert
    uint8_t reserved12[4];
    uint32_t entryVlan; // VLAN of an added entry; written by a read
    uint8_t reserved20[4];
    uint32_t vlanSpecific; // blocking entries only: 0 adds the entry without VLAN key
    uint8_t reserved28[5];
    uint8_t noPort; // set to 1 by a read when no port of the entry qualifies
    uint8_t reserved34[6];
    uint8_t type; // LSWM_MAC_*; any other value is a dynamic entry
    uint8_t reserved41[2];
    uint8_t unit; // unit of the flushes; written by a read
} LswmMacEntry;
ZR_ASSERT_SIZE(LswmMacEntry, 44);
ZR_ASSERT_OFFSET(LswmMacEntry, vlan, 6);
ZR_ASSERT_OFFSET(LswmMacEntry, valid, 8);
ZR_ASSERT_OFFSET(LswmMacEntry, port, 10);
ZR_ASSERT_OFFSET(LswmMacEntry, entryVlan, 16);
ZR_ASSERT_OFFSET(LswmMacEntry, vlanSpecific, 24);
ZR_ASSERT_OFFSET(LswmMacEntry, noPort, 33);
ZR_ASSERT_OFFSET(LswmMacEntry, type, 40);
ZR_ASSERT_OFFSET(LswmMacEntry, unit, 43);

enum { LSWM_MAC_STATIC = 1, LSWM_MAC_BLOCKING = 2 };

// The manager's query for one entry.
typedef struct {
    uint32_t reserved[12];
    uint32_t index; // table index
} LswmMacQuery;
ZR_ASSERT_OFFSET(LswmMacQuery, index, 48);

// Link abilities of a port, one byte each, 0 or 1. Reading them clears all 12 bytes first, also when it
// fails then.
typedef struct {
    uint8_t half10;
    uint8_t full10;
    uint8_t half100;
    uint8_t full100;
    uint8_t full1000;
    uint8_t reserved5[3];
    uint8_t pause;
    uint8_t pauseAsym;
    uint8_t reserved10[2];
} LswmPortAbility;
ZR_ASSERT_SIZE(LswmPortAbility, 12);
ZR_ASSERT_OFFSET(LswmPortAbility, full1000, 4);
ZR_ASSERT_OFFSET(LswmPortAbility, pause, 8);

// A port's traffic counters by the manager's counter number; a read writes all of them.
typedef struct {
    uint64_t counter[80];
} LswmPortStatistics;
ZR_ASSERT_SIZE(LswmPortStatistics, 640);

// A PHY's signal-to-noise readings.
typedef struct {
    uint32_t snrA;
    uint32_t snrB;
    uint32_t snrC;
    uint32_t snrD;
    uint32_t word4;
    uint32_t status;
    uint32_t trap;
    uint32_t word7;
} LswmPortSnr;
ZR_ASSERT_SIZE(LswmPortSnr, 32);

typedef struct {
    uint32_t reserved0;
    uint32_t packetType; // 0, 1 or 2
    uint32_t enable;
    uint32_t meter; // chip shared meter
} LswmStormControl;
ZR_ASSERT_SIZE(LswmStormControl, 16);

// Committed access rate.
typedef struct {
    uint32_t mode;   // 1 passes rates unconverted; any other value is mode 0
    uint32_t rate;   // mode 0: in eighths of the chip's unit; mode 1: in the chip's unit
    uint32_t bucket; // written: in 12/5 of the chip's unit; read: in the chip's unit
} LswmCar;
ZR_ASSERT_SIZE(LswmCar, 12);

typedef struct {
    uint64_t count;
    uint64_t second; // always 0
} LswmCounter;
ZR_ASSERT_SIZE(LswmCounter, 16);

// Match part of an ACL rule. Numbers are in the processor's byte order, IPv4 addresses included; MAC
// addresses and CAPWAP words are bytes as on the wire.
typedef struct {
    uint8_t l3Type; // 0: IPv4, the IPv4 fields count; any other value: they do not
    uint8_t reserved1[3];
    uint32_t flags; // LSWM_MATCH_*
    uint8_t reserved8[12];
    uint8_t dstMac[6];
    uint8_t dstMacMask[6];
    uint8_t srcMac[6];
    uint8_t srcMacMask[6];
    uint16_t etherType;
    uint16_t etherTypeMask;
    uint16_t outerVlan;
    uint16_t outerVlanMask;
    uint8_t reserved52[4];
    uint8_t outerPriority; // 802.1p
    uint8_t outerPriorityMask;
    uint8_t reserved58[6];
    uint16_t udf;
    uint16_t udfMask;
    uint8_t capwap[4];   // CAPWAP header words in packet byte order
    uint32_t capwapMask; // the low 16 bits apply to each of the two 16-bit words
    uint8_t reserved76[4];
    uint8_t tos;     // read back only
    uint8_t tosMask; // read back only
    uint8_t ipProtocol;
    uint8_t ipProtocolMask;
    uint8_t reserved84[8];
    uint16_t l4SrcPort;
    uint16_t l4SrcPortMask;
    uint16_t l4DstPort;
    uint16_t l4DstPortMask; // read back only: a rule always matches the whole port
    uint8_t reserved100[8];
    uint32_t srcIp;
    uint32_t srcIpMask;
    uint32_t dstIp;
    uint32_t dstIpMask;
    uint8_t reserved124[36];
    uint32_t portBitmap; // bit n = chip port n
    uint8_t reserved164[12];
} LswmAclMatch;
ZR_ASSERT_SIZE(LswmAclMatch, 176);
ZR_ASSERT_OFFSET(LswmAclMatch, flags, 28 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, dstMac, 44 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, srcMac, 56 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, etherType, 68 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, outerVlan, 72 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, outerPriority, 80 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, udf, 88 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, capwap, 92 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, capwapMask, 96 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, tos, 104 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, ipProtocol, 106 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, l4SrcPort, 116 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, l4DstPort, 120 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, srcIp, 132 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, dstIp, 140 - 24);
ZR_ASSERT_OFFSET(LswmAclMatch, portBitmap, 184 - 24);

enum {
    LSWM_MATCH_DST_MAC = 0x1,
    LSWM_MATCH_SRC_MAC = 0x2,
    LSWM_MATCH_ETHER_TYPE = 0x4,
    LSWM_MATCH_OUTER_VLAN = 0x8,
    LSWM_MATCH_OUTER_PRIORITY = 0x20,
    LSWM_MATCH_DST_IP = 0x2000,
    LSWM_MATCH_SRC_IP = 0x4000,
    LSWM_MATCH_IP_PROTOCOL = 0x8000,
    LSWM_MATCH_L4_SRC_PORT = 0x200000,
    LSWM_MATCH_L4_DST_PORT = 0x400000,
    LSWM_MATCH_UDF = 0x20000000,
    LSWM_MATCH_CAPWAP = 0x40000000
};

// Action part of an ACL rule.
typedef struct {
    uint32_t flags; // LSWM_ACTION_*
    uint8_t reserved4[4];
    uint32_t counterId; // hit counter
    uint8_t reserved12[32];
    uint32_t carId; // meter that polices the rule; recorded by its low 8 bits
    uint8_t reserved48[68];
    uint8_t value; // of LSWM_ACTION_VALUE_A, _B and _C
    uint8_t reserved117[15];
    uint32_t port; // of LSWM_ACTION_PORT
    uint8_t reserved136[24];
} LswmAclAction;
ZR_ASSERT_SIZE(LswmAclAction, 160);
ZR_ASSERT_OFFSET(LswmAclAction, counterId, 232 - 224);
ZR_ASSERT_OFFSET(LswmAclAction, carId, 268 - 224);
ZR_ASSERT_OFFSET(LswmAclAction, value, 340 - 224);
ZR_ASSERT_OFFSET(LswmAclAction, port, 356 - 224);

enum {
    LSWM_ACTION_FORWARD_A = 0x1, // the first of A, B, C, D/E that is set is the forwarding action
    LSWM_ACTION_FORWARD_B = 0x2,
    LSWM_ACTION_COUNT = 0x10, // hit counter, its number in counterId
    LSWM_ACTION_FORWARD_C = 0x20,
    LSWM_ACTION_CAR = 0x40, // policed by carId
    LSWM_ACTION_FORWARD_D = 0x80,
    LSWM_ACTION_VALUE_A = 0x200,
    LSWM_ACTION_PORT = 0x400,
    LSWM_ACTION_VALUE_B = 0x800,
    LSWM_ACTION_VALUE_C = 0x1000,
    LSWM_ACTION_FORWARD_E = 0x2000
};

// An ACL rule.
typedef struct {
    uint8_t reserved0[24];
    LswmAclMatch match;
    uint32_t partition; // 0 to 3
    uint8_t reserved204[20];
    LswmAclAction action;
} LswmAclRule;
ZR_ASSERT_SIZE(LswmAclRule, 384);
ZR_ASSERT_OFFSET(LswmAclRule, match, 24);
ZR_ASSERT_OFFSET(LswmAclRule, partition, 200);
ZR_ASSERT_OFFSET(LswmAclRule, action, 224);

// Where a rule is on the chip.
typedef struct {
    uint32_t firstChipId; // first chip rule id
    uint8_t count;        // consecutive chip entries, cut to 8 bits
    uint8_t reserved5[3];
} AclEntryPlace;
ZR_ASSERT_SIZE(AclEntryPlace, 8);
ZR_ASSERT_OFFSET(AclEntryPlace, count, 4);
