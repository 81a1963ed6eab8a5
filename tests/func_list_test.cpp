// The library's entry: what is fetched and filled, in what order, and what stays as it was.
#include "frame/func_list.h"

#include <dlfcn.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <utility>

#include "frame/fmea.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

using FuncListTest = DeviceTest;

// Calls a filler with the type of its own table.
template <class Ops> void fill(const char *filler, void *table)
{
    operation<void(Ops *)>(filler)(static_cast<Ops *>(table));
}

struct Table {
    const char *getter;
    const char *filler;
    void (*fill)(const char *filler, void *table);
    const char *slots; // their operations; "-": not written
};

// The slots as the manager reads them, from 0 on.
const std::vector<Table> &tables()
{
    static const std::vector<Table> all = {
        {"LSW_Common_GetFuncPtr", "ZR_COMMON_FuncInit", fill<ZrCommonOps>,
         "ZR_COMMON_InitChip ZR_COMMON_ChipRegRead ZR_COMMON_ChipRegWrite ZR_COMMON_CliCmdPrase - - - "
         "- ZR_COMMON_ChipCaptureDropReasonEnable ZR_COMMON_ChipGetDropReason"},
        {"LSW_PORT_GetFuncPtr", "ZR_PORT_FuncInit", fill<ZrPortOps>,
         "ZR_PORT_Init ZR_PORT_RegRead ZR_PORT_RegWrite ZR_PORT_SetEnable ZR_PORT_GetEnable "
         "ZR_PORT_CpuInit ZR_PORT_GetLinkStatus ZR_PORT_LinkEvt ZR_PORT_LinkScanWar ZR_PORT_GetSpeed "
         "ZR_PORT_SetSpeed ZR_PORT_GetAutonegEnable ZR_PORT_SetAutonegEnable ZR_PORT_GetAutonegAbility "
         "ZR_PORT_GetRemoteAutonegAbility ZR_PORT_GetStatistics ZR_PORT_ClearStatistics "
         "ZR_PORT_SetDuplex ZR_PORT_GetDuplex ZR_PORT_GetMaxFrame ZR_PORT_SetIsolate "
         "ZR_PORT_GetLoopback ZR_PORT_SetLoopback ZR_PORT_GetDebugInfo ZR_PORT_GetSnr "
         "ZR_PORT_GetKhCheck ZR_PORT_GetChipId ZR_PORT_SetLEDForce ZR_GetLinkDownPhyReg "
         "ZR_PORT_SetAllIsolate ZR_PORT_GetIsolateMap ZR_PORT_SetAdvert"},
        {"LSW_MAC_GetFuncPtr", "ZR_MAC_FuncInit", fill<ZrMacOps>,
         "ZR_MAC_Init ZR_MAC_SyncMacInsert ZR_MAC_AddMac ZR_MAC_SetAgeTime ZR_MAC_GetAgeTime "
         "ZR_MAC_DelAllMac ZR_MAC_DelByVlanMac ZR_MAC_DelByPort ZR_MAC_DelByVlan ZR_MAC_DelByPortVlan "
         "ZR_MAC_DelByMac ZR_MAC_DelDynMac ZR_MAC_GetMacEntry ZR_MAC_SetPortLearnMode "
         "ZR_MAC_GetPortLearnMode - ZR_MAC_GetCapacity ZR_MAC_RegisterCallBack"},
        {"LSW_VLAN_GetFuncPtr", "ZR_VLAN_FuncInit", fill<ZrVlanOps>,
         "ZR_VLAN_Init ZR_VLAN_Create ZR_VLAN_Delete ZR_VLAN_AddMember ZR_VLAN_AddMultiMember "
         "ZR_VLAN_DelMember ZR_VLAN_GetPortMap ZR_VLAN_SetPortPvid ZR_VLAN_GetPortPvid "
         "ZR_VLAN_SetIgrPortFilter - HAL_VLAN_SetTagModeZr"},
        {"LSW_QOS_GetFuncPtr", "ZR_QOS_FuncInit", fill<ZrQosOps>, "ZR_QOS_Init"},
        {"LSW_ACL_GetFuncPtr", "ZR_ACL_FuncInit", fill<ZrAclOps>,
         "COM_ACL_IsLogicRuleInUse COM_ACL_AllocLogicRuleId COM_ACL_LogicRuleToChipRule "
         "ZR_ACL_UpdateLANWanPolicy ZR_ACL_SetRuleMapEntry COM_ACL_ReleseRuleRecord ZR_ACL_AddEntry "
         "ZR_ACL_GetEntry ZR_ACL_DelEntry ZR_ACL_ModifyEntryPortmap ZR_ACL_AddEntryPortmap "
         "ZR_ACL_RemoveEntryPortmap - ZR_ACL_Init"},
        {"LSW_HSEC_GetFuncPtr", "ZR_HSEC_FuncInit", fill<ZrHsecOps>,
         "COM_HSEC_IsLogicMeterInUse COM_HSEC_LogicMeterToChipMeter COM_HSEC_ChipMeterToLogicMeter "
         "COM_HSEC_EntryIdToLogicMeter ZR_HSEC_GetStat COM_HSEC_SetMeterEntry "
         "COM_HSEC_ReleseHsecRecord ZR_HSEC_GetCar ZR_HSEC_ConfigCar ZR_HSEC_DelCar - "
         "COM_HSEC_AllocMeterId COM_HSEC_AllocChipMeter ZR_HSEC_Init"},
        {"LSW_MC_GetFuncPtr", "ZR_MC_FuncInit", fill<ZrMcOps>, "ZR_MC_Init"},
        {"LSW_STORMCTL_GetFuncPtr", "ZR_STORMCTL_FuncInit", fill<ZrStormctlOps>,
         "ZR_STORMCTL_Init ZR_STORMCTL_Set"},
        {"LSW_STP_GetFuncPtr", "ZR_STP_FuncInit", fill<ZrStpOps>,
         "ZR_STP_stgCreate ZR_STP_SetVlanInstanceid ZR_STP_SetStpMode ZR_STP_FlushMacByPortInstance "
         "ZR_STP_FlushMacByPortVlan ZR_STP_FlushMacByPort"},
        {"LSW_TRUNK_GetFuncPtr", "ZR_TRUNK_FuncInit", fill<ZrTrunkOps>,
         "ZR_TRUNK_AddMember ZR_TRUNK_DelMember ZR_TRUNK_GetMember ZR_TRUNK_Create ZR_TRUNK_Delete "
         "ZR_TRUNK_GetTrunkNum"},
        {"LSW_FMEA_GetFuncPtr", "ZR_FMEA_FuncInit", fill<ZrFmeaOps>, "ZR_FMEA_MonitorUnitReg"},
    };
    return all;
}

// Room for a table and beyond, every slot marked.
struct Slots {
    static constexpr size_t kCount = 40;
    void *slot[kCount];
    Slots() { std::memset(slot, 0x5A, sizeof slot); }
};

void expectFilled(const Table &table, void *const *slots, size_t count)
{
    const Slots untouched;
    std::istringstream names(table.slots);
    for (size_t i = 0; i < count; ++i) {
        std::string name = "-";
        names >> name;
        void *expected = name == "-" ? untouched.slot[0] : device().symbol(name.c_str());
        EXPECT_EQ(slots[i], expected) << table.filler << " slot " << i << " " << name;
    }
}

TEST_F(FuncListTest, EveryFillerWritesItsSlotsAndNoOther)
{
    for (const Table &table : tables()) {
        Slots slots;
        table.fill(table.filler, nullptr);
        table.fill(table.filler, slots.slot);
        expectFilled(table, slots.slot, Slots::kCount);
        table.fill(table.filler, slots.slot);
        expectFilled(table, slots.slot, Slots::kCount);
    }
    EXPECT_EQ(dev.recorded().size(), 0U) << "a filler calls nothing";
}

// The manager's own tables, in the order in which they are fetched, every slot marked.
class ManagerTables
{
public:
    ManagerTables() { std::memset(static_cast<void *>(&tables_), 0x5A, sizeof tables_); }
    void expectFilled(size_t i, const Table &as) const
    {
        const auto [table, bytes] = all_[i];
        zrtest::expectFilled(as, static_cast<void *const *>(table), bytes / sizeof(void *));
    }

private:
    zrsim::OperationTables &tables_ = zrsim::manager().tables;
    const std::pair<const void *, size_t> all_[12] = {
        {&tables_.common, sizeof tables_.common},     {&tables_.port, sizeof tables_.port},
        {&tables_.mac, sizeof tables_.mac},           {&tables_.vlan, sizeof tables_.vlan},
        {&tables_.qos, sizeof tables_.qos},           {&tables_.acl, sizeof tables_.acl},
        {&tables_.hsec, sizeof tables_.hsec},         {&tables_.mc, sizeof tables_.mc},
        {&tables_.stormctl, sizeof tables_.stormctl}, {&tables_.stp, sizeof tables_.stp},
        {&tables_.trunk, sizeof tables_.trunk},       {&tables_.fmea, sizeof tables_.fmea}};
};

TEST_F(FuncListTest, TheEntryFetchesTwelveTablesInOrderAndFillsEachAsItsOwn)
{
    const ManagerTables held;
    dev.forget();
    ZR_OP(ZR_COMMON_FuncListInit)(0xCAFE1234);
    Texts fetched;
    for (const zrsim::Call &call : dev.recorded())
        fetched.push_back(call.text);
    Texts expected;
    for (size_t i = 0; i < tables().size(); ++i) {
        expected.push_back(std::string(tables()[i].getter) + "(0xcafe1234) = ptr");
        held.expectFilled(i, tables()[i]);
    }
    EXPECT_EQ(fetched, expected);
}

TEST_F(FuncListTest, AMissingTableDoesNotStopTheOthers)
{
    const Table notWritten{"", "", nullptr, ""};
    for (size_t missing = 0; missing < tables().size(); ++missing) {
        const ManagerTables held;
        dev.fail(tables()[missing].getter, 1);
        ZR_OP(ZR_COMMON_FuncListInit)(0);
        dev.clearInjections();
        for (size_t i = 0; i < tables().size(); ++i)
            held.expectFilled(i, i == missing ? notWritten : tables()[i]);
    }
}

TEST_F(FuncListTest, OperationsThatOnlyAnswer)
{
    for (uint32_t unit : {0U, 2U, 3U, 0xFFFFFFFFU}) {
        EXPECT_EQ(dev.ops().fmea.monitorUnitReg(unit), 0U);
        EXPECT_EQ(dev.ops().stormctl.init(unit), 0U);
        EXPECT_EQ(dev.ops().port.linkEvt(unit, 0xFFFFFFFF), 0U);
    }
    EXPECT_EQ(dev.recorded().size(), 0U);
}

// The code to copy is that of the example, which is built and run.
TEST_F(FuncListTest, TheDocumentShowsTheOrderOfInitialisation)
{
    const auto read = [](const char *path) {
        std::ostringstream text;
        text << std::ifstream(std::string(ZRLSW_SOURCE_DIR) + path).rdbuf();
        return text.str();
    };
    const std::string code = read("/examples/manager/manager.c");
    const size_t begin = code.find("/* The chip first");
    std::istringstream lines(code.substr(begin, code.find("\n}\n", begin) + 3 - begin));
    std::string shown;
    for (std::string line; std::getline(lines, line);)
        shown += "    " + line + "\n";
    EXPECT_THAT(read("/docs/integration.md"),
                testing::HasSubstr("<!-- manager.c -->\n" + shown + "<!-- end of manager.c -->"));
}

} // namespace
} // namespace zrtest
