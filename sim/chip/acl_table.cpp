#include "sim/chip/acl_table.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "sim/chip/port_list.h"
#include "sim/chip/status.h"

namespace zrsim
{
namespace
{

// How a node's content becomes raw fields.
enum class Form { Mac, Ip, Word, Tag, Protocol };

struct NodeType {
    uint32_t type;
    Form form;
    uint32_t rawId; // of its first raw field
};

constexpr NodeType kNodeTypes[] = {
    {SDK_FIELD_DST_MAC, Form::Mac, 1},
    {SDK_FIELD_SRC_MAC, Form::Mac, 4},
    {SDK_FIELD_ETHER_TYPE, Form::Word, 7},
    {SDK_FIELD_OUTER_TAG, Form::Tag, 8},
    {SDK_FIELD_SRC_IP, Form::Ip, 16},
    {SDK_FIELD_DST_IP, Form::Ip, 18},
    {SDK_FIELD_IP_PROTOCOL, Form::Protocol, 70},
    {SDK_FIELD_TCP_SRC_PORT, Form::Word, 77},
    {SDK_FIELD_UDP_SRC_PORT, Form::Word, 77},
    {SDK_FIELD_TCP_DST_PORT, Form::Word, 78},
    {SDK_FIELD_UDP_DST_PORT, Form::Word, 78},
    {SDK_FIELD_SELECTOR_3, Form::Word, 67},
    {SDK_FIELD_SELECTOR_4, Form::Word, 68},
    {SDK_FIELD_SELECTOR_15, Form::Word, 79},
};

const NodeType *nodeType(uint32_t type)
{
    for (const NodeType &row : kNodeTypes)
        if (row.type == type)
            return &row;
    return nullptr;
}

uint32_t rawFields(Form form)
{
    return form == Form::Mac ? 3 : form == Form::Ip ? 2 : 1;
}

// The n-th raw field of a node, least significant word first.
AclRawField rawField(const FilterField &field, const NodeType &row, uint32_t n)
{
    auto low16 = [](uint32_t word) { return static_cast<uint16_t>(word); };
    const auto &data = field.data;
    const FilterWord &word = row.form == Form::Ip ? data.ip.address : data.word;
    switch (row.form) {
    case Form::Mac: {
        auto part = [&](const uint8_t *bytes) { return low16(bytes[4 - 2 * n] << 8U | bytes[5 - 2 * n]); };
        return {row.rawId + n, part(data.mac.address), part(data.mac.mask)};
    }
    case Form::Tag:
        return {row.rawId, low16((data.tag.priority.value & 7) << 13 | (data.tag.vlan.value & 0xFFF)),
                low16((data.tag.priority.mask & 7) << 13 | (data.tag.vlan.mask & 0xFFF))};
    case Form::Protocol:
        return {row.rawId, low16(word.value & 0xFF), low16(word.mask & 0xFF)};
    default:
        return {row.rawId + n, low16(word.value >> 16 * n), low16(word.mask >> 16 * n)};
    }
}

constexpr bool fixedSelector(uint32_t selector)
{
    return selector == 6 || selector == 13 || selector == 14;
}

} // namespace

uint32_t AclTable::chain(FilterCfg &cfg, FilterField &field)
{
    if (nodeType(field.type) == nullptr)
        return kSdkBadArgument;
    FilterField **link = &cfg.head;
    while (*link != nullptr)
        link = &(*link)->next;
    *link = &field;
    field.next = nullptr;
    return kSdkOk;
}

uint32_t AclTable::size(const FilterCfg &cfg, const FilterAct &act, uint32_t &count)
{
    if (cfg.head == nullptr || (act.counterEnable != 0 && act.counterId >= kCounters) ||
        (act.carEnable != 0 && act.carId >= kMeters))
        return kSdkBadArgument;
    uint32_t fields = 0;
    for (const FilterField *field = cfg.head; field != nullptr; field = field->next) {
        const NodeType *row = nodeType(field->type);
        if (row == nullptr)
            return kSdkBadArgument;
        fields += rawFields(row->form);
    }
    count = (fields + SDK_RAW_FIELDS - 1) / SDK_RAW_FIELDS;
    return kSdkOk;
}

uint32_t AclTable::write(uint32_t id, const FilterCfg &cfg, const FilterAct &act, uint32_t &written)
{
    uint32_t parts = 0;
    if (uint32_t status = size(cfg, act, parts); status != kSdkOk)
        return status;
    if (id >= kEntries || parts > kEntries - id)
        return kSdkBadArgument;

    for (uint32_t part = 0; part < parts; ++part) {
        AclEntry entry;
        entry.parts = parts;
        entry.part = part;
        entry.ports = cfg.portBitmap & cfg.portMask;
        if (part == 0)
            entry.action = act;
        entries_[id + part] = entry;
    }
    uint32_t used = 0;
    for (const FilterField *field = cfg.head; field != nullptr; field = field->next) {
        const NodeType &row = *nodeType(field->type);
        for (uint32_t n = 0; n < rawFields(row.form); ++n, ++used)
            entries_[id + used / SDK_RAW_FIELDS].fields[used % SDK_RAW_FIELDS] = rawField(*field, row, n);
        AclEntry &first = entries_[id];
        first.tcp |= field->type == SDK_FIELD_TCP_SRC_PORT || field->type == SDK_FIELD_TCP_DST_PORT;
        first.udp |= field->type == SDK_FIELD_UDP_SRC_PORT || field->type == SDK_FIELD_UDP_DST_PORT;
    }
    written = parts;
    return kSdkOk;
}

uint32_t AclTable::read(uint32_t id, FilterCfgRaw &raw, FilterAct &act) const
{
    if (id >= kEntries)
        return kSdkBadArgument;
    const AclEntry &entry = entries_[id];
    raw = {};
    for (uint32_t i = 0; i < SDK_RAW_FIELDS; ++i) {
        raw.value[i] = entry.fields[i].value;
        raw.mask[i] = entry.fields[i].mask;
        raw.id[i] = entry.fields[i].id;
    }
    raw.portBitmap = entry.ports;
    raw.valid = entry.parts != 0 ? 1 : 0;
    act = entry.action;
    return kSdkOk;
}

uint32_t AclTable::erase(uint32_t id)
{
    if (id >= kEntries)
        return kSdkBadArgument;
    entries_[id] = {};
    return kSdkOk;
}

uint32_t AclTable::changePorts(uint32_t id, Ports change, uint32_t ports)
{
    if (id >= kEntries || entries_[id].parts == 0)
        return kSdkBadArgument;
    uint32_t &held = entries_[id].ports;
    switch (change) {
    case Ports::Replace:
        held = ports;
        break;
    case Ports::Add:
        held |= ports;
        break;
    case Ports::Remove:
        held &= ~ports;
        break;
    }
    return kSdkOk;
}

uint32_t AclTable::select(uint32_t selector, uint32_t format, uint32_t offset)
{
    if (selector >= kSelectors || fixedSelector(selector))
        return kSdkBadArgument;
    if (format != kFromFrame && format != kFromIpPayload)
        return kSdkNotModelled;
    selectors_[selector] = {format, offset};
    return kSdkOk;
}

uint32_t AclTable::counter(uint32_t id, uint32_t &count) const
{
    if (id >= kCounters)
        return kSdkBadArgument;
    count = counters_[id];
    return kSdkOk;
}

void AclTable::dump(nlohmann::json &to) const
{
    to = nlohmann::json::object();
    for (uint32_t id = 0; id < kEntries; ++id) {
        const AclEntry &entry = entries_[id];
        if (entry.parts == 0)
            continue;
        nlohmann::json shown = {{"id", id}, {"part", entry.part}, {"parts", entry.parts}};
        shown["ports"] = portList(entry.ports);
        for (const AclRawField &field : entry.fields)
            if (field.id != 0)
                shown["fields"].push_back({{"id", field.id},
                                           {"value", fmt::format("{:#06x}", field.value)},
                                           {"mask", fmt::format("{:#06x}", field.mask)}});
        if (entry.tcp || entry.udp)
            shown["layer4"] = entry.tcp ? "tcp" : "udp";
        // By word number, as the SDK counts them.
        const auto *words = reinterpret_cast<const uint32_t *>(&entry.action);
        for (size_t word = 0; word < sizeof(FilterAct) / sizeof(uint32_t); ++word)
            if (words[word] != 0)
                shown["action"][fmt::format("word{}", word)] = words[word];
        to["entries"].push_back(std::move(shown));
    }
    for (uint32_t id = 0; id < kSelectors; ++id)
        if (selectors_[id].format != 0)
            to["selectors"][fmt::format("{}", id)] = {{"format", selectors_[id].format},
                                                      {"offset", selectors_[id].offset}};
    for (uint32_t id = 0; id < kCounters; ++id)
        if (counters_[id] != 0)
            to["counters"][fmt::format("{}", id)] = counters_[id];
}

} // namespace zrsim
