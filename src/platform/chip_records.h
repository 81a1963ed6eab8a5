// Records exchanged with the chip SDK, byte for byte as the SDK lays them out. What the SDK means by a field
// or by a status is known only as far as the library needs it; where more is said it is marked as assumed.
#pragma once

#include "platform/abi.h"

// ---- bring-up -------------------------------------------------------------------------------

// Services that the SDK takes from its host: the register transport, which it uses for units 1 and 2,
// mutexes, text output. The record lives for the registration only, so the SDK has to copy it.
typedef struct {
    uint32_t (*regRead)(uint8_t unit, uint32_t address, uint32_t *value);
    uint32_t (*regWrite)(uint8_t unit, uint32_t address, uint32_t value);
    void (*semCreate)(void);
    void (*semTake)(void);
    void (*semGive)(void);
    uint32_t (*print)(const char *text);
} SdkServices;
ZR_ASSERT_SIZE(SdkServices, 6 * sizeof(void *));

// ---- ingress ACL ----------------------------------------------------------------------------

// Field types of a FilterField.
enum {
    SDK_FIELD_DST_MAC = 0,
    SDK_FIELD_SRC_MAC = 1,
    SDK_FIELD_ETHER_TYPE = 2,
    SDK_FIELD_OUTER_TAG = 3,
    SDK_FIELD_SRC_IP = 5,
    SDK_FIELD_DST_IP = 6,
    SDK_FIELD_IP_PROTOCOL = 8,
    SDK_FIELD_TCP_SRC_PORT = 15,
    SDK_FIELD_TCP_DST_PORT = 16,
    SDK_FIELD_UDP_SRC_PORT = 18,
    SDK_FIELD_UDP_DST_PORT = 19,
    SDK_FIELD_SELECTOR_3 = 29, // packet word picked by field selector 3: first CAPWAP word
    SDK_FIELD_SELECTOR_4 = 30, // packet word picked by field selector 4: second CAPWAP word
    SDK_FIELD_SELECTOR_15 = 41 // packet word picked by field selector 15: user-defined field
};

typedef struct {
    uint32_t value;
    uint32_t mask;
} FilterWord;

// One matched header field; a node of a configuration's chain.
typedef struct FilterField {
    uint32_t type; // SDK_FIELD_*
    uint32_t reserved4;
    union {
        struct {
            uint8_t address[6];
            uint8_t mask[6];
        } mac;           // SDK_FIELD_DST_MAC, SDK_FIELD_SRC_MAC
        FilterWord word; // EtherType, protocol, ports, selector words
        struct {
            FilterWord priority; // 802.1p
            uint8_t reserved16[16];
            uint32_t zero;
            FilterWord vlan;
        } tag; // SDK_FIELD_OUTER_TAG
        struct {
            uint8_t reserved8[8];
            FilterWord address;
        } ip; // SDK_FIELD_SRC_IP, SDK_FIELD_DST_IP
        uint8_t bytes[104];
    } data;
    struct FilterField *next; // written by the SDK when it chains the node
} FilterField;
ZR_ASSERT_SIZE(FilterField, 120);
ZR_ASSERT_OFFSET(FilterField, data.mac.mask, 14);
ZR_ASSERT_OFFSET(FilterField, data.word.mask, 12);
ZR_ASSERT_OFFSET(FilterField, data.tag.priority, 8);
ZR_ASSERT_OFFSET(FilterField, data.tag.zero, 32);
ZR_ASSERT_OFFSET(FilterField, data.tag.vlan, 36);
ZR_ASSERT_OFFSET(FilterField, data.ip.address, 16);
ZR_ASSERT_OFFSET(FilterField, next, 112);

// A rule before it is written: its chain of fields and its ports.
typedef struct {
    FilterField *head; // null when empty; kept by the SDK
    uint8_t reserved8[168];
    uint32_t portBitmap; // bit n = chip port n
    uint32_t portMask;   // ZR_ACL_CHIP_PORTS in every rule; assumed: the ports that portBitmap decides
    uint8_t reserved184[8];
} FilterCfg;
ZR_ASSERT_SIZE(FilterCfg, 192);
ZR_ASSERT_OFFSET(FilterCfg, portBitmap, 176);
ZR_ASSERT_OFFSET(FilterCfg, portMask, 180);

// A rule's action: switches in words 8 to 26, their arguments in words 33 to 40. Meter and counter are known;
// what the other switches do is the SDK's, so that they carry their number. The word "redirect" is assumed:
// known is that word 12 goes with a mask of chip ports in word 37.
typedef struct {
    uint32_t reserved0[8];
    uint32_t carEnable; // word 8
    uint32_t switch9;
    uint32_t switch10;
    uint32_t switch11;
    uint32_t redirectEnable; // word 12, ports in redirectPorts
    uint32_t reserved13;
    uint32_t switch14;
    uint32_t reserved15;
    uint32_t switch16; // value in `value`
    uint32_t reserved17;
    uint32_t switch18; // value in `value`
    uint32_t switch19; // value in `value`
    uint32_t reserved20[6];
    uint32_t counterEnable; // word 26
    uint32_t reserved27[6];
    uint32_t carId; // word 33
    uint32_t reserved34[3];
    uint32_t redirectPorts; // word 37
    uint32_t value;         // word 38
    uint32_t reserved39;
    uint32_t counterId; // word 40
} FilterAct;
ZR_ASSERT_SIZE(FilterAct, 41 * 4);
ZR_ASSERT_OFFSET(FilterAct, carEnable, 8 * 4);
ZR_ASSERT_OFFSET(FilterAct, redirectEnable, 12 * 4);
ZR_ASSERT_OFFSET(FilterAct, switch14, 14 * 4);
ZR_ASSERT_OFFSET(FilterAct, switch16, 16 * 4);
ZR_ASSERT_OFFSET(FilterAct, switch19, 19 * 4);
ZR_ASSERT_OFFSET(FilterAct, counterEnable, 26 * 4);
ZR_ASSERT_OFFSET(FilterAct, carId, 33 * 4);
ZR_ASSERT_OFFSET(FilterAct, redirectPorts, 37 * 4);
ZR_ASSERT_OFFSET(FilterAct, value, 38 * 4);
ZR_ASSERT_OFFSET(FilterAct, counterId, 40 * 4);

enum { SDK_RAW_FIELDS = 8 };

// One chip entry read back: eight raw 16-bit fields.
typedef struct {
    uint32_t value[SDK_RAW_FIELDS]; // low 16 bits used
    uint32_t mask[SDK_RAW_FIELDS];  // low 16 bits used
    uint32_t id[SDK_RAW_FIELDS];    // raw field ids
    uint8_t reserved96[168];
    uint32_t portBitmap;
    uint8_t reserved268[8];
    uint32_t valid; // nonzero when the entry holds a rule
} FilterCfgRaw;
ZR_ASSERT_SIZE(FilterCfgRaw, 280);
ZR_ASSERT_OFFSET(FilterCfgRaw, portBitmap, 264);
ZR_ASSERT_OFFSET(FilterCfgRaw, valid, 276);

// ---- layer 2 --------------------------------------------------------------------------------

// A unicast address; the address itself travels as a separate argument.
typedef struct {
    uint8_t mac[6];
    uint8_t reserved6[2];
    uint32_t vlanKeyed; // 1 makes the VLAN part of the entry's key
    uint32_t vlan;
    uint32_t reserved16[2];
    uint32_t port;
    uint32_t srcBlock;
    uint32_t dstBlock;
    uint32_t reserved36;
    uint32_t isStatic; // on delete the SDK fills it from the deleted entry
    uint32_t reserved44[4];
} L2UcastAddr;
ZR_ASSERT_SIZE(L2UcastAddr, 60);
ZR_ASSERT_OFFSET(L2UcastAddr, vlanKeyed, 8);
ZR_ASSERT_OFFSET(L2UcastAddr, port, 24);
ZR_ASSERT_OFFSET(L2UcastAddr, isStatic, 40);

// An address-table entry read by index.
typedef struct {
    uint32_t index; // input
    uint8_t reserved4[8];
    uint8_t mac[6];
    uint8_t reserved18[10];
    uint32_t portMask;
    uint8_t reserved32[8];
    uint32_t vlan;
    uint8_t reserved44[8];
    uint32_t isStatic;
    uint8_t reserved56[8];
} L2TableEntry;
ZR_ASSERT_SIZE(L2TableEntry, 64);
ZR_ASSERT_OFFSET(L2TableEntry, mac, 12);
ZR_ASSERT_OFFSET(L2TableEntry, portMask, 28);
ZR_ASSERT_OFFSET(L2TableEntry, vlan, 40);
ZR_ASSERT_OFFSET(L2TableEntry, isStatic, 52);

// Which learned addresses a flush removes.
typedef struct {
    uint32_t byVlan;
    uint32_t vlan;
    uint32_t reserved2[2];
    uint32_t byPort;
    uint32_t port;
    uint32_t reserved6[4];
    uint32_t allPorts; // 1 for the flush by VLAN alone, 0 for the others
} L2FlushCfg;
ZR_ASSERT_SIZE(L2FlushCfg, 44);
ZR_ASSERT_OFFSET(L2FlushCfg, byPort, 4 * 4);
ZR_ASSERT_OFFSET(L2FlushCfg, allPorts, 10 * 4);

// An entry of the VLAN table.
typedef struct {
    uint32_t memberMask;
    uint32_t untagMask;           // members that leave the VLAN without a tag
    uint16_t independentLearning; // 1 in a created VLAN, 0 in a destroyed one
    uint8_t reserved10[10];
} VlanCfg;
ZR_ASSERT_SIZE(VlanCfg, 20);
ZR_ASSERT_OFFSET(VlanCfg, independentLearning, 8);

// An entry of the member-configuration table.
typedef struct {
    uint16_t vlan;
    uint8_t reserved2[2];
    uint32_t memberMask;
    uint8_t reserved8[12];
} VlanMbrCfg;
ZR_ASSERT_SIZE(VlanMbrCfg, 20);
ZR_ASSERT_OFFSET(VlanMbrCfg, memberMask, 4);

enum {
    SDK_L2_TABLE_FULL = 22,          // add: the table is full or the hash bucket is taken
    SDK_MBR_TABLE_FULL = 22,         // no member configuration is free
    SDK_L2_ENTRY_NOT_FOUND = 0x6000A // delete in a VLAN: counts as success; assumed: no such entry
};

// ---- ports ----------------------------------------------------------------------------------

// Link abilities of a PHY, each 0 or 1: advertised, or allowed in forced mode.
typedef struct {
    uint32_t autoNego;
    uint32_t half10;
    uint32_t full10;
    uint32_t half100;
    uint32_t full100;
    uint32_t full1000;
    uint32_t pause;
    uint32_t pauseAsym;
} SdkPortAbility;
ZR_ASSERT_SIZE(SdkPortAbility, 32);

// Forced-link settings of a MAC, or its status.
typedef struct {
    uint32_t reserved0;
    uint32_t speed;  // SDK_SPEED_*
    uint32_t duplex; // 1: full
    uint32_t link;   // 1: up
    uint32_t reserved4[4];
} SdkMacLink;
ZR_ASSERT_SIZE(SdkMacLink, 32);

enum { SDK_SPEED_10 = 0, SDK_SPEED_100 = 1, SDK_SPEED_1000 = 2 };

// A port's counters as the chip keeps them: 66 words. Words 0 and 1, and 22 and 23, are one 64-bit
// counter each.
typedef union {
    uint32_t word[66];
    uint64_t wide[33];
} SdkPortCounters;
ZR_ASSERT_SIZE(SdkPortCounters, 264);

// A PHY's signal-to-noise readings as the SDK delivers them.
typedef struct {
    uint32_t word[8];
} SdkPortSnr;
ZR_ASSERT_SIZE(SdkPortSnr, 32);

// ---- QoS ------------------------------------------------------------------------------------

enum { SDK_BUCKET_MAX = 2097151 }; // of a shared meter's bucket, in the chip's unit: 21 bits

// Eight words: a priority selection, a priority map or scheduling weights.
typedef struct {
    uint32_t word[8];
} SdkQosRecord;
ZR_ASSERT_SIZE(SdkQosRecord, 32);
