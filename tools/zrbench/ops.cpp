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
    const std::type_info &table;
    size_t slot;
    const std::type_info &type; // of the function pointer
};

#define MEMBER(table, slot, member, operation) {typeid(table), slot, typeid(decltype(table::member))},
const Member kMembers[] = {ZR_SLOTS(MEMBER)};
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

template <class Table> void addSlots(std::vector<Slot> &slots, Table *table)
{
    auto *operations = reinterpret_cast<void **>(table);
    for (size_t number = 0; number < sizeof(Table) / sizeof(void *); ++number) {
        const auto *member = std::ranges::find_if(kMembers, [&](const Member &candidate) {
            return candidate.table == typeid(Table) && candidate.slot == number;
        });
        slots.push_back({Module<Table>::kName, number, operations[number],
                         member != std::ranges::end(kMembers) ? &member->type : nullptr});
    }
}

} // namespace

std::vector<Slot> slots(const Tables &tables)
{
    std::vector<Slot> all;
    addSlots(all, tables.common);
    addSlots(all, tables.port);
    addSlots(all, tables.mac);
    addSlots(all, tables.vlan);
    addSlots(all, tables.qos);
    addSlots(all, tables.acl);
    addSlots(all, tables.hsec);
    addSlots(all, tables.mc);
    addSlots(all, tables.stormctl);
    addSlots(all, tables.stp);
    addSlots(all, tables.trunk);
    addSlots(all, tables.fmea);
    return all;
}

std::string operationName(const void *operation)
{
    Dl_info info{};
    if (operation == nullptr || dladdr(operation, &info) == 0 || info.dli_saddr != operation)
        return {};
    return info.dli_sname;
}

Outcome showOperations(const Tables &tables)
{
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
    return Outcome::shown(table, fmt::format("{} of {} operations filled\n", filled, operations));
}

} // namespace zrbench
