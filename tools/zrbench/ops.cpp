#include "tools/zrbench/ops.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <fmt/format.h>
#include <memory>
#include <regex>

#include "tools/zrbench/commands.h"

namespace zrbench
{

namespace
{

struct Member {
    size_t offset;
    const std::type_info &type; // of the function pointer
};

#define MEMBER(table, member)                                                                                  \
    Member                                                                                                     \
    {                                                                                                          \
        offsetof(table, member), typeid(decltype(table::member))                                               \
    }

const std::vector<Member> kCommon = {
    MEMBER(ZrCommonOps, initChip),
    MEMBER(ZrCommonOps, chipRegRead),
    MEMBER(ZrCommonOps, chipRegWrite),
    MEMBER(ZrCommonOps, cliCmdPrase),
    MEMBER(ZrCommonOps, chipCaptureDropReasonEnable),
    MEMBER(ZrCommonOps, chipGetDropReason),
};

const std::vector<Member> kPort = {
    MEMBER(ZrPortOps, init),
    MEMBER(ZrPortOps, regRead),
    MEMBER(ZrPortOps, regWrite),
    MEMBER(ZrPortOps, setEnable),
    MEMBER(ZrPortOps, getEnable),
    MEMBER(ZrPortOps, cpuInit),
    MEMBER(ZrPortOps, getLinkStatus),
    MEMBER(ZrPortOps, linkEvt),
    MEMBER(ZrPortOps, linkScanWar),
    MEMBER(ZrPortOps, getSpeed),
    MEMBER(ZrPortOps, setSpeed),
    MEMBER(ZrPortOps, getAutonegEnable),
    MEMBER(ZrPortOps, setAutonegEnable),
    MEMBER(ZrPortOps, getAutonegAbility),
    MEMBER(ZrPortOps, getRemoteAutonegAbility),
    MEMBER(ZrPortOps, getStatistics),
    MEMBER(ZrPortOps, clearStatistics),
    MEMBER(ZrPortOps, setDuplex),
    MEMBER(ZrPortOps, getDuplex),
    MEMBER(ZrPortOps, getMaxFrame),
    MEMBER(ZrPortOps, setIsolate),
    MEMBER(ZrPortOps, getLoopback),
    MEMBER(ZrPortOps, setLoopback),
    MEMBER(ZrPortOps, getDebugInfo),
    MEMBER(ZrPortOps, getSnr),
    MEMBER(ZrPortOps, getKhCheck),
    MEMBER(ZrPortOps, getChipId),
    MEMBER(ZrPortOps, setLedForce),
    MEMBER(ZrPortOps, getLinkDownPhyReg),
    MEMBER(ZrPortOps, setAllIsolate),
    MEMBER(ZrPortOps, getIsolateMap),
    MEMBER(ZrPortOps, setAdvert),
};

const std::vector<Member> kMac = {
    MEMBER(ZrMacOps, init),          MEMBER(ZrMacOps, syncMacInsert),    MEMBER(ZrMacOps, addMac),
    MEMBER(ZrMacOps, setAgeTime),    MEMBER(ZrMacOps, getAgeTime),       MEMBER(ZrMacOps, delAllMac),
    MEMBER(ZrMacOps, delByVlanMac),  MEMBER(ZrMacOps, delByPort),        MEMBER(ZrMacOps, delByVlan),
    MEMBER(ZrMacOps, delByPortVlan), MEMBER(ZrMacOps, delByMac),         MEMBER(ZrMacOps, delDynMac),
    MEMBER(ZrMacOps, getMacEntry),   MEMBER(ZrMacOps, setPortLearnMode), MEMBER(ZrMacOps, getPortLearnMode),
    MEMBER(ZrMacOps, getCapacity),   MEMBER(ZrMacOps, registerCallBack),
};

const std::vector<Member> kVlan = {
    MEMBER(ZrVlanOps, init),           MEMBER(ZrVlanOps, create),
    MEMBER(ZrVlanOps, destroy),        MEMBER(ZrVlanOps, addMember),
    MEMBER(ZrVlanOps, addMultiMember), MEMBER(ZrVlanOps, delMember),
    MEMBER(ZrVlanOps, getPortMap),     MEMBER(ZrVlanOps, setPortPvid),
    MEMBER(ZrVlanOps, getPortPvid),    MEMBER(ZrVlanOps, setIgrPortFilter),
    MEMBER(ZrVlanOps, setTagMode),
};

const std::vector<Member> kQos = {
    MEMBER(ZrQosOps, init),
};

const std::vector<Member> kAcl = {
    MEMBER(ZrAclOps, isLogicRuleInUse),
    MEMBER(ZrAclOps, allocLogicRuleId),
    MEMBER(ZrAclOps, logicRuleToChipRule),
    MEMBER(ZrAclOps, updateLanWanPolicy),
    MEMBER(ZrAclOps, setRuleMapEntry),
    MEMBER(ZrAclOps, releaseRuleRecord),
    MEMBER(ZrAclOps, addEntry),
    MEMBER(ZrAclOps, getEntry),
    MEMBER(ZrAclOps, delEntry),
    MEMBER(ZrAclOps, modifyEntryPortmap),
    MEMBER(ZrAclOps, addEntryPortmap),
    MEMBER(ZrAclOps, removeEntryPortmap),
    MEMBER(ZrAclOps, init),
};

const std::vector<Member> kHsec = {
    MEMBER(ZrHsecOps, isLogicMeterInUse),
    MEMBER(ZrHsecOps, logicMeterToChipMeter),
    MEMBER(ZrHsecOps, chipMeterToLogicMeter),
    MEMBER(ZrHsecOps, entryIdToLogicMeter),
    MEMBER(ZrHsecOps, getStat),
    MEMBER(ZrHsecOps, setMeterEntry),
    MEMBER(ZrHsecOps, releaseRecord),
    MEMBER(ZrHsecOps, getCar),
    MEMBER(ZrHsecOps, configCar),
    MEMBER(ZrHsecOps, delCar),
    MEMBER(ZrHsecOps, allocMeterId),
    MEMBER(ZrHsecOps, allocChipMeter),
    MEMBER(ZrHsecOps, init),
};

const std::vector<Member> kMc = {
    MEMBER(ZrMcOps, init),
};

const std::vector<Member> kStormctl = {
    MEMBER(ZrStormctlOps, init),
    MEMBER(ZrStormctlOps, set),
};

const std::vector<Member> kStp = {
    MEMBER(ZrStpOps, stgCreate),          MEMBER(ZrStpOps, setVlanInstanceid),
    MEMBER(ZrStpOps, setStpMode),         MEMBER(ZrStpOps, flushMacByPortInstance),
    MEMBER(ZrStpOps, flushMacByPortVlan), MEMBER(ZrStpOps, flushMacByPort),
};

const std::vector<Member> kTrunk = {
    MEMBER(ZrTrunkOps, addMember), MEMBER(ZrTrunkOps, delMember), MEMBER(ZrTrunkOps, getMember),
    MEMBER(ZrTrunkOps, create),    MEMBER(ZrTrunkOps, destroy),   MEMBER(ZrTrunkOps, getTrunkNum),
};

const std::vector<Member> kFmea = {
    MEMBER(ZrFmeaOps, monitorUnitReg),
};

#undef MEMBER

// A function pointer's type as a C header writes it, without the "(*)".
std::string signatureOf(const std::type_info &type)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    std::string text = status == 0 ? name.get() : type.name();
    for (auto [from, to] : {std::pair{"unsigned int", "uint32_t"},
                            {"unsigned short", "uint16_t"},
                            {"unsigned char", "uint8_t"},
                            {R"((\w+) const\*)", "const $1 *"},
                            {R"((\w)\*)", "$1 *"}})
        text = std::regex_replace(text, std::regex(from), to);
    if (const size_t pointer = text.find("(*)"); pointer != std::string::npos)
        text.erase(pointer, 3);
    return text;
}

// The command that is the slot's own, else one that uses it.
std::string commandFor(const Slot &slot)
{
    auto found = std::ranges::find(commands(), slot.label(), &Command::slot);
    if (found == commands().end()) {
        found = std::ranges::find_if(
            commands(), [&](const Command *command) { return usesSlot(*command, slot.module, slot.number); });
    }
    return found == commands().end() ? std::string() : std::string((*found)->name);
}

template <class Table>
void addSlots(std::vector<Slot> &slots, std::string_view module, const std::vector<Member> &members,
              Table *table)
{
    auto *operations = reinterpret_cast<void **>(table);
    for (size_t number = 0; number < sizeof(Table) / sizeof(void *); ++number) {
        const auto member = std::ranges::find(members, number * sizeof(void *), &Member::offset);
        slots.push_back(
            {module, number, operations[number], member != members.end() ? &member->type : nullptr});
    }
}

} // namespace

std::vector<Slot> slots(const Tables &tables)
{
    std::vector<Slot> all;
    addSlots(all, "COMMON", kCommon, tables.common);
    addSlots(all, "PORT", kPort, tables.port);
    addSlots(all, "MAC", kMac, tables.mac);
    addSlots(all, "VLAN", kVlan, tables.vlan);
    addSlots(all, "QOS", kQos, tables.qos);
    addSlots(all, "ACL", kAcl, tables.acl);
    addSlots(all, "HSEC", kHsec, tables.hsec);
    addSlots(all, "MC", kMc, tables.mc);
    addSlots(all, "STORMCTL", kStormctl, tables.stormctl);
    addSlots(all, "STP", kStp, tables.stp);
    addSlots(all, "TRUNK", kTrunk, tables.trunk);
    addSlots(all, "FMEA", kFmea, tables.fmea);
    return all;
}

std::string operationName(const void *operation)
{
    Dl_info info{};
    if (operation == nullptr || dladdr(operation, &info) == 0 || info.dli_saddr != operation)
        return {};
    return info.dli_sname;
}

std::string showOperations(const Tables &tables)
{
    std::string text;
    size_t filled = 0;
    size_t operations = 0;
    TextTable table({"SLOT", "OPERATION", "COMMAND"});
    for (const Slot &slot : slots(tables)) {
        if (slot.type == nullptr) {
            table.row({slot.label(), "(reserved)"});
            continue;
        }
        ++operations;
        filled += slot.operation != nullptr ? 1 : 0;
        std::string name = operationName(slot.operation);
        if (name.empty())
            name = slot.operation == nullptr ? "(not filled)" : "(not exported)";
        // The name goes between the result and the arguments.
        std::string shown = signatureOf(*slot.type);
        shown.insert(shown.find('('), name);
        table.row({slot.label(), shown, commandFor(slot)});
    }
    return table.text() + fmt::format("{} of {} operations filled\n", filled, operations);
}

} // namespace zrbench
