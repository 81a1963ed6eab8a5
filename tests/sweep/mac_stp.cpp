// The failure sweep over the address table and spanning tree.
#include "l2/mac.h"
#include "l2/stp.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

LswmMacEntry entryOf(uint8_t type, uint8_t unit = 1)
{
    LswmMacEntry entry{};
    entry.mac[5] = 9;
    entry.vlan = 10;
    entry.entryVlan = 10;
    entry.port = 3;
    entry.type = type;
    entry.unit = unit;
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

uint32_t sync(Outputs &)
{
    LswmMacEntry entry = kStatic;
    return ZR_OP(ZR_MAC_SyncMacInsert)(1, &entry);
}

// Unit 0 is reached directly: 4094 reads a run would take their time over the SMI bus.
void bindVlan()
{
    EXPECT_EQ(device().ops().stp.setVlanInstanceid(0, 3, 2000), 0U);
}

// Whether the address is there decides about the count, not about the add.
const std::vector<std::string> kAsked = {"l2sw_l2_addr_get"};

const bool added = addSweep({
    {"ZR_MAC_Init", [](Outputs &) { return ZR_OP(ZR_MAC_Init)(1); }},
    {"HAL_MAC_InitZr", [](Outputs &) { return ZR_OP(HAL_MAC_InitZr)(1); }},
    {"HAL_MAC_IllegalMacProc", [](Outputs &) { return ZR_OP(HAL_MAC_IllegalMacProc)(1); }},
    {"ZR_MAC_SetAgeTime", [](Outputs &) { return ZR_OP(ZR_MAC_SetAgeTime)(1, 600); }},
    {"HAL_MAC_SetAgeTimeZr", [](Outputs &) { return ZR_OP(HAL_MAC_SetAgeTimeZr)(1, 600); }},
    {"ZR_MAC_GetAgeTime", [](Outputs &out) { return ZR_OP(ZR_MAC_GetAgeTime)(1, out.make<uint32_t>()); }},
    {"HAL_MAC_GetAgeTimeZr", [](Outputs &out) { return ZR_OP(HAL_MAC_GetAgeTimeZr)(1, out.make<uint32_t>()); }},
    {"ZR_MAC_SetPortLearnMode", [](Outputs &) { return ZR_OP(ZR_MAC_SetPortLearnMode)(1, 3, 1); }},
    {"HAL_MAC_SetPortLearnModeZr", [](Outputs &) { return ZR_OP(HAL_MAC_SetPortLearnModeZr)(1, 3, 1); }},
    {"ZR_MAC_GetPortLearnMode",
     [](Outputs &out) { return ZR_OP(ZR_MAC_GetPortLearnMode)(1, 3, out.make<uint32_t>()); }},
    {"HAL_MAC_GetPortLearnModeZr",
     [](Outputs &out) { return ZR_OP(HAL_MAC_GetPortLearnModeZr)(1, 3, out.make<uint32_t>()); }},
    {"ZR_MAC_RegisterCallBack", [](Outputs &) { return ZR_OP(ZR_MAC_RegisterCallBack)(1, callBack), 0U; }},
    {"HAL_MAC_RegisterCallBackZr",
     [](Outputs &) { return ZR_OP(HAL_MAC_RegisterCallBackZr)(1, callBack), 0U; }},

    {.operation = "ZR_MAC_AddMac",
     .run = [](Outputs &) { return ZR_OP(ZR_MAC_AddMac)(1, &kStatic); },
     .tolerated = kAsked},
    {.operation = "HAL_MAC_AddMacZr",
     .run = [](Outputs &) { return ZR_OP(HAL_MAC_AddMacZr)(1, &kStatic); },
     .tolerated = kAsked},
    {.operation = "ZR_MAC_SyncMacInsert", .run = sync, .tolerated = kAsked},
    // Answers 1 for an address that is there: turned round into a status.
    {"HAL_MAC_HasExistedMacTabZr",
     [](Outputs &) { return ZR_OP(HAL_MAC_HasExistedMacTabZr)(1, &kStatic, 10) == 1 ? 0U : 1U; }, addStatic},
    {"HAL_MAC_DelByMacZr", [](Outputs &) { return ZR_OP(HAL_MAC_DelByMacZr)(1, kStatic.mac); }, addStatic},
    {"ZR_MAC_DelByMac", [](Outputs &) { return ZR_OP(ZR_MAC_DelByMac)(1, kStatic.mac); }, addStatic},
    {"ZR_MAC_DelByVlanMac", [](Outputs &) { return ZR_OP(ZR_MAC_DelByVlanMac)(1, &kStatic); }, addStatic},
    {"HAL_MAC_DelByVlanMacZr", [](Outputs &) { return ZR_OP(HAL_MAC_DelByVlanMacZr)(1, &kStatic); }, addStatic},
    {"ZR_MAC_DelAllMac", [](Outputs &) { return ZR_OP(ZR_MAC_DelAllMac)(1); }},
    {"HAL_MAC_DelAllMacZr", [](Outputs &) { return ZR_OP(HAL_MAC_DelAllMacZr)(1); }},

    {"ZR_MAC_DelByVlan", [](Outputs &) { return ZR_OP(ZR_MAC_DelByVlan)(1, 10); }},
    {"HAL_MAC_DelByVlanZr", [](Outputs &) { return ZR_OP(HAL_MAC_DelByVlanZr)(1, 10); }},
    {"ZR_MAC_DelByPort", [](Outputs &) { return ZR_OP(ZR_MAC_DelByPort)(1, &kStatic); }},
    {"HAL_MAC_DelByPortZr", [](Outputs &) { return ZR_OP(HAL_MAC_DelByPortZr)(1, &kStatic); }},
    {"ZR_MAC_DelByPortVlan", [](Outputs &) { return ZR_OP(ZR_MAC_DelByPortVlan)(1, &kStatic); }},
    {"HAL_MAC_DelByPortVlanZr", [](Outputs &) { return ZR_OP(HAL_MAC_DelByPortVlanZr)(1, &kStatic); }},
    {"HAL_MAC_DelDynMacZr", [](Outputs &) { return ZR_OP(HAL_MAC_DelDynMacZr)(1, 3); }},
    {.operation = "ZR_MAC_DelDynMac",
     .run = [](Outputs &) { return ZR_OP(ZR_MAC_DelDynMac)(1); },
     .reportsNothing = true},

    {"ZR_MAC_GetMacEntry",
     [](Outputs &out) { return ZR_OP(ZR_MAC_GetMacEntry)(1, 3, &kQuery, out.make<LswmMacEntry>()); },
     addStatic},
    {"HAL_MAC_GetMacByIdxZr",
     [](Outputs &out) { return ZR_OP(HAL_MAC_GetMacByIdxZr)(1, kQuery.index, out.make<LswmMacEntry>()); },
     addStatic},
    {.operation = "ZR_MAC_GetCapacity",
     .run =
         [](Outputs &out) { return ZR_OP(ZR_MAC_GetCapacity)(1, out.make<uint32_t>(), out.make<uint32_t>()); },
     .reportsNothing = true},
    {.operation = "HAL_MAC_GetCapacityZr",
     .run =
         [](Outputs &out) {
             return ZR_OP(HAL_MAC_GetCapacityZr)(1, out.make<uint32_t>(), out.make<uint32_t>());
         },
     .reportsNothing = true},

    {"ZR_STP_stgCreate", [](Outputs &out) { return ZR_OP(ZR_STP_stgCreate)(1, out.make<uint32_t>()); }},
    {"ZR_STP_SetVlanInstanceid", [](Outputs &) { return ZR_OP(ZR_STP_SetVlanInstanceid)(1, 3, 10); }},
    {"HAL_STP_SetVlanInstanceIdZr", [](Outputs &) { return ZR_OP(HAL_STP_SetVlanInstanceIdZr)(1, 3, 10); }},
    {"HAL_STP_GetVlanInstanceIdZr",
     [](Outputs &out) { return ZR_OP(HAL_STP_GetVlanInstanceIdZr)(1, 10, out.make<uint32_t>()); }},
    {"ZR_STP_SetStpMode", [](Outputs &) { return ZR_OP(ZR_STP_SetStpMode)(1, 3, 4, 1); }},
    {"HAL_STP_SetStpModeZr", [](Outputs &) { return ZR_OP(HAL_STP_SetStpModeZr)(1, 3, 4, 0); }},
    {"ZR_STP_FlushMacByPortVlan", [](Outputs &) { return ZR_OP(ZR_STP_FlushMacByPortVlan)(1, &kStatic); }},
    {"HAL_STP_FlushMacByPortVlan", [](Outputs &) { return ZR_OP(HAL_STP_FlushMacByPortVlan)(0, &kUnit0); }},
    {"ZR_STP_FlushMacByPort", [](Outputs &) { return ZR_OP(ZR_STP_FlushMacByPort)(1, &kStatic); }},
    {"HAL_STP_FlushMacByPort", [](Outputs &) { return ZR_OP(HAL_STP_FlushMacByPort)(0, &kUnit0); }},
    {"ZR_STP_FlushMacByPortInstance", [](Outputs &) { return ZR_OP(ZR_STP_FlushMacByPortInstance)(0, 3, 3); },
     bindVlan},
    {"HAL_STP_FlushMacByPortInstance", [](Outputs &) { return ZR_OP(HAL_STP_FlushMacByPortInstance)(0, 3, 3); },
     bindVlan},
});

} // namespace
} // namespace zrtest
