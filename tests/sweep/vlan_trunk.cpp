// The failure sweep over VLANs and link aggregation.
#include "l2/trunk.h"
#include "l2/vlan.h"
#include "records/trunk_records.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

constexpr uint32_t kVlan = 100;
constexpr uint32_t kPort = 2;
constexpr uint32_t kTrunk = 40;

// The member configuration does not decide whether a port left a VLAN.
const std::vector<std::string> kLeaving = {"l2sw_vlan_GetMbrIdx", "l2sw_vlan_mbrCfg_get",
                                           "l2sw_vlan_mbrCfg_set"};
// What cannot be read of a member configuration counts as empty.
const std::vector<std::string> kJoining = {"l2sw_vlan_mbrCfg_get"};

std::vector<std::string> andFilter(std::vector<std::string> calls)
{
    calls.push_back("l2sw_vlan_portIgrFilterEnable_set");
    return calls;
}

void createVlan()
{
    EXPECT_EQ(device().ops().vlan.create(1, kVlan), 0U);
    EXPECT_EQ(device().ops().vlan.addMember(1, kPort, kVlan, 1), 0U);
}

void createTrunk()
{
    EXPECT_EQ(device().ops().trunk.create(1, kTrunk), 0U);
    EXPECT_EQ(device().ops().trunk.addMember(1, kPort, 0), 0U);
}

uint32_t addList(Outputs &)
{
    std::vector<uint32_t> ports(ZR_VLAN_LIST_PORTS, ZR_VLAN_LIST_END);
    std::vector<uint32_t> untags(ZR_VLAN_LIST_PORTS);
    for (uint32_t i = 0; i < 4; ++i)
        ports[i] = i;
    return ZR_OP(ZR_VLAN_AddMultiMember)(1, kVlan, ports.data(), untags.data());
}

const bool vlansAdded = addSweep({
    {.operation = "ZR_VLAN_Init",
     .run = [](Outputs &) { return ZR_OP(ZR_VLAN_Init)(1); },
     .tolerated = andFilter(kLeaving)},
    {.operation = "HAL_VLAN_InitZr", .run = [](Outputs &) { return ZR_OP(HAL_VLAN_InitZr)(1); }},
    {.operation = "HAL_VLAN_UntagDscpPriorityEnableZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_UntagDscpPriorityEnableZr)(1, 1); }},
    {.operation = "ZR_VLAN_Create",
     .run = [](Outputs &) { return ZR_OP(ZR_VLAN_Create)(1, kVlan); },
     .tolerated = kJoining},
    {.operation = "HAL_VLAN_CreateZr", .run = [](Outputs &) { return ZR_OP(HAL_VLAN_CreateZr)(1, kVlan); }},
    {.operation = "ZR_VLAN_Delete",
     .run = [](Outputs &) { return ZR_OP(ZR_VLAN_Delete)(1, kVlan); },
     .prepare = createVlan,
     .tolerated = kLeaving},
    {.operation = "HAL_VLAN_DestroyZr", .run = [](Outputs &) { return ZR_OP(HAL_VLAN_DestroyZr)(1, kVlan); }},
    {.operation = "ZR_VLAN_AddMember",
     .run = [](Outputs &) { return ZR_OP(ZR_VLAN_AddMember)(1, kPort, kVlan, 1); },
     .tolerated = kJoining},
    {.operation = "HAL_VLAN_AddMemberZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_AddMemberZr)(1, kPort, kVlan, 1); }},
    {.operation = "HAL_VLAN_AddMbrTabZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_AddMbrTabZr)(1, kPort, kVlan); },
     .tolerated = kJoining},
    {.operation = "HAL_VLAN_CreateMbrIdxZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_VLAN_CreateMbrIdxZr)(1, kVlan, out.make<uint32_t>()); }},
    {.operation = "ZR_VLAN_AddMultiMember", .run = addList, .tolerated = kJoining},
    {.operation = "ZR_VLAN_DelMember",
     .run = [](Outputs &) { return ZR_OP(ZR_VLAN_DelMember)(1, kPort, kVlan); },
     .prepare = createVlan,
     .tolerated = kLeaving},
    {.operation = "HAL_VLAN_DelMemberZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_DelMemberZr)(1, kPort, kVlan); },
     .prepare = createVlan},
    {.operation = "HAL_VLAN_DelMbrTabZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_DelMbrTabZr)(1, kPort, kVlan); },
     .prepare = createVlan},
    {.operation = "ZR_VLAN_GetPortMap",
     .run =
         [](Outputs &out) {
             return ZR_OP(ZR_VLAN_GetPortMap)(1, kVlan, out.make<uint32_t>(), out.make<uint32_t>());
         }},
    {.operation = "HAL_VLAN_GetPortMapZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_VLAN_GetPortMapZr)(1, kVlan, out.make<uint32_t>(), out.make<uint32_t>());
         }},
    {.operation = "ZR_VLAN_SetPortPvid",
     .run = [](Outputs &) { return ZR_OP(ZR_VLAN_SetPortPvid)(1, kPort, kVlan); }},
    {.operation = "HAL_VLAN_SetPortPvidZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_SetPortPvidZr)(1, kPort, kVlan); }},
    {.operation = "ZR_VLAN_GetPortPvid",
     .run = [](Outputs &out) { return ZR_OP(ZR_VLAN_GetPortPvid)(1, kPort, out.make<uint32_t>()); },
     .writesOnFailure = true},
    {.operation = "HAL_VLAN_GetPortPvidZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_VLAN_GetPortPvidZr)(1, kPort, out.make<uint32_t>()); },
     .writesOnFailure = true},
    {.operation = "ZR_VLAN_SetIgrPortFilter",
     .run = [](Outputs &) { return ZR_OP(ZR_VLAN_SetIgrPortFilter)(1, kPort, 1); },
     .reportsNothing = true},
    {.operation = "HAL_VLAN_SetPortFilterZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_SetPortFilterZr)(1, kPort, 1); }},
    {.operation = "HAL_VLAN_SetTagModeZr",
     .run = [](Outputs &) { return ZR_OP(HAL_VLAN_SetTagModeZr)(1, kPort, 2); }},
});

const bool trunksAdded = addSweep({
    {.operation = "ZR_TRUNK_AddMember",
     .run = [](Outputs &) { return ZR_OP(ZR_TRUNK_AddMember)(1, kPort, 0); }},
    {.operation = "HAL_TRUNK_AddMemberZr",
     .run = [](Outputs &) { return ZR_OP(HAL_TRUNK_AddMemberZr)(1, 0, kPort); }},
    {.operation = "ZR_TRUNK_DelMember",
     .run = [](Outputs &) { return ZR_OP(ZR_TRUNK_DelMember)(1, kPort, 0); },
     .prepare = createTrunk},
    {.operation = "HAL_TRUNK_DelMemberZr",
     .run = [](Outputs &) { return ZR_OP(HAL_TRUNK_DelMemberZr)(1, 0, kPort); },
     .prepare = createTrunk},
    {.operation = "ZR_TRUNK_GetMember",
     .run = [](Outputs &out) { return ZR_OP(ZR_TRUNK_GetMember)(1, kTrunk, out.make<uint32_t>()); },
     .prepare = createTrunk},
    {.operation = "HAL_TRUNK_GetMemberZr",
     .run = [](Outputs &out) { return ZR_OP(HAL_TRUNK_GetMemberZr)(1, 0, out.make<uint32_t>()); }},
    {.operation = "ZR_TRUNK_Create", .run = [](Outputs &) { return ZR_OP(ZR_TRUNK_Create)(1, kTrunk); }},
    {.operation = "ZR_TRUNK_Delete",
     .run = [](Outputs &) { return ZR_OP(ZR_TRUNK_Delete)(1, kTrunk); },
     .prepare = createTrunk},
    {.operation = "ZR_TRUNK_GetTrunkNum",
     .run = [](Outputs &out) { return ZR_OP(ZR_TRUNK_GetTrunkNum)(1, out.make<uint32_t>()); }},
    {.operation = "ZR_TRUNK_InitMode", .run = [](Outputs &) { return ZR_OP(ZR_TRUNK_InitMode)(1); }},
    {.operation = "HAL_TRUNK_InitHashModeZr",
     .run = [](Outputs &) { return ZR_OP(HAL_TRUNK_InitHashModeZr)(1); }},
    {.operation = "HAL_TRUNK_InitHashSelectZr",
     .run = [](Outputs &) { return ZR_OP(HAL_TRUNK_InitHashSelectZr)(1); }},
    {.operation = "COM_TRUNK_GetMeterInfo",
     .run = [](Outputs &) { return ZR_OP(COM_TRUNK_GetMeterInfo)(1) != nullptr ? 0U : 1U; }},
    {.operation = "COM_TRUNK_IsLogicTrunkExist",
     .run = [](Outputs &) { return ZR_OP(COM_TRUNK_IsLogicTrunkExist)(1, kTrunk); },
     .prepare = createTrunk},
    {.operation = "COM_TRUNK_SetMeterInfo",
     .run = [](Outputs &) { return ZR_OP(COM_TRUNK_SetMeterInfo)(1, kTrunk, 1); }},
    {.operation = "COM_TRUNK_LogicidToChipid",
     .run = [](Outputs &out) { return ZR_OP(COM_TRUNK_LogicidToChipid)(1, kTrunk, out.make<uint32_t>()); },
     .prepare = createTrunk},
});

} // namespace
} // namespace zrtest
