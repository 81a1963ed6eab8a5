// VLANs, link aggregation, the address table, spanning tree.
#include "l2/mac.h"
#include "l2/stp.h"
#include "l2/trunk.h"
#include "l2/vlan.h"
#include "records/trunk_records.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

const Number vlan = id("vlan", 100, 4096);
const Number kState = of("state", ZR_STP_BLOCKING, {2, 0xFFFFFFFF});
const Number trunk = id("trunk", 0, 4);
const Number logicTrunk = id("trunk", 40, 128);

void createVlan()
{
    EXPECT_EQ(device().ops().vlan.create(1, 100), 0U);
    EXPECT_EQ(device().ops().vlan.addMember(1, 2, 100, 1), 0U);
}

void createTrunk()
{
    EXPECT_EQ(device().ops().trunk.create(1, 40), 0U);
    EXPECT_EQ(device().ops().trunk.addMember(1, 2, 0), 0U);
}

// Ports 0 to 3.
In<uint32_t> portList()
{
    In<uint32_t> list{std::vector<uint32_t>(ZR_VLAN_LIST_PORTS, ZR_VLAN_LIST_END)};
    for (uint32_t i = 0; i < 4; ++i)
        list.values[i] = i;
    return list;
}
const In<uint32_t> kUntags{std::vector<uint32_t>(ZR_VLAN_LIST_PORTS)};

LswmMacEntry entryOf(uint8_t type, uint8_t unitOfEntry = 1)
{
    LswmMacEntry entry{};
    for (uint8_t i = 0; i < 6; ++i)
        entry.mac[i] = static_cast<uint8_t>(0x12 + 0x22 * i); // 12:34:56:78:9a:bc
    entry.vlan = 10;
    entry.entryVlan = 10;
    entry.port = 3;
    entry.type = type;
    entry.unit = unitOfEntry;
    return entry;
}

const LswmMacEntry kStatic = entryOf(LSWM_MAC_STATIC);
const LswmMacEntry kUnit0 = entryOf(0, 0);
constexpr LswmMacQuery kQuery = {{}, 76}; // where kStatic stands: bucket 19

void callBack()
{
}

void addStatic()
{
    EXPECT_EQ(device().ops().mac.addMac(1, &kStatic), 0U);
}

// Unit 0 is reached directly: 4094 reads a run would take their time over the SMI bus.
void bindVlan()
{
    EXPECT_EQ(device().ops().stp.setVlanInstanceid(0, 3, 2000), 0U);
}

const bool vlansAdded =
    addSweeps("vlan", {
                          SWEEP_BOTH(ZR_VLAN_Init, HAL_VLAN_InitZr, unit),
                          SWEEP(HAL_VLAN_UntagDscpPriorityEnableZr, unit, 1),
                          SWEEP_BOTH(ZR_VLAN_Create, HAL_VLAN_CreateZr, unit, vlan),
                          SWEEP(HAL_VLAN_DestroyZr, unit, vlan),
                          SWEEP_BOTH(ZR_VLAN_AddMember, HAL_VLAN_AddMemberZr, unit, port(2), vlan, 1),
                          SWEEP(HAL_VLAN_AddMbrTabZr, unit, port(2), vlan),
                          SWEEP(HAL_VLAN_CreateMbrIdxZr, unit, vlan, out),
                          SWEEP(ZR_VLAN_AddMultiMember, unit, vlan, portList(), kUntags),
                          SWEEP_BOTH(ZR_VLAN_GetPortMap, HAL_VLAN_GetPortMapZr, unit, vlan, out, out),
                          SWEEP_BOTH(ZR_VLAN_SetPortPvid, HAL_VLAN_SetPortPvidZr, unit, port(2), vlan),
                          SWEEP_BOTH(ZR_VLAN_GetPortPvid, HAL_VLAN_GetPortPvidZr, unit, port(2), out),
                          SWEEP_BOTH(ZR_VLAN_SetIgrPortFilter, HAL_VLAN_SetPortFilterZr, unit, port(2), 1),
                          SWEEP(HAL_VLAN_SetTagModeZr, unit, port(2), of("mode", 2, {4, 0xFFFFFFFF})),
                      });

const bool vlansAdded2 = addSweeps("vlan", createVlan,
                                   {
                                       SWEEP(ZR_VLAN_Delete, unit, vlan),
                                       SWEEP_BOTH(ZR_VLAN_DelMember, HAL_VLAN_DelMemberZr, unit, port(2), vlan),
                                       SWEEP(HAL_VLAN_DelMbrTabZr, unit, port(2), vlan),
                                   });

const bool trunksAdded = addSweeps("trunk", {
                                                SWEEP(ZR_TRUNK_AddMember, unit, port(2), trunk),
                                                SWEEP(HAL_TRUNK_AddMemberZr, unit, trunk, port(2)),
                                                SWEEP(HAL_TRUNK_GetMemberZr, unit, trunk, out),
                                                SWEEP(ZR_TRUNK_Create, unit, logicTrunk),
                                                SWEEP(ZR_TRUNK_GetTrunkNum, unit, out),
                                                SWEEP_BOTH(ZR_TRUNK_InitMode, HAL_TRUNK_InitHashModeZr, unit),
                                                SWEEP(HAL_TRUNK_InitHashSelectZr, unit),
                                                SWEEP(COM_TRUNK_GetMeterInfo, unit),
                                                SWEEP(COM_TRUNK_SetMeterInfo, unit, logicTrunk, 1),
                                            });

const bool trunksAdded2 = addSweeps("trunk", createTrunk,
                                    {
                                        SWEEP(ZR_TRUNK_DelMember, unit, port(2), trunk),
                                        SWEEP(HAL_TRUNK_DelMemberZr, unit, trunk, port(2)),
                                        SWEEP(ZR_TRUNK_GetMember, unit, logicTrunk, out),
                                        SWEEP(ZR_TRUNK_Delete, unit, logicTrunk),
                                        SWEEP(COM_TRUNK_IsLogicTrunkExist, unit, logicTrunk),
                                        SWEEP(COM_TRUNK_LogicidToChipid, unit, logicTrunk, out),
                                    });

const bool addressesAdded =
    addSweeps("mac", {
                         SWEEP_BOTH(ZR_MAC_Init, HAL_MAC_InitZr, unit),
                         SWEEP(HAL_MAC_IllegalMacProc, unit),
                         SWEEP_BOTH(ZR_MAC_SetAgeTime, HAL_MAC_SetAgeTimeZr, unit, 600),
                         SWEEP_BOTH(ZR_MAC_GetAgeTime, HAL_MAC_GetAgeTimeZr, unit, out),
                         SWEEP_BOTH(ZR_MAC_SetPortLearnMode, HAL_MAC_SetPortLearnModeZr, unit, port(3), 1),
                         SWEEP_BOTH(ZR_MAC_GetPortLearnMode, HAL_MAC_GetPortLearnModeZr, unit, port(3), out),
                         SWEEP_BOTH(ZR_MAC_RegisterCallBack, HAL_MAC_RegisterCallBackZr,
                                    of("type", 3, {0, 4, 0xFFFFFFFF}), callBack),
                         SWEEP_BOTH(ZR_MAC_AddMac, HAL_MAC_AddMacZr, unit, in(kStatic)),
                         SWEEP(ZR_MAC_SyncMacInsert, unit, in(kStatic)),
                         SWEEP_BOTH(ZR_MAC_DelAllMac, HAL_MAC_DelAllMacZr, unit),
                         SWEEP_BOTH(ZR_MAC_DelByVlan, HAL_MAC_DelByVlanZr, unit, vlan),
                         SWEEP_BOTH(ZR_MAC_DelByPort, HAL_MAC_DelByPortZr, unit, in(kStatic)),
                         SWEEP_BOTH(ZR_MAC_DelByPortVlan, HAL_MAC_DelByPortVlanZr, unit, in(kStatic)),
                         SWEEP(HAL_MAC_DelDynMacZr, unit, port(3)),
                         SWEEP(ZR_MAC_DelDynMac, unit),
                         SWEEP_BOTH(ZR_MAC_GetCapacity, HAL_MAC_GetCapacityZr, unit, out, out),
                     });

const bool addressesAdded2 =
    addSweeps("mac", addStatic,
              {
                  SWEEP(HAL_MAC_HasExistedMacTabZr, unit, in(kStatic), id("vlan", 10, 4096)),
                  SWEEP(HAL_MAC_DelByMacZr, unit, in(kStatic.mac)),
                  SWEEP(ZR_MAC_DelByMac, unit, in(kStatic.mac)),
                  SWEEP_BOTH(ZR_MAC_DelByVlanMac, HAL_MAC_DelByVlanMacZr, unit, in(kStatic)),
                  SWEEP(ZR_MAC_GetMacEntry, unit, of("query", 3, {0, 4, 0xFFFFFFFF}), in(kQuery), out),
                  SWEEP(HAL_MAC_GetMacByIdxZr, unit, id("index", kQuery.index, 8192), out),
              });

const bool treesAdded = addSweeps(
    "stp",
    {
        SWEEP(ZR_STP_stgCreate, unit, out),
        SWEEP_BOTH(ZR_STP_SetVlanInstanceid, HAL_STP_SetVlanInstanceIdZr, unit, id("instance", 3, 16), vlan),
        SWEEP(HAL_STP_GetVlanInstanceIdZr, unit, vlan, out),
        SWEEP(ZR_STP_SetStpMode, unit, id("instance", 3, 16), port(4), kState),
        SWEEP(HAL_STP_SetStpModeZr, unit, id("instance", 3, 16), port(4), kState),
        SWEEP(ZR_STP_FlushMacByPortVlan, unit, in(kStatic)),
        SWEEP(HAL_STP_FlushMacByPortVlan, onUnit(0), in(kUnit0)),
        SWEEP(ZR_STP_FlushMacByPort, unit, in(kStatic)),
        SWEEP(HAL_STP_FlushMacByPort, onUnit(0), in(kUnit0)),
    });

const bool treesAdded2 = addSweeps("stp", bindVlan,
                                   {
                                       SWEEP_BOTH(ZR_STP_FlushMacByPortInstance, HAL_STP_FlushMacByPortInstance,
                                                  onUnit(0), port(3), id("instance", 3, 16)),
                                   });

} // namespace
} // namespace zrtest
